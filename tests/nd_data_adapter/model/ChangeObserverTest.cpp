#include <boost/smart_ptr/weak_ptr.hpp>

#include "platform/host/Workspace.h"
#include "tests/nd_data_adapter/model/Recorder.h"

using namespace model_test;
using lx::base::ChangeObserver;
using lx::base::ChangeSet;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Calls a function at each notice.
class Step final : public ChangeObserver {
 public:
  explicit Step(std::function<void(const ChangeSet&)> step) : step_(std::move(step)) {}
  void changed(const ChangeSet& changes) noexcept override { step_(changes); }

 private:
  std::function<void(const ChangeSet&)> step_;
};

TEST(ChangeObserver, IsToldWhenTheModelStandsWholeAndNothingIsOpen) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Recorder recorder(model);
  bool open = true;
  std::u16string id;
  recorder.whenTold([&](const ChangeSet&) {
    open = model.impl()->hasOpenTransaction();
    id = tuple.id();
  });
  tuple.setId(u"a");
  EXPECT_FALSE(open);
  EXPECT_EQ(id, u"a");
}

TEST(ChangeObserver, IsToldInTheOrderOfAdding) {
  const Model model = Model::create();
  std::string order;
  Step first([&](const ChangeSet&) { order += '1'; });
  Step second([&](const ChangeSet&) { order += '2'; });
  model.impl()->addObserver(first);
  model.impl()->addObserver(second);
  ChangeTuple::create(model);
  EXPECT_EQ(order, "12");
  EXPECT_EQ(notices(model), 2U);
}

TEST(ChangeObserver, HearsNothingAfterItsRemoval) {
  const Model model = Model::create();
  int told = 0;
  Step step([&](const ChangeSet&) { ++told; });
  model.impl()->addObserver(step);
  ChangeTuple::create(model);
  model.impl()->removeObserver(step);
  ChangeTuple::create(model);
  EXPECT_EQ(told, 1);
}

TEST(ChangeObserver, MayRemoveItself) {
  const Model model = Model::create();
  std::string order;
  Step* self = nullptr;
  Step first([&](const ChangeSet&) {
    order += '1';
    model.impl()->removeObserver(*self);
  });
  Step second([&](const ChangeSet&) { order += '2'; });
  self = &first;
  model.impl()->addObserver(first);
  model.impl()->addObserver(second);
  ChangeTuple::create(model);
  ChangeTuple::create(model);
  EXPECT_EQ(order, "122");
}

TEST(ChangeObserver, MayRemoveAnotherBeforeItIsTold) {
  const Model model = Model::create();
  std::string order;
  Step second([&](const ChangeSet&) { order += '2'; });
  Step first([&](const ChangeSet&) {
    order += '1';
    model.impl()->removeObserver(second);
  });
  model.impl()->addObserver(first);
  model.impl()->addObserver(second);
  ChangeTuple::create(model);
  ChangeTuple::create(model);
  EXPECT_EQ(order, "11");
}

TEST(ChangeObserver, HearsFromTheNextCommitOnWhenItIsAddedDuringANotice) {
  const Model model = Model::create();
  std::string order;
  Step second([&](const ChangeSet&) { order += '2'; });
  bool added = false;
  Step first([&](const ChangeSet&) {
    order += '1';
    if (!std::exchange(added, true)) model.impl()->addObserver(second);
  });
  model.impl()->addObserver(first);
  ChangeTuple::create(model);
  EXPECT_EQ(order, "1");
  ChangeTuple::create(model);
  EXPECT_EQ(order, "112");
}

TEST(ChangeObserver, MayChangeTheModel) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model), echo = ChangeTuple::create(model);
  Recorder recorder(model);
  recorder.call(tuple, "tuple"), recorder.call(echo, "echo");
  Step step([&](const ChangeSet&) { echo.setId(tuple.id()); });
  model.impl()->addObserver(step);
  tuple.setId(u"a");
  EXPECT_EQ(echo.id(), u"a");
  EXPECT_THAT(recorder.take(), ElementsAre("tuple.id was \"\"", "echo.id was \"\""));
  model.impl()->removeObserver(step);
}

