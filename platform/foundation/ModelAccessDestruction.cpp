// How elements come to their end.
//
// First all that is to go is told, container first, while everything still stands; what the telling brings
// into it is told as well. Only then are the elements marked dead, in the transaction that the destruction
// began, so that abandoning it or one around it brings them back. Who has been told is noted in the model
// until the outermost destruction ends, and is cut back where a transaction is undone: what it brings back is
// told again.

#include <utility>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ContainmentSlot.h"
#include "platform/foundation/ModelAccess.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/internal/Meanwhile.h"

namespace lx::base {

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

bool ModelAccess::hasDyingContainer(const Element& element) noexcept {
  for (const Element* container = element.container(); container != nullptr;
       container = container->container()) {
    if ((container->flags_ & Element::Dying) != 0) return true;
  }
  return false;
}

namespace {

/// Run a step at the end of a scope, whichever way it is left.
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

/// Collect the children of an element.
class Children final : public ModelElement::Impl::ContainedVisitor {
 public:
  explicit Children(ModelElement::Impl& element) { element.doDestroy(*this); }
  void visit(ModelElement::Impl& child) override { elements.emplace_back(&child); }

  std::vector<ModelElement> elements;
};

/// Give an element with all that it contains, containers first.
std::vector<ModelElement> subtreeOf(ModelElement::Impl& root) {
  std::vector<ModelElement> subtree{ModelElement(&root)};
  for (std::size_t at = 0; at < subtree.size(); ++at) {
    const std::vector<ModelElement> children = Children(*subtree[at].impl()).elements;
    subtree.insert(subtree.end(), children.begin(), children.end());
  }
  return subtree;
}

bool isWithin(const ModelElement::Impl& root, const ModelElement::Impl& element) noexcept {
  const ModelElement::Impl* each = &element;
  while (each != nullptr && each != &root) each = each->container();
  return each == &root;
}

}  // namespace

/// Tell an element, and then what it contains: through a list and not by calling each other, since containers
/// may stand in each other however deep.
void ModelAccess::tell(Element& element) {
  if (element.isBeingDestroyed()) return;
  const ModelElement keep(&element);  // a transaction that made it may be undone meanwhile
  Model::Impl& model = *element.model_;
  model.told_.emplace_back(&element);
  element.flags_ |= Element::Told;
  {
    const FinalChanges finality(element);
    element.aboutToDestroy();
  }
  if (!element.isBeingDestroyed()) return;  // a transaction around it was undone
  std::vector<ModelElement> children = Children(element).elements;
  if (model.toBeTold_ != nullptr) {
    model.toBeTold_->insert(model.toBeTold_->end(), children.rbegin(), children.rend());
    return;
  }
  std::vector<ModelElement> next(children.rbegin(), children.rend());
  const detail::Meanwhile list(model.toBeTold_, &next);
  while (!next.empty()) {
    const ModelElement child = std::move(next.back());
    next.pop_back();
    const Element* const container = child.impl()->container();
    if (container != nullptr && container->isBeingDestroyed()) child.impl()->notifyDestroying();
  }
}

/// Tell an element and all that it contains, again and again until nothing untold has come into it.
void ModelAccess::tellAll(Element& root, const Transaction& transaction) {
  const Model model(root.model_);
  const detail::Meanwhile list(model.impl()->toBeTold_,
                               nullptr);  // what is under way goes on when this has ended
  root.notifyDestroying();
  std::size_t known = 0;
  do {
    known = model.impl()->told_.size();
    for (const ModelElement& each : subtreeOf(root)) {
      if (!transaction.isOpen() || !root.isAlive()) return;
      if (!each.impl()->isBeingDestroyed() && isWithin(root, *each.impl())) each.impl()->notifyDestroying();
    }
  } while (model.impl()->told_.size() != known);
}

/// Tell every element of a model that ends: each behind its container, also what has come meanwhile.
void ModelAccess::tellModel(Model::Impl& model, bool swallow) {
  std::size_t known = 0;
  bool isCutShort = false;
  do {
    known = model.told_.size();
    isCutShort = false;
    for (Element* element = model.oldest_; element != nullptr && !isCutShort;) {
      const ModelElement keep(element);
      const Element* const container = element->container();
      const bool isNext = container == nullptr || container->isBeingDestroyed();
      try {
        if (element->isAlive() && !element->isBeingDestroyed() && isNext) element->notifyDestroying();
      } catch (...) {
        if (!swallow) throw;
      }
      isCutShort =
          element->model_ == nullptr;  // it went with the transaction that made it, and its place, too
      element = element->next_;
    }
  } while (isCutShort || model.told_.size() != known);
}

void ModelAccess::untell(Model::Impl& model, std::size_t from) noexcept {
  while (model.told_.size() > from) {
    model.told_.back().impl()->flags_ &= ~static_cast<std::uint32_t>(Element::Told);
    model.told_.pop_back();
  }
}

void ModelAccess::kill(Element& element) {
  const std::vector<ModelElement> subtree = subtreeOf(element);
  for (const ModelElement& each : subtree) each.impl()->notifyModifying(Element::LifeIndex);
  if (element.slot_ != nullptr) element.slot_->takeOut(element);
  for (const ModelElement& each : subtree) each.impl()->flags_ &= ~static_cast<std::uint32_t>(Element::Alive);
  for (const ModelElement& each : subtree) each.impl()->disassociateIncoming();
}

/// Let those come to their end, too, whose place another element was given when they had been told.
void ModelAccess::killReplaced(Model::Impl& model, std::size_t toldBefore) {
  for (std::size_t at = toldBefore; at < model.told_.size(); ++at) {
    const ModelElement told = model.told_[at];
    if (told.isAlive() && told.impl()->slot_ == nullptr) kill(*told.impl());
  }
}

/// Tell whether an element is there and can be destroyed without more ado: nothing is to be undone, nobody
/// has a say in it, and it stands alone, or nobody hears that its container changes.
bool ModelAccess::endsUnheard(const Element& element) noexcept {
  constexpr std::uint32_t Asked = Element::Alive | Element::Told | Element::Mute | Element::Composite;
  if ((element.flags_ & Asked) != (Element::Alive | Element::Mute)) return false;
  const Model::Impl& model = *element.model_;
  return (element.slot_ == nullptr || model.observers_.empty()) && element.incoming_ == nullptr &&
         model.top_ == nullptr && !model.frozen_;
}

void ModelAccess::destroyUnheard(Element& element) {
  if (element.slot_ != nullptr) element.slot_->takeOut(element);
  Model::Impl& model = *element.model_;
  model.addRef();
  countTransaction(model);
  element.flags_ &= ~static_cast<std::uint32_t>(Element::Alive);
  unlink(element);
  const ModelElement destroyed = adopt(element);  // the model's reference
  if (!model.observers_.empty()) notify(model, ChangeSet(model, {}, {&destroyed, 1}, nullptr, nullptr));
  endForGood(element);
  model.removeRef();
}

void ModelAccess::destroy(Element& element) {
  if (endsUnheard(element)) return destroyUnheard(element);
  if (element.isAlive() && !element.isBeingDestroyed()) destroyHeard(element);
}

void ModelAccess::destroyHeard(Element& element) {
  const ModelElement keep(&element);
  const Model keepModel(element.model_);
  Model::Impl& model = *element.model_;
  Transaction transaction = model.beginTransaction(false);
  const std::size_t toldBefore = model.told_.size();
  const bool outermost = model.destroying_++ == 0;
  {
    const Finally end([&] { --model.destroying_; });
    tellAll(element, transaction);
    if (!transaction.isOpen()) {
      report::invalidValue("ModelElement.destroy",
                           "a transaction around it was ended within aboutToDestroy; end it afterwards.");
    }
    if (element.isAlive()) kill(element);
    killReplaced(model, toldBefore);
  }
  if (outermost) untell(model, toldBefore);
  transaction.commit();
}

bool ModelAccess::destroyContents(Element& element) {
  for (;;) {
    bool isEmpty = true, isDone = true;
    for (const ModelElement& child : Children(element).elements) {
      if (child.impl()->container() != &element) continue;
      isEmpty = false;
      if (child.impl()->isBeingDestroyed()) continue;
      isDone = false;
      child.impl()->destroy();
    }
    if (isDone) return isEmpty;
  }
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
    tellModel(model, swallow);
    transaction.commit();
  } catch (...) {
    if (!swallow) {
      model.frozen_ = wasFrozen;
      throw;
    }
  }
  model.alive_ = false;
  model.removeObservers();
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
