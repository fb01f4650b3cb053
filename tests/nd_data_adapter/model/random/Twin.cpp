#include "tests/nd_data_adapter/model/random/Twin.h"

#include <algorithm>
#include <set>

#include "platform/text/Convert.h"

namespace random_walk {

namespace {

const Content Text = std::u16string();
const Content Number = 0L;
const Content Address = static_cast<const void*>(nullptr);
const Content Texts = std::vector<std::u16string>();
const Content None = std::vector<Id>();

}  // namespace

const std::vector<PropertyOfKind>& propertiesOf(Kind kind) {
  static const std::vector<std::vector<PropertyOfKind>> all{{{Form::Value, Number}, {Form::Value, Text}},
                                                            {{Form::Sequence, None}},
                                                            {{Form::Value, Text}, {Form::Value, Text}},
                                                            {{Form::Multimap, None, 1}},
                                                            {{Form::Value, Text}, {Form::Child, None}},
                                                            {{Form::Value, Address},
                                                             {Form::Value, Address},
                                                             {Form::Texts, Texts},
                                                             {Form::Value, Address},
                                                             {Form::Multimap, None, 1}},
                                                            {{Form::Value, Text}, {Form::Value, Address}},
                                                            {{Form::Map, None, 1}},
                                                            {{Form::Value, Text},
                                                             {Form::Value, Text},
                                                             {Form::Value, Number},
                                                             {Form::Value, Number},
                                                             {Form::Value, Number}}};
  return all[static_cast<std::size_t>(kind)];
}

const char* nameOf(Kind kind) {
  static const char* const names[] = {"tuple",     "report", "entry", "variants", "metadata",
                                      "container", "held",   "cache", "config"};
  return names[static_cast<int>(kind)];
}

std::string written(const Content& content) {
  struct Writer {
    std::string operator()(const std::u16string& text) const { return '"' + lx::text::toUtf8(text) + '"'; }
    std::string operator()(long number) const { return std::to_string(number); }
    std::string operator()(const void* address) const { return address == nullptr ? "null" : "an address"; }
    std::string operator()(const std::vector<std::u16string>& texts) const {
      std::string result = "[";
      for (const std::u16string& text : texts) result += (*this)(text) + " ";
      return result + "]";
    }
    std::string operator()(const std::vector<Id>& elements) const {
      std::string result = "[";
      for (const Id id : elements) result += "#" + std::to_string(id) + " ";
      return result + "]";
    }
  };
  return std::visit(Writer(), content);
}

void Twin::create(Id id, Kind kind) {
  Element element{kind, false, 0, 0, {}, {}};
  for (const PropertyOfKind& each : propertiesOf(kind)) element.values.push_back(each.zero);
  elements_.emplace(id, std::move(element));
}

Outcome Twin::writable(Id id) const {
  const auto found = elements_.find(id);
  if (found == elements_.end()) return Outcome::InvalidValue;
  return found->second.isProxy ? Outcome::CannotModifyProxy : Outcome::Done;
}

Outcome Twin::set(Id id, unsigned index, const Content& value) {
  if (const Outcome refusal = writable(id); refusal != Outcome::Done) return refusal;
  Element& element = elements_.at(id);
  if (element.value(index) == value) return Outcome::Done;
  const Id container = element.container;
  if (container == 0 || property(container, element.slot).key != index) {
    element.values[index - 1] = value;
    return Outcome::Done;
  }
  if (isTaken(container, element.slot, value)) return Outcome::UniquenessConstraint;
  std::vector<Id>& siblings = childrenOf(container, element.slot);
  std::erase(siblings, id);
  element.values[index - 1] = value;
  const std::size_t place = placeOf(container, element.slot, id);
  siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(place), id);
  return Outcome::Done;
}

Outcome Twin::insert(Id owner, unsigned index, std::size_t position, Id child) {
  if (const Outcome refusal = addable(owner, child); refusal != Outcome::Done) return refusal;
  const Element& element = at(child);
  if (element.container == owner && element.slot == index) return Outcome::Done;
  const PropertyOfKind& where = property(owner, index);
  if (where.form == Form::Sequence) {
    if (position > at(owner).children(index).size()) return Outcome::InvalidValue;
  } else if (!element.isProxy && isTaken(owner, index, element.value(where.key))) {
    return Outcome::UniquenessConstraint;
  }
  takeOut(child);
  if (where.key != 0 && element.isProxy) {
    setApart(owner, index, child);
    return Outcome::Done;
  }
  hang(owner, index, where.form == Form::Sequence ? position : placeOf(owner, index, child), child);
  return Outcome::Done;
}

Outcome Twin::put(Id owner, unsigned index, Id child) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  const std::vector<Id> former = at(owner).children(index);
  if (former == (child == 0 ? std::vector<Id>() : std::vector<Id>{child})) return Outcome::Done;
  if (child != 0) {
    if (const Outcome refusal = addable(owner, child); refusal != Outcome::Done) return refusal;
    takeOut(child);
  }
  for (const Id each : former) erase(each);
  if (child != 0) hang(owner, index, 0, child);
  return Outcome::Done;
}

Outcome Twin::clear(Id owner, unsigned index) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  eraseChildren(owner, index);
  return Outcome::Done;
}

