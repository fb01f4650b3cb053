#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Hashes for tables that are keyed by text. The values hold within one process only: they are not for files.
//
//   std::unordered_map<std::u16string, Value, lx::text::Hash, lx::text::Equal> byName;
//   std::unordered_map<std::string, Value, lx::text::Hash, std::equal_to<>> byNarrowName;

namespace lx::text {

namespace detail {

template <typename Word>
Word load(const char* bytes) noexcept {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

inline std::uint64_t mix(std::uint64_t hash, std::uint64_t word) noexcept {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 32);
}

// All of the text counts, by words of eight bytes. The last word overlaps the one before it, which loses
// nothing because the length counts too.
inline std::size_t hashBytes(const char* bytes, std::size_t count) noexcept {
  std::uint64_t hash = mix(0x2545F4914F6CDD1DU, count);
  if (count >= 8) {
    const char* const last = bytes + count - 8;
    for (; bytes < last; bytes += 8) hash = mix(hash, load<std::uint64_t>(bytes));
    hash = mix(hash, load<std::uint64_t>(last));
  } else if (count >= 4) {
    const std::uint64_t high = load<std::uint32_t>(bytes + count - 4);
    hash = mix(hash, (high << 32) | load<std::uint32_t>(bytes));
  } else if (count > 0) {
    const std::uint64_t first = load<std::uint8_t>(bytes);
    const std::uint64_t middle = load<std::uint8_t>(bytes + count / 2);
    const std::uint64_t last = load<std::uint8_t>(bytes + count - 1);
    hash = mix(hash, (first << 16) | (middle << 8) | last);
  }
  hash *= 0xD6E8FEB86659FD93U;
  return hash ^ (hash >> 32);
}

}  // namespace detail

/// Hash a text by its code units, so that texts that are equal by `equal` have equal hashes.
inline std::size_t hash(std::u16string_view text) noexcept {
  return detail::hashBytes(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
}

/// Hash a narrow text by its bytes. The result has nothing to do with that of the same text in UTF-16.
inline std::size_t hash(std::string_view text) noexcept {
  return detail::hashBytes(text.data(), text.size());
}

/// Hash of keys in hashed containers; looks up views without making a string.
struct Hash {
  using is_transparent = void;

  std::size_t operator()(std::u16string_view text) const noexcept { return hash(text); }
  std::size_t operator()(std::string_view text) const noexcept { return hash(text); }
};

}  // namespace lx::text
