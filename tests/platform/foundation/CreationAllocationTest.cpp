#include <memory>
#include <new>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/SaturatedBloomFilter.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "tests/platform/foundation/Probing.h"
#include "tests/support/AllocationWalk.h"

using namespace allocation_test;
using namespace probing;
using lx::base::AbstractOwnedCollection;
using lx::base::SaturatedBloomFilter;
using lx::base::query::find;

namespace {

constexpr const char16_t* Long = u"a text that is long enough to have memory of its own";
constexpr const char16_t* Longer = u"another text that is long enough to have memory of its own";

/// Counts what it is told, and keeps the label, as far as memory goes.
class LabelReader final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet& changes) noexcept override {
    ++notices;
    try {
      label = changes.label();
      const auto read = changes.changes();
      properties = read.empty() ? std::vector<unsigned>() : read.front()->properties();
    } catch (const std::bad_alloc&) {
    }
  }

  int notices = 0;
  Value label;
  std::vector<unsigned> properties;
};

/// A model that is always the same, and what operations on it give.
struct World {
  static constexpr bool isReproducible = false;  // elements stand for themselves

  explicit World(bool isObserved) {
    for (const char16_t* name : {u"a", Long, u"c"}) things.push_back(thing(model, name));
    machine.setName(Long);
    named = Thing::create(model, identity(1));
    contained = thing(model, u"contained");
    containers.getRowMutable().add(contained);
    containers.getByNameMutable().add(things[0]);
    holder.getRowMutable().add(things[1]);
    if (isObserved) model.impl()->addObserver(reader);
  }

  std::string state() const { return stateOf(model); }

  /// Change something, in the open transaction if there is one.
  void touch() const { machine.setNumber(machine.number() + 1); }

  bool hasMade(bool isTransient, const std::u16string& address) const {
    return made.isAlive() && made.isTransient() == isTransient && made.address() == address &&
           made.impl()->numberOfElements() == 0 && !made.impl()->hasOpenTransaction();
  }

  template <class Owner>
  void instantiate(const Owner& owner, const char16_t* property) {
    collection = Thing::metaClass().impl()->instantiateCollection(*owner.impl(),
                                                                  Owner::metaClass().property(property));
  }
  template <class Collection>
  bool hasInstantiated(const ModelElement& owner) const {
    const auto* const typed = dynamic_cast<const Collection*>(collection.get());
    return typed != nullptr && typed->empty() && &typed->owner() == owner.impl();
  }

  LabelReader reader, added;  // these outlive the model
  Model model = Model::create();
  Containers containers = Containers::create(model);
  References holder = References::create(model);
  Machine machine = Machine::create(model);
  std::vector<Thing> things;
  Thing named, contained;

  Model made;
  ModelElement found;
  Elements list;
  std::vector<Thing> matches;
  std::vector<Machine> machines;
  std::shared_ptr<const AbstractOwnedCollection> collection;
  std::optional<SaturatedBloomFilter> filter;
  std::unique_ptr<ModelElement::Impl::Changes> changes;
  bool isRefused = false;
};

using Operation = OperationOn<World>;

