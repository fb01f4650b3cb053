#include <set>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
using lx::base::ValueMeta;
using lx::base::meta::DefaultPropertySerializer;
using lx::base::meta::PropertySerializer;
using lx::base::meta::TransientOnlyPropertySerializer;

namespace {

using Text = std::u16string;
using Texts = std::vector<Text>;

TEST(ValueMeta, TellsThatAValueIsManagedUnlessToldOtherwise) {
  Value value(Texts{u"a"});
  EXPECT_FALSE(value.isUnmanaged());
  ValueMeta(value).setUnmanaged();
  EXPECT_TRUE(value.isUnmanaged());
  EXPECT_TRUE(ValueMeta(value).isUnmanaged());
  ValueMeta(value).setUnmanaged(false);
  EXPECT_FALSE(value.isUnmanaged());
}

TEST(ValueMeta, MarksAValueTwiceWithoutHarm) {
  Value value(std::int32_t{3});
  ValueMeta(value).setUnmanaged();
  ValueMeta(value).setUnmanaged();
  EXPECT_TRUE(value.isUnmanaged());
  EXPECT_EQ(value.as<std::int32_t>(), 3);
}

TEST(ValueMeta, LeavesAnEmptyValueAsItIs) {
  Value value;
  ValueMeta(value).setUnmanaged();
  EXPECT_TRUE(value.isEmpty());
  EXPECT_FALSE(value.isUnmanaged());
}

TEST(ValueMeta, GoesWithCopiesAndMovesAndStaysBehindInNeither) {
  Value value(Text(u"a text that is too long to lie within a text"));
  ValueMeta(value).setUnmanaged();
  const Value copy(value);
  EXPECT_TRUE(copy.isUnmanaged());
  Value assigned;
  assigned = copy;
  EXPECT_TRUE(assigned.isUnmanaged());
  const Value moved(std::move(value));
  EXPECT_TRUE(moved.isUnmanaged());
  assigned = Value(Text(u"managed"));
  EXPECT_FALSE(assigned.isUnmanaged());
  EXPECT_TRUE(copy.isUnmanaged());
}

TEST(ValueMeta, MakesNoDifferenceToContentTypeAndEquality) {
  const Value managed(Texts{u"a", u"b"});
  Value unmanaged(managed);
  ValueMeta(unmanaged).setUnmanaged();
  EXPECT_EQ(managed, unmanaged);
  EXPECT_TRUE(unmanaged.is<Texts>());
  EXPECT_FALSE(unmanaged.is<Text>());
  EXPECT_EQ(unmanaged.as<Texts>(), managed.as<Texts>());
  EXPECT_TRUE(Value::genericComparator<Texts>(managed, unmanaged));
}

TEST(ValueMeta, MarksOneTypeWithoutMarkingOthers) {
  Value text(u"a");
  ValueMeta(text).setUnmanaged();
  EXPECT_FALSE(Value(u"b").isUnmanaged());
  EXPECT_FALSE(Value(true).isUnmanaged());
}

TEST(PropertySerializer, CombinesUnmanagedValues) {
  const DefaultPropertySerializer<Text> serializer;
  EXPECT_TRUE(serializer.combineAsUnmanagedSequenceValue({Value(u"a")}).isUnmanaged());
  EXPECT_TRUE(serializer.combineAsUnmanagedSetValue({Value(u"a")}).isUnmanaged());
  EXPECT_TRUE(serializer.combineAsUnmanagedSequenceValue({}).isUnmanaged());
  EXPECT_FALSE(serializer.createDefaultValue().isUnmanaged());
}

TEST(PropertySerializer, CombinesTextsToASetByCodeUnit) {
  const DefaultPropertySerializer<Text> serializer;
  const Text lone(1, char16_t{0xd800});
  const Text pair{char16_t{0xd83d}, char16_t{0xde00}};
  const Text high(1, char16_t{0xffee});
  const Value set = serializer.combineAsUnmanagedSetValue(
      {Value(high), Value(pair), Value(lone), Value(u"B"), Value(u"a")});
  const auto& texts = set.as<std::set<Text>>();
  EXPECT_EQ(Texts(texts.begin(), texts.end()), (Texts{u"B", u"a", lone, pair, high}));
}

/// Writes single values only.
class Plain : public PropertySerializer {
 public:
  Value parseValue(const Text& text) const override { return Value(text); }
  Value parseOptionalValue(const boost::optional<Text>&) const override { return {}; }
  Text serializeValue(const Value& value) const override { return value.as<Text>(); }
  Value createDefaultValue() const override { return Value(u""); }
  Value createEmptyOptionalValue() const override { return {}; }
  Value combineAsUnmanagedSequenceValue(const std::vector<Value>&) const override { return {}; }
  Value combineAsUnmanagedSetValue(const std::vector<Value>&) const override { return {}; }
};

TEST(PropertySerializer, SaysByDefaultThatAnOptionalIsAbsent) {
  const Plain serializer;
  EXPECT_FALSE(serializer.serializeOptionalValue(Value(boost::optional<Text>(u"there"))));
  EXPECT_FALSE(serializer.serializeOptionalValue(Value()));
  EXPECT_EQ(serializer.serializeValue(Value(u"there")), u"there");
}

TEST(TransientOnlyPropertySerializer, WritesAnAbsentOptionalAsAbsentAndRefusesAPresentOne) {
  const TransientOnlyPropertySerializer<std::int32_t> serializer;
  using Optional = boost::optional<std::int32_t>;
  EXPECT_FALSE(serializer.serializeOptionalValue(Value(Optional())));
  EXPECT_THAT(
      raised<lxb::messages::InvalidValue>([&] { serializer.serializeOptionalValue(Value(Optional(1))); }),
      testing::StartsWith("InvalidValue(serializeValue; "));
}

}  // namespace
