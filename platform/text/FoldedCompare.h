#pragma once

#include <string_view>

#include "platform/export.h"

namespace lx::text {

/// Tell whether two texts are equal once case and canonical composition are put aside: equal after canonical
/// decomposition and full default case folding, whatever the locale.
///
/// So ".TEST" equals ".test", "Straße" equals "STRASSE", and "é" equals "E" with a combining acute behind it;
/// but a dotless "ı" equals neither "i" nor "I", and a full-width "Ａ" is no "a". A surrogate without its
/// partner equals itself only.
///
/// Throws what an allocation throws; `std::length_error` when either text is too long for the 31-bit lengths
/// of the character tables, though two texts of plain ASCII may be of any length; and `std::runtime_error`
/// when the tables can't be used.
ND_PLATFORM_EXPORT bool equalNormalizedIgnoringCase(std::u16string_view left, std::u16string_view right);

}  // namespace lx::text
