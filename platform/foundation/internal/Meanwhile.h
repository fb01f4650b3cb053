#pragma once

#include <type_traits>
#include <utility>

namespace lx::base::detail {

/// Gives a place another value for as long as it lives.
template <class T>
class Meanwhile {
 public:
  Meanwhile(T& place, std::type_identity_t<T> value)
      : place_(place), former_(std::exchange(place, std::move(value))) {}
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;
  ~Meanwhile() { place_ = std::move(former_); }

 private:
  T& place_;
  T former_;
};

}  // namespace lx::base::detail
