#include "tests/platform/foundation/random/Walk.h"

namespace model_walk {

/// Draw an element of one of the kinds; most often one that is there, in the model.
Id Walk::drawOf(std::uint32_t kinds, int model) {
  if (oneOf(12)) model = 1 - model;
  const auto isOfKind = [kinds](Kind kind) { return (kinds >> static_cast<int>(kind) & 1U) != 0; };
  std::vector<Id> all;
  for (const auto& [id, element] : twin_.elements(model)) {
    if (isOfKind(element.kind)) all.push_back(id);
  }
  if (!all.empty() && !oneOf(8)) return oneIn(all);
  if (oneOf(4)) {
    all.clear();
    for (Id id = 1; id < pairing_.next(); ++id) {
      if (!twin_.contains(id) && isOfKind(twin_.kindOf(id))) all.push_back(id);
    }
    if (!all.empty()) return oneIn(all);
  }
  std::vector<Kind> own, any;
  for (int kind = 0; kind < Kinds; ++kind) {
    if (!isOfKind(static_cast<Kind>(kind))) continue;
    any.push_back(static_cast<Kind>(kind));
    if ((kinds_ >> kind & 1U) != 0) own.push_back(static_cast<Kind>(kind));
  }
  return createNow(oneIn(own.empty() ? any : own), model);
}

/// Draw an element that a property takes: one of its class, most often of its owner's model.
Id Walk::drawFor(Id owner, const Slot& slot) {
  const int model = twin_.contains(owner) ? twin_.at(owner).model : drawModel();
  return drawOf(slot.property().kinds, model);
}

/// Draw a property of a kind that this walk makes; of any kind if none of these has such a one.
Walk::Slot Walk::drawSlot(bool (*isWanted)(const PropertyOfKind&)) {
  std::vector<Slot> found;
  const auto look = [&](std::uint32_t kinds) {
    for (int kind = 0; kind < Kinds; ++kind) {
      if ((kinds >> kind & 1U) == 0) continue;
      const std::vector<PropertyOfKind>& properties = propertiesOf(static_cast<Kind>(kind));
      for (unsigned index = 1; index <= properties.size(); ++index) {
        if (isWanted(properties[index - 1])) found.push_back({static_cast<Kind>(kind), index});
      }
    }
  };
  look(kinds_);
  if (found.empty()) look(~0U);
  return oneIn(found);
}

Content Walk::drawValue(const PropertyOfKind& property) {
  const auto many = static_cast<unsigned>(property.many);
  switch (property.form) {
    case Form::Value:
      return {static_cast<int>(below(many))};
    case Form::Optional:
      return oneOf(3) ? Content() : Content{static_cast<int>(below(many))};
    case Form::List: {
      Content result;
      for (unsigned count = below(4); count-- > 0;) result.push_back(static_cast<int>(below(many)));
      return result;
    }
    default: {
      Content result;
      for (int place = 0; place < property.many; ++place) {
        if (oneOf(3)) result.push_back(place);
      }
      return result;
    }
  }
}

/// Draw an identity: one that is known if there is any, or a new one.
boost::uuids::uuid Walk::drawIdentity(bool known) {
  const auto& identities = pairing_.identities();
  if (known && !identities.empty()) return oneIn(identities).second;
  boost::uuids::uuid result{};
  for (auto& byte : result) byte = static_cast<std::uint8_t>(1 + below(255));
  return result;
}

Id Walk::createNow(Kind kind, int model) {
  const Id id = pairing_.next();
  note("create #", id, ", a ", model_walk::nameOf(kind), ", in ", model);
  twin_.create(id, kind, model);
  const Aside aside(*this, "create");
  perform(Outcome::Done, [&] { pairing_.add(createElement(kind, modelAt(model), {})); });
  return id;
}

}  // namespace model_walk
