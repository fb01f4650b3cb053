#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/host/Array.h"
#include "platform/host/ArrayData.h"
#include "platform/host/internal/Shape.h"

namespace hvdetail {

class Body;

/// Sizes of bodies that several arrays share, so that each is summed up once.
using SizeMemo = std::unordered_map<const Body*, std::size_t>;

/// A counted reference to a body. Copying one makes the body shared, so that permits to write into it end.
class BodyRef {
 public:
  BodyRef() noexcept = default;
  explicit BodyRef(Body* body) noexcept : body_(body) {}
  BodyRef(const BodyRef& other) noexcept;
  BodyRef(BodyRef&& other) noexcept : body_(std::exchange(other.body_, nullptr)) {}
  BodyRef& operator=(BodyRef other) noexcept {
    std::swap(body_, other.body_);
    return *this;
  }
  ~BodyRef();

  Body& operator*() const noexcept { return *body_; }
  Body* operator->() const noexcept { return body_; }
  Body* get() const noexcept { return body_; }

 private:
  Body* body_ = nullptr;
};

/// Class, shape and elements of an array, shared by all copies of it that nobody has changed.
class Body {
 public:
  Body(hvClassCode classCode, hvComplexity complexity, Shape shape) noexcept;
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;
  virtual ~Body();

  hvClassCode classCode() const noexcept { return classCode_; }
  hvComplexity complexity() const noexcept { return complexity_; }
  const Shape& shape() const noexcept { return shape_; }
  std::size_t count() const noexcept { return shape_.count(); }
  bool isShared() const noexcept { return references_ > 1; }

  /// Make a body of its own with the same elements; arrays within are shared-data copies.
  virtual BodyRef clone() const = 0;
  virtual std::string_view className() const noexcept;
  virtual bool isA(std::string_view className) const noexcept;
  /// Compare the elements with those of a body of the same class, complexity and shape.
  virtual bool holdsSame(const Body& other) const = 0;
  virtual std::size_t byteSize(SizeMemo& memo) const = 0;
  /// How many levels of cells and structures there are, this one included; 0 for what can hold no array.
  virtual std::size_t nesting() const noexcept { return 0; }

  /// Tell the state that the permits to write into this body share; it is made at first need.
  WritePermit::State& permitState();
  /// End the permits to write, because from now on somebody else relies on the elements.
  void endPermits() noexcept;

 private:
  friend class BodyRef;

  std::size_t references_ = 1;
  Shape shape_;
  WritePermit::State* permitState_ = nullptr;
  hvClassCode classCode_;
  hvComplexity complexity_;
};

inline BodyRef::BodyRef(const BodyRef& other) noexcept : body_(other.body_) {
  if (body_ == nullptr) return;
  ++body_->references_;
  body_->endPermits();
}

inline BodyRef::~BodyRef() {
  if (body_ != nullptr && --body_->references_ == 0) delete body_;
}

/// Tell the name of a class other than Object; empty for that and for Unknown.
std::string_view nameOf(hvClassCode classCode) noexcept;
bool isNumeric(hvClassCode classCode) noexcept;

/// Compare two bodies as hvEqual says.
bool equalBodies(const Body& left, const Body& right);

}  // namespace hvdetail
