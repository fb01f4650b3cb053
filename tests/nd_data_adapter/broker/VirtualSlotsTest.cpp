// The places of virtual operations are part of the binary interface that adapters and hosts are compiled
// against.

#include <array>
#include <map>
#include <memory>
#include <new>
#include <type_traits>

#include <dlfcn.h>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "tests/support/VirtualSlot.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::ModelElement;
using support::callSlot;
using support::isVirtual;
using support::slotOf;

namespace {

constexpr std::size_t FirstOwnSlot = 27;  // behind those that every element has

/// Derives from a class to count how often its destructor runs.
template <class Base>
class Counted final : public Base {
 public:
  template <class... Arguments>
  explicit Counted(int& destroyed, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), destroyed_(&destroyed) {}
  ~Counted() override { ++*destroyed_; }

 private:
  int* destroyed_;
};

/// Expects that slot 0 ends an object and leaves its memory alone, and that slot 1 ends it and frees it too:
/// the sanitizers see a wrong order as a leak or as a second free.
template <class Base, class... Arguments>
void expectDestructorInSlots0And1(const Arguments&... arguments) {
  using Object = Counted<Base>;
  int destroyed = 0;
  alignas(Object) std::array<std::byte, sizeof(Object)> memory;
  Base* const placed = ::new (memory.data()) Object(destroyed, arguments...);
  callSlot(placed, 0);
  EXPECT_EQ(destroyed, 1);

  Base* const allocated = new Object(destroyed, arguments...);
  callSlot(allocated, 1);
  EXPECT_EQ(destroyed, 2);
}

class SomeAdapter : public CPPAdapterV2 {
 public:
  CPPAdapterV2* clone() override { return nullptr; }
  std::u16string getAdapterName() override { return {}; }
  std::vector<std::u16string> getSupportedExtensions() override { return {}; }
  bool isSourceValid(const std::u16string&) override { return false; }
  bool supportsReading(const std::u16string&) override { return false; }
  bool supportsWriting(const std::u16string&) override { return false; }
  bool open(const std::u16string&) override { return false; }
  bool close() override { return false; }
  std::u16string getCurrentChecksum() override { return {}; }
  bool hasData() override { return false; }
  bool getData(const Workspace&, MetaDataCache&, const std::u16string&, AdapterError&) override {
    return false;
  }
  bool writeData(const Workspace&, const Workspace&, MetaDataCache&, const ChangeReport&,
                 AdapterError&) override {
    return false;
  }
};

TEST(VirtualSlots, OfAnAdapterFollowTheOrderOfTheContract) {
  EXPECT_EQ(slotOf(&CPPAdapterV2::clone), 2U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getAdapterName), 3U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getSupportedExtensions), 4U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getSectionName), 5U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::isSourceValid), 6U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::supportsReading), 7U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::supportsWriting), 8U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::open), 9U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::close), 10U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getExternalSources), 11U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getCurrentChecksum), 12U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::hasData), 13U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getData), 14U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::writeData), 15U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::hasVariants), 16U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getVariantControls), 17U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getConditionalData), 18U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::getType), 19U);
  EXPECT_EQ(slotOf(&CPPAdapterV2::isReady), 20U);
  EXPECT_TRUE(isVirtual(&CPPAdapterV2::clone));
  EXPECT_TRUE(isVirtual(&CPPAdapterV2::isReady));
  expectDestructorInSlots0And1<SomeAdapter>();
}

TEST(VirtualSlots, OfAnAdapterArePureWhereThereIsNoDefault) {
  void* const table = dlsym(RTLD_DEFAULT, "_ZTV12CPPAdapterV2");
  void* const pure = dlsym(RTLD_DEFAULT, "__cxa_pure_virtual");
  ASSERT_NE(table, nullptr);
  ASSERT_NE(pure, nullptr);
  void** const slots = static_cast<void**>(table) + 2;  // behind the offset to the top and the type
  for (const std::size_t slot : {2U, 3U, 4U, 6U, 7U, 8U, 9U, 10U, 12U, 13U, 14U, 15U}) {
    EXPECT_EQ(slots[slot], pure) << slot;
  }
  for (const std::size_t slot : {5U, 11U, 16U, 17U, 18U, 19U, 20U}) EXPECT_NE(slots[slot], pure) << slot;
}

