#include "platform/text/FoldedCompare.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include "platform/text/Compare.h"

namespace lx::text {

namespace {

bool isAscii(unsigned unit) {
  return unit < 0x80;
}

// Tell whether two characters of ASCII that aren't the same are the two cases of one letter.
bool differInCaseOnly(unsigned left, unsigned right) {
  constexpr unsigned caseBit = u'a' ^ u'A';
  const unsigned lower = left | caseBit;
  return (left ^ right) == caseBit && lower >= u'a' && lower <= u'z';
}

constexpr auto longest = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());

// Room for a text and what it is likely to grow by, yet never so much that the tables refuse the buffer
// before they have looked at the text.
constexpr std::size_t roomFor(std::int32_t length, std::size_t growth) {
  return std::min(static_cast<std::size_t>(length) + growth, longest);
}
static_assert(roomFor(0, 4) == 4);
static_assert(roomFor(std::numeric_limits<std::int32_t>::max(), longest / 2 + 4) == longest);

std::int32_t lengthOf(std::u16string_view text) {
  if (text.size() > longest) {
    throw std::length_error(
        "A text is too long to be compared without regard to case: the limit is 2^31 - 1 units.");
  }
  return static_cast<std::int32_t>(text.size());
}

void check(UErrorCode status) {
  if (U_SUCCESS(status)) return;
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_BUFFER_OVERFLOW_ERROR) {
    throw std::length_error(
        "A text is too long to be compared without regard to case: it grows beyond 2^31 - 1 units.");
  }
  throw std::runtime_error(std::string("The character tables can't be used: ") + u_errorName(status));
}

// Calls a function of ICU that fills a buffer, and once more with a larger one if the first is too small.
template <typename Fill>
std::u16string filled(std::size_t room, Fill fill) {
  std::u16string result(room, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = fill(result.data(), lengthOf(result), status);
  if (status == U_BUFFER_OVERFLOW_ERROR && length > 0) {
    result.resize(static_cast<std::size_t>(length));
    status = U_ZERO_ERROR;
    length = fill(result.data(), length, status);
  }
  check(status);
  result.resize(static_cast<std::size_t>(length));
  return result;
}

std::u16string decomposed(std::u16string_view text) {
  const std::int32_t length = lengthOf(text);
  UErrorCode status = U_ZERO_ERROR;
  const UNormalizer2* const nfd = unorm2_getNFDInstance(&status);
  check(status);
  return filled(roomFor(length, text.size() / 2 + 4),
                [&](char16_t* to, std::int32_t capacity, UErrorCode& error) {
                  return unorm2_normalize(nfd, text.data(), length, to, capacity, &error);
                });
}

std::u16string folded(std::u16string_view text) {
  const std::int32_t length = lengthOf(text);
  return filled(roomFor(length, 4), [&](char16_t* to, std::int32_t capacity, UErrorCode& error) {
    return u_strFoldCase(to, capacity, text.data(), length, U_FOLD_CASE_DEFAULT, &error);
  });
}

// Canonical caseless matching is defined with a decomposition on both sides of folding. The tables of today
// fold decomposed text to decomposed text; nothing promises that for those of tomorrow.
std::u16string canonicalFold(std::u16string_view text) {
  return decomposed(folded(decomposed(text)));
}

}  // namespace

bool equalNormalizedIgnoringCase(std::u16string_view left, std::u16string_view right) {
  // No character reorders or composes across an ASCII one, and none folds to nothing: so what is ASCII on
  // both sides is compared by itself, and the tables decide about the rest.
  const std::size_t common = std::min(left.size(), right.size());
  std::size_t at = 0;
  for (; at < common; ++at) {
    const unsigned l = left[at];
    const unsigned r = right[at];
    if (!isAscii(l | r)) break;
    if (l != r && !differInCaseOnly(l, r)) return false;
  }
  left.remove_prefix(at);
  right.remove_prefix(at);
  if (equal(left, right)) return true;
  if (left.empty() || right.empty()) return false;
  return equal(canonicalFold(left), canonicalFold(right));
}

}  // namespace lx::text
