#pragma once

#include "platform/foundation/meta/Meta.h"

namespace lx::base {

/// What reflection may reach: what everybody may, or also what is internal to a class. Given as a tag.
namespace access {

struct Public {};
struct Internal {};

}  // namespace access

namespace meta {

/// Give, ask for and set an element's value of a property, as `ModelElement` does by the property's name.
/// Raise `InvalidValue` through a null handle, `NoSuchType` for a property of another class; with public
/// access also `InvalidValue` for a property without public getter, and `CannotSetReadOnlyProperty` for one
/// without public setter. One that is read-only or derived is set by neither access.
ND_PLATFORM_EXPORT Value getPropertyValue(const ModelElement& element, const Property& property,
                                          access::Public);
ND_PLATFORM_EXPORT Value getPropertyValue(const ModelElement& element, const Property& property,
                                          access::Internal);
ND_PLATFORM_EXPORT bool hasPropertyValue(const ModelElement& element, const Property& property,
                                         access::Public);
ND_PLATFORM_EXPORT bool hasPropertyValue(const ModelElement& element, const Property& property,
                                         access::Internal);
ND_PLATFORM_EXPORT void setPropertyValue(const ModelElement& element, const Property& property,
                                         const Value& value, access::Public);

}  // namespace meta
}  // namespace lx::base
