#include <fstream>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

using Self = AlteredAdapter;
using Workspace = CPPAdapterV2::Workspace;
using MetaDataCache = CPPAdapterV2::MetaDataCache;
using Text = std::u16string;
using Error = AlteredAdapter::Error;

/// Alters what is done when a read fails.
AlteredAdapter::Ways whenItFails(std::function<void(Self&, const Workspace&, MetaDataCache&, Error&)> act) {
  return {.getData = [act = std::move(act)](Self& self, const Workspace& dataCache,
                                            MetaDataCache& metaDataCache, const Text& prevChecksum,
                                            Error& error) {
    if (self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) return true;
    act(self, dataCache, metaDataCache, error);
    return false;
  }};
}

/// Alters which error is stated when a read fails.
AlteredAdapter::Ways stating(std::function<void(Self&, Error&)> act) {
  return whenItFails([act = std::move(act)](Self& self, auto&, auto&, Error& error) { act(self, error); });
}

}  // namespace

std::vector<Fault> failureFaults() {
  using namespace broken;
  const char* const client = "LeavesTheClientsDataAfterAnError";
  const char* const words = "StatesErrorsWithNameAndSource";
  const char* const refusal = "RefusesWhatItSaysItCanNotDo";
  return {
      planted<DeliversWhileItReads>("DeliversWhileItReads", client,
                                    "holds data from elsewhere: the client holds gain = 3"),
      planted<DropsTheMetadataFirst>("DropsTheMetadataFirst", client, "holds data from elsewhere"),
      altered("HidesItsErrors", client, "'the checksum of another content' states no error",
              stating([](Self&, Error& error) {
                error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
              })),
      altered("ClearsForThoseWhoHaveSeenSomething", client,
              "'the checksum of another content' and holds data from",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (prevChecksum == u"the checksum of another content")
                       inClearArraysInDesiredWS(dataCache);
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("ClearsWhatAnotherSourceGave", client, "and holds data from another source: the client holds",
              whenItFails([](Self&, const Workspace& dataCache, auto&, auto&) {
                if (inGetValueFromWorkspace("gain", dataCache) != nullptr)
                  inClearArraysInDesiredWS(dataCache);
              })),
      altered("ClearsWhenItsFileWasSpoiled", client,
              "The good source was spoiled while it was open: the client holds no variables",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) {
                       self.note = self.boundSource();
                       return true;
                     }
                     if (self.note == self.boundSource()) inClearArraysInDesiredWS(dataCache);
                     return false;
                   }}),
      altered("ClearsWhenItsFileIsGone", client,
              "The good source was removed while it was open: the client holds",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) {
                       self.note = self.boundSource();
                       return true;
                     }
                     std::string content;
                     if (self.note == self.boundSource() && !self.readContent(content)) metaDataCache.clear();
                     return false;
                   }}),
      altered("GoesOnWithoutItsFile", client, "was removed while it was open, and no error is stated",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     std::string content;
                     if (self.note == self.boundSource() && !self.readContent(content)) return true;
                     if (!self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error))
                       return false;
                     self.note = self.boundSource();
                     return true;
                   }}),

      altered("StatesADiagnosticOfItsOwn", words,
              "states the diagnostic 99, which is none of the enumeration",
              stating([](Self& self, Error& error) {
                self.fail(error, static_cast<AdapterDiagnostic>(99), u"It went wrong.");
              })),
      altered("StatesErrorsWithoutWords", words, "states an error without a message",
              stating([](Self& self, Error& error) { self.fail(error, error.getId(), u""); })),
      altered("StatesAnotherName", words, "states an error of the adapter 'Other' and not of 'Lines'",
              stating([](Self&, Error& error) {
                error.setError(error.getId(), error.errorMessage(), u"Other", error.getSource());
              })),
      altered("StatesNoErrorAtAll", words, "states no error", stating([](Self&, Error& error) {
                error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
              })),
      planted<ForgetsTheSource>("ForgetsTheSource", words, "states an error of the source ''"),

      planted<SaysThatItWrote>("SaysThatItWrote", refusal,
                               "writeData without supportsWriting states no error"),
      altered(
          "RefusesWithoutWords", refusal,
          "writeData without supportsWriting states an error without a message",
          {.writeData = [](auto& self, auto&, auto&,
                           auto& error) { return self.fail(error, AdapterDiagnostic::Unsupported, u""); }}),
      altered("ClearsWhatItRefuses", refusal, "writeData without supportsWriting: the client holds nothing",
              {.writeData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& error) {
                     inClearArraysInDesiredWS(dataCache);
                     metaDataCache.clear();
                     return self.fail(error, AdapterDiagnostic::Unsupported, u"No.");
                   }}),
      altered("WritesAllTheSame", refusal, "writeData without supportsWriting changes what is around",
              {.writeData =
                   [](auto& self, auto&, auto&, auto& error) {
                     std::ofstream(lx::text::toUtf8(self.boundSource())) << "gain 7\n";
                     return self.fail(error, AdapterDiagnostic::Unsupported, u"No.");
                   }}),
      altered("HasVariantsWithoutControls", refusal, "hasVariants is true, and getVariantControls is empty",
              {.hasVariants = [](auto&) { return true; }}),
      altered("HasControlsWithoutVariants", refusal,
              "hasVariants is false, and getVariantControls names controls",
              {.variantControls = [](auto&) { return std::vector<Text>{u"speed"}; }}),
  };
}
