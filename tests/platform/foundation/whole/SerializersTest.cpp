#include <gmock/gmock.h>

#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/platform/foundation/whole/Ways.h"
#include "tests/support/model/MetaPackageProbe.h"

using namespace whole_test;
using lx::base::meta::PropertySerializer;
using lx::base::meta::PropertySerializerRegistry;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

/// All types of the test model whose values are written.
class Serializers : public testing::TestWithParam<Samples> {
 protected:
  void SetUp() override {
    probe::MetaPackageProbe::getInstance();
    serializer_ = PropertySerializerRegistry::getInstance().find(samples().type);
    ASSERT_TRUE(serializer_);
  }

  static const Samples& samples() { return GetParam(); }
  const PropertySerializer& serializer() const { return *serializer_; }

 private:
  std::shared_ptr<const PropertySerializer> serializer_;
};

/// Expect that writing a value is refused because it, or its type, has no text.
template <class F>
void expectNoText(const Samples& samples, F write) {
  const bool isLiteral = samples.type == u"probe.Colour";
  EXPECT_THAT(raised<InvalidValue>(write),
              StartsWith(isLiteral ? "InvalidValue(probe.Colour; " : "InvalidValue(serializeValue; "));
}

TEST_P(Serializers, WriteAndReadAValue) {
  for (const Sample& sample : samples().singles) {
    SCOPED_TRACE(written(sample.value));
    if (!sample.text) {
      expectNoText(samples(), [&] { static_cast<void>(serializer().serializeValue(sample.value)); });
      continue;
    }
    EXPECT_EQ(serializer().serializeValue(sample.value), *sample.text);
    EXPECT_EQ(serializer().parseValue(*sample.text) == sample.value, sample.comesBack);
  }
}

TEST_P(Serializers, WriteAndReadAValueThatMayBeAbsent) {
  EXPECT_TRUE(serializer().createEmptyOptionalValue() == samples().optionals.front());
  EXPECT_TRUE(serializer().parseOptionalValue(boost::none) == samples().optionals.front());
  EXPECT_FALSE(serializer().serializeOptionalValue(samples().optionals.front()).has_value());
  for (std::size_t at = 0; at < samples().singles.size(); ++at) {
    const Sample& sample = samples().singles[at];
    const Value& value = samples().optionals[at + 1];
    SCOPED_TRACE(written(value));
    if (!sample.text) {
      expectNoText(samples(), [&] { static_cast<void>(serializer().serializeOptionalValue(value)); });
      continue;
    }
    EXPECT_TRUE(serializer().serializeOptionalValue(value) == sample.text);
    EXPECT_EQ(serializer().parseOptionalValue(sample.text) == value, sample.comesBack);
  }
}

TEST_P(Serializers, RefuseATextThatIsNone) {
  for (const std::u16string& text : samples().noTexts) {
    SCOPED_TRACE(lx::text::toUtf8(text));
    EXPECT_THAT(raised<InvalidValue>([&] { static_cast<void>(serializer().parseValue(text)); }),
                StartsWith("InvalidValue("));
    EXPECT_THAT(raised<InvalidValue>(
                    [&] { static_cast<void>(serializer().parseOptionalValue(boost::make_optional(text))); }),
                StartsWith("InvalidValue("));
  }
  const bool takesAnyText = samples().type == u"lx.base.String" || samples().type == u"lx.base.StdString";
  EXPECT_EQ(samples().noTexts.empty(), takesAnyText);
}

TEST_P(Serializers, RefuseAValueOfAnotherType) {
  for (const Value& other : {alien(), Value(), samples().lists.back()}) {
    EXPECT_THAT(raised<CannotCastIncompatibleTypes>(
                    [&] { static_cast<void>(serializer().serializeOptionalValue(other)); }),
                StartsWith("CannotCastIncompatibleTypes("));
    EXPECT_THAT(raised<CannotCastIncompatibleTypes>(
                    [&] { static_cast<void>(serializer().combineAsUnmanagedSequenceValue({other})); }),
                StartsWith("CannotCastIncompatibleTypes("));
  }
}

TEST_P(Serializers, MakeListsAndSetsOfValues) {
  std::vector<Value> values;
  for (const Sample& sample : samples().singles) values.push_back(sample.value);
  EXPECT_TRUE(serializer().combineAsUnmanagedSequenceValue({}) == samples().lists.front());
  EXPECT_TRUE(serializer().combineAsUnmanagedSequenceValue(values) == samples().lists[2]);
  const std::vector<Value> twice{values.back(), values.front(), values.back()};
  EXPECT_TRUE(serializer().combineAsUnmanagedSequenceValue(twice) == samples().lists[4]);
  if (!samples().hasOrder) {
    EXPECT_THAT(
        raised<InvalidValue>([&] { static_cast<void>(serializer().combineAsUnmanagedSetValue(values)); }),
        StartsWith("InvalidValue(combineAsUnmanagedSetValue; "));
    return;
  }
  EXPECT_TRUE(serializer().combineAsUnmanagedSetValue({}) == samples().sets.front());
  EXPECT_TRUE(serializer().combineAsUnmanagedSetValue({values.back(), values.back()}) == samples().sets[1]);
  EXPECT_TRUE(serializer().combineAsUnmanagedSetValue(values) == samples().sets.back());
}

TEST_P(Serializers, GiveTheZeroAndSayWhatIsNeverWritten) {
  EXPECT_TRUE(serializer().createDefaultValue() == samples().singles.front().value);
  EXPECT_EQ(serializer().isTransientOnly(), samples().isTransientOnly);
}

std::vector<Samples> serialized() {
  std::vector<Samples> result = allSamples();
  std::erase_if(result, [](const Samples& each) { return !each.hasSerializer; });
  return result;
}

INSTANTIATE_TEST_SUITE_P(OfEachType, Serializers, testing::ValuesIn(serialized()),
                         [](const testing::TestParamInfo<Samples>& each) {
                           const std::string type = lx::text::toUtf8(each.param.type);
                           return type.substr(type.rfind('.') + 1);
                         });

TEST(SerializerOfAType, IsMissingWhereItsValuesAreNeverWritten) {
  probe::MetaPackageProbe::getInstance();
  for (const char16_t* type :
       {u"probe.Token", u"probe.Thing", u"lx.base.Model", u"lx.base.ModelElement", u"lx.base.HvArray"})
    EXPECT_FALSE(PropertySerializerRegistry::getInstance().find(type)) << lx::text::toUtf8(type);
}

TEST(SerializerOfAType, HasTheFormatsOfItsEnumeration) {
  probe::MetaPackageProbe::getInstance();
  const Samples& samples = samplesOf(u"probe.Colour");
  for (const char16_t* format : {u"", u"ID", u"PublicID"}) {
    const auto serializer = PropertySerializerRegistry::getInstance().find(u"probe.Colour", format);
    ASSERT_TRUE(serializer);
    EXPECT_EQ(serializer->serializeValue(samples.singles[2].value), u"Blue");
  }
}

}  // namespace