/// Tell whether a collection is as if it had been made of a list. Of proxies in a keyed one a list may say
/// nothing.
bool Twin::isMadeOf(Id owner, unsigned index, const std::vector<Id>& children) const {
  const unsigned key = property(owner, index).key;
  if (key == 0) return at(owner).children(index) == children;
  std::vector<Id> wanted, apart;
  for (const Id each : children) {
    if (!contains(each) || at(each).container != owner || at(each).slot != index) return false;
    (at(each).isProxy ? apart : wanted).push_back(each);
  }
  std::stable_sort(wanted.begin(), wanted.end(),
                   [&](Id left, Id right) { return at(left).value(key) < at(right).value(key); });
  return at(owner).children(index) == wanted && (apart.empty() || apart == at(owner).apart(index));
}

Outcome Twin::replace(Id owner, unsigned index, const std::vector<Id>& children) {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  if (isMadeOf(owner, index, children)) return Outcome::Done;
  for (const Id child : children) {
    if (const Outcome refusal = addable(owner, child); refusal != Outcome::Done) return refusal;
  }
  if (std::set<Id>(children.begin(), children.end()).size() != children.size()) return Outcome::InvalidValue;
  for (const Id child : children) {
    for (Id each = child; each != 0; each = at(each).container) {  // goes with what it would replace
      if (at(each).container == owner && at(each).slot == index) return Outcome::CannotAddNonExistentObject;
    }
  }
  clear(owner, index);
  for (const Id child : children) insert(owner, index, at(owner).children(index).size(), child);
  return Outcome::Done;
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
    if (properties[index - 1].zero == None)
      clear(id, index);
    else
      elements_.at(id).values[index - 1] = properties[index - 1].zero;
  }
  elements_.at(id).isProxy = true;
  const Id container = at(id).container;
  const unsigned slot = at(id).slot;
  if (container != 0 && property(container, slot).key != 0) {
    takeOut(id);
    setApart(container, slot, id);
  }
  return Outcome::Done;
}

Outcome Twin::resolve(Id owner, unsigned index, Id proxy, Id element) {
  if (const Outcome refusal = addable(owner, element); refusal != Outcome::Done) return refusal;
  const bool isHere = at(element).container == owner && at(element).slot == index;
  if (property(owner, index).form != Form::Sequence) {
    if (!isHere) {
      if (const Outcome refusal = insert(owner, index, 0, element); refusal != Outcome::Done) return refusal;
    }
  } else {
    takeOut(element);
    const std::vector<Id>& children = at(owner).children(index);
    const auto place = std::find(children.begin(), children.end(), proxy) - children.begin();
    hang(owner, index, static_cast<std::size_t>(place), element);
  }
  erase(proxy);
  return Outcome::Done;
}

Outcome Twin::addable(Id owner, Id child) const {
  if (const Outcome refusal = writable(owner); refusal != Outcome::Done) return refusal;
  if (!contains(child)) return Outcome::CannotAddNonExistentObject;
  for (Id ancestor = owner; ancestor != 0; ancestor = at(ancestor).container) {
    if (ancestor == child) return Outcome::InvalidValue;
  }
  return Outcome::Done;
}

bool Twin::isTaken(Id owner, unsigned index, const Content& key) const {
  const PropertyOfKind& where = property(owner, index);
  const std::vector<Id>& children = at(owner).children(index);
  return where.form == Form::Map && std::any_of(children.begin(), children.end(),
                                                [&](Id child) { return at(child).value(where.key) == key; });
}

const PropertyOfKind& Twin::property(Id owner, unsigned index) const {
  return propertiesOf(at(owner).kind)[index - 1];
}

std::vector<Id>& Twin::childrenOf(Id owner, unsigned index) {
  return std::get<std::vector<Id>>(elements_.at(owner).values[index - 1]);
}

/// Find the place of a child that is about to come into a keyed collection: behind its equals.
std::size_t Twin::placeOf(Id owner, unsigned index, Id child) const {
  const unsigned key = property(owner, index).key;
  const std::vector<Id>& children = at(owner).children(index);
  const auto place = std::find_if(children.begin(), children.end(),
                                  [&](Id other) { return at(child).value(key) < at(other).value(key); });
  return static_cast<std::size_t>(place - children.begin());
}

void Twin::takeOut(Id child) {
  Element& element = elements_.at(child);
  if (element.container == 0) return;
  std::erase(childrenOf(element.container, element.slot), child);
  auto& proxies = elements_.at(element.container).proxies;
  std::erase(proxies[element.slot], child);
  if (proxies[element.slot].empty()) proxies.erase(element.slot);
  element.container = 0;
  element.slot = 0;
}

void Twin::hang(Id owner, unsigned index, std::size_t position, Id child) {
  std::vector<Id>& children = childrenOf(owner, index);
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(position), child);
  elements_.at(child).container = owner;
  elements_.at(child).slot = index;
}

/// Hang a proxy where its element would have a key.
void Twin::setApart(Id owner, unsigned index, Id proxy) {
  elements_.at(owner).proxies[index].push_back(proxy);
  elements_.at(proxy).container = owner;
  elements_.at(proxy).slot = index;
}

void Twin::erase(Id id) {
  takeOut(id);
  for (unsigned index = 1; index <= at(id).values.size(); ++index) {
    if (std::holds_alternative<std::vector<Id>>(at(id).value(index))) eraseChildren(id, index);
  }
  elements_.erase(id);
}

void Twin::eraseChildren(Id owner, unsigned index) {
  std::vector<Id> all = at(owner).children(index);
  for (const Id each : at(owner).apart(index)) all.push_back(each);
  for (const Id each : all) erase(each);
}

}  // namespace random_walk
