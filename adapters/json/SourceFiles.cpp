#include "adapters/json/SourceFiles.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "adapters/json/Checksum.h"
#include "adapters/json/DocumentMerge.h"
#include "adapters/json/FormatFailure.h"
#include "adapters/json/Reader.h"
#include "adapters/json/SourceFilesWalk.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "adapters/json/nearestName.h"
#include "platform/text/Convert.h"
#include "platform/text/Hash.h"

namespace nd::adapters::json {
SourceFiles SourceFiles::read(const std::string& path, const CheckRights& checkRights) {
  SourceFiles files;
  Walk(files, checkRights, true).visitFirst(path);
  return files;
}

SourceFiles SourceFiles::survey(const std::string& path, const CheckRights& checkRights) {
  SourceFiles files;
  Walk(files, checkRights, false).visitFirst(path);
  return files;
}

std::u16string SourceFiles::checksum() const {
  if (files_.size() == 1) return files_.front().checksum;
  std::string all;
  for (const File& file : files_) {
    all += lx::text::toUtf8(file.checksum);
    for (const std::size_t included : file.included) all += " " + std::to_string(included);
    all += "\n";
  }
  return checksumOf(all);
}

std::vector<std::string> SourceFiles::included() const {
  std::vector<std::string> paths;
  std::transform(files_.begin() + 1, files_.end(), std::back_inserter(paths),
                 [](const File& file) { return file.path; });
  return paths;
}

Content SourceFiles::takeContent() {
  static_cast<void>(contentOf(0));
  return std::move(*files_.front().content);
}

const Content& SourceFiles::contentOf(std::size_t number) {
  File& file = files_[number];
  if (file.content) return *file.content;
  DocumentMerge merge;
  for (const std::size_t included : file.included) merge.add(contentOf(included));
  Document own = parse(file);
  if (file.included.empty()) {
    checkMetaData(own, own, file);
    file.content = std::move(own);
  } else {
    merge.add(own);
    Content whole = merge.finish();
    checkMetaData(own, whole, file);
    file.content = std::move(whole);
  }
  file.text = boost::none;
  return *file.content;
}

Document SourceFiles::parse(const File& file) const {
  try {
    return readDocument(*file.text);
  } catch (const FormatFailure& failure) {
    if (&file == &files_.front()) throw;
    throw FormatFailure(failure, file.path);
  }
}

void SourceFiles::checkMetaData(const Document& own, const Content& whole, const File& file) const {
  if (own.metaData.empty()) return;
  std::unordered_set<std::string_view, lx::text::Hash> known;
  std::vector<std::string_view> names;
  for (const Variable& variable : whole.variables) {
    known.insert(variable.name);
    names.push_back(variable.name);
  }
  for (std::size_t position = 0; position < own.metaData.size(); ++position) {
    const std::string& variable = own.metaData[position].variable;
    if (known.contains(variable)) continue;
    const Place place = placeOf(file.text->text(), own.metaDataOffsets[position]);
    const auto failure = [&](const lx::services::CatalogMessage& message) {
      const FormatFailure inItsFile(place, message);
      return &file == &files_.front() ? inItsFile : FormatFailure(inItsFile, file.path);
    };
    if (names.empty()) throw failure(messages::MetaDataWithoutVariables(quoted(variable)));
    throw failure(messages::MetaDataOfNothing(quoted(nearestName(variable, names)), quoted(variable)));
  }
}

}  // namespace nd::adapters::json
