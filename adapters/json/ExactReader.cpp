#include "adapters/json/ExactReader.h"

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

namespace nd::adapters::json {
namespace {

using lx::text::toUtf16;

std::u16string spell(std::size_t number) {
  return toUtf16(std::to_string(number));
}

void checkVariableName(const std::string& name, std::size_t offset) {
  if (!isVariableName(name)) throw Fault{offset, messages::NoVariableName(toUtf16(quoteName(name)))};
  if (isTooLongForVariable(name)) {
    throw Fault{offset, messages::VariableNameTooLong(spell(maximumVariableNameLength), spell(name.size()))};
  }
}

}  // namespace

void ExactReader::enter() {
  if (depth_ == maximumDepth) scan_.fail<messages::TooManyLevels>(spell(maximumDepth));
  const bool isObject = scan_.skip('{');
  if (!isObject) scan_.skip('[');
  ++depth_;
  scan_.skipSpace();
  if (isObject && !scan_.isAt('}') && !scan_.isAt('"')) scan_.fail<messages::NoMemberOrEnd>(u"'}'");
}

void ExactReader::leave() noexcept {
  if (!scan_.skip('}')) scan_.skip(']');
  --depth_;
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
  throw Fault{offset, messages::RepeatedName(toUtf16(quoteName(name)), toUtf16(describe(place)))};
}

Document ExactReader::document() {
  scan_.skipSpace();
  if (!scan_.isAt('{')) scan_.fail<messages::NoObjectAtTop>(u"'{'");
  Document document;
  bool isFirst = true;
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
      static_cast<void>(includes());
    } else if (name == metaDataName) {
      document.metaData = metaData();
    } else {
      hvArrayPtr array = value();
      document.variables.push_back({name, std::move(array)});
    }
  });
  scan_.skipSpace();
  if (!scan_.isAtEnd()) scan_.fail<messages::TextBehindObject>();
  return document;
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

std::vector<VariableMetaData> ExactReader::metaData() {
  if (!scan_.isAt('{')) scan_.fail<messages::NoMetaData>(u"'{'");
  std::vector<VariableMetaData> all;
  std::size_t offset = 0;
  const auto check = [&](const std::string& variable, std::size_t at) {
    checkVariableName(variable, at);
    offset = at;
  };
  forEachMember(check, [&](const std::string& variable) { all.push_back(metaDataOf(variable, offset)); });
  return all;
}

VariableMetaData ExactReader::metaDataOf(const std::string& variable, std::size_t offset) {
  if (!scan_.isAt('{')) scan_.fail<messages::NoMetaDataOfVariable>(u"'{'");
  VariableMetaData result{variable, {}, offset};
  forEachMember(checkNameInMetaData, [&](const std::string& name) {
    const bool isText = name == "unit" || name == "description";
    if (isText && !scan_.isAt('"')) scan_.fail<messages::NoTextInMetaData>(toUtf16(quoteName(name)));
    hvArrayPtr array = value();
    result.entries.push_back({name, std::move(array)});
  });
  return result;
}

hvArrayPtr ExactReader::value() {
  return takeArray(stacks_, block(false));
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
    hvArrayPtr array = TaggedValue(*this).read();
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
    gatherer.add(block(isFirst), offset);
  });
  if (const auto clash = gatherer.clash()) {
    throw Fault{begin + *clash,
                messages::NumbersClash(toUtf16(describeNumber(scan_.text(), begin + *clash)))};
  }
  Block block = gatherer.finish();
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
