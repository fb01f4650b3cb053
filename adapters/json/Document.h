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

/// What is said about one variable, entry by entry.
struct VariableMetaData {
  std::string variable;
  std::vector<Variable> entries;
};

/// Variables and what is said about them, in their order.
struct Content {
  std::vector<Variable> variables;
  std::vector<VariableMetaData> metaData;
};

/// What a text of its own says.
struct Document : Content {
  /// Where the text names the variables of its metadata.
  std::vector<std::size_t> metaDataOffsets;
};

/// A file that a text includes: its name as it is written, and where.
struct Include {
  std::string name;
  std::size_t offset = 0;
};

}  // namespace nd::adapters::json
