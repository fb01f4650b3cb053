#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "adapters/json/Checksum.h"

using nd::adapters::json::Checksum;
using nd::adapters::json::checksumOf;

TEST(Checksum, IsThatOfXxh3With128Bits) {
  // The published value for no input.
  EXPECT_EQ(checksumOf(""), u"99aa06d3014798d86001c324468d497f");
}

TEST(Checksum, DiffersWhereASingleBitDoes) {
  std::set<std::u16string> checksums;
  std::string content(300, 'x');
  checksums.insert(checksumOf(content));
  for (char& byte : content) {
    byte = static_cast<char>(byte ^ 1);
    checksums.insert(checksumOf(content));
    byte = static_cast<char>(byte ^ 1);
  }
  EXPECT_EQ(checksums.size(), 301U);
}

TEST(Checksum, IsTheSameInPiecesOfAnySize) {
  std::string content;
  for (int number = 0; number < 5000; ++number) content += std::to_string(number);
  const std::u16string whole = checksumOf(content);
  for (const std::size_t size : {1U, 7U, 64U, 1024U, 4096U}) {
    Checksum checksum;
    for (std::size_t at = 0; at < content.size(); at += size)
      checksum.add(std::string_view(content).substr(at, size));
    EXPECT_EQ(checksum.text(), whole) << "in pieces of " << size;
  }
}

TEST(Checksum, CanBeReadOnTheWay) {
  Checksum checksum;
  checksum.add("ab");
  EXPECT_EQ(checksum.text(), checksumOf("ab"));
  checksum.add("c");
  EXPECT_EQ(checksum.text(), checksumOf("abc"));
}
