#include "tests/platform/foundation/random/Twin.h"

#include <algorithm>
#include <set>

namespace model_walk {

namespace {

bool has(const Content& content, int one) {
  return std::find(content.begin(), content.end(), one) != content.end();
}

void insertAt(Content& content, std::size_t position, int one) {
  content.insert(content.begin() + static_cast<std::ptrdiff_t>(position), one);
}

std::size_t positionOf(const Content& content, int one) {
  return static_cast<std::size_t>(std::find(content.begin(), content.end(), one) - content.begin());
}

void removeFrom(Content& content, int one) {
  content.erase(std::remove(content.begin(), content.end(), one), content.end());
}

std::vector<Twin::Values> valuesOfKinds(Content PropertyOfKind::*which) {
  std::vector<Twin::Values> result;
  for (int kind = 0; kind < Kinds; ++kind) {
    std::vector<Twin::Held> all;
    for (const PropertyOfKind& each : propertiesOf(static_cast<Kind>(kind)))
      all.push_back({each.*which, {}, {}});
    result.emplace_back(std::move(all));
  }
  return result;
}

const Twin::Values& initialOf(Kind kind) {
  static const std::vector<Twin::Values> all = valuesOfKinds(&PropertyOfKind::initial);
  return all[static_cast<std::size_t>(kind)];
}

const Twin::Values& zeroOf(Kind kind) {
  static const std::vector<Twin::Values> all = valuesOfKinds(&PropertyOfKind::zero);
  return all[static_cast<std::size_t>(kind)];
}

bool namesTwice(const Content& elements) {
  return std::set<int>(elements.begin(), elements.end()).size() != elements.size();
}

}  // namespace

// Asking

const Twin::Element* Twin::find(Id id) const {
  for (const Elements& elements : models_) {
    if (const auto found = elements.find(id); found != elements.end()) return &found->second;
  }
  return nullptr;
}

const Twin::Element& Twin::at(Id id) const {
  const Element* const found = find(id);
  return found != nullptr ? *found : models_[0].at(id);
}

const PropertyOfKind& Twin::property(Id owner, unsigned index) const {
  return propertiesOf(at(owner).kind)[index - 1];
}

bool Twin::holds(Id owner, unsigned index, Id child) const {
  return contains(child) && at(child).container == owner && at(child).slot == index;
}

bool Twin::refersTo(Id owner, unsigned index, Id target) const {
  return contains(owner) && has(at(owner).value(index), target);
}

std::vector<std::pair<int, Id>> Twin::referrers(Id id) const {
  std::vector<std::pair<int, Id>> result;
  for (const auto& [owner, element] : elements(at(id).model)) {
    int oldest = 0;
    const std::vector<PropertyOfKind>& properties = propertiesOf(element.kind);
    for (unsigned index = 1; index <= element.values.size(); ++index) {
      if (!isReferring(properties[index - 1].form) || !has(element.value(index), id)) continue;
      const int number = element.values[index - 1].numbers[positionOf(element.value(index), id)];
      oldest = oldest == 0 ? number : std::min(oldest, number);
    }
    if (oldest != 0) result.emplace_back(oldest, owner);
  }
  std::sort(result.begin(), result.end());
  return result;
}

Outcome Twin::writable(Id id) const {
  if (!contains(id)) return Outcome::InvalidValue;
  return at(id).isProxy ? Outcome::CannotModifyProxy : Outcome::Done;
}

// What comes and goes

void Twin::create(Id id, Kind kind, int model) {
  if (kinds_.size() < static_cast<std::size_t>(id)) kinds_.resize(static_cast<std::size_t>(id));
  kinds_[static_cast<std::size_t>(id) - 1] = kind;
  const Element element{kind, model, false, 0, 0, initialOf(kind)};
  models_[static_cast<std::size_t>(model)].emplace(id, element);
}

void Twin::createProxy(Id id, Kind kind, int model) {
  create(id, kind, model);
  makeProxy(id);
}

Outcome Twin::destroy(Id id) {
  if (contains(id)) erase(id);
  return Outcome::Done;
}

Outcome Twin::makeProxy(Id id) {
  if (!contains(id)) return Outcome::InvalidValue;
  if (at(id).isProxy) return Outcome::Done;
  const std::vector<PropertyOfKind>& properties = propertiesOf(at(id).kind);
  for (unsigned index = 1; index <= properties.size(); ++index) {
    if (isContaining(properties[index - 1].form)) clear(id, index);
  }
  Element& element = mutableAt(id);
  if (element.container != 0 && isKeyed(property(element.container, element.slot).form)) {
    Held& siblings = held(element.container, element.slot);
    removeFrom(siblings.content, id);
    siblings.apart.push_back(id);
  }
  forEachReference(element.model, id, [&](Id owner, unsigned index) {
    if (!property(owner, index).holdsProxies) forget(owner, index, id);
  });
  element.values = zeroOf(element.kind);
  element.isProxy = true;
  return Outcome::Done;
}

/// Call f with each property of a living element of the model that refers to the target.
template <class F>
void Twin::forEachReference(int model, Id target, F f) {
  for (auto& [owner, element] : models_[static_cast<std::size_t>(model)]) {
    const std::vector<PropertyOfKind>& properties = propertiesOf(element.kind);
    for (unsigned index = 1; index <= properties.size(); ++index) {
      if (isReferring(properties[index - 1].form) && has(element.value(index), target)) f(owner, index);
    }
  }
}

void Twin::erase(Id id) {
  takeOut(id);
  const int model = at(id).model;
  std::vector<Id> gone{id};
  for (std::size_t at = 0; at < gone.size(); ++at) {
    for (const auto& [child, element] : elements(model)) {
      if (element.container == gone[at]) gone.push_back(child);
    }
  }
  for (const Id each : gone) models_[static_cast<std::size_t>(model)].erase(each);
  for (const Id each : gone) {
    forEachReference(model, each, [&](Id owner, unsigned index) { forget(owner, index, each); });
  }
}

// Values

Outcome Twin::set(Id id, unsigned index, const Content& value) {
  if (const Outcome refusal = writable(id); refusal != Outcome::Done) return refusal;
  Element& element = mutableAt(id);
  if (element.value(index) == value) return Outcome::Done;
  const Id container = element.container;
  if (container == 0 || property(container, element.slot).key != index) {
    element.values.edit(index - 1).content = value;
    return Outcome::Done;
  }
  if (isTaken(container, element.slot, value)) return Outcome::UniquenessConstraint;
  Content& siblings = held(container, element.slot).content;
  removeFrom(siblings, id);
  element.values.edit(index - 1).content = value;
  insertAt(siblings, placeOf(container, element.slot, id), id);
  return Outcome::Done;
}

Outcome Twin::addValue(Id id, unsigned index, int value) {
  if (const Outcome refusal = writable(id); refusal != Outcome::Done) return refusal;
  Content& content = held(id, index).content;
  if (property(id, index).form == Form::List)
    content.push_back(value);
  else if (!has(content, value))
    content.insert(std::upper_bound(content.begin(), content.end(), value), value);
  return Outcome::Done;
}

Outcome Twin::removeValue(Id id, unsigned index, int value) {
  if (const Outcome refusal = writable(id); refusal != Outcome::Done) return refusal;
  removeFrom(held(id, index).content, value);
  return Outcome::Done;
}

// What contains what

Outcome Twin::addable(Id owner, Id child) const {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  if (!contains(child)) return Outcome::CannotAddNonExistentObject;
  if (at(child).model != at(owner).model) return Outcome::CannotCreateCrossModelAssociation;
  for (Id ancestor = owner; ancestor != 0; ancestor = at(ancestor).container) {
    if (ancestor == child) return Outcome::InvalidValue;
  }
  return Outcome::Done;
}

Outcome Twin::insert(Id owner, unsigned index, std::size_t position, Id child) {
  if (const Outcome refusal = addable(owner, child); refusal != Outcome::Done) return refusal;
  if (holds(owner, index, child)) return Outcome::Done;
  const PropertyOfKind& where = property(owner, index);
  if (where.form == Form::Children) {
    if (position > sizeOf(owner, index)) return Outcome::InvalidValue;
  } else if (!at(child).isProxy && isTaken(owner, index, at(child).value(where.key))) {
    return Outcome::UniquenessConstraint;
  }
  takeOut(child);
  const bool isSorted = isKeyed(where.form) && !at(child).isProxy;
  hang(owner, index, isSorted ? placeOf(owner, index, child) : position, child);
  return Outcome::Done;
}

Outcome Twin::put(Id owner, unsigned index, Id child) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const Content former = at(owner).value(index);
  if (former == (child == 0 ? Content() : Content{child})) return Outcome::Done;
  if (child != 0) {
    if (const Outcome refusal = addable(owner, child); refusal != Outcome::Done) return refusal;
    takeOut(child);
  }
  for (const Id each : former) erase(each);
  if (child != 0) hang(owner, index, 0, child);
  return Outcome::Done;
}

