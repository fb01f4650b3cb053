// Operations and derived properties as a metamodel describes them: abstract, overridden, static, with out
// arguments.

#include "platform/foundation/Cast.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "tests/platform/foundation/raised.h"
#include "tests/support/VirtualSlot.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/bodies.h"

using lx::base::castTo;
using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
using lx::base::meta::Operation;
using lx::base::meta::Property;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::CannotModifyProxy;
using lxb::messages::CannotSetReadOnlyProperty;
using lxb::messages::InvalidValue;
using probe::Colour;
using probe::Cube;
using probe::Shape;
using probe::Square;
using testing::StartsWith;

namespace {

template <class E>
E withSide(const Model& model, std::int32_t side) {
  const E made = E::create(model);
  made.setSide(side);
  return made;
}

class Operations : public testing::Test {
 protected:
  const Model model = Model::create();
  const Square square = withSide<Square>(model, 3);
  const Cube cube = withSide<Cube>(model, 2);
};

TEST_F(Operations, OfAnAbstractClassHaveTheirBodiesInSubclasses) {
  EXPECT_EQ(Shape(square).area(), 9);
  EXPECT_EQ(Shape(cube).area(), 24);
  EXPECT_EQ(Square(cube).area(), 24);
}

TEST_F(Operations, AreCalledByReflectionThroughTheSlotOfTheSuperclass) {
  EXPECT_EQ(square.invoke(u"area", {}), Value(std::int32_t{9}));
  EXPECT_EQ(cube.invoke(u"area", {}), Value(std::int32_t{24}));
  EXPECT_EQ(cube.invoke(u"volume", {}), Value(std::int32_t{8}));
  cube.invoke(u"scale", {Value(std::int32_t{2})});
  EXPECT_EQ(cube.side(), 4);
  EXPECT_EQ(cube.colour(), Colour::Green);
}

TEST_F(Operations, TakeTheSlotsOfTheirSuperclassWhenOverridden) {
  EXPECT_EQ(support::slotOf(&Cube::Impl::area), support::slotOf(&Shape::Impl::area));
  EXPECT_EQ(support::slotOf(&Cube::Impl::scale), support::slotOf(&Shape::Impl::scale));
  EXPECT_EQ(support::slotOf(&Square::Impl::twin), support::slotOf(&Shape::Impl::twin));
}

TEST_F(Operations, StandInTheirOrderBehindThoseOfTheFoundationPublicOnesFirst) {
  const auto first = support::slotOf(&ModelElement::Impl::getPropertyByIndex) + 1;
  EXPECT_EQ(support::slotOf(&Shape::Impl::area), first);
  EXPECT_EQ(support::slotOf(&Shape::Impl::describe), first + 1);
  EXPECT_EQ(support::slotOf(&Shape::Impl::create), first + 2);
  EXPECT_EQ(support::slotOf(&Shape::Impl::scale), first + 3);
  EXPECT_EQ(support::slotOf(&Shape::Impl::twin), first + 4);
  EXPECT_EQ(support::slotOf(&Shape::Impl::measure), first + 5);
  EXPECT_EQ(support::slotOf(&Shape::Impl::corners), first + 6);
  EXPECT_EQ(support::slotOf(&Cube::Impl::volume), first + 7);
}

TEST_F(Operations, GiveBackWhatTheyHaveInOutArguments) {
  std::u16string text;
  std::vector<Colour> colours;
  square.setColour(Colour::Blue);
  EXPECT_TRUE(square.describe(u"en", text, colours));
  EXPECT_EQ(text, u"a square of side 3");
  EXPECT_EQ(colours, std::vector<Colour>{Colour::Blue});
  EXPECT_FALSE(square.describe(u"la", text, colours));
}

TEST_F(Operations, WithOutArgumentsAreNotCalledByReflection) {
  const Operation describe = Shape::metaClass().operation(u"describe");
  EXPECT_FALSE(describe.hasInvoker());
  const auto arguments = describe.getArguments();
  ASSERT_EQ(arguments.size(), 3U);
  EXPECT_FALSE(arguments[0].isOut());
  EXPECT_TRUE(arguments[1].isOut());
  EXPECT_TRUE(arguments[2].isOut());
  EXPECT_EQ(arguments[1].getUpper(), 1);
  EXPECT_EQ(arguments[2].getUpper(), -1);
  EXPECT_THAT(raised<InvalidValue>([this] {
                square.invoke(u"describe", {Value(u"en"), Value(), Value()});
              }),
              StartsWith("InvalidValue(probe.Shape.describe; "));
}

TEST_F(Operations, MayBeKeptFromReflection) {
  EXPECT_FALSE(Shape::metaClass().operation(u"measure").hasInvoker());
  EXPECT_EQ(square.measure(), 3);
  EXPECT_THAT(raised<InvalidValue>([this] { square.invoke(u"measure", {}); }),
              StartsWith("InvalidValue(probe.Shape.measure; "));
}

TEST_F(Operations, AreDescribedAsTheyAre) {
  const auto shape = Shape::metaClass();
  EXPECT_TRUE(shape.operation(u"area").isAbstract());
  EXPECT_TRUE(shape.operation(u"area").hasInvoker());
  EXPECT_FALSE(shape.operation(u"scale").isAbstract());
  EXPECT_TRUE(shape.operation(u"sum").isStatic());
  EXPECT_TRUE(shape.operation(u"sum").isPublic());
  EXPECT_TRUE(shape.operation(u"sum").getArguments()[0].isOrdered());
  EXPECT_FALSE(shape.operation(u"corners").isPublic());
  EXPECT_TRUE(shape.operation(u"corners").isOrdered());
  EXPECT_TRUE(shape.operation(u"corners").hasInvoker());
  EXPECT_FALSE(shape.operation(u"count").isPublic());
  EXPECT_TRUE(shape.operation(u"count").isStatic());
}

TEST_F(Operations, ThatAreInternalCanBeRefusedByTheirDescription) {
  const auto shape = Shape::metaClass();
  for (const char16_t* name : {u"corners", u"count"}) {
    EXPECT_EQ(raised<InvalidValue>([&] { shape.operation(name).checkPublic(); }),
              "InvalidValue(probe.Shape." + lx::text::toUtf8(name) +
                  "; the operation is not public; call a public one of its class.)");
  }
  EXPECT_NO_THROW(shape.operation(u"area").checkPublic());
}

TEST_F(Operations, ThatAreOverriddenAreDescribedOnceOnly) {
  EXPECT_TRUE(Square::metaClass().getOwnOperations().empty());
  ASSERT_EQ(Cube::metaClass().getOwnOperations().size(), 1U);
  EXPECT_EQ(Cube::metaClass().operation(u"area").getOwner(), Shape::metaClass());
}

TEST_F(Operations, ThatAreStaticNeedNoElement) {
  EXPECT_EQ(Shape::sum({square, cube}), 33);
  probe::Doings::shapesScaled = 5;
  EXPECT_EQ(Shape::Impl::count(), 5);
}

TEST_F(Operations, MayGiveASubclassInTheHandleOfTheClassThatOverridesThem) {
  square.setColour(Colour::Blue);
  const Square twin = square.twin(model);
  EXPECT_EQ(twin.side(), 3);
  EXPECT_EQ(twin.colour(), Colour::Blue);
  const Shape any = Shape(square).twin(model);
  EXPECT_EQ(any.getMetaClass(), Square::metaClass());
}

TEST_F(Operations, CalledCreateStandBesideTheCreationOfElements) {
  const Square other = withSide<Square>(model, 5);
  EXPECT_EQ(square.create(other), u"Square 25");
  EXPECT_EQ(square.side(), 5);
  EXPECT_EQ(Shape(cube).create(square), u"Square 25");
}

TEST_F(Operations, RaiseOnElementsThatAreGoneAndThroughNullHandles) {
  square.destroy();
  EXPECT_THAT(raised<InvalidValue>([this] { square.scale(2); }),
              StartsWith("InvalidValue(probe.Shape.scale; "));
  EXPECT_THAT(raised<InvalidValue>([this] { static_cast<void>(square.area()); }),
              StartsWith("InvalidValue(probe.Shape.area; "));
  EXPECT_THAT(raised<InvalidValue>([] { static_cast<void>(Cube().volume()); }),
              StartsWith("InvalidValue(probe.Cube.volume; "));
  EXPECT_THAT(raised<InvalidValue>([this] { static_cast<void>(square.twin(model)); }),
              StartsWith("InvalidValue(probe.Shape.twin; "));
}

TEST_F(Operations, TellWhenAnElementIsCreatedAndAboutToGo) {
  const int created = probe::Doings::squaresCreated;
  const int told = probe::Doings::squaresToldOfTheirEnd;
  const Cube another = Cube::create(model);
  EXPECT_EQ(probe::Doings::squaresCreated, created + 1);
  another.destroy();
  EXPECT_EQ(probe::Doings::squaresToldOfTheirEnd, told + 1);
}

// The abstract class

TEST_F(Operations, OfAnAbstractClassCantBeHadByItsBuilder) {
  EXPECT_THAT(raised<InvalidValue>([this] { Shape::Builder(model).setSide(1).create(); }),
              StartsWith("InvalidValue(probe.Shape.Builder.create; "));
  EXPECT_EQ(model.impl()->numberOfElements(), 2U);
}

TEST_F(Operations, OfAnAbstractClassHaveARegisteredFactoryThatMakesNoBuilder) {
  for (const auto& described : {Shape::metaClass(), ModelElement::metaClass()}) {
    EXPECT_TRUE(described.isAbstract());
    ASSERT_NE(described.impl()->builderFactory, nullptr);
    EXPECT_FALSE(described.impl()->builderFactory(model));
    EXPECT_FALSE(described.impl()->instantiateBuilder(model));
  }
  EXPECT_FALSE(Square::metaClass().isAbstract());
  const auto builder = Square::metaClass().impl()->instantiateBuilder(model);
  ASSERT_TRUE(builder);
  EXPECT_EQ(builder->create().getMetaClass(), Square::metaClass());
}

// Derived properties

TEST_F(Operations, DerivePropertiesFromOthers) {
  EXPECT_EQ(square.label(), u"Square 9");
  EXPECT_EQ(cube.label(), u"Cube 24");
  EXPECT_FALSE(square.half());
  EXPECT_FALSE(square.hasHalf());
  EXPECT_EQ(cube.half().value(), 1);
  EXPECT_TRUE(cube.hasHalf());
  EXPECT_TRUE(cube.impl()->getSecret());
}

TEST_F(Operations, DerivePropertiesForReflection) {
  EXPECT_EQ(cube.getPropertyValue(u"label"), Value(u"Cube 24"));
  EXPECT_EQ(cube.getPropertyValue(u"half"), Value(boost::optional<std::int32_t>(1)));
  EXPECT_TRUE(cube.hasPropertyValue(u"label"));
  EXPECT_TRUE(cube.hasPropertyValue(u"half"));
  EXPECT_FALSE(square.hasPropertyValue(u"half"));
  EXPECT_FALSE(cube.hasPropertyValue(u"holder"));
  const auto containers = probe::Containers::create(model);
  containers.setAny(cube);
  EXPECT_TRUE(cube.hasPropertyValue(u"holder"));
  EXPECT_EQ(cube.getPropertyValue(u"holder"), Value(containers));
  EXPECT_EQ(cube.holder(), containers);
}

TEST_F(Operations, NeverSetDerivedProperties) {
  for (const char16_t* name : {u"label", u"half", u"holder", u"secret"}) {
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { cube.setPropertyValue(name, Value(u"x")); }),
              "CannotSetReadOnlyProperty(probe.Shape." + lx::text::toUtf8(name) + ")");
  }
}

