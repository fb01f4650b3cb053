#include "adapters/json/SyntaxCheck.h"

#include <algorithm>
#include <array>
#include <utility>

#include "adapters/json/CodePoint.h"
#include "adapters/json/Limits.h"
#include "adapters/json/Place.h"
#include "adapters/json/Wording.h"

namespace nd::adapters::json {
namespace {

constexpr std::string_view aValue = "a value (an object, an array, a string, a number, true, false or null)";

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isWordCharacter(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z') || character == '_';
}

int hexadecimalDigit(char character) {
  if (isDigit(character)) return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

/// Walks the text by recursive descent and throws the first fault.
class SyntaxWalk {
 public:
  explicit SyntaxWalk(std::string_view text) : text_(text) {}

  void document() {
    skipSpace();
    if (!isAt('{')) fail("'{' at the beginning of the object that holds the variables");
    object();
    skipSpace();
    if (at_ != text_.size()) fail("the end of the text behind the object that holds the variables");
  }

 private:
  [[noreturn]] void fail(std::string_view expected) const {
    throw SyntaxFault{at_, "expected " + std::string(expected) + ", but found " + describeFound(text_, at_)};
  }

  bool isAt(char character) const { return at_ < text_.size() && text_[at_] == character; }
  bool isAtDigit() const { return at_ < text_.size() && isDigit(text_[at_]); }

  bool skip(char character) {
    if (!isAt(character)) return false;
    ++at_;
    return true;
  }

  void skipSpace() {
    constexpr std::string_view space = " \t\n\r";
    at_ = std::min(text_.find_first_not_of(space, at_), text_.size());
  }

  void enter() {
    if (++depth_ > maximumDepth) {
      fail("at most " + std::to_string(maximumDepth) + " levels of objects and arrays");
    }
    ++at_;
    skipSpace();
  }

  void object() {
    enter();
    if (!isAt('}')) members();
    ++at_;
    --depth_;
  }

  void members() {
    if (!isAt('"')) fail("a member's name in double quotes or '}'");
    while (true) {
      string();
      skipSpace();
      if (!skip(':')) fail("':' behind the member's name");
      value(aValue);
      skipSpace();
      if (isAt('}')) return;
      if (!skip(',')) fail("',' or '}' behind the member's value");
      skipSpace();
      if (!isAt('"')) fail("a member's name in double quotes behind ','");
    }
  }

  void array() {
    enter();
    if (isAt(']')) {
      ++at_;
      --depth_;
      return;
    }
    value(std::string(aValue) + " or ']'");
    skipSpace();
    while (skip(',')) {
      value(aValue);
      skipSpace();
    }
    if (!skip(']')) fail("',' or ']' behind the element");
    --depth_;
  }

  void value(std::string_view expected) {
    skipSpace();
    if (isAt('{')) return object();
    if (isAt('[')) return array();
    if (isAt('"')) return string();
    if (isAt('-') || isAtDigit()) return number();
    if (!literal()) fail(expected);
  }

  bool literal() {
    constexpr std::array<std::string_view, 3> literals{"true", "false", "null"};
    const std::string_view rest = text_.substr(at_);
    for (const std::string_view literal : literals) {
      if (!rest.starts_with(literal)) continue;
      if (rest.size() > literal.size() && isWordCharacter(rest[literal.size()])) return false;
      at_ += literal.size();
      return true;
    }
    return false;
  }

  void digits(std::string_view expected) {
    if (!isAtDigit()) fail(expected);
    while (isAtDigit()) ++at_;
  }

  void number() {
    if (skip('-') && !isAtDigit()) fail("a digit behind the minus sign");
    if (skip('0')) {
      if (isAtDigit()) fail("no digit behind a leading zero");
    } else {
      digits("a digit");
    }
    if (skip('.')) digits("a digit behind the decimal point");
    if (isAt('e') || isAt('E')) {
      ++at_;
      if (!skip('+')) skip('-');
      digits("a digit in the exponent");
    }
  }

  void string() {
    stringBegin_ = at_;
    ++at_;
    while (!isAt('"')) {
      if (at_ == text_.size()) {
        fail("'\"' at the end of the string that begins in " + describe(placeOf(text_, stringBegin_)));
      }
      if (isAt('\\')) {
        escape();
        continue;
      }
      const CodePoint character = codePointAt(text_, at_);
      if (character.length == 0) fail("well-formed UTF-8");
      if (character.value < 0x20)
        fail("an escape such as \\n in place of a control character, or the end of the string");
      at_ += character.length;
    }
    ++at_;
  }

  void escape() {
    const std::size_t begin = at_;
    ++at_;
    if (!isAt('u')) {
      constexpr std::string_view escapes = "\"\\/bfnrt";
      if (at_ == text_.size() || escapes.find(text_[at_]) == std::string_view::npos) {
        fail("one of \" \\ / b f n r t u behind '\\'");
      }
      ++at_;
      return;
    }
    const unsigned unit = hexadecimalUnit();
    if (unit >= 0xDC00 && unit <= 0xDFFF) loneSurrogate(begin, "the first half of a surrogate pair ahead of");
    if (unit < 0xD800 || unit > 0xDBFF) return;
    if (!text_.substr(at_).starts_with("\\u"))
      loneSurrogate(begin, "the second half of a surrogate pair behind");
    ++at_;
    const unsigned second = hexadecimalUnit();
    if (second < 0xDC00 || second > 0xDFFF)
      loneSurrogate(begin, "the second half of a surrogate pair behind");
  }

  unsigned hexadecimalUnit() {
    ++at_;
    unsigned unit = 0;
    for (int count = 0; count < 4; ++count) {
      const int digit = at_ < text_.size() ? hexadecimalDigit(text_[at_]) : -1;
      if (digit < 0) fail("four hexadecimal digits behind '\\u'");
      unit = unit * 16 + static_cast<unsigned>(digit);
      ++at_;
    }
    return unit;
  }

  [[noreturn]] void loneSurrogate(std::size_t begin, std::string_view expected) const {
    constexpr std::size_t escapeLength = 6;
    const std::string escape(text_.substr(begin, escapeLength));
    throw SyntaxFault{begin, "expected " + std::string(expected) + " " + escape + ", but found it alone"};
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
  std::size_t stringBegin_ = 0;
};

}  // namespace

boost::optional<SyntaxFault> findSyntaxFault(std::string_view text) {
  try {
    SyntaxWalk(text).document();
  } catch (SyntaxFault& fault) {
    return std::move(fault);
  }
  return boost::none;
}

}  // namespace nd::adapters::json
