#include "platform/host/internal/DataBody.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace hvdetail {
namespace {

// Parts of complex numbers are compared like numbers of their own.
template <typename Number, typename Bits>
bool sameNumbers(const void* left, const void* right, std::size_t bytes) {
  const Number* const leftNumbers = static_cast<const Number*>(left);
  const Number* const rightNumbers = static_cast<const Number*>(right);
  for (std::size_t i = 0; i < bytes / sizeof(Number); ++i) {
    Bits leftBits = 0;
    Bits rightBits = 0;
    std::memcpy(&leftBits, leftNumbers + i, sizeof(Bits));
    std::memcpy(&rightBits, rightNumbers + i, sizeof(Bits));
    const bool bothNan = std::isnan(leftNumbers[i]) && std::isnan(rightNumbers[i]);
    if (leftBits != rightBits && !bothNan) return false;
  }
  return true;
}

}  // namespace

std::size_t elementSize(hvClassCode classCode, hvComplexity complexity) noexcept {
  const std::size_t parts = complexity == hvComplexity::Complex ? 2 : 1;
  switch (classCode) {
    case hvClassCode::Logical:
    case hvClassCode::Int8:
    case hvClassCode::UInt8:
      return parts;
    case hvClassCode::Character:
    case hvClassCode::Int16:
    case hvClassCode::UInt16:
      return 2 * parts;
    case hvClassCode::Single:
    case hvClassCode::Int32:
    case hvClassCode::UInt32:
      return 4 * parts;
    case hvClassCode::Double:
    case hvClassCode::Int64:
    case hvClassCode::UInt64:
      return 8 * parts;
    default:
      return 0;
  }
}

DataBody::DataBody(hvClassCode classCode, hvComplexity complexity, Shape shape) noexcept
    : Body(classCode, complexity, std::move(shape)) {}

void* DataBody::operator new(std::size_t size, Trailing trailing) {
  return ::operator new(size + trailing.bytes);
}
void DataBody::operator delete(void* memory, Trailing) noexcept {
  ::operator delete(memory);
}
void DataBody::operator delete(void* memory) noexcept {
  ::operator delete(memory);
}

BodyRef DataBody::createUnset(hvClassCode classCode, hvComplexity complexity, Shape shape) {
  const std::size_t bytes = checkedBytes(shape.count(), elementSize(classCode, complexity));
  return BodyRef(new (Trailing{bytes}) DataBody(classCode, complexity, std::move(shape)));
}

BodyRef DataBody::create(hvClassCode classCode, hvComplexity complexity, Shape shape) {
  BodyRef body = createUnset(classCode, complexity, std::move(shape));
  auto& made = static_cast<DataBody&>(*body);
  std::memset(made.data(), 0, made.bytes());
  return body;
}

BodyRef DataBody::clone() const {
  BodyRef copy = createUnset(classCode(), complexity(), shape());
  std::memcpy(static_cast<DataBody&>(*copy).data(), data(), bytes());
  return copy;
}

bool DataBody::holdsSame(const Body& other) const {
  const void* const theirs = static_cast<const DataBody&>(other).data();
  if (std::memcmp(data(), theirs, bytes()) == 0) return true;
  if (classCode() == hvClassCode::Double) return sameNumbers<double, std::uint64_t>(data(), theirs, bytes());
  if (classCode() == hvClassCode::Single) return sameNumbers<float, std::uint32_t>(data(), theirs, bytes());
  return false;
}

std::size_t DataBody::byteSize(SizeMemo&) const {
  return bytes();
}

std::size_t DataBody::bytes() const noexcept {
  return count() * elementSize(classCode(), complexity());
}

}  // namespace hvdetail
