#include "adapters/json/ExactReader.h"

#include <algorithm>
#include <utility>

#include "adapters/json/DollarNames.h"
#include "adapters/json/ExactNumber.h"
#include "adapters/json/Gatherer.h"
#include "adapters/json/Limits.h"
#include "adapters/json/Place.h"
#include "adapters/json/TaggedValue.h"
#include "adapters/json/VariableName.h"
#include "adapters/json/Wording.h"
#include "adapters/json/messages.h"
#include "adapters/json/nearestName.h"
#include "platform/host/messages.h"

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

void checkVariableName(const std::string& name, std::size_t offset) {
  if (!isVariableName(name)) throw Fault{offset, messages::NoVariableName(quoted(name))};
  if (isTooLongForVariable(name)) {
    throw Fault{offset,
                messages::VariableNameTooLong(spelled(maximumVariableNameLength), spelled(name.size()))};
  }
}

/// Put arrays together to one that begins at an offset, unless the host refuses to nest them so deep.
template <typename Make>
auto nest(std::size_t offset, const Make& make) {
  try {
    return make();
  } catch (const hv::messages::NestedTooDeep&) {
    throw Fault{offset, messages::NestedTooDeep(spelled(hvMaximumNesting))};
  }
}

}  // namespace

void ExactReader::enter(std::size_t levels) {
  if (depth_ + levels > maximumDepth) scan_.fail<messages::TooManyLevels>(spelled(maximumDepth));
  const bool isObject = scan_.skip('{');
  if (!isObject) scan_.skip('[');
  depth_ += levels;
  scan_.skipSpace();
  if (isObject && !scan_.isAt('}') && !scan_.isAt('"')) scan_.fail<messages::NoMemberOrEnd>(u"'}'");
}

void ExactReader::leave(std::size_t levels) noexcept {
  if (!scan_.skip('}')) scan_.skip(']');
  depth_ -= levels;
}

void ExactReader::passColon() {
  scan_.skipSpace();
  if (!scan_.skip(':')) scan_.fail<messages::NoColon>();
  scan_.skipSpace();
}

bool ExactReader::passCommaBehindMember() {
  scan_.skipSpace();
  if (scan_.isAt('}')) return false;
  if (!scan_.skip(',')) scan_.fail<messages::NoCommaBehindMember>(u"'}'");
  scan_.skipSpace();
  if (!scan_.isAt('"')) scan_.fail<messages::NoMemberBehindComma>();
  return true;
}

bool ExactReader::passCommaBehindElement() {
  scan_.skipSpace();
  if (scan_.isAt(']')) return false;
  if (!scan_.skip(',')) scan_.fail<messages::NoCommaBehindElement>();
  return true;
}

void ExactReader::addName(MemberNames& names, const std::string& name, std::size_t offset) const {
  const auto earlier = names.add(name, offset);
  if (!earlier) return;
  const Place place = placeOf(scan_.text(), names.offsetOf(*earlier));
  throw Fault{offset, messages::RepeatedName(quoted(name), toUtf16(describe(place)))};
}

Document ExactReader::document() {
  scan_.skipSpace();
  if (!scan_.isAt('{')) scan_.fail<messages::NoObjectAtTop>(u"'{'");
  Document document;
  bool isFirst = true;
  bool includesFiles = false;
  const auto check = [&](const std::string& name, std::size_t offset) {
    if (isDollarName(name)) {
      checkNameAtTop(name, isFirst, offset);
    } else {
      checkVariableName(name, offset);
    }
    isFirst = false;
  };
  forEachMember(check, [&](const std::string& name) {
    if (name == includeName) {
      includesFiles = !includes().empty();
    } else if (name == metaDataName) {
      metaData(document);
    } else {
      hvArrayPtr array = value();
      document.variables.push_back({name, std::move(array)});
    }
  });
  scan_.skipSpace();
  if (!scan_.isAtEnd()) scan_.fail<messages::TextBehindObject>();
  // Which names there are is known here only if no other file brings some.
  if (!includesFiles) checkNamesInMetaData(document);
  return document;
}

void ExactReader::checkNamesInMetaData(const Document& document) {
  const auto found =
      std::find_if(document.metaData.begin(), document.metaData.end(),
                   [](const VariableMetaData& metaData) { return isDollarName(metaData.variable); });
  if (found == document.metaData.end()) return;
  const auto position = static_cast<std::size_t>(found - document.metaData.begin());
  const std::size_t offset = document.metaDataOffsets[position];
  if (document.variables.empty()) throw Fault{offset, messages::NoVariableName(quoted(found->variable))};
  std::vector<std::string_view> names;
  for (const Variable& variable : document.variables) names.push_back(variable.name);
  const std::string_view nearest = nearestName(found->variable, names);
  throw Fault{offset, messages::NoVariableOfMetaData(quoted(nearest), quoted(found->variable))};
}

