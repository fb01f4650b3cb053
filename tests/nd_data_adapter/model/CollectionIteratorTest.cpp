#include "platform/foundation/CollectionIterator.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using lxb::messages::InvalidValue;

namespace {

const std::string Changed = "; the collection changed while it was walked; start again from its beginning.)";
const std::string ChangesChanged = "InvalidValue(nd.data.adapter.ChangeReport.changes" + Changed;

/// Walks over a collection and does something at its first element.
template <class Collection, class F>
std::string walk(const Collection& collection, F step) {
  return raised<InvalidValue>([&] {
    bool done = false;
    for (const auto& each : collection) {
      static_cast<void>(each);
      if (!std::exchange(done, true)) step();
    }
  });
}

TEST(CollectionIterator, WalksOverAllElementsInOrder) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b", u"c"});
  EXPECT_EQ(idsOf(report), (Texts{u"a", u"b", u"c"}));
  EXPECT_EQ(std::distance(report.changes().begin(), report.changes().end()), 3);
  auto position = report.changes().begin();
  EXPECT_EQ((*position++).id(), u"a");
  EXPECT_EQ((*position).id(), u"b");
  EXPECT_FALSE(position == report.changes().begin());
}

TEST(CollectionIterator, WalksOverAnEmptyCollection) {
  const Model model = Model::create();
  EXPECT_TRUE(idsOf(ChangeReport::create(model)).empty());
  EXPECT_TRUE(namesOf(ConditionControlChangeReport::create(model)).empty());
}

TEST(CollectionIterator, BearsChangesOfTheElementsThatItWalksOver) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  for (const ChangeTuple& tuple : report.changes()) tuple.setId(tuple.id() + u"!");
  EXPECT_EQ(idsOf(report), (Texts{u"a!", u"b!"}));
}

TEST(CollectionIterator, BearsChangesOfOtherCollections) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"}), copy = ChangeReport::create(model);
  for (const ChangeTuple& tuple : report.changes())
    copy.createIntoChanges(ChangeTuple::Builder().setId(tuple.id()));
  EXPECT_EQ(idsOf(copy), (Texts{u"a", u"b"}));
}

TEST(CollectionIterator, RefusesToGoOnInASequenceThatChanged) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b", u"c"}), other = ChangeReport::create(model);
  EXPECT_EQ(walk(report.changes(), [&] { report.createIntoChanges(ChangeTuple::Builder()); }),
            ChangesChanged);
  EXPECT_EQ(walk(report.changes(), [&] { report.changes().at(2).destroy(); }), ChangesChanged);
  EXPECT_EQ(walk(report.changes(), [&] { other.getChangesMutable().add(report.changes().at(0)); }),
            ChangesChanged);
  EXPECT_EQ(walk(report.changes(), [&] { report.getChangesMutable().clear(); }), ChangesChanged);
}

TEST(CollectionIterator, RefusesToGoOnInAMultimapThatChanged) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"a", u"b", u"c"});
  const std::string refused = "InvalidValue(nd.data.adapter.ConditionControlChangeReport.Variants" + Changed;
  EXPECT_EQ(walk(report.variants(), [&] { report.variants().find(u"b").setName(u"z"); }), refused);
  EXPECT_EQ(walk(report.variants(), [&] { report.variants().first().destroy(); }), refused);
  EXPECT_EQ(walk(report.variants(), [&] { report.getVariantsMutable().clear(); }), refused);
}

TEST(CollectionIterator, RefusesToGoOnInAPrimitiveSequenceThatChanged) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  auto& controls = container.getConditionControlsMutable();
  controls.assign({u"a", u"b"});
  const std::string refused = "InvalidValue(nd.data.adapter.DataContainer.ConditionControls" + Changed;
  EXPECT_EQ(walk(controls, [&] { controls.add(u"c"); }), refused);
  EXPECT_EQ(walk(controls, [&] { controls.clear(); }), refused);
}

TEST(CollectionIterator, RefusesToGoOnAfterARollback) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  auto transaction = std::make_unique<Transaction>(begin(model));
  report.createIntoChanges(ChangeTuple::Builder());
  auto position = report.changes().begin();
  transaction.reset();
  EXPECT_EQ(raised<InvalidValue>([&] { ++position; }), ChangesChanged);
  EXPECT_EQ(raised<InvalidValue>([&] { *position; }), ChangesChanged);
}

TEST(CollectionIterator, GoesOnAfterACallThatChangedNothing) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  EXPECT_EQ(walk(report.changes(), [&] { report.getChangesMutable().add(report.changes().at(0)); }),
            "raised nothing");
}

TEST(CollectionIterator, RefusesToLookOnceTheOwnerIsGone) {
  const Model model = Model::create();
  ChangeReport report = reportOf(model, {u"a", u"b"});
  const auto position = report.changes().begin();
  report.destroy();
  report = ChangeReport();
  EXPECT_EQ(raised<InvalidValue>([&] { *position; }), "InvalidValue(A collection" + Changed);
}

TEST(CollectionIterator, RefusesToLookOnceTheModelIsGone) {
  boost::optional<decltype(std::declval<ConditionControlChangeReport>().variants().begin())> position;
  {
    const Model model = Model::create();
    position = variantsOf(model, {u"a", u"b"}).variants().begin();
  }
  EXPECT_EQ(raised<InvalidValue>([&] { **position; }), "InvalidValue(A collection" + Changed);
  EXPECT_EQ(raised<InvalidValue>([&] { ++*position; }), "InvalidValue(A collection" + Changed);
}

}  // namespace
