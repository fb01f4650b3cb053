#include "platform/foundation/ReferenceCollection.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "platform/foundation/Report.h"
#include "platform/foundation/internal/ReferenceIndex.h"

namespace lx::base {

void ReferenceCollection::checkCompatibleModel(const ModelElement::Impl& element) const {
  if (element.modelImpl() != owner().modelImpl()) report::cannotCreateCrossModelAssociation(owner(), index());
}

ModelElement ReferenceCollection::resolveProxy(const ModelElement& proxy) {
  owner().checkWritable(index());
  const ModelElement loaded = peekResolveProxy(proxy);
  if (loaded) replace(*proxy.impl(), *loaded.impl());
  return loaded;
}

ModelElement ReferenceCollection::peekResolveProxy(const ModelElement& proxy) const {
  if (!owner().isAlive() || !proxy || !holds(*proxy.impl())) return {};
  const ModelElement loaded = detail::loadedElement(proxy);
  return loaded && accepts(*loaded.impl()) ? loaded : ModelElement();
}

namespace detail {

using Entry = ReferenceEntry;

namespace {

/// Put into, and take from, what stands in a vector. Where the order is free the last one changes places
/// with it, so that each undoes the other exactly. Needs no memory within the capacity.
template <class T>
void insertAt(std::vector<T>& all, std::size_t position, T one, ReferenceOrder order) {
  if (order == ReferenceOrder::Kept) {
    all.insert(all.begin() + static_cast<std::ptrdiff_t>(position), std::move(one));
    return;
  }
  all.push_back(std::move(one));
  std::swap(all[position], all.back());
}

template <class T>
void eraseAt(std::vector<T>& all, std::size_t position, ReferenceOrder order) {
  if (order == ReferenceOrder::Kept) {
    all.erase(all.begin() + static_cast<std::ptrdiff_t>(position));
    return;
  }
  std::swap(all[position], all.back());
  all.pop_back();
}

}  // namespace

ReferenceCollectionCore::ReferenceCollectionCore(ModelElement::Impl& owner, unsigned index,
                                                 ReferenceOrder order, Proxies proxies)
    : ReferenceCollection(owner, index), order_(order), proxiesAre_(proxies) {}

ReferenceCollectionCore::~ReferenceCollectionCore() {
  letGo();
}

std::vector<ModelElement> ReferenceCollectionCore::elements() const {
  std::vector<ModelElement> result;
  if (!owner().isAlive()) return result;
  result.reserve(entries_.size());
  for (const Entry* entry : entries_) result.push_back(entry->target);
  return result;
}

std::vector<ModelElement> ReferenceCollectionCore::proxyElements() const {
  std::vector<ModelElement> result = elements();
  std::erase_if(result, [](const ModelElement& element) { return !element.isProxy(); });
  return result;
}

void ReferenceCollectionCore::checkAddable(const ModelElement::Impl* element) const {
  owner().checkWritable(index());
  if (element == nullptr || !element->isAlive()) report::cannotAddNonExistentObject(owner(), index());
  checkCompatibleModel(*element);
  if (element->isProxy() && proxiesAre_ == Proxies::Refused)
    report::cannotAddNonExistentObject(owner(), index());
}

void ReferenceCollectionCore::raiseNoElement() const {
  report::invalidValue(owner().nameOfProperty(index()), u"there is no element at this position.");
}

// Changes

bool ReferenceCollectionCore::insertElement(std::size_t position, ModelElement::Impl* element) {
  checkAddable(element);
  if (find(*element) != nullptr) return false;
  if (position > entries_.size()) {
    report::invalidValue(owner().nameOfProperty(index()),
                         u"the position lies behind the end; add at the end.");
  }
  makeRoom();
  auto entry = std::make_unique<Entry>();
  entry->target = ModelElement(element);
  entry->isProxy = element->isProxy();
  if (entry->isProxy) makeRoomForProxy(*element);
  Operation operation(*this);
  std::unique_ptr<Change> change = makeChange(Change::Kind::Inserted, position, *entry);
  put(position, *entry.release());
  if (change) journal_.push(std::move(change));
  operation.commit();
  return true;
}

bool ReferenceCollectionCore::removeElement(const ModelElement& element) {
  owner().checkWritable(index());
  Entry* const entry = element ? find(*element.impl()) : nullptr;
  if (entry == nullptr) return false;
  removeEntry(*entry);
  return true;
}

void ReferenceCollectionCore::removeEntry(Entry& entry) {
  Operation operation(*this);
  const std::size_t position = positionOf(entry);
  std::unique_ptr<Change> change = makeChange(Change::Kind::Removed, position, entry);
  std::unique_ptr<Entry> kept(&take(position));
  if (change) {
    change->kept = std::move(kept);
    journal_.push(std::move(change));
  }
  operation.commit();
}

void ReferenceCollectionCore::clear() {
  owner().checkWritable(index());
  if (entries_.empty()) return;
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  while (!entries_.empty()) removeEntry(*entries_.back());
  transaction.commit();
}

void ReferenceCollectionCore::replace(ModelElement::Impl& proxy, ModelElement::Impl& element) {
  checkAddable(&element);
  Transaction transaction = owner().modelImpl()->beginTransaction(false);
  if (Entry* const present = find(element)) removeEntry(*present);
  Entry& former = *find(proxy);
  const std::size_t position = positionOf(former);
  removeEntry(former);
  insertElement(position, &element);
  transaction.commit();
}

void ReferenceCollectionCore::targetDies(Link& link) {
  removeEntry(static_cast<Entry&>(link));
}

void ReferenceCollectionCore::targetBecomesProxy(Link& link) {
  auto& entry = static_cast<Entry&>(link);
  if (proxiesAre_ == Proxies::Refused) {
    removeEntry(entry);
    return;
  }
  if (entry.isProxy) return;
  makeRoomForProxy(*entry.target.impl());
  Operation operation(*this);
  std::unique_ptr<Change> change = makeChange(Change::Kind::BecameProxy, 0, entry);
  entry.isProxy = true;
  count(entry, true);
  if (change) journal_.push(std::move(change));
  changed();
  operation.commit();
}

void ReferenceCollectionCore::targetIsResolved(Link& link, ModelElement::Impl& element) {
  replace(*link.target.impl(), element);
}

// Entries

/// Find the entry of an element: by its hash, or else over the entries and over what refers to the element in
/// step, since either may be long.
Entry* ReferenceCollectionCore::find(const ModelElement::Impl& element) const noexcept {
  if (order_ == ReferenceOrder::Free) return byHash_ ? byHash_->find(element) : nullptr;
  Link* link = element.incoming();
  for (std::size_t at = 0; at < entries_.size() && link != nullptr; ++at, link = link->next) {
    if (link->field == this) return static_cast<Entry*>(link);
    if (entries_[at]->target.impl() == &element) return entries_[at];
  }
  return nullptr;
}

std::size_t ReferenceCollectionCore::positionOf(const Entry& entry) const noexcept {
  if (order_ == ReferenceOrder::Free) return entry.position;
  const auto found = std::find(entries_.rbegin(), entries_.rend(), &entry);  // clearing goes from the back
  return static_cast<std::size_t>(entries_.rend() - found) - 1;
}

/// Make sure that one more entry needs no memory, now and when its removal is undone.
void ReferenceCollectionCore::makeRoom() {
  if (entries_.size() == entries_.capacity()) entries_.reserve(std::max<std::size_t>(4, 2 * entries_.size()));
  if (order_ == ReferenceOrder::Kept) return;
  if (!byHash_) byHash_ = std::make_unique<ReferenceIndex>();
  byHash_->reserve(entries_.size() + 1);
}

/// Make sure that one more proxy needs no memory, and that it has an identity.
void ReferenceCollectionCore::makeRoomForProxy(const ModelElement::Impl& element) {
  static_cast<void>(element.identifier());
  if (filter_ && proxies_ < filter_->expected()) return;
  auto next = filter_ ? std::make_unique<SaturatedBloomFilter>(2 * filter_->expected())
                      : std::make_unique<SaturatedBloomFilter>();
  for (const Entry* entry : entries_) {
    if (entry->isProxy) next->add(entry->target.impl()->getPersistentProxyId(false));
  }
  filter_ = std::move(next);
}

std::unique_ptr<ReferenceCollectionCore::Change> ReferenceCollectionCore::makeChange(Change::Kind kind,
                                                                                     std::size_t position,
                                                                                     Entry& entry) const {
  if (!owner().isLogged(index())) return nullptr;
  return std::unique_ptr<Change>(new Change{nullptr, kind, position, &entry, nullptr});
}

void ReferenceCollectionCore::put(std::size_t position, Entry& entry) noexcept {
  insertAt(entries_, position, &entry, order_);
  if (order_ == ReferenceOrder::Free) {
    entries_.back()->position = entries_.size() - 1;
    entry.position = position;
    byHash_->insert(entry);
  }
  link(entry);
  if (entry.isProxy) count(entry, true);
  changed();
}

Entry& ReferenceCollectionCore::take(std::size_t position) noexcept {
  Entry& entry = *entries_[position];
  if (entry.isProxy) count(entry, false);
  unlink(entry);
  eraseAt(entries_, position, order_);
  if (order_ == ReferenceOrder::Free) {
    if (position < entries_.size()) entries_[position]->position = position;
    byHash_->erase(entry);
  }
  changed();
  return entry;
}

/// Note an entry's proxy, or that it has gone.
void ReferenceCollectionCore::count(const Entry& entry, bool isThere) noexcept {
  const boost::uuids::uuid uuid = entry.target.impl()->getPersistentProxyId(false);
  if (isThere) {
    ++proxies_;
    filter_->add(uuid);
  } else {
    --proxies_;
    filter_->remove(uuid);
  }
}

bool ReferenceCollectionCore::containsProxyTo(const boost::uuids::uuid& uuid) const noexcept {
  if (proxies_ == 0 || !owner().isAlive() || !filter_->contains(uuid)) return false;
  return std::any_of(entries_.begin(), entries_.end(), [&](const Entry* entry) {
    return entry->isProxy && isProxyTo(*entry->target.impl(), uuid);
  });
}

// Comparing and undoing

void ReferenceCollectionCore::checkReplacement(const std::vector<ModelElement>& elements) const {
  for (const ModelElement& element : elements) checkAddable(element.impl());
  checkEachOnce(*this, elements);
}

bool ReferenceCollectionCore::isMadeOf(const std::vector<ModelElement>& elements) const {
  if (order_ == ReferenceOrder::Kept) return elements == this->elements();
  std::unordered_set<const ModelElement::Impl*> given;
  for (const ModelElement& element : elements) {
    if (!element || !holds(*element.impl()) || !given.insert(element.impl()).second) return false;
  }
  return given.size() == size();
}

void ReferenceCollectionCore::restoreFrom(Old& old) noexcept {
  while (journal_.top() != old.top()) {
    const std::unique_ptr<Change> change = journal_.pop();
    switch (change->kind) {
      case Change::Kind::Inserted:
        delete &take(change->position);
        break;
      case Change::Kind::Removed:
        put(change->position, *change->kept.release());
        break;
      case Change::Kind::BecameProxy:
        count(*change->entry, false);
        change->entry->isProxy = false;
        break;
    }
  }
  old.clear();
  changed();
}

std::vector<ModelElement> ReferenceCollectionCore::elementsAt(const Change* mark) const {
  std::vector<ModelElement> result;
  for (const Entry* entry : entries_) result.push_back(entry->target);
  for (const Change* change = journal_.top(); change != nullptr && change != mark; change = change->below) {
    if (change->kind == Change::Kind::Inserted)
      eraseAt(result, change->position, order_);
    else if (change->kind == Change::Kind::Removed)
      insertAt(result, change->position, change->entry->target, order_);
  }
  return result;
}

/// Where the order is free, another one is no change.
bool ReferenceCollectionCore::isUnchangedSince(const Old& old) const {
  const auto delta = [](const Change& change) {
    const int sum = change.kind == Change::Kind::Inserted ? 1 : change.kind == Change::Kind::Removed ? -1 : 0;
    return std::pair<const ModelElement::Impl*, int>(change.entry->target.impl(), sum);
  };
  return membershipIsUnchanged(static_cast<const Change*>(journal_.top()), old.top(), delta) &&
         (order_ == ReferenceOrder::Free || elementsAt(old.top()) == elementsAt(journal_.top()));
}

Value ReferenceCollectionCore::oldValue(const Old& old) const {
  return Value(elementsAt(old.top()));
}

void ReferenceCollectionCore::letGo() noexcept {
  while (!entries_.empty()) delete &take(entries_.size() - 1);
  journal_.clear();
}

}  // namespace detail
}  // namespace lx::base
