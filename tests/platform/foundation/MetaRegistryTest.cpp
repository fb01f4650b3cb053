#include <set>

#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/Cast.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/StandardTypes.h"
#include "tests/platform/foundation/raised.h"

namespace meta = lx::base::meta;
using lx::base::castTo;
using lx::base::ModelElement;
using lx::base::meta::AbstractMetaPackage;
using lx::base::meta::Class;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Package;
using lx::base::meta::PrimitiveType;
using lx::base::meta::StandardTypes;
using lx::base::meta::Type;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::CannotCastIncompatibleTypes;
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
  using AbstractMetaPackage::createArgument;
  using AbstractMetaPackage::createOperation;
  using AbstractMetaPackage::createPackage;
  using AbstractMetaPackage::createPrimitiveType;
  using AbstractMetaPackage::registerRootPackage;
  using AbstractMetaPackage::unregisterRootPackage;
};

/// Registers package "spare" with one type within an update.
Type registerSpare() {
  const Package package = Maker::createPackage(u"spare", u"/spare");
  const Type type = Maker::createPrimitiveType("11111111-2222-3333-8444-555555555555", u"Part", u"Part");
  Maker::addType(package, type);
  registry().registerTypeNames(type, {u"spare.Part", u"spare::Part"});
  Maker::registerRootPackage(package);
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

TEST(MetaRegistry, DescribesModelsByAClassThatLeavesTheirNativeNameToOthers) {
  const Class model = registry().getClass(u"lx.base.Model");
  EXPECT_EQ(model, registry().getType(u"Model"));
  EXPECT_TRUE(model.isAbstract());
  EXPECT_FALSE(model.getSuperclass());
  EXPECT_FALSE(model.isSubclassOf(ModelElement::metaClass()));
  EXPECT_FALSE(registry().findType(u"lx::base::Model"));
  EXPECT_EQ(raised<NoSuchType>([] { registry().getPrimitiveType(u"Model"); }), "NoSuchType(Model)");
}

/// The class of every kind of meta element, with its superclass.
std::vector<std::pair<Class, Class>> classesOfMetaElements() {
  return {{meta::NamedElement::metaClass(), ModelElement::metaClass()},
          {meta::Type::metaClass(), meta::NamedElement::metaClass()},
          {meta::TypedElement::metaClass(), meta::NamedElement::metaClass()},
          {meta::Package::metaClass(), meta::NamedElement::metaClass()},
          {meta::EnumLiteral::metaClass(), meta::NamedElement::metaClass()},
          {meta::Class::metaClass(), meta::Type::metaClass()},
          {meta::Enum::metaClass(), meta::Type::metaClass()},
          {meta::PrimitiveType::metaClass(), meta::Type::metaClass()},
          {meta::Property::metaClass(), meta::TypedElement::metaClass()},
          {meta::Operation::metaClass(), meta::TypedElement::metaClass()},
          {meta::Argument::metaClass(), meta::TypedElement::metaClass()}};
}

TEST(MetaRegistry, KnowsTheClassesOfMetaElements) {
  std::set<std::u16string> names;
  for (const auto& [type, super] : classesOfMetaElements()) {
    EXPECT_EQ(type.getSuperclass(), super);
    EXPECT_TRUE(type.isAbstract());
    EXPECT_EQ(type.getPackage().getQualifiedName(), u"lx.base.meta");
    EXPECT_EQ(registry().getClass(u"lx.base.meta." + type.getName()), type);
    EXPECT_TRUE(names.insert(type.getName()).second);
  }
  EXPECT_EQ(meta::Class::metaClass().getName(), u"Class");
  EXPECT_EQ(meta::TypedElement::metaClass().getName(), u"TypedElement");
}

TEST(MetaRegistry, GivesEachClassOfMetaElementsTheIdentifierOfItsHandle) {
  EXPECT_EQ(meta::NamedElement::metaClass().getUuid(), meta::NamedElement::Uuid());
  EXPECT_EQ(meta::Class::metaClass().getUuid(), meta::Class::Uuid());
  EXPECT_EQ(meta::Class::metaClass().identifier(), meta::Class::Uuid());
  EXPECT_EQ(meta::Argument::metaClass().getUuid(), meta::Argument::Uuid());
  std::set<boost::uuids::uuid> seen{ModelElement::Uuid()};
  for (const auto& [type, super] : classesOfMetaElements()) EXPECT_TRUE(seen.insert(type.getUuid()).second);
}

TEST(MetaRegistry, TellsOfMetaElementsWhichClassTheyHave) {
  EXPECT_EQ(registry().findRootPackage(u"lx").getMetaClass(), meta::Package::metaClass());
  EXPECT_EQ(registry().getType(u"String").getMetaClass(), meta::PrimitiveType::metaClass());
  EXPECT_EQ(meta::Class::metaClass().getMetaClass(), meta::Class::metaClass());
  EXPECT_TRUE(registry().getType(u"String").getMetaClass().isSubclassOf(meta::Type::metaClass()));
  EXPECT_FALSE(registry().getType(u"String").getMetaClass().isSubclassOf(meta::Class::metaClass()));
}

TEST(MetaRegistry, KnowsTheHandlesOfMetaElementsByTheirNativeTypes) {
  EXPECT_TRUE(registry().isCorrectTypeForTypeId(meta::Type::metaClass(), typeid(meta::Class)));
  EXPECT_TRUE(registry().isCorrectTypeForTypeId(ModelElement::metaClass(), typeid(meta::Class)));
  EXPECT_FALSE(registry().isCorrectTypeForTypeId(meta::Class::metaClass(), typeid(meta::Type)));
}

TEST(MetaRegistry, NamesTheClassThatACastOfAMetaElementWanted) {
  const ModelElement string = registry().getType(u"String");
  EXPECT_EQ(castTo<meta::Type>(string), string);
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { castTo<meta::Class>(string); }),
            "CannotCastIncompatibleTypes(lx.base.meta.PrimitiveType; lx.base.meta.Class)");
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { castTo<meta::TypedElement>(string); }),
            "CannotCastIncompatibleTypes(lx.base.meta.PrimitiveType; lx.base.meta.TypedElement)");
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
    Maker::unregisterRootPackage(u"spare");
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
  EXPECT_EQ(raised<NoSuchType>([] { Maker::unregisterRootPackage(u"nowhere"); }), "NoSuchType(nowhere)");
}

