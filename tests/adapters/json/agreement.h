#pragma once

#include <string>
#include <string_view>

/// Read bytes as the content of a file in both ways, the quick and the exact one. Gives what they don't agree
/// on: one reads them and the other refuses, they refuse them in other words, read other values, or leave
/// arrays behind. Empty if there is nothing of that.
std::string disagreementOn(std::string_view bytes);
