#include "tests/platform/foundation/random/Walk.h"

namespace model_walk {

void Walk::step() {
  static constexpr Way<Walk> ways[]{
      {6, "create", &Walk::create},
      {4, "create with an identity", &Walk::createWithIdentity},
      {4, "create a proxy", &Walk::createProxy},
      {4, "build", &Walk::build},
      {5, "build in a property", &Walk::createInto},
      {10, "set", &Walk::set},
      {4, "set a key", &Walk::setKey},
      {6, "change values", &Walk::changeValues},
      {6, "put", &Walk::put},
      {14, "add", &Walk::insert},
      {4, "remove", &Walk::remove},
      {2, "clear", &Walk::clear},
      {4, "replace", &Walk::replace},
      {8, "refer", &Walk::refer},
      {8, "resolve", &Walk::resolve},
      {6, "destroy", &Walk::destroy},
      {4, "destroy, and change a key meanwhile", &Walk::destroyAndChangeKey},
      {3, "make a proxy", &Walk::makeProxy},
      {3, "ask for an identity", &Walk::askIdentity},
  };
  goOneOf(*this, ways);
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
    pairing_.add(createElement(kind, modelAt(model), uuid));
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
    pairing_.add(model_walk::createProxy(kind, modelAt(model), uuid));
    pairing_.identify(id, uuid);
  });
}

// Values

void Walk::set() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return !isOfElements(each.form); });
  const PropertyOfKind& property = slot.property();
  const Id id = drawOwner(slot);
  const bool byName = !property.isChanged || oneOf(3);
  const Content value = twin_.contains(id) && oneOf(5) ? twin_.at(id).value(slot.index) : drawValue(property);
  note("set #", id, ".", written(slot), " to ", model_walk::written(value), byName ? " by name" : "");
  const bool isRefused = byName && !property.isSetByName && twin_.writable(id) == Outcome::Done;
  const Outcome expected = isRefused ? Outcome::CannotSetReadOnlyProperty : twin_.set(id, slot.index, value);
  perform(expected, [&] {
    if (byName)
      pairing_[id].setPropertyValue(nameOf(slot), access(slot).makeValue(pairing_, value));
    else
      access(slot).set(pairing_, impl(id), value);
  });
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
  const std::string name = written(slot);
  const unsigned way = below(8);
  if (way == 0) {
    note("clear #", id, ".", name);
    perform(twin_.set(id, slot.index, {}), [&] { access(slot).clear(impl(id)); });
  } else if (way < 4 && isSet) {
    note("remove ", value, " from #", id, ".", name);
    const Outcome expected = twin_.removeValue(id, slot.index, value);
    performAndTell(expected, changed(), [&] { return access(slot).remove(pairing_, impl(id), value); });
  } else {
    note("add ", value, " to #", id, ".", name);
    const Outcome expected = twin_.addValue(id, slot.index, value);
    performAndTell(expected, changed(), [&] { return access(slot).add(pairing_, impl(id), value); });
  }
}

}  // namespace model_walk