TEST_F(Operations, LookAtTheElementBeforeTheyRefuseToSetADerivedProperty) {
  const Property label = Square::metaClass().property(u"label");
  cube.impl()->convertToProxy();
  square.destroy();
  EXPECT_EQ(raised<CannotModifyProxy>([this] { cube.setPropertyValue(u"label", Value(1)); }),
            "CannotModifyProxy(probe.Shape.label)");
  EXPECT_EQ(raised<CannotModifyProxy>([&] { label.checkSettable(*cube.impl()); }),
            "CannotModifyProxy(probe.Shape.label)");
  EXPECT_THAT(raised<InvalidValue>([this] { square.setPropertyValue(u"label", Value(1)); }),
              StartsWith("InvalidValue(probe.Shape.label; the element was destroyed"));
}

TEST_F(Operations, NeverBuildDerivedProperties) {
  Square::Builder builder(model);
  const Property label = Square::metaClass().property(u"label");
  EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { builder.setOrAdd(label, Value(u"x")); }),
            "CannotSetReadOnlyProperty(probe.Shape.label)");
}

TEST_F(Operations, KeepTheDerivedPropertyWithoutPublicGetterFromOthers) {
  EXPECT_THAT(raised<InvalidValue>([this] { static_cast<void>(cube.getPropertyValue(u"secret")); }),
              StartsWith("InvalidValue(probe.Shape.secret; "));
}

