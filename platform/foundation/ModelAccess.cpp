// How transactions are kept.
//
// Each open transaction is a level; the levels of a model are linked from the innermost outward. Before an
// element changes for the first time in a level, it gets a storage there, which takes the old value of each
// property before its first change; an element's storages are linked from the innermost outward, too, and
// `storage_` is the innermost. What can throw is done before anything has changed, and undoing only swaps and
// relinks, so that it needs no memory.
//
// An element that was created in a level needs no old values: undoing lets it go. Its storage is the level's
// `created`, one for all, whose mask has every bit set: each property counts as saved already. Elements are
// linked in the order of their creation, so that those behind `newestBefore` are the level's own.
//
// When an inner level commits, it hands over: its elements become created ones of the outer level, a storage
// moves outward unless its element has one there, and else gives it the old values that it has not; an
// element that the outer level created drops it.
//
// When the outermost level commits, storages first forget what was changed and changed back; then the change
// set is made, and from there on nothing can throw. No element has a storage any more. Those that died are
// taken out of the model and linked in a chain of their own: observers may still ask for what they were, so
// that they are buried, which lets go of their values, once all observers have been told. The storages go
// last, since the change set reads old values in them. If this commit lies within a notice, whose change set
// may reach over changes that were made since, the storages of what lives are kept until the outermost notice
// has ended.
//
// What stands alone needs no level. A setter outside of a transaction assigns and tells one old value, which
// lives on its stack; so does the creation, and the end, of an element whose class has no say in it and
// that nothing else is concerned by. Observers can't tell the difference, and such a change counts as a
// transaction, too.

#include "platform/foundation/ModelAccess.h"

#include <algorithm>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/Report.h"

