#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Pieces of the sentences that say what is wrong with a text.
namespace nd::adapters::json {

/// Tell in words what stands at an offset, for the end of a sentence: "'}'", "a line break", "the end of the
/// text". A word that begins with an ASCII letter is told whole.
std::string describeFound(std::string_view text, std::size_t offset);

/// As above, but a number is told whole.
std::string describeNumber(std::string_view text, std::size_t offset);

/// Give a piece of a text so that it fits a line and can't drive a terminal; what is cut off is shown as "…".
std::string shorten(std::string_view text);

/// As above, in double quotes.
std::string quoteName(std::string_view name);

/// Give the path of a file whole, in double quotes, so that it can't drive a terminal.
std::string quotePath(std::string_view path);

/// Give a name as `quoteName` does, or a number, as the argument of a message.
std::u16string quoted(std::string_view name);
std::u16string spelled(std::size_t number);

}  // namespace nd::adapters::json
