// Steps that change keys by which collections are sorted.
#include "tests/platform/foundation/random/HearingContainers.h"
#include "tests/platform/foundation/random/Walk.h"

using walking::Mismatch;

namespace model_walk {

namespace {

/// What an element throws that refuses to end.
struct Refusal {};

}  // namespace

/// List the elements that collections sort by a key.
std::vector<Id> Walk::sortedElements() const {
  std::vector<Id> result;
  for (int model = 0; model < 2; ++model) {
    for (const auto& [id, element] : twin_.elements(model)) {
      if (element.container != 0 && keyOf(id).index != 0) result.push_back(id);
    }
  }
  return result;
}

/// Give the property of an element that its collection sorts by; that with index 0 if it isn't sorted.
Walk::Slot Walk::keyOf(Id id) const {
  const Twin::Element& element = twin_.at(id);
  return {element.kind, propertiesOf(twin_.kindOf(element.container))[element.slot - 1].key};
}

void Walk::setKey() {
  const std::vector<Id> sorted = sortedElements();
  if (sorted.empty()) return insert();
  const Id id = oneIn(sorted);
  const Slot slot = keyOf(id);
  const Content value = drawValue(slot.property());
  note("set the key of #", id, " to ", model_walk::written(value));
  perform(twin_.set(id, slot.index, value), [&] { access(slot).set(pairing_, impl(id), value); });
}

/// Draw an element that hears of its end, in a model.
Id Walk::drawHearing(int model) {
  std::vector<Id> all;
  for (const auto& [id, element] : twin_.elements(model)) {
    if (!element.isProxy && HearingContainers::is(pairing_[id])) all.push_back(id);
  }
  return all.empty() ? createNow(Kind::Containers, model) : oneIn(all);
}

/// Draw a property of Containers that takes an element and doesn't sort it.
Walk::Slot Walk::drawRowFor(Kind kind) {
  std::vector<unsigned> rows;
  const std::vector<PropertyOfKind>& properties = propertiesOf(Kind::Containers);
  for (unsigned index = 1; index <= properties.size(); ++index) {
    const PropertyOfKind& property = properties[index - 1];
    if (property.form == Form::Children && property.takes(kind)) rows.push_back(index);
  }
  return {Kind::Containers, oneIn(rows)};
}

/// Destroy an element that changes the key of another when it hears of its end, perhaps to refuse it then.
/// The other comes out of its sorted collection into the first before, or comes meanwhile, or stays.
void Walk::destroyAndChangeKey() {
  const std::vector<Id> sorted = sortedElements();
  if (sorted.empty()) return insert();
  const Id id = oneIn(sorted);
  const int model = twin_.at(id).model;
  const Slot key = keyOf(id), row = drawRowFor(key.kind);
  const Id owner = drawHearing(model);
  const Content value = drawValue(key.property());
  const unsigned way = below(4);
  const bool isMovedBefore = way < 2, isMovedMeanwhile = way == 2;
  const auto move = [&] { access(row).insert(pairing_, impl(owner), 0, id); };
  if (isMovedBefore) {
    note("add #", id, " to #", owner, ".", written(row), " at 0");
    const Aside aside(*this, "add");
    perform(twin_.insert(owner, row.index, 0, id), move);
  }

  // What an element contains changes for good while that ends, unless an open transaction has moved it there;
  // a refusal would leave the new key, which the twin doesn't follow.
  const bool refuses = !isMovedBefore && oneOf(3);
  note("destroy #", owner, refuses ? ", which refuses it, and" : " and", isMovedMeanwhile ? " move" : "",
       " meanwhile #", id, " with the key ", model_walk::written(value));
  const Twin::Elements before = twin_.elements(model);
  Outcome expected = isMovedMeanwhile ? twin_.insert(owner, row.index, 0, id) : Outcome::Done;
  if (expected == Outcome::Done) expected = twin_.set(id, key.index, value);
  if (expected != Outcome::Done || refuses)
    twin_.putBack(model, before);
  else
    twin_.destroy(owner);
  perform(expected, [&] {
    const HearingContainers::AtEnd atEnd([&](const ModelElement::Impl& ending) {
      if (&ending != &impl(owner)) return;
      if (isMovedMeanwhile) move();
      access(key).set(pairing_, impl(id), value);
      if (refuses) throw Refusal();
    });
    try {
      pairing_[owner].destroy();
      if (refuses) throw Mismatch("its refusal was not heard");
    } catch (const Refusal&) {
    }
  });
}

}  // namespace model_walk
