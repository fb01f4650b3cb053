#include <optional>

#include "tests/nd_data_adapter/model/Probe.h"

using namespace model_test;
using testing::ElementsAre;

namespace {

using Log = std::vector<std::string>;

TEST(ModelEnd, TellsEveryElementWhileAllStillStand) {
  Log log;
  {
    const Model model = Model::create();
    const auto note = [&log, impl = model.impl()](const char* name) {
      log.push_back(name + std::string(" of ") + std::to_string(impl->numberOfElements()));
    };
    const auto report = createProbe<ChangeReport>(model, [note](const ChangeReport&) { note("report"); });
    createProbe<ChangeTuple>(model, [note](const ChangeTuple&) { note("tuple"); });
    report.getChangesMutable().add(
        createProbe<ChangeTuple>(model, [note](const ChangeTuple&) { note("child"); }));
  }
  EXPECT_THAT(log, ElementsAre("report of 3", "child of 3", "tuple of 3"));
}

TEST(ModelEnd, TellsEachElementOnceByHandAndByTheLastHandle) {
  int told = 0;
  Model model = Model::create();
  createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { ++told; });
  model.destroy();
  EXPECT_EQ(told, 1);
  model = Model();
  EXPECT_EQ(told, 1);
}

TEST(ModelEnd, ByHandPassesAnExceptionOnAndTheModelLivesOn) {
  bool refuses = true;
  Log log;
  const Model model = Model::create();
  const auto first = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { log.push_back("first"); });
  const auto second = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    if (refuses) throw Refusal();
  });
  const auto third = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { log.push_back("third"); });
  const std::string before = stateOf(model);
  EXPECT_THROW(model.destroy(), Refusal);
  EXPECT_TRUE(model.isAlive());
  EXPECT_EQ(stateOf(model), before);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  second.setId(u"writable");
  EXPECT_THAT(log, ElementsAre("first"));

  refuses = false;
  model.destroy();
  EXPECT_FALSE(model.isAlive());
  EXPECT_THAT(log, ElementsAre("first", "first", "third"));
}

TEST(ModelEnd, ByHandThatFailsLeavesAFrozenModelFrozen) {
  bool refuses = true;
  const Model model = Model::create();
  createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    if (refuses) throw Refusal();
  });
  Model::Freezer::freeze(model);
  EXPECT_THROW(model.destroy(), Refusal);
  EXPECT_TRUE(model.impl()->isFrozen());
  refuses = false;
  model.destroy();
  EXPECT_FALSE(model.isAlive());
}

TEST(ModelEnd, ByTheLastHandleSwallowsExceptionsAndTellsTheOthers) {
  Log log;
  ChangeTuple second;
  {
    const Model model = Model::create();
    createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { log.push_back("first"); });
    second = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { throw Refusal(); });
    createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { log.push_back("third"); });
  }
  EXPECT_THAT(log, ElementsAre("first", "third"));
  EXPECT_FALSE(second.isAlive());
}

TEST(ModelEnd, BearsThatAnElementTakesAHandleToTheDyingModel) {
  Model kept;
  {
    const Model model = Model::create();
    createProbe<ChangeTuple>(model, [&](const ChangeTuple& self) { kept = self.getModel(); });
  }
  EXPECT_TRUE(kept);
  EXPECT_FALSE(kept.isAlive());
  EXPECT_EQ(kept.impl()->numberOfElements(), 0U);
  kept = Model();
}

TEST(ModelEnd, BearsThatAnElementCreatesAndDestroysOthers) {
  ChangeTuple late;
  {
    const Model model = Model::create();
    ChangeTuple other = ChangeTuple::create(model);
    createProbe<ChangeTuple>(model, [&late, other](const ChangeTuple& self) {
      late = ChangeTuple::create(self.getModel());
      other.destroy();
    });
  }
  EXPECT_TRUE(late);
  EXPECT_FALSE(late.isAlive());
}

TEST(ModelEnd, TellsWhatAChildAddsToItsContainerMeanwhile) {
  int told = 0;
  {
    const Model model = Model::create();
    const ChangeReport report = ChangeReport::create(model);
    report.getChangesMutable().add(
        createProbe<ChangeTuple>(model, [&told, impl = report.impl()](const ChangeTuple& self) {
          impl->getChangesMutable().add(
              createProbe<ChangeTuple>(self.getModel(), [&](const ChangeTuple&) { ++told; }));
        }));
  }
  EXPECT_EQ(told, 1);
}

TEST(ModelEnd, TellsTheContentsOfAnElementThatThrows) {
  int told = 0;
  {
    const Model model = Model::create();
    const auto report = createProbe<ChangeReport>(model, [](const ChangeReport&) { throw Refusal(); });
    report.getChangesMutable().add(createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { ++told; }));
  }
  EXPECT_EQ(told, 1);
}

TEST(ModelEnd, TellsAnElementThatWasCreatedMeanwhile) {
  int told = 0;
  {
    const Model model = Model::create();
    createProbe<ChangeTuple>(model, [&](const ChangeTuple& self) {
      createProbe<ChangeTuple>(self.getModel(), [&](const ChangeTuple&) { ++told; });
    });
  }
  EXPECT_EQ(told, 1);
}

TEST(ModelEnd, BearsThatAnElementTakesItsOwnCreationBack) {
  for (const bool isByHand : {true, false}) {
    std::optional<Transaction> open;
    int told = 0;
    {
      const Model model = Model::create();
      createProbe<ChangeTuple>(model, [&, impl = model.impl()](const ChangeTuple&) {
        ++told;
        open.emplace(impl->beginTransaction(false));
        createProbe<ChangeTuple>(Model(impl), [&](const ChangeTuple&) {
          ++told;
          open.reset();
        });
      });
      createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { ++told; });
      if (isByHand) model.destroy();
    }
    EXPECT_EQ(told, 4)
        << "the telling of the last one was taken back with the rest, so that it is told again";
  }
}

TEST(ModelEnd, EndsAlsoWhenAnElementHoldsItsOwnModelAndItIsDestroyedByHand) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.setDataModel(model);
  model.destroy();
  EXPECT_FALSE(container.isAlive());
  EXPECT_FALSE(container.dataModel());
}

TEST(ModelEnd, WaitsForAContainerThatHoldsItsOwnModel) {
  DataContainer container;
  {
    const Model model = Model::create();
    container = DataContainer::create(model);
    container.setDataModel(model);
  }
  EXPECT_TRUE(container.isAlive());
  container.setDataModel(Model());
  EXPECT_FALSE(container.isAlive());
}

TEST(ModelEnd, LeavesIteratorsAndCollectionsSafeToAsk) {
  Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const auto& changes = report.changes();
  model = Model();
  EXPECT_EQ(changes.size(), 0U);
  EXPECT_TRUE(changes.begin() == changes.end());
}

TEST(ModelEnd, LetsGoOfTheValuesThatItsElementsHeld) {
  const Model outer = Model::create();
  const DataContainer container = DataContainer::create(outer);
  ChangeTuple tuple;
  {
    const Model inner = Model::create();
    tuple = ChangeTuple::create(inner);
    container.setDataModel(inner);
  }
  EXPECT_TRUE(tuple.isAlive());
  outer.destroy();
  EXPECT_FALSE(tuple.isAlive());
}

}  // namespace
