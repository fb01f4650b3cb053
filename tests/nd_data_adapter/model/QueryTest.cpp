#include "platform/foundation/Query.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lx::base::query::find;
using lxb::messages::InvalidValue;
using testing::StartsWith;

namespace {

TEST(Query, FindsTheElementsOfItsClassInTheOrderOfCreation) {
  const Model model = Model::create(), other = Model::create();
  const ChangeTuple loose = ChangeTuple::create(model);
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  ChangeTuple::create(other);
  EXPECT_EQ(find<ChangeTuple>(ChangeTuple::Constrainables(model)),
            (std::vector<ChangeTuple>{loose, report.changes().at(0), report.changes().at(1)}));
}

TEST(Query, FindsWhatAPlainFilterFinds) {
  const Model model = Model::create();
  for (int round = 0; round < 60; ++round) {
    const ChangeTuple tuple = ChangeTuple::create(model);
    tuple.setX(static_cast<ChangeType>(round % 3));
    tuple.setId(std::u16string(static_cast<std::size_t>(round % 4), u'x'));
  }
  for (const ChangeType x : {ChangeType::Create, ChangeType::Modify, ChangeType::Delete}) {
    for (std::size_t length = 0; length < 5; ++length) {
      const std::u16string id(length, u'x');
      ChangeTuple::Constrainables wanted(model);
      wanted.x.equals(x);
      wanted.id.equals(id);
      std::vector<ChangeTuple> expected;
      for (const ModelElement& element : model.impl()->elements()) {
        const ChangeTuple tuple(static_cast<ChangeTuple::Impl*>(element.impl()));
        if (tuple.x() == x && tuple.id() == id) expected.push_back(tuple);
      }
      EXPECT_EQ(find<ChangeTuple>(wanted), expected);
      EXPECT_EQ(expected.empty(), length == 4);
    }
  }
}

TEST(Query, AsksForSeveralConditionsOnOneProperty) {
  const Model model = Model::create();
  reportOf(model, {u"ab", u"ac", u"bc"});
  ChangeTuple::Constrainables wanted(model);
  const auto holds = [](char16_t unit) {
    return [unit](const std::u16string& id) { return id.find(unit) != std::u16string::npos; };
  };
  wanted.id.satisfies(holds(u'a'));
  wanted.id.satisfies(holds(u'c'));
  const auto found = find<ChangeTuple>(wanted);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().id(), u"ac");
}

TEST(Query, ConstrainsCollectionsAndPointers) {
  const Model model = Model::create(), data = Model::create();
  const DataContainer filled = containerOf(model, {u"m"}), empty = DataContainer::create(model);
  filled.getConditionControlsMutable().assign({u"V"});
  filled.setDataModel(data);
  DataContainer::Constrainables byControls(model), byModel(model), byMetadata(model);
  byControls.conditionControls.equals({u"V"});
  byModel.dataModel.equals(data);
  byMetadata.metaDataCache.satisfies(
      [](const std::vector<ModelElement>& entries) { return entries.empty(); });
  EXPECT_EQ(find<DataContainer>(byControls), std::vector<DataContainer>{filled});
  EXPECT_EQ(find<DataContainer>(byModel), std::vector<DataContainer>{filled});
  EXPECT_EQ(find<DataContainer>(byMetadata), std::vector<DataContainer>{empty});
}

TEST(Query, ConstrainsContainedReferences) {
  const Model model = Model::create();
  const MetaDataEntry one = MetaDataEntry::create(model), two = MetaDataEntry::create(model);
  one.setValue(ChangeTuple::create(model));
  MetaDataEntry::Constrainables wanted(model);
  wanted.value.equals(ModelElement());
  EXPECT_EQ(find<MetaDataEntry>(wanted), std::vector<MetaDataEntry>{two});
}

TEST(Query, FindsAnewEachTimeItIsAsked) {
  const Model model = Model::create();
  ChangeTuple::Constrainables wanted(model);
  wanted.id.equals(u"gain");
  EXPECT_TRUE(wanted.matches().empty());
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  EXPECT_EQ(wanted.matches(), std::vector<ModelElement>{tuple});
  tuple.destroy();
  EXPECT_TRUE(wanted.matches().empty());
}

TEST(Query, SeesWhatAnOpenTransactionMadeAndDestroyed) {
  const Model model = Model::create();
  const ChangeTuple old = ChangeTuple::create(model);
  const ChangeTuple::Constrainables all(model);
  const Transaction open = begin(model);
  old.destroy();
  const ChangeTuple fresh = ChangeTuple::create(model);
  EXPECT_EQ(find<ChangeTuple>(all), std::vector<ChangeTuple>{fresh});
}

TEST(Query, RefusesANullOrDeadModel) {
  const Model dead = Model::create();
  dead.destroy();
  for (const Model& model : {Model(), dead}) {
    EXPECT_THAT(raised<InvalidValue>([&] { ChangeTuple::Constrainables wanted(model); }),
                StartsWith("InvalidValue(AbstractQuery; "));
  }
}

TEST(Query, FindsNothingOnceItsModelIsGone) {
  const Model model = Model::create();
  ChangeTuple::create(model);
  const ChangeTuple::Constrainables all(model);
  model.destroy();
  EXPECT_TRUE(all.matches().empty());
}

}  // namespace
