#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Sets.h"

using namespace probing;
using lx::base::createProxy;
using probe::Sets;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

/// Counts what it is told, and does something when it is told first.
class Listener final : public lx::base::ChangeObserver {
 public:
  explicit Listener(const Model& model, std::function<void()> act = {})
      : model_(model), act_(std::move(act)) {
    model_.impl()->addObserver(*this);
  }
  ~Listener() override { model_.impl()->removeObserver(*this); }

  void changed(const lx::base::ChangeSet& changes) noexcept override {
    ++notices;
    label = changes.label();
    if (const auto act = std::exchange(act_, {})) act();
  }

  int notices = 0;
  Value label;

 private:
  const Model model_;
  std::function<void()> act_;
};

/// A container that freezes its model when it is about to be destroyed.
class Freezing final : public Containers::Impl {
 public:
  explicit Freezing(const Model& model) : Impl(model, {}) {}
  void aboutToDestroy() override { Model::Freezer::freeze(getModel()); }
};

class Freeze : public testing::Test {
 protected:
  Freeze() {
    home.getRowMutable().add(child);
    home.getByNameMutable().add(kept);
    home.getAllByNumberMutable().add(proxy);
    Thing::create(model, identity(1)).setName(u"loaded");
    holder.getRowMutable().add(child);
    holder.getProxyBagMutable().add(proxy);
    machine.getSpeedsMutable().add(1);
    sets.getTextsMutable().add(u"text");
  }

  void freeze() const { Model::Freezer::freeze(model); }

  /// Whether mutators work, shown by one.
  bool isWritable() const {
    const std::int32_t former = child.number();
    try {
      child.setNumber(former + 1);
    } catch (const InvalidValue&) {
      EXPECT_EQ(child.number(), former);
      return false;
    }
    return child.number() == former + 1;
  }

  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const References holder = References::create(model);
  const Machine machine = Machine::create(model);
  const Sets sets = Sets::create(model);
  const Thing child = thing(model, u"child"), kept = thing(model, u"kept");
  const Thing proxy = createProxy<Thing>(model, identity(1));
};

TEST_F(Freeze, StopsEveryMutatorWhileATransactionIsOpen) {
  const Transaction open = begin(model);
  // Taken before, since who asks for them in a frozen model is refused already.
  auto& row = home.getRowMutable();
  auto& byName = home.getByNameMutable();
  auto& byNumber = home.getAllByNumberMutable();
  auto& references = holder.getRowMutable();
  auto& bag = holder.getProxyBagMutable();
  auto& speeds = machine.getSpeedsMutable();
  auto& texts = sets.getTextsMutable();
  const std::vector<std::pair<const char*, std::function<void()>>> mutators{
      {"begin", [&] { static_cast<void>(begin(model)); }},
      {"create", [&] { Thing::create(model); }},
      {"build", [&] { Thing::Builder(model).setName(u"built").create(); }},
      {"create a proxy", [&] { createProxy<Thing>(model, identity(9)); }},
      {"destroy", [&] { machine.destroy(); }},
      {"destroy what is contained", [&] { child.destroy(); }},
      {"convert", [&] { child.impl()->convertToProxy(); }},
      {"resolve", [&] { proxy.impl()->resolve(); }},
      {"set a number", [&] { child.setNumber(1); }},
      {"set a key", [&] { kept.setName(u"other"); }},
      {"set an optional", [&] { child.setRemark(std::u16string(u"other")); }},
      {"set by reflection", [&] { child.setPropertyValue(u"name", Value(std::u16string(u"other"))); }},
      {"refer", [&] { holder.setOne(child); }},
      {"contain", [&] { home.setOne(machine); }},
      {"ask for a collection", [&] { static_cast<void>(home.getRowMutable()); }},
      {"create into", [&] { home.createIntoRow(Thing::Builder()); }},
      {"add to a sequence", [&] { row.add(kept); }},
      {"insert", [&] { row.insert(0, kept); }},
      {"remove from a sequence", [&] { row.remove(child); }},
      {"clear a sequence", [&] { row.clear(); }},
      {"add to a map", [&] { byName.add(child); }},
      {"remove from a map", [&] { byName.remove(kept); }},
      {"clear a map", [&] { byName.clear(); }},
      {"add to a multimap", [&] { byNumber.add(child); }},
      {"resolve in a multimap", [&] { byNumber.resolveProxy(proxy); }},
      {"clear a multimap", [&] { byNumber.clear(); }},
      {"add a reference", [&] { references.add(kept); }},
      {"remove a reference", [&] { references.remove(child); }},
      {"clear references", [&] { references.clear(); }},
      {"add to the bag", [&] { bag.add(kept); }},
      {"resolve in the bag", [&] { bag.resolveProxy(proxy); }},
      {"clear the bag", [&] { bag.clear(); }},
      {"add a value", [&] { speeds.add(2); }},
      {"assign values", [&] { speeds.assign({2}); }},
      {"clear values", [&] { speeds.clear(); }},
      {"add to a set", [&] { texts.add(u"other"); }},
      {"remove from a set", [&] { texts.remove(u"text"); }},
      {"clear a set", [&] { texts.clear(); }},
  };
  freeze();
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  for (const auto& [name, run] : mutators) {
    EXPECT_THAT(raised<InvalidValue>(run), StartsWith("InvalidValue(")) << name;
  }
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(transactions(model), begun);
  EXPECT_TRUE(open.isOpen());
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  for (const auto& [name, run] : mutators) {
    const Transaction inner = begin(model);
    EXPECT_NO_THROW(run()) << name << ", thawed";
  }
}

