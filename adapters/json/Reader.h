#pragma once

#include <string>
#include <vector>

#include "adapters/json/PaddedText.h"
#include "platform/host/Array.h"

namespace nd::adapters::json {

/// A member of the object at the top: its name, and its value as an array of the host.
struct Variable {
  std::string name;
  hvArrayPtr value;
};

/// Read a text of JSON whose top level is an object; its members are the variables, in their order.
///
/// Raises `FormatFailure` with the first place at fault if the text is ill-formed, names a member twice,
/// holds a number that no class holds, nests too deep, or has a member at the top whose name is none for a
/// variable. A byte order mark is passed over and doesn't count as a column.
std::vector<Variable> readVariables(const PaddedText& content);

}  // namespace nd::adapters::json
