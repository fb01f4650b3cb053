#include "tests/support/walks/Outcome.h"

#include "platform/foundation/messages.h"

namespace walking {

const char* nameOf(Outcome outcome) {
  static const char* const names[] = {"Done",
                                      "CannotModifyProxy",
                                      "CannotAddNonExistentObject",
                                      "CannotAddSecondObject",
                                      "CannotCreateCrossModelAssociation",
                                      "CannotAddIncompatibleTypes",
                                      "CannotSetReadOnlyProperty",
                                      "UniquenessConstraint",
                                      "InvalidValue"};
  return names[static_cast<int>(outcome)];
}

Outcome outcomeOf(const std::function<void()>& change) {
  using namespace lxb::messages;
  try {
    change();
  } catch (const CannotModifyProxy&) {
    return Outcome::CannotModifyProxy;
  } catch (const CannotAddNonExistentObject&) {
    return Outcome::CannotAddNonExistentObject;
  } catch (const CannotAddSecondObject&) {
    return Outcome::CannotAddSecondObject;
  } catch (const CannotCreateCrossModelAssociation&) {
    return Outcome::CannotCreateCrossModelAssociation;
  } catch (const CannotAddIncompatibleTypes&) {
    return Outcome::CannotAddIncompatibleTypes;
  } catch (const CannotSetReadOnlyProperty&) {
    return Outcome::CannotSetReadOnlyProperty;
  } catch (const UniquenessConstraint&) {
    return Outcome::UniquenessConstraint;
  } catch (const InvalidValue&) {
    return Outcome::InvalidValue;
  }
  return Outcome::Done;
}

}  // namespace walking
