#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"

using namespace probing;
using lx::base::createProxy;
using testing::ElementsAre;

namespace {

/// Make an element of an identity, with a name.
Thing loaded(const Model& model, std::uint8_t number, const std::u16string& name) {
  const Thing result = Thing::create(model, identity(number));
  result.setName(name);
  return result;
}

/// Three things by name in every collection of containers of their own, of which the middle one is looked at.
struct Held {
  Held() {
    for (const char16_t* name : {u"a", u"b", u"c"}) {
      containers.getRowMutable().add(thing(model, name));
      containers.getByNameMutable().add(thing(model, name));
      containers.getAllByNameMutable().add(thing(model, u"same"));
    }
    containers.setOne(thing(model, u"one"));
    row = containers.row().at(1);
    byName = containers.byName().find(u"b");
    allByName = containers.allByName().findAll(u"same")[1];
  }

  Model model = Model::create();
  Containers containers = Containers::create(model);
  Thing row, byName, allByName;
};

// Making proxies

TEST(CreateProxy, MakesAnElementOfTheIdentityWithoutValues) {
  const Model model = Model::create();
  const Thing proxy = createProxy<Thing>(model, identity(1));
  EXPECT_TRUE(proxy.isAlive() && proxy.isProxy());
  EXPECT_EQ(proxy.identifier(), identity(1));
  EXPECT_EQ(proxy.getMetaClass(), Thing::metaClass());
  EXPECT_EQ(proxy.number(), 0) << "not the default of the class";
  EXPECT_EQ(model.impl()->findElement(identity(1)), proxy);
  EXPECT_EQ(raised<CannotModifyProxy>([&] { proxy.setName(u"a"); }), "CannotModifyProxy(probe.Thing.name)");
}

TEST(CreateProxy, IsUndone) {
  const Model model = Model::create();
  Thing proxy;
  {
    const Transaction open = begin(model);
    proxy = createProxy<Thing>(model, identity(1));
  }
  EXPECT_FALSE(proxy.isAlive());
  EXPECT_FALSE(proxy.isProxy());
  EXPECT_FALSE(model.impl()->findElement(identity(1)));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(CreateProxy, RefusesTheNilIdentityAndNoModel) {
  Model model = Model::create();
  EXPECT_EQ(raised<InvalidValue>([&] { createProxy<Thing>(model, {}); }),
            "InvalidValue(probe.Thing.createProxy; the identity is nil; give that of the element.)");
  EXPECT_EQ(
      raised<InvalidValue>([&] { createProxy<Thing>(Model(), identity(1)); }),
      "InvalidValue(probe.Thing.createProxy; the model is null or was destroyed; give one that is alive.)");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(CreateProxy, RefusesTheIdentityOfAnElementThatIsLoaded) {
  const Model model = Model::create();
  loaded(model, 1, u"a");
  EXPECT_THAT(raised<CannotAddSecondObject>([&] { createProxy<Thing>(model, identity(1)); }),
              testing::StartsWith("CannotAddSecondObject("));
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST(ConvertToProxy, OfAnElementThatGoesWithItsTransactionLeavesNoProxy) {
  const Model model = Model::create();
  Thing converted;
  {
    const Transaction open = begin(model);
    converted = thing(model);
    converted.impl()->convertToProxy();
    EXPECT_TRUE(converted.isProxy());
  }
  EXPECT_FALSE(converted.isProxy());
  EXPECT_EQ(raised<InvalidValue>([&] { converted.setName(u"a"); }),
            "InvalidValue(probe.Thing.name; the element was destroyed; create another one.)");
}

// Identities

TEST(ProxyIdentity, IsFreeForTheElementAndFindsItThen) {
  const Model model = Model::create();
  const Thing proxy = createProxy<Thing>(model, identity(1)), second = createProxy<Thing>(model, identity(1));
  EXPECT_TRUE(model.impl()->findElement(identity(1)).isProxy());
  const Thing element = loaded(model, 1, u"a");
  EXPECT_EQ(model.impl()->findElement(identity(1)), element);
  EXPECT_THAT(raised<CannotAddSecondObject>([&] { Thing::create(model, identity(1)); }),
              testing::StartsWith("CannotAddSecondObject("));
  element.destroy();
  EXPECT_TRUE(model.impl()->findElement(identity(1)).isProxy());
  EXPECT_TRUE(proxy.isAlive() && second.isAlive());
}

TEST(ProxyIdentity, IsConsistentWhenConversionAndCreationAreUndone) {
  const Model model = Model::create();
  const Thing first = loaded(model, 1, u"a");
  const std::string before = stateOf(model);
  Thing second;
  {
    const Transaction outer = begin(model);
    Transaction inner = begin(model);
    first.impl()->convertToProxy();
    inner.commit();
    second = loaded(model, 1, u"b");
    EXPECT_EQ(model.impl()->findElement(identity(1)), second);
    EXPECT_EQ(first.identifier(), identity(1));
  }
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(model.impl()->findElement(identity(1)), first);
  EXPECT_FALSE(second.isAlive());
  EXPECT_THAT(raised<CannotAddSecondObject>([&] { Thing::create(model, identity(1)); }),
              testing::StartsWith("CannotAddSecondObject("));

  undoneThenDone(model, [&] {
    first.impl()->convertToProxy();
    const Thing third = loaded(model, 1, u"c");
    third.impl()->convertToProxy();
    loaded(model, 1, u"d");
  });
  EXPECT_EQ(Thing(static_cast<Thing::Impl*>(model.impl()->findElement(identity(1)).impl())).name(), u"d");
}

TEST(ProxyIdentity, IsMadeForAStoredFormWhenAskedFor) {
  const Model model = Model::create();
  const Thing element = thing(model), proxy = createProxy<Thing>(model, identity(1));
  EXPECT_TRUE(element.impl()->getPersistentProxyId(false).is_nil());
  const auto made = element.impl()->getPersistentProxyId(true);
  EXPECT_FALSE(made.is_nil());
  EXPECT_EQ(element.impl()->getPersistentProxyId(false), made);
  EXPECT_EQ(element.identifier(), made);
  EXPECT_EQ(proxy.impl()->getPersistentProxyId(false), identity(1));
}

TEST(ConvertToProxy, GivesAnIdentityToAnElementThatHasNone) {
  const Model model = Model::create();
  const Thing element = thing(model);
  element.impl()->convertToProxy();
  EXPECT_FALSE(element.impl()->getPersistentProxyId(false).is_nil());
  EXPECT_EQ(model.impl()->findElement(element.identifier()), element);
}

// Proxies that are contained

TEST(ContainedProxy, IsTakenByEveryContainer) {
  const Model model = Model::create();
  const Containers containers = Containers::create(model);
  std::vector<Thing> proxies;
  for (std::uint8_t number = 1; number <= 4; ++number) {
    proxies.push_back(createProxy<Thing>(model, identity(number)));
  }
  undoneThenDone(model, [&] {
    containers.setOne(proxies[0]);
    containers.getRowMutable().add(proxies[1]);
    containers.getByNameMutable().add(proxies[2]);
    containers.getAllByNumberMutable().add(proxies[3]);
  });
  for (const Thing& each : proxies) EXPECT_EQ(each.container(), containers);
  EXPECT_EQ(containers.one(), proxies[0]);
  EXPECT_EQ(containers.row().at(0), proxies[1]);
  EXPECT_TRUE(containers.byName().contains(proxies[2]));
  EXPECT_TRUE(containers.allByNumber().contains(proxies[3]));
  const auto contains = [&](const char16_t* name, std::uint8_t number) {
    return containers.impl()->inverseContainsProxyTo(Containers::metaClass().property(name).getIndex(),
                                                     identity(number));
  };
  EXPECT_TRUE(contains(u"one", 1) && contains(u"row", 2) && contains(u"byName", 3));
  EXPECT_TRUE(contains(u"allByNumber", 4));
  EXPECT_FALSE(contains(u"one", 2) || contains(u"row", 1) || contains(u"byName", 1));
}

TEST(ContainedProxy, MovesToAnotherContainer) {
  const Model model = Model::create();
  const Containers containers = Containers::create(model);
  const Thing proxy = createProxy<Thing>(model, identity(1));
  containers.getRowMutable().add(proxy);
  undoneThenDone(model, [&] { containers.getByNameMutable().add(proxy); });
  EXPECT_TRUE(containers.row().empty());
  undoneThenDone(model, [&] { containers.getByNumberMutable().add(proxy); });
  EXPECT_TRUE(containers.byName().proxies().empty());
  EXPECT_THAT(containers.byNumber().proxies(), ElementsAre(proxy));
}

TEST(KeyedCollection, HoldsAProxyApartWithoutAKey) {
  Held held;
  auto& byName = held.containers.getByNameMutable();
  const Thing proxy = createProxy<Thing>(held.model, identity(1)),
              second = createProxy<Thing>(held.model, identity(2));
  undoneThenDone(held.model, [&] {
    byName.add(proxy);
    byName.add(second);
    byName.add(proxy);
  });
  EXPECT_EQ(byName.size(), 3U);
  EXPECT_THAT(byName.keys(), ElementsAre(u"a", u"b", u"c"));
  EXPECT_EQ(elementsOf(byName).size(), 3U);
  EXPECT_FALSE(byName.find(u""));
  EXPECT_THAT(byName.proxies(), ElementsAre(proxy, second));
  EXPECT_EQ(held.containers.getPropertyValue(u"byName").as<Elements>().size(), 3U);
  undoneThenDone(held.model, [&] { EXPECT_TRUE(byName.remove(proxy)); });
  EXPECT_FALSE(proxy.isAlive());
  EXPECT_FALSE(byName.remove(proxy));
  undoneThenDone(held.model, [&] { byName.clear(); });
  EXPECT_FALSE(second.isAlive());
}

TEST(KeyedCollection, OfProxiesOnlyIsEmptyAndCanBeCleared) {
  const Model model = Model::create();
  const Containers containers = Containers::create(model);
  const Thing proxy = createProxy<Thing>(model, identity(1));
  containers.getByNameMutable().add(proxy);
  EXPECT_TRUE(containers.byName().empty());
  EXPECT_FALSE(containers.hasByName());
  undoneThenDone(model, [&] { containers.getByNameMutable().clear(); });
  EXPECT_FALSE(proxy.isAlive());
}

TEST(KeyedCollection, GoesWithItsProxies) {
  Held held;
  const Thing proxy = createProxy<Thing>(held.model, identity(1));
  held.containers.getByNameMutable().add(proxy);
  undoneThenDone(held.model, [&] { held.containers.destroy(); });
  EXPECT_FALSE(proxy.isAlive());
}

TEST(KeyedCollection, SetsAnElementApartThatBecomesAProxyAndPutsItBackExactly) {
  Held held;
  undoneThenDone(held.model, [&] { held.byName.impl()->convertToProxy(); });
  undoneThenDone(held.model, [&] { held.allByName.impl()->convertToProxy(); });
  EXPECT_EQ(held.byName.name(), u"");
  EXPECT_THAT(held.containers.byName().keys(), ElementsAre(u"a", u"c"));
  EXPECT_THAT(held.containers.byName().proxies(), ElementsAre(held.byName));
  EXPECT_EQ(held.byName.container(), held.containers);
  EXPECT_EQ(held.containers.allByName().findAll(u"same").size(), 2U);
  EXPECT_TRUE(held.containers.allByName().contains(held.allByName));
  const Thing other = thing(held.model, u"b");
  undoneThenDone(held.model, [&] { held.containers.getByNameMutable().add(other); });
  EXPECT_EQ(held.containers.byName().find(u"b"), other) << "the key of the proxy is free";
}

TEST(KeyedCollection, PutsAnElementBackAlsoWhenItsKeyWasTakenMeanwhile) {
  Held held;
  undoneThenDone(held.model, [&] {
    held.byName.impl()->convertToProxy();
    held.containers.getByNameMutable().add(thing(held.model, u"b"));
    held.containers.byName().find(u"a").setName(u"z");
    held.byName.destroy();
  });
  EXPECT_THAT(held.containers.byName().keys(), ElementsAre(u"b", u"c", u"z"));
}

// Resolving what is contained

TEST(ResolveProxy, PutsTheElementIntoTheProxysPositionOfARow) {
  Held held;
  auto& row = held.containers.getRowMutable();
  held.row.impl()->convertToProxy();
  const Thing element = Thing::create(held.model, held.row.identifier());
  EXPECT_EQ(row.peekResolveProxy(held.row), element);
  EXPECT_EQ(row.at(1), held.row) << "looking changes nothing";
  undoneThenDone(held.model, [&] { EXPECT_EQ(row.resolveProxy(held.row), element); });
  EXPECT_EQ(row.at(1), element);
  EXPECT_EQ(row.size(), 3U);
  EXPECT_EQ(element.container(), held.containers);
  EXPECT_FALSE(held.row.isAlive());
}

TEST(ResolveProxy, MovesTheElementFromWhereItIs) {
  Held held;
  auto& row = held.containers.getRowMutable();
  row.at(0).impl()->convertToProxy();
  const Thing proxy = row.at(0), element = Thing::create(held.model, proxy.identifier());
  row.add(element);
  undoneThenDone(held.model, [&] { row.resolveProxy(proxy); });
  EXPECT_EQ(row.at(0), element);
  EXPECT_EQ(row.size(), 3U);

  const Containers other = Containers::create(held.model);
  const Thing second = createProxy<Thing>(held.model, identity(9)), found = loaded(held.model, 9, u"x");
  other.setOne(found);
  held.containers.getByNameMutable().add(second);
  undoneThenDone(held.model, [&] { held.containers.getByNameMutable().resolveProxy(second); });
  EXPECT_FALSE(other.one());
  EXPECT_EQ(held.containers.byName().find(u"x"), found);
}

TEST(ResolveProxy, PutsTheElementUnderItsOwnKey) {
  Held held;
  auto& byName = held.containers.getByNameMutable();
  held.byName.impl()->convertToProxy();
  const Thing element = Thing::create(held.model, held.byName.identifier());
  element.setName(u"bb");
  EXPECT_EQ(byName.peekResolveProxy(held.byName), element);
  undoneThenDone(held.model, [&] { EXPECT_EQ(byName.resolveProxy(held.byName), element); });
  EXPECT_THAT(byName.keys(), ElementsAre(u"a", u"bb", u"c"));
  EXPECT_TRUE(byName.proxies().empty());
  EXPECT_FALSE(held.byName.isAlive());
}

TEST(ResolveProxy, RaisesForAKeyThatIsTakenAndChangesNothing) {
  Held held;
  auto& byName = held.containers.getByNameMutable();
  held.byName.impl()->convertToProxy();
  const Thing element = Thing::create(held.model, held.byName.identifier());
  element.setName(u"c");
  const References holder = References::create(held.model);
  holder.setOne(held.byName);
  const std::string before = stateOf(held.model);
  const std::uint64_t begun = transactions(held.model);
  EXPECT_EQ(raised<UniquenessConstraint>([&] { byName.resolveProxy(held.byName); }),
            "UniquenessConstraint(probe.Containers.byName; c)");
  EXPECT_EQ(stateOf(held.model), before);
  EXPECT_EQ(transactions(held.model), begun);
}

TEST(ResolveProxy, OfASingleChildReplacesIt) {
  Held held;
  const Thing proxy = held.containers.one();
  proxy.impl()->convertToProxy();
  const Thing element = Thing::create(held.model, proxy.identifier());
  lx::base::detail::ContainmentSlot& slot = *proxy.impl()->containmentSlot();
  EXPECT_EQ(slot.peekResolveProxy(proxy), element);
  undoneThenDone(held.model, [&] { EXPECT_EQ(slot.resolveProxy(proxy), element); });
  EXPECT_EQ(held.containers.one(), element);
  EXPECT_FALSE(proxy.isAlive());
}

TEST(ResolveProxy, GivesNoneWithoutTheElementOrWithoutTheProxy) {
  Held held;
  auto& row = held.containers.getRowMutable();
  auto& byName = held.containers.getByNameMutable();
  held.row.impl()->convertToProxy();
  held.byName.impl()->convertToProxy();
  const Thing elsewhere = createProxy<Thing>(held.model, identity(1)), element = loaded(held.model, 1, u"x");
  const std::string before = stateOf(held.model);
  EXPECT_FALSE(row.resolveProxy(held.row)) << "the model doesn't have the element";
  EXPECT_FALSE(row.resolveProxy(elsewhere)) << "the row doesn't hold the proxy";
  EXPECT_FALSE(row.resolveProxy(held.byName)) << "another collection holds it";
  EXPECT_FALSE(row.resolveProxy(row.at(0))) << "it is no proxy";
  EXPECT_FALSE(row.resolveProxy(Thing()));
  EXPECT_FALSE(byName.resolveProxy(held.byName));
  EXPECT_FALSE(byName.peekResolveProxy(elsewhere));
  EXPECT_EQ(stateOf(held.model), before);
}

TEST(ResolveProxy, PassesOverAnElementThatIsAProxyItself) {
  const Model model = Model::create();
  const Containers containers = Containers::create(model);
  const Thing proxy = createProxy<Thing>(model, identity(1)), second = createProxy<Thing>(model, identity(1));
  containers.getRowMutable().add(proxy);
  EXPECT_FALSE(containers.getRowMutable().resolveProxy(proxy));
  EXPECT_EQ(containers.row().at(0), proxy);
  EXPECT_TRUE(second.isAlive());
}

TEST(ResolveProxy, PassesOverAnElementOfAClassThatThePropertyDoesNotTake) {
  const Model model = Model::create();
  const Containers containers = Containers::create(model);
  const References holder = References::create(model);
  const Machine proxy = createProxy<Machine>(model, identity(1));
  containers.getMachinesMutable().add(proxy);
  holder.setMachine(proxy);
  holder.setOne(proxy);
  const Thing other = loaded(model, 1, u"x");
  const std::string before = stateOf(model);
  EXPECT_FALSE(containers.getMachinesMutable().peekResolveProxy(proxy));
  EXPECT_FALSE(containers.getMachinesMutable().resolveProxy(proxy));
  EXPECT_EQ(stateOf(model), before);
  undoneThenDone(model, [&] { EXPECT_EQ(proxy.impl()->resolve(), other); });
  EXPECT_EQ(holder.one(), other) << "takes any thing";
  EXPECT_EQ(holder.machine(), proxy) << "takes machines only";
  EXPECT_TRUE(proxy.isAlive());
}

TEST(ResolveProxy, RaisesForAnElementThatContainsThePlace) {
  const Model model = Model::create();
  const Containers outer = Containers::create(model, identity(1));
  const Containers inner = Containers::create(model);
  outer.getMixedMutable().add(inner);
  const Containers proxy = createProxy<Containers>(model, identity(2));
  inner.getMixedMutable().add(proxy);
  const Containers root = Containers::create(model, identity(2));
  root.getMixedMutable().add(outer);
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<InvalidValue>([&] { inner.getMixedMutable().resolveProxy(proxy); }),
            "InvalidValue(probe.Containers.mixed; the element contains the one it would be put into; an "
            "element can't contain itself.)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(ResolveProxy, TakesWhatReferredToTheProxyAlong) {
  Held held;
  const References holder = References::create(held.model);
  holder.setOne(held.row);
  holder.setAny(held.row);
  for (const Thing& each : {held.byName, held.row, held.allByName}) {
    holder.getProxyRowMutable().add(each);
    holder.getProxyBagMutable().add(each);
  }
  held.row.impl()->convertToProxy();
  const Thing element = Thing::create(held.model, held.row.identifier());
  undoneThenDone(held.model, [&] { held.containers.getRowMutable().resolveProxy(held.row); });
  EXPECT_EQ(holder.one(), element);
  EXPECT_EQ(holder.any(), element);
  EXPECT_THAT(elementsOf(holder.proxyRow()), ElementsAre(held.byName, element, held.allByName));
  EXPECT_TRUE(holder.proxyBag().contains(element));
  EXPECT_FALSE(holder.proxyRow().containsProxyTo(element.identifier()));
  EXPECT_EQ(element.referrers(), Elements{holder});
}

// Resolving what is referred to

TEST(ResolveProxy, InACollectionOfReferencesPutsTheElementIntoItsPosition) {
  Held held;
  const References holder = References::create(held.model);
  const Thing proxy = createProxy<Thing>(held.model, identity(1));
  auto& row = holder.getProxyRowMutable();
  auto& bag = holder.getProxyBagMutable();
  for (const Thing& each : {held.row, proxy, held.byName}) row.add(each), bag.add(each);
  EXPECT_FALSE(row.resolveProxy(proxy));
  EXPECT_FALSE(bag.peekResolveProxy(proxy));
  const Thing element = loaded(held.model, 1, u"x");
  EXPECT_EQ(row.peekResolveProxy(proxy), element);
  undoneThenDone(held.model, [&] { EXPECT_EQ(row.resolveProxy(proxy), element); });
  undoneThenDone(held.model, [&] { EXPECT_EQ(bag.resolveProxy(proxy), element); });
  EXPECT_THAT(elementsOf(row), ElementsAre(held.row, element, held.byName));
  EXPECT_TRUE(bag.contains(element) && !bag.contains(proxy));
  EXPECT_TRUE(row.proxies().empty() && bag.proxies().empty());
  EXPECT_TRUE(proxy.isAlive()) << "a reference doesn't own";
  EXPECT_TRUE(proxy.referrers().empty());
  EXPECT_FALSE(row.resolveProxy(proxy));
  EXPECT_FALSE(row.resolveProxy(element)) << "it is no proxy";
}

TEST(ResolveProxy, InACollectionThatHasTheElementAlreadyKeepsItOnce) {
  Held held;
  const References holder = References::create(held.model);
  const Thing proxy = createProxy<Thing>(held.model, identity(1)), element = loaded(held.model, 1, u"x");
  auto& row = holder.getProxyRowMutable();
  auto& bag = holder.getProxyBagMutable();
  for (const Thing& each : {element, held.row, proxy, held.byName}) row.add(each), bag.add(each);
  undoneThenDone(held.model, [&] { row.resolveProxy(proxy), bag.resolveProxy(proxy); });
  EXPECT_THAT(elementsOf(row), ElementsAre(held.row, element, held.byName));
  EXPECT_EQ(bag.size(), 3U);
}

TEST(ResolveProxy, OfTheProxyItselfServesAllPlaces) {
  Held held;
  const References holder = References::create(held.model);
  held.byName.impl()->convertToProxy();
  holder.setOne(held.byName);
  EXPECT_FALSE(held.byName.impl()->resolve()) << "the model doesn't have the element";
  EXPECT_FALSE(held.row.impl()->resolve()) << "it is no proxy";
  const Thing element = Thing::create(held.model, held.byName.identifier());
  element.setName(u"d");
  undoneThenDone(held.model, [&] { EXPECT_EQ(held.byName.impl()->resolve(), element); });
  EXPECT_EQ(holder.one(), element);
  EXPECT_EQ(held.containers.byName().find(u"d"), element);
  EXPECT_FALSE(held.byName.isAlive());
  EXPECT_EQ(raised<InvalidValue>([&] { held.byName.impl()->resolve(); }),
            "InvalidValue(ModelElement.resolve; the element was destroyed; create another one.)");
}

/// A thing that refers to another, which gives its reference out of hand.
class Linking : public Thing::Impl {
 public:
  explicit Linking(const Model& model) : Thing::Impl(model, {}), link(*this, 1) {}

  lx::base::Reference<Machine> link;
};

TEST(Reference, ResolvesItsTarget) {
  const Model model = Model::create(), other = Model::create();
  Transaction transaction = begin(model);
  const Thing holder(new Linking(model));
  holder.impl()->notifyCreated();
  transaction.commit();
  lx::base::Reference<Machine>& link = static_cast<Linking*>(holder.impl())->link;
  EXPECT_FALSE(link.resolve()) << "there is no target";
  const Machine proxy = createProxy<Machine>(model, identity(1)),
                there = createProxy<Machine>(other, identity(2));
  link.set(proxy);
  EXPECT_TRUE(link.containsProxyTo(identity(1)));
  EXPECT_FALSE(link.containsProxyTo(identity(2)));
  EXPECT_FALSE(link.resolve()) << "the model doesn't have the element";
  const Thing unfit = loaded(model, 1, u"x");
  EXPECT_FALSE(link.resolve()) << "it is no machine";
  EXPECT_EQ(link.get(), proxy);
  unfit.destroy();
  const Machine element = Machine::create(model, identity(1));
  EXPECT_EQ(link.peekResolve(), element);
  EXPECT_EQ(link.get(), proxy) << "looking changes nothing";
  EXPECT_EQ(link.resolve(), element);
  EXPECT_EQ(link.get(), element);
  EXPECT_EQ(link.resolve(), element) << "there is nothing to do";
  EXPECT_EQ(element.referrers(), Elements{holder});

  link.set(there);
  const Machine found = Machine::create(other, identity(2));
  EXPECT_EQ(link.resolve(), found) << "in the model of the proxy";
  holder.impl()->convertToProxy();
  EXPECT_EQ(raised<CannotModifyProxy>([&] { link.resolve(); }), "CannotModifyProxy(probe.Thing.name)");
}

}  // namespace
