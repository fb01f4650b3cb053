#pragma once

#include <utility>
#include <vector>

#include "platform/foundation/OwnedCollection.h"

namespace lx::base {

/// What collections of values have in common. `C` is the container that the values are kept in.
///
/// Every change is a transaction of its own or joins the open one; a change that changes nothing makes none.
/// Mutators raise `CannotModifyProxy` and `InvalidValue` as setters do. Walking over a collection while it
/// changes raises `InvalidValue`.
template <class C>
class ValueCollection : public AbstractOwnedCollection {
 public:
  using value_type = typename C::value_type;
  using Old = C;

  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return owner().isAlive() ? values_.size() : 0; }

  /// Give a copy of all values, in their order.
  std::vector<value_type> values() const {
    return owner().isAlive() ? std::vector<value_type>(values_.begin(), values_.end())
                             : std::vector<value_type>();
  }

  /// Take all values away.
  void clear() { replace({}); }

  /// Like what setters do, a change is final while an element that contains the owner is about to be
  /// destroyed.
  void modifying() override {
    if (!ModelAccess::isWithinDying(owner())) AbstractOwnedCollection::modifying();
  }

  // What a table of fields asks of each field.
  void saveTo(Old& old) const { old = values_; }
  void restoreFrom(Old& old) noexcept {
    values_.swap(old);
    changed();
  }
  bool isUnchangedSince(const Old& old) const { return values_ == old; }
  bool hasValue() const noexcept { return !empty(); }
  void visitContained(ModelElement::Impl::ContainedVisitor&) const noexcept {}
  void letGo() noexcept {
    C().swap(values_);
    changed();
  }

 protected:
  using AbstractOwnedCollection::AbstractOwnedCollection;

  void replace(C next) {
    owner().checkWritable(index());
    if (next == values_) return;
    Operation operation(*this);
    values_.swap(next);  // the former ones are let go behind the commit
    changed();
    operation.commit();
  }

  C values_;
};

}  // namespace lx::base