bool Twin::isTaken(Id owner, unsigned index, const Content& key) const {
  const PropertyOfKind& where = property(owner, index);
  const Content& children = at(owner).value(index);
  return where.form == Form::Map && std::any_of(children.begin(), children.end(),
                                                [&](Id child) { return at(child).value(where.key) == key; });
}

/// Find the place of a child that is about to come into a keyed collection: behind its equals.
std::size_t Twin::placeOf(Id owner, unsigned index, Id child) const {
  const unsigned key = property(owner, index).key;
  const Content& children = at(owner).value(index);
  const auto place = std::find_if(children.begin(), children.end(),
                                  [&](Id other) { return at(child).value(key) < at(other).value(key); });
  return static_cast<std::size_t>(place - children.begin());
}

void Twin::takeOut(Id child) {
  Element& element = mutableAt(child);
  if (element.container == 0) return;
  Held& siblings = held(element.container, element.slot);
  removeFrom(siblings.content, child);
  removeFrom(siblings.apart, child);
  element.container = 0;
  element.slot = 0;
}

void Twin::hang(Id owner, unsigned index, std::size_t position, Id child) {
  Held& siblings = held(owner, index);
  if (isKeyed(property(owner, index).form) && at(child).isProxy)
    siblings.apart.push_back(child);
  else
    insertAt(siblings.content, position, child);
  Element& element = mutableAt(child);
  element.container = owner;
  element.slot = index;
}

