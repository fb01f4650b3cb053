#include "tests/nd_data_adapter/model/Recorder.h"

using namespace model_test;

namespace {

/// Counts the transactions that a step begins.
template <class F>
std::uint64_t begunBy(const Model& model, F step) {
  const std::uint64_t before = transactions(model);
  step();
  return transactions(model) - before;
}

TEST(Counters, CountOneTransactionForEachMutatorObservedOrNot) {
  for (const bool observed : {false, true}) {
    const Model model = Model::create();
    const ChangeTuple tuple = ChangeTuple::create(model);
    const DataContainer container = DataContainer::create(model);
    boost::optional<Recorder> recorder;
    if (observed) recorder.emplace(model);
    EXPECT_EQ(begunBy(model, [&] { tuple.setId(u"a"); }), 1U);
    EXPECT_EQ(begunBy(model, [&] { tuple.setX(ChangeType::Delete); }), 1U);
    EXPECT_EQ(begunBy(model, [&] { container.getConditionControlsMutable().add(u"c"); }), 1U);
    EXPECT_EQ(begunBy(model, [&] { container.getConditionControlsMutable().clear(); }), 1U);
    EXPECT_EQ(notices(model), observed ? 4U : 0U);
  }
}

TEST(Counters, CountNoTransactionForEqualValues) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const DataContainer container = DataContainer::create(model);
  const MetaDataEntry entry = MetaDataEntry::create(model);
  const auto variants = variantsOf(model, {u"a"});
  tuple.setId(u"long enough to lie outside of the text object");
  EXPECT_EQ(begunBy(model,
                    [&] {
                      tuple.setId(u"long enough to lie outside of the text object");
                      tuple.setX(ChangeType::Create);
                      container.setDataCache(nullptr);
                      container.setDataModel(Model());
                      container.getConditionControlsMutable().clear();
                      container.getMetaDataCacheMutable().clear();
                      entry.setValue(ModelElement());
                      variants.variants().first().setName(u"a");
                    }),
            0U);
}

TEST(Counters, CountReadingAsNoTransaction) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  EXPECT_EQ(begunBy(model,
                    [&] {
                      idsOf(report);
                      report.getChangesMutable();
                      report.getPropertyValue(u"changes");
                      report.identifier();
                      stateOf(model);
                    }),
            0U);
}

TEST(Counters, CountTheMutatorsWithinAnOpenTransactionAsWell) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_EQ(begunBy(model,
                    [&] {
                      Transaction open = begin(model);
                      tuple.setId(u"a");
                      tuple.setId(u"b");
                      open.commit();
                    }),
            3U);
}

TEST(Counters, TellTextsOfEqualLengthApart) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(std::u16string(u"ab\0c", 4));
  EXPECT_EQ(begunBy(model, [&] { tuple.setId(std::u16string(u"ab\0d", 4)); }), 1U);
  EXPECT_EQ(begunBy(model, [&] { tuple.setId(std::u16string(u"ab\0d", 4)); }), 0U);
  EXPECT_EQ(begunBy(model, [&] { tuple.setId(std::u16string(u"ab", 2)); }), 1U);
}

}  // namespace
