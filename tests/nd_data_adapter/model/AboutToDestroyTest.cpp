#include "tests/nd_data_adapter/model/Probe.h"

using namespace model_test;
using testing::ElementsAre;

namespace {

using Log = std::vector<std::string>;

/// A probe that notes its name, and whether all of its model still stands.
template <class E>
E logging(const Model& model, Log& log, const std::string& name) {
  return createProbe<E>(model, [&log, name](const E& self) {
    log.push_back(name + (self.isAlive() && self.getModel() ? "" : " was gone already"));
  });
}

TEST(AboutToDestroy, IsToldToTheContainerFirstAndThenToItsContentsInOrder) {
  Log log;
  const Model model = Model::create();
  const auto entry = logging<MetaDataEntry>(model, log, "entry");
  const auto report = logging<ChangeReport>(model, log, "report");
  const auto first = logging<ChangeTuple>(model, log, "first");
  const auto second = logging<ChangeTuple>(model, log, "second");
  report.getChangesMutable().add(second);
  report.getChangesMutable().insert(0, first);
  entry.setValue(report);
  entry.destroy();
  EXPECT_THAT(log, ElementsAre("entry", "report", "first", "second"));
}

TEST(AboutToDestroy, IsToldOnceToEachElement) {
  Log log;
  const Model model = Model::create();
  const auto tuple = logging<ChangeTuple>(model, log, "tuple");
  tuple.destroy();
  tuple.destroy();
  EXPECT_THAT(log, ElementsAre("tuple"));
}

TEST(AboutToDestroy, IsToldOnTheRemovalFromACollectionAndOnReplacement) {
  Log log;
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const auto removed = logging<ChangeTuple>(model, log, "removed");
  const auto cleared = logging<ChangeTuple>(model, log, "cleared");
  report.getChangesMutable().add(removed);
  report.getChangesMutable().add(cleared);
  report.getChangesMutable().remove(removed);
  report.getChangesMutable().clear();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  entry.setValue(logging<ChangeTuple>(model, log, "replaced"));
  entry.setValue(ChangeTuple::create(model));
  EXPECT_THAT(log, ElementsAre("removed", "cleared", "replaced"));
}

TEST(AboutToDestroy, IsNotToldOnAMoveOrOnARollback) {
  Log log;
  const Model model = Model::create();
  const ChangeReport one = ChangeReport::create(model);
  const ChangeReport two = ChangeReport::create(model);
  const auto tuple = logging<ChangeTuple>(model, log, "tuple");
  one.getChangesMutable().add(tuple);
  two.getChangesMutable().add(tuple);
  {
    const Transaction open = begin(model);
    two.getChangesMutable().add(logging<ChangeTuple>(model, log, "undone"));
  }
  EXPECT_TRUE(log.empty());
}

TEST(AboutToDestroy, SeesTheWholeModelStand) {
  std::size_t siblings = 0;
  ModelElement container;
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple& self) {
    siblings = report.changes().size();
    container = self.container();
  });
  report.getChangesMutable().add(tuple);
  report.createIntoChanges(ChangeTuple::Builder());
  report.destroy();
  EXPECT_EQ(siblings, 2U);
  EXPECT_EQ(container, report);
}

TEST(AboutToDestroy, KeepsEverythingAsItWasWhenItThrows) {
  Log log;
  bool refuses = true;
  const Model model = Model::create();
  const auto report = logging<ChangeReport>(model, log, "report");
  const auto first = logging<ChangeTuple>(model, log, "first");
  const auto second = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    if (refuses) throw Refusal();
  });
  const auto third = logging<ChangeTuple>(model, log, "third");
  for (const ChangeTuple& tuple : {first, second, third}) report.getChangesMutable().add(tuple);
  const std::string before = stateOf(model);
  EXPECT_THROW(report.destroy(), Refusal);
  EXPECT_EQ(stateOf(model), before);
  EXPECT_THAT(log, ElementsAre("report", "first"));
  EXPECT_FALSE(model.impl()->hasOpenTransaction());

  refuses = false;
  report.destroy();
  EXPECT_THAT(log, ElementsAre("report", "first", "report", "first", "third"));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(AboutToDestroy, ThatThrowsLeavesTheSurroundingTransactionAsItWas) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  report.getChangesMutable().add(
      createProbe<ChangeTuple>(model, [](const ChangeTuple&) { throw Refusal(); }));
  Transaction open = begin(model);
  report.changes().at(0).setId(u"changed");
  EXPECT_THROW(report.getChangesMutable().clear(), Refusal);
  EXPECT_EQ(report.changes().size(), 2U);
  EXPECT_EQ(report.changes().at(0).id(), u"changed");
  open.commit();
  EXPECT_EQ(report.changes().at(0).id(), u"changed");
}

