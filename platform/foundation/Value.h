#pragma once

#include <cstddef>
#include <new>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "platform/export.h"

namespace lx::base {

class ModelElement;
class Value;

namespace meta {
class Class;
}

namespace detail {

/// How the values of one type are copied, compared and destroyed; one object per type.
struct ValueOperations {
  const std::type_info& type;
  void (*copy)(void* to, const void* from);
  void (*move)(void* to, void* from) noexcept;
  void (*destroy)(void* value) noexcept;
  bool (*equal)(const void* left, const void* right);
  bool isUnmanaged;  // of two neighbours the second
};

/// Handles are carried as handles of the root class, so that any element is taken by asking for that one, and
/// lists of handles likewise; a text literal is carried as a text.
template <class T>
struct Carried {
  using Type = std::conditional_t<
      std::is_base_of_v<ModelElement, T>, ModelElement,
      std::conditional_t<std::is_same_v<T, const char16_t*> || std::is_same_v<T, char16_t*>, std::u16string,
                         T>>;
};
template <class E>
struct Carried<std::vector<E>> {
  using Type = std::vector<std::conditional_t<std::is_base_of_v<ModelElement, E>, ModelElement, E>>;
};
template <class T>
using CarriedAs = typename Carried<T>::Type;

/// Whether D can be the content of a value: it can be copied. A narrow literal can't, since it would be
/// carried as a pointer, nor can what is itself made from a value.
template <class D>
using IsContent =
    std::conjunction<std::negation<std::is_same<D, Value>>, std::negation<std::is_same<D, const char*>>,
                     std::negation<std::is_same<D, char*>>, std::negation<std::is_convertible<Value, D>>,
                     std::is_copy_constructible<CarriedAs<D>>>;

/// Find in what is carried an element that is of another class than the handle T, or the handles in the list
/// T; null if there is none. A null handle is of every class.
template <class T, class C>
const ModelElement* findOfOtherClass([[maybe_unused]] const C& carried) noexcept {
  if constexpr (std::is_base_of_v<ModelElement, T> && !std::is_same_v<T, C>) {
    const bool fits =
        carried.impl() == nullptr || dynamic_cast<const typename T::Impl*>(carried.impl()) != nullptr;
    if (!fits) return &carried;
  } else if constexpr (std::is_same_v<C, std::vector<ModelElement>> && !std::is_same_v<T, C>) {
    for (const auto& each : carried) {
      if (findOfOtherClass<typename T::value_type>(each) != nullptr) return &each;
    }
  }
  return nullptr;
}

[[noreturn]] ND_PLATFORM_EXPORT void raiseBadValueCast(const std::type_info* given,
                                                       const std::type_info& wanted);
[[noreturn]] ND_PLATFORM_EXPORT void raiseOtherClass(const ModelElement& given, meta::Class (*wanted)());

/// Raise `CannotCastIncompatibleTypes` if what is carried has an element that is of no class of T.
template <class T, class C>
void checkClass(const C& carried) {
  const ModelElement* const other = findOfOtherClass<T>(carried);
  if (other == nullptr) return;
  if constexpr (std::is_base_of_v<ModelElement, T>)
    raiseOtherClass(*other, &T::metaClass);
  else if constexpr (std::is_same_v<C, std::vector<ModelElement>>)
    raiseOtherClass(*other, &T::value_type::metaClass);
}

}  // namespace detail

/// Carries a value of any property: a number, a text, a handle, a list.
///
/// Values up to the size of a text lie within the object. A value without content is empty. Handles of every
/// class are carried as `ModelElement`, lists of them as lists of it. What can be copied and compared can be
/// carried. Values go while changes are undone and while an exception passes, so that a destructor of a
/// content must not throw: the program ends if it does.
class ND_PLATFORM_EXPORT Value {
 public:
  Value() noexcept = default;

  template <class T, class D = std::decay_t<T>, class = std::enable_if_t<detail::IsContent<D>::value>>
  Value(T&& content) {  // NOLINT(google-explicit-constructor): any content is a value
    using Carried = detail::CarriedAs<D>;
    if constexpr (std::is_constructible_v<Carried, T>)
      construct<Carried>(std::forward<T>(content));
    else
      construct<Carried>(Carried(content.begin(), content.end()));
  }

  Value(const Value& other) {
    if (other.operations_ != nullptr) other.operations_->copy(storage_, other.storage_);
    operations_ = other.operations_;
  }

  Value(Value&& other) noexcept { takeFrom(other); }

  Value& operator=(const Value& other) {
    Value copy(other);
    return *this = std::move(copy);
  }

  Value& operator=(Value&& other) noexcept {
    if (this != &other) {
      clear();
      takeFrom(other);
    }
    return *this;
  }

  ~Value() { clear(); }

  bool isEmpty() const noexcept { return operations_ == nullptr; }

  /// Tell whether the content is a copy of its own, see `ValueMeta`. Copies of the value are as it is;
  /// comparing makes no difference.
  bool isUnmanaged() const noexcept { return operations_ != nullptr && operations_->isUnmanaged; }

