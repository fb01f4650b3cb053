#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <system_error>

#include <params/Reader.h>

#include "platform/text/Convert.h"

namespace params {
namespace {

constexpr std::size_t none = std::string_view::npos;

bool isLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

bool isNameCharacter(char byte) {
  return isLetter(byte) || isDigit(byte) || byte == '_';
}

bool isWordCharacter(char byte) {
  return isNameCharacter(byte) || byte == '.' || byte == '+' || byte == '-';
}

bool isControl(char byte) {
  return (byte >= 0 && byte < ' ') || byte == '\x7F';
}

bool isWithinCodePoint(char byte) {
  return (byte & 0xC0) == 0x80;
}

/// Find the first sequence that is not UTF-8: converting there and back replaces it.
std::size_t findIllFormed(std::string_view content) {
  const std::string replaced = lx::text::toUtf8(lx::text::toUtf16(content));
  const auto [left, right] = std::mismatch(content.begin(), content.end(), replaced.begin(), replaced.end());
  if (left == content.end() && right == replaced.end()) return none;
  // The replacement may begin with the same bytes.
  auto at = static_cast<std::size_t>(right - replaced.begin());
  while (isWithinCodePoint(replaced[at])) --at;
  return at;
}

/// Tell whether a word is a decimal number: a sign, digits, a fraction and an exponent, all but the digits
/// optional.
bool isNumber(std::string_view word) {
  const auto skip = [&](std::string_view any) {
    const bool isThere = !word.empty() && any.find(word.front()) != none;
    if (isThere) word.remove_prefix(1);
    return isThere;
  };
  const auto skipDigits = [&] {
    const auto end = std::find_if_not(word.begin(), word.end(), isDigit);
    const auto count = static_cast<std::size_t>(end - word.begin());
    word.remove_prefix(count);
    return count > 0;
  };
  skip("+-");
  if (!skipDigits()) return false;
  if (skip(".") && !skipDigits()) return false;
  if (skip("eE")) {
    skip("+-");
    if (!skipDigits()) return false;
  }
  return word.empty();
}

hvArrayPtr makeRow(const std::vector<double>& numbers) {
  hvArrayPtr row(hvCreateNumericMatrix(1, numbers.size(), hvClassCode::Double));
  std::copy(numbers.begin(), numbers.end(), hvGetWritableData<double>(row.get()).begin());
  return row;
}

/// Reads one line from its front to its end.
class Line {
 public:
  Line(std::string_view text, std::size_t number) : text_(text), number_(number) { skipBlanks(); }

  std::size_t position() const noexcept { return at_; }

  /// Tell whether nothing but a comment is left.
  bool isAtEnd() const { return at_ == text_.size() || text_[at_] == '#'; }

  [[noreturn]] void fail(std::size_t at, const std::string& words) const {
    const auto before =
        static_cast<std::size_t>(std::count_if(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at),
                                               [](char byte) { return !isWithinCodePoint(byte); }));
    throw FormatError(number_, before + 1, words);
  }

  std::string readName() {
    const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(at_);
    if (isAtEnd() || !isLetter(*begin)) {
      failHere("a name (a letter, then letters, digits and underscores)");
    }
    const std::string name(begin, std::find_if_not(begin, text_.end(), isNameCharacter));
    at_ += name.size();
    skipBlanks();
    return name;
  }

  void expectEqualSign() {
    if (!skip('=')) failHere("'=' behind the name");
  }

  hvArrayPtr readValue() {
    if (skip('[')) return makeRow(readList());
    if (!isAtEnd() && text_[at_] == '"') return hvArrayPtr(hvCreateString(readText()));
    const std::string_view word = wordHere();
    if (word == "true" || word == "false") {
      skipWord(word);
      return hvArrayPtr(hvCreateLogicalScalar(word == "true"));
    }
    return hvArrayPtr(hvCreateDoubleScalar(readNumber("a number, a list, a text, true or false")));
  }

  void expectEnd() const {
    if (!isAtEnd()) failHere("the end of the line or a comment");
  }

 private:
  [[noreturn]] void failHere(const std::string& expected) const {
    fail(at_, "expected " + expected + ", but found " + describe(at_));
  }

