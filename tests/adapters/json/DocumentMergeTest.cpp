#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/DocumentMerge.h"
#include "adapters/json/PaddedText.h"
#include "adapters/json/Reader.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/arrays.h"

using nd::adapters::json::Content;
using nd::adapters::json::DocumentMerge;
using nd::adapters::json::PaddedText;
using nd::adapters::json::readDocument;

namespace {

Content merged(const std::vector<std::string>& texts) {
  DocumentMerge merge;
  for (const std::string& text : texts) merge.add(readDocument(PaddedText(text)));
  return merge.finish();
}

}  // namespace

TEST(DocumentMerge, KeepsThePlaceOfAVariableAndTakesItsLaterValue) {
  const Content document = merged({R"({"a": 1, "b": 2})", R"({"c": 3, "a": 4})"});
  ASSERT_EQ(document.variables.size(), 3U);
  EXPECT_EQ(document.variables[0].name, "a");
  EXPECT_TRUE(hvEqual(document.variables[0].value.get(), arrays::scalar(4).get()));
  EXPECT_EQ(document.variables[1].name, "b");
  EXPECT_EQ(document.variables[2].name, "c");
}

TEST(DocumentMerge, TakesTheMetadataEntryByEntry) {
  const Content document = merged({R"({"$meta": {"a": {"unit": "V", "x": 1}}})",
                                   R"({"$meta": {"b": {"unit": "A"}, "a": {"y": 2, "unit": "mV"}}})"});
  ASSERT_EQ(document.metaData.size(), 2U);
  EXPECT_EQ(document.metaData[0].variable, "a");
  ASSERT_EQ(document.metaData[0].entries.size(), 3U);
  EXPECT_EQ(document.metaData[0].entries[0].name, "unit");
  EXPECT_TRUE(hvEqual(document.metaData[0].entries[0].value.get(), arrays::row(u"mV").get()));
  EXPECT_EQ(document.metaData[0].entries[1].name, "x");
  EXPECT_EQ(document.metaData[0].entries[2].name, "y");
  EXPECT_EQ(document.metaData[1].variable, "b");
}

TEST(DocumentMerge, OfNothingIsEmpty) {
  const Content document = merged({});
  EXPECT_TRUE(document.variables.empty());
  EXPECT_TRUE(document.metaData.empty());
}
