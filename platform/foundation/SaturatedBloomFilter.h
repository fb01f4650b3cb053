#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <boost/uuid/uuid.hpp>

#include "platform/export.h"

namespace lx::base {

/// Tells quickly that an identity is not in a collection: what was added, and not removed as often, is always
/// found; what wasn't is found now and then.
///
/// The filter counts. A count that has reached its greatest value stays there, since it doesn't know any more
/// how often it was met; from then on it only finds too much. Only what was added may be removed.
class ND_PLATFORM_EXPORT SaturatedBloomFilter {
 public:
  /// Make a filter that finds about one identity in a hundred wrongly once it has so many.
  explicit SaturatedBloomFilter(std::size_t expected = 64);

  /// Add and remove an identity; neither throws nor needs memory.
  void add(const boost::uuids::uuid& uuid) noexcept;
  void remove(const boost::uuids::uuid& uuid) noexcept;

  /// Tell whether the identity may be here; false is certain.
  bool contains(const boost::uuids::uuid& uuid) const noexcept;

  /// Give the number of identities that the filter was made for.
  std::size_t expected() const noexcept { return expected_; }

 private:
  template <class F>
  void forEachPlace(const boost::uuids::uuid& uuid, F f) const noexcept;

  std::vector<std::uint8_t> counts_;  // as many as a power of two
  std::size_t expected_;
};

}  // namespace lx::base
