#include <limits>

#include <boost/uuid/string_generator.hpp>

#include "platform/foundation/Model.h"
#include "platform/foundation/messages.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;
using lx::base::Value;
using lx::base::meta::DefaultPropertySerializer;
using lx::base::meta::MetaRegistry;
using lx::base::meta::PropertySerializer;
using lx::base::meta::PropertySerializerRegistry;
using lx::base::meta::TransientOnlyPropertySerializer;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

/// A type with neither text nor order.
struct Opaque {
  int number = 0;
  bool operator==(const Opaque&) const = default;
};

template <class T>
T parsed(const std::u16string& text) {
  return DefaultPropertySerializer<T>().parseValue(text).template as<T>();
}

template <class T>
std::u16string text(const T& value) {
  return DefaultPropertySerializer<T>().serializeValue(Value(value));
}

template <class T>
std::string refusalOf(const std::u16string& text) {
  return raised<InvalidValue>([&] { parsed<T>(text); });
}

TEST(DefaultPropertySerializer, TakesTextsAsTheyAre) {
  const std::u16string odd{u'a', u'\0', char16_t{0xDC00}, u'\n'};
  EXPECT_EQ(text(odd), odd);
  EXPECT_EQ(parsed<std::u16string>(odd), odd);
  EXPECT_EQ(parsed<std::u16string>(u""), u"");
}

TEST(DefaultPropertySerializer, ConvertsNarrowTextsByUtf8) {
  EXPECT_EQ(text(std::string("\xC3\xA9")), u"\u00E9");
  EXPECT_EQ(parsed<std::string>(u"\u00E9"), "\xC3\xA9");
}

TEST(DefaultPropertySerializer, WritesBooleansAsWords) {
  EXPECT_EQ(text(true), u"true");
  EXPECT_EQ(text(false), u"false");
  EXPECT_TRUE(parsed<bool>(u"true"));
  EXPECT_FALSE(parsed<bool>(u"false"));
}

TEST(DefaultPropertySerializer, RefusesTextsThatAreNoBoolean) {
  for (const char16_t* wrong : {u"", u"True", u"1", u"true ", u"yes"}) {
    EXPECT_THAT(refusalOf<bool>(wrong), StartsWith("InvalidValue(\"" + lx::text::toUtf8(wrong) + "\"; "));
  }
}

TEST(DefaultPropertySerializer, ReadsAndWritesIntegersUpToTheirLimits) {
  for (const std::int32_t number :
       {0, 1, -1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(parsed<std::int32_t>(text(number)), number);
  }
  EXPECT_EQ(text(std::int32_t{-2147483647 - 1}), u"-2147483648");
}

TEST(DefaultPropertySerializer, RefusesTextsThatAreNoInteger) {
  for (const char16_t* wrong :
       {u"", u" 1", u"1 ", u"+1", u"1.0", u"2147483648", u"-2147483649", u"0x10", u"\u0661"}) {
    EXPECT_THAT(refusalOf<std::int32_t>(wrong),
                StartsWith("InvalidValue(\"" + lx::text::toUtf8(wrong) + "\"; "));
  }
}

TEST(DefaultPropertySerializer, ReadsIdentitiesInEitherCaseAndWritesThemInLower) {
  const boost::uuids::uuid uuid = boost::uuids::string_generator()("0f40bd84-e4d9-3112-ba83-02023181b729");
  EXPECT_EQ(text(uuid), u"0f40bd84-e4d9-3112-ba83-02023181b729");
  EXPECT_EQ(parsed<boost::uuids::uuid>(u"0F40BD84-E4D9-3112-BA83-02023181B729"), uuid);
}

TEST(DefaultPropertySerializer, RefusesTextsThatAreNoIdentity) {
  for (const char16_t* wrong :
       {u"", u"0f40bd84", u"{0f40bd84-e4d9-3112-ba83-02023181b729}", u"0f40bd84e4d93112ba8302023181b729",
        u" 0f40bd84-e4d9-3112-ba83-02023181b729", u"0f40bd84-e4d9-3112-ba83-02023181b72g"}) {
    EXPECT_THAT(refusalOf<boost::uuids::uuid>(wrong),
                StartsWith("InvalidValue(\"" + lx::text::toUtf8(wrong) + "\"; "));
  }
}

TEST(DefaultPropertySerializer, RefusesToWriteAValueOfAnotherType) {
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>(
                [] { DefaultPropertySerializer<bool>().serializeValue(Value(std::int32_t{1})); }),
            "CannotCastIncompatibleTypes(Integer; Boolean)");
}

TEST(DefaultPropertySerializer, ReadsAndWritesValuesThatMayBeAbsent) {
  const DefaultPropertySerializer<std::int32_t> serializer;
  using Optional = boost::optional<std::int32_t>;
  EXPECT_EQ(serializer.parseOptionalValue(std::u16string(u"5")).as<Optional>().value(), 5);
  EXPECT_FALSE(serializer.parseOptionalValue(boost::none).as<Optional>());
  EXPECT_FALSE(serializer.createEmptyOptionalValue().as<Optional>());
  EXPECT_EQ(serializer.serializeOptionalValue(Value(Optional(5))).value(), u"5");
  EXPECT_FALSE(serializer.serializeOptionalValue(Value(Optional())));
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.parseOptionalValue(std::u16string(u"")); }),
              StartsWith("InvalidValue(\"\"; "));
}

