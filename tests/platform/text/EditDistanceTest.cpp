#include <gtest/gtest.h>

#include "platform/text/EditDistance.h"

using lx::text::editDistance;

TEST(EditDistance, CountsInsertionsDeletionsReplacementsAndSwaps) {
  EXPECT_EQ(editDistance(u"gain", u"gain"), 0U);
  EXPECT_EQ(editDistance(u"gain", u"gains"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gan"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gaan"), 1U);
  EXPECT_EQ(editDistance(u"gain", u"gian"), 1U);
  EXPECT_EQ(editDistance(u"", u"gain"), 4U);
  EXPECT_EQ(editDistance(u"gain", u""), 4U);
}

TEST(EditDistance, LooksAtUnitsAndNotAtCase) {
  EXPECT_EQ(editDistance(u"Gain", u"gain"), 1U);
  EXPECT_EQ(editDistance(u"\xD83D\xDE00", u""), 2U);
}
