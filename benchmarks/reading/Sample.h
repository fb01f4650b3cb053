#pragma once

#include <filesystem>
#include <string>

namespace reading {

/// A JSON file of some forty megabytes in a folder of its own, which goes with it: a hundred thousand numbers
/// and two hundred lists of ten thousand, whose values are random, need all digits, and are the same in every
/// run.
class Sample {
 public:
  Sample();
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;
  ~Sample();

  std::string path() const { return (folder_ / "sample.json").string(); }
  const std::filesystem::path& folder() const noexcept { return folder_; }

 private:
  std::filesystem::path folder_;
};

}  // namespace reading
