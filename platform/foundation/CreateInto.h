#pragma once

#include <utility>

#include <boost/uuid/uuid.hpp>

#include "platform/foundation/ContainmentSlot.h"

namespace lx::base::detail {

/// Make an element from a builder and put it into a collection, in one transaction; an exception leaves
/// neither.
template <class E, class Collection, class Builder>
E createInto(Collection& collection, Builder builder, const boost::uuids::uuid& uuid) {
  ModelElement::Impl& owner = collection.owner();
  owner.checkWritable(collection.index());
  typename E::BuilderWrapper wrapper(std::move(builder));
  wrapper.setModel(owner.getModel());
  Transaction transaction = owner.modelImpl()->beginTransaction(false);
  const E child(static_cast<typename E::Impl*>(wrapper.create(uuid).impl()));
  collection.add(child);
  transaction.commit();
  return child;
}

}  // namespace lx::base::detail
