#pragma once

#include <algorithm>
#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/ValueCollection.h"

namespace lx::base {

/// An ordered collection of values, equal ones allowed. As a `Value` it is a `std::vector<T>`.
template <class T>
class PrimitiveSequence : public ValueCollection<std::vector<T>> {
  using Base = ValueCollection<std::vector<T>>;
  using Base::values_;

 public:
  using Old = std::vector<T>;
  using Position = std::size_t;
  using iterator = CollectionIterator<PrimitiveSequence>;

  PrimitiveSequence(ModelElement::Impl& owner, unsigned index) noexcept : Base(owner, index) {}

  /// Give a value by its position, from 0; raises `InvalidValue` behind the end.
  T at(std::size_t position) const {
    if (position >= this->size()) {
      report::invalidValue(this->owner().nameOfProperty(this->index()),
                           u"there is no value at this position.");
    }
    return values_[position];
  }

  /// Put a value behind the last one.
  void add(const T& value) {
    this->owner().checkWritable(this->index());
    T copy(value);
    if (values_.size() == values_.capacity()) values_.reserve(std::max<std::size_t>(4, 2 * values_.size()));
    AbstractOwnedCollection::Operation operation(*this);
    values_.push_back(std::move(copy));
    this->changed();
    operation.commit();
  }

  /// Replace all values by others.
  void assign(std::vector<T> next) { this->replace(std::move(next)); }

  iterator begin() const { return iterator(*this, 0); }
  iterator end() const { return iterator(*this, endPosition()); }
  std::size_t endPosition() const noexcept { return this->size(); }
  T atPosition(std::size_t position) const { return values_[position]; }
  std::size_t nextPosition(std::size_t position) const noexcept { return position + 1; }

  Value oldValue(const Old& old) const { return Value(old); }
  Value toValue() const { return Value(values_); }
  static Value zeroValue() { return Value(std::vector<T>()); }
};

}  // namespace lx::base
