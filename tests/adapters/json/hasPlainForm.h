#pragma once

#include "platform/host/Array.h"

/// Tell whether a value's one form that loses nothing is the plain one, by the table of the manual and by the
/// value alone: nothing is read for that.
bool hasPlainForm(const hvArray* array);
