#pragma once

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "nd_data_adapter/conformance/Subject.h"
#include "platform/text/Convert.h"

namespace nd::conformance {

/// Contents of files for the checks, byte by byte.
struct FileContents {
  /// The extension with its dot: ".ini".
  std::string extension{};
  /// Holds at least one variable.
  std::string good{};
  /// Has the same variables as `good`, with other values.
  std::string otherGood{};
  /// Can't be read, best broken off late, behind what could be read.
  std::vector<std::string> bad{};
  /// Differs from `good` at its end alone, which not every checksum sees. Unless given it is `good` with the
  /// last byte that is another one in `otherGood`, whether or not it can be read.
  std::string changedAtTheEnd{};
  /// The contents have one size, so that a checksum must see more. False only if the format doesn't allow it.
  bool haveOneSize = true;
};

/// The sources of an adapter that reads single files, in a temporary folder that goes with the subject:
///
///     struct Ini : nd::conformance::FileSubject {
///       Ini() : FileSubject({.extension = ".ini", .good = "a=1", .otherGood = "a=2", .bad = {"a=1\na"}}) {}
///       std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<IniAdapter>(); }
///     };
///
/// Absent sources are a file and a folder that aren't there, and a folder that has the name of a file. A
/// changed file keeps its time, and a rewritten one gets another: neither tells whether the content is
/// another one.
class FileSubject : public Subject {
 public:
  explicit FileSubject(FileContents contents)
      : contents_(withChangeAtTheEnd(std::move(contents))), folder_(newFolder()) {
    write("good", contents_.good);
    write("other", contents_.otherGood);
    for (std::size_t at = 0; at < contents_.bad.size(); ++at) write(nameOfBad(at), contents_.bad[at]);
    std::filesystem::create_directory(pathOf("folder"));
  }

  ~FileSubject() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::u16string goodSource() override { return source("good"); }
  std::u16string otherGoodSource() override { return source("other"); }

  std::vector<std::u16string> badSources() override {
    std::vector<std::u16string> sources;
    for (std::size_t at = 0; at < contents_.bad.size(); ++at) sources.push_back(source(nameOfBad(at)));
    return sources;
  }

  std::vector<std::u16string> absentSources() override {
    return {source("absent"), source("absent/file"), source("folder")};
  }

  void changeGoodSource() override { change("good", contents_.otherGood); }
  void changeEndOfGoodSource() override { change("good", contents_.changedAtTheEnd); }
  void spoilGoodSource() override { change("good", contents_.bad.at(0)); }
  void removeGoodSource() override { std::filesystem::remove(pathOf("good")); }

  void rewriteGoodSource() override {
    const auto time = std::filesystem::last_write_time(pathOf("good"));
    write("good", contents_.good);
    std::filesystem::last_write_time(pathOf("good"), time - std::chrono::hours(1));
  }

  std::string surroundings() override {
    std::vector<std::string> lines;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
      std::string line = entry.path().lexically_relative(folder_).string();
      if (entry.is_regular_file()) {
        std::ifstream file(entry.path(), std::ios::binary);
        line += ": ";
        line.append(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
      }
      lines.push_back(std::move(line));
    }
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
  }

 protected:
  /// Write a file of the folder anew; its name is given without the extension.
  void write(const std::string& name, const std::string& content) const {
    std::ofstream file(pathOf(name), std::ios::binary | std::ios::trunc);
    file << content;
    if (!file.flush()) throw std::runtime_error("the file " + pathOf(name).string() + " can't be written");
  }

  /// Write a file that is there without a trace in its time.
  void change(const std::string& name, const std::string& content) const {
    const auto time = std::filesystem::last_write_time(pathOf(name));
    write(name, content);
    std::filesystem::last_write_time(pathOf(name), time);
  }

  /// Give a file of the folder as a source; its name is given without the extension.
  std::u16string source(const std::string& name) const { return lx::text::toUtf16(pathOf(name).string()); }

  std::filesystem::path pathOf(const std::string& name) const {
    return folder_ / (name + contents_.extension);
  }

 private:
  static FileContents withChangeAtTheEnd(FileContents contents) {
    const std::string& good = contents.good;
    const std::string& other = contents.otherGood;
    if (good == other) throw std::invalid_argument("the contents good and otherGood are the same");
    if (contents.haveOneSize && good.size() != other.size()) {
      throw std::invalid_argument("the content good has " + std::to_string(good.size()) +
                                  " bytes and otherGood " + std::to_string(other.size()) +
                                  ": let them have as many, so that a checksum " +
                                  "over the size is found; if they can't, let haveOneSize be false");
    }
    std::string& changed = contents.changedAtTheEnd;
    if (!changed.empty()) return contents;
    changed = good.size() == other.size() ? good : other;
    for (std::size_t at = good.size(); changed == good && at-- > 0;) changed[at] = other[at];
    return contents;
  }

  static std::filesystem::path newFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "conformance_XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), "no folder can be made like " + name);
    }
    return name;
  }

  static std::string nameOfBad(std::size_t at) { return "bad_" + std::to_string(at + 1); }

  FileContents contents_;
  std::filesystem::path folder_;
};

}  // namespace nd::conformance
