#include "adapters/json/TextCheck.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "adapters/json/CodePoint.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/Limits.h"
#include "adapters/json/MemberNames.h"
#include "adapters/json/Place.h"
#include "adapters/json/VariableName.h"
#include "adapters/json/Wording.h"
#include "adapters/json/characters.h"
#include "adapters/json/messages.h"
#include "platform/text/Convert.h"

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

std::u16string spell(std::size_t number) {
  return toUtf16(std::to_string(number));
}

/// Walks the text by recursive descent and throws the first fault.
class TextWalk {
 public:
  explicit TextWalk(std::string_view text) : text_(text) {}

  void document() {
    skipSpace();
    if (!isAt('{')) fail<messages::NoObjectAtTop>(u"'{'");
    object();
    skipSpace();
    if (at_ != text_.size()) fail<messages::TextBehindObject>();
  }

 private:
  /// Throw that something else stands here than must.
  template <typename Message, typename... Arguments>
  [[noreturn]] void fail(const Arguments&... arguments) const {
    throw Fault{at_, Message(arguments..., toUtf16(describeFound(text_, at_)))};
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
    if (depth_ == maximumDepth) fail<messages::TooManyLevels>(spell(maximumDepth));
    ++depth_;
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
    if (!isAt('"')) fail<messages::NoMemberOrEnd>(u"'}'");
    MemberNames names;
    while (true) {
      name(names);
      skipSpace();
      if (!skip(':')) fail<messages::NoColon>();
      value<messages::NoValue>();
      skipSpace();
      if (isAt('}')) return;
      if (!skip(',')) fail<messages::NoCommaBehindMember>(u"'}'");
      skipSpace();
      if (!isAt('"')) fail<messages::NoMemberBehindComma>();
    }
  }

  void name(MemberNames& names) {
    const std::size_t begin = at_;
    std::string spelled;
    string(&spelled);
    if (const auto earlier = names.add(spelled, begin)) {
      const Place place = placeOf(text_, names.offsetOf(*earlier));
      throw Fault{begin, messages::RepeatedName(toUtf16(quoteName(spelled)), toUtf16(describe(place)))};
    }
    const bool isVariable = depth_ == 1;
    if (isVariable && !isVariableName(spelled))
      throw Fault{begin, messages::NoVariableName(toUtf16(quoteName(spelled)))};
    if (isVariable && isTooLongForVariable(spelled)) {
      throw Fault{begin,
                  messages::VariableNameTooLong(spell(maximumVariableNameLength), spell(spelled.size()))};
    }
  }

  void array() {
    enter();
    if (!isAt(']')) elements();
    ++at_;
    --depth_;
  }

  void elements() {
    value<messages::NoElementOrEnd>();
    while (true) {
      skipSpace();
      if (isAt(']')) return;
      if (!skip(',')) fail<messages::NoCommaBehindElement>();
      value<messages::NoValue>();
    }
  }

  template <typename Missing>
  void value() {
    skipSpace();
    if (isAt('{')) return object();
    if (isAt('[')) return array();
    if (isAt('"')) return string();
    if (isAt('-') || isAtDigit()) return number();
    if (!literal()) fail<Missing>();
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

  template <typename Missing>
  void digits() {
    if (!isAtDigit()) fail<Missing>();
    while (isAtDigit()) ++at_;
  }

  void number() {
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
    checkSize(begin);
  }

  void checkSize(std::size_t begin) const {
    const std::string_view literal = text_.substr(begin, at_ - begin);
    const auto rounded = nearestDouble(literal);
    if (!rounded) throw Fault{begin, messages::NumberTooLarge(toUtf16(shorten(literal)))};
    if (exactNumber(literal, *rounded).numberClass == NumberClass::None)
      throw Fault{begin, messages::IntegerTooLarge(toUtf16(shorten(literal)))};
  }

  /// Pass a string, and keep it without its escapes if that is wanted.
  void string(std::string* content = nullptr) {
    const std::size_t begin = at_;
    ++at_;
    while (!isAt('"')) {
      if (at_ == text_.size()) fail<messages::UnfinishedString>(toUtf16(describe(placeOf(text_, begin))));
      if (isAt('\\')) {
        const std::u16string escaped = escape();
        if (content) content->append(lx::text::toUtf8(escaped));
        continue;
      }
      const CodePoint character = codePointAt(text_, at_);
      if (character.length == 0) fail<messages::NotUtf8>();
      if (character.value < 0x20) fail<messages::ControlCharacter>();
      if (content) content->append(text_.substr(at_, character.length));
      at_ += character.length;
    }
    ++at_;
  }

  std::u16string escape() {
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

  char16_t shortEscape() {
    constexpr std::string_view escapes = "\"\\/bfnrt";
    constexpr std::u16string_view meanings = u"\"\\/\b\f\n\r\t";
    const std::size_t which = at_ == text_.size() ? std::string_view::npos : escapes.find(text_[at_]);
    if (which == std::string_view::npos) fail<messages::UnknownEscape>();
    ++at_;
    return meanings[which];
  }

  char16_t hexadecimalUnit() {
    ++at_;
    unsigned unit = 0;
    for (int count = 0; count < 4; ++count) {
      const int digit = at_ < text_.size() ? hexadecimalDigit(text_[at_]) : -1;
      if (digit < 0) fail<messages::NoHexadecimalDigit>();
      unit = unit * 16 + static_cast<unsigned>(digit);
      ++at_;
    }
    return static_cast<char16_t>(unit);
  }

  template <typename Message>
  [[noreturn]] void loneHalf(std::size_t begin) const {
    constexpr std::size_t escapeLength = 6;
    throw Fault{begin, Message(toUtf16(text_.substr(begin, escapeLength)))};
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
};

}  // namespace

boost::optional<Fault> findFault(std::string_view text) {
  try {
    TextWalk(text).document();
  } catch (Fault& fault) {
    return std::move(fault);
  }
  return boost::none;
}

}  // namespace nd::adapters::json
