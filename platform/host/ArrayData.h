#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Access to the elements of numeric, logical and character arrays.
///
/// The type of an element follows from the class, exactly: bool for logical, char16_t for char (UTF-16
/// units), float and double, std::int8_t to std::uint64_t, and std::complex of a numeric type for a complex
/// array, real and imaginary part side by side. Elements lie column by column.

namespace hvdetail {

template <typename T>
struct Element;

template <hvClassCode Code, hvComplexity Complexity = hvComplexity::Real>
struct ElementOf {
  static constexpr hvClassCode classCode = Code;
  static constexpr hvComplexity complexity = Complexity;
};

template <>
struct Element<bool> : ElementOf<hvClassCode::Logical> {};
template <>
struct Element<char16_t> : ElementOf<hvClassCode::Character> {};
template <>
struct Element<float> : ElementOf<hvClassCode::Single> {};
template <>
struct Element<double> : ElementOf<hvClassCode::Double> {};
template <>
struct Element<std::int8_t> : ElementOf<hvClassCode::Int8> {};
template <>
struct Element<std::uint8_t> : ElementOf<hvClassCode::UInt8> {};
template <>
struct Element<std::int16_t> : ElementOf<hvClassCode::Int16> {};
template <>
struct Element<std::uint16_t> : ElementOf<hvClassCode::UInt16> {};
template <>
struct Element<std::int32_t> : ElementOf<hvClassCode::Int32> {};
template <>
struct Element<std::uint32_t> : ElementOf<hvClassCode::UInt32> {};
template <>
struct Element<std::int64_t> : ElementOf<hvClassCode::Int64> {};
template <>
struct Element<std::uint64_t> : ElementOf<hvClassCode::UInt64> {};
template <typename T>
struct Element<std::complex<T>> : ElementOf<Element<T>::classCode, hvComplexity::Complex> {};

/// The right to write into the data of one array, until the array is copied, taken over or destroyed.
class ND_PLATFORM_EXPORT WritePermit {
 public:
  struct State;

  WritePermit() noexcept = default;
  explicit WritePermit(hvArray* array);
  WritePermit(const WritePermit& other) noexcept;
  WritePermit& operator=(const WritePermit& other) noexcept;
  ~WritePermit();

  /// Raise StaleData once the right has ended.
  void check() const;

 private:
  State* state_ = nullptr;
};

ND_PLATFORM_EXPORT const void* readableData(const hvArray* array, hvClassCode classCode,
                                            hvComplexity complexity);
ND_PLATFORM_EXPORT void* writableData(hvArray* array, hvClassCode classCode, hvComplexity complexity);
ND_PLATFORM_EXPORT void raiseIndexOutOfRange(const char* operation, std::size_t index, std::size_t count);

}  // namespace hvdetail

/// The writable elements of an array, on loan until the array is copied, as also an assignment into a
/// workspace does, taken over by a cell or structure, or destroyed; then they must be taken anew. Code
/// compiled without NDEBUG checks that at each access and raises StaleData, and IndexOutOfRange for an index
/// that is too large. Pointers that it gave out are not watched.
template <typename T>
class hvData {
 public:
  hvData(T* first, std::size_t size, const hvdetail::WritePermit& permit) noexcept
      : first_(first), size_(size), permit_(permit) {}

  T* data() const {
    checkPermit();
    return first_;
  }
  T* begin() const { return data(); }
  T* end() const { return data() + size_; }
  std::size_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }

  T& operator[](std::size_t index) const {
    checkPermit();
#ifndef NDEBUG
    if (index >= size_) hvdetail::raiseIndexOutOfRange("hvData", index, size_);
#endif
    return first_[index];
  }

  /// The first element.
  T& operator*() const {
    return (*this)[0];
  }

 private:
  void checkPermit() const {
#ifndef NDEBUG
    permit_.check();
#endif
  }

  T* first_;
  std::size_t size_;
  hvdetail::WritePermit permit_;
};

/// Lend the elements for reading, as many as hvGetNumberOfElements says. They are valid until the array is
/// changed or destroyed. Raises WrongClass if T is not the exact type of the elements, and NullArray.
template <typename T>
const T* hvGetData(const hvArray* array) {
  using Element = hvdetail::Element<T>;
  return static_cast<const T*>(hvdetail::readableData(array, Element::classCode, Element::complexity));
}

/// Lend the elements for writing, after parting from every copy that shares them. Raises WrongClass if T is
/// not the exact type of the elements, NullArray, and AlreadyTakenOver if a cell, a structure or a workspace
/// owns the array.
template <typename T>
hvData<T> hvGetWritableData(hvArray* array) {
  using Element = hvdetail::Element<T>;
  T* const first = static_cast<T*>(hvdetail::writableData(array, Element::classCode, Element::complexity));
#ifndef NDEBUG
  return {first, hvGetNumberOfElements(array), hvdetail::WritePermit(array)};
#else
  return {first, hvGetNumberOfElements(array), hvdetail::WritePermit()};
#endif
}

/// Lend the elements of a logical array for reading; as hvGetData<bool>.
inline const bool* hvGetLogicals(const hvArray* array) {
  return hvGetData<bool>(array);
}

/// Tell whether the array is one truth value and true; any other value, null too, gives false.
ND_PLATFORM_EXPORT bool hvIsLogicalScalarTrue(const hvArray* array) noexcept;
