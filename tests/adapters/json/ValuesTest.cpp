#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host/ArrayText.h"
#include "tests/adapters/json/readText.h"

namespace {

std::string contentOf(const std::string& name) {
  std::ifstream stream(std::string(ND_JSON_TEST_FOLDER) + "/" + name, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

/// Show each variable as a row of name, size with class, and value; as a whole if that takes more than a row.
std::string listingOf(const std::vector<nd::adapters::json::Variable>& variables) {
  constexpr std::size_t nameWidth = 18;
  constexpr std::size_t classWidth = 13;
  constexpr std::size_t valueWidth = 60;
  std::string listing;
  for (const auto& [name, value] : variables) {
    const std::string description = hvDescribe(value.get());
    const std::string preview = hvPreview(value.get(), valueWidth);
    listing += preview == description
                   ? hvFormat(value.get(), name)
                   : padded(name, nameWidth) + padded(description, classWidth) + preview + "\n";
  }
  return listing;
}

}  // namespace

TEST(Values, AreReadAsTheManualLists) {
  const std::string text = contentOf("example.json");
  ASSERT_FALSE(text.empty());
  EXPECT_EQ(listingOf(readText(text)), contentOf("example.txt"));
}
