#pragma once

#include <unordered_map>

#include "platform/host/Array.h"

/// What is known of some arrays for as long as they are as they are: whether they have a plain form.
using KnownForms = std::unordered_map<const hvArray*, bool>;

/// Tell whether a value's one form that loses nothing is the plain one, by the table of the manual and by the
/// value alone: nothing is read for that. What is found out of the values within it, is kept in `known`.
bool hasPlainForm(const hvArray* array, KnownForms& known);

bool hasPlainForm(const hvArray* array);
