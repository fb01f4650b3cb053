#include "tests/nd_data_adapter/conformance/faults/Fault.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterManagerV2;

namespace {

/// Comes with a name that an adapter of another kind has already.
class NameTaken final : public Lines<LineAdapter> {
 public:
  NameTaken() {
    AdapterManagerV2::registerCPPAdapter(std::make_shared<AlteredAdapter>(AlteredAdapter::Ways{}));
  }
  NameTaken(const NameTaken&) = delete;
  NameTaken& operator=(const NameTaken&) = delete;
  ~NameTaken() override { AdapterManagerV2::unregisterAdapterByName(u"Lines"); }
};

/// Hands over bad sources that are none of the adapter's.
class OtherBadSources final : public Lines<LineAdapter> {
 public:
  std::vector<std::u16string> badSources() override { return {goodSource() + u".other"}; }
};

class WithoutBadSources final : public Lines<LineAdapter> {
 public:
  std::vector<std::u16string> badSources() override { return {}; }
};

class WithoutAbsentSources final : public Lines<LineAdapter> {
 public:
  std::vector<std::u16string> absentSources() override { return {}; }
};

class WithoutOtherGoodSource final : public Lines<LineAdapter> {
 public:
  std::u16string otherGoodSource() override { return goodSource(); }
};

class WithoutAnySource final : public Lines<LineAdapter> {
 public:
  std::u16string goodSource() override { throw 7; }
};

}  // namespace

std::vector<Fault> brokerFaults() {
  using namespace broken;
  const char* const check = "ServesTheBroker";
  return {
      {"NameTaken", check, "its name 'Lines' is that of another one", make<NameTaken>},
      altered("ChangesItsName", check, "the broker doesn't list the adapter under its name 'Lines'",
              {.name = [](auto& self) { return ++self.count > 4 ? u"Others" : u"Lines"; },
               .section = [](auto&) { return u"Lines"; }}),
      altered("IsNotThereForTheBroker", check, "the broker says that the good source doesn't exist",
              {.isSourceValid = [](auto&, auto&) { return false; }}),
      altered("ReadsNothingForTheBroker", check, "the broker knows nobody who reads the good source",
              {.supportsReading = [](auto&, auto&) { return false; }}),
      altered("ChangesItsSection", check, "the broker can't open the good source for the section '1'",
              {.section =
                   [](auto& self) { return std::u16string(1, static_cast<char16_t>(u'0' + ++self.count)); }}),
      altered("FailsForTheBroker", check, "the broker can't read the good source: 'Not today.'",
              {.getData =
                   [](auto& self, auto&, auto&, auto&, auto& error) {
                     return self.fail(error, AdapterDiagnostic::HardError, u"Not today.");
                   }}),
      altered("DeliversByTurns", check, "the broker gets",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     static int reads = 0;
                     if (!self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error))
                       return false;
                     if (++reads % 2 == 0) inClearArraysInDesiredWS(dataCache);
                     return true;
                   }}),
      altered("HidesItsErrorsFromTheBroker", check, "the broker is told of no error when it reads",
              {.getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                     error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
                     return true;
                   }}),
      {"OtherBadSources", check, "has it another extension?", make<OtherBadSources>},
      planted<FailsBehindTheRead>("FailsBehindTheRead", check, "hasVariants for the source '/"),
      planted<FailsBehindTheRead>("FailsBehindTheReadInWords", check, "good.lines' threw: nobody asks this"),
      {"WithoutBadSources", check, "meetsBadSources", make<WithoutBadSources>},
      {"WithoutAbsentSources", check, "meetsAbsentSources", make<WithoutAbsentSources>},
      {"WithoutOtherGoodSource", check, "hasOtherGoodSource", make<WithoutOtherGoodSource>},
      {"WithoutAnySource", check, "something was thrown that is no std::exception", make<WithoutAnySource>},
  };
}
