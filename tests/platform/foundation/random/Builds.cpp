// Steps that make elements by builders, which are given values, elements that are there, and other builders.
#include "tests/platform/foundation/random/Walk.h"

using walking::Mismatch;

namespace model_walk {

/// Draw the kind of an element to make for a property: its class; where it takes any class, one of the
/// walk's.
Kind Walk::drawKindFor(const PropertyOfKind& property) {
  const bool takesAny = property.kinds == (1U << Kinds) - 1;
  int kind = 0;
  do {
    kind = takesAny ? static_cast<int>(below(Kinds)) : kind + 1;
  } while (((takesAny ? kinds_ : property.kinds << 1U) >> kind & 1U) == 0);
  return static_cast<Kind>(takesAny ? kind : kind - 1);
}

Walk::Plan Walk::drawPlan(Kind kind, int model, unsigned depth) {
  Plan plan{kind};
  const std::vector<PropertyOfKind>& properties = propertiesOf(kind);
  for (unsigned index = 1; index <= properties.size(); ++index) {
    const PropertyOfKind& property = properties[index - 1];
    if (!oneOf(isOfElements(property.form) ? 5 : 2)) continue;
    if (!isOfElements(property.form)) {
      plan.values.emplace_back(index, drawValue(property));
      continue;
    }
    const unsigned count = isSingle(property.form) ? 1 : 1 + below(2);
    for (unsigned done = 0; done < count; ++done) {
      const bool isMade = depth < 2 && !oneOf(3);
      if (isMade)
        plan.parts.push_back(
            {index, 0, std::make_unique<Plan>(drawPlan(drawKindFor(property), model, depth + 1))});
      else if (isReferring(property.form) || oneOf(3))
        plan.parts.push_back({index, drawOf(property.kinds, model), nullptr});
    }
  }
  return plan;
}

std::unique_ptr<ModelElement::Builder> Walk::makeBuilder(const Plan& plan) const {
  std::unique_ptr<ModelElement::Builder> builder = model_walk::makeBuilder(plan.kind);
  for (const auto& [index, value] : plan.values) {
    builder->setOrAdd(descriptionOf(plan.kind, index), accessTo(plan.kind, index).makeValue(pairing_, value));
  }
  for (const Plan::Part& part : plan.parts) {
    if (part.made)
      builder->setOrAdd(descriptionOf(plan.kind, part.index), makeBuilder(*part.made));
    else
      builder->setOrAdd(descriptionOf(plan.kind, part.index), Value(pairing_[part.element]));
  }
  return builder;
}

std::string Walk::written(const Plan& plan) const {
  std::string text = model_walk::nameOf(plan.kind);
  text += "(";
  for (const auto& [index, value] : plan.values)
    text += std::to_string(index) + "=" + model_walk::written(value) + " ";
  for (const Plan::Part& part : plan.parts) {
    text += std::to_string(part.index) + "=";
    text += part.made ? written(*part.made) : "#" + std::to_string(part.element);
    text += " ";
  }
  return text + ")";
}

/// Make the twin of what a builder makes at once, and note what is to be referred to in the end.
Outcome Walk::makeTwin(const Plan& plan, int model, Id& next, std::vector<Reference>& references) {
  const Id id = next++;
  twin_.create(id, plan.kind, model);
  for (const auto& [index, value] : plan.values) twin_.set(id, index, value);
  for (const Plan::Part& part : plan.parts) {
    const Form form = propertiesOf(plan.kind)[part.index - 1].form;
    if (isReferring(form)) {
      references.push_back({id, part.index, part.element, part.made.get()});
      continue;
    }
    Id child = part.element;
    if (part.made) {
      child = next;
      if (const Outcome refusal = makeTwin(*part.made, model, next, references); refusal != Outcome::Done)
        return refusal;
    }
    const Outcome outcome = form == Form::Child
                                ? twin_.put(id, part.index, child)
                                : twin_.insert(id, part.index, twin_.sizeOf(id, part.index), child);
    if (outcome != Outcome::Done) return outcome;
  }
  return Outcome::Done;
}

Outcome Walk::makeTwinWithReferences(const Plan& plan, int model) {
  Id next = pairing_.next();
  std::vector<Reference> references;
  if (const Outcome refusal = makeTwin(plan, model, next, references); refusal != Outcome::Done)
    return refusal;
  for (std::size_t at = 0; at < references.size(); ++at) {  // which may grow meanwhile
    if (references[at].made == nullptr) continue;
    references[at].target = next;
    const Plan& made = *references[at].made;
    if (const Outcome refusal = makeTwin(made, model, next, references); refusal != Outcome::Done)
      return refusal;
  }
  for (const Reference& each : references) {
    const bool isOne = propertiesOf(twin_.kindOf(each.owner))[each.index - 1].form == Form::Reference;
    const Outcome outcome =
        isOne ? twin_.refer(each.owner, each.index, each.target)
              : twin_.addReference(each.owner, each.index, twin_.sizeOf(each.owner, each.index), each.target);
    if (outcome != Outcome::Done) return outcome;
  }
  return Outcome::Done;
}

/// Pair what a builder has made: elements come in the order in which their twins came.
void Walk::pairNew(int model) {
  for (const ModelElement& element : modelAt(model).impl()->elements()) {
    if (pairing_.idOf(element) != -1) continue;
    if (!twin_.contains(pairing_.next())) throw Mismatch("the builder made too many elements");
    pairing_.add(element);
  }
  if (twin_.contains(pairing_.next())) throw Mismatch("the builder made too few elements");
}

void Walk::build() {
  const Slot slot = drawSlot([](const PropertyOfKind&) { return true; });
  const int model = drawModel();
  const Plan plan = drawPlan(slot.kind, model, 0);
  note("build #", pairing_.next(), " in ", model, ": ", written(plan));
  const Twin::Elements before = twin_.elements(model);
  const Outcome expected = makeTwinWithReferences(plan, model);
  if (expected != Outcome::Done) twin_.putBack(model, before);
  perform(expected, [&] {
    makeBuilder(plan)->createIn(modelAt(model));
    pairNew(model);
  });
}

/// Make an element by a builder in its place.
void Walk::createInto() {
  const Slot slot = drawSlot([](const PropertyOfKind& each) { return isContaining(each.form); });
  const Id owner = drawOwner(slot);
  const int model = twin_.contains(owner) ? twin_.at(owner).model : 0;
  const Plan plan = drawPlan(drawKindFor(slot.property()), model, 0);
  note("build #", pairing_.next(), " in #", owner, ".", written(slot), ": ", written(plan));
  const Twin::Elements before = twin_.elements(model);
  const Id child = pairing_.next();
  const bool isOne = slot.property().form == Form::Child;
  Outcome expected = twin_.writable(owner);
  if (expected == Outcome::Done && isOne && twin_.sizeOf(owner, slot.index) != 0)
    expected = Outcome::CannotAddSecondObject;
  if (expected == Outcome::Done) expected = makeTwinWithReferences(plan, model);
  if (expected == Outcome::Done) {
    // The plan may have taken the owner itself along, into what is then put below it.
    expected = isOne ? twin_.put(owner, slot.index, child)
                     : twin_.insert(owner, slot.index, twin_.sizeOf(owner, slot.index), child);
  }
  if (expected != Outcome::Done) twin_.putBack(model, before);
  perform(expected, [&] {
    access(slot).createInto(impl(owner), makeBuilder(plan));
    pairNew(model);
  });
}

}  // namespace model_walk
