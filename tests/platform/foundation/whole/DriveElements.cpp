#include <algorithm>

#include <gmock/gmock.h>

#include "tests/platform/foundation/whole/Ways.h"

namespace whole_test {

namespace {

using lxb::messages::CannotAddIncompatibleTypes;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::CannotCreateCrossModelAssociation;
using lxb::messages::InvalidValue;
using testing::StartsWith;

using Setter = std::function<void(const ModelElement& element, const Value& value)>;

bool isOne(const Ways& ways) {
  return ways.flags == ValueFlags::Single;
}

std::u16string keyOf(const Ways& ways) {
  return ways.maker.metaClass().property(ways.name).getKey();
}

Value key(const Ways& ways, const Class& type, int number) {
  const bool isText = type.property(keyOf(ways)).getType().getName() == u"String";
  return isText ? Value(std::u16string(1, static_cast<char16_t>(u'a' + number))) : Value(number);
}

bool isLess(const Value& left, const Value& right) {
  return left.is<std::int32_t>() ? left.as<std::int32_t>() < right.as<std::int32_t>()
                                 : left.as<std::u16string>() < right.as<std::u16string>();
}

/// The key of the element or child at a place: descending, twice the same where that is allowed.
int keyAt(const Ways& ways, std::size_t place) {
  const int number = static_cast<int>(place);
  return 20 - (ways.flags == ValueFlags::Multimap ? number / 2 : number);
}

const char16_t* classAt(const Ways& ways, std::size_t place) {
  return ways.fitting[place % ways.fitting.size()];
}

/// Make elements that the property can hold together.
Elements makeList(const Ways& ways, const Model& model, std::size_t count) {
  Elements result;
  for (std::size_t place = 0; place < count; ++place) {
    result.push_back(make(model, classAt(ways, place)));
    if (keyOf(ways).empty()) continue;
    result.back().setPropertyValue(keyOf(ways), key(ways, result.back().getMetaClass(), keyAt(ways, place)));
  }
  return result;
}

/// Give what the property is when these were put into it one by one.
Value held(const Ways& ways, Elements list) {
  if (isOne(ways)) return Value(list.empty() ? ModelElement() : list.front());
  if (const std::u16string name = keyOf(ways); !name.empty()) {
    std::stable_sort(list.begin(), list.end(), [&](const ModelElement& left, const ModelElement& right) {
      return isLess(left.getPropertyValue(name), right.getPropertyValue(name));
    });
  }
  return Value(list);
}

Value given(const Ways& ways, const Elements& list) {
  return isOne(ways) ? held(ways, list) : Value(list);
}

Elements listOf(const Value& value) {
  if (!value.is<ModelElement>()) return value.as<Elements>();
  return value.as<ModelElement>() ? Elements{value.as<ModelElement>()} : Elements();
}

/// Expect that elements know who holds them.
void expectHeldBy(const Ways& ways, const ModelElement& element, const Elements& list) {
  for (const ModelElement& each : list) {
    EXPECT_TRUE(each.isAlive());
    EXPECT_EQ(each.container(), ways.isContained ? element : ModelElement());
    EXPECT_EQ(each.referrers(), ways.isContained ? Elements() : Elements{element});
  }
}

void expectFree(const Ways& ways, const Elements& list) {
  for (const ModelElement& each : list) {
    EXPECT_EQ(each.isAlive(), !ways.isContained);
    if (each.isAlive()) {
      EXPECT_TRUE(each.referrers().empty());
    }
  }
}

void driveSetting(const Ways& ways, const Model& model, std::size_t count, const Setter& set) {
  const ModelElement element = ways.maker.create(model);
  const Elements first = makeList(ways, model, count), second = makeList(ways, model, count);
  set(element, given(ways, first));
  expectValue(ways, element, held(ways, first));
  expectHeldBy(ways, element, first);
  {
    const Transaction abandoned = begin(model);
    set(element, given(ways, second));
    expectValue(ways, element, held(ways, second));
    expectHeldBy(ways, element, second);
    expectFree(ways, first);
    set(element, given(ways, {}));
    expectValue(ways, element, held(ways, {}));
  }
  expectValue(ways, element, held(ways, first));
  expectHeldBy(ways, element, first);
  for (const ModelElement& each : second) {
    EXPECT_TRUE(each.isAlive() && !each.container());
  }
  set(element, given(ways, second));
  expectValue(ways, element, held(ways, second));
  expectFree(ways, first);
  set(element, given(ways, {}));
  expectValue(ways, element, held(ways, {}));
  expectFree(ways, second);
}

/// Write down keys and classes in the order in which the elements stand.
std::vector<std::string> outline(const Ways& ways, const Elements& list) {
  std::vector<std::string> result;
  for (const ModelElement& each : list) {
    result.push_back(lx::text::toUtf8(each.getMetaClass().getQualifiedName()));
    if (!keyOf(ways).empty()) result.back() += " under " + written(each.getPropertyValue(keyOf(ways)));
  }
  if (ways.flags == ValueFlags::Set) std::sort(result.begin(), result.end());
  return result;
}

void driveBuilding(const Ways& ways, const Model& model, std::size_t count) {
  const Property property = ways.maker.metaClass().property(ways.name);
  const Elements whole = makeList(ways, model, count), single = makeList(ways, model, count);
  const auto byValue = ways.maker.builder();
  byValue->setOrAdd(property, given(ways, whole));
  const ModelElement built = byValue->createIn(model);
  expectValue(ways, built, held(ways, whole));
  expectHeldBy(ways, built, whole);

  const auto oneByOne = ways.maker.builder();
  for (const ModelElement& each : single) oneByOne->setOrAdd(property, Value(each));
  const ModelElement second = oneByOne->createIn(model);
  expectValue(ways, second, held(ways, single));
  expectHeldBy(ways, second, single);

  if (ways.build != nullptr) {
    const Elements list = makeList(ways, model, count);
    const auto typed = ways.maker.builder();
    for (const ModelElement& each : list) ways.build(*typed, Value(each));
    const ModelElement third = typed->createIn(model);
    expectValue(ways, third, held(ways, list));
    expectHeldBy(ways, third, list);
  }

  const auto parent = ways.maker.builder();
  for (std::size_t place = 0; place < count; ++place) {
    auto child = builderFor(Model(), classAt(ways, place));
    if (!keyOf(ways).empty()) {
      const Class type = child->getMetaClass();
      child->setOrAdd(type.property(keyOf(ways)), key(ways, type, keyAt(ways, place)));
    }
    parent->setOrAdd(property, std::move(child));
  }
  const ModelElement grown = parent->createIn(model);
  const Elements children = listOf(ways.get(grown));
  EXPECT_EQ(outline(ways, children), outline(ways, listOf(held(ways, single))));
  expectValue(ways, grown, held(ways, children));
  expectHeldBy(ways, grown, children);
}

/// Give a child to the typed setter of the builder, and to what creates into the property.
void driveChildren(const Ways& ways, const Model& model) {
  auto child = builderFor(Model(), ways.child);
  const Class type = child->getMetaClass();
  if (!keyOf(ways).empty()) child->setOrAdd(type.property(keyOf(ways)), key(ways, type, 3));
  const auto parent = ways.maker.builder();
  ways.buildChild(*parent, *child);
  const ModelElement element = parent->createIn(model);
  const Elements children = listOf(ways.get(element));
  ASSERT_EQ(children.size(), 1U);
  EXPECT_EQ(children.front().getMetaClass(), type);
  expectHeldBy(ways, element, children);
  if (isOne(ways)) {
    EXPECT_THAT(raised<CannotAddSecondObject>([&] { ways.buildChild(*parent, *child); }),
                StartsWith("CannotAddSecondObject(" + ways.qualifiedName));
  }

  EXPECT_EQ(ways.createInto != nullptr, ways.isContained);
  if (ways.createInto == nullptr) return;
  const ModelElement other = ways.maker.create(model);
  const ModelElement made = ways.createInto(other, *child);
  EXPECT_EQ(made.getMetaClass(), type);
  expectValue(ways, other, held(ways, {made}));
  expectHeldBy(ways, other, {made});
  const std::size_t count = model.impl()->numberOfElements();
  if (isOne(ways)) {
    EXPECT_THAT(raised<CannotAddSecondObject>([&] { ways.createInto(other, *child); }),
                StartsWith("CannotAddSecondObject(" + ways.qualifiedName));
    EXPECT_EQ(model.impl()->numberOfElements(), count);
  }
  expectValue(ways, other, held(ways, {made}));
}

/// Let the property refer to a proxy, and then to the element that the proxy stands for.
void driveResolving(const Ways& ways, const Model& model) {
  if (ways.peekResolve == nullptr) return;
  const ModelElement proxy = make(model, ways.child);
  const auto uuid = proxy.identifier();
  proxy.impl()->convertToProxy();
  const auto builder = ways.maker.builder();
  builder->setOrAdd(ways.maker.metaClass().property(ways.name), Value(proxy));
  const ModelElement element = builder->createIn(model), empty = ways.maker.create(model);
  EXPECT_FALSE(ways.peekResolve(empty)) << "there is no target";
  EXPECT_FALSE(ways.peekResolve(element)) << "the model doesn't have the element";
  if (ways.resolve != nullptr) {
    EXPECT_FALSE(ways.resolve(empty) || ways.resolve(element));
  }
  expectValue(ways, element, Value(proxy));
  const ModelElement loaded = builderFor(model, ways.child)->create(uuid);
  EXPECT_EQ(ways.peekResolve(element), loaded);
  expectValue(ways, element, Value(proxy));
  if (ways.resolve == nullptr) return;
  {
    const Transaction abandoned = begin(model);
    EXPECT_EQ(ways.resolve(element), loaded);
    expectValue(ways, element, Value(loaded));
  }
  expectValue(ways, element, Value(proxy));
  EXPECT_EQ(ways.resolve(element), loaded);
  expectValue(ways, element, Value(loaded));
  expectHeldBy(ways, element, {loaded});
  EXPECT_TRUE(proxy.isAlive() && proxy.referrers().empty());
  EXPECT_EQ(ways.peekResolve(element), loaded);
  EXPECT_EQ(ways.resolve(element), loaded) << "there is nothing to do";
}

/// Expect that a list, or an element, is refused by every way, and that nothing of it stays.
template <class M>
void expectRefused(const Ways& ways, const Model& model, const Elements& list, const std::string& key) {
  SCOPED_TRACE(key);
  const std::string refusal = key + "(" + ways.qualifiedName;
  const auto builder = ways.maker.builder();
  const Property property = ways.maker.metaClass().property(ways.name);
  const std::size_t count = model.impl()->numberOfElements();
  EXPECT_THAT(raised<M>([&] {
                builder->setOrAdd(property, given(ways, list));
                builder->createIn(model);
              }),
              StartsWith(refusal));
  EXPECT_EQ(model.impl()->numberOfElements(), count);
  if (!ways.isSettable) return;
  const ModelElement element = ways.maker.create(model);
  const Elements present = makeList(ways, model, 1);
  element.setPropertyValue(ways.name, given(ways, present));
  EXPECT_THAT(raised<M>([&] { element.setPropertyValue(ways.name, given(ways, list)); }),
              StartsWith(refusal));
  expectValue(ways, element, held(ways, present));
  expectHeldBy(ways, element, present);
}

void driveRefusals(const Ways& ways, const Model& model) {
  for (const char16_t* misfit : ways.misfits) {
    SCOPED_TRACE(lx::text::toUtf8(misfit));
    expectRefused<CannotAddIncompatibleTypes>(ways, model, {make(model, misfit)},
                                              "CannotAddIncompatibleTypes");
  }
  const Elements gone = makeList(ways, model, 1);
  gone.front().destroy();
  if (isOne(ways) && !ways.isContained)
    expectRefused<InvalidValue>(ways, model, gone, "InvalidValue");
  else
    expectRefused<CannotAddNonExistentObject>(ways, model, gone, "CannotAddNonExistentObject");

  const Model second = Model::create();
  const Elements foreign = makeList(ways, second, 1);
  if (!isOne(ways) || ways.isContained) {
    expectRefused<CannotCreateCrossModelAssociation>(ways, model, foreign,
                                                     "CannotCreateCrossModelAssociation");
  } else if (ways.isSettable) {
    const ModelElement element = ways.maker.create(model);
    element.setPropertyValue(ways.name, given(ways, foreign));
    expectValue(ways, element, held(ways, foreign));
    foreign.front().destroy();
    EXPECT_EQ(ways.get(element), held(ways, foreign));
  }
  if (isOne(ways) || !ways.isSettable) return;
  const ModelElement element = ways.maker.create(model);
  const Elements once = makeList(ways, model, 1);
  EXPECT_THAT(raised<InvalidValue>([&] {
                element.setPropertyValue(ways.name, Value(Elements{once.front(), once.front()}));
              }),
              StartsWith("InvalidValue(" + ways.qualifiedName));
  expectValue(ways, element, held(ways, {}));
}

}  // namespace

void driveElements(const Ways& ways) {
  described(ways);
  EXPECT_EQ(ways.peekResolve != nullptr, isOne(ways) && !ways.isContained);
  EXPECT_EQ(ways.resolve != nullptr, ways.peekResolve != nullptr && ways.set != nullptr);
  const Model model = Model::create();
  expectValue(ways, ways.maker.create(model), held(ways, {}));
  const std::vector<std::size_t> counts =
      isOne(ways) ? std::vector<std::size_t>{1} : std::vector<std::size_t>{1, ways.fitting.size(), 5};
  Ways rotated = ways;
  for (std::size_t round = 0; round < ways.fitting.size(); ++round) {
    for (const std::size_t count : counts) {
      SCOPED_TRACE(std::to_string(count) + " from class " + lx::text::toUtf8(rotated.fitting.front()));
      driveBuilding(rotated, model, count);
      if (ways.set != nullptr) driveSetting(rotated, model, count, ways.set);
      if (ways.isSettable) {
        driveSetting(rotated, model, count, [&](const ModelElement& element, const Value& value) {
          element.setPropertyValue(ways.name, value);
        });
        driveSetting(rotated, model, count, [&](const ModelElement& element, const Value& value) {
          element.impl()->setPropertyValue(element.impl()->getPropertyByIndex(ways.index), value);
        });
      }
    }
    std::rotate(rotated.fitting.begin(), rotated.fitting.begin() + 1, rotated.fitting.end());
  }
  if (!ways.isSettable) {
    const auto builder = ways.maker.builder();
    builder->setOrAdd(ways.maker.metaClass().property(ways.name), given(ways, makeList(ways, model, 1)));
    expectNotSettable(ways, builder->createIn(model), given(ways, makeList(ways, model, 1)));
  }
  driveChildren(ways, model);
  driveResolving(ways, model);
  driveRefusals(ways, model);
  expectOtherTypesRefused(ways, model);
  expectEnd(ways, held(ways, {}), given(ways, makeList(ways, model, 1)));
}

void expectGatheredElements(const Ways& ways) {
  const Property property = ways.maker.metaClass().property(ways.name);
  const Model model = Model::create();
  const ModelElement first = make(model, ways.fitting.front()), second = make(model, ways.fitting.back());
  const bool isOne = ways.flags == ValueFlags::Single;
  std::unique_ptr<Builder> builder;
  Elements wanted;  // null for what a builder is to make
  const auto next = [&]() -> Builder& {
    if (isOne || !builder) {
      builder = ways.maker.builder();
      wanted.clear();
      EXPECT_TRUE(ways.children(*builder).empty());
    }
    return *builder;
  };
  const auto expectAdded = [&](const Elements& added) {
    wanted.insert(wanted.end(), added.begin(), added.end());
    Elements got;
    for (const auto& each : ways.children(*builder)) {
      got.push_back(each.element);
      EXPECT_NE(static_cast<bool>(each.element), static_cast<bool>(each.builder));
    }
    EXPECT_EQ(got, wanted);
  };
  next().setOrAdd(property, Value(first));
  expectAdded({first});
  if (!isOne) {
    next().setOrAdd(property, Value(Elements{second, first}));
    expectAdded({second, first});
  }
  if (ways.build != nullptr) {
    ways.build(next(), Value(second));
    expectAdded({second});
  }
  auto child = builderFor(Model(), ways.child);
  const Class type = child->getMetaClass();
  ways.buildChild(next(), *child);
  expectAdded({ModelElement()});
  EXPECT_EQ(ways.children(*builder).back().builder->getMetaClass(), type);
  const Builder* const given = child.get();
  next().setOrAdd(property, std::move(child));
  expectAdded({ModelElement()});
  EXPECT_EQ(ways.children(*builder).back().builder.get(), given);
}

}  // namespace whole_test
