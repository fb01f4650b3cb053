#include "platform/foundation/CreateElement.h"
#include "platform/services/CatalogMessage.h"
#include "tests/nd_data_adapter/model/allocation/WholeWorld.h"

namespace allocation_test {

namespace {

template <class F>
void refused(F step) {
  try {
    step();
  } catch (const lx::services::CatalogMessage&) {
    return;
  }
  ADD_FAILURE() << "was not refused";
}

/// Destroy, add and remove in one transaction, and ask what is there.
template <class Collection>
void workOn(const WholeWorld& world, Collection& collection) {
  if (collection.contains(world.thing)) return;
  Transaction transaction = world.model.impl()->beginTransaction(false);
  collection.add(world.thing);
  collection.remove(world.target);
  for (int count = 0; count < 5; ++count) collection.add(Machine::create(world.model));
  transaction.commit();
}

template <class Collection>
void resolveAll(Collection& collection) {
  for (const auto& proxy : collection.proxies()) {
    static_cast<void>(collection.peekResolveProxy(proxy));
    collection.resolveProxy(proxy);
  }
}

template <class Collection>
void resolveAllAmong(Collection& collection) {
  std::vector<typename Collection::value_type> proxies;
  for (const auto& each : collection) {
    if (static_cast<const ModelElement&>(each).isProxy()) proxies.push_back(each);
  }
  for (const auto& proxy : proxies) collection.resolveProxy(proxy);
}

}  // namespace

std::vector<WholeOperation> referenceCollectionOperations() {
  return {
      {"add to a row", [](const WholeWorld& world) { world.references.getRowMutable().add(world.thing); }},
      {"add to a bag", [](const WholeWorld& world) { world.references.getBagMutable().add(world.thing); }},
      {"add to a bag of anything",
       [](const WholeWorld& world) { world.references.getAnyBagMutable().add(world.robot); }},
      {"add a proxy to a row",
       [](const WholeWorld& world) { world.references.getProxyRowMutable().add(world.proxy); }},
      {"add a proxy to a bag",
       [](const WholeWorld& world) { world.references.getProxyBagMutable().add(world.proxy); }},
      {"insert into a row",
       [](const WholeWorld& world) { world.references.getRowMutable().insert(1, world.robot); }},
      {"insert a proxy",
       [](const WholeWorld& world) { world.references.getProxyRowMutable().insert(0, world.proxy); }},
      {"remove from a row",
       [](const WholeWorld& world) { world.references.getRowMutable().remove(world.target); }},
      {"remove from a bag",
       [](const WholeWorld& world) { world.references.getBagMutable().remove(world.target); }},
      {"remove proxies",
       [](const WholeWorld& world) {
         Transaction transaction = world.model.impl()->beginTransaction(false);
         for (const Thing& each : world.references.proxyRow().proxies())
           world.references.getProxyRowMutable().remove(each);
         for (const Thing& each : world.references.proxyBag().proxies())
           world.references.getProxyBagMutable().remove(each);
         transaction.commit();
       }},
      {"clear a row", [](const WholeWorld& world) { world.references.getMixedMutable().clear(); }},
      {"clear a bag", [](const WholeWorld& world) { world.references.getBagMutable().clear(); }},
      {"clear a row with proxies",
       [](const WholeWorld& world) { world.references.getProxyRowMutable().clear(); }},
      {"clear a bag with proxies",
       [](const WholeWorld& world) { world.references.getProxyBagMutable().clear(); }},
      {"work on a row", [](const WholeWorld& world) { workOn(world, world.references.getRowMutable()); }},
      {"work on a bag", [](const WholeWorld& world) { workOn(world, world.references.getBagMutable()); }},
      {"work on a row with proxies",
       [](const WholeWorld& world) { workOn(world, world.references.getProxyRowMutable()); }},
      {"work on a bag with proxies",
       [](const WholeWorld& world) { workOn(world, world.references.getProxyBagMutable()); }},
      {"add what is of another model",
       [](const WholeWorld& world) {
         refused([&] { world.references.getRowMutable().add(world.foreign); });
         refused([&] { world.references.getProxyBagMutable().add(world.foreign); });
       }},
      {"add a proxy where there are none",
       [](const WholeWorld& world) {
         refused([&] { world.references.getBagMutable().add(world.proxy); });
         refused([&] { world.references.getRowMutable().insert(0, world.proxy); });
       }},
      {"destroy what collections refer to", [](const WholeWorld& world) { world.target.destroy(); }},
      {"destroy what refers", [](const WholeWorld& world) { world.references.destroy(); }},
  };
}

std::vector<WholeOperation> keyedOperations() {
  return {
      {"add by a number",
       [](const WholeWorld& world) { world.containers.getByNumberMutable().add(world.thing); }},
      {"add by a number among others",
       [](const WholeWorld& world) { world.containers.getAllByNumberMutable().add(world.thing); }},
      {"add by a name",
       [](const WholeWorld& world) { world.containers.getByNameMutable().add(world.thing); }},
      {"change a number that is a key",
       [](const WholeWorld& world) {
         const Thing first = world.containers.byNumber().first();
         if (first.number() < 30) first.setNumber(30);
       }},
      {"change a number that is a key among others",
       [](const WholeWorld& world) { world.containers.allByNumber().first().setNumber(3); }},
      {"change a number to a taken one",
       [](const WholeWorld& world) {
         refused([&] {
           const auto& map = world.containers.byNumber();
           map.first().setNumber(map.keys().back());
         });
       }},
      {"move from one map to another",
       [](const WholeWorld& world) {
         const Thing first = world.containers.byName().first();
         if (world.containers.byName().size() == 3) world.containers.getAllByNumberMutable().add(first);
       }},
      {"remove by a number",
       [](const WholeWorld& world) {
         if (world.containers.byNumber().size() == 3)
           world.containers.getByNumberMutable().remove(world.containers.byNumber().first());
       }},
      {"clear by a number",
       [](const WholeWorld& world) { world.containers.getAllByNumberMutable().clear(); }},
      {"clear a map with a proxy",
       [](const WholeWorld& world) { world.containers.getByNameMutable().clear(); }},
      {"destroy with all contents", [](const WholeWorld& world) { world.containers.destroy(); }},
      {"find and list",
       [](const WholeWorld& world) {
         static_cast<void>(world.containers.byNumber().keys());
         static_cast<void>(world.containers.allByNumber().findAll(2));
         static_cast<void>(world.containers.byName().proxies());
         static_cast<void>(world.references.bag().elements());
         static_cast<void>(world.target.referrers());
       }},
  };
}

std::vector<WholeOperation> proxyOperations() {
  return {
      {"make a proxy",
       [](const WholeWorld& world) {
         if (!world.model.impl()->findElement(WholeWorld::identity(90)))
           lx::base::createProxy<Robot>(world.model, WholeWorld::identity(90));
       }},
      {"make a proxy of what is there",
       [](const WholeWorld& world) {
         refused([&] { lx::base::createProxy<Thing>(world.model, world.target.identifier()); });
       }},
      {"turn what is referred to into a proxy",
       [](const WholeWorld& world) { world.target.impl()->convertToProxy(); }},
      {"turn what refers into a proxy",
       [](const WholeWorld& world) { world.references.impl()->convertToProxy(); }},
      {"turn what contains into a proxy",
       [](const WholeWorld& world) { world.robot.impl()->convertToProxy(); }},
      {"turn what a map holds into a proxy",
       [](const WholeWorld& world) {
         if (world.containers.byNumber().size() == 3)
           world.containers.byNumber().first().impl()->convertToProxy();
       }},
      {"turn what a multimap holds into a proxy",
       [](const WholeWorld& world) {
         if (world.containers.allByName().size() == 3)
           world.containers.allByName().first().impl()->convertToProxy();
       }},
      {"turn what a sequence holds into a proxy",
       [](const WholeWorld& world) { world.containers.row().at(0).impl()->convertToProxy(); }},
      {"resolve a reference",
       [](const WholeWorld& world) {
         const ModelElement held = world.references.one();
         if (held.isProxy())
           world.references.setOne(probe::Thing(
               static_cast<Thing::Impl*>(world.model.impl()->findElement(held.identifier()).impl())));
       }},
      {"resolve in a row of references",
       [](const WholeWorld& world) { resolveAll(world.references.getProxyRowMutable()); }},
      {"resolve in a bag of references",
       [](const WholeWorld& world) { resolveAll(world.references.getProxyBagMutable()); }},
      {"resolve in a row of references to anything",
       [](const WholeWorld& world) { resolveAll(world.references.getAnyProxyRowMutable()); }},
      {"resolve in a sequence",
       [](const WholeWorld& world) { resolveAllAmong(world.containers.getRowMutable()); }},
      {"resolve in a sequence of anything",
       [](const WholeWorld& world) { resolveAllAmong(world.containers.getMixedMutable()); }},
      {"resolve by a name", [](const WholeWorld& world) { resolveAll(world.containers.getByNameMutable()); }},
      {"resolve by a number",
       [](const WholeWorld& world) { resolveAll(world.containers.getByNumberMutable()); }},
      {"resolve by a name among others",
       [](const WholeWorld& world) { resolveAll(world.containers.getAllByNameMutable()); }},
      {"resolve by a number among others",
       [](const WholeWorld& world) { resolveAll(world.containers.getAllByNumberMutable()); }},
      {"destroy a proxy that is held", [](const WholeWorld& world) { world.proxy.destroy(); }},
      {"set a value of a proxy",
       [](const WholeWorld& world) { refused([&] { world.proxy.setName(Long); }); }},
  };
}

}  // namespace allocation_test
