#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/optional.hpp>

#include "platform/host/Array.h"

/// Arrays as tests expect them; elements are given column by column.
namespace arrays {

hvArrayPtr doubles(const hvDims& dimensions, const std::vector<double>& elements);
hvArrayPtr int64s(const hvDims& dimensions, const std::vector<std::int64_t>& elements);
hvArrayPtr uint64s(const hvDims& dimensions, const std::vector<std::uint64_t>& elements);
hvArrayPtr logicals(const hvDims& dimensions, const std::vector<bool>& elements);

/// An element of a string array; without a text it is missing.
struct Text : boost::optional<std::u16string> {
  Text(boost::none_t) {}
  Text(const char16_t* text) : boost::optional<std::u16string>(text) {}
};
hvArrayPtr strings(const hvDims& dimensions, const std::vector<Text>& elements);

/// A character row.
hvArrayPtr row(std::u16string_view text);
hvArrayPtr scalar(double value);
hvArrayPtr truth(bool value);
/// The empty 0-by-0 double that null reads as.
hvArrayPtr nothing();

template <typename... Cells>
std::vector<hvArrayPtr> list(Cells&&... cells) {
  std::vector<hvArrayPtr> result;
  (result.push_back(std::forward<Cells>(cells)), ...);
  return result;
}

/// A row of cells.
hvArrayPtr cellRow(std::vector<hvArrayPtr> cells);
template <typename... Cells>
hvArrayPtr cells(Cells&&... contents) {
  return cellRow(list(std::forward<Cells>(contents)...));
}

/// A row of structures; the values come structure by structure, in the order of the names.
hvArrayPtr structures(std::size_t count, const std::vector<std::string>& names,
                      std::vector<hvArrayPtr> values);

}  // namespace arrays
