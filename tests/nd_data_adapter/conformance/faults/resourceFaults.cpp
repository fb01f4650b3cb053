#include <fcntl.h>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

/// Allows what is no fault by itself, so that only the other half of it is one.
template <class Adapter>
class MayHoldFiles final : public Lines<Adapter> {
 public:
  bool mayHoldFilesWhileOpen() const override { return true; }
};

class NeverClosesItsFile final : public broken::Adapter<NeverClosesItsFile> {
 public:
  bool open(const std::u16string& source) override {
    return LineAdapter::open(source) && ::open(lx::text::toUtf8(source).c_str(), O_RDONLY | O_CLOEXEC) >= 0;
  }
};

/// What is out of reach for the adapter, though not for the test program, which has a sanitizer to please.
std::vector<hvArrayPtr>& leaked() {
  static std::vector<hvArrayPtr> arrays;
  return arrays;
}

}  // namespace

std::vector<Fault> resourceFaults() {
  using namespace broken;
  const char* const pointers = "BearsEmptyPointers";
  const char* const texts = "BearsAnyText";
  const char* const files = "KeepsNoFileHandle";
  const char* const dropped = "ReleasesAllWithoutClose";
  return {
      planted<WantsAWorkspace>("WantsAWorkspace", pointers, "getData for the source '/"),
      planted<WantsAWorkspace>("WantsAWorkspaceInWords", pointers,
                               "good.lines' threw: there is no workspace"),
      altered("RefusesToReadNowhere", pointers,
              "a good source can't be read into an empty pointer: 'Whereto?'",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (!dataCache) return self.fail(error, AdapterDiagnostic::GenericFailure, u"Whereto?");
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("ReadsNothingNowhere", pointers, "if the workspace is an empty pointer",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     return !dataCache ||
                            self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      planted<ThrowsAtOddSources>("ThrowsAtOddSources", texts, "isSourceValid for the source 'xxxxx"),
      altered("ThrowsWhatIsNoException", texts, "threw something that is no std::exception; only getData",
              {.supportsReading = [](auto&, auto& source) -> bool {
                if (source.size() > 1000) throw 7;
                return true;
              }}),
      planted<LeaksAnArray>("LeaksAnArray", "LeaksNoArray", "host arrays"),
      planted<KeepsItsFileOpen>("KeepsItsFileOpen", files, "after open these files are still open"),
      {"NeverClosesItsFile", files, "after close these files are still open",
       make<MayHoldFiles<NeverClosesItsFile>>},
      {"ReleasesItsFileInCloseOnly", dropped, "these files are still open",
       make<MayHoldFiles<ReleasesItsFileInCloseOnly>>},
      altered("FreesItsArraysInCloseOnly", dropped, "arrays are left of them",
              {.open =
                   [](auto& self, auto& source) {
                     leaked().emplace_back(hvCreateDoubleScalar(1.0));
                     return self.LineAdapter::open(source);
                   },
               .close =
                   [](auto& self) {
                     leaked().clear();
                     return self.LineAdapter::close();
                   }}),
      altered("TakesItsDataAlong", dropped, "when the adapter goes, its client no longer holds what was read",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     self.workspace = dataCache;
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   },
               .destructor = [](auto& self) { inClearArraysInDesiredWS(self.workspace); }}),
  };
}