using Row = lx::base::ElementSequence<Thing>;
using Map = lx::base::ElementMap<std::u16string, Thing>;
using Multimap = lx::base::ElementMultimap<std::int32_t, Thing>;
using Bag = lx::base::TypedReferenceCollection<Thing, std::unordered_set<Thing>>;
using ProxyRow = lx::base::TypedReferenceCollectionWithProxies<Thing, std::vector<Thing>>;

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all{
      {"create a model", [](World& world) { world.made = Model::create(); },
       [](World& world) { return world.hasMade(false, u""); }},
      {"create a transient model", [](World& world) { world.made = Model::createTransientModel(); },
       [](World& world) { return world.hasMade(true, u""); }},
      {"create a registry model",
       [](World& world) { world.made = Model::createRegistryModel(Long, identity(7)); },
       [](World& world) { return world.hasMade(false, Long) && world.made.identifier() == identity(7); }},
      {"create a model and an element in it",
       [](World& world) {
         world.made = Model::create();
         world.found = Thing::create(world.made, identity(1));
       },
       [](World& world) { return world.made.impl()->elements() == Elements{world.found}; }},
      {"list the roots", [](World& world) { world.list = world.model.impl()->roots(); },
       [](World& world) {
         return world.list == Elements{world.containers, world.holder,    world.machine,
                                       world.things[1],  world.things[2], world.named};
       }},
      {"list the elements", [](World& world) { world.list = world.model.impl()->elements(); },
       [](World& world) {
         return world.list == Elements{world.containers, world.holder,    world.machine, world.things[0],
                                       world.things[1],  world.things[2], world.named,   world.contained};
       }},
      {"find an element", [](World& world) { world.found = world.model.impl()->findElement(identity(1)); },
       [](World& world) { return world.found == world.named; }},
      {"find none", [](World& world) { world.found = world.model.impl()->findElement(identity(99)); },
       [](World& world) { return !world.found; }},
      {"instantiate a sequence", [](World& world) { world.instantiate(world.containers, u"row"); },
       [](World& world) { return world.hasInstantiated<Row>(world.containers); }},
      {"instantiate a map", [](World& world) { world.instantiate(world.containers, u"byName"); },
       [](World& world) { return world.hasInstantiated<Map>(world.containers); }},
      {"instantiate a multimap", [](World& world) { world.instantiate(world.containers, u"allByNumber"); },
       [](World& world) { return world.hasInstantiated<Multimap>(world.containers); }},
      {"instantiate a bag", [](World& world) { world.instantiate(world.holder, u"bag"); },
       [](World& world) { return world.hasInstantiated<Bag>(world.holder); }},
      {"instantiate a row with proxies", [](World& world) { world.instantiate(world.holder, u"proxyRow"); },
       [](World& world) { return world.hasInstantiated<ProxyRow>(world.holder); }},
      {"make a filter",
       [](World& world) {
         world.filter.emplace(200);
         world.filter->add(identity(1));
       },
       [](World& world) { return world.filter->expected() == 200 && world.filter->contains(identity(1)); }},
      {"ask for all of a class",
       [](World& world) { world.matches = find<Thing>(Thing::Constrainables(world.model)); },
       [](World& world) {
         return world.matches == std::vector<Thing>{world.machine,   world.things[0], world.things[1],
                                                    world.things[2], world.named,     world.contained};
       }},
      {"ask by conditions",
       [](World& world) {
         Thing::Constrainables wanted(world.model);
         wanted.name.equals(Long);
         wanted.number.satisfies([](const std::int32_t& number) { return number > 0; });
         world.matches = find<Thing>(wanted);
         world.machines = find<Machine>(wanted);
       },
       [](World& world) {
         return world.matches == std::vector<Thing>{world.machine, world.things[1]} &&
                world.machines == std::vector<Machine>{world.machine};
       }},
      {"ask for what refers and contains",
       [](World& world) {
         References::Constrainables holders(world.model);
         holders.row.equals({world.things[1]});
         world.list = find<ModelElement>(holders);
         Containers::Constrainables containers(world.model);
         containers.byName.equals({world.things[0]});
         const Elements further = find<ModelElement>(containers);
         world.list.insert(world.list.end(), further.begin(), further.end());
       },
       [](World& world) {
         return world.list == Elements{world.holder, world.containers};
       }},
      {"record a change",
       [](World& world) {
         const std::u16string old = Longer;
         const lx::base::detail::LoneChange<std::u16string> saved(*world.things[1].impl(),
                                                                  Thing::Impl::NameIndex, old);
         world.changes = world.things[1].impl()->createChanges(saved);
       },
       [](World& world) {
         return world.changes->element() == world.things[1] &&
                world.changes->properties() == std::vector<unsigned>{Thing::Impl::NameIndex} &&
                world.changes->oldValue(Thing::Impl::NameIndex).as<std::u16string>() == Longer &&
                world.changes->oldValue(Thing::Impl::NumberIndex).isEmpty();
       }},
      {"add an observer", [](World& world) { world.model.impl()->addObserver(world.added); },
       [](World& world) {
         world.touch();
         return world.added.notices == (world.model.impl()->hasOpenTransaction() ? 0 : 1);
       }},
      {"commit with a label",
       [](World& world) {
         Transaction transaction = begin(world.model);
         world.things[2].setName(Longer);
         world.holder.getRowMutable().add(world.named);
         transaction.commit(Value(std::u16string(Long)));
       },
       [](World& world) {
         return world.things[2].name() == Longer && world.holder.row().contains(world.named);
       }},
      {"commit an inner one with a label",
       [](World& world) {
         Transaction outer = begin(world.model);
         Transaction inner = begin(world.model);
         world.things[2].setName(Longer);
         inner.commit(Value(std::u16string(Long)));
         world.things[2].setRemark(std::u16string(Longer));
         outer.commit();
       },
       [](World& world) {
         return world.things[2].name() == Longer && world.things[2].remark().value_or(u"") == Longer;
       }},
      {"abandon a transaction",
       [](World& world) {
         const Transaction transaction = begin(world.model);
         world.things[2].setName(Longer);
       },
       [](World& world) { return world.things[2].name() == u"c"; }},
      {"freeze, thaw and change",
       [](World& world) {
         Model::Freezer::freeze(world.model);
         const Model::Thawer thawed = Model::Freezer::thaw(world.model);
         world.things[2].setName(Longer);
       },
       [](World& world) { return world.model.impl()->isFrozen() && world.things[2].name() == Longer; }},
      {"freeze and be refused",
       [](World& world) {
         Model::Freezer::freeze(world.model);
         try {
           world.things[2].setName(Longer);
         } catch (const InvalidValue&) {
           world.isRefused = true;
         }
       },
       [](World& world) { return world.isRefused && world.things[2].name() == u"c"; }},
      {"freeze in the open transaction and commit it",
       [](World& world) {
         Transaction transaction = begin(world.model);
         world.things[2].setName(Longer);
         Model::Freezer::freeze(world.model);
         transaction.commit();
       },
       [](World& world) { return world.things[2].name() == Longer; }},
  };
  return all;
}

