#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <boost/optional.hpp>

#include "platform/export.h"
#include "platform/host/Array.h"

/// Text in arrays: character arrays hold UTF-16 units, one an element; string arrays hold one whole text an
/// element, or the missing value. Units are kept as they are, lone surrogates too.

/// Create a character array of null characters; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateCharArray(const hvDims& dimensions);

/// Create a character row, 1-by-n, of a text; the caller owns it. The empty text gives a 1-by-0 row, which is
/// still a text for ndsvIsStringScalar. In UTF-8 each ill-formed sequence becomes U+FFFD; a null pointer
/// raises NullText.
ND_PLATFORM_EXPORT hvArray* hvCreateString(std::u16string_view text);
ND_PLATFORM_EXPORT hvArray* hvCreateString(std::string_view utf8);
ND_PLATFORM_EXPORT hvArray* hvCreateString(const char* utf8);

/// Create an array of class "string" whose elements are the empty text; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateStringArray(const hvDims& dimensions);

/// Create a 1-by-1 array of class "string"; the caller owns it.
ND_PLATFORM_EXPORT hvArray* hvCreateStringScalar(std::u16string_view text);

/// Lend an element of a string array, none for the missing value, until the array is changed or destroyed.
/// Raises WrongClass, IndexOutOfRange and NullArray.
ND_PLATFORM_EXPORT const boost::optional<std::u16string>& hvGetString(const hvArray* array,
                                                                      std::size_t index);

/// Set an element of a string array; none makes it missing. Raises WrongClass, IndexOutOfRange, NullArray,
/// and AlreadyTakenOver if a cell, a structure or a workspace owns the array.
ND_PLATFORM_EXPORT void hvSetString(hvArray* array, std::size_t index, boost::optional<std::u16string> text);

/// Give the text of a character array, all its units in stored order, column by column, or of a 1-by-1 string
/// array.
///
/// The null value gives the empty text. The missing value raises MissingNotSupported of the catalogue
/// "Orbex:string"; a string array of another size, and any other class, raise NotOneText.
ND_PLATFORM_EXPORT std::u16string hvArrayToString(const hvArray* array);

/// As hvArrayToString, in UTF-8, with U+FFFD for each lone surrogate.
ND_PLATFORM_EXPORT std::string hvArrayToStdString(const hvArray* array);

/// Tell whether the array is one text: a character row, an empty one too, or a 1-by-1 string that isn't
/// missing.
ND_PLATFORM_EXPORT bool ndsvIsStringScalar(const hvArray* array) noexcept;

/// Give the text of an array for which ndsvIsStringScalar holds; others raise NotOneText.
ND_PLATFORM_EXPORT std::u16string ndsvGetUstringFromStringScalar(const hvArray* array);

/// Tell whether a character may stand in a name of the host behind the first: an ASCII letter, a digit or
/// "_".
ND_PLATFORM_EXPORT bool hvIsValidSubsequentCharInOrbName(char character) noexcept;
