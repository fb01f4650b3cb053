#include <limits>

#include "platform/foundation/EnumText.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"

using lx::base::EnumText;
using lx::base::literalName;
using lx::base::literalValue;
using lxb::messages::InvalidValue;

namespace {

constexpr EnumText Weather[] = {
    {u"Sun", 0}, {u"Rain", 7}, {u"Snow", std::numeric_limits<std::int32_t>::min()}};

TEST(EnumText, GivesTheNameOfANumberAndTheNumberOfAName) {
  for (const EnumText& literal : Weather) {
    EXPECT_EQ(literalName(u"Weather", Weather, literal.value), literal.name);
    EXPECT_EQ(literalValue(u"Weather", Weather, literal.name), literal.value);
  }
}

TEST(EnumText, RefusesANumberThatIsNoLiteralAndListsThoseThatAre) {
  EXPECT_EQ(
      raised<InvalidValue>([] { literalName(u"Weather", Weather, 1); }),
      "InvalidValue(Weather; there is no literal with the number 1; its literals are Sun, Rain, Snow.)");
  EXPECT_EQ(
      raised<InvalidValue>([] { literalName(u"Weather", Weather, -1); }),
      "InvalidValue(Weather; there is no literal with the number -1; its literals are Sun, Rain, Snow.)");
}

TEST(EnumText, RefusesANameThatIsNoLiteralAndListsThoseThatAre) {
  EXPECT_EQ(raised<InvalidValue>([] { literalValue(u"Weather", Weather, u"Fog"); }),
            "InvalidValue(Weather; there is no literal \"Fog\"; its literals are Sun, Rain, Snow.)");
}

TEST(EnumText, ComparesNamesExactly) {
  const std::u16string withNul{u'S', u'u', u'n', u'\0'};
  for (const std::u16string& wrong :
       {std::u16string(), std::u16string(u"sun"), std::u16string(u"Sun "), std::u16string(u"Su"),
        std::u16string(u"Sunny"), std::u16string(u"0"), withNul}) {
    EXPECT_EQ(raised<InvalidValue>([&] { literalValue(u"Weather", Weather, wrong); }),
              "InvalidValue(Weather; there is no literal \"" + lx::text::toUtf8(wrong) +
                  "\"; its literals are Sun, Rain, Snow.)");
  }
}

}  // namespace
