#include "adapters/json/Checksum.h"

// The state is an incomplete type unless this is defined; the library's own way to make one goes past `new`.
#define XXH_STATIC_LINKING_ONLY
#include <xxhash.h>

namespace nd::adapters::json {
namespace {

std::u16string spell(XXH128_hash_t hash) {
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, hash);
  std::u16string text;
  text.reserve(2 * sizeof canonical.digest);
  for (const unsigned char byte : canonical.digest) {
    constexpr std::u16string_view digits = u"0123456789abcdef";
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

}  // namespace

struct Checksum::State {
  XXH3_state_t hash;
};

Checksum::Checksum() : state_(std::make_unique<State>()) {
  XXH3_128bits_reset(&state_->hash);
}

Checksum::~Checksum() = default;

void Checksum::add(std::string_view piece) noexcept {
  XXH3_128bits_update(&state_->hash, piece.data(), piece.size());
}

std::u16string Checksum::text() const {
  return spell(XXH3_128bits_digest(&state_->hash));
}

std::u16string checksumOf(std::string_view content) {
  return spell(XXH3_128bits(content.data(), content.size()));
}

}  // namespace nd::adapters::json
