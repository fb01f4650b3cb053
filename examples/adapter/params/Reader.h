#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/hv.h"

namespace params {

struct Variable {
  std::string name;
  hvArrayPtr value;
};

/// A content that breaks a rule of the format. `what` is a sentence for people and begins with the place.
class FormatError : public std::runtime_error {
 public:
  /// Lines and columns count from 1, a column is a code point.
  FormatError(std::size_t line, std::size_t column, const std::string& words)
      : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
                           words) {}
};

/// Read a whole content; README.md tells the format. Gives the variables in the order of their lines. Raises
/// `FormatError` at the first thing that is wrong.
///
///     readVariables("gain = 2.5  # of the inner loop\n");
std::vector<Variable> readVariables(std::string_view content);

}  // namespace params
