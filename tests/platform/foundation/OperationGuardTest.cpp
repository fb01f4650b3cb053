#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/foundation/ChangeObserver.h"
#include "tests/platform/foundation/Probing.h"

using namespace probing;
using lx::base::AbstractOwnedCollection;
using Operation = AbstractOwnedCollection::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A collection made by hand. What changes it is written out in the tests, within a guard or without.
class Marks final : public AbstractOwnedCollection {
 public:
  Marks(ModelElement::Impl& owner, unsigned index) : AbstractOwnedCollection(owner, index) {}

  void put(int mark) {
    values.push_back(mark);
    changed();
  }

  std::vector<int> values;
};

/// A thing with marks, which belong to its remark: they are saved and given back with it.
class MarkedImpl final : public Thing::Impl {
 public:
  class Saved;

  explicit MarkedImpl(const Model& model) : Thing::Impl(model, {}), marks(*this, remarkIndex()) {}

  static unsigned remarkIndex() { return Thing::metaClass().property(u"remark").getIndex(); }

  std::unique_ptr<ModelElement::Impl::Storage> createStorage() const override;
  void copyValue(unsigned index, ModelElement::Impl::Storage& to, ModelElement::Impl::Storage* from) override;
  void copyStateFromStorage(ModelElement::Impl::Storage& storage) noexcept override;

  Marks marks;
};

class MarkedImpl::Saved final : public Thing::Impl::Storage {
 public:
  void revertUnchanged(const ModelElement::Impl& element) override {
    const bool isSame = static_cast<const MarkedImpl&>(element).marks.values == marks;
    if (isSame) Thing::Impl::Storage::revertUnchanged(element);
  }

  std::vector<int> marks;
};

std::unique_ptr<ModelElement::Impl::Storage> MarkedImpl::createStorage() const {
  return std::make_unique<Saved>();
}

void MarkedImpl::copyValue(unsigned index, ModelElement::Impl::Storage& to,
                           ModelElement::Impl::Storage* from) {
  Thing::Impl::copyValue(index, to, from);
  if (index != marks.index()) return;
  auto& saved = static_cast<Saved&>(to).marks;
  saved = from == nullptr ? marks.values : std::move(static_cast<Saved&>(*from).marks);
}

void MarkedImpl::copyStateFromStorage(ModelElement::Impl::Storage& storage) noexcept {
  if (storage.isChanged(marks.index())) marks.values.swap(static_cast<Saved&>(storage).marks);
  Thing::Impl::copyStateFromStorage(storage);
}

/// Keeps the properties that were told of, notice by notice.
class Listener final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet& changes) noexcept override {
    std::vector<std::u16string>& names = notices.emplace_back();
    for (const auto& each : changes.changes()) {
      for (const unsigned index : each->properties()) {
        names.push_back(each->element().impl()->getPropertyByIndex(index).getName());
      }
    }
  }

  std::vector<std::vector<std::u16string>> notices;
};

class OperationGuard : public testing::Test {
 protected:
  OperationGuard() {
    Transaction transaction = begin(model_);
    marked_.impl()->notifyCreated();
    transaction.commit();
  }
  ~OperationGuard() override { model_.impl()->removeObserver(listener_); }

  void listen() { model_.impl()->addObserver(listener_); }
  Marks& marks() const { return static_cast<MarkedImpl&>(*marked_.impl()).marks; }

  /// Put a mark within a guard.
  void putFor(int mark, bool commits) const {
    Operation operation(marks());
    marks().put(mark);
    if (commits) operation.commit();
  }

  /// The words in which a guard refuses, and that it left all as it was.
  template <class M>
  std::string refusal() {
    const std::uint64_t before = transactions(model_);
    const std::uint32_t stamp = marks().stamp();
    const std::string message = raised<M>([&] { const Operation operation(marks()); });
    EXPECT_EQ(transactions(model_), before);
    EXPECT_EQ(marks().stamp(), stamp);
    EXPECT_THAT(listener_.notices, IsEmpty());
    return message;
  }

  Listener listener_;
  const Model model_ = Model::create();
  const Thing marked_ = Thing(new MarkedImpl(model_));
};

TEST_F(OperationGuard, UndoesWhatIsNotCommittedAndTellsNothing) {
  putFor(1, true);
  listen();
  putFor(2, false);
  EXPECT_THAT(marks().values, ElementsAre(1));
  EXPECT_FALSE(model_.impl()->hasOpenTransaction());
  EXPECT_THAT(listener_.notices, IsEmpty());
  putFor(3, true);
  EXPECT_THAT(marks().values, ElementsAre(1, 3));
}

TEST_F(OperationGuard, UndoesWhatAnExceptionLeaves) {
  listen();
  const auto fail = [&] {
    Operation operation(marks());
    marks().put(1);
    throw Abandoned();
  };
  EXPECT_THROW(fail(), Abandoned);
  EXPECT_THAT(marks().values, IsEmpty());
  EXPECT_THAT(listener_.notices, IsEmpty());
  EXPECT_FALSE(model_.impl()->hasOpenTransaction());
}

