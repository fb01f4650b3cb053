#include <gtest/gtest.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/AllocationWalk.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Sets.h"

using namespace allocation_test;
using namespace probing;
using lx::base::createProxy;
using probe::Branch;
using probe::Leaf;
using probe::Sets;

namespace {

/// A model with references of every kind, and proxies wherever they can be; always the same.
struct World {
  static constexpr bool isReproducible = false;  // elements stand for themselves

  explicit World(bool isObserved) {
    for (const char16_t* name : {u"a", u"b", u"c", u"d", u"e"}) things.push_back(thing(model, name));
    proxy = createProxy<Thing>(model, identity(1));
    rowProxy = createProxy<Thing>(model, identity(2));
    keyProxy = createProxy<Thing>(model, identity(3));
    loaded = Thing::create(model, identity(1));
    containers.getRowMutable().add(rowProxy);
    containers.getRowMutable().add(thing(model));
    containers.getByNameMutable().add(keyProxy);
    containers.getByNameMutable().add(thing(model, u"held"));
    Thing::create(model, identity(2));
    Thing::create(model, identity(3)).setName(u"key");
    holder.setOne(things[0]);
    holder.setAny(rowProxy);
    for (std::size_t at = 0; at < 3; ++at) {
      holder.getRowMutable().add(things[at]);
      holder.getBagMutable().add(things[at]);
      holder.getProxyRowMutable().add(things[at]);
      holder.getProxyBagMutable().add(things[at]);
    }
    holder.getProxyRowMutable().add(proxy);
    holder.getProxyBagMutable().add(keyProxy);
    holder.getRowMutable().add(things[4]);
    second.setOne(things[4]);
    sets.getTextsMutable().assign(std::vector<std::u16string>{Long, u"b"});
    if (isObserved) model.impl()->addObserver(reader);
  }

  /// Change something of all elements that have references, in the open transaction.
  void touch() const {
    holder.setOne(Thing());
    holder.getRowMutable().remove(things[1]);
    holder.getBagMutable().remove(things[0]);
    holder.getProxyRowMutable().add(things[3]);
    holder.getProxyBagMutable().remove(keyProxy);
    sets.getTextsMutable().add(u"touched");
    containers.getRowMutable().add(thing(model));
    containers.getByNameMutable().add(thing(model, u"touched"));
  }

  std::string state() const {
    std::string text = stateOf(model);
    for (const std::u16string& each : sets.texts().values()) text += lx::text::toUtf8(each) + ' ';
    for (const ModelElement& element : model.impl()->elements()) {
      const boost::uuids::uuid uuid = element.identifier();
      text += holder.proxyRow().containsProxyTo(uuid) ? 'r' : '-';
      text += holder.proxyBag().containsProxyTo(uuid) ? 'b' : '-';
    }
    return text;
  }

  static constexpr const char16_t* Long = u"a text that is long enough to have memory of its own";

  Reader reader;  // outlives the model
  Model model = Model::create();
  References holder = References::create(model);
  References second = References::create(model);  // refers later than the first to what both refer to
  Containers containers = Containers::create(model);
  Sets sets = Sets::create(model);
  std::vector<Thing> things;
  Thing proxy, rowProxy, keyProxy, loaded;  // the first in no container, its element too
};

using Operation = OperationOn<const World>;

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all{
      {"refer", [](const World& world) { world.holder.setOther(world.holder); }},
      {"refer to another", [](const World& world) { world.holder.setOne(world.things[3]); }},
      {"destroy a target", [](const World& world) { world.things[0].destroy(); }},
      {"destroy a holder", [](const World& world) { world.holder.destroy(); }},
      {"make a proxy of a target", [](const World& world) { world.things[1].impl()->convertToProxy(); }},
      {"make a proxy of a holder", [](const World& world) { world.holder.impl()->convertToProxy(); }},
      {"make a proxy of what has a key",
       [](const World& world) { world.containers.byName().find(u"held").impl()->convertToProxy(); }},
      {"create a proxy", [](const World& world) { createProxy<Thing>(world.model, identity(9)); }},
      {"add to the row and the bag",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         for (int count = 0; count < 5; ++count) {
           const Thing each = thing(world.model);
           world.holder.getRowMutable().insert(1, each);
           world.holder.getBagMutable().add(each);
         }
         transaction.commit();
       }},
      {"remove from the row",
       [](const World& world) { world.holder.getRowMutable().remove(world.things[0]); }},
      {"remove from the bag",
       [](const World& world) { world.holder.getBagMutable().remove(world.things[2]); }},
      {"commit what is partly as it was",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         world.holder.getRowMutable().remove(world.things[4]);
         world.holder.getRowMutable().add(world.things[4]);
         world.holder.getProxyRowMutable().remove(world.things[1]);
         world.holder.getProxyRowMutable().insert(1, world.things[1]);
         world.things[2].impl()->convertToProxy();
         transaction.commit();
       }},
      {"clear the row", [](const World& world) { world.holder.getRowMutable().clear(); }},
      {"clear the bag", [](const World& world) { world.holder.getProxyBagMutable().clear(); }},
      {"replace the bag",
       [](const World& world) {
         world.holder.setPropertyValue(u"bag", Value(Elements{world.things[3], world.things[0]}));
       }},
      {"add so many proxies that the filter grows",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         for (std::uint8_t number = 100; number < 170; ++number) {
           world.holder.getProxyBagMutable().add(createProxy<Thing>(world.model, identity(number)));
         }
         transaction.commit();
       }},
      {"add the proxy to the bag",
       [](const World& world) { world.holder.getProxyBagMutable().add(world.proxy); }},
      {"resolve in the row",
       [](const World& world) { world.holder.getProxyRowMutable().resolveProxy(world.proxy); }},
      {"resolve where it is contained",
       [](const World& world) { world.containers.getRowMutable().resolveProxy(world.rowProxy); }},
      {"resolve where it had a key", [](const World& world) { world.keyProxy.impl()->resolve(); }},
      {"move a proxy to a map",
       [](const World& world) { world.containers.getByNumberMutable().add(world.rowProxy); }},
      {"remove a proxy from a map",
       [](const World& world) { world.containers.getByNameMutable().remove(world.keyProxy); }},
      {"clear a map with proxies", [](const World& world) { world.containers.getByNameMutable().clear(); }},
      {"add to the set",
       [](const World& world) { world.sets.getTextsMutable().add(std::u16string(World::Long) + u"!"); }},
      {"remove from the set", [](const World& world) { world.sets.getTextsMutable().remove(World::Long); }},
      {"ask who refers", [](const World& world) { static_cast<void>(world.things[0].referrers()); }},
      {"build what refers in a circle",
       [](const World& world) {
         const Branch::BuilderWrapper parent{Branch::Builder()};
         Branch::BuilderWrapper back(parent);
         back.borrow();
         static_cast<Branch::Builder&>(*parent.builder()).setLeaf(Leaf::Builder().setGrownOn(back));
         parent.builder()->createIn(world.model);
       }},
      {"build what refers to what is there and is not",
       [](const World& world) {
         const Thing::BuilderWrapper once(Thing::Builder().setName(World::Long));
         References::Builder(world.model).setOne(once).setRow(once).setBag(world.things[0]).create();
       }},
  };
  return all;
}

TEST(FailingAllocations, LeaveReferencesAndProxiesWhole) {
  expectSoundness(operations());
}

}  // namespace
