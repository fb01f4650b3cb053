#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "adapters/json/Fault.h"
#include "adapters/json/Wording.h"
#include "adapters/json/characters.h"
#include "platform/text/Convert.h"

namespace nd::adapters::json {

/// Walks a text of JSON (RFC 8259) in UTF-8 from token to token, and throws a `Fault` for the first that is
/// ill-formed.
class TextScan {
 public:
  TextScan(std::string_view text, std::size_t offset) noexcept : text_(text), at_(offset) {}

  std::string_view text() const noexcept { return text_; }
  std::size_t offset() const noexcept { return at_; }

  bool isAt(char character) const noexcept { return at_ < text_.size() && text_[at_] == character; }
  bool isAtEnd() const noexcept { return at_ == text_.size(); }
  bool isAtNumber() const noexcept { return isAt('-') || isAtDigit(); }

  /// Pass a character if it stands here.
  bool skip(char character) noexcept {
    if (!isAt(character)) return false;
    ++at_;
    return true;
  }

  void skipSpace() noexcept;

  /// Pass a word such as "true" if it stands here whole.
  bool skipWord(std::string_view word) noexcept;

  /// Pass a number, which begins here, and give it. Its size is not looked at.
  std::string_view number();

  /// Pass a string, which begins here, and give it without its escapes, in UTF-8.
  std::string string();

  /// Throw that something else stands here than must; what stands here is the message's last argument.
  template <typename Message, typename... Arguments>
  [[noreturn]] void fail(const Arguments&... arguments) const {
    throw Fault{at_, Message(arguments..., lx::text::toUtf16(describeFound(text_, at_)))};
  }

 private:
  bool isAtDigit() const noexcept { return at_ < text_.size() && isDigit(text_[at_]); }
  template <typename Missing>
  void digits();
  std::u16string escape();
  char16_t shortEscape();
  char16_t hexadecimalUnit();
  template <typename Message>
  [[noreturn]] void loneHalf(std::size_t begin) const;

  std::string_view text_;
  std::size_t at_;
};

}  // namespace nd::adapters::json
