#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "nd_data_adapter/model/URIOperations.h"
#include "platform/text/Convert.h"
#include "tools/ndx/Source.h"
#include "tools/ndx/nearNames.h"
#include "tools/ndx/quote.h"

namespace nd::tools {
namespace {

namespace fs = std::filesystem;

/// List the names in a folder; none if it can't be read.
std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code failed;
  for (fs::directory_iterator at(folder.empty() ? "." : folder, failed), end; !failed && at != end;
       at.increment(failed)) {
    names.push_back(at->path().filename().string());
  }
  return names;
}

}  // namespace

std::vector<std::string> hintsForTag(const std::string& source) {
  std::error_code failed;
  const std::string path = lx::text::toUtf8(ndx::broker::URIOperations::removeTag(lx::text::toUtf16(source)));
  if (path == source || !fs::exists(source, failed)) return {};
  return {fmt::format(
      "There is a file {}, but what stands behind {} is taken as a tag. Give the file a name without #, or "
      "make a link to it that has one.",
      quote(source), quote(path))};
}

std::vector<std::string> hintsForPath(const std::string& source) {
  std::vector<std::string> hints = hintsForTag(source);
  if (!hints.empty()) return hints;
  std::error_code failed;
  const std::string path = lx::text::toUtf8(ndx::broker::URIOperations::removeTag(lx::text::toUtf16(source)));
  if (fs::is_directory(path, failed)) {
    hints.push_back(fmt::format("{} is a folder; name a file in it.", quote(path)));
    return hints;
  }
  if (fs::exists(path, failed)) return hints;
  hints.push_back(fmt::format("There is no file {}.", quote(path)));
  const fs::path asPath(path);
  for (const std::string& near : nearNames(asPath.filename().string(), namesIn(asPath.parent_path()))) {
    hints.push_back(fmt::format("Did you mean {}?", quote((asPath.parent_path() / near).string())));
  }
  return hints;
}

}  // namespace nd::tools
