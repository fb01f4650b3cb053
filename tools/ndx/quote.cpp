#include "tools/ndx/quote.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/text/Convert.h"

namespace nd::tools {
namespace {

bool isPlainInShell(char character) {
  const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
  const bool isDigit = character >= '0' && character <= '9';
  return isLetter || isDigit || std::string_view("_-./,:+@%").find(character) != std::string_view::npos;
}

}  // namespace

std::string quote(std::string_view text) {
  return fmt::format("\"{}\"", text);
}

std::string quote(std::u16string_view text) {
  return quote(lx::text::toUtf8(text));
}

std::string quoteAll(const std::vector<std::string>& texts) {
  std::vector<std::string> quoted;
  quoted.reserve(texts.size());
  for (const std::string& text : texts) quoted.push_back(quote(text));
  return join(quoted, ", ");
}

std::string shellWord(std::string_view text) {
  const bool isPlain = !text.empty() && std::all_of(text.begin(), text.end(), isPlainInShell);
  if (isPlain) return std::string(text);
  std::string word = "'";
  for (const char character : text) {
    if (character == '\'') {
      word += "'\\''";
    } else {
      word += character;
    }
  }
  return word + "'";
}

std::string join(const std::vector<std::string>& texts, std::string_view between) {
  std::string joined;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) joined += between;
    joined += text;
  }
  return joined;
}

bool isUtf8(std::string_view bytes) {
  return lx::text::toUtf8(lx::text::toUtf16(bytes)) == bytes;
}

std::string count(std::size_t number, std::string_view noun) {
  return fmt::format("{} {}{}", number, noun, number == 1 ? "" : "s");
}

}  // namespace nd::tools
