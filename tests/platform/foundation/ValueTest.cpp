#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "platform/foundation/ModelElement.h"
#include "platform/foundation/Value.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "tests/platform/foundation/Throwing.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
namespace meta = lx::base::meta;
using lxb::messages::CannotCastIncompatibleTypes;

namespace {

/// Counts the objects that live, and is too large to lie within a value.
struct Counted {
  static inline int living = 0;
  Counted() { ++living; }
  explicit Counted(int n) : number(n) { ++living; }
  Counted(const Counted& other) : number(other.number) { ++living; }
  Counted& operator=(const Counted&) = default;
  ~Counted() { --living; }
  friend bool operator==(const Counted& left, const Counted& right) { return left.number == right.number; }

  int number = 0;
  std::array<std::int64_t, 8> ballast{};
};

enum class Colour : std::int32_t { Red, Green };

TEST(Value, IsEmptyUntilItHoldsSomething) {
  const Value value{};
  EXPECT_TRUE(value.isEmpty());
  EXPECT_FALSE(value.is<bool>());
  EXPECT_FALSE(Value(false).isEmpty());
}

TEST(Value, GivesBackWhatItHolds) {
  EXPECT_EQ(Value(std::int32_t{-7}).as<std::int32_t>(), -7);
  EXPECT_EQ(Value(true).as<bool>(), true);
  EXPECT_EQ(Value(std::u16string(u"gain")).as<std::u16string>(), u"gain");
  EXPECT_EQ(Value(Colour::Green).as<Colour>(), Colour::Green);
  EXPECT_EQ(Value(std::vector<int>{1, 2}).as<std::vector<int>>(), (std::vector<int>{1, 2}));
  EXPECT_EQ(Value(boost::optional<std::string>("a")).as<boost::optional<std::string>>().value(), "a");
}

TEST(Value, CarriesATextLiteralAsAText) {
  const char16_t* const pointer = u"pointer";
  EXPECT_EQ(Value(u"literal").as<std::u16string>(), u"literal");
  EXPECT_EQ(Value(pointer).as<std::u16string>(), u"pointer");
}

TEST(Value, KeepsNulAndLoneSurrogatesOfAText) {
  const std::u16string text{u'a', u'\0', char16_t{0xD800}, u'b'};
  EXPECT_EQ(Value(text).as<std::u16string>(), text);
}

struct MadeOfAValue {
  MadeOfAValue(const Value&) {}  // NOLINT(google-explicit-constructor): this is what is tested
};

TEST(Value, TakesOnlyWhatCanBeCopied) {
  EXPECT_FALSE((std::is_constructible_v<Value, std::unique_ptr<int>>));
  EXPECT_FALSE((std::is_convertible_v<std::unique_ptr<int>, Value>));
  EXPECT_TRUE((std::is_constructible_v<Value, std::shared_ptr<int>>));
  EXPECT_TRUE((std::is_constructible_v<Value, Counted>));
  EXPECT_TRUE((std::is_constructible_v<Value, int*>));
  EXPECT_FALSE((std::is_constructible_v<Value, const MadeOfAValue&>));
}

TEST(Value, TakesNoNarrowLiteralWhichWouldBeAPointer) {
  EXPECT_FALSE((std::is_constructible_v<Value, const char*>));
  EXPECT_FALSE((std::is_constructible_v<Value, char*>));
  EXPECT_FALSE((std::is_constructible_v<Value, const char(&)[5]>));
  EXPECT_TRUE((std::is_constructible_v<Value, std::string>));
  EXPECT_TRUE((std::is_constructible_v<Value, const char16_t(&)[5]>));
}

TEST(Value, IsAHandleOfItsElementsClassAndOfTheSuperclasses) {
  const meta::Class root = ModelElement::metaClass();
  const Value value(root);
  EXPECT_TRUE(value.is<ModelElement>());
  EXPECT_TRUE(value.is<meta::NamedElement>());
  EXPECT_TRUE(value.is<meta::Class>());
  EXPECT_FALSE(value.is<meta::Property>());
  EXPECT_EQ(value.as<meta::Type>(), root);
}

TEST(Value, CarriesAListOfHandlesAsAListOfRootHandles) {
  const meta::Class root = ModelElement::metaClass();
  const Value value(std::vector<meta::Class>{root, meta::Class()});
  EXPECT_EQ(value, Value(std::vector<ModelElement>{root, ModelElement()}));
  EXPECT_TRUE(value.is<std::vector<meta::Class>>());
  EXPECT_TRUE(value.is<std::vector<meta::Type>>());
  EXPECT_FALSE(value.is<std::vector<meta::Property>>());
  EXPECT_FALSE(value.is<meta::Class>());
  EXPECT_TRUE(Value(std::vector<ModelElement>()).is<std::vector<meta::Property>>());
}

TEST(Value, CarriesAHandleOfAnyClassAsTheRootHandle) {
  struct Derived : ModelElement {};
  const Value value{Derived()};
  EXPECT_TRUE(value.is<ModelElement>());
  EXPECT_TRUE(value.is<Derived>());
  EXPECT_FALSE(value.as<ModelElement>());
}

TEST(Value, TellsItsExactTypeApartFromOnesThatConvert) {
  const Value value(std::int32_t{1});
  EXPECT_TRUE(value.is<std::int32_t>());
  EXPECT_FALSE(value.is<std::int64_t>());
  EXPECT_FALSE(value.is<bool>());
  EXPECT_FALSE(value.is<Colour>());
}

TEST(Value, RefusesToBeTakenAsAnotherType) {
  const Value number(std::int32_t{1});
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { static_cast<void>(number.as<bool>()); }),
            "CannotCastIncompatibleTypes(Integer; Boolean)");
  EXPECT_EQ(number.as<std::int32_t>(), 1);
}

