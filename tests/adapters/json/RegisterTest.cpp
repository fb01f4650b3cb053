#include <string>

#include <boost/uuid/nil_generator.hpp>
#include <boost/uuid/random_generator.hpp>
#include <gtest/gtest.h>

#include "adapters/json/register.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/arrays.h"

using nd::adapters::registerJsonAdapter;
using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;

namespace {

class RegisteredJsonAdapter : public AdapterFixture {
 protected:
  void SetUp() override { ASSERT_TRUE(registerJsonAdapter()); }
  void TearDown() override { AdapterManagerV2::unregisterAdapterByName(u"JSON"); }
};

}  // namespace

TEST_F(RegisteredJsonAdapter, IsRegisteredOnce) {
  EXPECT_FALSE(registerJsonAdapter());
  EXPECT_TRUE(AdapterManagerV2::isExtensionRegistered(u".json"));
}

TEST_F(RegisteredJsonAdapter, ServesTheBroker) {
  const std::u16string source = write("a.json", R"({"gain": [1, 2]})") + u"#TAG";
  const auto observer = boost::uuids::nil_uuid();
  EXPECT_TRUE(AdapterManagerV2::doesSourceExist(source));
  EXPECT_TRUE(AdapterManagerV2::hasReadingAdapters(source));
  EXPECT_FALSE(AdapterManagerV2::hasWritingAdapters(source));
  ASSERT_TRUE(AdapterManagerV2::openSource(source, u"JSON", observer));
  const AdapterError error = AdapterManagerV2::getData(source, u"JSON", container_, u"", model_);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic) << lx::text::toUtf8(error.errorMessage());
  EXPECT_TRUE(hvEqual(variable("gain"), arrays::doubles({1, 2}, {1, 2}).get()));
  EXPECT_EQ(AdapterManagerV2::getChecksum(source, u"JSON").size(), 32U);
  EXPECT_TRUE(AdapterManagerV2::getExternalSources(source, u"JSON").empty());
  EXPECT_TRUE(AdapterManagerV2::closeSource(source, u"JSON", observer));
}

TEST_F(RegisteredJsonAdapter, ReadsAsTheManualShows) {
  AdapterManagerV2::unregisterAdapterByName(u"JSON");
  const std::u16string source = write("vehicle.json", R"({"gain": [1, 2]})");

  // [reading]
  nd::adapters::registerJsonAdapter();

  const auto model = lx::base::Model::create();
  const auto container = nd::data::adapter::DataContainer::create(model);
  container.setDataCache(inCreateWorkspace(100));
  const auto observer = boost::uuids::random_generator()();

  AdapterManagerV2::openSource(source, u"JSON", observer);
  const AdapterError error = AdapterManagerV2::getData(source, u"JSON", container, u"", model);
  const hvArray* const gain = inGetValueFromWorkspace("gain", container.dataCache());
  // [/reading]

  EXPECT_EQ(error.getId(), AdapterDiagnostic::NoDiagnostic) << lx::text::toUtf8(error.errorMessage());
  EXPECT_TRUE(hvEqual(gain, arrays::doubles({1, 2}, {1, 2}).get()));
  EXPECT_TRUE(AdapterManagerV2::closeSource(source, u"JSON", observer));
  inClearArraysInDesiredWS(container.dataCache());
}

TEST_F(RegisteredJsonAdapter, SaysThroughTheBrokerWhyASourceCouldNotBeOpened) {
  const std::u16string source = sourceOf("missing.json");
  const auto observer = boost::uuids::nil_uuid();
  EXPECT_FALSE(AdapterManagerV2::openSource(source, u"JSON", observer));
  const AdapterError error = AdapterManagerV2::getData(source, u"JSON", container_, u"", model_);
  EXPECT_EQ(error.getId(), AdapterDiagnostic::Inaccessible);
  EXPECT_EQ(error.errorMessage(), u"There is no such file.");
  EXPECT_EQ(error.getAdapterName(), u"JSON");
  EXPECT_EQ(error.getSource(), source);
  AdapterManagerV2::closeSource(source, u"JSON", observer);
}