// What refers to what

Outcome Twin::refer(Id owner, unsigned index, Id target) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const Content next = target == 0 ? Content() : Content{target};
  if (at(owner).value(index) == next) return Outcome::Done;
  if (target != 0 && !contains(target)) return Outcome::InvalidValue;
  held(owner, index) = {next, {}, target == 0 ? Content() : Content{++numbers_}};
  return Outcome::Done;
}

Outcome Twin::referable(Id owner, unsigned index, Id target) const {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  if (!contains(target)) return Outcome::CannotAddNonExistentObject;
  if (at(target).model != at(owner).model) return Outcome::CannotCreateCrossModelAssociation;
  const bool isRefused = at(target).isProxy && !property(owner, index).holdsProxies;
  return isRefused ? Outcome::CannotAddNonExistentObject : Outcome::Done;
}

Outcome Twin::addReference(Id owner, unsigned index, std::size_t position, Id target) {
  if (const Outcome refusal = referable(owner, index, target); refusal != Outcome::Done) return refusal;
  if (refersTo(owner, index, target)) return Outcome::Done;
  if (property(owner, index).form == Form::Bag)
    position = placeInBag(owner, index, target);
  else if (position > sizeOf(owner, index))
    return Outcome::InvalidValue;
  ++numbers_;
  putReference(owner, index, position, target);
  return Outcome::Done;
}

/// A bag promises no order; here it ascends.
std::size_t Twin::placeInBag(Id owner, unsigned index, Id target) const {
  const Content& content = at(owner).value(index);
  return static_cast<std::size_t>(std::lower_bound(content.begin(), content.end(), target) - content.begin());
}

Outcome Twin::removeReference(Id owner, unsigned index, Id target) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  if (refersTo(owner, index, target)) forget(owner, index, target);
  return Outcome::Done;
}

void Twin::putReference(Id owner, unsigned index, std::size_t position, Id target) {
  Held& references = held(owner, index);
  insertAt(references.content, position, target);
  insertAt(references.numbers, position, numbers_);
}

void Twin::forget(Id owner, unsigned index, Id target) {
  Held& references = held(owner, index);
  const auto position = static_cast<std::ptrdiff_t>(positionOf(references.content, target));
  references.content.erase(references.content.begin() + position);
  references.numbers.erase(references.numbers.begin() + position);
}

void Twin::replaceReference(Id owner, unsigned index, Id former, Id target) {
  if (refersTo(owner, index, target)) forget(owner, index, target);
  const bool isBag = property(owner, index).form == Form::Bag;
  const std::size_t position = positionOf(at(owner).value(index), former);
  forget(owner, index, former);
  putReference(owner, index, isBag ? placeInBag(owner, index, target) : position, target);
}

// Collections as a whole