TEST(Value, RefusesToBeTakenAsAnythingWhenItIsEmpty) {
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([] { static_cast<void>(Value().as<bool>()); }),
            "CannotCastIncompatibleTypes(an empty value; Boolean)");
}

TEST(Value, EqualsAValueOfTheSameTypeAndContentOnly) {
  EXPECT_EQ(Value(std::int32_t{1}), Value(std::int32_t{1}));
  EXPECT_FALSE(Value(std::int32_t{1}) == Value(std::int32_t{2}));
  EXPECT_FALSE(Value(std::int32_t{1}) == Value(true));
  EXPECT_FALSE(Value(u"a") == Value(std::string("a")));
  EXPECT_EQ(Value(), Value());
  EXPECT_FALSE(Value() == Value(false));
  EXPECT_FALSE(Value(false) == Value());
}

TEST(Value, ComparesPointersByIdentity) {
  const auto one = std::make_shared<int>(1);
  EXPECT_EQ(Value(one), Value(std::shared_ptr<int>(one)));
  EXPECT_FALSE(Value(one) == Value(std::make_shared<int>(1)));
  EXPECT_EQ(Value(std::shared_ptr<int>()), Value(std::shared_ptr<int>()));
}

TEST(Value, ComparesContentsByTheGenericComparator) {
  EXPECT_TRUE(Value::genericComparator<std::u16string>(Value(u"a"), Value(u"a")));
  EXPECT_FALSE(Value::genericComparator<std::u16string>(Value(u"a"), Value(u"b")));
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>(
                [] { Value::genericComparator<bool>(Value(true), Value(std::int32_t{1})); }),
            "CannotCastIncompatibleTypes(Integer; Boolean)");
}

TEST(Value, CopiesWhatItHolds) {
  const Value original(std::u16string(100, u'x'));
  Value copy(original);
  EXPECT_EQ(copy, original);
  copy = Value(u"other");
  EXPECT_EQ(original.as<std::u16string>().size(), 100U);
}

TEST(Value, IsEmptyOnceItsContentWasMovedAway) {
  Value original(std::u16string(u"text"));
  const Value taken(std::move(original));
  EXPECT_TRUE(original.isEmpty());  // NOLINT(bugprone-use-after-move): this is what is tested
  EXPECT_EQ(taken.as<std::u16string>(), u"text");
}

TEST(Value, SurvivesAssignmentToItself) {
  Value value(std::u16string(100, u'x'));
  const Value& same = value;
  value = same;
  EXPECT_EQ(value.as<std::u16string>().size(), 100U);
  Value& alias = value;
  value = std::move(alias);
  EXPECT_EQ(value.as<std::u16string>().size(), 100U);
}

TEST(Value, TakesAnotherTypeByAssignment) {
  Value value(std::int32_t{1});
  value = Value(Counted(3));
  EXPECT_EQ(value.as<Counted>().number, 3);
  value = Value();
  EXPECT_TRUE(value.isEmpty());
}

TEST(Value, DestroysEachContentThatItMadeExactlyOnce) {
  ASSERT_EQ(Counted::living, 0);
  {
    Value value{Counted(1)};
    Value copy(value);
    EXPECT_EQ(Counted::living, 2);
    const Value moved(std::move(copy));
    EXPECT_EQ(Counted::living, 2);
    value = moved;
    EXPECT_EQ(Counted::living, 2);
    value = Value(true);
    EXPECT_EQ(Counted::living, 1);
  }
  EXPECT_EQ(Counted::living, 0);
}

TEST(Value, LeavesTheContentAloneWhenCopyingItThrows) {
  struct Stubborn {
    Stubborn() = default;
    Stubborn(Stubborn&&) noexcept = default;
    Stubborn& operator=(Stubborn&&) = default;
    Stubborn& operator=(const Stubborn&) = default;
    Stubborn(const Stubborn&) { throw std::length_error("stubborn"); }
    ~Stubborn() = default;
    bool operator==(const Stubborn&) const { return true; }
  };
  const Value stubborn{Stubborn()};
  Value target(u"kept");
  EXPECT_THROW(target = stubborn, std::length_error);
  EXPECT_EQ(target.as<std::u16string>(), u"kept");
}

TEST(Value, CarriesWhatMightThrowFromItsDestructor) {
  Value value{Throwing()};
  const Value copy(value);
  EXPECT_EQ(copy, value);
  value = Value();
  EXPECT_TRUE(copy.is<Throwing>());
}

TEST(ValueDeathTest, EndsTheProgramWhenItEndsAndTheDestructorOfItsContentThrows) {
  EXPECT_DEATH(endWellBehind([] {
                 const Value value{Throwing()};
                 Throwing::throws = true;
               }),
               "thrown by a destructor");
}

TEST(ValueDeathTest, EndsTheProgramWhenItTakesAnotherValueAndTheDestructorOfItsContentThrows) {
  EXPECT_DEATH(endWellBehind([] {
                 Value value{Throwing()};
                 Throwing::throws = true;
                 value = Value(true);
               }),
               "thrown by a destructor");
}

TEST(Value, KeepsAModelAliveThatItCarries) {
  Value value(Model::create());
  EXPECT_TRUE(value.as<Model>().isAlive());
  const Model model = value.as<Model>();
  value = Value();
  EXPECT_TRUE(model.isAlive());
}

}  // namespace
