#pragma once

#include <string>

#include "platform/host/Array.h"

/// Give the one form of a value that loses nothing: the plain one if `hasPlainForm` says so, else the tagged
/// one, with its members in the order of the manual.
std::string losslessForm(const hvArray* array);

/// Give what a real array that isn't null would look like as plain JSON, whether or not that reads as the
/// array; what it holds is in its own form.
std::string plainForm(const hvArray* array);
