#include <algorithm>

#include <gmock/gmock.h>

#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/platform/foundation/whole/Ways.h"
#include "tests/support/model/MetaPackageProbe.h"
#include "tests/support/model/bodies.h"

using namespace whole_test;
using lx::base::meta::Operation;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using probe::Colour;
using probe::Cube;
using probe::Doings;
using probe::Shape;
using probe::Square;
using testing::StartsWith;

namespace {

using Arguments = std::vector<Value>;

/// Call an operation by its name, and by its description.
Value invoked(const ModelElement& element, const char16_t* name, const Arguments& arguments = {}) {
  const Value result = element.invoke(name, arguments);
  const Operation operation = element.getMetaClass().operation(name);
  const Value again = element.impl()->invoke(operation, arguments);
  EXPECT_TRUE(result == again || result.is<ModelElement>())
      << written(result) << " is not " << written(again);
  return again;
}

std::vector<Square> shapes(const Model& model) {
  const Square square = Square::create(model), cube = Cube::create(model);
  square.setSide(3);
  cube.setSide(2);
  return {square, cube};
}

TEST(Invokers, GiveWhatADirectCallGives) {
  const Model model = Model::create();
  for (const Square& shape : shapes(model)) {
    SCOPED_TRACE(lx::text::toUtf8(shape.getMetaClass().getName()));
    EXPECT_EQ(invoked(shape, u"area"), Value(shape.area()));
  }
  const Cube cube = of<Cube>(shapes(model).back());
  EXPECT_EQ(invoked(cube, u"volume"), Value(std::int32_t{8}));
  EXPECT_EQ(invoked(cube, u"volume"), Value(cube.volume()));
}

TEST(Invokers, DoWhatADirectCallDoes) {
  const Model model = Model::create();
  const std::vector<Square> direct = shapes(model), reflected = shapes(model);
  for (std::size_t at = 0; at < direct.size(); ++at) {
    SCOPED_TRACE(at);
    const int scaled = Doings::shapesScaled;
    direct[at].scale(3);
    EXPECT_TRUE(reflected[at].invoke(u"scale", {Value(std::int32_t{3})}).isEmpty());
    EXPECT_EQ(Doings::shapesScaled, scaled + 2);
    EXPECT_EQ(reflected[at].side(), direct[at].side());
    EXPECT_EQ(reflected[at].colour(), direct[at].colour());
  }
  EXPECT_EQ(reflected[1].colour(), Colour::Green);  // by the subclass's own body
}

TEST(Invokers, CallInternalOperationsOnTheElementOnly) {
  const Model model = Model::create();
  for (const Square& shape : shapes(model)) {
    const Operation corners = shape.getMetaClass().operation(u"corners");
    EXPECT_EQ(
        raised<InvalidValue>([&] { shape.invoke(u"corners", {}); }),
        "InvalidValue(probe.Shape.corners; the operation is not public; call a public one of its class.)");
    const Value result = shape.impl()->invoke(corners, {});
    EXPECT_TRUE(result.is<std::vector<std::int32_t>>());
    EXPECT_EQ(result, Value(shape.impl()->corners()));
  }
}

TEST(Invokers, TakeElementsAndModelsAsArguments) {
  const Model model = Model::create(), second = Model::create();
  const std::vector<Square> from = shapes(model);
  const Square one = Square::create(model), two = Square::create(model);
  EXPECT_EQ(invoked(two, u"create", {Value(from[1])}), Value(one.impl()->create(from[1])));
  EXPECT_EQ(one.side(), 2);
  EXPECT_EQ(two.side(), 2);
  const Value twin = from[0].invoke(u"twin", {Value(second)});
  ASSERT_TRUE(twin.is<Square>());
  const Square direct = from[0].twin(second), reflected = of<Square>(twin.as<ModelElement>());
  EXPECT_EQ(reflected.getModel(), second);
  EXPECT_EQ(reflected.side(), direct.side());
  EXPECT_EQ(second.impl()->numberOfElements(), 2U);
}

TEST(Invokers, AreUndoneWithTheirTransaction) {
  const Model model = Model::create();
  const Square square = shapes(model).front();
  {
    const Transaction abandoned = begin(model);
    square.invoke(u"scale", {Value(std::int32_t{7})});
    EXPECT_EQ(square.side(), 21);
  }
  EXPECT_EQ(square.side(), 3);
}

/// The operations of the test model, and whether reflection calls them.
const std::vector<std::pair<std::string, bool>> All{
    {"probe.Cube.volume", true},    {"probe.Shape.area", true},   {"probe.Shape.corners", true},
    {"probe.Shape.count", false},   {"probe.Shape.create", true}, {"probe.Shape.describe", false},
    {"probe.Shape.measure", false}, {"probe.Shape.scale", true},  {"probe.Shape.sum", false},
    {"probe.Shape.twin", true}};

TEST(Invokers, AreThereForTheseOperationsAlone) {
  probe::MetaPackageProbe::getInstance();
  std::vector<std::pair<std::string, bool>> described;
  for (const char16_t* package : {u"probe", u"probe.inner"}) {
    const auto root = lx::base::meta::MetaRegistry::getInstance().findRootPackage(u"probe");
    const auto holder = root.getQualifiedName() == package ? root : root.getPackages().front();
    for (const lx::base::meta::Type& type : holder.getTypes()) {
      const auto* const impl = dynamic_cast<const Class::Impl*>(type.impl());
      if (impl == nullptr) continue;
      for (const Operation& each : of<Class>(type).getOwnOperations())
        described.emplace_back(lx::text::toUtf8(each.getQualifiedName()), each.hasInvoker());
    }
  }
  std::sort(described.begin(), described.end());
  EXPECT_EQ(described, All);
}

TEST(Invokers, ThatAreMissingRaiseInvalidValueWithTheQualifiedName) {
  const Model model = Model::create();
  const Square square = Square::create(model);
  for (const auto& [name, isInvocable] : All) {
    if (isInvocable) continue;
    const std::u16string last = lx::text::toUtf16(name.substr(name.rfind('.') + 1));
    const std::size_t count = square.getMetaClass().operation(last).getArguments().size();
    for (const std::size_t number : {std::size_t{0}, count}) {
      EXPECT_THAT(raised<InvalidValue>([&] { square.invoke(last, Arguments(number, alien())); }),
                  StartsWith("InvalidValue(" + name + "; "));
    }
  }
}

TEST(Invokers, RefuseOtherArguments) {
  const Model model = Model::create();
  const Square square = shapes(model).front();
  const ModelElement thing = make(model, u"probe.Thing");
  EXPECT_THAT(raised<InvalidValue>([&] { square.invoke(u"scale", {}); }),
              StartsWith("InvalidValue(probe.Shape.scale; "));
  EXPECT_THAT(raised<InvalidValue>([&] { square.invoke(u"area", {Value(std::int32_t{1})}); }),
              StartsWith("InvalidValue(probe.Shape.area; "));
  for (const Value& other : {alien(), Value()}) {
    EXPECT_THAT(raised<CannotCastIncompatibleTypes>([&] { square.invoke(u"scale", {other}); }),
                StartsWith("CannotCastIncompatibleTypes("));
  }
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { square.invoke(u"create", {Value(thing)}); }),
            "CannotCastIncompatibleTypes(probe.Thing; probe.Shape)");
  EXPECT_EQ(raised<NoSuchType>([&] { square.invoke(u"volume", {}); }), "NoSuchType(probe.Square.volume)");
  EXPECT_EQ(square.side(), 3);
}

TEST(Invokers, RefuseElementsOfAnotherClassAndThoseThatAreGone) {
  const Model model = Model::create();
  const Square square = Square::create(model), gone = Square::create(model);
  const Operation volume = Cube::metaClass().operation(u"volume");
  EXPECT_THAT(raised<CannotCastIncompatibleTypes>([&] { square.impl()->invoke(volume, {}); }),
              StartsWith("CannotCastIncompatibleTypes(probe.Square"));
  gone.destroy();
  EXPECT_THAT(raised<InvalidValue>([&] { gone.invoke(u"area", {}); }),
              StartsWith("InvalidValue(probe.Shape.area; "));
  EXPECT_THAT(raised<InvalidValue>([&] { static_cast<void>(gone.area()); }),
              StartsWith("InvalidValue(probe.Shape.area; "));
}

}  // namespace