TEST(VirtualSlots, OfAnElementComeInTheFoundationsOrder) {
  using Impl = ModelElement::Impl;
  EXPECT_EQ(slotOf(&Impl::getModel), 2U);
  EXPECT_EQ(slotOf(&Impl::getMetaClass), 3U);
  EXPECT_EQ(slotOf(&Impl::removeRef), 4U);
  EXPECT_EQ(slotOf(&Impl::invalidate), 5U);
  EXPECT_EQ(slotOf(&Impl::hasPropertyValue), 6U);
  EXPECT_EQ(slotOf(&Impl::getPropertyValue), 7U);
  EXPECT_EQ(slotOf(&Impl::setPropertyValue), 8U);
  EXPECT_EQ(slotOf(&Impl::invoke), 9U);
  EXPECT_EQ(slotOf(&Impl::identifier), 10U);
  EXPECT_EQ(slotOf(&Impl::doDestroy), 11U);
  EXPECT_EQ(slotOf(&Impl::inverseAdd), 12U);
  EXPECT_EQ(slotOf(&Impl::inverseRemove), 13U);
  EXPECT_EQ(slotOf(&Impl::inverseContainsProxyTo), 14U);
  EXPECT_EQ(slotOf(&Impl::notifyDestroying), 15U);
  EXPECT_EQ(slotOf(&Impl::disassociateIncoming), 16U);
  EXPECT_EQ(slotOf(&Impl::convertReferencesToProxies), 17U);
  EXPECT_EQ(slotOf(&Impl::aboutToDestroy), 18U);
  EXPECT_EQ(slotOf(&Impl::didCreate), 19U);
  EXPECT_EQ(slotOf(&Impl::basicDisassociateAll), 20U);
  EXPECT_EQ(slotOf(&Impl::convertToProxy), 21U);
  EXPECT_EQ(slotOf(&Impl::createChanges), 22U);
  EXPECT_EQ(slotOf(&Impl::createStorage), 23U);
  EXPECT_EQ(slotOf(&Impl::copyValue), 24U);
  EXPECT_EQ(slotOf(&Impl::copyStateFromStorage), 25U);
  EXPECT_EQ(slotOf(&Impl::getPropertyByIndex), 26U);
  const Model model = Model::create();
  expectDestructorInSlots0And1<Impl>(model, boost::uuids::uuid{});
}

TEST(VirtualSlots, OfTheRegistryFollowThoseOfAnElement) {
  using Impl = AdapterRegistryV2::Impl;
  EXPECT_EQ(slotOf(&Impl::registerCPPAdapter), FirstOwnSlot);
  EXPECT_EQ(slotOf(&Impl::unregisterCPPAdapter), FirstOwnSlot + 1);
  EXPECT_EQ(slotOf(&Impl::getNewCPPAdapter), FirstOwnSlot + 2);
  EXPECT_EQ(slotOf(&Impl::getCPPAdapterForStaticUse), FirstOwnSlot + 3);
  EXPECT_EQ(slotOf(&Impl::getCPPAdapterStaticForSource), FirstOwnSlot + 4);
  EXPECT_EQ(slotOf(&Impl::getDisplayList), FirstOwnSlot + 5);
  EXPECT_EQ(slotOf(&Impl::getAllAdapterNames), FirstOwnSlot + 6);
  EXPECT_EQ(slotOf(&Impl::isAdapterRegisteredByName), FirstOwnSlot + 7);
  EXPECT_EQ(slotOf(&Impl::isAdapterRegisteredByExtension), FirstOwnSlot + 8);
  EXPECT_TRUE(isVirtual(&Impl::isAdapterRegisteredByExtension));
  EXPECT_EQ(slotOf(&Impl::aboutToDestroy), 18U);
}

