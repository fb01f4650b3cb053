#pragma once

#include <functional>

namespace walking {

/// What a change comes to: it is done, or refused by one of the foundation's exceptions.
enum class Outcome {
  Done,
  CannotModifyProxy,
  CannotAddNonExistentObject,
  CannotAddSecondObject,
  CannotCreateCrossModelAssociation,
  CannotAddIncompatibleTypes,
  CannotSetReadOnlyProperty,
  UniquenessConstraint,
  InvalidValue
};

const char* nameOf(Outcome outcome);

/// Call what changes something and say what it comes to. Other exceptions pass.
Outcome outcomeOf(const std::function<void()>& change);

}  // namespace walking
