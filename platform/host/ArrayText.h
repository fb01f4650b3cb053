#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/export.h"
#include "platform/host/Array.h"

/// How values are shown to people: UTF-8 text for terminals, the same in every locale.
///
/// Numbers have the fewest digits that read back as the same number; texts stand in double quotes, a missing
/// one is <missing>; subscripts count from 1. Whatever could drive a terminal or disturb a line (control
/// characters, line breaks, marks of writing direction, lone surrogates) is shown as an escape such as \n or
/// \u001b, in names too.

/// Describe shape and class, for example "3x4 double", "1x1 complex single" or "2x2x5 cell"; null is "0x0
/// double".
ND_PLATFORM_EXPORT std::string hvDescribe(const hvArray* array);

/// Show a value in one line of at most `width` columns of a terminal; what doesn't fit is cut and ends with
/// "…".
///
/// Rows are separated by ";", as in [1 2; 3 4]; cells stand in braces, fields in parentheses. What has no
/// short form (more than two dimensions, several structures) is described. The cost follows from the width
/// and not from the size of the value.
ND_PLATFORM_EXPORT std::string hvPreview(const hvArray* array, std::size_t width);

/// Show a whole value under a name, in lines that each end with a line break.
///
/// Columns are aligned, wide tables are split into blocks of at most `width` columns of a terminal (0:
/// never), arrays of more dimensions come page by page, cells and structures are indented. For example:
///
///     limits: 1x1 struct
///       lower: 1x1 double = -1
///       table: 2x2 double =
///          1   2.5
///         10  -3
ND_PLATFORM_EXPORT std::string hvFormat(const hvArray* array, std::string_view name, std::size_t width = 100);

/// Give a UTF-8 text in the form in which it can't drive a terminal; ill-formed sequences become U+FFFD.
ND_PLATFORM_EXPORT std::string hvEscape(std::string_view utf8);

/// Tell how many columns of a terminal a line of UTF-8 takes: wide characters two, combining ones none.
ND_PLATFORM_EXPORT std::size_t hvDisplayWidth(std::string_view utf8);

/// Cut a line of UTF-8 to at most `width` columns, the last of them "…" if something was cut.
ND_PLATFORM_EXPORT std::string hvCutToWidth(std::string_view utf8, std::size_t width);
