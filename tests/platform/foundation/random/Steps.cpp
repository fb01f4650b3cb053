#include <algorithm>
#include <numeric>

#include "platform/text/Convert.h"
#include "tests/platform/foundation/random/Walk.h"

namespace model_walk {

using lx::text::toUtf8;

void Walk::step() {
  struct Way {
    unsigned weight;
    void (Walk::*go)();
  };
  static constexpr Way ways[]{
      {6, &Walk::create},      {4, &Walk::createWithIdentity},
      {4, &Walk::createProxy}, {4, &Walk::build},
      {5, &Walk::createInto},  {10, &Walk::set},
      {4, &Walk::setKey},      {6, &Walk::changeValues},
      {6, &Walk::put},         {14, &Walk::insert},
      {4, &Walk::remove},      {2, &Walk::clear},
      {4, &Walk::replace},     {8, &Walk::refer},
      {6, &Walk::resolve},     {6, &Walk::destroy},
      {3, &Walk::makeProxy},   {3, &Walk::askIdentity},
  };
  static const unsigned weights = std::accumulate(
      std::begin(ways), std::end(ways), 0U, [](unsigned sum, const Way& each) { return sum + each.weight; });
  unsigned drawn = below(weights);
  const Way* way = ways;
  for (; drawn >= way->weight; ++way) drawn -= way->weight;
  (this->*way->go)();
}

// Elements that come and go

void Walk::create() {
  std::vector<Kind> kinds;
  for (int kind = 0; kind < Kinds; ++kind) {
    if ((kinds_ >> kind & 1U) != 0) kinds.push_back(static_cast<Kind>(kind));
  }
  createNow(oneIn(kinds), drawModel());
}

/// Create an element with an identity, often that of a proxy, for which it is then loaded.
void Walk::createWithIdentity() {
  const int model = drawModel();
  std::vector<Id> proxies;
  for (const auto& [id, element] : twin_.elements(model)) {
    if (element.isProxy && pairing_.identities().contains(id)) proxies.push_back(id);
  }
  const Id proxy = proxies.empty() || oneOf(4) ? 0 : oneIn(proxies);
  const auto uuid = proxy != 0 ? pairing_.identities().at(proxy) : drawIdentity(oneOf(2));
  const Kind kind = proxy != 0 && !oneOf(6) ? twin_.kindOf(proxy) : oneOf(2) ? Kind::Thing : Kind::Machine;
  const Id id = pairing_.next(), bearer = pairing_.bearerOf(uuid, model, twin_);
  note("create #", id, ", a ", model_walk::nameOf(kind), ", in ", model, " with an identity for #", proxy);
  if (bearer == 0) twin_.create(id, kind, model);
  perform(bearer == 0 ? Outcome::Done : Outcome::CannotAddSecondObject, [&] {
    pairing_.add(createElement(kind, models_[static_cast<std::size_t>(model)], uuid));
    pairing_.identify(id, uuid);
  });
}

void Walk::createProxy() {
  const int model = drawModel();
  const auto uuid = oneOf(20) ? boost::uuids::uuid{} : drawIdentity(!oneOf(3));
  std::vector<Kind> kinds;
  for (int kind = 0; kind < Kinds; ++kind) {
    if ((kinds_ >> kind & 1U) != 0) kinds.push_back(static_cast<Kind>(kind));
  }
  const Kind kind = oneIn(kinds);
  const Id id = pairing_.next(), bearer = pairing_.bearerOf(uuid, model, twin_);
  note("create #", id, ", a proxy of a ", model_walk::nameOf(kind), ", in ", model);
  Outcome expected = bearer == 0 ? Outcome::Done : Outcome::CannotAddSecondObject;
  if (uuid.is_nil()) expected = Outcome::InvalidValue;
  if (expected == Outcome::Done) twin_.createProxy(id, kind, model);
  perform(expected, [&] {
    pairing_.add(model_walk::createProxy(kind, models_[static_cast<std::size_t>(model)], uuid));
    pairing_.identify(id, uuid);
  });
}

void Walk::destroy() {
  const Id id = draw(drawModel());
  note("destroy #", id);
  perform(twin_.destroy(id), [&] { pairing_[id].destroy(); });
}

void Walk::makeProxy() {
  const Id id = draw(drawModel());
  note("make a proxy of #", id);
  perform(twin_.makeProxy(id), [&] {
    pairing_[id].impl()->convertToProxy();
    pairing_.identify(id, pairing_[id].identifier());
  });
}

void Walk::askIdentity() {
  const Id id = draw(drawModel());
  if (!twin_.contains(id)) return;
  note("ask #", id, " for its identity");
  perform(Outcome::Done, [&] { pairing_.identify(id, pairing_[id].identifier()); });
}

// Values

void Walk::set() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return !isOfElements(each.form); });
  const PropertyOfKind& property = slot.property();
  const Id id = drawOwner(slot);
  const bool byName = !property.isChanged || oneOf(3);
  const Content value = twin_.contains(id) && oneOf(5) ? twin_.at(id).value(slot.index) : drawValue(property);
  note("set #", id, ".", toUtf8(nameOf(slot)), " to ", model_walk::written(value), byName ? " by name" : "");
  const bool isRefused = byName && !property.isSetByName;
  const Outcome expected = isRefused ? Outcome::CannotSetReadOnlyProperty : twin_.set(id, slot.index, value);
  change(id, expected, [&] {
    if (byName)
      pairing_[id].setPropertyValue(nameOf(slot), access(slot).makeValue(pairing_, value));
    else
      access(slot).set(pairing_, impl(id), value);
  });
}