TEST(MetaRegistryUpdate, MakesOperationsAndArgumentsWithIdentifiersOfTwoNumbers) {
  const MetaRegistry::Update abandoned(registry());
  const auto operation =
      Maker::createOperation(0x0f40bd84e4d93112U, 0xba8302023181b729U, u"open", u"Opens it.");
  EXPECT_EQ(boost::uuids::to_string(operation.identifier()), "0f40bd84-e4d9-3112-ba83-02023181b729");
  EXPECT_EQ(operation.getName(), u"open");
  EXPECT_EQ(operation.getDescription(), u"Opens it.");
  const auto argument = Maker::createArgument(0x96e7e68ddd593a6dU, 0x9f81067fb4700702U, u"key");
  EXPECT_EQ(boost::uuids::to_string(argument.identifier()), "96e7e68d-dd59-3a6d-9f81-067fb4700702");
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

// A model that was destroyed

TEST(MetaRegistryUpdate, MakesTheModelAnewIfItWasDestroyed) {
  const std::size_t before = registry().model().impl()->numberOfElements();
  const Type former = registry().getType(u"String");
  const lx::base::Model formerModel = registry().model();
  formerModel.destroy();
  EXPECT_FALSE(former.isAlive());
  {
    MetaRegistry::Update update(registry());
    registerSpare();
    update.commit();
  }
  EXPECT_FALSE(registry().model() == formerModel);
  EXPECT_TRUE(registry().model().impl()->isFrozen());
  EXPECT_TRUE(registry().getType(u"spare.Part").isAlive());
  EXPECT_TRUE(registry().getType(u"String").isAlive());
  EXPECT_FALSE(registry().getType(u"String") == former);
  EXPECT_EQ(former.getName(), u"String");
  EXPECT_EQ(ModelElement::metaClass().getUuid(), ModelElement::Uuid());
  EXPECT_EQ(registry().getRootPackages().size(), 2U);
  {
    MetaRegistry::Update update(registry());
    Maker::unregisterRootPackage(u"spare");
    update.commit();
  }
  EXPECT_EQ(registry().model().impl()->numberOfElements(), before);
}

TEST(MetaRegistryUpdate, LeavesTheFoundationsTypesInANewModelAlsoIfItIsNotCommitted) {
  registry().model().destroy();
  {
    MetaRegistry::Update update(registry());
    registerSpare();
  }
  EXPECT_FALSE(registry().findType(u"spare.Part"));
  EXPECT_EQ(registry().getType(u"String").getMetaClass(), meta::PrimitiveType::metaClass());
  EXPECT_TRUE(registry().getType(u"lx.base.meta.Class").isAlive());
  EXPECT_TRUE(registry().model().impl()->isFrozen());
}

TEST(MetaRegistryUpdate, LetsStandardTypesFollowToANewModel) {
  const PrimitiveType former = StandardTypes::string();
  const PrimitiveType& reference = StandardTypes::string();
  registry().model().destroy();
  EXPECT_EQ(StandardTypes::string(), former);
  { MetaRegistry::Update update(registry()); }
  EXPECT_EQ(StandardTypes::string(), registry().getType(u"String"));
  EXPECT_EQ(StandardTypes::modelElement(), ModelElement::metaClass());
  EXPECT_EQ(reference, former);
  EXPECT_EQ(&StandardTypes::string(), &StandardTypes::string());
}

}  // namespace
