#pragma once

#include <string>
#include <string_view>

#include "platform/export.h"

namespace lx::text {

/// Convert UTF-16 to UTF-8. Each surrogate without its partner becomes U+FFFD; every other code point, NUL
/// included, is kept. Throws nothing but what an allocation throws.
ND_PLATFORM_EXPORT std::string toUtf8(std::u16string_view wide);

/// Convert UTF-8 to UTF-16. Each maximal ill-formed sequence becomes one U+FFFD: the longest beginning of a
/// well-formed sequence that breaks off, or else a single byte. So encoded surrogates, overlong forms and
/// values above U+10FFFF give one U+FFFD for each of their bytes. Throws nothing but what an allocation
/// throws.
ND_PLATFORM_EXPORT std::u16string toUtf16(std::string_view narrow);

}  // namespace lx::text
