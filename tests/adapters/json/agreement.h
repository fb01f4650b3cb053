#pragma once

#include <string>
#include <string_view>

/// Read bytes as the content of a file in both ways, the quick and the exact one. Gives what they don't agree
/// on: one reads them and the other refuses, they refuse them in other words, read other values, or leave
/// arrays behind. Both may be wrong in the same way, so it also gives what of the text is not in the values,
/// and which value doesn't read as itself in the form that loses nothing. Empty if there is nothing of that.
std::string disagreementOn(std::string_view bytes);
