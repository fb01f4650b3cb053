#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Texts are equal and ordered by their code units: case matters, nothing is normalised, and a surrogate
// without its partner is a unit like any other.
//
//   std::map<std::u16string, Entry, lx::text::Less> entries;
//   entries.find(std::u16string_view(name));  // no copy of the name is made

namespace lx::text {

/// Tell whether two texts are the same sequence of code units.
inline bool equal(std::u16string_view left, std::u16string_view right) noexcept {
  return left.size() == right.size() &&
         (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0);
}

/// Compare two texts by code unit; a text comes before every longer one that it begins. The result is
/// negative, zero or positive as left comes before, equals or comes behind right.
inline int compare(std::u16string_view left, std::u16string_view right) noexcept {
  static_assert(std::endian::native == std::endian::little || std::endian::native == std::endian::big);
  constexpr std::size_t step = sizeof(std::uint64_t) / sizeof(char16_t);
  const std::size_t common = left.size() < right.size() ? left.size() : right.size();
  std::size_t at = 0;
  for (; at + step <= common; at += step) {
    std::uint64_t l = 0;
    std::uint64_t r = 0;
    std::memcpy(&l, left.data() + at, sizeof l);
    std::memcpy(&r, right.data() + at, sizeof r);
    if (l != r) {
      const int same =
          std::endian::native == std::endian::little ? std::countr_zero(l ^ r) : std::countl_zero(l ^ r);
      at += static_cast<std::size_t>(same) / 16;
      return left[at] < right[at] ? -1 : 1;
    }
  }
  for (; at < common; ++at) {
    if (left[at] != right[at]) return left[at] < right[at] ? -1 : 1;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

/// Order of keys in ordered containers; looks up views without making a string.
struct Less {
  using is_transparent = void;

  bool operator()(std::u16string_view left, std::u16string_view right) const noexcept {
    return compare(left, right) < 0;
  }
};

/// Equality of keys in hashed containers; looks up views without making a string.
struct Equal {
  using is_transparent = void;

  bool operator()(std::u16string_view left, std::u16string_view right) const noexcept {
    return equal(left, right);
  }
};

}  // namespace lx::text
