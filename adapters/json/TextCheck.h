#pragma once

#include <cstddef>
#include <string_view>

#include <boost/optional.hpp>

#include "platform/services/CatalogMessage.h"

namespace nd::adapters::json {

/// Something that is wrong with a text: where, and "expected …, but found …".
struct Fault {
  std::size_t offset = 0;
  lx::services::CatalogMessage message;
};

/// Find the first place where a text stops being an object of JSON (RFC 8259) in UTF-8 that variables can be
/// made of; none if it is one.
///
/// It is the slow and exact look at a text that the reader has refused, and the one that words what is wrong.
/// Besides the grammar it knows of halves of surrogate pairs, of numbers that no class holds, of names that
/// an object has twice, of names at the top that no variable can have, and of the limits. A fault of a name
/// or a number stands where that begins.
boost::optional<Fault> findFault(std::string_view text);

}  // namespace nd::adapters::json
