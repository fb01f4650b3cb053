#pragma once

#include <string>
#include <vector>

#include "tools/ndx/Output.h"

namespace nd::tools {

/// Do what the arguments say, without the program's name, and give the status to end with. Nothing is raised:
/// what goes wrong is written to `err`.
int run(const std::vector<std::string>& arguments, Output& out, Output& err) noexcept;

}  // namespace nd::tools
