#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "platform/host/Array.h"
#include "platform/host/internal/Body.h"

/// What an hvArray pointer points to: a reference to the body, and who owns this array.
class hvArray {
 public:
  explicit hvArray(hvdetail::BodyRef body) noexcept;
  hvArray(const hvArray&) = delete;
  hvArray& operator=(const hvArray&) = delete;
  ~hvArray();

  const hvdetail::Body& body() const noexcept { return *body_; }
  const hvdetail::BodyRef& reference() const noexcept { return body_; }
  /// Take another body and leave the former one in its place.
  void exchangeReference(hvdetail::BodyRef& body) noexcept { std::swap(body_, body); }

  /// Part from the copies that share the body, and give it for writing.
  hvdetail::Body& writableBody();

  bool isTakenOver() const noexcept { return takenOver_; }
  /// Mark the array as owned by a cell, a structure or a workspace: from now on it does not change.
  void takeOver() noexcept;

 private:
  hvdetail::BodyRef body_;
  bool takenOver_ = false;
};

namespace hvdetail {

/// Give the body of an array; raises NullArray.
const Body& bodyOf(const hvArray* array, std::string_view operation);

/// Give the body of an array of one class; raises NullArray and WrongClass.
const Body& bodyOf(const hvArray* array, hvClassCode classCode, std::string_view operation);

/// Give an array of one class that may be changed; raises NullArray, WrongClass and AlreadyTakenOver.
hvArray& changeable(hvArray* array, hvClassCode classCode, std::string_view operation);

inline void checkIndex(std::size_t index, std::size_t count, const char* operation) {
  if (index >= count) raiseIndexOutOfRange(operation, index, count);
}

}  // namespace hvdetail
