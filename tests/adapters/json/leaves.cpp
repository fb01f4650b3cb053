#include "tests/adapters/json/leaves.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/host/ArrayData.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"

namespace {

using Leaves = std::vector<std::string>;

std::string ofNumber(double value) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%a", value);
  return text.data();
}

std::string ofString(std::size_t units) {
  return "string of " + std::to_string(units);
}

/// Pass the string that begins here, and count its UTF-16 units.
std::size_t passString(std::string_view text, std::size_t& at) {
  std::size_t units = 0;
  for (++at; text[at] != '"'; ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte == '\\') {
      at += text[at + 1] == 'u' ? 5U : 1U;
      ++units;
    } else if ((byte & 0xC0U) != 0x80U) {
      units += byte >= 0xF0U ? 2U : 1U;
    }
  }
  ++at;
  return units;
}

void add(Leaves& leaves, const hvArray* array);

void addContent(Leaves& leaves, const hvArray* array) {
  const std::size_t count = hvGetNumberOfElements(array);
  for (std::size_t index = 0; index < count; ++index) {
    switch (hvGetClassCode(array)) {
      case hvClassCode::Logical:
        leaves.emplace_back(hvGetLogicals(array)[index] ? "true" : "false");
        break;
      case hvClassCode::String:
        leaves.push_back(hvGetString(array, index) ? ofString(hvGetString(array, index)->size()) : "null");
        break;
      case hvClassCode::Cell:
        add(leaves, hvGetCell(array, index));
        break;
      case hvClassCode::Structure:
        for (std::size_t field = 0; field < hvGetNumberOfFields(array); ++field)
          add(leaves, hvGetFieldByNumber(array, index, field));
        break;
      case hvClassCode::Int64:
        leaves.push_back(ofNumber(static_cast<double>(hvGetData<std::int64_t>(array)[index])));
        break;
      case hvClassCode::UInt64:
        leaves.push_back(ofNumber(static_cast<double>(hvGetData<std::uint64_t>(array)[index])));
        break;
      default:
        leaves.push_back(ofNumber(hvGetData<double>(array)[index]));
        break;
    }
  }
}

void add(Leaves& leaves, const hvArray* array) {
  if (hvGetClassCode(array) == hvClassCode::Character) {
    leaves.push_back(ofString(hvGetNumberOfElements(array)));
  } else if (hvGetClassCode(array) == hvClassCode::Double && hvGetDimensions(array) == hvDims{0, 0}) {
    leaves.emplace_back("null");
  } else {
    addContent(leaves, array);
  }
}

Leaves sorted(Leaves leaves) {
  std::sort(leaves.begin(), leaves.end());
  return leaves;
}

}  // namespace

std::vector<std::string> leavesOf(std::string_view text) {
  Leaves leaves;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    if (rest.front() == '"') {
      const std::size_t units = passString(text, at);
      const std::size_t next = std::min(text.find_first_not_of(" \t\r\n", at), text.size() - 1);
      if (text[next] != ':') leaves.push_back(ofString(units));
    } else if (rest.front() == '-' || (rest.front() >= '0' && rest.front() <= '9')) {
      const std::string literal(rest.substr(0, rest.find_first_not_of("+-.eE0123456789")));
      leaves.push_back(ofNumber(std::strtod(literal.c_str(), nullptr)));
      at += literal.size();
    } else if (rest.front() >= 'a' && rest.front() <= 'z') {
      const std::string_view word = rest.substr(0, rest.find_first_not_of("aeflnrstu"));
      leaves.emplace_back(word);
      at += word.size();
    } else {
      ++at;
    }
  }
  return sorted(std::move(leaves));
}

std::vector<std::string> leavesOf(const std::vector<nd::adapters::json::Variable>& variables) {
  Leaves leaves;
  for (const nd::adapters::json::Variable& variable : variables) add(leaves, variable.value.get());
  return sorted(std::move(leaves));
}