namespace lx::base {

using detail::Level;

void ModelAccess::raiseUnusable(const Model::Impl& model) {
  report::invalidValue("Model.beginTransaction", model.isAlive()
                                                     ? "the model is frozen; thaw it first."
                                                     : "the model was destroyed; make a new one.");
}

Level& ModelAccess::begin(Model::Impl& model, bool quiet) {
  checkUsable(model);
  std::unique_ptr<Level> level;
  if (model.spareLevels_.empty()) {
    level = std::make_unique<Level>();
    model.spareLevels_.reserve(model.spareLevels_.capacity() + 1);  // so that recycling it needs no memory
  } else {
    level = std::move(model.spareLevels_.back());
    model.spareLevels_.pop_back();
  }
  level->model = &model;
  level->outer = model.top_;
  level->newestBefore = model.newest_;
  level->toldBefore = model.told_.size();
  level->quiet = quiet;
  ++model.counters_.transactions;
  model.addRef();
  return *(model.top_ = level.release());
}

Level* ModelAccess::beginMutation(Model::Impl& model) {
  if (model.top_ == nullptr && !model.observers_.empty()) return &begin(model, false);
  ++model.counters_.transactions;
  return nullptr;
}

void ModelAccess::recycle(Level& level) noexcept {
  Model::Impl& model = *level.model;
  if (level.owner != nullptr) level.owner->level_ = nullptr;
  level.owner = nullptr;
  level.saved = nullptr;
  level.label = boost::none;
  std::unique_ptr<Level> owned(&level);
  if (model.spareLevels_.size() < model.spareLevels_.capacity())
    model.spareLevels_.push_back(std::move(owned));
  model.removeRef();
}

void ModelAccess::commit(Level& level, const boost::optional<Value>& label) {
  Model::Impl& model = *level.model;
  if (model.top_ != &level) {
    report::invalidValue("Transaction.commit", "a transaction within this one is still open; end it first.");
  }
  if (label) level.label = *label;
  if (level.outer != nullptr) {
    handOver(level);
    return;
  }

  const bool tells = !level.quiet && !model.observers_.empty();
  const std::vector<ModelElement> created = tells ? createdIn(level) : std::vector<ModelElement>();
  const std::vector<ModelElement> destroyed = tells ? destroyedIn(level) : std::vector<ModelElement>();
  if (!model.observers_.empty()) forgetUnchanged(level);

  // From here on nothing throws: the changes stand.
  const Model keep(&model);
  const Value told = level.label ? std::move(*level.label) : Value();
  Storage* const saved = level.saved;
  Element* const dead = settle(level);
  model.top_ = nullptr;
  recycle(level);
  if (tells && (!created.empty() || !destroyed.empty() || hasChanges(saved)))
    notify(model, ChangeSet(model, created, destroyed, saved, &told));
  bury(dead);
  retire(model, saved);
}

/// Forget what was changed and changed back. An exception leaves all as it was, so that it can be undone.
void ModelAccess::forgetUnchanged(Level& level) {
  Storage* storage = level.saved;
  try {
    for (; storage != nullptr; storage = storage->next_) {
      storage->maskBefore_ = storage->mask_;
      storage->revertUnchanged(*storage->element_);
    }
  } catch (...) {
    for (Storage* each = level.saved;; each = each->next_) {
      each->mask_ = each->maskBefore_;
      if (each == storage) throw;
    }
  }
}

/// End the record of the outermost level: no element has a storage any more, and those that died are taken
/// out of the model. Gives them, linked by `next_`.
ModelAccess::Element* ModelAccess::settle(Level& level) noexcept {
  Element* dead = nullptr;
  const auto settleOne = [&](Element& element) {
    element.storage_ = nullptr;
    if (element.isAlive()) return;
    unlink(element);
    element.next_ = dead;
    dead = &element;
  };
  Element* next = level.newestBefore == nullptr ? level.model->oldest_ : level.newestBefore->next_;
  while (next != nullptr) {
    Element& created = *next;
    next = created.next_;
    settleOne(created);
  }
  for (Storage* storage = level.saved; storage != nullptr; storage = storage->next_) {
    settleOne(*storage->element_);
  }
  return dead;
}

/// Let go of the storages of a commit, or keeps those of what lives while a notice is under way.
void ModelAccess::retire(Model::Impl& model, Storage* saved) noexcept {
  if (model.telling_ == 0) return release(saved);
  saved = releaseOfDead(saved);
  Storage** end = &saved;
  while (*end != nullptr) end = &(*end)->next_;
  *end = std::exchange(model.retained_, saved);
  model.isUntidy_ = true;
}

void ModelAccess::handOver(Level& level) noexcept {
  Model::Impl& model = *level.model;
  Level& outer = *level.outer;
  if (level.label) outer.label = std::move(level.label);
  model.top_ = &outer;
  for (Element* element = model.newest_; element != level.newestBefore; element = element->previous_) {
    if (element->storage_ == &level.created) element->storage_ = &outer.created;
  }
  Storage* obsolete = nullptr;
  Storage* const before = outer.saved;
  Storage** end =
      &outer.saved;  // the storages that move go in front of the others, in the order that they have
  for (Storage* storage = level.saved; storage != nullptr;) {
    Storage& inner = *storage;
    storage = inner.next_;
    Storage* const older = inner.outer_;
    if (older == nullptr || older->level_ != &outer) {
      inner.level_ = &outer;
      *end = &inner;
      end = &inner.next_;
      continue;
    }
    inner.element_->storage_ = older;
    if (older != &outer.created) {
      for (unsigned index = 0; index <= Element::ContainerIndex; ++index) {
        if (!inner.isChanged(index) || older->isChanged(index)) continue;
        inner.element_->copyValue(index, *older, &inner);
        older->mask_ |= std::uint64_t{1} << index;
      }
    }
    inner.next_ = obsolete;
    obsolete = &inner;
  }
  *end = before;
  recycle(level);
  release(obsolete);
}

namespace {

/// Ask for the memory of an object before it is needed.
template <class T>
void prefetch(const T* object) noexcept {
  constexpr std::size_t Line = 64;
  for (std::size_t at = 0; at < sizeof(T) + Line; at += Line) {
    __builtin_prefetch(reinterpret_cast<const char*>(object) + at);
  }
}

}  // namespace

/// Ask for what undoing will touch next: the storages and elements of a large transaction lie far apart.
void ModelAccess::fetch(const Storage& next) noexcept {
  prefetch(next.next_);
  prefetch(next.element_);
}

void ModelAccess::rollBack(Level& level) noexcept {
  Model::Impl& model = *level.model;
  const Model keep(&model);
  while (model.top_ != &level) rollBack(*model.top_);

  untell(model, level.toldBefore);
  Storage* foreign = nullptr;
  Storage** end = &foreign;
  for (Storage* storage = level.saved; storage != nullptr;) {
    Storage& undone = *storage;
    Element& element = *undone.element_;
    storage = undone.next_;
    if (storage != nullptr) fetch(*storage);
    element.copyStateFromStorage(undone);
    element.storage_ = undone.outer_;
    if (undone.isInert_) {
      delete &undone;
      element.dropRef();  // not the last: the model holds what it has
    } else {
      *end = &undone;
      end = &undone.next_;
    }
  }
  *end = nullptr;
  Element* undone = nullptr;
  while (model.newest_ != level.newestBefore) {
    Element& created = *model.newest_;
    unlink(created);
    if ((created.flags_ & Element::Identified) != 0) forget(created);
    created.invalidate();
    created.next_ = undone;
    undone = &created;
  }
  model.top_ = level.outer;
  recycle(level);
  while (undone != nullptr) {
    Element& created = *undone;
    undone = created.next_;
    created.next_ = nullptr;
    created.basicDisassociateAll();
    created.removeRef();
  }
  release(foreign);
}

void ModelAccess::release(Storage* saved) noexcept {
  while (saved != nullptr) {
    const ModelElement keep(saved->element_);  // the storage's marks reach into the element
    const std::unique_ptr<Storage> storage(saved);
    saved = storage->next_;
    keep.removeRef();  // the storage's own reference
  }
}

/// Release the storages of elements that are gone and give the others, in their order.
ModelAccess::Storage* ModelAccess::releaseOfDead(Storage* saved) noexcept {
  Storage* living = nullptr;
  Storage** endOfLiving = &living;
  Storage* dead = nullptr;
  while (saved != nullptr) {
    Storage& storage = *saved;
    saved = std::exchange(storage.next_, nullptr);
    if (storage.element_->isAlive()) {
      *endOfLiving = &storage;
      endOfLiving = &storage.next_;
    } else {
      storage.next_ = dead;
      dead = &storage;
    }
  }
  release(dead);
  return living;
}

std::vector<ModelElement> ModelAccess::createdIn(const Level& level) {
  std::vector<ModelElement> result;
  const Element* const first = level.newestBefore;
  for (Element* element = first == nullptr ? level.model->oldest_ : first->next_; element != nullptr;
       element = element->next_) {
    if (element->isAlive()) result.emplace_back(element);
  }
  return result;
}

std::vector<ModelElement> ModelAccess::destroyedIn(const Level& level) {
  std::vector<ModelElement> result;
  for (const Storage* storage = level.saved; storage != nullptr; storage = storage->next_) {
    if (!storage->element_->isAlive()) result.emplace_back(storage->element_);
  }
  std::reverse(result.begin(), result.end());
  return result;
}

bool ModelAccess::hasChanges(const Storage* saved) noexcept {
  while (saved != nullptr && !hasChangedProperty(*saved)) saved = saved->next_;
  return saved != nullptr;
}

/// Tell all observers. If they drop the last handle to the model, it ends behind this.
void ModelAccess::notify(Model::Impl& model, const ChangeSet& changes) noexcept {
  ++model.telling_;
  const std::size_t count = model.observers_.size();  // one that is added meanwhile hears of the next commit
  for (std::size_t at = 0; at != count; ++at) {
    ChangeObserver* const observer = model.observers_[at];
    if (observer == nullptr) continue;
    ++model.counters_.notices;
    observer->changed(changes);
  }
  if (--model.telling_ == 0 && model.isUntidy_) tidyUp(model);
}

/// Let go of what had to stay while observers were told.
void ModelAccess::tidyUp(Model::Impl& model) noexcept {
  model.isUntidy_ = false;
  std::erase(model.observers_, nullptr);
  release(std::exchange(model.retained_, nullptr));
  if (model.references_ == 0) model.end();
}

void ModelAccess::tellLoneChange(Element& element, const Storage& saved) noexcept {
  const ModelElement keep(&element);
  Model::Impl& model = *element.model_;
  notify(model, ChangeSet(model, {}, {}, &saved, nullptr));
}

void ModelAccess::createMute(const ModelElement& created) {
  Element& element = *created.impl();
  Model::Impl& model = *element.model_;
  countTransaction(model);
  if ((element.flags_ & Element::Identified) != 0) model.identify(element.uuid_, element);
  link(element);
  if (isAloneAndObserved(model)) notify(model, ChangeSet(model, {&created, 1}, {}, nullptr, nullptr));
}

void ModelAccess::link(Element& element) noexcept {
  Model::Impl& model = *element.model_;
  element.previous_ = model.newest_;
  (model.newest_ == nullptr ? model.oldest_ : model.newest_->next_) = &element;
  model.newest_ = &element;
  element.storage_ = model.top_ == nullptr ? nullptr : &model.top_->created;
  element.flags_ |= Element::Alive;
  element.addRef();
}

void ModelAccess::forget(Element& element) noexcept {
  auto& identified = element.model_->identified_;
  const auto [first, last] = identified.equal_range(element.uuid_);
  const auto found = std::find_if(first, last, [&](const auto& entry) { return entry.second == &element; });
  if (found != last) identified.erase(found);
}

/// Let go of elements that were destroyed for good, which are linked by `next_`.
void ModelAccess::bury(Element* dead) noexcept {
  while (dead != nullptr) {
    Element& buried = *dead;
    dead = buried.next_;
    buried.next_ = nullptr;
    endForGood(buried);
    buried.dropRef();
  }
}

}  // namespace lx::base
