// Steps that change what contains what, and what refers to what.
#include "tests/platform/foundation/random/Walk.h"

namespace model_walk {

namespace {

bool isCollectionOfElements(const PropertyOfKind& each) {
  return isOfElements(each.form) && !isSingle(each.form);
}

}  // namespace

/// Put an element, or none, into a property for one, by its setter or by name.
void Walk::put() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return each.form == Form::Child; });
  const PropertyOfKind& property = slot.property();
  const Id owner = drawOwner(slot);
  const bool byName = oneOf(3);
  const Id child = oneOf(6) ? 0 : byName && oneOf(4) ? draw(drawModel()) : drawFor(owner, slot);
  note("put #", child, " into #", owner, ".", written(slot), byName ? " by name" : "");
  const Content content = child == 0 ? Content() : Content{child};
  const bool isOther = child != 0 && !property.takes(twin_.kindOf(child));
  Outcome expected = twin_.writable(owner);
  if (expected == Outcome::Done)
    expected = isOther ? Outcome::CannotAddIncompatibleTypes : twin_.put(owner, slot.index, child);
  perform(expected, [&] {
    if (byName)
      pairing_[owner].setPropertyValue(nameOf(slot), access(slot).makeValue(pairing_, content));
    else
      access(slot).set(pairing_, impl(owner), content);
  });
}

/// Let a property for one refer to an element, or to none, by its setter or by name.
void Walk::refer() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return each.form == Form::Reference; });
  const PropertyOfKind& property = slot.property();
  const Id owner = drawOwner(slot);
  const bool byName = !property.isChanged || oneOf(3);
  const Id target = oneOf(6)             ? 0
                    : byName && oneOf(4) ? draw(drawModel())
                    : oneOf(6)           ? drawOf(property.kinds, drawModel())
                                         : drawFor(owner, slot);
  note("let #", owner, ".", written(slot), " refer to #", target, byName ? " by name" : "");
  const Content content = target == 0 ? Content() : Content{target};
  Outcome expected = twin_.writable(owner);
  if (expected == Outcome::Done && byName && !property.isSetByName)
    expected = Outcome::CannotSetReadOnlyProperty;
  else if (expected == Outcome::Done && target != 0 && !property.takes(twin_.kindOf(target)))
    expected = Outcome::CannotAddIncompatibleTypes;
  else if (expected == Outcome::Done)
    expected = twin_.refer(owner, slot.index, target);
  perform(expected, [&] {
    if (byName)
      pairing_[owner].setPropertyValue(nameOf(slot), access(slot).makeValue(pairing_, content));
    else
      access(slot).set(pairing_, impl(owner), content);
  });
}

/// Add an element to a collection, at its end or at a position.
void Walk::insert() {
  const Slot slot = drawSlot(isCollectionOfElements);
  const PropertyOfKind& property = slot.property();
  const Id owner = drawOwner(slot), element = drawFor(owner, slot);
  const bool isAtEnd = (property.form != Form::Children && property.form != Form::Row) || oneOf(2);
  const std::size_t before = twin_.sizeOf(owner, slot.index), position = isAtEnd ? before : below(5);
  note("add #", element, " to #", owner, ".", written(slot),
       isAtEnd ? "" : " at " + std::to_string(position));
  const Outcome expected = isReferring(property.form)
                               ? twin_.addReference(owner, slot.index, position, element)
                               : twin_.insert(owner, slot.index, position, element);
  const bool isChange = !isReferring(property.form) || twin_.sizeOf(owner, slot.index) != before;
  performAndTell(expected, isChange, [&] {
    return isAtEnd ? access(slot).add(pairing_, impl(owner), element)
                   : access(slot).insert(pairing_, impl(owner), position, element);
  });
}

/// Take an element out of a collection, which destroys it if it was contained.
void Walk::remove() {
  const Slot slot = drawSlot(isCollectionOfElements);
  const Id owner = drawOwner(slot);
  Id element = 0;
  if (twin_.sizeOf(owner, slot.index) != 0 && !oneOf(4))
    element = oneIn(twin_.at(owner).value(slot.index));
  else
    element = drawFor(owner, slot);
  note("remove #", element, " from #", owner, ".", written(slot));
  Outcome expected = twin_.writable(owner);
  bool isIn = false;
  if (isReferring(slot.property().form)) {
    isIn = twin_.refersTo(owner, slot.index, element);
    expected = twin_.removeReference(owner, slot.index, element);
  } else {
    isIn = twin_.holds(owner, slot.index, element);
    if (expected == Outcome::Done && isIn) expected = twin_.destroy(element);
  }
  performAndTell(expected, isIn, [&] { return access(slot).remove(pairing_, impl(owner), element); });
}

void Walk::clear() {
  const Slot slot = drawSlot(isCollectionOfElements);
  const Id owner = drawOwner(slot);
  note("clear #", owner, ".", written(slot));
  perform(twin_.clear(owner, slot.index), [&] { access(slot).clear(impl(owner)); });
}

/// Replace what a collection has by reflection, at times by elements of any class.
void Walk::replace() {
  const Slot slot = drawSlot(isCollectionOfElements);
  const Id owner = drawOwner(slot);
  Content elements;
  if (twin_.contains(owner) && oneOf(5)) elements = twin_.at(owner).value(slot.index);
  for (unsigned count = below(4); count-- > 0;) {
    elements.push_back(oneOf(40) ? 0 : oneOf(20) ? draw(drawModel()) : drawFor(owner, slot));
  }
  note("replace what is in #", owner, ".", written(slot), " by ", model_walk::written(elements));
  const Outcome refusal = twin_.writable(owner);
  const bool isReadOnly = refusal == Outcome::Done && !slot.property().isSetByName;
  const Outcome expected =
      isReadOnly ? Outcome::CannotSetReadOnlyProperty : twin_.replace(owner, slot.index, elements);
  perform(expected, [&] {
    pairing_[owner].setPropertyValue(nameOf(slot), access(slot).makeValue(pairing_, elements));
  });
}

}  // namespace model_walk
