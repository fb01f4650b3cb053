#include <algorithm>

#include <gtest/gtest.h>

#include "platform/foundation/meta/MetaImpl.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/platform/foundation/whole/Ways.h"

namespace whole_test {

namespace {

using lx::base::meta::PropertySerializerRegistry;

/// Set the property in a transaction that is abandoned, and expect that it is as before.
template <class F>
void expectUndone(const Ways& ways, const ModelElement& element, const Value& before, const Value& next,
                  F set) {
  {
    const Transaction abandoned = begin(element.getModel());
    set(next);
    expectValue(ways, element, next);
  }
  expectValue(ways, element, before);
}

/// Set one value after another by a way, and take a third back.
template <class F>
void driveSetting(const Ways& ways, const Model& model, const Value& value, const Value& other, F set) {
  const ModelElement element = ways.maker.create(model);
  const auto setHere = [&](const Value& next) { set(element, next); };
  setHere(other);
  expectValue(ways, element, other);
  expectUndone(ways, element, other, value, setHere);
  setHere(value);
  expectValue(ways, element, value);
  const std::uint64_t transactions = model.impl()->counters().transactions;
  setHere(value);
  EXPECT_EQ(model.impl()->counters().transactions, transactions) << "an equal value is a change";
  expectValue(ways, element, value);
}

void driveBuilding(const Ways& ways, const Model& model, const Value& value) {
  const Property property = ways.maker.metaClass().property(ways.name);
  const auto typed = ways.maker.builder();
  ways.build(*typed, value);
  expectValue(ways, typed->createIn(model), value);
  const auto byValue = ways.maker.builder();
  byValue->setOrAdd(property, value);
  const ModelElement built = byValue->createIn(model);
  expectValue(ways, built, value);
  expectValue(ways, byValue->createIn(model), value);
  const auto byDescription = ways.maker.metaClass().impl()->instantiateBuilder(model);
  byDescription->setOrAdd(property, value);
  {
    const Transaction abandoned = begin(model);
    const ModelElement taken = byDescription->create();
    expectValue(ways, taken, value);
  }
  EXPECT_EQ(byDescription->create().getMetaClass(), ways.maker.metaClass());
  expectValue(ways, built, value);
}

/// Make the value of the property out of the values of its type, as a reader of a stored form does.
void driveCombining(const Ways& ways, const Model& model) {
  const auto serializer = PropertySerializerRegistry::getInstance().find(ways.type);
  const Samples& samples = samplesOf(ways.type);
  if (!serializer) {
    EXPECT_FALSE(samples.hasSerializer) << "there is no serializer";
    return;
  }
  std::vector<Value> values;
  for (const Sample& sample : samples.singles) values.push_back(sample.value);
  const bool isSet = ways.flags == ValueFlags::Set;
  const Value combined = isSet ? serializer->combineAsUnmanagedSetValue(values)
                               : serializer->combineAsUnmanagedSequenceValue(values);
  driveBuilding(ways, model, combined);
  const auto oneByOne = ways.maker.builder();
  for (const Value& each : values) oneByOne->setOrAdd(ways.maker.metaClass().property(ways.name), each);
  expectValue(ways, oneByOne->createIn(model), combined);
  if (!ways.isSettable) return;
  const ModelElement element = ways.maker.create(model);
  element.setPropertyValue(ways.name, combined);
  expectValue(ways, element, combined);
}

/// Set the property to what its type's serializer reads.
void driveReading(const Ways& ways, const Model& model) {
  const auto serializer = PropertySerializerRegistry::getInstance().find(ways.type);
  const Samples& samples = samplesOf(ways.type);
  if (!serializer) {
    EXPECT_FALSE(samples.hasSerializer) << "there is no serializer";
    return;
  }
  const bool isOptional = ways.flags == ValueFlags::Optional;
  for (std::size_t at = 0; at < samples.singles.size(); ++at) {
    const Sample& sample = samples.singles[at];
    if (!sample.text || !sample.comesBack) continue;
    SCOPED_TRACE(written(sample.value));
    const Value read =
        isOptional ? serializer->parseOptionalValue(sample.text) : serializer->parseValue(*sample.text);
    const Value wanted = isOptional ? samples.optionals[at + 1] : sample.value;
    const auto builder = ways.maker.builder();
    builder->setOrAdd(ways.maker.metaClass().property(ways.name), read);
    const ModelElement element = builder->createIn(model);
    expectValue(ways, element, wanted);
    const Value held = ways.get(element);
    const boost::optional<std::u16string> text =
        isOptional ? serializer->serializeOptionalValue(held) : serializer->serializeValue(held);
    EXPECT_TRUE(text == sample.text);
  }
  const Value none = isOptional ? serializer->createEmptyOptionalValue() : serializer->createDefaultValue();
  EXPECT_TRUE(none == samples.of(ways.flags).front()) << written(none);
}

}  // namespace

void driveValue(const Ways& ways) {
  const Property property = described(ways);
  const Model model = Model::create();
  const std::vector<Value> values = samplesOf(ways.type).of(ways.flags);
  ASSERT_GE(values.size(), 2U);
  const Value& zero = values.front();
  expectValue(ways, ways.maker.create(model), ways.initial.isEmpty() ? zero : ways.initial);
  for (std::size_t at = 0; at < values.size(); ++at) {
    const Value &value = values[at], &other = values[(at + 1) % values.size()];
    SCOPED_TRACE(written(value));
    driveBuilding(ways, model, value);
    if (ways.set != nullptr) driveSetting(ways, model, value, other, ways.set);
    if (ways.isSettable) {
      driveSetting(ways, model, value, other, [&](const ModelElement& element, const Value& next) {
        element.setPropertyValue(ways.name, next);
      });
      driveSetting(ways, model, value, other, [&](const ModelElement& element, const Value& next) {
        element.impl()->setPropertyValue(element.impl()->getPropertyByIndex(ways.index), next);
      });
    } else {
      const auto builder = ways.maker.builder();
      ways.build(*builder, other);
      expectNotSettable(ways, builder->createIn(model), value);
    }
  }
  expectOtherTypesRefused(ways, model);
  expectEnd(ways, zero, values.back());
  if (property.getUpper() == 1)
    driveReading(ways, model);
  else
    driveCombining(ways, model);
}

void expectGatheredValue(const Ways& ways) {
  const Property property = ways.maker.metaClass().property(ways.name);
  const auto expectGathered = [&](Builder& builder, const Value& wanted) {
    const Value got = ways.gathered(builder);
    EXPECT_TRUE(got == wanted) << written(got) << " was gathered, not " << written(wanted);
  };
  const auto typed = ways.maker.builder(), byValue = ways.maker.builder(), oneByOne = ways.maker.builder();
  expectGathered(*typed, Value());
  const std::vector<Value> values = samplesOf(ways.type).of(ways.flags);
  for (const Value& value : values) {
    ways.build(*typed, value);
    expectGathered(*typed, value);
    byValue->setOrAdd(property, value);
    expectGathered(*byValue, value);
  }
  if (property.getUpper() == 1) return;
  for (const Sample& sample : samplesOf(ways.type).singles) oneByOne->setOrAdd(property, sample.value);
  expectGathered(*oneByOne, values.at(2));  // which lists all single ones
}

void driveDerived(const Ways& ways) {
  const Property property = described(ways);
  const Model model = Model::create();
  const ModelElement element = ways.maker.create(model);
  const bool isElement = property.getType() == ModelElement::metaClass();
  const Value zero = isElement ? Value(ModelElement()) : samplesOf(ways.type).of(ways.flags).front();
  std::vector<std::string> seen;
  const auto look = [&] {
    expectValue(ways, element, ways.get(element));
    seen.push_back(written(ways.get(element)));
    expectNotSettable(ways, element, zero);
  };
  for (const std::int32_t side : {1, 0, 2, -5, 40}) {
    element.setPropertyValue(u"side", Value(side));
    look();
  }
  make(model, u"probe.Containers").setPropertyValue(u"any", Value(element));
  look();
  std::sort(seen.begin(), seen.end());
  const bool mayBeConstant = property.getType().getName() == u"Boolean";  // the area of every cube is even
  EXPECT_TRUE(mayBeConstant || seen.front() != seen.back()) << "it is the same whatever the element is";
  expectEnd(ways, zero, zero);
}

}  // namespace whole_test
