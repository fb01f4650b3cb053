#pragma once

#include <string>
#include <type_traits>
#include <utility>

#include <boost/optional.hpp>

#include "platform/foundation/ModelAccess.h"
#include "platform/text/Compare.h"

namespace lx::base {

namespace detail {

template <class T>
bool equalValues(const T& left, const T& right) {
  if constexpr (std::is_same_v<T, std::u16string>)
    return text::equal(left, right);
  else
    return left == right;
}

/// The type's zero, which a getter gives on an element that is gone.
template <class T>
const T& zero() {
  static const T& value = *new T{};  // outlives all that may ask at process exit
  return value;
}

}  // namespace detail

/// A property with one value. Only the functions of its element write it.
template <class T>
class Single {
 public:
  using Old = T;

  Single() = default;
  explicit Single(T initial) : value_(std::move(initial)) {}

  const T& get() const noexcept { return value_; }
  void swap(T& other) noexcept {
    using std::swap;
    swap(value_, other);
  }

  /// Whether writing a value in place lets nobody else run and fails, if at all, before it changes anything.
  static constexpr bool IsWrittenInPlace =
      std::is_trivially_copyable_v<T> || std::is_same_v<T, std::u16string> || std::is_same_v<T, std::string>;
  void write(const T& value) { value_ = value; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) const { old = value_; }
  void restoreFrom(Old& old) noexcept { swap(old); }
  bool isUnchangedSince(const Old& old) const { return detail::equalValues(value_, old); }
  Value oldValue(const Old& old) const { return Value(old); }
  Value toValue() const { return Value(value_); }
  static Value zeroValue() { return Value(T{}); }
  bool hasValue() const noexcept { return isPresent(value_); }
  void visitContained(ModelElement::Impl::ContainedVisitor&) const noexcept {}
  void letGo() noexcept {
    if constexpr (std::is_same_v<T, std::u16string> || std::is_same_v<T, std::string>) {
      if (value_.capacity() > T().capacity()) T().swap(value_);
    } else if constexpr (!std::is_arithmetic_v<T> && !std::is_enum_v<T>) {
      T none{};
      swap(none);
    }
  }

 private:
  template <class U>
  static bool isPresent(const boost::optional<U>& value) noexcept {
    return value.has_value();
  }
  template <class U>
  static bool isPresent(const U&) noexcept {
    return true;
  }

  T value_{};
};

namespace detail {

/// Give a property's value, the type's zero if the element is gone.
template <class T>
const T& get(const ModelElement::Impl& self, const Single<T>& field) {
  return self.isAlive() ? field.get() : zero<T>();
}

/// The old value of one property, of a change that stands alone.
template <class T>
class LoneChange final : public ModelElement::Impl::Storage {
 public:
  LoneChange(ModelElement::Impl& element, unsigned index, const T& old) noexcept
      : Storage(element, index), old_(old) {}
  Value getOldValue(unsigned index) const override { return isChanged(index) ? Value(old_) : Value(); }

 private:
  const T& old_;
};

/// Write a field within the transaction of a mutator: in the open one, or in one of its own, which needs no
/// record but for the observers. What is set in `self` while an element that contains it is about to be
/// destroyed is final: no old value is kept, so that what the old value holds is let go at once.
template <class T>
void assign(ModelElement::Impl& self, Single<T>& field, T& next, unsigned index) {
  Model::Impl& model = *self.modelImpl();
  if (!ModelAccess::isWithinDying(self)) self.notifyModifying(index);
  ModelAccess::countTransaction(model);
  field.swap(next);
  if (ModelAccess::isAloneAndObserved(model))
    ModelAccess::tellLoneChange(self, LoneChange<T>(self, index, next));
}

/// Set a property of an element that is there to another value than it has.
template <class T>
[[gnu::noinline]] void change(ModelElement::Impl& self, Single<T>& field, const T& value, unsigned index) {
  self.checkThawed(index);
  if constexpr (Single<T>::IsWrittenInPlace) {
    if (self.isSavedInOpenTransaction(index)) {
      field.write(value);
      return ModelAccess::countTransaction(*self.modelImpl());
    }
  }
  T next(value);
  assign(self, field, next, index);
}  // the old value is let go here, behind the commit

/// Set a property with one value: on a proxy raises `CannotModifyProxy`, for an equal value does nothing,
/// also in a frozen model, else copies the value, begins a transaction or joins one, notes the old value, and
/// assigns.
template <class T>
void set(ModelElement::Impl& self, Single<T>& field, const std::type_identity_t<T>& value, unsigned index) {
  self.checkPresent(index);
  if (!equalValues(field.get(), value)) change(self, field, value, index);
}

}  // namespace detail
}  // namespace lx::base
