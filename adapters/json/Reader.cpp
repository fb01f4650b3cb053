#include "adapters/json/Reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/unordered/unordered_flat_set.hpp>

// The checks allocate without looking whether there was memory, and what they watch can't happen on one walk.
#define SIMDJSON_DEVELOPMENT_CHECKS 0
#include <simdjson.h>

#include "adapters/json/Block.h"
#include "adapters/json/DollarNames.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/ExactReader.h"
#include "adapters/json/FormatFailure.h"
#include "adapters/json/Gatherer.h"
#include "adapters/json/Limits.h"
#include "adapters/json/MemberNames.h"
#include "adapters/json/Place.h"
#include "adapters/json/TextCheck.h"
#include "adapters/json/TextScan.h"
#include "adapters/json/VariableName.h"
#include "adapters/json/messages.h"
#include "platform/host/messages.h"
#include "platform/text/Convert.h"
#include "platform/text/Hash.h"

namespace nd::adapters::json {
namespace {

namespace ondemand = simdjson::ondemand;

static_assert(PaddedText::padding >= simdjson::SIMDJSON_PADDING);
static_assert(maximumFileSize <= simdjson::SIMDJSON_MAXSIZE_BYTES);

/// What nests deeper is read exactly: that is slower, and takes less of the stack.
constexpr std::size_t maximumQuickDepth = 256;
static_assert(maximumQuickDepth < maximumDepth);

/// The reader goes on no further; `reason` is a constant text.
struct Refusal {
  const char* reason;
};

/// Walks a document once, from the front to the back. It only notices that something is wrong: the parser
/// learns of some faults ahead of others that stand before them.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Document read() {
    const simdjson::padded_string_view padded(text_.data(), text_.size(),
                                              text_.size() + simdjson::SIMDJSON_PADDING);
    take(parser_.iterate(padded), document_);
    ondemand::object top;
    take(document_.get_object(), top);
    Document content = readTop(top);
    if (document_.current_location().error() != simdjson::OUT_OF_BOUNDS) refuse(simdjson::TRAILING_CONTENT);
    return content;
  }

 private:
  /// Counts a level of nesting for as long as it lives.
  class Level {
   public:
    explicit Level(Reader& reader) noexcept : reader_(reader) { ++reader_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() { --reader_.depth_; }

   private:
    Reader& reader_;
  };

  template <typename T>
  static void take(simdjson::simdjson_result<T>&& result, T& value) {
    if (const auto error = std::move(result).get(value)) refuse(error);
  }

  template <typename T>
  static void take(const simdjson::simdjson_result<T>& result, T& value) {
    if (const auto error = result.error()) refuse(error);
    value = result.value_unsafe();
  }

  [[noreturn]] static void refuse(simdjson::error_code error) {
    if (error == simdjson::MEMALLOC) throw std::bad_alloc();
    throw Refusal{simdjson::error_message(error)};
  }

  std::size_t offsetOf(const char* position) const {
    return static_cast<std::size_t>(position - text_.data());
  }

  std::size_t offsetOf(ondemand::value& value) const { return offsetOf(value.raw_json_token().data()); }

  /// The text from an offset to the token that comes next.
  std::string_view excerptFrom(std::size_t begin) {
    const char* next = nullptr;
    take(document_.current_location(), next);
    return text_.substr(begin, offsetOf(next) - begin);
  }

  Document readTop(ondemand::object top) {
    const Level level(*this);
    Document content;
    MemberNames dollarNames;
    bool isFirst = true;
    bool includesFiles = false;
    readMembers(top, [&](std::string_view name, std::size_t offset, ondemand::value& value) {
      if (isDollarName(name)) {
        refuseRepeated(dollarNames.add(name, offset).has_value());
        checkNameAtTop(std::string(name), isFirst, offset);
        if (name == metaDataName) {
          exactReaderAt(value).metaData(content);
        } else {
          includesFiles = !exactReaderAt(value).includes().empty();
        }
      } else {
        if (!isVariableName(name) || isTooLongForVariable(name))
          throw Refusal{"a name is none for a variable"};
        content.variables.push_back({std::string(name), nullptr});
        content.variables.back().value = readWhole(value);
      }
      isFirst = false;
    });
    refuseRepeated(hasRepeatedName(content.variables));
    const auto isOfNoVariable = [](const auto& metaData) { return isDollarName(metaData.variable); };
    if (!includesFiles && std::any_of(content.metaData.begin(), content.metaData.end(), isOfNoVariable))
      throw Refusal{"metadata are those of no variable"};
    return content;
  }

  static void refuseRepeated(bool isRepeated) {
    if (isRepeated) throw Refusal{"a name comes twice"};
  }