/// Set the key of an element that a collection is sorted by.
void Walk::setKey() {
  std::vector<Id> sorted;
  for (int model = 0; model < 2; ++model) {
    for (const auto& [id, element] : twin_.elements(model)) {
      if (element.container == 0) continue;
      if (propertiesOf(twin_.kindOf(element.container))[element.slot - 1].key != 0) sorted.push_back(id);
    }
  }
  if (sorted.empty()) return insert();
  const Id id = oneIn(sorted);
  const Twin::Element& element = twin_.at(id);
  const Slot slot{element.kind, propertiesOf(twin_.kindOf(element.container))[element.slot - 1].key};
  const Content value = drawValue(slot.property());
  note("set the key of #", id, " to ", model_walk::written(value));
  change(id, twin_.set(id, slot.index, value), [&] { access(slot).set(pairing_, impl(id), value); });
}

/// Add to a collection of values, or take one away, or all.
void Walk::changeValues() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) {
    return (each.form == Form::List || each.form == Form::Set) && each.isChanged;
  });
  const Id id = drawOwner(slot);
  const int value = static_cast<int>(below(static_cast<unsigned>(slot.property().many)));
  const bool isSet = slot.property().form == Form::Set;
  const std::size_t before = twin_.sizeOf(id, slot.index);
  const auto changed = [&] { return twin_.sizeOf(id, slot.index) != before; };
  const std::string name = toUtf8(nameOf(slot));
  const unsigned way = below(8);
  if (way == 0) {
    note("clear #", id, ".", name);
    change(id, twin_.set(id, slot.index, {}), [&] { access(slot).clear(impl(id)); });
  } else if (way < 4 && isSet) {
    note("remove ", value, " from #", id, ".", name);
    const Outcome expected = twin_.removeValue(id, slot.index, value);
    changeAndTell(id, expected, changed(), [&] { return access(slot).remove(pairing_, impl(id), value); });
  } else {
    note("add ", value, " to #", id, ".", name);
    const Outcome expected = twin_.addValue(id, slot.index, value);
    changeAndTell(id, expected, changed(), [&] { return access(slot).add(pairing_, impl(id), value); });
  }
}

void Walk::resolve() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return isOfElements(each.form); });
  const PropertyOfKind& property = slot.property();
  const Id owner = drawOwner(slot);
  std::vector<Id> held;
  if (twin_.contains(owner)) {
    for (const Content& each : {twin_.at(owner).value(slot.index), twin_.at(owner).apart(slot.index)}) {
      for (const Id id : each) {
        if (twin_.isProxy(id) || isSingle(property.form)) held.push_back(id);
      }
    }
  }
  if (held.empty() && property.form == Form::Child) return;
  Id proxy = 0;
  if (!held.empty())
    proxy = oneIn(held);
  else if (property.form != Form::Reference)
    proxy = drawFor(owner, slot);
  const Id loaded = pairing_.loadedFor(proxy, twin_);
  note("resolve #", proxy, " in #", owner, ".", toUtf8(nameOf(slot)), " to #", loaded);
  const bool wasThere = property.form == Form::Reference ? twin_.refersTo(owner, slot.index, proxy)
                        : isReferring(property.form)     ? twin_.refersTo(owner, slot.index, proxy)
                                                         : twin_.holds(owner, slot.index, proxy);
  const bool isResolved = wasThere && loaded != 0 && property.takes(twin_.kindOf(loaded));
  Id given = isResolved ? loaded : 0;
  if (property.form == Form::Reference && wasThere && !pairing_[proxy].isProxy()) given = proxy;
  change(owner, twin_.resolve(owner, slot.index, proxy, loaded), [&] {
    const Id found = pairing_.idOf(access(slot).resolve(impl(owner), pairing_[proxy]));
    if (found != given) throw Mismatch("it is resolved to #" + std::to_string(found));
  });
}

}  // namespace model_walk
