#include <algorithm>

#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "tests/nd_data_adapter/model/Probe.h"
#include "tests/nd_data_adapter/model/random/Collections.h"
#include "tests/nd_data_adapter/model/random/Values.h"
#include "tests/nd_data_adapter/model/random/Walk.h"

using namespace model_test;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::CPPAdapterV2Entry;

namespace random_walk {

namespace {

std::u16string nameOfProperty(const ModelElement& element, unsigned index) {
  return element.getMetaClass().propertyByIndex(index).getName();
}

std::vector<ModelElement> handlesOf(const Pairing& pairing, const std::vector<Id>& ids) {
  std::vector<ModelElement> result;
  for (const Id id : ids) result.push_back(id == 0 ? ModelElement() : pairing[id]);
  return result;
}

}  // namespace

void Walk::step() {
  static constexpr Way<Walk> ways[]{
      {8, "create", &Walk::create},
      {2, "create with an identity", &Walk::createWithIdentity},
      {6, "build", &Walk::build},
      {14, "set", &Walk::set},
      {12, "add", &Walk::insert},
      {6, "put", &Walk::put},
      {2, "clear", &Walk::clear},
      {2, "remove", &Walk::remove},
      {2, "replace", &Walk::replace},
      {4, "change texts", &Walk::changeTexts},
      {7, "destroy", &Walk::destroy},
      {2, "ask for an identity", &Walk::askIdentity},
      {2, "make a proxy", &Walk::makeProxy},
      {4, "resolve", &Walk::resolve},
  };
  goOneOf(*this, ways);
}

// Draws

Id Walk::drawOf(Kind kind) {
  const std::vector<Id>& all = pairing_.all(kind);
  Id id = 0;
  for (int attempt = 0; attempt < 4 && !all.empty(); ++attempt) {
    id = all[below(static_cast<unsigned>(all.size()))];
    if (twin_.contains(id)) return id;
  }
  if (id != 0 && oneOf(4)) return id;  // one that is gone
  id = pairing_.next();
  note("create #", id, ", a ", nameOf(kind));
  twin_.create(id, kind);
  const Aside aside(*this, "create");
  perform(Outcome::Done, [&] { pairing_.add(make(kind), kind); });
  return id;
}

Id Walk::draw() {
  return drawOf(static_cast<Kind>(below(Kinds)));
}

std::u16string Walk::drawText() {
  static const std::u16string texts[]{
      u"a", u"b", u"c", u"ab", u"", u"\u00e9", u"a text that has its own memory"};
  return texts[below(std::size(texts))];
}

Content Walk::drawValue(Kind kind, unsigned index) {
  const Content& zero = propertiesOf(kind)[index - 1].zero;
  if (std::holds_alternative<std::u16string>(zero)) return drawText();
  if (std::holds_alternative<long>(zero)) return static_cast<long>(below(kind == Kind::Tuple ? 3 : 2));
  const Values& values = Values::get();
  const unsigned at = below(3);
  using Address = const void*;
  if (kind == Kind::Held) return Address{values.adapters()[at].get()};
  return index == 4 ? Address{values.models()[at].impl()} : Address{values.workspaces()[at].get()};
}

Walk::Slot Walk::drawCollection() {
  switch (below(4)) {
    case 0:
      return {drawOf(Kind::Report), 1, Kind::Tuple};
    case 1:
      return {drawOf(Kind::Variants), 1, Kind::Entry};
    case 2:
      return {drawOf(Kind::Container), 5, Kind::Metadata};
    default:
      return {drawOf(Kind::Cache), 1, Kind::Held};
  }
}

// Elements that come and go

ModelElement Walk::make(Kind kind, const boost::uuids::uuid& uuid) {
  switch (kind) {
    case Kind::Tuple:
      return ChangeTuple::create(model(), uuid);
    case Kind::Report:
      return ChangeReport::create(model());
    case Kind::Entry:
      return ConditionControlChangeEntry::create(model(), uuid);
    case Kind::Variants:
      return ConditionControlChangeReport::create(model());
    case Kind::Metadata:
      return MetaDataEntry::create(model(), uuid);
    case Kind::Container:
      return DataContainer::create(model());
    case Kind::Held:
      return CPPAdapterV2Entry::create(model(), uuid);
    // A cache lets go of its adapters for good when it is about to be destroyed; the probe leaves that out.
    case Kind::Cache:
      return createProbe<AdapterCacheV2>(model(), nullptr);
    default:
      return AdapterConfig::create(model());
  }
}

void Walk::create() {
  const Id id = pairing_.next();
  if (oneOf(5)) {  // an entry with a name, which is not to be seen before it has one
    note("create #", id, ", a held with a name");
    const std::u16string name = drawText();
    twin_.create(id, Kind::Held);
    twin_.set(id, 1, name);
    return perform(Outcome::Done, [&] {
      Transaction transaction = begin(model());
      pairing_.add(make(Kind::Held), Kind::Held);
      as<CPPAdapterV2Entry>(pairing_[id]).setName(name);
      transaction.commit();
    });
  }
  const Kind kind = static_cast<Kind>(below(Kinds));
  note("create #", id, ", a ", nameOf(kind));
  twin_.create(id, kind);
  perform(Outcome::Done, [&] { pairing_.add(make(kind), kind); });
}

void Walk::createWithIdentity() {
  constexpr Kind kinds[]{Kind::Tuple, Kind::Entry, Kind::Metadata, Kind::Held};
  const Kind kind = kinds[below(std::size(kinds))];
  const Id id = pairing_.next();
  boost::uuids::uuid uuid{};
  const auto& known = pairing_.identities();
  if (!known.empty() && oneOf(2)) {
    uuid = std::next(known.begin(), below(static_cast<unsigned>(known.size())))->second;
  } else {
    for (auto& byte : uuid) byte = static_cast<std::uint8_t>(1 + below(255));
  }
  const Id bearer = pairing_.bearerOf(uuid, twin_);
  note("create #", id, ", a ", nameOf(kind), ", with the identity of #", bearer);
  const bool isFree = bearer == 0 || twin_.at(bearer).isProxy;
  if (isFree) twin_.create(id, kind);
  perform(isFree ? Outcome::Done : Outcome::CannotAddSecondObject, [&] {
    pairing_.add(make(kind, uuid), kind);
    pairing_.identify(id, uuid);
  });
}

// Values

/// Tell whether the name of an entry changes untold and for good: one that no collection keeps by its name,
/// and that no open transaction takes back to one. It changes on a proxy, too.
bool Walk::isRenamedUnseen(Id id, unsigned index) const {
  if (pairing_.kindOf(id) != Kind::Held || index != 1 || !twin_.contains(id)) return false;
  const Twin::Element& now = twin_.at(id);
  if (now.container != 0 && twin_.at(now.container).kind == Kind::Cache) return false;
  if (now.isProxy) return true;
  return std::none_of(levels_.begin(), levels_.end(), [&](const Twin* before) {
    return before->contains(id) && before->at(id).container != now.container;
  });
}

void Walk::set() {
  const Id id = draw();
  const Kind kind = pairing_.kindOf(id);
  const std::vector<PropertyOfKind>& properties = propertiesOf(kind);
  const unsigned index = 1 + below(static_cast<unsigned>(properties.size()));
  if (properties[index - 1].form != Form::Value || isRenamedUnseen(id, index)) return;
  const Content value = drawValue(kind, index);
  const bool byName = oneOf(3);
  note("set #", id, ".", index, " to ", written(value), byName ? " by name" : "");
  const Outcome expected = twin_.set(id, index, value);
  const auto assignIt = [&] { (byName ? assignByName : assign)(pairing_[id], kind, index, value); };
  // The operation that names an entry asks for its life first.
  kind == Kind::Held&& index == 1 ? perform(expected, assignIt) : change(id, expected, assignIt);
}

void Walk::changeTexts() {
  const Id id = drawOf(Kind::Container);
  std::vector<std::u16string> texts;
  if (twin_.contains(id)) texts = std::get<std::vector<std::u16string>>(twin_.at(id).value(3));
  const DataContainer container = as<DataContainer>(pairing_[id]);
  const unsigned way = below(4);
  if (way == 0) {
    texts.clear();
  } else if (way == 1) {
    texts.push_back(drawText());
  } else {
    texts.resize(below(4));
    for (std::u16string& text : texts) text = drawText();
  }
  note("set #", id, ".3 to ", written(texts));
  change(id, twin_.set(id, 3, texts), [&] {
    if (way == 0)
      container.getConditionControlsMutable().clear();
    else if (way == 1)
      container.getConditionControlsMutable().add(texts.empty() ? std::u16string() : texts.back());
    else if (way == 2)
      container.getConditionControlsMutable().assign(texts);
    else
      container.setPropertyValue(u"ConditionControls", Value(texts));
  });
}

// What contains what

void Walk::insert() {
  const Slot slot = drawCollection();
  const Id child = drawOf(slot.child);
  const unsigned position = below(6);
  const bool atEnd = slot.child != Kind::Tuple || oneOf(2);
  note("put #", child, " into #", slot.owner, atEnd ? "" : " at " + std::to_string(position));
  const std::size_t end = twin_.contains(slot.owner) ? twin_.at(slot.owner).children(slot.index).size() : 0;
  change(slot.owner, twin_.insert(slot.owner, slot.index, atEnd ? end : position, child), [&] {
    if (!atEnd) {
      return as<ChangeReport>(pairing_[slot.owner])
          .getChangesMutable()
          .insert(position, as<ChangeTuple>(pairing_[child]));
    }
    withCollection(pairing_[slot.owner], pairing_.kindOf(slot.owner), [&](auto& collection) {
      collection.add(as<ElementOf<decltype(collection)>>(pairing_[child]));
    });
  });
}

void Walk::put() {
  const Id owner = drawOf(Kind::Metadata), child = oneOf(5) ? 0 : draw();
  const bool byName = oneOf(3);
  note("put #", child, " into #", owner, ".2", byName ? " by name" : "");
  const ModelElement handle = child == 0 ? ModelElement() : pairing_[child];
  change(owner, twin_.put(owner, 2, child), [&] {
    byName ? pairing_[owner].setPropertyValue(u"value", Value(handle))
           : as<MetaDataEntry>(pairing_[owner]).setValue(handle);
  });
}

void Walk::clear() {
  const Slot slot = drawCollection();
  note("clear #", slot.owner);
  change(slot.owner, twin_.clear(slot.owner, slot.index), [&] {
    withCollection(pairing_[slot.owner], pairing_.kindOf(slot.owner),
                   [](auto& collection) { collection.clear(); });
  });
}

void Walk::remove() {
  const Slot slot = drawCollection();
  const Id child = drawOf(slot.child);
  const bool isIn = twin_.contains(child) && twin_.at(child).container == slot.owner;
  note("remove #", child, " from #", slot.owner);
  Outcome expected = twin_.writable(slot.owner);
  if (expected == Outcome::Done && isIn) expected = twin_.destroy(child);
  change(slot.owner, expected, [&] {
    withCollection(pairing_[slot.owner], pairing_.kindOf(slot.owner), [&](auto& collection) {
      const bool removed = collection.remove(as<ElementOf<decltype(collection)>>(pairing_[child]));
      if (removed != isIn) throw walking::Mismatch("it was in the collection, or was not");
    });
  });
}

void Walk::replace() {
  const Slot slot = drawCollection();
  if (slot.child == Kind::Held) return;  // is not set by name
  std::vector<Id> children;
  for (unsigned count = below(4); count-- > 0;) children.push_back(drawOf(slot.child));
  note("replace what is in #", slot.owner, " by ", written(children));
  const ModelElement& owner = pairing_[slot.owner];
  change(slot.owner, twin_.replace(slot.owner, slot.index, children), [&] {
    owner.setPropertyValue(nameOfProperty(owner, slot.index), Value(handlesOf(pairing_, children)));
  });
}

}  // namespace random_walk
