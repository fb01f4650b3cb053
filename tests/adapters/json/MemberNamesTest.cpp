#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "adapters/json/MemberNames.h"

using nd::adapters::json::MemberNameList;
using nd::adapters::json::MemberNames;

TEST(MemberNames, KeepsTheNamesInTheirOrder) {
  MemberNames names;
  EXPECT_FALSE(names.add("b", 1));
  EXPECT_FALSE(names.add("a", 5));
  EXPECT_EQ(*names.finish(), (MemberNameList{"b", "a"}));
}

TEST(MemberNames, TellsWhereARepeatedNameStandsFirst) {
  MemberNames names;
  names.add("a", 10);
  names.add("b", 20);
  const auto earlier = names.add("b", 30);
  ASSERT_TRUE(earlier);
  EXPECT_EQ(names.offsetOf(*earlier), 20U);
}

TEST(MemberNames, NoticesRepeatedNamesAmongManyOnes) {
  MemberNames names;
  for (std::size_t number = 0; number < 100; ++number) {
    EXPECT_FALSE(names.add("name" + std::to_string(number), number)) << number;
  }
  for (std::size_t number = 0; number < 100; ++number) {
    const auto earlier = names.add("name" + std::to_string(number), 1000);
    ASSERT_TRUE(earlier) << number;
    EXPECT_EQ(names.offsetOf(*earlier), number);
  }
}

TEST(MemberNames, SharesTheListThatItExpectedIfTheNamesComeLikeThat) {
  const auto expected = std::make_shared<const MemberNameList>(MemberNameList{"a", "b"});
  MemberNames names(expected);
  names.add("a", 0);
  names.add("b", 1);
  EXPECT_EQ(names.finish(), expected);
}

TEST(MemberNames, MakesAListOfItsOwnIfANameComesUnexpected) {
  const auto expected = std::make_shared<const MemberNameList>(MemberNameList{"a", "b"});
  MemberNames names(expected);
  names.add("a", 0);
  names.add("c", 1);
  names.add("b", 2);
  EXPECT_EQ(*names.finish(), (MemberNameList{"a", "c", "b"}));
}

TEST(MemberNames, MakesAListOfItsOwnIfNamesAreMissingOrCommonAtTheEnd) {
  const auto expected = std::make_shared<const MemberNameList>(MemberNameList{"a", "b"});
  MemberNames fewer(expected);
  fewer.add("a", 0);
  EXPECT_EQ(*fewer.finish(), (MemberNameList{"a"}));
  MemberNames more(expected);
  for (const char* name : {"a", "b", "c"}) more.add(name, 0);
  EXPECT_EQ(*more.finish(), (MemberNameList{"a", "b", "c"}));
}

TEST(MemberNames, NoticesARepeatedNameAmongTheExpectedOnes) {
  const auto expected = std::make_shared<const MemberNameList>(MemberNameList{"a", "b"});
  MemberNames names(expected);
  names.add("a", 3);
  const auto earlier = names.add("a", 7);
  ASSERT_TRUE(earlier);
  EXPECT_EQ(names.offsetOf(*earlier), 3U);
}

TEST(MemberNames, GivesAnEmptyListForNoNames) {
  EXPECT_TRUE(MemberNames().finish()->empty());
}
