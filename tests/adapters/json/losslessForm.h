#pragma once

#include <string>

#include "platform/host/Array.h"

/// Give the one form of a value that loses nothing: the plain one if it reads as the value, else the tagged
/// one, with its members in the order of the manual.
std::string losslessForm(const hvArray* array);
