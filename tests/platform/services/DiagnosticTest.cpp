#include <cstddef>
#include <functional>
#include <stdexcept>

#include "platform/services/Diagnostic.h"
#include "tests/platform/services/sample_messages.h"

namespace {

using lx::services::CatalogMessage;
using lx::services::MessageId;
using sample::lx::messages::Foreign;
using sample::lx::messages::Plain;
using sample::lx::messages::State;

class DiagnosticTest : public testing::Test {
 protected:
  ~DiagnosticTest() override {
    ndsvSetCreateDiagnosticHook({});
    EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 0U) << "a diagnostic was not destroyed";
  }

  static ndsvDiagnosticImpl* make(const std::u16string& text) {
    return ndsvCreateDiagnostic(State(text), u"");
  }

  static ndsvDiagnosticImpl* makeAll(const std::vector<std::u16string>& texts) {
    ndsvDiagnosticImpl* result = nullptr;
    for (const std::u16string& text : texts) ndsvConcatenateDiagnosticsNoCheck(result, make(text), false);
    return result;
  }

  static std::vector<std::u16string> textsOf(const ndsvDiagnosticImpl* diagnostic) {
    std::vector<std::u16string> texts;
    for (std::size_t index = 0; index < ndsvGetNumItemsInDiagnostic(diagnostic); ++index) {
      texts.push_back(ndsvGetDiagnosticItemText(diagnostic, index));
    }
    return texts;
  }
};

TEST_F(DiagnosticTest, NewOneHasOneItemWithTextAndId) {
  ndsvDiagnosticImpl* diagnostic = ndsvCreateDiagnostic(Plain(), u"");
  EXPECT_EQ(ndsvGetNumItemsInDiagnostic(diagnostic), 1U);
  EXPECT_EQ(ndsvGetDiagnosticItemText(diagnostic, 0), u"It's plain: nothing is put in.");
  EXPECT_EQ(ndsvGetDiagnosticItemId(diagnostic, 0), (MessageId{"sample:messages", "Plain"}));
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, SecondTextIsPutBeforeTheMessage) {
  ndsvDiagnosticImpl* diagnostic = ndsvCreateDiagnostic(State(u"the message"), u"the context");
  EXPECT_EQ(ndsvGetDiagnosticItemText(diagnostic, 0), u"the context: the message");
  EXPECT_EQ(ndsvGetDiagnosticItemId(diagnostic, 0), (MessageId{"sample:messages", "State"}));
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, NullHasNoItemsAndMayBeDestroyed) {
  EXPECT_EQ(ndsvGetNumItemsInDiagnostic(nullptr), 0U);
  EXPECT_EQ(ndsvFormatDiagnostic(nullptr), u"");
  ndsvDestroyDiagnostic(nullptr);
}

TEST_F(DiagnosticTest, ItemThatIsNotThereIsRefused) {
  ndsvDiagnosticImpl* diagnostic = make(u"x");
  EXPECT_THROW(ndsvGetDiagnosticItemText(diagnostic, 1), std::out_of_range);
  EXPECT_THROW(ndsvGetDiagnosticItemId(diagnostic, 1), std::out_of_range);
  EXPECT_THROW(ndsvGetDiagnosticItemText(nullptr, 0), std::out_of_range);
  EXPECT_THROW(ndsvGetDiagnosticItemId(nullptr, 0), std::out_of_range);
  try {
    ndsvGetDiagnosticItemText(diagnostic, 7);
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(),
                 "A diagnostic with 1 items was asked for item 7, counted from 0: the number must be "
                 "smaller than the count.");
  }
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, FirstOneJoinedBecomesTheResult) {
  ndsvDiagnosticImpl* result = nullptr;
  ndsvDiagnosticImpl* const added = make(u"x");
  ndsvConcatenateDiagnosticsNoCheck(result, added, false);
  EXPECT_EQ(result, added);
  ndsvDestroyDiagnostic(result);
  result = nullptr;
  ndsvDiagnosticImpl* const addedFirst = make(u"x");
  ndsvConcatenateDiagnosticsNoCheck(result, addedFirst, true);
  EXPECT_EQ(result, addedFirst);
  ndsvDestroyDiagnostic(result);
}

TEST_F(DiagnosticTest, ItemsAreJoinedBehindAndTheAddedOneIsFreed) {
  ndsvDiagnosticImpl* result = makeAll({u"a", u"b"});
  ndsvDiagnosticImpl* const before = result;
  ndsvConcatenateDiagnosticsNoCheck(result, makeAll({u"c", u"d", u"e"}), false);
  EXPECT_EQ(result, before);
  EXPECT_THAT(textsOf(result), testing::ElementsAre(u"a", u"b", u"c", u"d", u"e"));
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDestroyDiagnostic(result);
}

