#pragma once

#include <memory>
#include <vector>

#include <boost/optional.hpp>

#include "platform/export.h"
#include "platform/foundation/ModelImpl.h"

namespace lx::base {

class ChangeSet;

namespace detail {

/// One open transaction: what to undo, and where to hand it over.
struct Level {
  Model::Impl* model = nullptr;
  Level* outer = nullptr;
  Transaction* owner = nullptr;                  // null for a mutator's own level
  ModelElement::Impl* newestBefore = nullptr;    // elements behind it were created in this level
  ModelElement::Impl::Storage* saved = nullptr;  // storages of this level, the latest first
  ModelElement::Impl::Storage created;           // what elements created in this level have as their storage
  boost::optional<Value> label;
  std::size_t toldBefore = 0;  // how many elements knew of their destruction when the level was opened
  bool quiet = false;

  Level();
};

}  // namespace detail

/// The foundation's own way into models and elements: levels are opened, handed over, kept and undone here.
class ND_PLATFORM_EXPORT ModelAccess {
 public:
  using Element = ModelElement::Impl;
  using Storage = ModelElement::Impl::Storage;

  /// Raise `InvalidValue` unless a transaction can be begun: the model is there and not frozen.
  static void checkUsable(const Model::Impl& model) {
    if (!model.alive_ || model.frozen_) raiseUnusable(model);
  }

  static detail::Level& begin(Model::Impl& model, bool quiet);
  static void commit(detail::Level& level, const boost::optional<Value>& label);
  static void rollBack(detail::Level& level) noexcept;

  /// Begin what a mutator does: count it as a transaction, and raise what `Model::Impl::beginTransaction`
  /// does. Gives the mutator a level of its own if observers must hear of it and no transaction is open that
  /// it can join; null otherwise.
  static detail::Level* beginMutation(Model::Impl& model);

  /// Say that a mutator that nothing can stop any more is a transaction, which joins the open one or is
  /// alone.
  static void countTransaction(Model::Impl& model) noexcept { ++model.counters_.transactions; }

  /// Tell whether a change outside of a transaction is to be told.
  static bool isAloneAndObserved(const Model::Impl& model) noexcept {
    return model.top_ == nullptr && !model.observers_.empty();
  }

  /// Tell observers of one change that stands alone: what was saved of an element before.
  static void tellLoneChange(ModelElement::Impl& element, const Storage& saved) noexcept;

  /// Bring an element that has no say in its creation into its model, as a transaction that joins the open
  /// one or is alone. The caller has found the model usable. Raises `CannotAddSecondObject` for an identity
  /// that is in use; nothing has then changed.
  static void createMute(const ModelElement& created);

  /// Say that an element's class does nothing in `aboutToDestroy` and `notifyDestroying`, which are then not
  /// called if nothing else is concerned by its end; nor is `disassociateIncoming`, as nothing refers to it.
  static void setMute(Element& element) noexcept { element.flags_ |= Element::Mute; }

  static void link(Element& element) noexcept;
  static void unlink(Element& element) noexcept {
    Model::Impl& model = *element.model_;
    (element.previous_ == nullptr ? model.oldest_ : element.previous_->next_) = element.next_;
    (element.next_ == nullptr ? model.newest_ : element.next_->previous_) = element.previous_;
    element.previous_ = nullptr;
    element.next_ = nullptr;
  }
  static void tell(Element& element);

  /// Destroy what an element contains; false if something stays that is being destroyed already.
  static bool destroyContents(Element& element);
  static void destroy(Element& element);
  static void tearDown(Model::Impl& model, bool swallow);

  /// Tell whether an element that contains this one is in its `aboutToDestroy`.
  static bool isWithinDying(const Element& element) noexcept {
    return element.model_ != nullptr && element.model_->dying_ != 0 && hasDyingContainer(element);
  }

  /// Call f(element, storage) for each living element with changed properties.
  template <class F>
  static void forEachChanged(const Storage* saved, F f) {
    for (; saved != nullptr; saved = saved->next_) {
      if (hasChangedProperty(*saved)) f(*saved->element_, *saved);
    }
  }

 private:
  [[noreturn]] static void raiseUnusable(const Model::Impl& model);
  static bool hasChangedProperty(const Storage& saved) noexcept {
    constexpr std::uint64_t NoProperty =
        std::uint64_t{1} << Element::LifeIndex | std::uint64_t{1} << Element::ContainerIndex;
    return (saved.mask_ & ~NoProperty) != 0 && saved.element_->isAlive();
  }

  static bool hasDyingContainer(const Element& element) noexcept;
  static bool endsUnheard(const Element& element) noexcept;
  static void destroyUnheard(Element& element);
  static void destroyHeard(Element& element);
  static void tellAll(Element& root, const Transaction& transaction);
  static void tellModel(Model::Impl& model, bool swallow);
  static void untell(Model::Impl& model, std::size_t from) noexcept;
  static void kill(Element& element);
  static void killReplaced(Model::Impl& model, std::size_t toldBefore);
  static void handOver(detail::Level& level) noexcept;
  static void forgetUnchanged(detail::Level& level);
  static std::vector<ModelElement> createdIn(const detail::Level& level);
  static std::vector<ModelElement> destroyedIn(const detail::Level& level);
  static bool hasChanges(const Storage* saved) noexcept;
  static Element* settle(detail::Level& level) noexcept;
  static void notify(Model::Impl& model, const ChangeSet& changes) noexcept;
  static void tidyUp(Model::Impl& model) noexcept;
  static void recycle(detail::Level& level) noexcept;
  static void fetch(const Storage& next) noexcept;
  static void release(Storage* saved) noexcept;
  static Storage* releaseOfDead(Storage* saved) noexcept;
  static void retire(Model::Impl& model, Storage* saved) noexcept;
  static void bury(Element* dead) noexcept;
  /// Give a handle that takes over a reference which was added by hand.
  static ModelElement adopt(Element& element) noexcept {
    ModelElement handle;
    handle.impl_ = &element;
    return handle;
  }
  static void endForGood(Element& dead) noexcept {
    if ((dead.flags_ & Element::Identified) != 0) forget(dead);
    dead.invalidate();
    dead.basicDisassociateAll();
  }
  static void forget(Element& element) noexcept;
};

/// While one lives, the values that are set in what the element contains are final: no old ones are kept.
/// Keys, contained elements and references are no such values: what undoing relinks depends on them.
///
/// The foundation has one in place while it calls an element's `aboutToDestroy`.
class ND_PLATFORM_EXPORT FinalChanges {
 public:
  explicit FinalChanges(ModelElement::Impl& element);
  FinalChanges(const FinalChanges&) = delete;
  FinalChanges& operator=(const FinalChanges&) = delete;
  ~FinalChanges();

 private:
  const ModelElement element_;
  const Model model_;
  const bool wasOn_;
};

/// The transaction of one mutator. Joins one that is open; undone unless committed.
///
/// Between its making and its commit nothing may throw once something has changed: in a joined transaction
/// there is nothing of its own to undo.
class MutationScope {
 public:
  explicit MutationScope(Model::Impl& model) : level_(ModelAccess::beginMutation(model)) {}
  MutationScope(const MutationScope&) = delete;
  MutationScope& operator=(const MutationScope&) = delete;
  ~MutationScope() {
    if (level_ != nullptr) ModelAccess::rollBack(*level_);
  }
  void commit() {
    if (level_ != nullptr) {
      detail::Level& level = *level_;
      ModelAccess::commit(level, boost::none);
      level_ = nullptr;
    }
  }

 private:
  detail::Level* level_;
};

}  // namespace lx::base
