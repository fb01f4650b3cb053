#include "adapters/json/TextScan.h"

#include <algorithm>

#include "adapters/json/CodePoint.h"
#include "adapters/json/Place.h"
#include "adapters/json/messages.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

int hexadecimalDigit(char character) {
  if (isDigit(character)) return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

bool isFirstHalf(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isSecondHalf(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

void TextScan::skipSpace() noexcept {
  constexpr std::string_view space = " \t\n\r";
  at_ = std::min(text_.find_first_not_of(space, at_), text_.size());
}

bool TextScan::skipWord(std::string_view word) noexcept {
  const std::string_view rest = text_.substr(at_);
  if (!rest.starts_with(word)) return false;
  if (rest.size() > word.size() && isWordCharacter(rest[word.size()])) return false;
  at_ += word.size();
  return true;
}

template <typename Missing>
void TextScan::digits() {
  if (!isAtDigit()) fail<Missing>();
  while (isAtDigit()) ++at_;
}

std::string_view TextScan::number() {
  const std::size_t begin = at_;
  skip('-');
  if (skip('0')) {
    if (isAtDigit()) fail<messages::DigitBehindZero>();
  } else {
    digits<messages::NoDigitBehindMinus>();
  }
  if (skip('.')) digits<messages::NoDigitBehindPoint>();
  if (isAt('e') || isAt('E')) {
    ++at_;
    if (!skip('+')) skip('-');
    digits<messages::NoDigitInExponent>();
  }
  return text_.substr(begin, at_ - begin);
}

std::string TextScan::string() {
  const std::size_t begin = at_;
  std::string content;
  ++at_;
  while (!isAt('"')) {
    if (isAtEnd()) fail<messages::UnfinishedString>(toUtf16(describe(placeOf(text_, begin))));
    if (isAt('\\')) {
      content += lx::text::toUtf8(escape());
      continue;
    }
    const CodePoint character = codePointAt(text_, at_);
    if (character.length == 0) fail<messages::NotUtf8>();
    if (character.value < 0x20) fail<messages::ControlCharacter>();
    content += text_.substr(at_, character.length);
    at_ += character.length;
  }
  ++at_;
  return content;
}

std::u16string TextScan::escape() {
  const std::size_t begin = at_;
  ++at_;
  if (!isAt('u')) return {shortEscape()};
  const char16_t unit = hexadecimalUnit();
  if (isSecondHalf(unit)) loneHalf<messages::FirstHalfMissing>(begin);
  if (!isFirstHalf(unit)) return {unit};
  if (!text_.substr(at_).starts_with("\\u")) loneHalf<messages::SecondHalfMissing>(begin);
  ++at_;
  const char16_t second = hexadecimalUnit();
  if (!isSecondHalf(second)) loneHalf<messages::SecondHalfMissing>(begin);
  return {unit, second};
}

char16_t TextScan::shortEscape() {
  constexpr std::string_view escapes = "\"\\/bfnrt";
  constexpr std::u16string_view meanings = u"\"\\/\b\f\n\r\t";
  const std::size_t which = isAtEnd() ? std::string_view::npos : escapes.find(text_[at_]);
  if (which == std::string_view::npos) fail<messages::UnknownEscape>();
  ++at_;
  return meanings[which];
}

char16_t TextScan::hexadecimalUnit() {
  ++at_;
  unsigned unit = 0;
  for (int count = 0; count < 4; ++count) {
    const int digit = isAtEnd() ? -1 : hexadecimalDigit(text_[at_]);
    if (digit < 0) fail<messages::NoHexadecimalDigit>();
    unit = unit * 16 + static_cast<unsigned>(digit);
    ++at_;
  }
  return static_cast<char16_t>(unit);
}

template <typename Message>
void TextScan::loneHalf(std::size_t begin) const {
  constexpr std::size_t escapeLength = 6;
  throw Fault{begin, Message(toUtf16(text_.substr(begin, escapeLength)))};
}

}  // namespace nd::adapters::json
