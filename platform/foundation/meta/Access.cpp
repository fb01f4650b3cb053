#include "platform/foundation/meta/Access.h"

#include "platform/foundation/Report.h"

namespace lx::base::meta {

namespace {

ModelElement::Impl& held(const ModelElement& element, const Property& property, const char* operation) {
  if (!element) report::invalidValue(operation, "the handle is null; give it an element first.");
  if (!property) report::invalidValue(operation, "there is no property; look one up in the element's class.");
  return *element.impl();
}

}  // namespace

Value getPropertyValue(const ModelElement& element, const Property& property, access::Internal) {
  return held(element, property, "lx.base.meta.getPropertyValue").getPropertyValue(property);
}

Value getPropertyValue(const ModelElement& element, const Property& property, access::Public) {
  const ModelElement::Impl& impl = held(element, property, "lx.base.meta.getPropertyValue");
  property.checkPublicGetter();
  return impl.getPropertyValue(property);
}

bool hasPropertyValue(const ModelElement& element, const Property& property, access::Internal) {
  return held(element, property, "lx.base.meta.hasPropertyValue").hasPropertyValue(property);
}

bool hasPropertyValue(const ModelElement& element, const Property& property, access::Public) {
  const ModelElement::Impl& impl = held(element, property, "lx.base.meta.hasPropertyValue");
  property.checkPublicGetter();
  return impl.hasPropertyValue(property);
}

void setPropertyValue(const ModelElement& element, const Property& property, const Value& value,
                      access::Public) {
  held(element, property, "lx.base.meta.setPropertyValue").setPropertyValue(property, value);
}

}  // namespace lx::base::meta
