#include <mutex>
#include <thread>

#include "nd_data_adapter/model/MetaPackageNd_data_adapter.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/nd_data_adapter/model/ModelTest.h"
#include "tests/platform/foundation/askBesideAnotherThread.h"

using namespace model_test;
using namespace lx::base::meta;

namespace {

std::size_t numberOfMetaElements() {
  return MetaRegistry::getInstance().model().impl()->numberOfElements();
}

TEST(MetaPackageInitializeDeathTest, IsDoneByWhoHoldsTheRegistrysMutexWhileAnotherThreadAsksForAClass) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(askBesideAnotherThread(&ChangeTuple::metaClass), testing::ExitedWithCode(0), "");
}

TEST(MetaPackageInitialize, LeavesTheMetaModelFrozen) {
  MetaPackageNd_data_adapter::getInstance();
  EXPECT_TRUE(MetaRegistry::getInstance().model().impl()->isFrozen());
  EXPECT_EQ(raised<lxb::messages::InvalidValue>([] { ChangeTuple::metaClass().destroy(); }),
            "InvalidValue(Model.beginTransaction; the model is frozen; thaw it first.)");
  EXPECT_TRUE(ChangeTuple::metaClass().isAlive());
}

TEST(MetaPackageInitialize, ReplacesWhatIsThere) {
  MetaPackageNd_data_adapter& package = MetaPackageNd_data_adapter::getInstance();
  const std::size_t before = numberOfMetaElements();
  const Class former = ChangeTuple::metaClass();
  package.initialize();
  EXPECT_EQ(numberOfMetaElements(), before);
  EXPECT_TRUE(MetaRegistry::getInstance().model().impl()->isFrozen());
  EXPECT_FALSE(former.isAlive());
  EXPECT_FALSE(ChangeTuple::metaClass() == former);
  EXPECT_EQ(ChangeTuple::metaClass().getUuid(), ChangeTuple::Uuid());
  EXPECT_EQ(MetaRegistry::getInstance().getType(u"nd.data.adapter.ChangeTuple"), ChangeTuple::metaClass());
  EXPECT_EQ(MetaRegistry::getInstance().getRootPackages().size(), 3U);
}

TEST(MetaPackageInitialize, LeavesElementsWorkingThatWereMadeBefore) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  MetaPackageNd_data_adapter::getInstance().initialize();
  EXPECT_EQ(report.getMetaClass(), ChangeReport::metaClass());
  report.changes().at(0).setPropertyValue(u"id", Value(u"b"));
  EXPECT_EQ(idsOf(report), (Texts{u"b"}));
  report.createIntoChanges(ChangeTuple::Builder());
  report.destroy();
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(MetaPackageInitialize, LeavesHandlesToTheFormerDescriptionSafeToAsk) {
  const Class former = DataContainer::metaClass();
  const Property property = former.property(u"MetaDataCache");
  const Operation operation = former.operation(u"destroyContainer");
  const Package package = former.getPackage();
  MetaPackageNd_data_adapter::getInstance().initialize();
  EXPECT_EQ(former.getName(), u"DataContainer");
  EXPECT_FALSE(former.getSuperclass());
  EXPECT_TRUE(former.getProperties().empty());
  EXPECT_EQ(raised<lxb::messages::NoSuchType>([&] { former.property(u"MetaDataCache"); }),
            "NoSuchType(DataContainer.MetaDataCache)");
  EXPECT_FALSE(former.isSubclassOf(ModelElement::metaClass()));
  EXPECT_EQ(property.getQualifiedName(), u"MetaDataCache");
  EXPECT_FALSE(property.getOwner());
  EXPECT_FALSE(property.getType());
  EXPECT_EQ(operation.getQualifiedName(), u"destroyContainer");
  EXPECT_TRUE(package.getTypes().empty());
  EXPECT_FALSE(package.getParent());
}

TEST(MetaPackageInitialize, LeavesAFormerPropertyOfNoUseToABuilder) {
  const Model model = Model::create();
  ChangeTuple::Builder builder(model);
  const Property former = ChangeTuple::metaClass().property(u"id");
  MetaPackageNd_data_adapter::getInstance().initialize();
  EXPECT_EQ(raised<lxb::messages::NoSuchType>([&] { builder.setOrAdd(former, Value(u"a")); }),
            "NoSuchType(nd.data.adapter.ChangeTuple.id)");
}

TEST(MetaPackageInitialize, BearsLookUpsOfSeveralThreadsThatHoldTheMutex) {
  MetaRegistry& registry = MetaRegistry::getInstance();
  MetaPackageNd_data_adapter::getInstance();
  std::vector<std::thread> threads;
  std::vector<int> found(3, 0);
  for (int& count : found) {
    threads.emplace_back([&count, &registry] {
      for (int round = 0; round < 500; ++round) {
        const std::scoped_lock lock(registry.mutex());
        if (registry.getClass(u"nd::data::adapter::ChangeTuple").property(u"id").getIndex() == 2) ++count;
      }
    });
  }
  for (int round = 0; round < 5; ++round) MetaPackageNd_data_adapter::getInstance().initialize();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found, std::vector<int>(3, 500));
}

}  // namespace
