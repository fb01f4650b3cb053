#pragma once

#include "adapters/json/Document.h"
#include "adapters/json/PaddedText.h"

namespace nd::adapters::json {

/// Read a text of JSON whose top level is an object; its members are the variables, in their order. Files
/// that the text includes are not looked at.
///
/// Raises `FormatFailure` with the first place at fault if the text is ill-formed, names a member twice,
/// holds numbers that no class holds, nests too deep, has a member at the top whose name is none for a
/// variable, or breaks a rule of the members whose names begin with "$". A byte order mark is passed over and
/// doesn't count as a column.
Document readDocument(const PaddedText& content);

}  // namespace nd::adapters::json
