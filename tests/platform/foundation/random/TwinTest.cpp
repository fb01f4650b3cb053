#include <gtest/gtest.h>

#include "tests/platform/foundation/random/Twin.h"

using namespace model_walk;

namespace {

constexpr Id First = 1, Second = 2, Robot = 3, Box = 4, Refs = 5, Far = 6;
constexpr unsigned Name = 1, One = 1, Row = 3, ByName = 5, RefOne = 2, RefRow = 6, RefBag = 8, ProxyRow = 10;

Twin sample() {
  Twin twin;
  twin.create(First, Kind::Thing, 0);
  twin.create(Second, Kind::Thing, 0);
  twin.create(Robot, Kind::Robot, 0);
  twin.create(Box, Kind::Containers, 0);
  twin.create(Refs, Kind::References, 0);
  twin.create(Far, Kind::Thing, 1);
  twin.set(First, Name, {1});
  twin.set(Second, Name, {2});
  return twin;
}

TEST(Twin, KnowsTheClassesThatPropertiesTake) {
  const PropertyOfKind& one = propertiesOf(Kind::Containers)[One - 1];
  EXPECT_TRUE(one.takes(Kind::Thing) && one.takes(Kind::Robot));
  EXPECT_FALSE(one.takes(Kind::References));
  EXPECT_TRUE(propertiesOf(Kind::Containers)[1].takes(Kind::Values));
}

TEST(Twin, LeavesACopyOfItsElementsAsItWas) {
  Twin twin = sample();
  const Twin::Elements before = twin.elements(0);
  twin.set(First, Name, {3});
  EXPECT_EQ(before.at(First).value(Name), Content{1});
  EXPECT_EQ(before.at(Second), twin.at(Second));
  EXPECT_FALSE(before == twin.elements(0));
  twin.putBack(0, before);
  EXPECT_EQ(twin.at(First).value(Name), Content{1});
}

TEST(Twin, MovesAChildFromOneContainerToAnother) {
  Twin twin = sample();
  EXPECT_EQ(twin.insert(Box, Row, 0, First), Outcome::Done);
  EXPECT_EQ(twin.put(Box, One, First), Outcome::Done);
  EXPECT_TRUE(twin.at(Box).value(Row).empty());
  EXPECT_EQ(twin.at(Box).value(One), Content{First});
}

TEST(Twin, SortsByKeyAndRefusesATakenOne) {
  Twin twin = sample();
  twin.insert(Box, ByName, 0, Second);
  twin.insert(Box, ByName, 0, First);
  EXPECT_EQ(twin.at(Box).value(ByName), (Content{First, Second}));
  EXPECT_EQ(twin.set(First, Name, {3}), Outcome::Done);
  EXPECT_EQ(twin.at(Box).value(ByName), (Content{Second, First}));
  EXPECT_EQ(twin.set(First, Name, {2}), Outcome::UniquenessConstraint);
}

TEST(Twin, HoldsProxiesApartFromKeys) {
  Twin twin = sample();
  twin.insert(Box, ByName, 0, First);
  EXPECT_EQ(twin.makeProxy(First), Outcome::Done);
  EXPECT_TRUE(twin.at(Box).value(ByName).empty());
  EXPECT_EQ(twin.at(Box).apart(ByName), Content{First});
  EXPECT_EQ(twin.set(First, Name, {1}), Outcome::CannotModifyProxy);
}

TEST(Twin, DropsReferencesToWhatIsDestroyedWithItsContainer) {
  Twin twin = sample();
  twin.insert(Box, Row, 0, First);
  twin.refer(Refs, RefOne, First);
  twin.addReference(Refs, RefBag, 0, First);
  EXPECT_EQ(twin.referrers(First).size(), 1U);
  twin.destroy(Box);
  EXPECT_FALSE(twin.contains(First));
  EXPECT_TRUE(twin.at(Refs).value(RefOne).empty() && twin.at(Refs).value(RefBag).empty());
}

TEST(Twin, LetsOnlySingleReferencesCrossModels) {
  Twin twin = sample();
  EXPECT_EQ(twin.addReference(Refs, RefRow, 0, Far), Outcome::CannotCreateCrossModelAssociation);
  EXPECT_EQ(twin.refer(Refs, RefOne, Far), Outcome::Done);
  twin.destroy(Far);
  EXPECT_EQ(twin.at(Refs).value(RefOne), Content{Far});
  EXPECT_EQ(twin.refer(Refs, 14, Far), Outcome::InvalidValue);
}

TEST(Twin, PutsALoadedElementWhereItsProxyIs) {
  Twin twin = sample();
  twin.makeProxy(First);
  EXPECT_EQ(twin.addReference(Refs, RefRow, 0, First), Outcome::CannotAddNonExistentObject);
  twin.addReference(Refs, ProxyRow, 0, First);
  twin.insert(Box, Row, 0, First);
  EXPECT_EQ(twin.resolve(Box, Row, First, Robot), Outcome::Done);
  EXPECT_EQ(twin.at(Box).value(Row), Content{Robot});
  EXPECT_EQ(twin.at(Refs).value(ProxyRow), Content{Robot});
  EXPECT_FALSE(twin.contains(First));
}

TEST(Twin, ReplacesAllOrNothing) {
  Twin twin = sample();
  twin.insert(Box, Row, 0, First);
  const Twin::Elements before = twin.elements(0);
  EXPECT_EQ(twin.replace(Box, Row, {First, Second}), Outcome::CannotAddNonExistentObject);
  EXPECT_EQ(twin.replace(Box, Row, {Refs}), Outcome::CannotAddIncompatibleTypes);
  EXPECT_EQ(twin.replace(Box, Row, {Second, Second}), Outcome::InvalidValue);
  EXPECT_EQ(twin.elements(0), before);
  EXPECT_EQ(twin.replace(Box, Row, {Second, Robot}), Outcome::Done);
  EXPECT_EQ(twin.at(Box).value(Row), (Content{Second, Robot}));
}

}  // namespace
