#include <string_view>

#include "platform/host/TextArray.h"
#include "tests/platform/host/HostTest.h"

namespace {

class TextArrayTest : public HostTest {};

hvArrayPtr characters(const hvDims& dimensions, std::u16string_view units) {
  hvArrayPtr array(hvCreateCharArray(dimensions));
  std::copy(units.begin(), units.end(), hvGetWritableData<char16_t>(array.get()).begin());
  return array;
}

hvArrayPtr missingString() {
  hvArrayPtr array(hvCreateStringArray({1, 1}));
  hvSetString(array.get(), 0, boost::none);
  return array;
}

TEST_F(TextArrayTest, ATextBecomesACharacterRow) {
  const hvArrayPtr array(hvCreateString(u"abc"));
  EXPECT_TRUE(hvIsChar(array.get()));
  EXPECT_EQ(hvGetDimensions(array.get()), (hvDims{1, 3}));
  EXPECT_EQ(hvArrayToString(array.get()), u"abc");
}

TEST_F(TextArrayTest, TheEmptyTextBecomesARowWithoutColumns) {
  for (hvArray* const made : {hvCreateString(u""), hvCreateString("")}) {
    const hvArrayPtr array(made);
    EXPECT_EQ(hvGetDimensions(array.get()), (hvDims{1, 0}));
    EXPECT_EQ(hvArrayToString(array.get()), u"");
    EXPECT_TRUE(ndsvIsStringScalar(array.get()));
  }
}

TEST_F(TextArrayTest, NarrowTextIsReadAsUtf8) {
  const hvArrayPtr array(hvCreateString("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"));
  EXPECT_EQ(hvGetDimensions(array.get()), (hvDims{1, 5})) << "the last one takes two units";
  EXPECT_EQ(hvArrayToString(array.get()), u"a\u00E9\u20AC\U0001F600");
  EXPECT_EQ(hvArrayToStdString(array.get()), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST_F(TextArrayTest, IllFormedUtf8BecomesReplacementCharacters) {
  const hvArrayPtr array(hvCreateString("a\xFFz"));
  EXPECT_EQ(hvArrayToString(array.get()), u"a\uFFFDz");
}

TEST_F(TextArrayTest, NullCharactersAreKept) {
  const hvArrayPtr narrow(hvCreateString(std::string_view("a\0b", 3)));
  EXPECT_EQ(hvArrayToString(narrow.get()), std::u16string(u"a\0b", 3));
  const hvArrayPtr wide(hvCreateString(std::u16string_view(u"a\0b", 3)));
  EXPECT_EQ(hvArrayToStdString(wide.get()), std::string("a\0b", 3));
}

TEST_F(TextArrayTest, LoneSurrogatesAreKeptAndNarrowedToReplacementCharacters) {
  const std::u16string lone = {u'a', char16_t(0xD800), u'b', char16_t(0xDC00)};
  const hvArrayPtr array(hvCreateString(lone));
  EXPECT_EQ(hvArrayToString(array.get()), lone);
  EXPECT_EQ(hvArrayToStdString(array.get()),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

TEST_F(TextArrayTest, ANullPointerIsNoText) {
  EXPECT_EQ(raised([] { hvCreateString(static_cast<const char*>(nullptr)); }), "hv:messages/NullText");
}

TEST_F(TextArrayTest, StringElementsStartAsTheEmptyText) {
  const hvArrayPtr array(hvCreateStringArray({2, 3}));
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(textAt(array, i), u"");
}

TEST_F(TextArrayTest, StringElementsKeepTextsAndTheMissingValueApart) {
  const hvArrayPtr array(hvCreateStringArray({1, 3}));
  hvSetString(array.get(), 1, std::u16string(u"text"));
  hvSetString(array.get(), 2, boost::none);
  EXPECT_EQ(textAt(array, 0), u"");
  EXPECT_EQ(textAt(array, 1), u"text");
  EXPECT_EQ(textAt(array, 2), std::nullopt);
  hvSetString(array.get(), 2, std::u16string(u"again"));
  EXPECT_EQ(textAt(array, 2), u"again");
}

TEST_F(TextArrayTest, AStringScalarHoldsItsText) {
  const hvArrayPtr array(hvCreateStringScalar(u"text"));
  EXPECT_TRUE(hvIsString(array.get()));
  EXPECT_EQ(hvGetDimensions(array.get()), (hvDims{1, 1}));
  EXPECT_EQ(hvArrayToString(array.get()), u"text");
}

TEST_F(TextArrayTest, AStringElementIsCheckedByIndexAndClass) {
  const hvArrayPtr array(hvCreateStringArray({1, 2}));
  const hvArrayPtr row(hvCreateString("ab"));
  EXPECT_EQ(raised([&] { hvGetString(array.get(), 2); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvSetString(array.get(), 2, boost::none); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetString(row.get(), 0); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvSetString(row.get(), 0, boost::none); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetString(nullptr, 0); }), "hv:messages/NullArray");
  EXPECT_EQ(raised([&] { hvSetString(nullptr, 0, boost::none); }), "hv:messages/NullArray");
  EXPECT_EQ(
      sentence([&] { hvGetString(array.get(), 7); }),
      "hvGetString was asked for number 7 of 2, counted from 0: the number must be smaller than the count.");
}

TEST_F(TextArrayTest, SeveralRowsReadColumnByColumn) {
  EXPECT_EQ(hvArrayToString(characters({2, 3}, u"adbecf").get()), u"adbecf");
  EXPECT_EQ(hvArrayToString(characters({2, 1, 2}, u"abcd").get()), u"abcd");
}

TEST_F(TextArrayTest, NullReadsAsTheEmptyText) {
  EXPECT_EQ(hvArrayToString(nullptr), u"");
  EXPECT_EQ(hvArrayToStdString(nullptr), "");
}

TEST_F(TextArrayTest, TheMissingValueHasNoText) {
  const hvArrayPtr array = missingString();
  EXPECT_EQ(raised([&] { hvArrayToString(array.get()); }), "Orbex:string/MissingNotSupported");
  EXPECT_EQ(raised([&] { hvArrayToStdString(array.get()); }), "Orbex:string/MissingNotSupported");
}

TEST_F(TextArrayTest, OnlyTextsHaveAText) {
  const hvArrayPtr arrays[] = {hvArrayPtr(hvCreateStringArray({1, 2})),
                               hvArrayPtr(hvCreateStringArray({0, 0})),
                               doubleScalar(1),
                               hvArrayPtr(hvCreateNumericMatrix(0, 0, hvClassCode::Double)),
                               hvArrayPtr(hvCreateCellArray({1, 1})),
                               hvArrayPtr(hvCreateStructArray({1, 1}, {}))};
  for (const hvArrayPtr& array : arrays) {
    EXPECT_EQ(raised([&] { hvArrayToString(array.get()); }), "hv:messages/NotOneText");
  }
  EXPECT_EQ(sentence([&] { hvArrayToString(arrays[0].get()); }),
            "hvArrayToString needs a character array or a single string, and was given a value that is 1x2 "
            "string.");
}

TEST_F(TextArrayTest, OneTextIsACharacterRowOrAStringThatIsNotMissing) {
  const std::pair<hvArrayPtr, bool> cases[] = {
      {hvArrayPtr(hvCreateString("a")), true},
      {hvArrayPtr(hvCreateString("")), true},
      {hvArrayPtr(hvCreateStringScalar(u"a")), true},
      {hvArrayPtr(hvCreateStringScalar(u"")), true},
      {missingString(), false},
      {hvArrayPtr(hvCreateStringArray({1, 2})), false},
      {hvArrayPtr(hvCreateStringArray({1, 0})), false},
      {hvArrayPtr(hvCreateCharArray({0, 0})), false},
      {hvArrayPtr(hvCreateCharArray({2, 1})), false},
      {hvArrayPtr(hvCreateCharArray({1, 1, 2})), false},
      {doubleScalar(1), false},
      {hvArrayPtr(hvCreateCellArray({1, 1})), false},
      {nullptr, false},
  };
  for (const auto& [owner, wanted] : cases) {
    const hvArray* const array = owner.get();
    SCOPED_TRACE(hvDescribe(array));
    EXPECT_EQ(ndsvIsStringScalar(array), wanted);
    EXPECT_EQ(raised([&] { ndsvGetUstringFromStringScalar(array); }),
              wanted ? "nothing" : "hv:messages/NotOneText");
  }
  EXPECT_EQ(ndsvGetUstringFromStringScalar(cases[0].first.get()), u"a");
  EXPECT_EQ(ndsvGetUstringFromStringScalar(cases[2].first.get()), u"a");
}

TEST_F(TextArrayTest, NamesOfTheHostGoOnWithLettersDigitsAndUnderscores) {
  for (int code = 0; code < 256; ++code) {
    const char character = static_cast<char>(code);
    const bool wanted =
        std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_").find(character) !=
        std::string_view::npos;
    EXPECT_EQ(hvIsValidSubsequentCharInOrbName(character), wanted) << code;
  }
}

}  // namespace
