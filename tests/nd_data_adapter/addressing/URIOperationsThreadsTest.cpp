// Operations on texts run on any thread at the same time, also when they run for the first time in a process.

#include <atomic>
#include <barrier>
#include <cstdlib>
#include <functional>
#include <thread>

#include "nd_data_adapter/model/URIOperations.h"
#include "platform/text/FoldedCompare.h"

using lx::text::equalNormalizedIgnoringCase;
using ndx::broker::URIOperations;

namespace {

/// Calls each function on eight threads at once, many times, and counts the answers that are false.
int countWrongAnswers(const std::vector<std::function<bool()>>& isRight) {
  constexpr int NumberOfThreads = 8;
  std::barrier start(NumberOfThreads);
  std::atomic<int> wrong = 0;
  {
    std::vector<std::jthread> threads;
    for (std::size_t number = 0; number < NumberOfThreads; ++number) {
      threads.emplace_back([&, number] {
        start.arrive_and_wait();
        // Each thread begins with another function, so that every one is called while others are.
        for (std::size_t call = number; call < number + 500 * isRight.size(); ++call) {
          if (!isRight[call % isRight.size()]()) ++wrong;
        }
      });
    }
  }
  return wrong;
}

// A path that is there on every system, and one that can't be.
const std::u16string folder = u"/";
const std::u16string nowhere = u"/dev/null/below";

int askAllAtOnce() {
  return countWrongAnswers(
      {[] { return URIOperations::removeTag(u"folder/a.test#KIND&VALUESRC") == u"folder/a.test"; },
       [] { return URIOperations::removeTag(u"folder/a.test&VALUESRC") == u"folder/a.test&VALUESRC"; },
       [] { return URIOperations::getExtension(u"folder/a.test#KIND") == u"test"; },
       [] { return URIOperations::getExtension(u"folder/a").empty(); },
       [] { return URIOperations::exists(folder + u"#KIND"); },
       [] { return !URIOperations::exists(nowhere); },
       [] { return URIOperations::isReadable(folder + u"#KIND"); },
       [] { return !URIOperations::isReadable(nowhere); },
       [] { return equalNormalizedIgnoringCase(u".Stra\u00DFe", u".STRASSE"); },
       [] { return equalNormalizedIgnoringCase(u"\u00E9", u"E\u0301"); },
       [] { return !equalNormalizedIgnoringCase(u"\u0131", u"I"); }});
}

TEST(URIOperationsOnManyThreads, AnswerRightAlsoWhenTheFirstCallsOfTheProcessAreMadeAtOnce) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process in which nothing has been called yet
  EXPECT_EXIT(std::_Exit(askAllAtOnce() == 0 ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
