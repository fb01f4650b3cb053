#pragma once

#include <cstddef>

#include "platform/services/CatalogMessage.h"

namespace nd::adapters::json {

/// Something that is wrong with a text: where, and "expected …, but found …". It is thrown by what looks
/// exactly, and becomes a `FormatFailure` before it leaves the reader.
struct Fault {
  std::size_t offset = 0;
  lx::services::CatalogMessage message;
};

}  // namespace nd::adapters::json
