#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hvdetail {

/// Read a code point and move the position behind it. A lone surrogate is given as itself, an ill-formed
/// sequence of UTF-8 as U+FFFD.
char32_t nextCodePoint(std::u16string_view text, std::size_t& position) noexcept;
char32_t nextCodePoint(std::string_view utf8, std::size_t& position) noexcept;

/// Tell how many columns of a terminal a code point takes.
std::size_t columnsOf(char32_t codePoint) noexcept;

/// Append a code point in a form that can't drive a terminal, and tell its columns. Within quotes the quote
/// and the backslash are escaped too.
std::size_t appendSafely(std::string& text, char32_t codePoint, bool withinQuotes);

/// Append a text in double quotes and tell its columns.
std::size_t appendQuoted(std::string& text, std::u16string_view quoted);

/// Cut to so many columns and end with "…", also when all of it would fit.
std::string cutWithEllipsis(std::string_view utf8, std::size_t width);

}  // namespace hvdetail
