#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace nd::tools {

/// Give the names that somebody may have meant who wrote `name`, the nearest first, at most `most` of them:
/// those that differ in case only, in few characters, or that go on where `name` ends.
std::vector<std::string> nearNames(const std::string& name, const std::vector<std::string>& candidates,
                                   std::size_t most = 3);

}  // namespace nd::tools
