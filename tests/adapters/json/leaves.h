#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "adapters/json/Document.h"

/// The values of a text that hold no others, told without the reader and in no order: numbers, strings by
/// their length, truth values and nulls. The text is well-formed, and no name in it begins with "$".
std::vector<std::string> leavesOf(std::string_view text);

/// The same of variables that were read.
std::vector<std::string> leavesOf(const std::vector<nd::adapters::json::Variable>& variables);