  /// The variables may be many: their names aren't copied for this.
  static bool hasRepeatedName(const std::vector<Variable>& variables) {
    boost::unordered_flat_set<std::string_view, lx::text::Hash> names(variables.size());
    return !std::all_of(variables.begin(), variables.end(),
                        [&](const Variable& variable) { return names.insert(variable.name).second; });
  }

  /// Objects whose names begin with "$" have rules of their own. The parser isn't told that they have been
  /// read: it passes over them.
  ExactReader exactReaderAt(ondemand::value& value) const {
    return ExactReader(text_, offsetOf(value), depth_);
  }

  template <typename Visit>
  void readMembers(ondemand::object& object, const Visit& visit) {
    for (auto member : object) {
      ondemand::field field;
      take(member, field);
      const std::size_t offset = offsetOf(field.key().raw()) - 1;
      const std::string_view name = unescape(field.key(), offsetOf(field.value()) - offset);
      visit(name, offset, field.value());
    }
  }

  /// Read a value that has no part in a larger one. Most are numbers.
  hvArrayPtr readWhole(ondemand::value& value) {
    double number = 0;
    if (isReadRight(value) && value.get_double().get(number) == simdjson::SUCCESS &&
        std::abs(number) < firstInexactInteger)
      return hvArrayPtr(hvCreateDoubleScalar(number));
    return takeArray(stacks_, readValue(value));
  }

  Block readValue(ondemand::value& value,
                  const std::shared_ptr<const MemberNameList>& expectedNames = nullptr) {
    ondemand::json_type type{};
    take(value.type(), type);
    if (depth_ == maximumQuickDepth) return ExactReader(text_, offsetOf(value), depth_, stacks_).block();
    switch (type) {
      case ondemand::json_type::array:
        return readArray(value);
      case ondemand::json_type::object:
        return readObject(value, expectedNames);
      case ondemand::json_type::number:
        return readNumber(value);
      case ondemand::json_type::string:
        return readString(value);
      case ondemand::json_type::boolean:
        return readTruth(value);
      case ondemand::json_type::null:
        break;
    }
    return readNull(value);
  }

  Block readArray(ondemand::value& value) {
    const std::size_t begin = offsetOf(value);
    const Level level(*this);
    ondemand::array array;
    take(value.get_array(), array);
    Gatherer gatherer(stacks_, text_.substr(begin));
    for (auto item : array) {
      ondemand::value element;
      take(item, element);
      const std::size_t offset = offsetOf(element);
      double number = 0;
      if (!gatherer.takesDoubles() || !isReadRight(element) ||
          element.get_double().get(number) != simdjson::SUCCESS) {
        gatherer.add(readValue(element, gatherer.expectedNames()), offset - begin);
      } else if (std::abs(number) < firstInexactInteger) {
        if (stacks_.numbers.size() == stacks_.numbers.capacity()) makeRoomForNumbers(offset);
        gatherer.addDouble(number);
      } else {
        gatherer.add(numberBlock(number, offset), offset - begin);
      }
    }
    if (gatherer.clash()) throw Refusal{"numbers have no class in common"};
    Block block = gatherer.finish();
    if (isNumeric(block.kind)) block.excerpt = excerptFrom(begin);
    return block;
  }

  /// Make room for as many numbers as the text holds if it goes on as it has begun. Room that is not used
  /// costs addresses only, while growing step by step would move everything again and again.
  void makeRoomForNumbers(std::size_t offset) {
    constexpr std::size_t few = 1024;
    const std::size_t count = stacks_.numbers.size();
    if (count < few) return;
    const std::size_t bytesPerNumber = std::max<std::size_t>(offset / count, 2);
    const std::size_t expected = count + (text_.size() - offset) / bytesPerNumber;
    stacks_.numbers.reserve(std::max(2 * count, expected + expected / 16));
  }

  Block readTagged(ondemand::value& value) {
    hvArrayPtr array = exactReaderAt(value).value();
    stacks_.arrays.push_back(std::move(array));
    return {BlockKind::Array, {}, stacks_.arrays.size() - 1, {}, nullptr};
  }

  Block readObject(ondemand::value& value, const std::shared_ptr<const MemberNameList>& expectedNames) {
    if (beginsTaggedValue(text_.substr(offsetOf(value)))) return readTagged(value);
    const Level level(*this);
    ondemand::object object;
    take(value.get_object(), object);
    const std::size_t begin = stacks_.arrays.size();
    MemberNames names(expectedNames);
    readMembers(object, [&](std::string_view name, std::size_t offset, ondemand::value& member) {
      refuseRepeated(names.add(name, offset).has_value());
      if (isDollarName(name)) throw Refusal{"a plain object has a name that begins with a dollar sign"};
      hvArrayPtr array = readWhole(member);
      stacks_.arrays.push_back(std::move(array));
    });
    return {BlockKind::Struct, {}, begin, {}, names.finish()};
  }

