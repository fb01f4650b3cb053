#include "tools/ndx/nearNames.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/text/Convert.h"
#include "platform/text/EditDistance.h"
#include "platform/text/FoldedCompare.h"

namespace nd::tools {
namespace {

// Nobody mistypes names that are longer, and the time grows with the square of the length.
constexpr std::size_t longestName = 200;

// How far a name is from what was written, less being nearer; none if it is too far.
std::optional<std::size_t> remoteness(std::u16string_view written, std::u16string_view name) {
  if (written.empty() || written == name) return std::nullopt;
  if (lx::text::equalNormalizedIgnoringCase(written, name)) return 0;
  const std::size_t tolerated = std::max<std::size_t>(1, std::min(written.size(), name.size()) / 3);
  const std::size_t difference =
      written.size() > name.size() ? written.size() - name.size() : name.size() - written.size();
  if (difference <= tolerated && written.size() <= longestName) {
    const std::size_t distance = lx::text::editDistance(written, name);
    if (distance <= tolerated) return distance;
  }
  // What begins alike comes behind all that differs by few characters.
  if (name.starts_with(written)) return longestName + difference;
  return std::nullopt;
}

}  // namespace

std::vector<std::string> nearNames(const std::string& name, const std::vector<std::string>& candidates,
                                   std::size_t most) {
  const std::u16string written = lx::text::toUtf16(name);
  std::vector<std::pair<std::size_t, std::string>> found;
  for (const std::string& candidate : candidates) {
    const std::optional<std::size_t> remote = remoteness(written, lx::text::toUtf16(candidate));
    if (remote) found.emplace_back(*remote, candidate);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  std::vector<std::string> result;
  for (auto& [remote, candidate] : found) {
    if (result.size() == most) break;
    result.push_back(std::move(candidate));
  }
  return result;
}

}  // namespace nd::tools
