#pragma once

#include <cstddef>

#include "platform/host/internal/Body.h"

namespace hvdetail {

/// Numbers, truth values or characters, in the same piece of memory as the body itself.
class DataBody final : public Body {
 public:
  /// Make a body whose elements are all zero.
  static BodyRef create(hvClassCode classCode, hvComplexity complexity, Shape shape);

  const void* data() const noexcept { return this + 1; }
  void* data() noexcept { return this + 1; }

  BodyRef clone() const override;
  bool holdsSame(const Body& other) const override;
  std::size_t byteSize(SizeMemo& memo) const override;

  static void operator delete(void* memory) noexcept;

 private:
  struct Trailing {
    std::size_t bytes;
  };

  DataBody(hvClassCode classCode, hvComplexity complexity, Shape shape) noexcept;
  static void* operator new(std::size_t size, Trailing trailing);
  static void operator delete(void* memory, Trailing trailing) noexcept;

  std::size_t bytes() const noexcept;
  static BodyRef createUnset(hvClassCode classCode, hvComplexity complexity, Shape shape);
};

/// Tell how many bytes an element takes; 0 for classes that are no plain data.
std::size_t elementSize(hvClassCode classCode, hvComplexity complexity) noexcept;

}  // namespace hvdetail
