// Changes of the registry in which an allocation fails.
#include <gmock/gmock.h>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/support/AllocationWalk.h"
#include "tests/support/model/MetaPackageProbe.h"
#include "tests/support/model/Robot.h"

using namespace allocation_test;
using lx::base::Model;
using lx::base::ModelElement;
using lx::base::meta::Class;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Package;
using lx::base::meta::Property;
using lx::base::meta::PropertySerializer;
using lx::base::meta::PropertySerializerRegistry;
using lx::base::meta::Type;
using probe::MetaPackageProbe;
using probe::inner::Robot;

namespace {

constexpr std::size_t Bound = 100'000;

MetaRegistry& registry() {
  return MetaRegistry::getInstance();
}

/// What the registry, its model and the serializers have, and what a class of the test model says of itself.
struct State {
  Model model = registry().model();
  bool isFrozen = model.impl()->isFrozen();
  bool isInTransaction = model.impl()->hasOpenTransaction();
  std::vector<ModelElement> elements = model.impl()->elements();
  std::vector<Package> rootPackages = registry().getRootPackages();
  std::vector<Type> types = typesByName();
  std::shared_ptr<const PropertySerializer> serializer =
      PropertySerializerRegistry::getInstance().find(u"probe.Colour", u"ID");
  Class robot = Robot::metaClass();
  Class superclass = robot.getSuperclass();
  Package package = robot.getPackage();
  std::vector<Property> properties = robot.getProperties();

  static std::vector<Type> typesByName() {
    std::vector<Type> result;
    for (const char16_t* name : {u"String", u"std::u16string", u"probe.Thing", u"probe::inner::Robot",
                                 u"probe.Colour", u"probe.Ticket", u"ProbeTicket"})
      result.push_back(registry().findType(name));
    return result;
  }

  bool operator==(const State&) const = default;
};

/// The number after this one of the allocations that are let fail: of the first every one, later on fewer.
std::size_t next(std::size_t number) {
  return number + 1 + number / 64;
}

void initialize() {
  MetaPackageProbe::getInstance().initialize();
}

TEST(FailingAllocations, LeaveTheRegistryAsItWasBeforeAMetaPackageWasInitializedAgain) {
  initialize();  // so that what is made once for all is there
  for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
    attemptWithout(1000, initialize, extent);  // likewise
    std::size_t refused = 0;
    const auto attempt = [&](std::size_t number) {
      const State before;
      const std::size_t live = AllocationFault::live();
      const auto [isRefused, hasOccurred] = attemptWithout(number, initialize, extent);
      if (!isRefused) return hasOccurred;
      ++refused;
      EXPECT_EQ(AllocationFault::live(), live) << "memory leaks";
      EXPECT_TRUE(State() == before) << "is half done";
      return hasOccurred;
    };
    failInTurn(extent, attempt, Bound, next);
    if (HasFailure()) return;
    EXPECT_GT(refused, 200U);
    EXPECT_TRUE(Robot::metaClass().isAlive());
  }
}

TEST(FailingAllocations, LeaveNoHalfMadeModelToARegistryThatHadLostItsOwn) {
  const std::size_t numberOfTypes = [] {
    initialize();
    return Robot::metaClass().getProperties().size();
  }();
  for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
    registry().model().destroy();
    const Type former = registry().findType(u"String");
    std::size_t refused = 0;
    const auto attempt = [&](std::size_t number) {
      const auto [isRefused, hasOccurred] = attemptWithout(
          number, [] { MetaRegistry::Update(registry()).commit(); }, extent);
      if (!isRefused) return hasOccurred;
      ++refused;
      const Type present = registry().findType(u"String");
      EXPECT_EQ(registry().model().isAlive(), present.isAlive());
      EXPECT_EQ(registry().model().isAlive(), !(present == former));
      EXPECT_EQ(registry().findRootPackage(u"lx").isAlive(), present.isAlive());
      EXPECT_TRUE(!registry().model().isAlive() || registry().model().impl()->isFrozen());
      return hasOccurred;
    };
    failInTurn(extent, attempt, Bound);
    if (HasFailure()) return;
    EXPECT_GT(refused, 50U);
    EXPECT_EQ(ModelElement::metaClass().getUuid(), ModelElement::Uuid());
    EXPECT_FALSE(registry().findType(u"probe.Thing"));
    initialize();
    EXPECT_EQ(Robot::metaClass().getProperties().size(), numberOfTypes);
  }
}

}  // namespace
