#pragma once

#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/FolderSubject.h"
#include "tests/nd_data_adapter/conformance/lines.h"

/// Adapters that keep their contract in other ways than most, and the subjects that say so.
namespace natures {

/// Reads through a handle that it has from `open` on, so that it reads on when the file is removed.
class ReadsThroughItsHandle final : public LineAdapter {
 public:
  ReadsThroughItsHandle() = default;
  ReadsThroughItsHandle(const ReadsThroughItsHandle&) = delete;
  ReadsThroughItsHandle& operator=(const ReadsThroughItsHandle&) = delete;
  ~ReadsThroughItsHandle() override { release(); }

  CPPAdapterV2* clone() override { return new ReadsThroughItsHandle; }
  bool open(const std::u16string& source) override {
    release();
    if (!LineAdapter::open(source)) return false;
    file_ = ::open(lx::text::toUtf8(source).c_str(), O_RDONLY | O_CLOEXEC);
    return file_ >= 0;
  }
  bool close() override {
    release();
    return LineAdapter::close();
  }

 protected:
  bool isThere(const std::filesystem::path& path) const override {
    return file_ >= 0 || LineAdapter::isThere(path);
  }
  std::string contentOf(const std::filesystem::path&) const override {
    std::string content(4096, ' ');
    const ssize_t size = ::pread(file_, content.data(), content.size(), 0);
    content.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return content;
  }

 private:
  void release() noexcept {
    if (file_ >= 0) ::close(file_);
    file_ = -1;
  }

  int file_ = -1;
};

struct OpenFile final : Lines<ReadsThroughItsHandle> {
  bool mayHoldFilesWhileOpen() const override { return true; }
};

/// Makes its data of the number that the source's name is. Anybody may ask for any number.
class Series final : public nd::conformance::Subject {
 public:
  std::shared_ptr<CPPAdapterV2> makeAdapter() override {
    return std::make_shared<AlteredAdapter>(AlteredAdapter::Ways{
        .isSourceValid = [](auto&, auto&) { return true; },
        .open =
            [](auto& self, auto& source) {
              self.bind(source);
              return true;
            },
        .checksum = [](auto& self) { return self.boundSource(); },
        .hasData = [](auto& self) { return isNumber(self.boundSource()); },
        .getData =
            [](auto& self, auto& dataCache, auto& metaDataCache, auto&, auto& error) {
              if (!isNumber(self.boundSource())) {
                const auto diagnostic = nd::data::adapter::AdapterDiagnostic::UnrecognizedFormat;
                return self.fail(error, diagnostic, u"There is no series of this name.");
              }
              inClearArraysInDesiredWS(dataCache);
              metaDataCache.clear();
              AlteredAdapter::assign({{"first", self.boundSource()[0] - u'0'}, {"second", 1}}, dataCache);
              return true;
            }});
  }
  std::u16string goodSource() override { return u"3.lines"; }
  std::u16string otherGoodSource() override { return u"4.lines"; }
  std::vector<std::u16string> badSources() override { return {u"three.lines"}; }
  bool meetsAbsentSources() const override { return false; }
  bool canChangeSources() const override { return false; }

 private:
  static bool isNumber(const std::u16string& source) {
    return !source.empty() && source[0] >= u'0' && source[0] <= u'9';
  }
};

/// Files beside which a revision stands, counted up at each change. It is the checksum.
class Revisions final : public AlteredLines {
 public:
  Revisions() : AlteredLines({.checksum = revisionOf}) { bump(); }
  void changeGoodSource() override { bump(), AlteredLines::changeGoodSource(); }
  void changeEndOfGoodSource() override { bump(), AlteredLines::changeEndOfGoodSource(); }
  void rewriteGoodSource() override { bump(), AlteredLines::rewriteGoodSource(); }
  void spoilGoodSource() override { bump(), AlteredLines::spoilGoodSource(); }
  bool keepsChecksumOfRewrittenSource() const override { return false; }

 private:
  static std::u16string revisionOf(AlteredAdapter& self) {
    std::ifstream file(
        std::filesystem::path(lx::text::toUtf8(self.boundSource())).replace_extension(".revision"));
    std::string revision = "0";
    std::getline(file, revision);
    return lx::text::toUtf16(revision);
  }
  void bump() { std::ofstream(pathOf("good").replace_extension(".revision")) << ++revision_; }

  int revision_ = 0;
};

/// Adds to what the client holds.
class Adds final : public AlteredLines {
 public:
  Adds()
      : AlteredLines({.getData = [](auto& self, auto& dataCache, auto& metaDataCache, auto&, auto& error) {
          using nd::data::adapter::AdapterDiagnostic;
          std::string content;
          AlteredAdapter::Variables variables;
          if (!self.isOpen() || !self.readContent(content) || !AlteredAdapter::parse(content, variables))
            return self.fail(error, AdapterDiagnostic::Inaccessible, u"It can't be read.");
          AlteredAdapter::assign(variables, dataCache);
          AlteredAdapter::addUnit(metaDataCache);
          return true;
        }}) {}
  bool replacesWhatTheClientHeld() const override { return false; }
};

/// Finds out what isn't there by the read only.
class Lazy final : public AlteredLines {
 public:
  Lazy()
      : AlteredLines({.open = [](auto& self, auto& source) {
          self.bind(source);
          return true;
        }}) {}
  bool findsAbsentSourcesAtOpen() const override { return false; }
};

/// Has data of its own without a source, too.
class NeedsNoSource final : public AlteredLines {
 public:
  NeedsNoSource()
      : AlteredLines(
            {.hasData = [](auto& self) { return !self.isOpen() || self.LineAdapter::hasData(); },
             .getData =
                 [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                   return !self.isOpen() ||
                          self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                 }}) {}
  bool hasDataOnlyWhileOpen() const override { return false; }
};

struct OneSource final : Lines<LineAdapter> {
  std::u16string otherGoodSource() override { return goodSource(); }
  bool hasOtherGoodSource() const override { return false; }
};

struct Unfailing final : Lines<LineAdapter> {
  bool meetsBadSources() const override { return false; }
  bool meetsAbsentSources() const override { return false; }
};

struct Fixed final : Lines<LineAdapter> {
  bool canChangeSources() const override { return false; }
};

/// Must not be asked for just any text.
class Careful final : public AlteredLines {
 public:
  Careful()
      : AlteredLines({.open = [](auto& self, auto& source) {
          if (source.size() > 1000) throw std::runtime_error("the neighbour's telephone rings");
          return self.LineAdapter::open(source);
        }}) {}
  std::vector<std::u16string> oddTexts() override { return {goodSource() + u"#TAG"}; }
};

}  // namespace natures