TEST_F(OperationGuard, IsOneTransactionAndOneNoticeWhenItIsCommitted) {
  listen();
  const std::uint64_t before = transactions(model_);
  {
    Operation operation(marks());
    marks().put(1);
    marks().put(2);
    EXPECT_THAT(listener_.notices, IsEmpty()) << "nothing is told before the commit";
    operation.commit();
    EXPECT_THAT(listener_.notices, ElementsAre(ElementsAre(u"remark")));
  }
  EXPECT_EQ(transactions(model_), before + 1);
  EXPECT_EQ(listener_.notices.size(), 1U);
  EXPECT_EQ(model_.impl()->counters().notices, 1U);
  EXPECT_THAT(marks().values, ElementsAre(1, 2));
}

TEST_F(OperationGuard, IsOneTransactionAlsoWhereNobodyListens) {
  const std::uint64_t before = transactions(model_);
  putFor(1, true);
  EXPECT_EQ(transactions(model_), before + 1);
  EXPECT_EQ(model_.impl()->counters().notices, 0U);
  EXPECT_THAT(marks().values, ElementsAre(1));
}

TEST_F(OperationGuard, TellsNothingOfWhatIsAsBefore) {
  listen();
  {
    Operation operation(marks());
    marks().put(1);
    marks().values.pop_back();
    operation.commit();
  }
  EXPECT_THAT(listener_.notices, IsEmpty());
}

TEST_F(OperationGuard, JoinsTheOpenTransactionSoThatWhatItDidStaysUntilThatEnds) {
  for (const bool isHeard : {false, true}) {
    if (isHeard) listen();
    for (const bool commits : {false, true}) {
      SCOPED_TRACE(testing::Message() << "heard " << isHeard << ", committed " << commits);
      {
        const Transaction open = begin(model_);
        putFor(1, commits);
        EXPECT_THAT(marks().values, ElementsAre(1));
        EXPECT_TRUE(open.isOpen());
        EXPECT_THAT(listener_.notices, IsEmpty());
      }
      EXPECT_THAT(marks().values, IsEmpty());
      EXPECT_THAT(listener_.notices, IsEmpty());
    }
  }
}

TEST_F(OperationGuard, IsKeptByTheTransactionThatItJoined) {
  listen();
  Transaction open = begin(model_);
  const std::uint64_t before = transactions(model_);
  putFor(1, false);
  putFor(2, true);
  EXPECT_EQ(transactions(model_), before + 2) << "each counts though it joins";
  open.commit();
  EXPECT_THAT(marks().values, ElementsAre(1, 2));
  EXPECT_THAT(listener_.notices, ElementsAre(ElementsAre(u"remark")));
}

TEST_F(OperationGuard, IsJoinedByTheOneWithinIt) {
  listen();
  {
    const Operation outer(marks());
    marks().put(1);
    putFor(2, true);
    EXPECT_THAT(marks().values, ElementsAre(1, 2));
  }
  EXPECT_THAT(marks().values, IsEmpty());
  {
    Operation outer(marks());
    putFor(3, false);
    EXPECT_THAT(marks().values, ElementsAre(3));
    outer.commit();
  }
  EXPECT_THAT(marks().values, ElementsAre(3));
  EXPECT_THAT(listener_.notices, ElementsAre(ElementsAre(u"remark")));
}

TEST_F(OperationGuard, GuardsWhatMutatorsDoWithinIt) {
  listen();
  const Machine machine = Machine::create(model_);
  listener_.notices.clear();
  auto& speeds = machine.getSpeedsMutable();
  const auto run = [&](bool commits) {
    Operation operation(speeds);
    speeds.add(1);
    marked_.setName(u"within");
    if (commits) operation.commit();
  };
  run(false);
  EXPECT_TRUE(speeds.empty());
  EXPECT_EQ(marked_.name(), u"");
  EXPECT_THAT(listener_.notices, IsEmpty());
  run(true);
  EXPECT_THAT(speeds.values(), ElementsAre(1));
  EXPECT_EQ(marked_.name(), u"within");
  EXPECT_THAT(listener_.notices, ElementsAre(testing::UnorderedElementsAre(u"speeds", u"name")));
}

TEST_F(OperationGuard, RefusesAProxy) {
  marked_.impl()->convertToProxy();
  EXPECT_EQ(refusal<CannotModifyProxy>(), "CannotModifyProxy(probe.Thing.remark)");
  listen();
  EXPECT_EQ(refusal<CannotModifyProxy>(), "CannotModifyProxy(probe.Thing.remark)");
}

TEST_F(OperationGuard, RefusesAnElementThatIsGone) {
  marked_.destroy();
  EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; the element"));
  listen();
  EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; the element"));
}

TEST_F(OperationGuard, RefusesAnElementThatIsGoneInTheOpenTransaction) {
  {
    const Transaction open = begin(model_);
    marked_.destroy();
    EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; "));
    EXPECT_TRUE(open.isOpen());
  }
  putFor(1, true);
  EXPECT_THAT(marks().values, ElementsAre(1));
}

TEST_F(OperationGuard, RefusesAnElementWhoseModelIsGone) {
  model_.destroy();
  EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; the element"));
}

TEST_F(OperationGuard, RefusesAFrozenModel) {
  Model::Freezer::freeze(model_);
  EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; "));
  listen();
  EXPECT_THAT(refusal<InvalidValue>(), testing::StartsWith("InvalidValue(probe.Thing.remark; "));
  const Model::Thawer thawed = Model::Freezer::thaw(model_);
  putFor(1, true);
  EXPECT_THAT(marks().values, ElementsAre(1));
}

}  // namespace