Outcome Twin::clear(Id owner, unsigned index) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const Held former = at(owner).values[index - 1];
  if (isContaining(property(owner, index).form)) {
    for (const Id each : former.content) erase(each);
    for (const Id each : former.apart) erase(each);
  } else {
    held(owner, index) = {};
  }
  return Outcome::Done;
}

Outcome Twin::replaceable(Id owner, unsigned index, const Content& elements) const {
  const PropertyOfKind& where = property(owner, index);
  for (const Id element : elements) {
    const Outcome refusal =
        isReferring(where.form) ? referable(owner, index, element) : addable(owner, element);
    if (refusal != Outcome::Done) return refusal;
  }
  if (namesTwice(elements)) return Outcome::InvalidValue;
  if (isReferring(where.form)) return Outcome::Done;
  for (const Id element : elements) {
    for (Id each = element; each != 0; each = at(each).container) {  // goes with what it would replace
      if (holds(owner, index, each)) return Outcome::CannotAddNonExistentObject;
    }
  }
  if (where.form != Form::Map) return Outcome::Done;
  std::set<Content> keys;
  for (const Id element : elements) {
    if (!at(element).isProxy && !keys.insert(at(element).value(where.key)).second)
      return Outcome::UniquenessConstraint;
  }
  return Outcome::Done;
}

/// Tell whether a collection is as if it had been made of a list. Of proxies in a keyed one a list may say
/// nothing.
bool Twin::isMadeOf(Id owner, unsigned index, const Content& elements) const {
  const PropertyOfKind& where = property(owner, index);
  Content wanted = elements, apart;
  if (where.form == Form::Bag) std::sort(wanted.begin(), wanted.end());
  if (isKeyed(where.form)) {
    for (const Id each : elements) {
      if (!holds(owner, index, each)) return false;
      if (!at(each).isProxy) continue;
      removeFrom(wanted, each);
      apart.push_back(each);
    }
    std::stable_sort(wanted.begin(), wanted.end(), [&](Id left, Id right) {
      return at(left).value(where.key) < at(right).value(where.key);
    });
  }
  const Held& held = at(owner).values[index - 1];
  return held.content == wanted && (apart.empty() || apart == held.apart);
}

Outcome Twin::replace(Id owner, unsigned index, const Content& elements) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const PropertyOfKind& where = property(owner, index);
  if (isMadeOf(owner, index, elements)) return Outcome::Done;
  for (const Id element : elements) {
    if (element != 0 && !where.takes(kindOf(element))) return Outcome::CannotAddIncompatibleTypes;
  }
  if (const Outcome refusal = replaceable(owner, index, elements); refusal != Outcome::Done) return refusal;
  clear(owner, index);
  for (const Id element : elements) {
    const std::size_t end = sizeOf(owner, index);
    isReferring(where.form) ? addReference(owner, index, end, element) : insert(owner, index, end, element);
  }
  return Outcome::Done;
}

// Proxies

Outcome Twin::resolve(Id owner, unsigned index, Id proxy, Id loaded) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const PropertyOfKind& where = property(owner, index);
  const bool isHere = isReferring(where.form) ? refersTo(owner, index, proxy) : holds(owner, index, proxy);
  if (!isHere || loaded == 0 || !where.takes(at(loaded).kind)) return Outcome::Done;
  if (where.form == Form::Reference) return refer(owner, index, loaded);
  if (isReferring(where.form)) {
    ++numbers_;
    replaceReference(owner, index, proxy, loaded);
    return Outcome::Done;
  }

  if (const Outcome refusal = addable(owner, loaded); refusal != Outcome::Done) return refusal;
  const bool isNew = !holds(owner, index, loaded);
  if (isKeyed(where.form) && isNew && isTaken(owner, index, at(loaded).value(where.key)))
    return Outcome::UniquenessConstraint;
  ++numbers_;  // one for all: which of them comes first is not said
  forEachReference(at(proxy).model, proxy, [&](Id referrer, unsigned reference) {
    if (!property(referrer, reference).takes(at(loaded).kind)) return;
    replaceReference(referrer, reference, proxy, loaded);
  });
  if (where.form == Form::Child) return put(owner, index, loaded);
  if (where.form == Form::Children) {
    takeOut(loaded);
    hang(owner, index, positionOf(at(owner).value(index), proxy), loaded);
  } else {
    insert(owner, index, 0, loaded);
  }
  erase(proxy);
  return Outcome::Done;
}

}  // namespace model_walk
