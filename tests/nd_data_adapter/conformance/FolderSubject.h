#pragma once

// [subject]
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "nd_data_adapter/conformance/Subject.h"
#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/FolderAdapter.h"

class FolderSubject final : public nd::conformance::Subject {
 public:
  FolderSubject() {
    write("good", {"1", "20"});
    write("other", {"2", "30"});
    write("bad", {"3", "no number"});
  }
  ~FolderSubject() override {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<FolderAdapter>(); }
  std::u16string goodSource() override { return source("good"); }
  std::u16string otherGoodSource() override { return source("other"); }
  std::vector<std::u16string> badSources() override { return {source("bad")}; }
  std::vector<std::u16string> absentSources() override { return {source("absent")}; }

  void changeGoodSource() override { write("good", {"2", "30"}); }
  void changeEndOfGoodSource() override { write("good", {"1", "21"}); }
  void rewriteGoodSource() override { write("good", {"1", "20"}); }
  void spoilGoodSource() override { write("good", {"3", "no number"}); }
  void removeGoodSource() override { std::filesystem::remove_all(folder("good")); }

  /// All files with their contents: what a read must not change.
  std::string surroundings() override {
    std::set<std::string> lines;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_)) {
      std::string content;
      if (entry.is_regular_file()) std::getline(std::ifstream(entry.path()), content, '\0');
      lines.insert(entry.path().string() + ": " + content + "\n");
    }
    std::string text;
    for (const std::string& line : lines) text += line;
    return text;
  }

 private:
  /// A folder of its own, so that tests can run side by side.
  static std::filesystem::path newRoot() {
    std::string name = (std::filesystem::temp_directory_path() / "folders_XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder can be made like " + name);
    return name;
  }

  std::filesystem::path folder(const std::string& name) const { return root_ / (name + ".numbers"); }
  std::u16string source(const std::string& name) const { return lx::text::toUtf16(folder(name).string()); }

  void write(const std::string& name, const std::vector<std::string>& values) const {
    std::filesystem::create_directory(folder(name));
    std::ofstream(folder(name) / "gain") << values[0];
    std::ofstream(folder(name) / "rate") << values[1];
  }

  std::filesystem::path root_ = newRoot();
};
// [/subject]
