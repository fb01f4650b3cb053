#pragma once

#include <string>

#include "platform/export.h"
#include "platform/foundation/ModelElement.h"

/// The foundation's reporter: what raises its catalogued exceptions, in one place each.
namespace lx::base::report {

/// Raise `lxb::messages::InvalidValue`; the subject names the thing, the cure says what would be right.
[[noreturn]] ND_PLATFORM_EXPORT void invalidValue(const std::u16string& subject, const std::u16string& cure);
[[noreturn]] ND_PLATFORM_EXPORT void invalidValue(const char* subject, const char* cure);

/// Raise `InvalidValue` for a model that is null or was destroyed.
[[noreturn]] ND_PLATFORM_EXPORT void missingModel(const std::u16string& subject);
[[noreturn]] ND_PLATFORM_EXPORT void missingModel(const char* subject);

/// Raise for a mutator that must not run: `CannotModifyProxy` on a proxy, else `InvalidValue`.
[[noreturn]] ND_PLATFORM_EXPORT void notWritable(const ModelElement::Impl& element,
                                                 const std::u16string& what);

/// Raise the exception of the same name for a property of an element.
[[noreturn]] ND_PLATFORM_EXPORT void cannotAddSecondObject(const ModelElement::Impl& owner, unsigned index);
[[noreturn]] ND_PLATFORM_EXPORT void cannotAddSecondObject(const std::u16string& place);
[[noreturn]] ND_PLATFORM_EXPORT void cannotAddNonExistentObject(const ModelElement::Impl& owner,
                                                                unsigned index);
[[noreturn]] ND_PLATFORM_EXPORT void cannotCreateCrossModelAssociation(const ModelElement::Impl& owner,
                                                                       unsigned index);
[[noreturn]] ND_PLATFORM_EXPORT void uniquenessConstraint(const ModelElement::Impl& owner, unsigned index,
                                                          const std::u16string& key);
[[noreturn]] ND_PLATFORM_EXPORT void cannotAddIncompatibleTypes(const ModelElement::Impl& owner,
                                                                unsigned index, const ModelElement& given,
                                                                const meta::Class& wanted);
[[noreturn]] ND_PLATFORM_EXPORT void cannotSetReadOnlyProperty(const meta::Property& property);
[[noreturn]] ND_PLATFORM_EXPORT void noSuchType(const std::u16string& name);
[[noreturn]] ND_PLATFORM_EXPORT void cannotCast(const ModelElement& given, const meta::Class& wanted);

/// Raise `InvalidValue` for a collection that was changed while it was walked.
[[noreturn]] ND_PLATFORM_EXPORT void changedWhileWalked(const ModelElement::Impl& owner, unsigned index);
[[noreturn]] ND_PLATFORM_EXPORT void walkedTooFar(const ModelElement::Impl& owner, unsigned index);
[[noreturn]] ND_PLATFORM_EXPORT void walkOfNothing();

}  // namespace lx::base::report
