#pragma once

#include <cstdint>
#include <vector>

#include <boost/uuid/uuid.hpp>

#include "platform/export.h"

namespace lx::base {

class Model;
class Value;

namespace meta {
class Class;
class Operation;
class Property;
}  // namespace meta

/// What every element is to its handles: an object with a count of references.
///
/// Counts are plain integers, since a model and its elements are used by one thread. A count keeps the memory
/// of an element, not its life: that is the model's. An element that is pinned counts no more, so that any
/// thread may have handles to it.
class ND_PLATFORM_EXPORT ElementImpl {
 public:
  ElementImpl(const ElementImpl&) = delete;
  ElementImpl& operator=(const ElementImpl&) = delete;

  virtual ~ElementImpl() = default;

  /// Give the model that the element belongs to, or a null handle once the element is gone.
  virtual Model getModel() const = 0;

  /// Give the class that describes the element.
  virtual meta::Class getMetaClass() const = 0;

  /// Take a reference away; with the last one the memory is freed.
  virtual void removeRef() const noexcept = 0;

  /// Add a reference.
  void addRef() const noexcept {
    if (!isPinned()) ++references_;
  }

  /// Keep the memory to the end of the process. Called once, before other threads know of the element.
  void pin() const noexcept { references_ = Pinned; }
  bool isPinned() const noexcept { return references_ >= Pinned; }

  /// Take a reference away as `removeRef` does, without a call unless it is the last.
  void dropRef() const noexcept {
    if (static_cast<std::int32_t>(references_) > 1)  // not pinned either
      --references_;
    else
      removeRef();
  }

 protected:
  ElementImpl() noexcept = default;

  static constexpr std::uint32_t Pinned = 0x80000000U;
  mutable std::uint32_t references_ = 0;
};

}  // namespace lx::base
