#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;

namespace {

/// A model with one of each kind of collection; the state of all of it is compared before and after.
class UndoCollections : public testing::Test {
 protected:
  /// Runs a step in a transaction that is abandoned, alone, and then as a part that an inner one committed.
  template <class F>
  void expectUndone(F step) {
    const std::string before = stateOf(model);
    {
      const Transaction open = begin(model);
      step();
      EXPECT_NE(stateOf(model), before) << "the step does nothing";
    }
    EXPECT_EQ(stateOf(model), before);
    {
      const Transaction outer = begin(model);
      Transaction inner = begin(model);
      step();
      inner.commit();
    }
    EXPECT_EQ(stateOf(model), before) << "after an inner commit";
    {
      Transaction outer = begin(model);
      {
        const Transaction inner = begin(model);
        step();
      }
      EXPECT_EQ(stateOf(model), before) << "after an inner rollback";
      outer.commit();
    }
    EXPECT_EQ(stateOf(model), before) << "after a commit of what an inner rollback left";
  }

  ChangeTuple tuple(const char16_t* id) const {
    const ChangeTuple made = ChangeTuple::create(model);
    made.setId(id);
    return made;
  }
  ConditionControlChangeEntry variant(const char16_t* name) const {
    const auto made = ConditionControlChangeEntry::create(model);
    made.setName(name);
    return made;
  }
  ConditionControlChangeEntry variantAt(int position) const {
    auto each = variants.variants().begin();
    while (position-- > 0) ++each;
    return *each;
  }

  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b", u"c"});
  const ChangeReport other = reportOf(model, {u"x", u"y"});
  const ConditionControlChangeReport variants = variantsOf(model, {u"b", u"a", u"b", u"a", u"b"});
  const ConditionControlChangeReport rest = variantsOf(model, {u"b"});
  const DataContainer container = containerOf(model, {u"m", u"n"});
  const MetaDataEntry entry = container.metaDataCache().first();
};

TEST_F(UndoCollections, TakesInsertionsIntoASequenceBack) {
  expectUndone([&] {
    report.getChangesMutable().insert(0, tuple(u"front"));
    report.getChangesMutable().insert(2, tuple(u"middle"));
    report.getChangesMutable().add(tuple(u"back"));
    for (int more = 0; more < 20; ++more) report.createIntoChanges(ChangeTuple::Builder());
  });
}

TEST_F(UndoCollections, TakesRemovalsFromASequenceBack) {
  expectUndone([&] {
    report.getChangesMutable().remove(report.changes().at(1));
    report.getChangesMutable().remove(report.changes().at(1));
    report.getChangesMutable().remove(report.changes().at(0));
  });
}

TEST_F(UndoCollections, TakesTheClearingOfASequenceBack) {
  expectUndone([&] { report.getChangesMutable().clear(); });
  expectUndone([&] {
    report.getChangesMutable().clear();
    report.createIntoChanges(ChangeTuple::Builder());
    report.getChangesMutable().clear();
    report.createIntoChanges(ChangeTuple::Builder());
  });
}

TEST_F(UndoCollections, TakesMovesBetweenSequencesBack) {
  expectUndone([&] {
    other.getChangesMutable().insert(1, report.changes().at(1));
    report.getChangesMutable().add(other.changes().at(0));
    other.getChangesMutable().add(report.changes().at(0));
  });
}

TEST_F(UndoCollections, TakesMovesThatEndWithADestructionBack) {
  expectUndone([&] {
    other.getChangesMutable().insert(0, report.changes().at(1));
    other.destroy();
  });
}

TEST_F(UndoCollections, TakesMovesIntoAContainerThatIsItselfNewBack) {
  expectUndone([&] {
    const ChangeReport fresh = ChangeReport::create(model);
    while (!report.changes().empty()) fresh.getChangesMutable().add(report.changes().at(0));
    fresh.changes().at(2).setId(u"changed there");
  });
}

TEST_F(UndoCollections, TakesAdditionsToAMultimapBack) {
  expectUndone([&] {
    variants.getVariantsMutable().add(variant(u"b"));
    variants.getVariantsMutable().add(variant(u"a"));
    variants.getVariantsMutable().add(variant(u""));
  });
}

TEST_F(UndoCollections, PutsAnErasedElementOfAMultimapBackAmongItsEquals) {
  for (int position = 0; position < 5; ++position) {
    expectUndone([&] { variantAt(position).destroy(); });
  }
}

TEST_F(UndoCollections, PutsSeveralErasedElementsOfAMultimapBackInTheirOrder) {
  expectUndone([&] {
    variantAt(3).destroy();
    variantAt(3).destroy();
    variantAt(2).destroy();
  });
  expectUndone([&] { variants.getVariantsMutable().clear(); });
}

TEST_F(UndoCollections, PutsElementsOfAMultimapBackWhoseKeysChanged) {
  expectUndone([&] { variantAt(0).setName(u"z"); });
  expectUndone([&] { variantAt(2).setName(u"a"); });
  expectUndone([&] {
    variantAt(2).setName(u"a");
    variantAt(2).setName(u"b");
  });
  expectUndone([&] {
    for (int round = 0; round < 5; ++round) variantAt(0).setName(u"z");
  });
}

TEST_F(UndoCollections, PutsElementsOfAMultimapBackThatWereErasedAndAddedAgain) {
  expectUndone([&] {
    const auto moved = variantAt(2);
    rest.getVariantsMutable().add(moved);
    variants.getVariantsMutable().add(moved);
  });
  expectUndone([&] {
    const auto moved = variantAt(2);
    rest.getVariantsMutable().add(moved);
    moved.setName(u"a");
    variants.getVariantsMutable().add(moved);
    variantAt(0).destroy();
  });
}

TEST_F(UndoCollections, PutsAnElementBackWhoseNeighboursWentAndWhoseKeyChanged) {
  expectUndone([&] {
    const auto first = variantAt(2), second = variantAt(3), third = variantAt(4);
    second.setName(u"m");
    third.destroy();
    first.setName(u"n");
    second.destroy();
  });
}

TEST_F(UndoCollections, TakesMovesBetweenMultimapsBack) {
  expectUndone([&] {
    rest.getVariantsMutable().add(variantAt(3));
    variants.getVariantsMutable().add(rest.variants().first());
    rest.getVariantsMutable().add(variantAt(0));
  });
}

TEST_F(UndoCollections, GivesAContainedReferenceItsElementBack) {
  entry.setValue(tuple(u"held"));
  expectUndone([&] { entry.setValue(ModelElement()); });
  expectUndone([&] { entry.setValue(tuple(u"another")); });
  expectUndone([&] { entry.value().destroy(); });
  expectUndone([&] {
    entry.setValue(ModelElement());
    entry.setValue(tuple(u"first"));
    entry.setValue(tuple(u"second"));
    entry.destroy();
  });
}

TEST_F(UndoCollections, EmptiesAContainedReferenceThatWasEmpty) {
  expectUndone([&] { entry.setValue(tuple(u"new")); });
  expectUndone([&] { entry.createIntoValue(ChangeReport::Builder()); });
  expectUndone([&] { entry.setValue(report); });
}

TEST_F(UndoCollections, TakesAMoveOutOfAContainedReferenceBack) {
  entry.setValue(tuple(u"held"));
  expectUndone([&] {
    const ChangeTuple held(static_cast<ChangeTuple::Impl*>(entry.value().impl()));
    report.getChangesMutable().insert(1, held);
    entry.setValue(other);
  });
}

TEST_F(UndoCollections, TakesAReplacementByAnElementFromBelowBack) {
  entry.setValue(containerOf(model, {u"below"}));
  expectUndone([&] {
    const DataContainer below(static_cast<DataContainer::Impl*>(entry.value().impl()));
    entry.setValue(below.metaDataCache().first());
  });
}

TEST_F(UndoCollections, TakesChangesOfAPrimitiveSequenceBack) {
  container.getConditionControlsMutable().assign({u"one", u"two", u"one"});
  expectUndone([&] { container.getConditionControlsMutable().add(u"three"); });
  expectUndone([&] { container.getConditionControlsMutable().clear(); });
  expectUndone([&] {
    container.getConditionControlsMutable().assign({u"two"});
    container.getConditionControlsMutable().clear();
    container.getConditionControlsMutable().add(u"last");
  });
}

TEST_F(UndoCollections, TakesEverythingAtOnceBack) {
  expectUndone([&] {
    entry.setValue(report);
    container.getMetaDataCacheMutable().clear();
    rest.getVariantsMutable().add(variantAt(4));
    rest.variants().first().setName(u"q");
    other.createIntoChanges(ChangeTuple::Builder());
    variants.destroy();
    container.getConditionControlsMutable().add(u"c");
  });
}

}  // namespace
