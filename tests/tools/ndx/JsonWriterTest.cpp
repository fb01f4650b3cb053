#include <limits>

#include "tests/tools/ndx/TextOutput.h"
#include "tools/ndx/JsonWriter.h"

namespace nd::tools {
namespace {

template <class Write>
std::string written(Write write) {
  TextOutput out;
  JsonWriter json(out);
  write(json);
  out.finish();
  return out.text;
}

TEST(JsonWriter, PutsCommasBetweenMembersAndElements) {
  EXPECT_EQ(written([](JsonWriter& json) {
              json.beginObject();
              json.key("a").number(std::uint64_t{1});
              json.key("b").beginArray();
              json.truth(true);
              json.null();
              json.endArray();
              json.endObject();
            }),
            R"({"a":1,"b":[true,null]})");
}

TEST(JsonWriter, WritesWholeNumbersWithAllTheirDigits) {
  EXPECT_EQ(written([](JsonWriter& json) { json.number(std::numeric_limits<std::int64_t>::min()); }),
            "-9223372036854775808");
  EXPECT_EQ(written([](JsonWriter& json) { json.number(std::numeric_limits<std::uint64_t>::max()); }),
            "18446744073709551615");
}

TEST(JsonWriter, WritesDoublesSoThatTheyReadBack) {
  EXPECT_EQ(written([](JsonWriter& json) { json.number(0.1); }), "0.1");
}

TEST(JsonWriter, WritesWhatIsNoNumberInJsonAsText) {
  EXPECT_EQ(written([](JsonWriter& json) { json.number(std::numeric_limits<double>::quiet_NaN()); }),
            R"("NaN")");
  EXPECT_EQ(written([](JsonWriter& json) { json.number(-std::numeric_limits<double>::infinity()); }),
            R"("-Inf")");
}

TEST(JsonWriter, EscapesWhatATextMayNotHold) {
  EXPECT_EQ(written([](JsonWriter& json) { json.text(std::string_view("a\"b\\c\n")); }),
            R"("a\"b\\c\u000a")");
}

TEST(JsonWriter, ReplacesIllFormedText) {
  EXPECT_EQ(written([](JsonWriter& json) { json.text(std::string_view("a\xff")); }), "\"a\xef\xbf\xbd\"");
}

}  // namespace
}  // namespace nd::tools
