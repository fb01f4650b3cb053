#pragma once

/// Kinds of ASCII characters, whatever the locale.
namespace nd::adapters::json {

constexpr bool isDigit(char character) noexcept {
  return character >= '0' && character <= '9';
}

constexpr bool isLetter(char character) noexcept {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// A letter, a digit or an underscore.
constexpr bool isWordCharacter(char character) noexcept {
  return isLetter(character) || isDigit(character) || character == '_';
}

}  // namespace nd::adapters::json
