// Steps that put loaded elements where proxies for them are.
#include "tests/platform/foundation/random/Walk.h"

using walking::Mismatch;

namespace model_walk {

namespace {

/// Name the step that resolves a proxy in a property.
const char* nameOfResolving(Form form) {
  switch (form) {
    case Form::Child:
      return "resolve a contained proxy";
    case Form::Children:
      return "resolve a proxy in a sequence";
    case Form::Map:
      return "resolve a proxy in a map";
    case Form::Multimap:
      return "resolve a proxy in a multimap";
    case Form::Reference:
      return "resolve a single reference";
    case Form::Row:
      return "resolve a proxy in a row of references";
    default:
      return "resolve a proxy in a bag of references";
  }
}

}  // namespace

/// List where properties hold elements: proxies, or such that are loaded but may become proxies there.
std::vector<Walk::Place> Walk::placesOf(bool proxies) const {
  std::vector<Place> result;
  for (int model = 0; model < 2; ++model) {
    for (const auto& [id, element] : twin_.elements(model)) {
      const std::vector<PropertyOfKind>& properties = propertiesOf(element.kind);
      for (unsigned index = 1; index <= properties.size(); ++index) {
        if (!isOfElements(properties[index - 1].form) || !properties[index - 1].holdsProxies) continue;
        for (const Content* each : {&element.value(index), &element.apart(index)}) {
          for (const Id held : *each) {
            if (twin_.contains(held) && twin_.isProxy(held) == proxies)
              result.push_back({id, {element.kind, index}, held});
          }
        }
      }
    }
  }
  return result;
}

/// Create what a proxy stands for, in its model.
void Walk::load(Id proxy) {
  const auto identity = pairing_.identities().find(proxy);
  if (identity == pairing_.identities().end()) return;
  const boost::uuids::uuid uuid = identity->second;
  const int model = twin_.at(proxy).model;
  const Kind kind = twin_.kindOf(proxy);
  const Id id = pairing_.next();
  note("create #", id, ", for which #", proxy, " stands");
  twin_.create(id, kind, model);
  const Aside aside(*this, "load what a proxy stands for");
  perform(Outcome::Done, [&] {
    pairing_.add(createElement(kind, modelAt(model), uuid));
    pairing_.identify(id, uuid);
  });
}

/// Resolve a proxy, for which an element is most often created; or try to where there is nothing to resolve.
void Walk::resolve() {
  std::vector<Place> places = placesOf(true);
  const bool isNew = places.empty();
  if (isNew) places = placesOf(false);
  if (!places.empty() && !oneOf(6)) {
    const Place place = oneIn(places);
    if (isNew) makeProxyOf(place.proxy);
    const bool isLoaded = !twin_.isProxy(place.proxy) || pairing_.loadedFor(place.proxy, twin_) != 0;
    if (!isLoaded && !oneOf(4)) load(place.proxy);
    return resolveAt(place);
  }
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return isOfElements(each.form); });
  const Id owner = drawOwner(slot);
  if (!isSingle(slot.property().form)) {
    resolveAt({owner, slot, drawFor(owner, slot)});
  } else if (slot.property().form == Form::Reference) {
    resolveAt({owner, slot, twin_.sizeOf(owner, slot.index) == 0 ? 0 : twin_.at(owner).value(slot.index)[0]});
  }
}

void Walk::resolveAt(const Place& place) {
  const auto& [owner, slot, proxy] = place;
  const PropertyOfKind& property = slot.property();
  const Id loaded = pairing_.loadedFor(proxy, twin_);
  note("resolve #", proxy, " in #", owner, ".", written(slot), " to #", loaded);
  const bool wasThere = isReferring(property.form) ? twin_.refersTo(owner, slot.index, proxy)
                                                   : twin_.holds(owner, slot.index, proxy);
  const bool isResolved = wasThere && loaded != 0 && property.takes(twin_.kindOf(loaded));
  Id given = isResolved ? loaded : 0;
  if (property.form == Form::Reference && wasThere && !pairing_[proxy].isProxy()) given = proxy;
  const Aside aside(*this, isResolved ? nameOfResolving(property.form) : "resolve in vain");
  perform(twin_.resolve(owner, slot.index, proxy, loaded), [&, at = place] {
    const Id found = pairing_.idOf(access(at.slot).resolve(impl(at.owner), pairing_[at.proxy]));
    if (found != given) throw Mismatch("it is resolved to #" + std::to_string(found));
  });
}

}  // namespace model_walk
