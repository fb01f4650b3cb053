#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "adapters/json/FileAccess.h"
#include "adapters/json/FormatFailure.h"
#include "adapters/json/SourceFiles.h"

namespace nd::adapters::json {

/// Finds the files of a source, each before those that it includes.
class SourceFiles::Walk {
 public:
  /// With `isReading` contents are kept, and an included file that can't be had is a failure.
  Walk(SourceFiles& into, const CheckRights& checkRights, bool isReading)
      : files_(into.files_), checkRights_(checkRights), isReading_(isReading) {}

  void visitFirst(const std::string& path);

 private:
  std::size_t visit(const std::string& path, const std::string& identity);
  void visitIncluded(std::size_t number, const Include& include);
  void fetch(File& file);
  void load(File& file) const;
  void survey(File& file) const;
  bool isInProgress(std::size_t number) const;
  FormatFailure failure(std::size_t number, const Include& include,
                        const lx::services::CatalogMessage& message) const;
  FormatFailure circle(std::size_t number, const Include& include, std::size_t again) const;
  FileFailure unreadable(std::size_t number, const Include& include, const std::string& path,
                         const FileFailure& reason) const;

  std::vector<File>& files_;
  const CheckRights& checkRights_;
  bool isReading_;
  /// How many bytes have been read.
  std::uint64_t total_ = 0;
  /// The numbers of the files by what makes them one, and of those whose includes are being looked at.
  std::unordered_map<std::string, std::size_t> numbers_;
  std::vector<std::size_t> chain_;
};

}  // namespace nd::adapters::json