TEST(AboutToDestroy, UndoesWhatItChangedElsewhereWhenItThrows) {
  const Model model = Model::create();
  const ChangeTuple other = ChangeTuple::create(model);
  const auto probe = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    other.setId(u"touched");
    throw Refusal();
  });
  EXPECT_THROW(probe.destroy(), Refusal);
  EXPECT_EQ(other.id(), u"");
}

TEST(AboutToDestroy, MakesWhatItChangesInItsContentsFinalAtOnce) {
  const Model model = Model::create();
  const auto report = createProbe<ChangeReport>(model, [](const ChangeReport& self) {
    for (std::size_t at = 0; at < self.changes().size(); ++at) self.changes().at(at).setId(u"final");
    throw Refusal();
  });
  report.createIntoChanges(ChangeTuple::Builder().setId(u"before"));
  EXPECT_THROW(report.destroy(), Refusal);
  EXPECT_EQ(report.changes().at(0).id(), u"final");
}

TEST(AboutToDestroy, MayDestroyTheElementItself) {
  const Model model = Model::create();
  const auto tuple = createProbe<ChangeTuple>(model, [](const ChangeTuple& self) { self.destroy(); });
  tuple.destroy();
  EXPECT_FALSE(tuple.isAlive());
}

TEST(AboutToDestroy, MayDestroyTheContainer) {
  Log log;
  const Model model = Model::create();
  const auto report = logging<ChangeReport>(model, log, "report");
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    log.push_back("tuple");
    report.destroy();
  });
  report.getChangesMutable().add(tuple);
  tuple.destroy();
  EXPECT_THAT(log, ElementsAre("tuple", "report"));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(AboutToDestroy, MayClearTheSequenceThatHoldsTheElement) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const auto tuple =
      createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { report.getChangesMutable().clear(); });
  report.getChangesMutable().add(tuple);
  report.createIntoChanges(ChangeTuple::Builder());
  tuple.destroy();
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{report});
}

TEST(AboutToDestroy, MayClearTheMapThatHoldsTheElement) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"a", u"b"});
  const auto entry = createProbe<MetaDataEntry>(
      model, [&](const MetaDataEntry&) { container.getMetaDataCacheMutable().clear(); });
  container.getMetaDataCacheMutable().add(entry);
  entry.destroy();
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{container});
}

TEST(AboutToDestroy, MayReplaceTheElementInItsPlace) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeReport heir = ChangeReport::create(model);
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { entry.setValue(heir); });
  entry.setValue(tuple);
  tuple.destroy();
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(entry.value(), heir);
  EXPECT_EQ(heir.container(), entry);
}

TEST(AboutToDestroy, MayAddToTheCollectionThatIsCleared) {
  bool added = false;
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    if (!std::exchange(added, true)) report.createIntoChanges(ChangeTuple::Builder().setId(u"late"));
  });
  report.getChangesMutable().add(tuple);
  report.getChangesMutable().clear();
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(idsOf(report), (Texts{u"late"}));
}

TEST(AboutToDestroy, MayTakeAChildOutIntoAnotherContainer) {
  const Model model = Model::create();
  const ChangeReport refuge = ChangeReport::create(model);
  const auto report = createProbe<ChangeReport>(
      model, [&](const ChangeReport& self) { refuge.getChangesMutable().add(self.changes().at(0)); });
  report.createIntoChanges(ChangeTuple::Builder().setId(u"saved"));
  report.createIntoChanges(ChangeTuple::Builder().setId(u"lost"));
  report.destroy();
  EXPECT_EQ(idsOf(refuge), (Texts{u"saved"}));
  EXPECT_EQ(model.impl()->numberOfElements(), 2U);
}

TEST(AboutToDestroy, MayPutAnHeirIntoThePlaceThatIsReplacedWhichGoesAsWell) {
  Log log;
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  for (const ModelElement& next : std::vector<ModelElement>{ChangeReport::create(model), ModelElement()}) {
    entry.setValue(ModelElement());
    log.clear();
    const auto heir = logging<ChangeReport>(model, log, "heir");
    const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { entry.setValue(heir); });
    entry.setValue(tuple);
    entry.setValue(next);
    EXPECT_EQ(entry.value(), next);
    EXPECT_FALSE(tuple.isAlive());
    EXPECT_FALSE(heir.isAlive());
    EXPECT_THAT(log, ElementsAre("heir"));
    EXPECT_EQ(model.impl()->roots().front(), entry);
  }
}

TEST(AboutToDestroy, MayPutTheNextElementIntoThePlaceItself) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const ChangeReport next = ChangeReport::create(model);
  entry.setValue(createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { entry.setValue(next); }));
  entry.setValue(next);
  EXPECT_EQ(entry.value(), next);
  EXPECT_TRUE(next.isAlive());
}