TEST_F(Operations, GiveTheZeroForADerivedPropertyOfAnElementThatIsGone) {
  cube.destroy();
  EXPECT_EQ(cube.label(), u"");
  EXPECT_FALSE(cube.half());
  EXPECT_EQ(cube.getPropertyValue(u"label"), Value(u""));
  EXPECT_FALSE(cube.hasPropertyValue(u"label"));
}

TEST_F(Operations, ListDerivedPropertiesFirstAndWithoutIndex) {
  std::vector<std::u16string> names;
  std::vector<unsigned> indices;
  for (const Property& property : Square::metaClass().getProperties()) {
    names.push_back(property.getName());
    indices.push_back(property.getIndex());
  }
  EXPECT_EQ(names,
            (std::vector<std::u16string>{u"label", u"half", u"holder", u"secret", u"side", u"colour"}));
  EXPECT_EQ(indices, (std::vector<unsigned>{0, 0, 0, 0, 1, 2}));
  EXPECT_TRUE(Shape::metaClass().property(u"label").traits().isDerived);
}

TEST_F(Operations, AskAnElementWhetherAPropertyIsOfItsClass) {
  const Property colour = Square::metaClass().property(u"colour");
  EXPECT_TRUE(square.impl()->isPropertyOfClass(colour));
  EXPECT_TRUE(cube.impl()->isPropertyOfClass(colour)) << "of its superclass";
  EXPECT_TRUE(cube.impl()->isPropertyOfClass(Cube::metaClass().property(u"side"))) << "of one further up";
  EXPECT_FALSE(cube.impl()->isPropertyOfClass(probe::Containers::metaClass().property(u"any")));
  EXPECT_FALSE(cube.impl()->isPropertyOfClass(Property()));
}

TEST_F(Operations, FindElementsByDerivedProperties) {
  Shape::Constrainables wanted(model);
  wanted.label.equals(u"Cube 24");
  EXPECT_EQ(lx::base::query::find<Shape>(wanted), std::vector<Shape>{cube});
}

// Casts

TEST_F(Operations, CastHandlesByTheClassOfTheElement) {
  const ModelElement any = cube;
  EXPECT_EQ(castTo<Square>(any), cube);
  EXPECT_EQ(castTo<Shape>(any).area(), 24);
  EXPECT_FALSE(castTo<Cube>(ModelElement()));
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([this] { castTo<Cube>(square); }),
            "CannotCastIncompatibleTypes(probe.Square; probe.Cube)");
}

}  // namespace
