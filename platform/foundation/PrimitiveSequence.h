#pragma once

#include <algorithm>
#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/ContainmentSlot.h"

namespace lx::base {

/// An ordered collection of values, equal ones allowed.
///
/// Every change is a transaction of its own or joins the open one; a change that changes nothing makes none.
/// Mutators raise `CannotModifyProxy` and `InvalidValue` as setters do. Walking over it while it changes
/// raises `InvalidValue`.
template <class T>
class PrimitiveSequence : public AbstractOwnedCollection {
 public:
  using value_type = T;
  using Old = std::vector<T>;
  using Position = std::size_t;
  using iterator = CollectionIterator<PrimitiveSequence>;

  PrimitiveSequence(ModelElement::Impl& owner, unsigned index) noexcept
      : AbstractOwnedCollection(owner, index) {}

  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? values_.size() : 0; }

  /// Give a value by its position, from 0; raises `InvalidValue` behind the end.
  T at(std::size_t position) const {
    if (position >= size()) {
      report::invalidValue(owner().nameOfProperty(index()), u"there is no value at this position.");
    }
    return values_[position];
  }

  /// Give a copy of all values.
  std::vector<T> values() const { return owner().isAlive() ? values_ : std::vector<T>(); }

  /// Put a value behind the last one.
  void add(const T& value) {
    owner().checkWritable(index());
    T copy(value);
    if (values_.size() == values_.capacity()) values_.reserve(std::max<std::size_t>(4, 2 * values_.size()));
    Operation operation(*this);
    values_.push_back(std::move(copy));
    changed();
    operation.commit();
  }

  /// Take all values away.
  void clear() { assign({}); }

  /// Replace all values by others.
  void assign(std::vector<T> next) {
    owner().checkWritable(index());
    if (next == values_) return;
    Operation operation(*this);
    values_.swap(next);
    changed();
    operation.commit();
  }

  iterator begin() const { return iterator(*this, 0); }
  iterator end() const { return iterator(*this, size()); }
  T atPosition(std::size_t position) const { return values_[position]; }
  std::size_t nextPosition(std::size_t position) const noexcept { return position + 1; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) const { old = values_; }
  void restoreFrom(Old& old) noexcept {
    values_.swap(old);
    changed();
  }
  bool isUnchangedSince(const Old& old) const { return values_ == old; }
  Value oldValue(const Old& old) const { return Value(old); }
  Value toValue() const { return Value(values_); }
  static Value zeroValue() { return Value(std::vector<T>()); }
  bool hasValue() const noexcept { return !empty(); }
  void visitContained(ModelElement::Impl::ContainedVisitor&) const noexcept {}
  void letGo() noexcept {
    std::vector<T>().swap(values_);
    changed();
  }

 private:
  std::vector<T> values_;
};

}  // namespace lx::base
