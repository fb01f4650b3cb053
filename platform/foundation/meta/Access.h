#pragma once

#include "platform/foundation/meta/Meta.h"

namespace lx::base {

/// What reflection may read: what everybody may, or also what is internal to a class. Given as a tag.
namespace access {

struct Public {};
struct Internal {};

}  // namespace access

namespace meta {

/// Give, ask for and set an element's value of a property, as `ModelElement` does by the property's name.
/// Raise `InvalidValue` through a null handle, `NoSuchType` for a property of another class; with public
/// access also `InvalidValue` for a property without public getter. Setting is always public: it raises
/// `CannotSetReadOnlyProperty` for a property without public setter, and for one that is read-only or
/// derived; what is internal to a class is set by its element's own setters.
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