TEST(DefaultPropertySerializer, GivesTheZeroOfItsType) {
  EXPECT_EQ(DefaultPropertySerializer<std::u16string>().createDefaultValue(), Value(u""));
  EXPECT_EQ(DefaultPropertySerializer<bool>().createDefaultValue(), Value(false));
  EXPECT_EQ(DefaultPropertySerializer<std::int32_t>().createDefaultValue(), Value(std::int32_t{0}));
}

TEST(DefaultPropertySerializer, CombinesValuesToASequenceThatKeepsOrderAndEquals) {
  const DefaultPropertySerializer<std::u16string> serializer;
  const Value sequence = serializer.combineAsUnmanagedSequenceValue({Value(u"b"), Value(u"a"), Value(u"b")});
  EXPECT_EQ(sequence.as<std::vector<std::u16string>>(), (std::vector<std::u16string>{u"b", u"a", u"b"}));
  EXPECT_TRUE(serializer.combineAsUnmanagedSequenceValue({}).as<std::vector<std::u16string>>().empty());
}

TEST(DefaultPropertySerializer, CombinesValuesToASetThatKeepsEachOnce) {
  const DefaultPropertySerializer<std::u16string> serializer;
  const Value set = serializer.combineAsUnmanagedSetValue({Value(u"b"), Value(u"a"), Value(u"b")});
  EXPECT_EQ(set.as<std::set<std::u16string>>(), (std::set<std::u16string>{u"a", u"b"}));
}

TEST(DefaultPropertySerializer, RefusesToCombineValuesOfAnotherType) {
  const DefaultPropertySerializer<bool> serializer;
  const std::vector<Value> mixed{Value(true), Value(std::int32_t{1})};
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { serializer.combineAsUnmanagedSequenceValue(mixed); }),
            "CannotCastIncompatibleTypes(Integer; Boolean)");
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { serializer.combineAsUnmanagedSetValue(mixed); }),
            "CannotCastIncompatibleTypes(Integer; Boolean)");
}

TEST(DefaultPropertySerializer, RefusesTextAndSetsForATypeThatHasNeitherTextNorOrder) {
  const DefaultPropertySerializer<Opaque> serializer;
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.parseValue(u"1"); }),
              StartsWith("InvalidValue(parseValue; "));
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.serializeValue(Value(Opaque{1})); }),
              StartsWith("InvalidValue(serializeValue; "));
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.combineAsUnmanagedSetValue({Value(Opaque{1})}); }),
              StartsWith("InvalidValue(combineAsUnmanagedSetValue; "));
  EXPECT_EQ(serializer.combineAsUnmanagedSequenceValue({Value(Opaque{1})}).as<std::vector<Opaque>>().size(),
            1U);
  EXPECT_FALSE(serializer.isTransientOnly());
}

TEST(TransientOnlyPropertySerializer, NeitherReadsNorWritesAlsoWhereTheTypeHasText) {
  const TransientOnlyPropertySerializer<std::int32_t> serializer;
  EXPECT_TRUE(serializer.isTransientOnly());
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.parseValue(u"1"); }),
              StartsWith("InvalidValue(parseValue; "));
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.serializeValue(Value(std::int32_t{1})); }),
              StartsWith("InvalidValue(serializeValue; "));
  EXPECT_THAT(raised<InvalidValue>([&] { serializer.parseOptionalValue(std::u16string(u"1")); }),
              StartsWith("InvalidValue(parseValue; "));
  EXPECT_FALSE(serializer.parseOptionalValue(boost::none).as<boost::optional<std::int32_t>>());
}

TEST(TransientOnlyPropertySerializer, MakesTheValuesThatReflectionNeeds) {
  const TransientOnlyPropertySerializer<std::shared_ptr<int>> serializer;
  EXPECT_EQ(serializer.createDefaultValue(), Value(std::shared_ptr<int>()));
  const auto pointer = std::make_shared<int>(1);
  const Value pair = serializer.combineAsUnmanagedSequenceValue({Value(pointer), Value(pointer)});
  EXPECT_EQ(pair.as<std::vector<std::shared_ptr<int>>>().size(), 2U);
}

TEST(PropertySerializerRegistry, KnowsTheSerializersOfTheStandardTypes) {
  MetaRegistry::getInstance();
  for (const char16_t* type :
       {u"lx.base.String", u"lx.base.StdString", u"lx.base.Boolean", u"lx.base.Integer", u"lx.base.UUID"}) {
    const auto serializer = PropertySerializerRegistry::getInstance().find(type);
    ASSERT_TRUE(serializer) << lx::text::toUtf8(type);
    EXPECT_FALSE(serializer->isTransientOnly());
  }
}

TEST(PropertySerializerRegistry, FindsNothingForAnUnknownTypeOrFormat) {
  MetaRegistry::getInstance();
  const PropertySerializerRegistry& registry = PropertySerializerRegistry::getInstance();
  EXPECT_FALSE(registry.find(u"lx.base.Nothing"));
  EXPECT_FALSE(registry.find(u"lx.base.String", u"ID"));
}

TEST(PropertySerializerRegistry, ReplacesASerializerOfTheSameTypeAndFormat) {
  PropertySerializerRegistry registry;
  const auto first = std::make_shared<const DefaultPropertySerializer<bool>>();
  const auto second = std::make_shared<const DefaultPropertySerializer<bool>>();
  registry.registerPropertySerializer(u"own.Type", u"", first);
  registry.registerPropertySerializer(u"own.Type", u"ID", first);
  registry.registerPropertySerializer(u"own.Type", u"", second);
  EXPECT_EQ(registry.find(u"own.Type"), second);
  EXPECT_EQ(registry.find(u"own.Type", u"ID"), first);
}

}  // namespace
