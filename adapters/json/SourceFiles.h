#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <boost/optional.hpp>

#include "adapters/json/Document.h"
#include "adapters/json/PaddedText.h"

namespace nd::adapters::json {

/// The files of a source: the one at its path, and those that it includes, directly or through others. A file
/// that is included twice is read once, also if it goes by several names; an included file's name counts from
/// the folder in which the including file itself lies, wherever links to it stand.
///
///     SourceFiles files = SourceFiles::read("gains.json", checkRights);
///     Content content = files.takeContent();
///
/// What is wrong with an included file is said with its path.
class SourceFiles {
 public:
  /// Raises `FileFailure` if the file at a path may not be read.
  using CheckRights = std::function<void(const std::string& path)>;

  /// Read all files. Raises `FileFailure` for one that can't be read and for too many or too large ones, and
  /// `FormatFailure` for files that include one another in a circle or too deep; a text that is wrong
  /// otherwise is taken.
  static SourceFiles read(const std::string& path, const CheckRights& checkRights);

  /// Look which files there are and what they hold. That takes little memory, but for a file that names so
  /// many others that its beginning doesn't hold them all. Raises `FileFailure` only for the file at the
  /// path; an included one that can't be read counts as a file without content, and those beyond the limits
  /// don't count.
  static SourceFiles survey(const std::string& path, const CheckRights& checkRights);

  /// Give the checksum: of a single file that of its bytes, else one of those of all files and of which file
  /// includes which.
  std::u16string checksum() const;

  /// List the paths of the included files, in the order in which they are first named.
  std::vector<std::string> included() const;

  /// Make one content of what was read: what a file includes is overridden by what the file itself holds.
  /// Raises `FormatFailure`.
  Content takeContent();

 private:
  class Walk;

  struct File {
    std::string path;
    std::u16string checksum;
    boost::optional<PaddedText> text;
    std::vector<Include> includes;
    /// Their numbers.
    std::vector<std::size_t> included;
    boost::optional<Content> content;
  };

  const Content& contentOf(std::size_t number);
  Document parse(const File& file) const;
  void checkMetaData(const Document& own, const Content& whole, const File& file) const;

  std::vector<File> files_;
};

}  // namespace nd::adapters::json
