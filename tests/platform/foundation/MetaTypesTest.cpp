#include "platform/foundation/Cast.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/Access.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/StandardTypes.h"
#include "platform/host/Array.h"
#include "tests/platform/foundation/askBesideAnotherThread.h"
#include "tests/platform/foundation/raised.h"
#include "tests/support/model/MetaPackageProbe.h"
#include "tests/support/model/Optionals.h"
#include "tests/support/model/Robot.h"
#include "tests/support/model/Traits.h"
#include "tests/support/model/Values.h"
#include "tests/support/model/bodies.h"

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
using lx::base::access::Internal;
using lx::base::access::Public;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Property;
using lx::base::meta::StandardTypes;
using lx::base::meta::Type;
using lxb::messages::CannotSetReadOnlyProperty;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using testing::StartsWith;
namespace meta = lx::base::meta;

namespace {

TEST(StandardTypes, AreThoseOfTheRegistry) {
  const MetaRegistry& registry = MetaRegistry::getInstance();
  EXPECT_EQ(StandardTypes::modelElement(), ModelElement::metaClass());
  EXPECT_EQ(StandardTypes::string(), registry.getType(u"String"));
  EXPECT_EQ(StandardTypes::stdString(), registry.getType(u"StdString"));
  EXPECT_EQ(StandardTypes::boolean(), registry.getType(u"Boolean"));
  EXPECT_EQ(StandardTypes::integer(), registry.getType(u"Integer"));
  EXPECT_EQ(StandardTypes::uuid(), registry.getType(u"UUID"));
  EXPECT_EQ(StandardTypes::model(), registry.getType(u"Model"));
  EXPECT_EQ(StandardTypes::hvArray(), registry.getType(u"HvArray"));
}

TEST(StandardTypes, AreKeptOnceLookedUp) {
  EXPECT_EQ(&StandardTypes::stdString(), &StandardTypes::stdString());
}

TEST(StandardTypesDeathTest, AreLookedUpByWhoHoldsTheRegistrysMutexWhileAnotherThreadAsks) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(askBesideAnotherThread(&StandardTypes::string), testing::ExitedWithCode(0), "");
}

TEST(StandardTypes, AreTheTypesOfProperties) {
  EXPECT_EQ(probe::Values::metaClass().property(u"narrow").getType(), StandardTypes::stdString());
  EXPECT_FALSE(probe::Values::metaClass().property(u"text").getType() == StandardTypes::stdString());
  EXPECT_EQ(probe::Values::metaClass().property(u"world").getType(), StandardTypes::model());
  EXPECT_EQ(probe::Values::metaClass().property(u"array").getType(), StandardTypes::hvArray());
}

TEST(MetaElements, HaveTheClassesThatDescribeThem) {
  const meta::Class robot = probe::inner::Robot::metaClass();
  const meta::Class square = probe::Square::metaClass();
  const Type colour = MetaRegistry::getInstance().getType(u"probe.Colour");
  EXPECT_EQ(robot.getMetaClass(), meta::Class::metaClass());
  EXPECT_EQ(robot.property(u"name").getMetaClass(), meta::Property::metaClass());
  EXPECT_EQ(square.operation(u"describe").getMetaClass(), meta::Operation::metaClass());
  EXPECT_EQ(square.operation(u"describe").getArguments().at(0).getMetaClass(), meta::Argument::metaClass());
  EXPECT_EQ(colour.getMetaClass(), meta::Enum::metaClass());
  EXPECT_EQ(lx::base::castTo<meta::Enum>(colour).getLiterals().at(0).getMetaClass(),
            meta::EnumLiteral::metaClass());
}

class NativeTypes : public testing::Test {
 protected:
  NativeTypes() { probe::MetaPackageProbe::getInstance(); }

  template <class T>
  static bool isCorrect(const char16_t* type) {
    const MetaRegistry& registry = MetaRegistry::getInstance();
    return registry.isCorrectTypeForTypeId(registry.getType(type), typeid(T));
  }
};

TEST_F(NativeTypes, OfTheStandardTypes) {
  EXPECT_TRUE(isCorrect<std::u16string>(u"String"));
  EXPECT_TRUE(isCorrect<std::string>(u"StdString"));
  EXPECT_TRUE(isCorrect<bool>(u"Boolean"));
  EXPECT_TRUE(isCorrect<std::int32_t>(u"Integer"));
  EXPECT_TRUE(isCorrect<boost::uuids::uuid>(u"UUID"));
  EXPECT_TRUE(isCorrect<Model>(u"Model"));
  EXPECT_FALSE(isCorrect<std::string>(u"String"));
  EXPECT_FALSE(isCorrect<std::int64_t>(u"Integer"));
  EXPECT_FALSE(isCorrect<bool>(u"Integer"));
  EXPECT_TRUE(isCorrect<hvArray*>(u"HvArray"));
  EXPECT_FALSE(isCorrect<void*>(u"HvArray"));
}

TEST_F(NativeTypes, OfPrimitivesAndEnumerations) {
  EXPECT_TRUE(isCorrect<std::shared_ptr<int>>(u"probe.Ticket"));
  EXPECT_TRUE(isCorrect<probe::TokenTag*>(u"probe.Token"));
  EXPECT_TRUE(isCorrect<probe::Colour>(u"probe.Colour"));
  EXPECT_FALSE(isCorrect<probe::Colour>(u"Integer"));
  EXPECT_FALSE(isCorrect<std::int32_t>(u"probe.Colour"));
  EXPECT_FALSE(isCorrect<std::shared_ptr<long>>(u"probe.Ticket"));
}

