#pragma once

#include <string_view>

#include "platform/export.h"

namespace lx::text {

/// Tell whether two texts are equal once case and canonical composition are put aside: equal after canonical
/// decomposition and full default case folding, whatever the locale.
///
/// So ".TEST" equals ".test", "Straße" equals "STRASSE", and "é" equals "E" with a combining acute behind it;
/// but a dotless "ı" equals neither "i" nor "I", and a full-width "Ａ" is no "a". A surrogate without its
/// partner equals itself only. Throws what an allocation throws, and `std::length_error` when a text that
/// isn't plain ASCII is too long for the character tables' 31-bit lengths.
ND_PLATFORM_EXPORT bool equalNormalizedIgnoringCase(std::u16string_view left, std::u16string_view right);

}  // namespace lx::text
