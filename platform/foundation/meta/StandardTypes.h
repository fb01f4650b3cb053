#pragma once

#include "platform/foundation/meta/Meta.h"

namespace lx::base::meta {

/// The types that the foundation brings itself, looked up in the registry once and kept. If the
/// registry got another model, later calls give the types that are in that; what was given before stays.
///
///     if (property.getType() == StandardTypes::stdString()) …
class ND_PLATFORM_EXPORT StandardTypes {
 public:
  StandardTypes() = delete;

  static const Class& modelElement();
  static const Class& model();
  static const PrimitiveType& string();
  static const PrimitiveType& stdString();
  static const PrimitiveType& boolean();
  static const PrimitiveType& integer();
  static const PrimitiveType& uuid();
  static const PrimitiveType& hvArray();
};

}  // namespace lx::base::meta
