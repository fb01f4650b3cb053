#include <cstring>
#include <exception>
#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/services/CatalogMessage.h"
#include "tests/platform/services/sample_messages.h"

namespace {

namespace messages = sample::lx::messages;

TEST(GeneratedMessage, CarriesCatalogueKeyAndArguments) {
  const messages::TwoPlaces message(u"a.json", u"No rights");
  EXPECT_STREQ(message.catalogue(), "sample:messages");
  EXPECT_STREQ(message.key(), "TwoPlaces");
  EXPECT_THAT(message.arguments(), testing::ElementsAre(u"a.json", u"No rights"));
  EXPECT_STREQ(messages::TwoPlaces::Catalogue, "sample:messages");
  EXPECT_STREQ(messages::TwoPlaces::Key, "TwoPlaces");
}

TEST(GeneratedMessage, PutsArgumentsWhereTheTextNamesThem) {
  EXPECT_EQ(messages::TwoPlaces(u"a.json", u"No rights").text(),
            u"No rights: {a.json} can't be read (\"a.json\"), \\ isn't it?");
}

TEST(GeneratedMessage, NeedsNoArguments) {
  const messages::Plain message;
  EXPECT_EQ(message.text(), u"It's plain: nothing is put in.");
  EXPECT_TRUE(message.arguments().empty());
}

TEST(GeneratedMessage, KeepsForeignLettersAndLineBreaks) {
  EXPECT_EQ(messages::Foreign(u"é").text(), u"\u201E\u00E9\u201C \u2014 \U0001D11E\nhas a second line.");
}

TEST(GeneratedMessage, BearsNamesThatTheClassAndItsBaseUse) {
  const messages::Text message(u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"10");
  EXPECT_EQ(message.text(), u"012345678910");
  EXPECT_STREQ(message.key(), "Text");
  EXPECT_EQ(messages::State(u"x").text(), u"x");
}

TEST(GeneratedMessage, IsCaughtAsItsOwnClassAsMessageAndAsException) {
  EXPECT_THROW(throw messages::Plain(), messages::Plain);
  EXPECT_THROW(throw messages::Plain(), lx::services::CatalogMessage);
  try {
    throw messages::Foreign(u"x");
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "\xE2\x80\x9Ex\xE2\x80\x9C \xE2\x80\x94 \xF0\x9D\x84\x9E\nhas a second line.");
  }
}

TEST(GeneratedMessage, IsNotMadeFromATextUnasked) {
  static_assert(!std::is_convertible_v<std::u16string, messages::Foreign>);
  static_assert(std::is_constructible_v<messages::Foreign, std::u16string>);
  static_assert(!std::is_constructible_v<messages::Foreign>);
  static_assert(std::is_nothrow_copy_constructible_v<messages::Foreign>);
}

}  // namespace
