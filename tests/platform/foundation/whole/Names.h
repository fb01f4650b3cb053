#pragma once

#include <string>

#include "tests/platform/foundation/whole/Ways.h"

namespace whole_test {

/// Give the name by which the mutators of an element call the property: that of the element's own class, also
/// where a superclass brings the property.
inline std::string nameAtElement(const Ways& ways) {
  return lx::text::toUtf8(ways.maker.metaClass().getQualifiedName() + u"." + ways.name);
}

}  // namespace whole_test
