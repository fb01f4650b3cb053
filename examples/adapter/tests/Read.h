#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <params/Reader.h>

/// Read a content and give what its variables look like, one a line: "gain: 1x1 double = 2.5".
inline std::string show(std::string_view content) {
  std::string shown;
  for (const params::Variable& variable : params::readVariables(content)) {
    shown += hvFormat(variable.value.get(), variable.name);
  }
  return shown;
}

/// Read a content and give the sentence of the error that comes of it, or nothing.
inline std::string errorOf(std::string_view content) {
  try {
    params::readVariables(content);
    return {};
  } catch (const params::FormatError& error) {
    return error.what();
  }
}
