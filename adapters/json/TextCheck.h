#pragma once

#include <string_view>

#include <boost/optional.hpp>

#include "adapters/json/Fault.h"

namespace nd::adapters::json {

/// Find the first place where a text stops being an object of JSON (RFC 8259) in UTF-8 that variables can be
/// made of; none if it is one.
///
/// It is the slow and exact look at a text that the reader has refused, and the one that words what is wrong.
/// Besides the grammar it knows of halves of surrogate pairs, of numbers that no class holds, of names that
/// an object has twice, of names at the top that no variable can have, of names that begin with "$", and of
/// the limits. A fault of a name or a number stands where that begins. What makes an object or an array wrong
/// as a whole, such as a count of elements, comes behind all that is wrong within it.
boost::optional<Fault> findFault(std::string_view text);

}  // namespace nd::adapters::json