TEST(ChangeObserver, GetsTheOldValuesRightAlsoWhenAnotherChangedTheModelMeanwhile) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const auto variants = variantsOf(model, {u"a", u"b"});
  const ChangeTuple a = report.changes().at(0), b = report.changes().at(1);
  const auto first = variants.variants().find(u"a"), second = variants.variants().find(u"b");
  bool done = false;
  Step step([&](const ChangeSet&) {
    if (std::exchange(done, true)) return;
    Transaction own = begin(model);
    report.getChangesMutable().clear();
    variants.getVariantsMutable().clear();
    own.commit();
  });
  model.impl()->addObserver(step);
  Recorder recorder(model);
  recorder.call(report, "report"), recorder.call(a, "a"), recorder.call(b, "b");
  recorder.call(variants, "variants"), recorder.call(first, "first"), recorder.call(second, "second");
  {
    Transaction open = begin(model);
    const ChangeTuple c = report.createIntoChanges(ChangeTuple::Builder());
    recorder.call(c, "c");
    first.setName(u"c");
    open.commit();
  }
  // The observer's own transaction is told within the notice of the first.
  EXPECT_THAT(
      recorder.take(),
      ElementsAre("-c -b -a -first -second report.changes was [a b c] variants.Variants was [second first]",
                  "+c report.changes was [a b] variants.Variants was [first second]"));
  model.impl()->removeObserver(step);
}

TEST(ChangeObserver, MayDestroyWhatTheNoticeIsAbout) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  Step step([&](const ChangeSet&) { report.destroy(); });
  model.impl()->addObserver(step);
  report.createIntoChanges(ChangeTuple::Builder());
  EXPECT_FALSE(report.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(ChangeObserver, MayDestroyTheModel) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  Step step([&](const ChangeSet&) { model.destroy(); });
  int told = 0;
  Step after([&](const ChangeSet&) { ++told; });
  model.impl()->addObserver(step);
  model.impl()->addObserver(after);
  report.changes().at(0).destroy();
  EXPECT_FALSE(model.isAlive());
  EXPECT_EQ(told, 0);
}

TEST(ChangeObserver, MayLetTheLastHandleToTheModelGo) {
  Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Step step([&](const ChangeSet&) { model = Model(); });
  model.impl()->addObserver(step);
  tuple.setId(u"a");
  EXPECT_FALSE(tuple.isAlive());
}

/// Expect that a model whose last handle an observer drops ends behind the notice: those who are told later
/// find it whole, and nobody is told of its end.
void expectEndBehindTheNotice(const std::function<void(const Model&, const ChangeTuple&)>& step) {
  Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model), bystander = ChangeTuple::create(model);
  Step drop([&](const ChangeSet&) { model = Model(); });
  int told = 0;
  Step after([&](const ChangeSet& changes) {
    ++told;
    EXPECT_TRUE(changes.model().isAlive());
    EXPECT_TRUE(bystander.isAlive());
  });
  model.impl()->addObserver(drop);
  model.impl()->addObserver(after);
  step(model, tuple);
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(bystander.isAlive());
}

TEST(ChangeObserver, MayLetTheLastHandleToTheModelGoWhateverItIsToldOf) {
  expectEndBehindTheNotice([](const Model& model, const ChangeTuple&) { ChangeTuple::create(model); });
  expectEndBehindTheNotice([](const Model&, const ChangeTuple& tuple) { tuple.setId(u"a"); });
  expectEndBehindTheNotice([](const Model&, const ChangeTuple& tuple) { tuple.destroy(); });
  expectEndBehindTheNotice([](const Model& model, const ChangeTuple& tuple) {
    Transaction transaction = begin(model);
    tuple.setId(u"a");
    transaction.commit();
  });
}

