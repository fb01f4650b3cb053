#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"

#include <cstdio>

#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/text/Convert.h"

namespace {

enum Operation : std::size_t {
  GetAdapterName,
  GetSupportedExtensions,
  GetSectionName,
  IsSourceValid,
  SupportsReading,
  SupportsWriting,
  Open,
  Close,
  GetCurrentChecksum,
  HasData,
  GetData,
  WriteData,
};

hvArrayPtr makeInt32Scalar() {
  return hvArrayPtr(hvCreateNumericMatrix(1, 1, hvClassCode::Int32, hvComplexity::Real));
}

void store(const hvArrayPtr& scalar, std::int32_t value) {
  hvGetWritableData<std::int32_t>(scalar.get())[0] = value;
}

}  // namespace

std::shared_ptr<CPPAdapterV2> TestV2Adapter::make() {
  return std::shared_ptr<CPPAdapterV2>(static_cast<CPPAdapterV2*>(new TestV2Adapter));
}

TestV2Adapter::TestV2Adapter()
    : names_{u"getAdapterName",
             u"getSupportedExtensions",
             u"getSectionName",
             u"isSourceValid",
             u"supportsReading",
             u"supportsWriting",
             u"open",
             u"close",
             u"getCurrentChecksum",
             u"hasData",
             u"getData",
             u"writeData"} {}

TestV2Adapter::~TestV2Adapter() = default;

void TestV2Adapter::count(std::size_t operation) noexcept {
  counters_[operation] = static_cast<std::int32_t>(static_cast<std::uint32_t>(counters_[operation]) + 1U);
}

CPPAdapterV2* TestV2Adapter::clone() {
  return new TestV2Adapter;
}

std::u16string TestV2Adapter::getAdapterName() {
  count(GetAdapterName);
  return u"TestV2Adapter";
}

std::vector<std::u16string> TestV2Adapter::getSupportedExtensions() {
  count(GetSupportedExtensions);
  return {u".test"};
}

std::u16string TestV2Adapter::getSectionName() {
  count(GetSectionName);
  return u"TestV2Section";
}

bool TestV2Adapter::isSourceValid(const std::u16string&) {
  count(IsSourceValid);
  return true;
}

bool TestV2Adapter::supportsReading(const std::u16string&) {
  count(SupportsReading);
  return true;
}

bool TestV2Adapter::supportsWriting(const std::u16string&) {
  count(SupportsWriting);
  return true;
}

bool TestV2Adapter::open(const std::u16string&) {
  count(Open);
  return true;
}

bool TestV2Adapter::close() {
  count(Close);
  return true;
}

std::vector<std::u16string> TestV2Adapter::getExternalSources() {
  return {u"a.test", u"b.test", u"c.test"};
}

std::u16string TestV2Adapter::getCurrentChecksum() {
  count(GetCurrentChecksum);
  std::uint32_t sum = 0;
  for (const std::int32_t counter : counters_) sum += static_cast<std::uint32_t>(counter);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%d", static_cast<int>(sum));
  return lx::text::toUtf16(text.data());
}

bool TestV2Adapter::hasData() {
  count(HasData);
  return true;
}

bool TestV2Adapter::getData(const boost::shared_ptr<inWorkSpace_tag>& dataCache,
                            lx::base::ElementMultimap<std::u16string, nd::data::adapter::MetaDataEntry>&,
                            const std::u16string&, nd::data::adapter::AdapterError&) {
  count(GetData);
  const hvArrayPtr scalar = makeInt32Scalar();
  for (std::size_t operation = 0; operation < Operations; ++operation) {
    store(scalar, counters_[operation]);
    inAssignInDesiredWS(scalar.get(), lx::text::toUtf8(names_[operation]), dataCache);
  }
  return true;
}

bool TestV2Adapter::writeData(const boost::shared_ptr<inWorkSpace_tag>&,
                              const boost::shared_ptr<inWorkSpace_tag>&,
                              lx::base::ElementMultimap<std::u16string, nd::data::adapter::MetaDataEntry>&,
                              const nd::data::adapter::ChangeReport&, nd::data::adapter::AdapterError&) {
  count(WriteData);
  return true;
}

bool TestV2Adapter::hasVariants() {
  return true;
}
std::vector<std::u16string> TestV2Adapter::getVariantControls() {
  return {u"var1", u"var2"};
}

bool TestV2Adapter::getConditionalData(const boost::shared_ptr<inWorkSpace_tag>& conditionalCache,
                                       const nd::data::adapter::ConditionControlChangeReport&,
                                       const std::u16string&, nd::data::adapter::AdapterError&) {
  const hvArrayPtr scalar = makeInt32Scalar();
  store(scalar, 10);
  inAssignInDesiredWS(scalar.get(), "VariantData", conditionalCache);
  return true;
}
