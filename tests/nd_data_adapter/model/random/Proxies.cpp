// Steps that put loaded elements where proxies for them are.
#include "tests/nd_data_adapter/model/random/Collections.h"
#include "tests/nd_data_adapter/model/random/Walk.h"

namespace random_walk {

namespace {

const char* nameOfResolving(Form form) {
  switch (form) {
    case Form::Sequence:
      return "resolve a proxy in a sequence";
    case Form::Multimap:
      return "resolve a proxy in a multimap";
    default:
      return "resolve a proxy in a map";
  }
}

}  // namespace

/// List the elements that collections hold, each with its place: proxies, or such that are loaded.
std::vector<std::pair<Walk::Slot, Id>> Walk::placesOf(bool proxies) const {
  std::vector<std::pair<Slot, Id>> result;
  for (const auto& [id, element] : twin_.elements()) {
    if (element.isProxy != proxies || element.container == 0) continue;
    if (propertiesOf(twin_.at(element.container).kind)[element.slot - 1].form != Form::Child)
      result.push_back({{element.container, element.slot, element.kind}, id});
  }
  return result;
}

/// Create what a proxy stands for.
void Walk::load(Id proxy) {
  const auto identity = pairing_.identities().find(proxy);
  if (identity == pairing_.identities().end()) return;
  const boost::uuids::uuid uuid = identity->second;
  const Kind kind = pairing_.kindOf(proxy);
  const Id id = pairing_.next();
  note("create #", id, ", for which #", proxy, " stands");
  twin_.create(id, kind);
  const Aside aside(*this, "load what a proxy stands for");
  perform(Outcome::Done, [&] {
    pairing_.add(make(kind, uuid), kind);
    pairing_.identify(id, uuid);
  });
}

/// Give the element that a proxy stands for; 0 if it isn't loaded.
Id Walk::loadedFor(Id proxy) const {
  const auto identity = pairing_.identities().find(proxy);
  if (identity == pairing_.identities().end()) return 0;
  const Id bearer = pairing_.bearerOf(identity->second, twin_);
  const bool isLoaded = !twin_.at(bearer).isProxy && pairing_.kindOf(bearer) == pairing_.kindOf(proxy);
  return isLoaded ? bearer : 0;
}

/// Resolve a proxy, for which an element is most often created; or try to where there is nothing to resolve.
void Walk::resolve() {
  std::vector<std::pair<Slot, Id>> places = placesOf(true);
  const bool isNew = places.empty();
  if (isNew) places = placesOf(false);
  if (places.empty() || oneOf(6)) {
    const Slot slot = drawCollection();
    return resolveAt(slot, drawOf(slot.child));
  }
  const auto [slot, proxy] = oneIn(places);
  if (isNew) makeProxyOf(proxy);
  const auto identity = pairing_.identities().find(proxy);
  const bool isBorne = identity != pairing_.identities().end() && twin_.contains(proxy) &&
                       !twin_.at(pairing_.bearerOf(identity->second, twin_)).isProxy;
  if (!isBorne && !oneOf(4)) load(proxy);
  resolveAt(slot, proxy);
}

void Walk::resolveAt(const Slot& slot, Id proxy) {
  const bool isProxyHere = twin_.contains(proxy) && twin_.at(proxy).isProxy && twin_.contains(slot.owner) &&
                           twin_.at(proxy).container == slot.owner;
  const Id element = isProxyHere ? loadedFor(proxy) : 0;
  note("resolve #", proxy, " in #", slot.owner, " by #", element);
  Outcome expected = twin_.writable(slot.owner);
  if (expected == Outcome::Done && element != 0)
    expected = twin_.resolve(slot.owner, slot.index, proxy, element);
  const Kind kind = pairing_.kindOf(slot.owner);
  const Aside aside(
      *this, element == 0 ? "resolve in vain" : nameOfResolving(propertiesOf(kind)[slot.index - 1].form));
  change(slot.owner, expected, [&] {
    withCollection(pairing_[slot.owner], kind, [&](auto& collection) {
      using E = ElementOf<decltype(collection)>;
      if (pairing_.idOf(collection.resolveProxy(as<E>(pairing_[proxy]))) != element)
        throw walking::Mismatch("resolved by another element");
    });
  });
}

}  // namespace random_walk
