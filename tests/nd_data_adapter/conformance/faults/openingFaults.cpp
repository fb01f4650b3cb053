#include <fstream>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::data::adapter::AdapterDiagnostic;

namespace {

/// Leaves a file beside the source, and creates the source if it isn't there.
void leaveTrace(const std::u16string& source, const char* name) {
  std::ofstream(lx::text::toUtf8(source) + name, std::ios::app).flush();
}

}  // namespace

std::vector<Fault> openingFaults() {
  using namespace broken;
  const char* const apart = "TellsGoodSourcesFromAbsentOnes";
  const char* const asking = "AnswersQuestionsWithoutSideEffects";
  const char* const order = "OpensAndClosesInAnyOrder";
  const auto no = [](auto&, auto&) { return false; };
  return {
      altered("KnowsNoSource", apart, "isSourceValid is false for the good source", {.isSourceValid = no}),
      altered("ReadsNoSource", apart, "supportsReading is false for the good source",
              {.supportsReading = no}),
      altered("SaysThatItCanNotOpen", apart, "open is false for the good source",
              {.open =
                   [](auto& self, auto& source) {
                     self.bind(source);
                     return false;
                   }}),
      altered("NeverHasData", apart, "hasData is false for the good source",
              {.hasData = [](auto&) { return false; }}),
      altered("FailsAlways", apart, "can't be read: 'Not today.'",
              {.getData =
                   [](auto& self, auto&, auto&, auto&, auto& error) {
                     return self.fail(error, AdapterDiagnostic::HardError, u"Not today.");
                   }}),
      altered("DeliversNothing", apart, "gives no variable",
              {.getData = [](auto&, auto&, auto&, auto&, auto&) { return true; }}),
      planted<TakesAnythingForASource>("TakesAnythingForASource", apart,
                                       "isSourceValid is true for the absent source"),
      altered("OpensAnything", apart, "open is true for the absent source",
              {.open =
                   [](auto& self, auto& source) {
                     self.bind(source);
                     return true;
                   }}),
      altered("HasDataOfAnything", apart, "hasData is true for the absent source",
              {.hasData = [](auto& self) { return self.isOpen(); }}),

      altered("ChangesItsMind", asking, "get other answers the second time",
              {.isSourceValid = [](auto& self, auto&) { return ++self.count % 2 == 0; }}),
      planted<BindsToWhatItIsAskedAbout>("BindsToWhatItIsAskedAbout", asking,
                                         "An open adapter that was asked about other sources"),
      altered("TakesWhatItIsAskedAboutForExternal", asking, "getExternalSources gives another list",
              {.isSourceValid =
                   [](auto& self, auto& source) {
                     self.note = source;
                     return self.LineAdapter::isSourceValid(source);
                   },
               .externalSources = [](auto& self) { return std::vector<std::u16string>{self.note}; }}),
      altered("TakesWhatItIsAskedAboutForControls", asking, "getVariantControls gives another list",
              {.isSourceValid =
                   [](auto& self, auto& source) {
                     self.note = source;
                     return self.LineAdapter::isSourceValid(source);
                   },
               .variantControls = [](auto& self) { return std::vector<std::u16string>{self.note}; }}),
      altered("CreatesWhatIsAbsent", asking, "open of",
              {.open =
                   [](auto& self, auto& source) {
                     leaveTrace(source, "");
                     return self.LineAdapter::open(source);
                   }}),
      altered("LogsItsReads", asking, "reading",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     leaveTrace(self.boundSource(), ".log");
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("LeavesAFileWhenItCloses", asking, "close of",
              {.close =
                   [](auto& self) {
                     leaveTrace(self.boundSource(), ".closed");
                     return self.LineAdapter::close();
                   }}),
      altered("LeavesAFileWhenItGoes", asking, "an adapter that was dropped with",
              {.destructor =
                   [](auto& self) {
                     if (self.isOpen()) leaveTrace(self.boundSource(), ".gone");
                   }}),

      planted<StaysWithItsFirstSource>("StaysWithItsFirstSource", order,
                                       "After open of another source, open: getData delivers"),
      altered("OpensOnlyOnce", order, "After open: open is false for a good source",
              {.open = [](auto& self,
                          auto& source) { return self.LineAdapter::open(source) && ++self.count < 2; }}),
      altered("LosesItsDataByClose", order, "After close, open: hasData is false and not true",
              {.close =
                   [](auto& self) {
                     ++self.count;
                     return self.LineAdapter::close();
                   },
               .hasData = [](auto& self) { return self.count == 0 && self.LineAdapter::hasData(); }}),
      altered("CountsItsOpeningsInTheChecksum", order, "After open, open: the checksum is",
              {.open =
                   [](auto& self, auto& source) {
                     self.note += u"+";
                     return self.LineAdapter::open(source);
                   },
               .checksum = [](auto& self) { return self.LineAdapter::getCurrentChecksum() + self.note; }}),
      altered("ReadsOnlyOnce", order, "the diagnostic of getData is 6 and not 0; it says 'Enough.'",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (++self.count > 1) return self.fail(error, AdapterDiagnostic::HardError, u"Enough.");
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("HasDataWithoutASource", order, "hasData is true, and nothing is open",
              {.hasData = [](auto& self) { return !self.isOpen() || self.LineAdapter::hasData(); }}),
      altered("ReadsNothingWithoutAnError", order,
              "Before any open: getData with nothing open states no error",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     return !self.isOpen() ||
                            self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("ClearsWithNothingOpen", order,
              "After open, close, open, close: getData with nothing open: the client holds",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (!self.isOpen()) inClearArraysInDesiredWS(dataCache);
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
  };
}
