#include <gtest/gtest.h>

#include "tests/nd_data_adapter/model/random/Twin.h"

using namespace random_walk;

namespace {

constexpr Id Report = 1, Other = 2, Tuple = 3, Cache = 4, First = 5, Second = 6, Metadata = 7, Inner = 8;

Twin sample() {
  Twin twin;
  twin.create(Report, Kind::Report);
  twin.create(Other, Kind::Report);
  twin.create(Tuple, Kind::Tuple);
  twin.create(Cache, Kind::Cache);
  twin.create(First, Kind::Held);
  twin.create(Second, Kind::Held);
  twin.create(Metadata, Kind::Metadata);
  twin.create(Inner, Kind::Metadata);
  twin.set(First, 1, std::u16string(u"a"));
  twin.set(Second, 1, std::u16string(u"b"));
  return twin;
}

TEST(Twin, MovesAChildFromOneContainerToAnother) {
  Twin twin = sample();
  EXPECT_EQ(twin.insert(Report, 1, 0, Tuple), Outcome::Done);
  EXPECT_EQ(twin.insert(Other, 1, 0, Tuple), Outcome::Done);
  EXPECT_TRUE(twin.at(Report).children(1).empty());
  EXPECT_EQ(twin.at(Other).children(1), std::vector<Id>{Tuple});
  EXPECT_EQ(twin.at(Tuple).container, Other);
}

TEST(Twin, SortsByKeyAndRefusesATakenOne) {
  Twin twin = sample();
  twin.insert(Cache, 1, 0, Second);
  twin.insert(Cache, 1, 0, First);
  EXPECT_EQ(twin.at(Cache).children(1), (std::vector<Id>{First, Second}));
  EXPECT_EQ(twin.set(First, 1, std::u16string(u"c")), Outcome::Done);
  EXPECT_EQ(twin.at(Cache).children(1), (std::vector<Id>{Second, First}));
  const Twin before = twin;
  EXPECT_EQ(twin.set(First, 1, std::u16string(u"b")), Outcome::UniquenessConstraint);
  EXPECT_EQ(twin, before);
}

TEST(Twin, DestroysWhatIsContained) {
  Twin twin = sample();
  twin.insert(Report, 1, 0, Tuple);
  twin.put(Metadata, 2, Report);
  EXPECT_EQ(twin.destroy(Metadata), Outcome::Done);
  EXPECT_FALSE(twin.contains(Metadata) || twin.contains(Report) || twin.contains(Tuple));
  EXPECT_TRUE(twin.contains(Other));
}

TEST(Twin, RefusesThatAnElementContainsItself) {
  Twin twin = sample();
  twin.put(Metadata, 2, Inner);
  EXPECT_EQ(twin.put(Inner, 2, Metadata), Outcome::InvalidValue);
  EXPECT_EQ(twin.put(Inner, 2, Inner), Outcome::InvalidValue);
}

TEST(Twin, HoldsProxiesApartWhereTheElementsHaveKeys) {
  Twin twin = sample();
  twin.insert(Cache, 1, 0, First);
  EXPECT_EQ(twin.makeProxy(First), Outcome::Done);
  EXPECT_EQ(twin.makeProxy(Second), Outcome::Done);
  EXPECT_EQ(twin.at(First).value(1), Content(std::u16string()));
  EXPECT_EQ(twin.set(First, 1, std::u16string(u"a")), Outcome::CannotModifyProxy);
  EXPECT_EQ(twin.insert(Cache, 1, 0, Second), Outcome::Done);
  EXPECT_TRUE(twin.at(Cache).children(1).empty());
  EXPECT_EQ(twin.at(Cache).proxies.at(1), (std::vector<Id>{First, Second}));
  EXPECT_EQ(twin.at(Second).container, Cache);
  EXPECT_EQ(twin.clear(Cache, 1), Outcome::Done);
  EXPECT_FALSE(twin.contains(First) || twin.contains(Second));
}

TEST(Twin, PutsAnElementIntoThePlaceOfItsProxy) {
  Twin twin = sample();
  twin.create(9, Kind::Tuple);
  twin.create(10, Kind::Tuple);
  twin.insert(Report, 1, 0, Tuple);
  twin.insert(Report, 1, 1, 9);
  twin.makeProxy(Tuple);
  EXPECT_EQ(twin.resolve(Report, 1, Tuple, 10), Outcome::Done);
  EXPECT_EQ(twin.at(Report).children(1), (std::vector<Id>{10, 9}));
  EXPECT_FALSE(twin.contains(Tuple));
  twin.insert(Cache, 1, 0, First);
  twin.makeProxy(First);
  EXPECT_EQ(twin.resolve(Cache, 1, First, Second), Outcome::Done);
  EXPECT_EQ(twin.at(Cache).children(1), std::vector<Id>{Second});
  EXPECT_TRUE(twin.at(Cache).proxies.empty());
}

TEST(Twin, ReplacesAllOrNothing) {
  Twin twin = sample();
  twin.insert(Report, 1, 0, Tuple);
  const Twin before = twin;
  EXPECT_EQ(twin.replace(Report, 1, {Tuple, 9}), Outcome::CannotAddNonExistentObject);
  EXPECT_EQ(twin, before);
  EXPECT_EQ(twin.replace(Other, 1, {Tuple, Tuple}), Outcome::InvalidValue);
  EXPECT_EQ(twin, before);
  EXPECT_EQ(twin.replace(Other, 1, {Tuple}), Outcome::Done);
  EXPECT_EQ(twin.at(Other).children(1), std::vector<Id>{Tuple});
}

}  // namespace
