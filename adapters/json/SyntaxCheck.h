#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <boost/optional.hpp>

namespace nd::adapters::json {

/// The first thing that is wrong with a text: where, and "expected …, but found …".
struct SyntaxFault {
  std::size_t offset = 0;
  std::string words;
};

/// Find the first place where a text stops being one object of JSON (RFC 8259) in UTF-8; none if it is one.
///
/// It is the slow and exact look at a text that the fast parser has refused without a place. Escapes of half
/// a surrogate pair count as faults, and so does nesting beyond `maximumDepth`; names may repeat and numbers
/// may be of any size.
boost::optional<SyntaxFault> findSyntaxFault(std::string_view text);

}  // namespace nd::adapters::json