TEST(ChangeObserver, MayKeepTheModelOfTheNoticeWhenTheLastOtherHandleHasGone) {
  Model model = Model::create(), kept;
  const ChangeTuple tuple = ChangeTuple::create(model);
  Step drop([&](const ChangeSet& changes) {
    model = Model();
    kept = changes.model();
  });
  model.impl()->addObserver(drop);
  tuple.setId(u"a");
  EXPECT_TRUE(tuple.isAlive());
  kept.impl()->removeObserver(drop);
  kept = Model();
  EXPECT_FALSE(tuple.isAlive());
}

TEST(ChangeObserver, IsToldNoMoreOnceAnEarlierOneHasDestroyedTheModel) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Step destroy([&](const ChangeSet&) { model.destroy(); });
  int told = 0;
  Step late([&](const ChangeSet&) { ++told; });
  Step add([&](const ChangeSet&) { model.impl()->addObserver(late); });
  model.impl()->addObserver(add);
  model.impl()->addObserver(destroy);
  tuple.setId(u"a");
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(told, 0);
}

/// Expect that what an observer lets go of during a notice has gone once the step that is told has ended.
void expectLetGo(const std::function<void(const Model&)>& step) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.setDataCache(inCreateWorkspace(1));
  const boost::weak_ptr<inWorkSpace_tag> held = container.dataCache();
  bool isDone = false;
  Step letGo([&](const ChangeSet&) {
    if (std::exchange(isDone, true)) return;
    Transaction transaction = begin(model);
    container.setDataCache(nullptr);
    transaction.commit();
    EXPECT_FALSE(held.expired()) << "the notice may still ask for it";
  });
  model.impl()->addObserver(letGo);
  step(model);
  EXPECT_TRUE(isDone);
  EXPECT_TRUE(held.expired());
}

TEST(ChangeObserver, LetsGoOfWhatItReplacedWhenTheOutermostNoticeEnds) {
  expectLetGo([](const Model& model) { ChangeTuple::create(model); });
  expectLetGo([](const Model& model) {
    Transaction transaction = begin(model);
    ChangeTuple::create(model);
    transaction.commit();
  });
  expectLetGo([](const Model& model) { ChangeTuple::Builder(model).create(); });
}

TEST(ChangeObserver, LetsGoOfWhatItReplacedWhenALoneSetterOrDestructionWasTold) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model), other = ChangeTuple::create(model);
  const DataContainer container = DataContainer::create(model);
  bool isDone = false;
  Step letGo([&](const ChangeSet&) {
    if (std::exchange(isDone, true)) return;
    Transaction transaction = begin(model);
    container.setDataCache(nullptr);
    transaction.commit();
  });
  model.impl()->addObserver(letGo);
  const std::function<void()> steps[]{[&] { tuple.setId(u"a"); }, [&] { other.destroy(); }};
  for (const auto& step : steps) {
    isDone = true;
    container.setDataCache(inCreateWorkspace(1));
    const boost::weak_ptr<inWorkSpace_tag> held = container.dataCache();
    isDone = false;
    step();
    EXPECT_TRUE(held.expired());
  }
}

TEST(ChangeObserver, MayKeepWhatItWasTold) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  std::vector<std::unique_ptr<ModelElement::Impl::Changes>> kept;
  Step step([&](const ChangeSet& changes) {
    for (auto& each : changes.changes()) kept.push_back(std::move(each));
  });
  model.impl()->addObserver(step);
  const ChangeTuple tuple = report.changes().at(0);
  report.createIntoChanges(ChangeTuple::Builder());
  report.destroy();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_EQ(kept.front()->element(), report);
  EXPECT_EQ(kept.front()->oldValue(1), Value(std::vector<ModelElement>{tuple}));
  EXPECT_TRUE(kept.front()->oldValue(2).isEmpty());
}

}  // namespace
