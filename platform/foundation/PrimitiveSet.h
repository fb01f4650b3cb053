#pragma once

#include <set>
#include <vector>

#include "platform/foundation/CollectionIterator.h"
#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/KeyLess.h"

namespace lx::base {

/// A collection of values without equal ones, in their order: texts by code unit.
///
/// Every change is a transaction of its own or joins the open one; a change that changes nothing makes none.
/// Mutators raise `CannotModifyProxy` and `InvalidValue` as setters do. Walking over it while it changes
/// raises `InvalidValue`. As a `Value` it is a `std::set<T>`.
template <class T>
class PrimitiveSet : public AbstractOwnedCollection {
 public:
  using Values = std::set<T, detail::KeyLess<T>>;
  using value_type = T;
  using Old = Values;
  using Position = typename Values::const_iterator;
  using iterator = CollectionIterator<PrimitiveSet>;

  PrimitiveSet(ModelElement::Impl& owner, unsigned index) noexcept : AbstractOwnedCollection(owner, index) {}

  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? values_.size() : 0; }
  bool contains(const T& value) const { return owner().isAlive() && values_.contains(value); }

  /// Give a copy of all values, ascending.
  std::vector<T> values() const {
    return owner().isAlive() ? std::vector<T>(values_.begin(), values_.end()) : std::vector<T>();
  }

  /// Add a value; false if it is there.
  bool add(const T& value) {
    owner().checkWritable(index());
    if (values_.contains(value)) return false;
    Values added{value};
    Operation operation(*this);
    values_.merge(added);
    changed();
    operation.commit();
    return true;
  }

  /// Take a value away; false if it isn't there.
  bool remove(const T& value) {
    owner().checkWritable(index());
    const auto found = values_.find(value);
    if (found == values_.end()) return false;
    Operation operation(*this);
    const auto removed = values_.extract(found);  // lets go of the value behind the commit
    changed();
    operation.commit();
    return true;
  }

  /// Take all values away.
  void clear() { replace({}); }

  /// Replace all values by those of a list or a set; what stands there twice is taken once.
  template <class List>
  void assign(const List& next) {
    replace(Values(next.begin(), next.end()));
  }

  iterator begin() const { return iterator(*this, owner().isAlive() ? values_.begin() : values_.end()); }
  iterator end() const { return iterator(*this, values_.end()); }
  T atPosition(Position position) const { return *position; }
  Position nextPosition(Position position) const { return ++position; }

  // What a table of fields asks of each field.
  void saveTo(Old& old) const { old = values_; }
  void restoreFrom(Old& old) noexcept {
    values_.swap(old);
    changed();
  }
  bool isUnchangedSince(const Old& old) const { return values_ == old; }
  Value oldValue(const Old& old) const { return toValue(old); }
  Value toValue() const { return toValue(values_); }
  static Value zeroValue() { return Value(std::set<T>()); }
  bool hasValue() const noexcept { return !empty(); }
  void visitContained(ModelElement::Impl::ContainedVisitor&) const noexcept {}
  void letGo() noexcept {
    values_.clear();
    changed();
  }

 private:
  static Value toValue(const Values& values) { return Value(std::set<T>(values.begin(), values.end())); }

  void replace(Values next) {
    owner().checkWritable(index());
    if (next == values_) return;
    Operation operation(*this);
    values_.swap(next);
    changed();
    operation.commit();
  }

  Values values_;
};

}  // namespace lx::base