TEST_F(NativeTypes, OfClassesAreTheirHandlesAndThoseOfSubclasses) {
  EXPECT_TRUE(isCorrect<probe::Thing>(u"probe.Thing"));
  EXPECT_TRUE(isCorrect<probe::inner::Robot>(u"probe.Thing"));
  EXPECT_TRUE(isCorrect<probe::Thing>(u"ModelElement"));
  EXPECT_TRUE(isCorrect<ModelElement>(u"ModelElement"));
  EXPECT_FALSE(isCorrect<probe::Thing>(u"probe.Machine"));
  EXPECT_FALSE(isCorrect<ModelElement>(u"probe.Thing"));
  EXPECT_FALSE(isCorrect<probe::Values>(u"probe.Thing"));
}

TEST_F(NativeTypes, OfNoTypeIsNone) {
  EXPECT_FALSE(MetaRegistry::getInstance().isCorrectTypeForTypeId(Type(), typeid(bool)));
}

class Access : public testing::Test {
 protected:
  static Property property(const char16_t* name) { return probe::Traits::metaClass().property(name); }

  const Model model = Model::create();
  const probe::Traits traits = probe::Traits::create(model);
};

TEST_F(Access, PublicReadsWhatHasAPublicGetter) {
  traits.setOrdered(u"so");
  EXPECT_EQ(meta::getPropertyValue(traits, property(u"ordered"), Public()), Value(u"so"));
  EXPECT_EQ(meta::getPropertyValue(traits, property(u"unwritten"), Public()), Value(u""));
  EXPECT_TRUE(meta::hasPropertyValue(traits, property(u"ordered"), Public()));
}

TEST_F(Access, PublicRefusesToReadWhatHasNone) {
  for (const char16_t* name : {u"unread", u"inside", u"insideList"}) {
    const std::string qualified = "InvalidValue(probe.Traits." + lx::text::toUtf8(name) + "; ";
    EXPECT_THAT(raised<InvalidValue>([&] { meta::getPropertyValue(traits, property(name), Public()); }),
                StartsWith(qualified));
    EXPECT_THAT(raised<InvalidValue>([&] { meta::hasPropertyValue(traits, property(name), Public()); }),
                StartsWith(qualified));
  }
}

TEST_F(Access, InternalReadsEverything) {
  traits.impl()->setInside(u"within");
  EXPECT_EQ(meta::getPropertyValue(traits, property(u"inside"), Internal()), Value(u"within"));
  EXPECT_EQ(meta::getPropertyValue(traits, property(u"ordered"), Internal()), Value(u""));
  EXPECT_FALSE(meta::hasPropertyValue(traits, property(u"insideList"), Internal()));
}

TEST_F(Access, PublicWritesWhatHasAPublicSetter) {
  meta::setPropertyValue(traits, property(u"unread"), Value(u"written"), Public());
  EXPECT_EQ(traits.impl()->getUnread(), u"written");
}

TEST_F(Access, PublicRefusesToWriteWhatHasNoneOrIsFixed) {
  for (const char16_t* name : {u"unwritten", u"inside", u"fixed"}) {
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>(
                  [&] { meta::setPropertyValue(traits, property(name), Value(u"x"), Public()); }),
              "CannotSetReadOnlyProperty(probe.Traits." + lx::text::toUtf8(name) + ")");
  }
  for (const char16_t* name : {u"fixedList", u"insideList"}) {
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] {
                meta::setPropertyValue(traits, property(name), Value(std::vector<std::u16string>{u"x"}),
                                       Public());
              }),
              "CannotSetReadOnlyProperty(probe.Traits." + lx::text::toUtf8(name) + ")");
  }
}

TEST_F(Access, RefusesNullHandlesAndThePropertiesOfOtherClasses) {
  EXPECT_THAT(raised<InvalidValue>([] { meta::getPropertyValue({}, property(u"ordered"), Public()); }),
              StartsWith("InvalidValue(lx.base.meta.getPropertyValue; "));
  EXPECT_THAT(raised<InvalidValue>([this] { meta::getPropertyValue(traits, {}, Public()); }),
              StartsWith("InvalidValue(lx.base.meta.getPropertyValue; "));
  EXPECT_THAT(raised<InvalidValue>([] { meta::hasPropertyValue({}, property(u"ordered"), Internal()); }),
              StartsWith("InvalidValue(lx.base.meta.hasPropertyValue; "));
  EXPECT_THAT(
      raised<InvalidValue>([] { meta::setPropertyValue({}, property(u"ordered"), Value(u"x"), Public()); }),
      StartsWith("InvalidValue(lx.base.meta.setPropertyValue; "));
  const Property foreign = probe::Optionals::metaClass().property(u"text");
  EXPECT_EQ(raised<NoSuchType>([&] { meta::getPropertyValue(traits, foreign, Public()); }),
            "NoSuchType(probe.Traits.text)");
}

TEST_F(Access, GivesTheZeroOfAnElementThatIsGone) {
  traits.setOrdered(u"so");
  traits.destroy();
  EXPECT_EQ(meta::getPropertyValue(traits, property(u"ordered"), Public()), Value(u""));
  EXPECT_FALSE(meta::hasPropertyValue(traits, property(u"ordered"), Public()));
}

}  // namespace