TEST(VirtualSlots, OfTheCacheFollowThoseOfAnElement) {
  using Impl = AdapterCacheV2::Impl;
  EXPECT_EQ(slotOf(&Impl::addCPPAdapterToCache), FirstOwnSlot);
  EXPECT_EQ(slotOf(&Impl::removeCPPAdapterFromCache), FirstOwnSlot + 1);
  EXPECT_EQ(slotOf(&Impl::getCPPAdapter), FirstOwnSlot + 2);
  EXPECT_EQ(slotOf(&Impl::getAllAdapterQualifiers), FirstOwnSlot + 3);
  EXPECT_TRUE(isVirtual(&Impl::getAllAdapterQualifiers));
  EXPECT_EQ(slotOf(&Impl::aboutToDestroy), 18U);
}

TEST(VirtualSlots, OfAnErrorFollowThoseOfAnElement) {
  using Impl = AdapterError::Impl;
  EXPECT_EQ(slotOf(&Impl::setError), FirstOwnSlot);
  EXPECT_EQ(slotOf(&Impl::getId), FirstOwnSlot + 1);
  EXPECT_EQ(slotOf(&Impl::getAdapterName), FirstOwnSlot + 2);
  EXPECT_EQ(slotOf(&Impl::getSource), FirstOwnSlot + 3);
  EXPECT_TRUE(isVirtual(&Impl::getSource));
}

TEST(VirtualSlots, OfAContainerAndOfAnEntryFollowThoseOfAnElement) {
  EXPECT_EQ(slotOf(&DataContainer::Impl::destroyContainer), FirstOwnSlot);
  EXPECT_TRUE(isVirtual(&DataContainer::Impl::destroyContainer));
  EXPECT_EQ(slotOf(&CPPAdapterV2Entry::Impl::setName), FirstOwnSlot);
  EXPECT_TRUE(isVirtual(&CPPAdapterV2Entry::Impl::setName));
}

TEST(VirtualSlots, AreNotTakenByTheMutatorsOfProperties) {
  EXPECT_FALSE(isVirtual(&CPPAdapterV2Entry::Impl::setAdapter));
  EXPECT_FALSE(isVirtual(&AdapterError::Impl::setErrorMessage));
  EXPECT_FALSE(isVirtual(&AdapterRegistryV2::Impl::createIntoCPPRegistry));
  EXPECT_FALSE(isVirtual(&DataContainer::Impl::getConditionControlsMutable));
}

TEST(VirtualSlots, OfAStorageAreFive) {
  using Storage = AdapterError::Impl::Storage;
  EXPECT_EQ(slotOf(&Storage::setOldContainer), 2U);
  EXPECT_EQ(slotOf(&Storage::revertUnchanged), 3U);
  EXPECT_EQ(slotOf(&Storage::getOldValue), 4U);
  expectDestructorInSlots0And1<Storage>();
}

TEST(VirtualSlots, OfABuilderAreSixWithItsOverloadsInTheirOrder) {
  using Builder = AdapterError::Builder;
  using lx::base::Value;
  using lx::base::meta::Property;
  EXPECT_EQ(slotOf(&Builder::getMetaClass), 2U);
  EXPECT_EQ(slotOf(static_cast<void (ModelElement::Builder::*)(const Property&, const Value&)>(
                &ModelElement::Builder::setOrAdd)),
            3U);
  EXPECT_EQ(
      slotOf(static_cast<void (ModelElement::Builder::*)(
                 const Property&, std::unique_ptr<ModelElement::Builder>)>(&ModelElement::Builder::setOrAdd)),
      4U);
  EXPECT_EQ(slotOf(&Builder::doCreate), 5U);
  expectDestructorInSlots0And1<Builder>();
}

TEST(VirtualSlots, AreNoneForOperationsThatNeedNoInstance) {
  EXPECT_TRUE(
      (std::is_same_v<decltype(&AdapterManagerV2::isExtensionRegistered), bool (*)(const std::u16string&)>));
  EXPECT_TRUE((std::is_same_v<decltype(&AdapterRegistryV2::getInstance), AdapterRegistryV2 (*)()>));
  EXPECT_TRUE((std::is_same_v<decltype(&AdapterCacheV2::getInstance), AdapterCacheV2 (*)()>));
}

}  // namespace
