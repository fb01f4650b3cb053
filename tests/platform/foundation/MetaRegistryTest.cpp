#include <set>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/platform/foundation/raised.h"

using lx::base::ModelElement;
using lx::base::meta::AbstractMetaPackage;
using lx::base::meta::Class;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Package;
using lx::base::meta::PrimitiveType;
using lx::base::meta::Type;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using testing::StartsWith;

namespace {

MetaRegistry& registry() {
  return MetaRegistry::getInstance();
}

/// Makes packages and types outside of any metamodel.
class Maker : public AbstractMetaPackage {
 public:
  using AbstractMetaPackage::addType;
  using AbstractMetaPackage::createPackage;
  using AbstractMetaPackage::createPrimitiveType;
};

/// Registers package "spare" with one type within an update.
Type registerSpare() {
  const Package package = Maker::createPackage(u"spare", u"/spare");
  const Type type = Maker::createPrimitiveType("11111111-2222-3333-8444-555555555555", u"Part", u"Part");
  Maker::addType(package, type);
  registry().registerTypeNames(type, {u"spare.Part", u"spare::Part"});
  registry().registerRootPackage(package);
  return type;
}

TEST(MetaRegistry, KnowsTheStandardTypesByNameAndByQualifiedName) {
  for (const char16_t* name :
       {u"ModelElement", u"String", u"StdString", u"Boolean", u"Integer", u"Model", u"HvArray", u"UUID"}) {
    const Type type = registry().getType(name);
    EXPECT_EQ(type.getName(), name);
    EXPECT_EQ(type.getQualifiedName(), std::u16string(u"lx.base.") + name);
    EXPECT_EQ(registry().getType(std::u16string(u"lx.base.") + name), type);
  }
}

TEST(MetaRegistry, KnowsTheStandardPrimitivesByTheirNativeNames) {
  EXPECT_EQ(registry().getPrimitiveType(u"std::u16string").getName(), u"String");
  EXPECT_EQ(registry().getPrimitiveType(u"hvArray").getName(), u"HvArray");
  EXPECT_EQ(registry().getPrimitiveType(u"String").getNativeName(), u"std::u16string");
}

TEST(MetaRegistry, KnowsTheClassesOfMetaElements) {
  for (const char16_t* name : {u"Package", u"Class", u"Enum", u"EnumLiteral", u"PrimitiveType", u"Property",
                               u"Operation", u"Argument"}) {
    const Class type = registry().getClass(std::u16string(u"lx.base.meta.") + name);
    EXPECT_EQ(type.getSuperclass(), ModelElement::metaClass());
    EXPECT_TRUE(type.isAbstract());
    EXPECT_EQ(type.getMetaClass().getQualifiedName(), u"lx.base.meta.Class");
  }
  EXPECT_EQ(registry().findRootPackage(u"lx").getMetaClass().getName(), u"Package");
  EXPECT_EQ(registry().getType(u"String").getMetaClass().getName(), u"PrimitiveType");
}

TEST(MetaRegistry, FindsNothingUnderAnUnknownName) {
  EXPECT_FALSE(registry().findType(u"nowhere.Nothing"));
  EXPECT_FALSE(registry().findType(u""));
  EXPECT_FALSE(registry().findType(u"string"));
  EXPECT_EQ(raised<NoSuchType>([] { registry().getType(u"nowhere.Nothing"); }),
            "NoSuchType(nowhere.Nothing)");
}

TEST(MetaRegistry, RefusesATypeOfAnotherKind) {
  EXPECT_EQ(raised<NoSuchType>([] { registry().getClass(u"String"); }), "NoSuchType(String)");
  EXPECT_EQ(raised<NoSuchType>([] { registry().getPrimitiveType(u"ModelElement"); }),
            "NoSuchType(ModelElement)");
}

TEST(MetaRegistry, HasTheFoundationsOwnRootPackage) {
  const Package lx = registry().findRootPackage(u"lx");
  ASSERT_TRUE(lx);
  EXPECT_FALSE(lx.getParent());
  ASSERT_EQ(lx.getPackages().size(), 1U);
  const Package base = lx.getPackages().front();
  EXPECT_EQ(base.getQualifiedName(), u"lx.base");
  EXPECT_EQ(base.getParent(), lx);
  ASSERT_EQ(base.getPackages().size(), 1U);
  EXPECT_EQ(base.getPackages().front().getQualifiedName(), u"lx.base.meta");
  EXPECT_FALSE(registry().findRootPackage(u"base"));
}

TEST(MetaRegistry, GivesMetaElementsIdentitiesThatAreTheSameInEveryProcess) {
  EXPECT_EQ(ModelElement::metaClass().getUuid(), ModelElement::Uuid());
  EXPECT_EQ(registry().getType(u"String").identifier().version(), boost::uuids::uuid::version_name_based_md5);
  std::set<boost::uuids::uuid> seen;
  for (const ModelElement& element : registry().model().impl()->elements()) {
    EXPECT_TRUE(seen.insert(element.identifier()).second);
  }
}

TEST(MetaRegistry, KeepsItsModelFrozen) {
  EXPECT_TRUE(registry().model().impl()->isFrozen());
  EXPECT_THAT(raised<InvalidValue>([] { registry().getType(u"String").destroy(); }),
              StartsWith("InvalidValue(Model.beginTransaction; the model is frozen"));
  EXPECT_TRUE(registry().getType(u"String").isAlive());
}

TEST(MetaRegistryUpdate, UndoesWhatWasNotCommitted) {
  const std::size_t before = registry().model().impl()->numberOfElements();
  Type type;
  {
    MetaRegistry::Update update(registry());
    type = registerSpare();
    EXPECT_EQ(registry().getType(u"spare.Part"), type);
    EXPECT_TRUE(registry().findRootPackage(u"spare"));
  }
  EXPECT_FALSE(type.isAlive());
  EXPECT_FALSE(registry().findType(u"spare.Part"));
  EXPECT_FALSE(registry().findRootPackage(u"spare"));
  EXPECT_EQ(registry().model().impl()->numberOfElements(), before);
  EXPECT_TRUE(registry().model().impl()->isFrozen());
}

TEST(MetaRegistryUpdate, KeepsWhatWasCommittedAndFreezesTheModelAgain) {
  const std::size_t before = registry().model().impl()->numberOfElements();
  {
    MetaRegistry::Update update(registry());
    registerSpare();
    update.commit();
  }
  EXPECT_EQ(registry().getType(u"spare.Part"), registry().getType(u"spare::Part"));
  EXPECT_EQ(registry().getType(u"spare.Part").getQualifiedName(), u"spare.Part");
  EXPECT_TRUE(registry().model().impl()->isFrozen());
  {
    MetaRegistry::Update update(registry());
    registry().unregisterRootPackage(u"spare");
    update.commit();
  }
  EXPECT_FALSE(registry().findType(u"spare.Part"));
  EXPECT_FALSE(registry().findRootPackage(u"spare"));
  EXPECT_EQ(registry().model().impl()->numberOfElements(), before);
}

TEST(MetaRegistryUpdate, BringsBackAPackageWhoseRemovalWasNotCommitted) {
  const Type string = registry().getType(u"String");
  {
    MetaRegistry::Update update(registry());
    registry().unregisterRootPackage(u"lx");
    EXPECT_FALSE(registry().findType(u"String"));
    EXPECT_FALSE(string.isAlive());
  }
  EXPECT_EQ(registry().getType(u"String"), string);
  EXPECT_TRUE(string.isAlive());
  EXPECT_TRUE(registry().findRootPackage(u"lx"));
}

TEST(MetaRegistryUpdate, RefusesASecondRootPackageOfOneName) {
  MetaRegistry::Update update(registry());
  EXPECT_EQ(raised<CannotAddSecondObject>(
                [] { registry().registerRootPackage(Maker::createPackage(u"lx", u"/another")); }),
            "CannotAddSecondObject(The root package lx)");
}

TEST(MetaRegistryUpdate, RefusesToTakeAwayARootPackageThatIsNotThere) {
  MetaRegistry::Update update(registry());
  EXPECT_EQ(raised<NoSuchType>([] { registry().unregisterRootPackage(u"nowhere"); }), "NoSuchType(nowhere)");
}

TEST(MetaRegistryUpdate, LeavesHandlesOfATakenAwayPackageSafeToAsk) {
  Type type;
  Package package;
  {
    MetaRegistry::Update update(registry());
    type = registerSpare();
    package = type.getPackage();
    update.commit();
  }
  {
    MetaRegistry::Update update(registry());
    registry().unregisterRootPackage(u"spare");
    update.commit();
  }
  package = Package();  // the type's is the only handle left
  EXPECT_FALSE(type.isAlive());
  EXPECT_FALSE(type.getPackage());
  EXPECT_EQ(type.getQualifiedName(), u"Part");
}

}  // namespace