  std::string describe(std::size_t at) const {
    constexpr std::size_t widest = 24;
    if (at == text_.size()) return "the end of the line";
    std::size_t end = at + std::max<std::size_t>(wordAt(at).size(), 1);
    while (end < text_.size() && isWithinCodePoint(text_[end])) ++end;
    return "'" + hvCutToWidth(hvEscape(text_.substr(at, end - at)), widest) + "'";
  }

  std::string_view wordAt(std::size_t at) const {
    const std::string_view rest = text_.substr(at);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isWordCharacter);
    return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  }

  std::string_view wordHere() const { return wordAt(at_); }

  void skipBlanks() { at_ = std::min(text_.find_first_not_of(" \t", at_), text_.size()); }

  bool skip(char wanted) {
    if (at_ == text_.size() || text_[at_] != wanted) return false;
    ++at_;
    skipBlanks();
    return true;
  }

  void skipWord(std::string_view word) {
    at_ += word.size();
    skipBlanks();
  }

  double readNumber(const std::string& expected) {
    constexpr double firstInexactInteger = 9007199254740992.0;
    const std::string_view word = wordHere();
    if (!isNumber(word)) failHere(expected);
    const std::string_view digits = word.substr(word.front() == '+' ? 1 : 0);
    double number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc()) {
      failHere("a number within the range of a double");
    }
    if (word.find_first_of(".eE") == none && std::abs(number) >= firstInexactInteger) {
      failHere("an integer below 9007199254740992, so that a double holds it exactly");
    }
    skipWord(word);
    return number;
  }

  std::vector<double> readList() {
    std::vector<double> numbers;
    if (skip(']')) return numbers;
    do {
      numbers.push_back(readNumber("a number in the list"));
    } while (skip(','));
    if (!skip(']')) failHere("',' or ']' behind a number of the list");
    return numbers;
  }

  std::string readText() {
    std::string text;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == '"') {
        skip('"');
        return text;
      }
      if (isControl(text_[at_])) failHere("a text without control characters");
      text += text_[at_] == '\\' ? readEscape() : text_[at_];
    }
    failHere("a double quote at the end of the text");
  }

  char readEscape() {
    constexpr std::string_view letters = "\"\\nt";
    constexpr std::string_view meanings = "\"\\\n\t";
    const std::size_t known = at_ + 1 < text_.size() ? letters.find(text_[at_ + 1]) : none;
    if (known == none) {
      fail(at_, "expected \\\", \\\\, \\n or \\t, but found a backslash and then " + describe(at_ + 1));
    }
    ++at_;
    return meanings[known];
  }

  std::string_view text_;
  std::size_t number_;
  std::size_t at_ = 0;
};

/// Cuts a content into lines, which end with a line feed or with a carriage return and a line feed.
class Lines {
 public:
  explicit Lines(std::string_view content) : rest_(content) {}

  bool next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
  }

 private:
  std::string_view rest_;
};

void refuseIllFormed(std::string_view content) {
  const std::size_t at = findIllFormed(content);
  if (at == none) return;
  const std::string_view before = content.substr(0, at);
  const auto number = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
  const std::size_t begin = before.rfind('\n') + 1;
  Line(content.substr(begin), number).fail(at - begin, "expected UTF-8, but found bytes that are not");
}

}  // namespace

std::vector<Variable> readVariables(std::string_view content) {
  refuseIllFormed(content);
  std::vector<Variable> variables;
  std::map<std::string, std::size_t> lineOf;
  Lines lines(content);
  std::string_view text;
  for (std::size_t number = 1; lines.next(text); ++number) {
    Line line(text, number);
    if (line.isAtEnd()) continue;
    const std::size_t begin = line.position();
    std::string name = line.readName();
    const auto [earlier, isNew] = lineOf.emplace(name, number);
    if (!isNew) {
      line.fail(begin, "expected a name that the file doesn't have yet, but found '" + name +
                           "', which it has in line " + std::to_string(earlier->second));
    }
    line.expectEqualSign();
    variables.push_back({std::move(name), line.readValue()});
    line.expectEnd();
  }
  return variables;
}

}  // namespace params
