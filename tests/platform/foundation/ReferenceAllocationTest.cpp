#include <functional>
#include <new>
#include <optional>

#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "tests/platform/foundation/Probing.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Sets.h"

using namespace probing;
using lx::base::createProxy;
using probe::Branch;
using probe::Leaf;
using probe::Sets;
using Extent = AllocationFault::Extent;

namespace {

/// Reads every change set, as far as memory goes.
class Reader final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet& changes) noexcept override {
    try {
      static_cast<void>(changes.changes());
    } catch (const std::bad_alloc&) {
    }
  }
};

/// A model with references of every kind, and proxies wherever they can be; always the same.
struct World {
  World() {
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

  Model model = Model::create();
  References holder = References::create(model);
  References second = References::create(model);  // refers later than the first to what both refer to
  Containers containers = Containers::create(model);
  Sets sets = Sets::create(model);
  std::vector<Thing> things;
  Thing proxy, rowProxy, keyProxy, loaded;  // the first in no container, its element too
};

struct Operation {
  const char* name;
  std::function<void(const World&)> run;
};

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

/// In what an operation is done: its own transaction, watched, within an open one, within one that has
/// changed everything, within one of its own in that.
enum class Frame { Bare, Observed, Within, WithinSaved, WithinInner };

/// A world in which an operation is done whose n-th allocation fails. False if it asked for less.
bool tryWithout(std::size_t number, Extent extent, const Operation& operation, Frame frame) {
  const World world;
  Reader reader;
  if (frame == Frame::Observed) world.model.impl()->addObserver(reader);
  const std::string outermost = world.state();
  std::optional<Transaction> outer;
  if (frame >= Frame::Within) outer.emplace(begin(world.model));
  if (frame >= Frame::WithinSaved) world.touch();
  const std::string before = world.state();
  const auto run = [&] {
    if (frame != Frame::WithinInner) return operation.run(world);
    Transaction inner = begin(world.model);
    operation.run(world);
    inner.commit();
  };
  bool isRefused = false, hasOccurred = false;
  {
    const AllocationFault fault(number, extent);
    try {
      run();
    } catch (const std::bad_alloc&) {
      isRefused = true;
    }
    hasOccurred = AllocationFault::hasOccurred();
  }
  EXPECT_EQ(world.model.impl()->hasOpenTransaction(), outer.has_value());
  if (isRefused) {
    EXPECT_EQ(world.state(), before) << "is half done";
    run();
  }
  if (!outer) return hasOccurred;
  const std::size_t asked = AllocationFault::requests();
  outer.reset();
  EXPECT_EQ(AllocationFault::requests(), asked) << "the rollback allocates";
  EXPECT_EQ(world.state(), outermost);
  return hasOccurred;
}

TEST(FailingAllocations, LeaveReferencesAndProxiesWhole) {
  constexpr std::size_t Bound = 2000;
  for (const Operation& operation : operations()) {
    for (const Frame frame :
         {Frame::Bare, Frame::Observed, Frame::Within, Frame::WithinSaved, Frame::WithinInner}) {
      for (const Extent extent : {Extent::Alone, Extent::WithAllThatFollow}) {
        tryWithout(0, extent, operation, frame);  // so that what is made once for all is there
        std::size_t number = 1;
        for (bool goesOn = true; goesOn && number < Bound; ++number) {
          SCOPED_TRACE(std::string(operation.name) + ", frame " + std::to_string(static_cast<int>(frame)) +
                       ", allocation " + std::to_string(number) + (extent == Extent::Alone ? "" : " on"));
          const std::size_t live = AllocationFault::live();
          goesOn = tryWithout(number, extent, operation, frame);
          if (HasFailure()) return;
          EXPECT_EQ(AllocationFault::live(), live) << "memory leaks";
        }
        EXPECT_LT(number, Bound) << operation.name << " has no end";
      }
    }
  }
}

}  // namespace