  /// Give a string without its escapes, valid until the next one. In the text it is at most `longest` bytes
  /// long.
  ///
  /// The parser has a buffer of its own for that, but doesn't look whether there was memory for it.
  std::string_view unescape(ondemand::raw_json_string raw, std::size_t longest) {
    const std::size_t needed = longest + simdjson::SIMDJSON_PADDING;
    if (unescaped_.size() < needed) unescaped_.resize(std::max(needed, 2 * unescaped_.size()));
    std::uint8_t* end = unescaped_.data();
    std::string_view text;
    take(parser_.unescape(raw, end), text);
    return text;
  }

  double readDouble(ondemand::value& value) const {
    double number = 0;
    const auto error = value.get_double().get(number);
    if (error == simdjson::NUMBER_ERROR || !isReadRight(value)) {
      if (const auto nearest = doubleOfManyDigits(value)) return *nearest;
    }
    if (error) refuse(error);
    return number;
  }

  /// Tell whether the parser reads a number right. It doesn't where twenty digits and more follow "0.".
  static bool isReadRight(ondemand::value& value) {
    constexpr std::size_t longest = std::string_view("0.").size() + 19;
    const std::string_view token = value.raw_json_token();
    return token.size() <= longest || token[token[0] == '-' ? 1 : 0] != '0';
  }

  /// Read a number that the parser reads wrongly, or gives up on: an exponent of many digits, although the
  /// number may well be near 0. None if it is no number or too large.
  boost::optional<double> doubleOfManyDigits(ondemand::value& value) const {
    TextScan scan(text_, offsetOf(value));
    const std::size_t end = scan.offset() + value.raw_json_token().size();
    const std::string_view literal = scan.number();
    scan.skipSpace();
    if (scan.offset() != end) return boost::none;
    return nearestDouble(literal);
  }

  Block readNumber(ondemand::value& value) {
    const std::size_t offset = offsetOf(value);
    return numberBlock(readDouble(value), offset);
  }

  Block numberBlock(double rounded, std::size_t offset) {
    const std::string_view literal = numberLiteral(text_.substr(offset));
    const ExactNumber number = exactNumber(literal, rounded);
    if (number.numberClass == NumberClass::None) throw Refusal{"an integer is too large"};
    stacks_.numbers.push_back(number.bits);
    return {kindOf(number.numberClass), {}, stacks_.numbers.size() - 1, literal, nullptr};
  }

  Block readString(ondemand::value& value) {
    const std::size_t longest = value.raw_json_token().size();
    ondemand::raw_json_string raw;
    take(value.get_raw_json_string(), raw);
    stacks_.texts.emplace_back(lx::text::toUtf16(unescape(raw, longest)));
    return {BlockKind::Text, {}, stacks_.texts.size() - 1, {}, nullptr};
  }

  Block readTruth(ondemand::value& value) {
    bool truth = false;
    take(value.get_bool(), truth);
    stacks_.truths.push_back(truth);
    return {BlockKind::Logical, {}, stacks_.truths.size() - 1, {}, nullptr};
  }

  Block readNull(ondemand::value& value) {
    bool isNull = false;
    take(value.is_null(), isNull);
    if (!isNull) refuse(simdjson::N_ATOM_ERROR);
    stacks_.texts.emplace_back();
    return {BlockKind::Text, {}, stacks_.texts.size() - 1, {}, nullptr};
  }

  std::string_view text_;
  ondemand::parser parser_;
  ondemand::document document_;
  BlockStacks stacks_;
  std::vector<std::uint8_t> unescaped_;
  std::size_t depth_ = 0;
};

[[noreturn]] void explain(std::string_view text, const char* reason) {
  if (const auto fault = findFault(text)) throw FormatFailure(placeOf(text, fault->offset), fault->message);
  throw FormatFailure(placeOf(text, text.size()), messages::UnexplainedRefusal(lx::text::toUtf16(reason)));
}

}  // namespace

Document readDocument(const PaddedText& content) {
  const std::string_view text = content.text();
  try {
    return Reader(text).read();
  } catch (const Refusal& refusal) {
    explain(text, refusal.reason);
  } catch (const hv::messages::NestedTooDeep&) {
    explain(text, "cells and structures nest too deep");
  } catch (const Fault& found) {
    // Something that stands before it may be at fault too.
    const auto first = findFault(text);
    const Fault& fault = first ? *first : found;
    throw FormatFailure(placeOf(text, fault.offset), fault.message);
  }
}

}  // namespace nd::adapters::json
