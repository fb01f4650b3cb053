#include "platform/host/TextArray.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/DataBody.h"
#include "platform/host/internal/TextBody.h"
#include "platform/host/internal/raise.h"
#include "platform/host/orbex_string.h"
#include "platform/text/Convert.h"

using hvdetail::BodyRef;
using hvdetail::DataBody;
using hvdetail::Shape;
using hvdetail::TextBody;

namespace {

hvArray* createTexts(Shape shape, const std::u16string& text) {
  std::vector<TextBody::Text> texts(hvdetail::checkedCount(shape.count(), sizeof(TextBody::Text)),
                                    TextBody::Text(text));
  return new hvArray(BodyRef(new TextBody(std::move(shape), std::move(texts))));
}

const TextBody& textsOf(const hvArray* array, const char* operation) {
  return static_cast<const TextBody&>(hvdetail::bodyOf(array, hvClassCode::String, operation));
}

std::u16string unitsOf(const hvArray& array) {
  const auto& body = static_cast<const DataBody&>(array.body());
  return {static_cast<const char16_t*>(body.data()), body.count()};
}

const std::u16string& singleText(const hvArray& array) {
  const TextBody::Text& text = static_cast<const TextBody&>(array.body()).at(0);
  if (!text) throw orbex::messages::MissingNotSupported();
  return *text;
}

bool isSingleString(const hvArray* array) noexcept {
  return hvIsString(array) && hvIsScalar(array);
}

}  // namespace

hvArray* hvCreateCharArray(const hvDims& dimensions) {
  return new hvArray(DataBody::create(hvClassCode::Character, hvComplexity::Real, Shape(dimensions)));
}

hvArray* hvCreateString(std::u16string_view text) {
  BodyRef body = DataBody::create(hvClassCode::Character, hvComplexity::Real, Shape(1, text.size()));
  if (!text.empty()) {
    std::memcpy(static_cast<DataBody&>(*body).data(), text.data(), text.size() * sizeof(char16_t));
  }
  return new hvArray(std::move(body));
}

hvArray* hvCreateString(std::string_view utf8) {
  return hvCreateString(std::u16string_view(lx::text::toUtf16(utf8)));
}

hvArray* hvCreateString(const char* utf8) {
  if (utf8 == nullptr) hvdetail::raiseNullText("hvCreateString");
  return hvCreateString(std::string_view(utf8));
}

hvArray* hvCreateStringArray(const hvDims& dimensions) {
  return createTexts(Shape(dimensions), {});
}

hvArray* hvCreateStringScalar(std::u16string_view text) {
  return createTexts(Shape(1, 1), std::u16string(text));
}

const boost::optional<std::u16string>& hvGetString(const hvArray* array, std::size_t index) {
  const TextBody& texts = textsOf(array, "hvGetString");
  hvdetail::checkIndex(index, texts.count(), "hvGetString");
  return texts.at(index);
}

void hvSetString(hvArray* array, std::size_t index, boost::optional<std::u16string> text) {
  hvArray& changed = hvdetail::changeable(array, hvClassCode::String, "hvSetString");
  hvdetail::checkIndex(index, changed.body().count(), "hvSetString");
  static_cast<TextBody&>(changed.writableBody()).set(index, std::move(text));
}

std::u16string hvArrayToString(const hvArray* array) {
  if (array == nullptr) return {};
  if (hvIsChar(array)) return unitsOf(*array);
  if (!isSingleString(array)) hvdetail::raiseNotOneText("hvArrayToString", array);
  return singleText(*array);
}

std::string hvArrayToStdString(const hvArray* array) {
  return lx::text::toUtf8(hvArrayToString(array));
}

bool ndsvIsStringScalar(const hvArray* array) noexcept {
  if (hvIsChar(array)) return array->body().shape().isRow();
  return isSingleString(array) && static_cast<const TextBody&>(array->body()).at(0).has_value();
}

std::u16string ndsvGetUstringFromStringScalar(const hvArray* array) {
  if (!ndsvIsStringScalar(array)) hvdetail::raiseNotOneText("ndsvGetUstringFromStringScalar", array);
  return hvIsChar(array) ? unitsOf(*array) : singleText(*array);
}

bool hvIsValidSubsequentCharInOrbName(char character) noexcept {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_';
}
