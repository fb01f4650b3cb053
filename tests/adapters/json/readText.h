#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Reader.h"

/// Read a text as the reader does for a file of this content.
std::vector<nd::adapters::json::Variable> readText(std::string_view text);

/// Read a value as the member of an object.
hvArrayPtr readValue(std::string_view value);

/// Tell whether a value reads as the array; if not, both are shown.
testing::AssertionResult readsAs(std::string_view value, const hvArrayPtr& expected);

/// Give what the reader says about a text that it refuses; "it was read" if it doesn't.
std::string failureOf(std::string_view text);
