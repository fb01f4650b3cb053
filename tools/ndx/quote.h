#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nd::tools {

/// Put a text between double quotes, for a sentence.
std::string quote(std::string_view text);
std::string quote(std::u16string_view text);

/// Quote each text and join them with commas.
std::string quoteAll(const std::vector<std::string>& texts);

/// Write a text as one word of a POSIX shell.
std::string shellWord(std::string_view text);

/// Join texts with something between each two.
std::string join(const std::vector<std::string>& texts, std::string_view between);

/// Tell whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// Give a count with its noun: "1 variable", "3 variables".
std::string count(std::size_t number, std::string_view noun);

}  // namespace nd::tools
