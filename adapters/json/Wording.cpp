#include "adapters/json/Wording.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "adapters/json/CodePoint.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/characters.h"
#include "platform/host/ArrayText.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {
namespace {

constexpr std::size_t widestWord = 20;
constexpr std::size_t widestExcerpt = 60;

std::string hexadecimal(unsigned value, int digits) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%0*X", digits, value);
  return buffer.data();
}

std::string wordAt(std::string_view text, std::size_t offset) {
  const std::string_view rest = text.substr(offset);
  const auto end = std::find_if_not(rest.begin(), rest.end(), isWordCharacter);
  const std::string_view word = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  if (word.size() <= widestWord) return "'" + std::string(word) + "'";
  return "'" + std::string(word.substr(0, widestWord)) + "…'";
}

}  // namespace

std::string describeFound(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) return "the end of the text";
  if (isLetter(text[offset])) return wordAt(text, offset);
  const CodePoint found = codePointAt(text, offset);
  if (found.length == 0) {
    const auto byte = static_cast<std::uint8_t>(text[offset]);
    return "the byte 0x" + hexadecimal(byte, 2) + ", which is not UTF-8 here";
  }
  if (found.value == U'\n' || found.value == U'\r') return "a line break";
  if (found.value == U'\t') return "a tab";
  if (found.value == U'\'') return "a single quote";
  if (found.value > 0x20 && found.value < 0x7F) return {'\'', text[offset], '\''};
  return "U+" + hexadecimal(found.value, 4);
}

std::string describeNumber(std::string_view text, std::size_t offset) {
  const std::string_view literal = numberLiteral(text.substr(offset));
  return literal.empty() ? describeFound(text, offset) : shorten(literal);
}

std::string shorten(std::string_view text) {
  // Cut ahead of the escaping too, so that many megabytes cost no more than a line.
  constexpr std::size_t longestSequence = 4;
  return hvCutToWidth(hvEscape(text.substr(0, widestExcerpt * longestSequence)), widestExcerpt);
}

std::string quoteName(std::string_view name) {
  return "\"" + shorten(name) + "\"";
}

std::string quotePath(std::string_view path) {
  return "\"" + hvEscape(path) + "\"";
}

std::u16string quoted(std::string_view name) {
  return lx::text::toUtf16(quoteName(name));
}

std::u16string spelled(std::size_t number) {
  return lx::text::toUtf16(std::to_string(number));
}

}  // namespace nd::adapters::json
