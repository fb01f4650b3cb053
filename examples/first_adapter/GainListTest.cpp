#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "GainListAdapter.h"
#include "nd_data_adapter/conformance/registerConformanceTests.h"
#include "platform/foundation/Cast.h"
#include "platform/foundation/ElementMap.h"

namespace {

// [subject]
/// Lists of one file each. It is that file which changes, goes bad and goes away; the list stays.
struct GainLists final : nd::conformance::FileSubject {
  GainLists()
      : FileSubject({.extension = ".gainlist",
                     .good = "goodgains.gainlist\n",
                     .otherGood = "nextgains.gainlist\n",
                     .bad = {"badgains.gainlist\n", "nofile.gainlist\n"}}) {
    write("goodgains", "speed 1\ntorque 20\n");
    write("nextgains", "speed 2\ntorque 30\n");
    write("badgains", "speed 3\ntorque\n");
  }
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<GainListAdapter>(); }

  void changeGoodSource() override { change("goodgains", "speed 2\ntorque 30\n"); }
  void changeEndOfGoodSource() override { change("goodgains", "speed 1\ntorque 21\n"); }
  void rewriteGoodSource() override { write("goodgains", "speed 1\ntorque 20\n"); }
  void spoilGoodSource() override { change("goodgains", "speed 3\ntorque\n"); }
  void removeGoodSource() override { std::filesystem::remove(pathOf("goodgains")); }
};

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<GainLists>("GainListAdapterConformance");
// [/subject]

}  // namespace

TEST(GainListAdapter, NamesTheFilesOfItsList) {
  GainLists lists;
  GainListAdapter adapter;
  ASSERT_TRUE(adapter.open(lists.goodSource()));
  const std::vector<std::u16string> sources = adapter.getExternalSources();
  ASSERT_EQ(sources.size(), 1U);
  EXPECT_TRUE(sources[0].ends_with(u"/goodgains.gainlist"));
}

TEST(GainListAdapter, SaysOfEachVariableWhichFileItComesFrom) {
  GainLists lists;
  GainListAdapter adapter;
  ASSERT_TRUE(adapter.open(lists.goodSource()));
  nd::conformance::Client client;
  ASSERT_FALSE(client.read(adapter).isFailure());
  const auto& metaData = client.container().metaDataCache();
  EXPECT_EQ(metaData.keys(), (std::vector<std::u16string>{u"speed", u"torque"}));
  const auto said = lx::base::castTo<nd::data::adapter::DataContainer>(metaData.find(u"torque").value());
  EXPECT_EQ(hvArrayToString(inGetValueFromWorkspace("file", said.dataCache())), u"goodgains.gainlist");
}
