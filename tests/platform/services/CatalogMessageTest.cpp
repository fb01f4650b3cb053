#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include "platform/services/CatalogMessage.h"

namespace {

using lx::services::CatalogMessage;

class Sample : public CatalogMessage {
 public:
  explicit Sample(const char16_t* text, std::vector<std::u16string> arguments = {})
      : CatalogMessage("sample:component", "Sample", text, std::move(arguments)) {}
};

TEST(CatalogMessage, CarriesWhatItWasMadeFrom) {
  const Sample message(u"{0} and {1}", {u"a", u"b"});
  EXPECT_STREQ(message.catalogue(), "sample:component");
  EXPECT_STREQ(message.key(), "Sample");
  EXPECT_THAT(message.arguments(), testing::ElementsAre(u"a", u"b"));
  EXPECT_EQ(message.text(), u"a and b");
  EXPECT_STREQ(message.what(), "a and b");
}

TEST(CatalogMessage, KeepsItsOwnCopiesOfAllStrings) {
  std::string catalogue = "c:d";
  std::string key = "K";
  std::u16string text = u"text";
  struct Local : CatalogMessage {
    Local(const char* c, const char* k, const char16_t* t) : CatalogMessage(c, k, t, {}) {}
  };
  const Local message(catalogue.c_str(), key.c_str(), text.c_str());
  catalogue = "?";
  key = "?";
  text = u"?";
  EXPECT_STREQ(message.catalogue(), "c:d");
  EXPECT_STREQ(message.key(), "K");
  EXPECT_EQ(message.text(), u"text");
}

TEST(CatalogMessage, FormatsByTheNotationOfItsTexts) {
  EXPECT_EQ(Sample(u"").text(), u"");
  EXPECT_EQ(Sample(u"{1}{0}{1}", {u"a", u"b"}).text(), u"bab");
  EXPECT_EQ(Sample(u"can''t '{'0'}' {0}", {u"x"}).text(), u"can't {0} x");
  EXPECT_EQ(Sample(u"can't {0}", {u"x"}).text(), u"can't x");
  EXPECT_EQ(Sample(u"{0}", {u""}).text(), u"");
  EXPECT_EQ(Sample(u"{10}", {u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"ten"}).text(),
            u"ten");
}

TEST(CatalogMessage, TakesArgumentsAsTheyAre) {
  EXPECT_EQ(Sample(u"<{0}> <{1}>", {u"{1} ''it''s'' {", u"b"}).text(), u"<{1} ''it''s'' {> <b>");
  EXPECT_EQ(Sample(u"{0}", {u"1234567.5"}).text(), u"1234567.5");
}

TEST(CatalogMessage, EndsWithoutABlankWhenItsLastArgumentsAreEmpty) {
  EXPECT_EQ(Sample(u"It broke. {0}", {u""}).text(), u"It broke.");
  EXPECT_EQ(Sample(u"{0} {1} {2}", {u"a", u"", u""}).text(), u"a");
  EXPECT_EQ(Sample(u"{0} {1}", {u"a ", u""}).text(), u"a ") << "the argument's own blank stays";
  EXPECT_EQ(Sample(u"{0} {1}", {u"", u" "}).text(), u"  ");
  EXPECT_EQ(Sample(u"<{0} {1}>", {u"a", u""}).text(), u"<a >") << "within the text the blank stays";
}

TEST(CatalogMessage, FormatsTheSameInEveryLocale) {
  const std::string former = uloc_getDefault();
  for (const char* locale : {"de_CH", "ar_EG", "tr_TR"}) {
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault(locale, &status);
    ASSERT_TRUE(U_SUCCESS(status));
    EXPECT_EQ(Sample(u"{0} of {1}", {u"1000.5", u"2000"}).text(), u"1000.5 of 2000") << locale;
  }
  UErrorCode status = U_ZERO_ERROR;
  uloc_setDefault(former.c_str(), &status);
  EXPECT_TRUE(U_SUCCESS(status));
}

TEST(CatalogMessage, IsNotLostWhenItsTextCannotBeFormatted) {
  EXPECT_EQ(Sample(u"broken {", {u"a", u"b"}).text(), u"broken { (a, b)");
  EXPECT_EQ(Sample(u"broken {0,number}", {u"a"}).text(), u"broken {0,number} (a)");
  EXPECT_EQ(Sample(u"broken {0,unknown}", {u"a"}).text(), u"broken {0,unknown} (a)");
  EXPECT_EQ(Sample(u"broken }{").text(), u"broken }{");
}

TEST(CatalogMessage, LeavesAPlaceWithoutAnArgumentInTheText) {
  EXPECT_EQ(Sample(u"{0} and {1}", {u"a"}).text(), u"a and {1}");
}

TEST(CatalogMessage, KeepsHostileArgumentsInItsTextAndNarrowsThemReadably) {
  const std::u16string hostile = {u'a', 0, u'b', 0xD800, u'c'};
  const Sample message(u"<{0}>", {hostile});
  EXPECT_EQ(message.text(), u"<" + hostile + u">");
  EXPECT_EQ(message.arguments().at(0), hostile);
  EXPECT_STREQ(message.what(),
               "<a\xEF\xBF\xBD"
               "b\xEF\xBF\xBD"
               "c>");
}

TEST(CatalogMessage, BearsHugeArguments) {
  const std::u16string huge(3'000'000, u'x');
  const Sample message(u"{0}!", {huge});
  EXPECT_TRUE(message.text() == huge + u"!");
  EXPECT_EQ(std::string_view(message.what()).size(), huge.size() + 1);
}

TEST(CatalogMessage, SharesItsStateWithItsCopies) {
  static_assert(std::is_nothrow_copy_constructible_v<CatalogMessage>);
  static_assert(std::is_nothrow_copy_assignable_v<CatalogMessage>);
  std::optional<Sample> first(std::in_place, u"{0}", std::vector<std::u16string>{u"kept"});
  const Sample copy = *first;
  EXPECT_EQ(copy.what(), first->what());
  first.reset();
  EXPECT_STREQ(copy.what(), "kept");
  EXPECT_THAT(copy.arguments(), testing::ElementsAre(u"kept"));
  Sample other(u"other");
  other = copy;
  EXPECT_EQ(other.text(), u"kept");
}

TEST(CatalogMessage, IsWholeAfterItWasMovedFrom) {
  Sample first(u"{0}", {u"kept"});
  const Sample second = std::move(first);
  EXPECT_STREQ(first.what(), "kept");  // NOLINT(bugprone-use-after-move): that it may be used is the point
  EXPECT_STREQ(second.what(), "kept");
}

TEST(CatalogMessage, StaysReadableAsAMessageWhenItsClassIsCutOff) {
  const CatalogMessage message = Sample(u"{0}", {u"x"});
  EXPECT_STREQ(message.key(), "Sample");
  EXPECT_EQ(message.text(), u"x");
}

}  // namespace