std::vector<Include> ExactReader::includes() {
  std::vector<Include> includes;
  const auto include = [&] {
    const std::size_t offset = scan_.offset();
    includes.push_back({scan_.string(), offset});
  };
  if (scan_.isAt('"')) {
    include();
  } else if (scan_.isAt('[')) {
    forEachElement([&](bool) {
      if (!scan_.isAt('"')) scan_.fail<messages::NoFileName>();
      include();
    });
  } else {
    scan_.fail<messages::NoFileNames>();
  }
  return includes;
}

std::vector<Include> ExactReader::leadingIncludes() {
  scan_.skipSpace();
  if (!scan_.isAt('{')) scan_.fail<messages::NoObjectAtTop>(u"'{'");
  enter();
  if (scan_.isAt('}') || scan_.string() != includeName) return {};
  passColon();
  return includes();
}

void ExactReader::metaData(Document& into) {
  if (!scan_.isAt('{')) scan_.fail<messages::NoMetaData>(u"'{'");
  const auto check = [&](const std::string& variable, std::size_t at) {
    if (isDollarName(variable)) {
      checkNameOfVariableInMetaData(variable, at);
    } else {
      checkVariableName(variable, at);
    }
    into.metaDataOffsets.push_back(at);
  };
  forEachMember(check, [&](const std::string& variable) { into.metaData.push_back(metaDataOf(variable)); });
}

VariableMetaData ExactReader::metaDataOf(const std::string& variable) {
  if (!scan_.isAt('{')) scan_.fail<messages::NoMetaDataOfVariable>(u"'{'");
  VariableMetaData result{variable, {}};
  forEachMember(checkNameInMetaData, [&](const std::string& name) {
    const bool isText = name == "unit" || name == "description";
    if (isText && !scan_.isAt('"')) scan_.fail<messages::NoTextInMetaData>(quoted(name));
    hvArrayPtr array = value();
    result.entries.push_back({name, std::move(array)});
  });
  return result;
}

hvArrayPtr ExactReader::value(bool isFirstElement) {
  const std::size_t begin = scan_.offset();
  const Block its = block(isFirstElement);
  return nest(begin, [&] { return takeArray(stacks_, its); });
}

Block ExactReader::block(bool isFirstElement) {
  if (scan_.isAt('{')) return object();
  if (scan_.isAt('[')) return array();
  if (scan_.isAt('"')) return text(toUtf16(scan_.string()));
  if (scan_.isAtNumber()) return number();
  if (scan_.skipWord("true")) return truth(true);
  if (scan_.skipWord("false")) return truth(false);
  if (scan_.skipWord("null")) return text(boost::none);
  if (isFirstElement) scan_.fail<messages::NoElementOrEnd>();
  scan_.fail<messages::NoValue>();
}

Block ExactReader::object() {
  const std::size_t begin = stacks_.arrays.size();
  if (beginsTaggedValue(scan_.text().substr(scan_.offset()))) {
    const std::size_t offset = scan_.offset();
    hvArrayPtr array = nest(offset, [&] { return TaggedValue(*this).read(); });
    stacks_.arrays.push_back(std::move(array));
    return {BlockKind::Array, {}, begin, {}, nullptr};
  }
  auto names = forEachMember(checkNameInObject, [&](const std::string&) {
    hvArrayPtr array = value();
    stacks_.arrays.push_back(std::move(array));
  });
  return {BlockKind::Struct, {}, begin, {}, std::move(names)};
}

Block ExactReader::array() {
  const std::size_t begin = scan_.offset();
  const std::string_view rest = scan_.text().substr(begin);
  Gatherer gatherer(stacks_, rest);
  forEachElement([&](bool isFirst) {
    const std::size_t offset = scan_.offset() - begin;
    Block its = block(isFirst);
    nest(begin, [&] { gatherer.add(std::move(its), offset); });
  });
  if (gatherer.clash()) {
    const std::size_t offset = begin + clashingNumber(rest.substr(0, scan_.offset() - begin));
    throw Fault{offset, messages::NumbersClash(toUtf16(describeNumber(scan_.text(), offset)))};
  }
  Block block = nest(begin, [&] { return gatherer.finish(); });
  if (isNumeric(block.kind)) block.excerpt = rest.substr(0, scan_.offset() - begin);
  return block;
}

Block ExactReader::number() {
  const std::size_t begin = scan_.offset();
  const std::string_view literal = scan_.number();
  const auto rounded = nearestDouble(literal);
  if (!rounded) throw Fault{begin, messages::NumberTooLarge(toUtf16(shorten(literal)))};
  const ExactNumber number = exactNumber(literal, *rounded);
  if (number.numberClass == NumberClass::None)
    throw Fault{begin, messages::IntegerTooLarge(toUtf16(shorten(literal)))};
  stacks_.numbers.push_back(number.bits);
  return {kindOf(number.numberClass), {}, stacks_.numbers.size() - 1, literal, nullptr};
}

Block ExactReader::text(boost::optional<std::u16string> text) {
  stacks_.texts.push_back(std::move(text));
  return {BlockKind::Text, {}, stacks_.texts.size() - 1, {}, nullptr};
}

Block ExactReader::truth(bool truth) {
  stacks_.truths.push_back(truth);
  return {BlockKind::Logical, {}, stacks_.truths.size() - 1, {}, nullptr};
}

}  // namespace nd::adapters::json
