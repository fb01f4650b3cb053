#include "platform/foundation/SaturatedBloomFilter.h"

#include <bit>
#include <cstring>
#include <limits>

namespace lx::base {

namespace {

constexpr std::size_t CountsForEach = 12;  // with four places each, one wrong answer in a hundred and fifty
constexpr unsigned Places = 4;
constexpr std::uint8_t Saturated = std::numeric_limits<std::uint8_t>::max();

/// Spread the bits of a number, so that identities that are counted up differ everywhere.
std::uint64_t spread(std::uint64_t bits) noexcept {
  bits = (bits ^ (bits >> 31)) * 0x9e3779b97f4a7c15U;
  bits = (bits ^ (bits >> 29)) * 0xd6e8feb86659fd93U;
  return bits ^ (bits >> 32);
}

}  // namespace

SaturatedBloomFilter::SaturatedBloomFilter(std::size_t expected)
    : counts_(std::bit_ceil(CountsForEach * (expected == 0 ? 1 : expected))), expected_(expected) {}

/// Call f with the place of each count of an identity.
template <class F>
void SaturatedBloomFilter::forEachPlace(const boost::uuids::uuid& uuid, F f) const noexcept {
  std::uint64_t halves[2];
  static_assert(sizeof halves == sizeof uuid.data);
  std::memcpy(halves, uuid.data, sizeof halves);
  std::uint64_t place = spread(halves[0] + spread(halves[1]));
  const std::uint64_t step = spread(halves[1] + spread(halves[0])) | 1;  // odd, so that the places differ
  for (unsigned at = 0; at < Places; ++at, place += step) f(place & (counts_.size() - 1));
}

void SaturatedBloomFilter::add(const boost::uuids::uuid& uuid) noexcept {
  forEachPlace(uuid, [this](std::size_t place) {
    if (counts_[place] != Saturated) ++counts_[place];
  });
}

void SaturatedBloomFilter::remove(const boost::uuids::uuid& uuid) noexcept {
  forEachPlace(uuid, [this](std::size_t place) {
    if (counts_[place] != Saturated && counts_[place] != 0) --counts_[place];
  });
}

bool SaturatedBloomFilter::contains(const boost::uuids::uuid& uuid) const noexcept {
  bool found = true;
  forEachPlace(uuid, [&](std::size_t place) { found = found && counts_[place] != 0; });
  return found;
}

}  // namespace lx::base