  /// Tell whether the content is exactly of this type. A handle, and each of a list, is of the type if it is
  /// null or its element is of the class or a subclass.
  template <class T>
  bool is() const noexcept {
    return carries<T>() && detail::findOfOtherClass<T>(*content<detail::CarriedAs<T>>(storage_)) == nullptr;
  }

  /// Give the content. Raises `CannotCastIncompatibleTypes` if it is of another type.
  template <class T>
  const detail::CarriedAs<T>& as() const {
    if (!carries<T>()) detail::raiseBadValueCast(operations_ ? &operations_->type : nullptr, typeid(T));
    const detail::CarriedAs<T>& carried = *content<detail::CarriedAs<T>>(storage_);
    detail::checkClass<T>(carried);
    return carried;
  }

  /// Tell whether two values are of one type and equal; empty values equal each other.
  friend bool operator==(const Value& left, const Value& right) {
    if (left.operations_ == nullptr || right.operations_ == nullptr)
      return left.operations_ == right.operations_;
    return left.operations_->type == right.operations_->type &&
           left.operations_->equal(left.storage_, right.storage_);
  }

  /// Compare the contents of two values of type T; raises `CannotCastIncompatibleTypes` for another type.
  template <class T>
  static bool genericComparator(const Value& left, const Value& right) {
    return left.as<T>() == right.as<T>();
  }

 private:
  friend class ValueMeta;

  static constexpr std::size_t Inline = sizeof(std::u16string);

  template <class T>
  static constexpr bool FitsInline = sizeof(T) <= Inline &&
                                     alignof(T) <= alignof(void*) && std::is_nothrow_move_constructible_v<T>;

  template <class T>
  static T* content(void* storage) noexcept {
    if constexpr (FitsInline<T>)
      return std::launder(static_cast<T*>(storage));
    else
      return *std::launder(static_cast<T**>(storage));
  }

  template <class T>
  static const T* content(const void* storage) noexcept {
    if constexpr (FitsInline<T>)
      return std::launder(static_cast<const T*>(storage));
    else
      return *std::launder(static_cast<T* const*>(storage));
  }

  template <class T>
  bool carries() const noexcept {
    return operations_ != nullptr && operations_->type == typeid(detail::CarriedAs<T>);
  }

  template <class T, class A>
  void construct(A&& content) {
    static_assert(
        requires(const T& one) { static_cast<bool>(one == one); }, "a content must be comparable");
    static constexpr detail::ValueOperations Operations[]{operationsOf<T>(false), operationsOf<T>(true)};
    if constexpr (FitsInline<T>)
      ::new (static_cast<void*>(storage_)) T(std::forward<A>(content));
    else
      ::new (static_cast<void*>(storage_)) T*(new T(std::forward<A>(content)));
    operations_ = Operations;
  }

  template <class T>
  static constexpr detail::ValueOperations operationsOf(bool isUnmanaged) {
    return {typeid(T),
            [](void* to, const void* from) {
              if constexpr (FitsInline<T>)
                ::new (to) T(*Value::content<T>(from));
              else
                ::new (to) T*(new T(*Value::content<T>(from)));
            },
            [](void* to, void* from) noexcept {
              if constexpr (FitsInline<T>) {
                ::new (to) T(std::move(*Value::content<T>(from)));
                Value::content<T>(from)->~T();
              } else {
                ::new (to) T*(Value::content<T>(from));
              }
            },
            [](void* value) noexcept {
              if constexpr (FitsInline<T>)
                Value::content<T>(value)->~T();
              else
                delete Value::content<T>(value);
            },
            [](const void* left, const void* right) {
              return static_cast<bool>(*Value::content<T>(left) == *Value::content<T>(right));
            },
            isUnmanaged};
  }

  void takeFrom(Value& other) noexcept {
    operations_ = other.operations_;
    if (operations_ != nullptr) operations_->move(storage_, other.storage_);
    other.operations_ = nullptr;
  }

  void clear() noexcept {
    if (operations_ != nullptr) operations_->destroy(storage_);
    operations_ = nullptr;
  }

  const detail::ValueOperations* operations_ = nullptr;
  alignas(void*) std::byte storage_[Inline];
};

// Whatever a value carries, it is moved and let go of in places where nothing may throw.
static_assert(std::is_nothrow_destructible_v<Value> && std::is_nothrow_move_constructible_v<Value> &&
              std::is_nothrow_move_assignable_v<Value>);

/// Tells and says to whom the content of a value belongs. A value is managed unless told otherwise: what it
/// lists is what a property of a model held when it was read. An unmanaged one is a copy of its own, put
/// together outside of any model.
class ValueMeta {
 public:
  explicit ValueMeta(Value& value) noexcept : value_(value) {}

  bool isUnmanaged() const noexcept { return value_.isUnmanaged(); }

  /// Mark the value. An empty one stays as it is, having nothing that could belong to anybody.
  void setUnmanaged(bool isUnmanaged = true) noexcept {
    if (value_.isEmpty() || value_.isUnmanaged() == isUnmanaged) return;
    value_.operations_ += isUnmanaged ? 1 : -1;
  }

 private:
  Value& value_;
};

}  // namespace lx::base