TEST_F(Freeze, NamesWhatIsFrozen) {
  const Transaction open = begin(model);
  freeze();
  EXPECT_EQ(raised<InvalidValue>([&] { child.setNumber(1); }),
            "InvalidValue(probe.Thing.number; the element's model is frozen; thaw it first.)");
  EXPECT_EQ(raised<InvalidValue>([&] { static_cast<void>(begin(model)); }),
            "InvalidValue(Model.beginTransaction; the model is frozen; thaw it first.)");
}

TEST_F(Freeze, LetsTheModelBeRead) {
  const Transaction open = begin(model);
  freeze();
  EXPECT_EQ(child.name(), u"child");
  EXPECT_EQ(home.byName().find(u"kept"), kept);
  EXPECT_THAT(elementsOf(holder.row()), ElementsAre(child));
  EXPECT_THAT(child.referrers(), ElementsAre(holder));
  EXPECT_FALSE(machine.identifier().is_nil());
  EXPECT_TRUE(proxy.impl()->isProxy());
  EXPECT_EQ(holder.proxyBag().peekResolveProxy(proxy).name(), u"loaded");
}

TEST_F(Freeze, LetsTheOpenTransactionBeCommitted) {
  Listener listener(model);
  Transaction open = begin(model);
  child.setName(u"changed");
  home.getRowMutable().add(kept);
  machine.destroy();
  freeze();
  open.commit(Value(std::u16string(u"frozen")));
  EXPECT_FALSE(open.isOpen());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_TRUE(model.impl()->isFrozen());
  EXPECT_EQ(child.name(), u"changed");
  EXPECT_THAT(elementsOf(home.row()), ElementsAre(child, kept));
  EXPECT_FALSE(machine.isAlive());
  EXPECT_EQ(listener.notices, 1);
  EXPECT_EQ(listener.label.as<std::u16string>(), u"frozen");
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, LetsTheOpenTransactionBeAbandoned) {
  Listener listener(model);
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    child.setName(u"changed");
    home.getRowMutable().add(kept);
    home.getByNameMutable().add(thing(model, u"new"));
    holder.getRowMutable().clear();
    machine.getSpeedsMutable().add(2);
    proxy.impl()->resolve();
    machine.destroy();
    freeze();
  }
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_TRUE(model.impl()->isFrozen());
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(listener.notices, 0);
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, LetsEachOfTheOpenTransactionsEndAsItWill) {
  Listener listener(model);
  const std::string before = stateOf(model);
  {
    const Transaction outer = begin(model);
    Transaction inner = begin(model);
    child.setName(u"handed over");
    freeze();
    inner.commit();
    EXPECT_EQ(child.name(), u"handed over");
  }
  EXPECT_EQ(stateOf(model), before);
  const Model::Thawer thawed = Model::Freezer::thaw(model);
  Transaction outer = begin(model);
  child.setName(u"kept by the outer");
  {
    const Transaction inner = begin(model);
    child.setName(u"undone with the inner");
    freeze();
  }
  EXPECT_EQ(child.name(), u"kept by the outer");
  outer.commit();
  EXPECT_EQ(child.name(), u"kept by the outer");
  EXPECT_EQ(listener.notices, 1);
}