TEST(AboutToDestroy, LetsAnElementBeDestroyedThatATransactionWithinItBroughtBack) {
  Log log;
  bool wasBroughtBack = false;
  const Model model = Model::create();
  const auto other = logging<ChangeTuple>(model, log, "other");
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    {
      const Transaction abandoned = begin(model);
      other.destroy();
    }
    wasBroughtBack = other.isAlive();
    other.destroy();
  });
  tuple.destroy();
  EXPECT_TRUE(wasBroughtBack);
  EXPECT_FALSE(other.isAlive());
  EXPECT_THAT(log, ElementsAre("other", "other"));
}

TEST(AboutToDestroy, IsToldToWhatAChildAddsToItsDyingContainer) {
  Log log;
  const Model model = Model::create();
  const auto report = logging<ChangeReport>(model, log, "report");
  report.getChangesMutable().add(createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    log.push_back("first");
    report.getChangesMutable().add(logging<ChangeTuple>(model, log, "late"));
  }));
  report.destroy();
  EXPECT_THAT(log, ElementsAre("report", "first", "late"));
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(AboutToDestroy, IsToldToWhatAChildMovesIntoAnElementThatWasToldAlready) {
  Log log;
  const Model model = Model::create();
  const auto stranger = logging<ChangeTuple>(model, log, "stranger");
  const DataContainer container = containerOf(model, {u"a", u"b"});
  const auto early = logging<ChangeReport>(model, log, "early");
  container.metaDataCache().find(u"a").setValue(early);
  container.metaDataCache().find(u"b").setValue(
      createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { early.getChangesMutable().add(stranger); }));
  container.destroy();
  EXPECT_THAT(log, ElementsAre("early", "stranger"));
  EXPECT_FALSE(stranger.isAlive());
}

TEST(AboutToDestroy, IsToldToWhatOneThatCameLateAdds) {
  Log log;
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  report.getChangesMutable().add(createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
    report.getChangesMutable().add(createProbe<ChangeTuple>(model, [&](const ChangeTuple&) {
      report.getChangesMutable().add(logging<ChangeTuple>(model, log, "last"));
    }));
  }));
  report.destroy();
  EXPECT_THAT(log, ElementsAre("last"));
}

const std::string EndedWithin =
    "InvalidValue(ModelElement.destroy; a transaction around it was ended within aboutToDestroy; end it "
    "afterwards.)";

TEST(AboutToDestroy, ThatEndsTheSurroundingTransactionUndoesTheDestruction) {
  Log log;
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  std::unique_ptr<Transaction> open;
  const auto ends = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { open.reset(); });
  report.getChangesMutable().add(ends);
  report.getChangesMutable().add(logging<ChangeTuple>(model, log, "behind"));
  const std::string before = stateOf(model);
  open = std::make_unique<Transaction>(begin(model));
  report.changes().at(0).setId(u"undone");
  EXPECT_EQ(raised<lxb::messages::InvalidValue>([&] { report.destroy(); }), EndedWithin);
  EXPECT_EQ(stateOf(model), before);
  EXPECT_TRUE(log.empty());
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  ends.destroy();
  EXPECT_FALSE(ends.isAlive());
}

TEST(AboutToDestroy, ThatEndsTheTransactionInWhichItsElementWasMadeLeavesNothing) {
  const Model model = Model::create();
  auto open = std::make_unique<Transaction>(begin(model));
  const auto tuple = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { open.reset(); });
  EXPECT_EQ(raised<lxb::messages::InvalidValue>([&] { tuple.destroy(); }), EndedWithin);
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(AboutToDestroy, ThatEndsTheTransactionAroundSeveralDestructionsUndoesAll) {
  const Model model = Model::create();
  auto open = std::make_unique<Transaction>(begin(model));
  open->commit();
  const auto inner = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { open.reset(); });
  const auto outer = createProbe<ChangeTuple>(model, [&](const ChangeTuple&) { inner.destroy(); });
  open = std::make_unique<Transaction>(begin(model));
  EXPECT_EQ(raised<lxb::messages::InvalidValue>([&] { outer.destroy(); }), EndedWithin);
  EXPECT_TRUE(outer.isAlive());
  EXPECT_TRUE(inner.isAlive());
  outer.destroy();
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(AboutToDestroy, OfWhatAnAbandonedTransactionBroughtBackIsToldAgain) {
  Log log;
  const Model model = Model::create();
  const auto tuple = logging<ChangeTuple>(model, log, "tuple");
  {
    const Transaction open = begin(model);
    tuple.destroy();
  }
  EXPECT_TRUE(tuple.isAlive());
  tuple.destroy();
  EXPECT_THAT(log, ElementsAre("tuple", "tuple"));
}

}  // namespace