TEST(FailingAllocations, LeaveModelsAndQuestionsWhole) {
  expectSoundness(operations(), {Frame::Bare, Frame::Observed, Frame::WithinSaved});
}

TEST(FailingAllocations, TellALabelWholeOrNotAtAll) {
  std::size_t refused = 0;
  failInTurn(Extent::Alone, [&](std::size_t number) {
    const World world(true);
    const AllocationAttempt attempt = attemptWithout(number, [&] {
      Transaction transaction = begin(world.model);
      world.things[2].setName(Longer);
      transaction.commit(Value(std::u16string(Long)));
    });
    if (attempt.isRefused) ++refused;
    EXPECT_EQ(world.reader.notices, attempt.isRefused ? 0 : 1);
    EXPECT_EQ(world.things[2].name(), attempt.isRefused ? u"c" : Longer);
    if (!attempt.hasOccurred) {
      EXPECT_EQ(world.reader.label.as<std::u16string>(), Long);
      EXPECT_EQ(world.reader.properties, std::vector<unsigned>{Thing::Impl::NameIndex});
    }
    return attempt.hasOccurred;
  });
  EXPECT_GT(refused, 0U);
}

TEST(FailingAllocations, AreNoneWhereNothingIsAskedFor) {
  World world(false);
  world.model.impl()->findElement(identity(1));
  const std::size_t asked = AllocationFault::requests();
  const ModelElement found = world.model.impl()->findElement(identity(1));
  Model::Freezer::freeze(world.model);
  {
    const Model::Thawer thawed = Model::Freezer::thaw(world.model);
    const Model::Thawer inner = Model::Freezer::thaw(world.model);
  }
  world.model.impl()->removeObserver(world.added);
  EXPECT_EQ(AllocationFault::requests(), asked);
  EXPECT_EQ(found, world.named);
}

}  // namespace