TEST_F(Freeze, UndoesAMutatorInTheMidstOfWhichItComes) {
  home.getMixedMutable().add(machine);
  Transaction creation = begin(model);
  const Containers end(new Freezing(model));
  end.impl()->notifyCreated();
  home.getMixedMutable().add(end);
  creation.commit();
  home.getMixedMutable().add(kept);
  const std::string before = stateOf(model);
  EXPECT_THROW(home.getMixedMutable().clear(), InvalidValue);
  EXPECT_TRUE(model.impl()->isFrozen());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(Freeze, BeginsAtOnceAlsoWithinANotice) {
  int refused = 0;
  const Listener listener(model, [&] {
    freeze();
    if (!isWritable()) ++refused;
  });
  child.setName(u"committed");
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(child.name(), u"committed");
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, MayBeRepeatedAndIsLiftedAtOnce) {
  freeze();
  freeze();
  {
    const Model::Thawer thawed = Model::Freezer::thaw(model);
    EXPECT_TRUE(isWritable());
  }
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, RefusesANullOrDeadModel) {
  freeze();
  model.destroy();
  for (const Model& each : {Model(), model}) {
    EXPECT_EQ(
        raised<InvalidValue>([&] { Model::Freezer::freeze(each); }),
        "InvalidValue(Model.Freezer.freeze; the model is null or was destroyed; give one that is alive.)");
    EXPECT_EQ(
        raised<InvalidValue>([&] { static_cast<void>(Model::Freezer::thaw(each)); }),
        "InvalidValue(Model.Freezer.thaw; the model is null or was destroyed; give one that is alive.)");
  }
}

// Thawing

TEST_F(Freeze, IsLiftedWithinAnOpenTransaction) {
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    freeze();
    {
      const Model::Thawer thawed = Model::Freezer::thaw(model);
      EXPECT_TRUE(isWritable());
      home.getRowMutable().add(kept);
    }
    EXPECT_FALSE(isWritable());
    EXPECT_THAT(elementsOf(home.row()), ElementsAre(child, kept));
  }
  EXPECT_EQ(stateOf(model), before) << "what was done while it was lifted is undone too";
}

TEST_F(Freeze, IsLiftedUntilTheThawerThatLiftedItGoes) {
  freeze();
  {
    const Model::Thawer outer = Model::Freezer::thaw(model);
    {
      const Model::Thawer inner = Model::Freezer::thaw(model);
      EXPECT_TRUE(isWritable());
    }
    EXPECT_TRUE(isWritable()) << "the inner one had nothing to lift";
  }
  EXPECT_FALSE(isWritable());
  std::optional<Model::Thawer> first(Model::Freezer::thaw(model));
  const Model::Thawer second = Model::Freezer::thaw(model);
  first.reset();
  EXPECT_FALSE(isWritable()) << "the second one had nothing to lift";
}

TEST_F(Freeze, IsLiftedUntilTheThawerItWasMovedToGoes) {
  freeze();
  std::optional<Model::Thawer> last;
  {
    Model::Thawer first = Model::Freezer::thaw(model);
    Model::Thawer second(std::move(first));
    last.emplace(std::move(second));
    EXPECT_TRUE(isWritable());
  }
  EXPECT_TRUE(isWritable()) << "those that it was moved from lift nothing any more";
  last.reset();
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, ComesBackWhileItIsLifted) {
  freeze();
  {
    const Model::Thawer outer = Model::Freezer::thaw(model);
    freeze();
    EXPECT_FALSE(isWritable());
    {
      const Model::Thawer inner = Model::Freezer::thaw(model);
      EXPECT_TRUE(isWritable());
    }
    EXPECT_FALSE(isWritable());
  }
  EXPECT_FALSE(isWritable());
}

TEST_F(Freeze, IsNoMatterToAModelThatEndsWhileItIsLifted) {
  freeze();
  {
    const Model::Thawer thawed = Model::Freezer::thaw(model);
    model.destroy();
    EXPECT_FALSE(model.isAlive());
  }
  EXPECT_FALSE(child.isAlive());
  EXPECT_THROW(Model::Freezer::freeze(model), InvalidValue);
}

}  // namespace
