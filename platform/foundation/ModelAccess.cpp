// How transactions are kept. Each open one is a level; an element that changed or was created in a level has
// a storage there. What can throw is done before anything has changed, and undoing only swaps and relinks.

#include <algorithm>

#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Report.h"

namespace lx::base {

using detail::Level;

namespace {

/// Runs a step at the end of a scope, whichever way it is left.
template <class F>
class Finally {
 public:
  explicit Finally(F step) : step_(std::move(step)) {}
  Finally(const Finally&) = delete;
  Finally& operator=(const Finally&) = delete;
  ~Finally() { step_(); }

 private:
  F step_;
};

void checkUsable(const Model::Impl& model) {
  if (!model.isAlive())
    report::invalidValue("Model.beginTransaction", "the model was destroyed; make a new one.");
  if (model.isFrozen()) report::invalidValue("Model.beginTransaction", "the model is frozen; thaw it first.");
}

}  // namespace

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

  for (Storage* storage = level.saved; storage != nullptr; storage = storage->next_) {
    storage->revertUnchanged(*storage->element_);
  }
  const bool tells = !level.quiet && !model.observers_.empty();
  const ChangeSet changes = tells ? collectChanges(level) : ChangeSet();

  // From here on nothing throws: the changes stand.
  const Model keep(&model);
  Storage* saved = level.saved;
  Element* dead = nullptr;
  const auto bringOut = [&](Element& element) {
    unlink(element);
    element.next_ = dead;
    dead = &element;
  };
  Element* element = level.newestBefore == nullptr ? model.oldest_ : level.newestBefore->next_;
  while (element != nullptr) {
    Element& created = *element;
    element = element->next_;
    created.storage_ = nullptr;
    if (!created.isAlive()) bringOut(created);
  }
  for (Storage* storage = saved; storage != nullptr; storage = storage->next_) {
    storage->element_->storage_ = nullptr;
    if (!storage->element_->isAlive()) bringOut(*storage->element_);
  }
  model.top_ = nullptr;
  recycle(level);
  if (!changes.created_.empty() || !changes.destroyed_.empty() || changes.hasChanges_) notify(model, changes);
  while (dead != nullptr) {
    Element& buried = *dead;
    dead = buried.next_;
    buried.next_ = nullptr;
    bury(buried);
  }
  if (model.telling_ == 0) {
    release(std::exchange(model.retained_, nullptr));
    release(saved);
    return;
  }
  // A notice under way may still be asked for older values of what lives, which are found by going back over
  // these.
  saved = releaseOfDead(saved);
  Storage** end = &saved;
  while (*end != nullptr) end = &(*end)->next_;
  *end = std::exchange(model.retained_, nullptr);
  model.retained_ = saved;
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

void ModelAccess::rollBack(Level& level) noexcept {
  Model::Impl& model = *level.model;
  const Model keep(&model);
  while (model.top_ != &level) rollBack(*model.top_);

  Storage* const saved = level.saved;
  for (Storage* storage = saved; storage != nullptr; storage = storage->next_) {
    storage->element_->copyStateFromStorage(*storage);
    storage->element_->storage_ = storage->outer_;
  }
  Element* undone = nullptr;
  while (model.newest_ != level.newestBefore) {
    Element& created = *model.newest_;
    unlink(created);
    forget(created);
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
  release(saved);
}

void ModelAccess::release(Storage* saved) noexcept {
  while (saved != nullptr) {
    const ModelElement keep(saved->element_);  // the storage's marks reach into the element
    const std::unique_ptr<Storage> storage(saved);
    saved = storage->next_;
    keep.removeRef();  // the storage's own reference
  }
}

/// Releases the storages of elements that are gone and gives the others, in their order.
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

ChangeSet ModelAccess::collectChanges(Level& level) {
  ChangeSet result;
  result.model_ = Model(level.model);
  if (level.label) result.label_ = *level.label;
  const Element* const first = level.newestBefore;
  for (Element* element = first == nullptr ? level.model->oldest_ : first->next_; element != nullptr;
       element = element->next_) {
    if (element->isAlive()) result.created_.emplace_back(element);
  }
  for (const Storage* storage = level.saved; storage != nullptr; storage = storage->next_) {
    if (!storage->element_->isAlive()) result.destroyed_.emplace_back(storage->element_);
  }
  std::reverse(result.destroyed_.begin(), result.destroyed_.end());
  forEachChanged(level.saved, [&](const Element&, const Storage&) { result.hasChanges_ = true; });
  result.saved_ = level.saved;
  return result;
}

void ModelAccess::notify(Model::Impl& model, const ChangeSet& changes) noexcept {
  ++model.telling_;
  const std::size_t count = model.observers_.size();  // one that is added meanwhile hears of the next commit
  for (std::size_t at = 0; at < std::min(count, model.observers_.size()); ++at) {
    if (model.observers_[at] == nullptr) continue;
    ++model.counters_.notices;
    model.observers_[at]->changed(changes);
  }
  if (--model.telling_ == 0) std::erase(model.observers_, nullptr);
}

void ModelAccess::link(Element& element) {
  Model::Impl& model = *element.model_;
  element.previous_ = model.newest_;
  (model.newest_ == nullptr ? model.oldest_ : model.newest_->next_) = &element;
  model.newest_ = &element;
  element.storage_ = model.top_ == nullptr ? nullptr : &model.top_->created;
  element.flags_ |= Element::Alive;
  element.addRef();
}

void ModelAccess::unlink(Element& element) noexcept {
  Model::Impl& model = *element.model_;
  (element.previous_ == nullptr ? model.oldest_ : element.previous_->next_) = element.next_;
  (element.next_ == nullptr ? model.newest_ : element.next_->previous_) = element.previous_;
  element.previous_ = nullptr;
  element.next_ = nullptr;
}

void ModelAccess::forget(Element& element) noexcept {
  if ((element.flags_ & Element::Identified) == 0) return;
  auto& identified = element.model_->identified_;
  const auto [first, last] = identified.equal_range(element.uuid_);
  const auto found = std::find_if(first, last, [&](const auto& entry) { return entry.second == &element; });
  if (found != last) identified.erase(found);
}

/// Lets go of an element that was destroyed for good.
void ModelAccess::bury(Element& element) noexcept {
  forget(element);
  element.invalidate();
  element.basicDisassociateAll();
  element.removeRef();
}

FinalChanges::FinalChanges(ModelElement::Impl& element)
    : element_(&element), model_(element.model_), wasOn_((element.flags_ & ModelElement::Impl::Dying) != 0) {
  if (wasOn_) return;
  element.flags_ |= ModelElement::Impl::Dying;
  ++element.model_->dying_;
}

FinalChanges::~FinalChanges() {
  if (wasOn_) return;
  element_.impl()->flags_ &= ~static_cast<std::uint32_t>(ModelElement::Impl::Dying);
  --model_.impl()->dying_;
}

bool ModelAccess::isWithinDying(const Element& element) noexcept {
  if (element.model_ == nullptr || element.model_->dying_ == 0) return false;
  for (const Element* container = element.container(); container != nullptr;
       container = container->container()) {
    if ((container->flags_ & Element::Dying) != 0) return true;
  }
  return false;
}

namespace {

/// Collects the children of an element.
class Children final : public ModelElement::Impl::ContainedVisitor {
 public:
  explicit Children(ModelElement::Impl& element) { element.doDestroy(*this); }
  void visit(ModelElement::Impl& child) override { elements.emplace_back(&child); }

  std::vector<ModelElement> elements;
};

}  // namespace

void ModelAccess::tell(Element& element) {
  if ((element.flags_ & Element::Told) != 0) return;
  Model::Impl& model = *element.model_;
  model.told_.emplace_back(&element);
  element.flags_ |= Element::Told;
  {
    const FinalChanges finality(element);
    element.aboutToDestroy();
  }
  for (const ModelElement& child : Children(element).elements) {
    if (child.isAlive() && child.impl()->container() == &element) child.impl()->notifyDestroying();
  }
}

void ModelAccess::untell(Model::Impl& model, std::size_t from) noexcept {
  for (std::size_t at = from; at < model.told_.size(); ++at) {
    model.told_[at].impl()->flags_ &= ~static_cast<std::uint32_t>(Element::Told);
  }
  model.told_.resize(from);
}

void ModelAccess::kill(Element& element) {
  std::vector<ModelElement> subtree{ModelElement(&element)};
  for (std::size_t at = 0; at < subtree.size(); ++at) {
    const std::vector<ModelElement> children = Children(*subtree[at].impl()).elements;
    subtree.insert(subtree.end(), children.begin(), children.end());
  }
  for (const ModelElement& each : subtree) each.impl()->notifyModifying(Element::LifeIndex);
  if (element.slot_ != nullptr) element.slot_->takeOut(element);
  for (const ModelElement& each : subtree) each.impl()->flags_ &= ~static_cast<std::uint32_t>(Element::Alive);
}

void ModelAccess::destroy(Element& element) {
  if (!element.isAlive() || (element.flags_ & Element::Told) != 0) return;
  Model::Impl& model = *element.model_;
  const ModelElement keep(&element);
  Transaction transaction = model.beginTransaction(false);
  const std::size_t toldBefore = model.told_.size();
  const bool outermost = model.destroying_++ == 0;
  try {
    element.notifyDestroying();
    if (element.isAlive()) kill(element);
  } catch (...) {
    --model.destroying_;
    untell(model, toldBefore);
    throw;
  }
  --model.destroying_;
  if (outermost) untell(model, toldBefore);
  transaction.commit();
}

void ModelAccess::destroyContents(Element& element) {
  for (const ModelElement& child : Children(element).elements) child.impl()->destroy();
}

void ModelAccess::tearDown(Model::Impl& model, bool swallow) {
  const Model keep(&model);
  const bool wasFrozen = std::exchange(model.frozen_, false);
  try {
    Transaction transaction = model.beginTransaction(true);
    ++model.destroying_;
    const Finally end([&] {
      --model.destroying_;
      untell(model, 0);
    });
    for (Element* element = model.oldest_; element != nullptr; element = element->next_) {
      if (!element->isAlive() || element->slot_ != nullptr) continue;
      try {
        element->notifyDestroying();
      } catch (...) {
        if (!swallow) throw;
      }
    }
    transaction.commit();
  } catch (...) {
    if (!swallow) {
      model.frozen_ = wasFrozen;
      throw;
    }
  }
  model.alive_ = false;
  model.observers_.clear();
  Element* gone = model.oldest_;
  model.oldest_ = nullptr;
  model.newest_ = nullptr;
  model.identified_.clear();
  for (Element* element = gone; element != nullptr; element = element->next_) element->invalidate();
  while (gone != nullptr) {
    Element& element = *gone;
    gone = element.next_;
    element.next_ = nullptr;
    element.previous_ = nullptr;
    element.basicDisassociateAll();
    element.removeRef();
  }
}

}  // namespace lx::base
