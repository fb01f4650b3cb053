#include "tests/platform/foundation/whole/Ways.h"

#include <gmock/gmock.h>

#include "platform/foundation/meta/MetaImpl.h"
#include "platform/foundation/meta/MetaRegistry.h"

namespace whole_test {

using lx::base::meta::MetaRegistry;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::CannotModifyProxy;
using lxb::messages::CannotSetReadOnlyProperty;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

/// A set of elements has no order: compare it as one that is sorted.
Value comparable(const Ways& ways, const Value& value) {
  if (ways.flags != ValueFlags::Set || !value.is<Elements>()) return value;
  Elements sorted = value.as<Elements>();
  std::sort(sorted.begin(), sorted.end(), [](const ModelElement& left, const ModelElement& right) {
    return std::less<>()(left.impl(), right.impl());
  });
  return Value(sorted);
}

void expectSame(const Ways& ways, const Value& got, const Value& wanted, const char* way) {
  EXPECT_TRUE(comparable(ways, got) == comparable(ways, wanted))
      << way << " it is " << written(got) << ", not " << written(wanted);
}

std::string withName(const char* key, const Ways& ways) {
  return key + ("(" + ways.qualifiedName + ")");
}

}  // namespace

ModelElement make(const Model& model, const char16_t* className) {
  return builderFor(model, className)->create();
}

std::unique_ptr<Builder> builderFor(const Model& model, const char16_t* className) {
  return MetaRegistry::getInstance().getClass(className).impl()->instantiateBuilder(model);
}

Property described(const Ways& ways) {
  const Property property = ways.maker.metaClass().property(ways.name);
  EXPECT_EQ(lx::text::toUtf8(property.getQualifiedName()), ways.qualifiedName);
  EXPECT_EQ(property.getIndex(), ways.index);
  EXPECT_EQ(property.getValueFlags(), ways.flags);
  EXPECT_EQ(property.getType().getQualifiedName(), ways.type);
  if (ways.index != 0) {
    EXPECT_EQ(ways.maker.metaClass().propertyByIndex(ways.index), property);
  }
  return property;
}

void expectValue(const Ways& ways, const ModelElement& element, const Value& value) {
  const Property property = ways.maker.metaClass().property(ways.name);
  expectSame(ways, ways.get(element), value, "by its getter");
  expectSame(ways, element.impl()->getPropertyValue(property), value, "by its description");
  if (ways.index != 0) {
    const Property byIndex = element.impl()->getPropertyByIndex(ways.index);
    EXPECT_EQ(byIndex, property);
    expectSame(ways, element.impl()->getPropertyValue(byIndex), value, "by its index");
  }
  const bool has = isPresent(value);
  EXPECT_EQ(element.impl()->hasPropertyValue(property), has);
  if (ways.has != nullptr) {
    EXPECT_EQ(ways.has(element), has);
  }
  if (ways.isReadable) {
    expectSame(ways, element.getPropertyValue(ways.name), value, "by its name");
    EXPECT_EQ(element.hasPropertyValue(ways.name), has);
  } else {
    const std::string refusal = "InvalidValue(" + ways.qualifiedName + "; ";
    EXPECT_THAT(raised<InvalidValue>([&] { element.getPropertyValue(ways.name); }), StartsWith(refusal));
    EXPECT_THAT(raised<InvalidValue>([&] { element.hasPropertyValue(ways.name); }), StartsWith(refusal));
  }
}

void expectNotSettable(const Ways& ways, const ModelElement& element, const Value& value) {
  const Value before = ways.get(element);
  const Property property = ways.maker.metaClass().property(ways.name);
  for (const Value& each : {value, before, alien(), Value()}) {
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { element.setPropertyValue(ways.name, each); }),
              withName("CannotSetReadOnlyProperty", ways));
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { element.impl()->setPropertyValue(property, each); }),
              withName("CannotSetReadOnlyProperty", ways));
  }
  expectValue(ways, element, before);
}

void expectOtherTypesRefused(const Ways& ways, const Model& model) {
  const ModelElement element = ways.maker.create(model);
  const Value before = ways.get(element);
  const std::size_t count = model.impl()->numberOfElements();
  for (const Value& each : {alien(), Value()}) {
    if (ways.isSettable) {
      EXPECT_THAT(raised<CannotCastIncompatibleTypes>([&] { element.setPropertyValue(ways.name, each); }),
                  StartsWith("CannotCastIncompatibleTypes("));
    }
    const auto builder = ways.maker.builder();
    EXPECT_THAT(raised<CannotCastIncompatibleTypes>(
                    [&] { builder->setOrAdd(ways.maker.metaClass().property(ways.name), each); }),
                StartsWith("CannotCastIncompatibleTypes("));
    expectValue(ways, builder->createIn(model), before);
  }
  EXPECT_EQ(model.impl()->numberOfElements(), count + 2);
  expectValue(ways, element, before);
}

void expectEnd(const Ways& ways, const Value& zero, const Value& value) {
  const Model model = Model::create();
  const ModelElement gone = ways.maker.create(model);
  gone.destroy();
  const ModelElement proxy = ways.maker.create(model);
  proxy.impl()->convertToProxy();
  const Property property = ways.maker.metaClass().property(ways.name);
  const bool isWorkedOutWithinElement =
      ways.index == 0 && !ways.isReadable;  // by code that nobody calls then
  if (!isWorkedOutWithinElement) expectSame(ways, ways.get(gone), zero, "when the element is gone");
  expectSame(ways, gone.impl()->getPropertyValue(property), zero, "when the element is gone, by reflection");
  EXPECT_FALSE(gone.impl()->hasPropertyValue(property));
  if (ways.has != nullptr) {
    EXPECT_FALSE(ways.has(gone));
  }
  // Whatever the value is, and whether the property could be set or not.
  for (const Value& each : {value, alien(), Value()}) {
    EXPECT_THAT(raised<InvalidValue>([&] { gone.setPropertyValue(ways.name, each); }),
                StartsWith("InvalidValue(" + ways.qualifiedName));
    EXPECT_EQ(raised<CannotModifyProxy>([&] { proxy.setPropertyValue(ways.name, each); }),
              withName("CannotModifyProxy", ways));
  }
  if (ways.set != nullptr) {
    EXPECT_THAT(raised<InvalidValue>([&] { ways.set(gone, value); }),
                StartsWith("InvalidValue(" + ways.qualifiedName));
    EXPECT_EQ(raised<CannotModifyProxy>([&] { ways.set(proxy, value); }),
              withName("CannotModifyProxy", ways));
  }
  if (ways.peekResolve != nullptr) {
    EXPECT_FALSE(ways.peekResolve(gone) || ways.peekResolve(proxy));
  }
  if (ways.resolve != nullptr) {
    EXPECT_THAT(raised<InvalidValue>([&] { ways.resolve(gone); }),
                StartsWith("InvalidValue(" + ways.qualifiedName));
    EXPECT_EQ(raised<CannotModifyProxy>([&] { ways.resolve(proxy); }), withName("CannotModifyProxy", ways));
  }
}

void expectProperties(const Class& type, const std::vector<std::u16string>& names) {
  std::vector<std::u16string> described;
  for (const Property& each : type.getProperties()) described.push_back(each.getName());
  EXPECT_EQ(described, names);
}

}  // namespace whole_test
