#include "adapters/json/SourceFilesWalk.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "adapters/json/Checksum.h"
#include "adapters/json/ExactReader.h"
#include "adapters/json/Limits.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

/// Files of one identity are one file. A path that leads nowhere stands for itself.
std::string identityOf(const std::string& path) {
  if (path.find('\0') != std::string::npos) return path;
  std::error_code error;
  const std::filesystem::path canonical = std::filesystem::canonical(path, error);
  return error ? path : canonical.string();
}

/// Give the folder in which a file itself lies, links followed; that of the path if they lead nowhere.
std::filesystem::path folderOf(const std::string& path) {
  constexpr int mostLinks = 40;
  std::filesystem::path file = path;
  std::error_code error;
  for (int links = 0; links < mostLinks && std::filesystem::is_symlink(file, error); ++links) {
    const std::filesystem::path target = std::filesystem::read_symlink(file, error);
    if (error) break;
    file = file.parent_path() / target;
  }
  return file.parent_path();
}

std::string resolve(const std::string& including, const std::string& name) {
  return (folderOf(including) / name).string();
}

/// What can't be made out is said when the text itself is read.
std::vector<Include> includesOf(const PaddedText& content) {
  try {
    return ExactReader(content.text()).leadingIncludes();
  } catch (const Fault&) {
    return {};
  }
}

/// List what the beginning of a text includes; none if only the text behind it can tell.
boost::optional<std::vector<Include>> includesOfHead(const PaddedText& head) {
  // What is cut off is at fault where it ends, or where two escapes for one character begin.
  constexpr std::size_t longestCharacter = 12;
  try {
    return ExactReader(head.text()).leadingIncludes();
  } catch (const Fault& fault) {
    const bool isCutOff = fault.offset + longestCharacter >= head.text().size();
    if (isCutOff && head.size() >= headSize) return boost::none;
  }
  return std::vector<Include>();
}

}  // namespace

void SourceFiles::Walk::visitFirst(const std::string& path) {
  visit(path, identityOf(path));
}

std::size_t SourceFiles::Walk::visit(const std::string& path, const std::string& identity) {
  const std::size_t number = files_.size();
  files_.push_back({path, {}, {}, {}, {}, {}});
  numbers_.emplace(identity, number);
  fetch(files_.back());
  chain_.push_back(number);
  // The files move while more of them are found.
  const std::vector<Include> includes = files_[number].includes;
  for (const Include& include : includes) visitIncluded(number, include);
  chain_.pop_back();
  return number;
}

void SourceFiles::Walk::fetch(File& file) {
  checkRights_(file.path);
  if (!isReading_) return survey(file);
  load(file);
  total_ += file.text->size();
}

void SourceFiles::Walk::load(File& file) const {
  file.text.emplace(readFile(file.path, maximumTotalSize - total_));
  file.checksum = checksumOf(file.text->content());
  file.includes = includesOf(*file.text);
}

void SourceFiles::Walk::survey(File& file) const {
  std::string head;
  file.checksum = checksumOfFile(file.path, &head);
  if (auto includes = includesOfHead(PaddedText(std::string_view(head)))) {
    file.includes = std::move(*includes);
  } else {
    load(file);
    file.text = boost::none;
  }
}

void SourceFiles::Walk::visitIncluded(std::size_t number, const Include& include) {
  const std::string path = resolve(files_[number].path, include.name);
  const std::string identity = identityOf(path);
  const auto known = numbers_.find(identity);
  if (known != numbers_.end()) {
    if (isReading_ && isInProgress(known->second)) throw circle(number, include, known->second);
    files_[number].included.push_back(known->second);
    return;
  }
  if (chain_.size() == maximumIncludeDepth) {
    if (!isReading_) return;
    throw failure(number, include,
                  messages::TooManyIncludes(spelled(maximumIncludeDepth), toUtf16(quotePath(path))));
  }
  if (files_.size() == maximumFileCount) {
    if (!isReading_) return;
    throw unreadable(
        number, include, path,
        FileFailure(FileFailureKind::TooLarge, messages::TooManyFiles(spelled(maximumFileCount))));
  }
  const std::size_t next = files_.size();
  const std::size_t depth = chain_.size();
  try {
    visit(path, identity);
  } catch (const FileFailure& reason) {
    // What is said of a file further down stays as it is.
    if (chain_.size() != depth) throw;
    if (isReading_) throw unreadable(number, include, path, reason);
  }
  files_[number].included.push_back(next);
}

bool SourceFiles::Walk::isInProgress(std::size_t number) const {
  return std::find(chain_.begin(), chain_.end(), number) != chain_.end();
}

FormatFailure SourceFiles::Walk::failure(std::size_t number, const Include& include,
                                         const lx::services::CatalogMessage& message) const {
  const File& file = files_[number];
  const FormatFailure inItsFile(placeOf(file.text->text(), include.offset), message);
  return number == 0 ? inItsFile : FormatFailure(inItsFile, file.path);
}

FormatFailure SourceFiles::Walk::circle(std::size_t number, const Include& include, std::size_t again) const {
  std::string chain;
  for (auto link = std::find(chain_.begin(), chain_.end(), again); link != chain_.end(); ++link)
    chain += quotePath(files_[*link].path) + " → ";
  chain += quotePath(files_[again].path);
  return failure(number, include, messages::CircleOfIncludes(toUtf16(chain)));
}

FileFailure SourceFiles::Walk::unreadable(std::size_t number, const Include& include, const std::string& path,
                                          const FileFailure& reason) const {
  const File& file = files_[number];
  return {reason.kind(),
          messages::IncludedFileUnreadable(toUtf16(quotePath(file.path)),
                                           toUtf16(describe(placeOf(file.text->text(), include.offset))),
                                           toUtf16(quotePath(path)), reason.text())};
}

}  // namespace nd::adapters::json
