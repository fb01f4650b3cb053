#include "tools/ndx/JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/host/ArrayText.h"
#include "platform/text/Convert.h"

namespace nd::tools {
namespace {

std::string escaped(char16_t unit) {
  static constexpr std::string_view digits = "0123456789abcdef";
  std::string text = "\\u";
  for (unsigned shift = 16; shift > 0; shift -= 4) {
    text += digits[(static_cast<unsigned>(unit) >> (shift - 4)) & 0xFU];
  }
  return text;
}

std::size_t lengthOfSequence(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte < 0x80) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : 4;
}

void appendEscaped(std::string& result, std::string_view sequence) {
  if (sequence == "\"" || sequence == "\\") {
    result += '\\';
    result += sequence;
  } else if (hvEscape(sequence) == sequence) {
    result += sequence;
  } else {
    for (const char16_t unit : lx::text::toUtf16(sequence)) result += escaped(unit);
  }
}

template <typename T>
std::string digitsOf(T value) {
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), written.ptr};
}

template <typename T>
std::string digitsOfFloat(T value) {
  if (std::isnan(value)) return "\"NaN\"";
  if (std::isinf(value)) return value < 0 ? "\"-Inf\"" : "\"Inf\"";
  // As a whole number a negative zero would lose its sign with most readers.
  if (value == 0) return std::signbit(value) ? "-0.0" : "0";
  return digitsOf(value);
}

}  // namespace

JsonWriter& JsonWriter::key(std::string_view utf8) {
  text(utf8);
  out_.write(":");
  needsComma_ = false;
  return *this;
}

void JsonWriter::text(std::string_view utf8) {
  text(lx::text::toUtf16(utf8));
}

void JsonWriter::text(std::u16string_view text) {
  string(lx::text::toUtf8(text));
}

void JsonWriter::number(std::int64_t value) {
  plain(digitsOf(value));
}

void JsonWriter::number(std::uint64_t value) {
  plain(digitsOf(value));
}

void JsonWriter::number(double value) {
  plain(digitsOfFloat(value));
}

void JsonWriter::number(float value) {
  plain(digitsOfFloat(value));
}

void JsonWriter::truth(bool value) {
  plain(value ? "true" : "false");
}

void JsonWriter::null() {
  plain("null");
}

void JsonWriter::begin(char bracket) {
  separate();
  out_.write({&bracket, 1});
  needsComma_ = false;
}

void JsonWriter::end(char bracket) {
  out_.write({&bracket, 1});
  needsComma_ = true;
}

void JsonWriter::separate() {
  if (needsComma_) out_.write(",");
}

void JsonWriter::plain(std::string_view text) {
  separate();
  out_.write(text);
  needsComma_ = true;
}

void JsonWriter::string(std::string_view wellFormed) {
  std::string result = "\"";
  const bool isHarmless = hvEscape(wellFormed) == wellFormed;
  if (isHarmless && wellFormed.find_first_of("\"\\") == std::string_view::npos) {
    result += wellFormed;
  } else {
    while (!wellFormed.empty()) {
      const std::size_t length = lengthOfSequence(wellFormed.front());
      appendEscaped(result, wellFormed.substr(0, length));
      wellFormed.remove_prefix(length);
    }
  }
  plain(result + "\"");
}

}  // namespace nd::tools
