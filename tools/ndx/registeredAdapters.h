#pragma once

#include <string>
#include <vector>

namespace nd::tools {

/// What an adapter says of itself, whatever the source.
struct RegisteredAdapter {
  std::string name;
  std::string section;
  std::vector<std::string> extensions;  // with their dots
};

/// List the adapters in the order of their names.
std::vector<RegisteredAdapter> registeredAdapters();

}  // namespace nd::tools
