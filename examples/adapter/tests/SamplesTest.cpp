#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tests/Read.h>

namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

std::string sample(const std::string& name) {
  return contentOf(std::filesystem::path(EXAMPLE_SAMPLES) / name);
}

const std::map<std::string, std::string> sentences = {
    {"bad_control_character.params",
     "line 1, column 12: expected a text without control characters, but found '\\t'"},
    {"bad_encoding.params", "line 1, column 25: expected UTF-8, but found bytes that are not"},
    {"bad_escape.params",
     "line 1, column 11: expected \\\", \\\\, \\n or \\t, but found a backslash and then 'engines'"},
    {"bad_inexact_integer.params",
     "line 2, column 10: expected an integer below 9007199254740992, so that a double holds it exactly, but "
     "found '9007199254740993'"},
    {"bad_list.params", "line 1, column 22: expected a number in the list, but found ']'"},
    {"bad_mixed_list.params", "line 1, column 15: expected a number in the list, but found '\"'"},
    {"bad_name.params",
     "line 2, column 1: expected a name (a letter, then letters, digits and underscores), but found "
     "'2nd_speed'"},
    {"bad_name_twice.params",
     "line 4, column 1: expected a name that the file doesn't have yet, but found 'idle_speed', which it has "
     "in "
     "line 1"},
    {"bad_no_equal_sign.params", "line 1, column 12: expected '=' behind the name, but found '230'"},
    {"bad_no_value.params",
     "line 1, column 16: expected a number, a list, a text, true or false, but found '#'"},
    {"bad_number.params",
     "line 1, column 14: expected a number, a list, a text, true or false, but found '230.'"},
    {"bad_open_list.params",
     "line 1, column 18: expected ',' or ']' behind a number of the list, but found the end of the line"},
    {"bad_open_text.params",
     "line 1, column 14: expected a double quote at the end of the text, but found the end of the line"},
    {"bad_too_large_number.params",
     "line 1, column 14: expected a number within the range of a double, but found '1e400'"},
    {"bad_two_values.params",
     "line 1, column 18: expected the end of the line or a comment, but found '350'"},
    {"bad_word.params",
     "line 1, column 14: expected a number, a list, a text, true or false, but found 'nan'"},
};

}  // namespace

TEST(Samples, EachBadOneIsRefusedWithItsSentence) {
  std::map<std::string, std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(EXAMPLE_SAMPLES)) {
    const std::string name = entry.path().filename();
    if (name.starts_with("bad_")) found.emplace(name, errorOf(contentOf(entry.path())));
  }
  EXPECT_EQ(found, sentences);
}

TEST(Samples, EngineIsReadWhole) {
  EXPECT_EQ(show(sample("engine.params")),
            "name: 1x14 char = \"flat twin \\\"B2\\\"\"\n"
            "revision: 1x1 double = 7\n"
            "displacement: 1x1 double = 0.000172\n"
            "idle_speed: 1x1 double = 230\n"
            "thermostat: 1x1 logical = false\n"
            "fuel_cut: 1x1 logical = true\n"
            "speed: 1x5 double = [230 350 470 590 710]\n"
            "advance: 1x5 double = [0.14 0.31 0.38 0.42 0.4]\n"
            "cold_offset: 1x1 double = -0.035\n"
            "overrides: 1x0 double = []\n"
            "remark: 1x32 char = \"Reibwert geschätzt,\\nsee the log.\"\n");
}

TEST(Samples, EmptyHoldsNothing) {
  ASSERT_FALSE(sample("empty.params").empty());
  EXPECT_THAT(params::readVariables(sample("empty.params")), testing::IsEmpty());
}

TEST(Samples, LineEndsMayHaveACarriageReturn) {
  ASSERT_THAT(sample("line_ends.params"), testing::HasSubstr("\r\n"));
  EXPECT_EQ(show(sample("line_ends.params")), "speed: 1x1 double = 230\nunit: 1x5 char = \"rad/s\"\n");
}