TEST_F(DiagnosticTest, ItemsAreJoinedBeforeWhenAskedFor) {
  ndsvDiagnosticImpl* result = makeAll({u"a", u"b"});
  ndsvDiagnosticImpl* const before = result;
  ndsvConcatenateDiagnosticsNoCheck(result, makeAll({u"c", u"d", u"e"}), true);
  EXPECT_EQ(result, before);
  EXPECT_THAT(textsOf(result), testing::ElementsAre(u"c", u"d", u"e", u"a", u"b"));
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDestroyDiagnostic(result);
}

TEST_F(DiagnosticTest, JoiningKeepsTheIds) {
  ndsvDiagnosticImpl* result = ndsvCreateDiagnostic(Plain(), u"");
  ndsvConcatenateDiagnosticsNoCheck(result, ndsvCreateDiagnostic(Foreign(u"x"), u""), false);
  EXPECT_EQ(ndsvGetDiagnosticItemId(result, 0).key, "Plain");
  EXPECT_EQ(ndsvGetDiagnosticItemId(result, 1).key, "Foreign");
  ndsvDestroyDiagnostic(result);
}

TEST_F(DiagnosticTest, JoiningNullOrItselfChangesNothing) {
  ndsvDiagnosticImpl* result = nullptr;
  ndsvConcatenateDiagnosticsNoCheck(result, nullptr, false);
  EXPECT_EQ(result, nullptr);
  result = makeAll({u"a", u"b"});
  ndsvConcatenateDiagnosticsNoCheck(result, nullptr, true);
  ndsvConcatenateDiagnosticsNoCheck(result, result, false);
  ndsvConcatenateDiagnosticsNoCheck(result, result, true);
  EXPECT_THAT(textsOf(result), testing::ElementsAre(u"a", u"b"));
  ndsvDestroyDiagnostic(result);
}

TEST_F(DiagnosticTest, ManyAreJoinedInOrder) {
  std::vector<std::u16string> texts;
  for (char16_t number = 0; number < 2000; ++number) texts.push_back(std::u16string(1, number));
  ndsvDiagnosticImpl* diagnostic = makeAll(texts);
  EXPECT_EQ(textsOf(diagnostic), texts);
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, IsPrintedWithOneLineForEachItem) {
  ndsvDiagnosticImpl* diagnostic = makeAll({u"first", u"", u"third"});
  EXPECT_EQ(ndsvFormatDiagnostic(diagnostic), u"first\n\nthird");
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, LineBreaksWithinAnItemArePrintedAsBlanks) {
  ndsvDiagnosticImpl* diagnostic = makeAll({u"a\nb\r\nc\rd\r", u"\n\n"});
  EXPECT_EQ(ndsvFormatDiagnostic(diagnostic), u"a b c d \n  ");
  EXPECT_EQ(ndsvGetDiagnosticItemText(diagnostic, 0), u"a\nb\r\nc\rd\r");
  ndsvDestroyDiagnostic(diagnostic);
}

TEST_F(DiagnosticTest, LiveOnesAreCounted) {
  ndsvDiagnosticImpl* first = make(u"a");
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDiagnosticImpl* second = make(u"b");
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 2U);
  ndsvDestroyDiagnostic(first);
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  ndsvDestroyDiagnostic(second);
}

TEST_F(DiagnosticTest, HookSeesEachMessageAndMayRefuseIt) {
  std::vector<std::string> seen;
  const auto none = ndsvSetCreateDiagnosticHook([&seen](const CatalogMessage& message) {
    seen.emplace_back(message.key());
    if (seen.size() == 2) throw std::runtime_error("refused");
  });
  EXPECT_FALSE(none);
  ndsvDiagnosticImpl* diagnostic = ndsvCreateDiagnostic(Plain(), u"");
  EXPECT_THROW(ndsvCreateDiagnostic(Foreign(u"x"), u""), std::runtime_error);
  EXPECT_THAT(seen, testing::ElementsAre("Plain", "Foreign"));
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), 1U);
  EXPECT_TRUE(ndsvSetCreateDiagnosticHook({}));
  ndsvConcatenateDiagnosticsNoCheck(diagnostic, ndsvCreateDiagnostic(Plain(), u""), false);
  EXPECT_EQ(seen.size(), 2U);
  ndsvDestroyDiagnostic(diagnostic);
}

}  // namespace
