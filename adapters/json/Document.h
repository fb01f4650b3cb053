#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/host/Array.h"

namespace nd::adapters::json {

/// A name with its value, an array of the host.
struct Variable {
  std::string name;
  hvArrayPtr value;
};

/// What a text says about one variable, entry by entry, and where it names the variable.
struct VariableMetaData {
  std::string variable;
  std::vector<Variable> entries;
  std::size_t offset = 0;
};

/// The content of a text: its variables and what it says about them, in their order.
struct Document {
  std::vector<Variable> variables;
  std::vector<VariableMetaData> metaData;
};

/// A file that a text includes: its name as it is written, and where.
struct Include {
  std::string name;
  std::size_t offset = 0;
};

}  // namespace nd::adapters::json
