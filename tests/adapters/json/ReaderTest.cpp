#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/Reader.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using nd::adapters::json::Variable;

namespace {

std::vector<std::string> namesOf(const std::vector<Variable>& variables) {
  std::vector<std::string> names;
  for (const Variable& variable : variables) names.push_back(variable.name);
  return names;
}

}  // namespace

TEST(Reader, MakesAVariableOfEachMemberInTheirOrder) {
  const auto variables = readText(R"({"gain": 2.5, "active": true, "Name_2": "x"})");
  EXPECT_EQ(namesOf(variables), (std::vector<std::string>{"gain", "active", "Name_2"}));
  EXPECT_TRUE(hvEqual(variables[0].value.get(), arrays::scalar(2.5).get()));
  EXPECT_TRUE(hvEqual(variables[1].value.get(), arrays::truth(true).get()));
  EXPECT_TRUE(hvEqual(variables[2].value.get(), arrays::row(u"x").get()));
}

TEST(Reader, FindsNoVariablesInAnEmptyObject) {
  EXPECT_TRUE(readText("{}").empty());
  EXPECT_TRUE(readText(" \t\r\n{ \n } \n").empty());
}

TEST(Reader, PassesOverAByteOrderMark) {
  EXPECT_EQ(namesOf(readText("\xEF\xBB\xBF{\"a\": 1}")), (std::vector<std::string>{"a"}));
}

TEST(Reader, ReadsNamesThatAreWrittenWithEscapes) {
  EXPECT_EQ(namesOf(readText(R"({"\u0061b": 1})")), (std::vector<std::string>{"ab"}));
}

TEST(Reader, TakesLettersDigitsAndUnderscoresInTheNameOfAVariable) {
  EXPECT_EQ(namesOf(readText(R"({"aZ_09": 1, "Z": 2, "z_": 3})")),
            (std::vector<std::string>{"aZ_09", "Z", "z_"}));
}

TEST(Reader, LeavesNoArrayBehindWhenItsVariablesAreGone) {
  const std::size_t before = hvGetLiveArrayCount();
  {
    const auto variables =
        readText(R"({"a": [1, "x", {"b": [[1, 2], [3, 4]]}, null], "c": [{"d": 1}, {"d": [true]}]})");
    EXPECT_EQ(variables.size(), 2U);
    EXPECT_GT(hvGetLiveArrayCount(), before);
  }
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}

TEST(Reader, LeavesNoArrayBehindWhenItFails) {
  const std::size_t before = hvGetLiveArrayCount();
  EXPECT_NE(failureOf(R"({"a": [1, "x", {"b": [[1, 2], {"c": 1}]}, [{"d": 1}, {"d": 2}], nul]})"),
            "it was read");
  EXPECT_EQ(hvGetLiveArrayCount(), before);
}
