#pragma once

#include <set>
#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/KeyLess.h"
#include "platform/foundation/ValueCollection.h"

namespace lx::base {

/// A collection of values without equal ones, in their order: texts by code unit. As a `Value` it is a
/// `std::set<T>`.
template <class T>
class PrimitiveSet : public ValueCollection<std::set<T, detail::KeyLess<T>>> {
  using Base = ValueCollection<std::set<T, detail::KeyLess<T>>>;
  using Base::values_;

 public:
  using Values = std::set<T, detail::KeyLess<T>>;
  using Old = Values;
  using Position = typename Values::const_iterator;
  using iterator = CollectionIterator<PrimitiveSet>;

  PrimitiveSet(ModelElement::Impl& owner, unsigned index) noexcept : Base(owner, index) {}

  bool contains(const T& value) const { return this->owner().isAlive() && values_.contains(value); }

  /// Add a value; false if it is there.
  bool add(const T& value) {
    this->owner().checkWritable(this->index());
    if (values_.contains(value)) return false;
    Values added{value};
    AbstractOwnedCollection::Operation operation(*this);
    values_.merge(added);
    this->changed();
    operation.commit();
    return true;
  }

  /// Take a value away; false if it isn't there.
  bool remove(const T& value) {
    this->owner().checkWritable(this->index());
    const auto found = values_.find(value);
    if (found == values_.end()) return false;
    AbstractOwnedCollection::Operation operation(*this);
    const auto removed = values_.extract(found);  // lets go of the value behind the commit
    this->changed();
    operation.commit();
    return true;
  }

  /// Replace all values by those of a list or a set; what stands there twice is taken once.
  template <class List>
  void assign(const List& next) {
    this->replace(Values(next.begin(), next.end()));
  }

  iterator begin() const {
    return iterator(*this, this->owner().isAlive() ? values_.begin() : values_.end());
  }
  iterator end() const { return iterator(*this, endPosition()); }
  Position endPosition() const noexcept { return values_.end(); }
  T atPosition(Position position) const { return *position; }
  Position nextPosition(Position position) const { return ++position; }

  Value oldValue(const Old& old) const { return toValue(old); }
  Value toValue() const { return toValue(values_); }
  static Value zeroValue() { return Value(std::set<T>()); }

 private:
  static Value toValue(const Values& values) { return Value(std::set<T>(values.begin(), values.end())); }
};

}  // namespace lx::base
