#include "platform/services/CatalogMessage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <unicode/fmtable.h>
#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unicode/unistr.h>

#include "platform/text/Convert.h"

namespace lx::services {

struct CatalogMessage::State {
  std::string catalogue;
  std::string key;
  std::vector<std::u16string> arguments;
  std::u16string text;
  std::string what;
};

namespace {

bool fitsTheFormatter(const std::u16string& text, const std::vector<std::u16string>& arguments) {
  std::size_t length = text.size();
  for (const std::u16string& argument : arguments) length += argument.size();
  return length <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) / 4;
}

icu::UnicodeString aliasOf(const std::u16string& text) {
  return {false, text.data(), static_cast<std::int32_t>(text.size())};
}

void raiseIfOutOfMemory(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
}

// Takes the places at the end of a text that have empty arguments away, with the blank before each, which
// would end the sentence otherwise.
std::u16string withoutEmptyEnd(std::u16string text, const std::vector<std::u16string>& arguments) {
  for (std::size_t number = arguments.size(); number-- > 0 && arguments[number].empty();) {
    const std::string narrow = " {" + std::to_string(number) + "}";
    const std::u16string place(narrow.begin(), narrow.end());
    if (!std::u16string_view(text).ends_with(place)) break;
    text.resize(text.size() - place.size());
  }
  return text;
}

std::optional<std::u16string> format(const std::u16string& text,
                                     const std::vector<std::u16string>& arguments) {
  if (!fitsTheFormatter(text, arguments)) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const icu::MessageFormat formatter(aliasOf(text), icu::Locale::getRoot(), status);
  raiseIfOutOfMemory(status);
  std::vector<icu::Formattable> values;
  values.reserve(arguments.size());
  for (const std::u16string& argument : arguments) values.emplace_back(aliasOf(argument));
  icu::UnicodeString sentence;
  icu::FieldPosition ignored(icu::FieldPosition::DONT_CARE);
  if (U_SUCCESS(status)) {
    formatter.format(values.data(), static_cast<std::int32_t>(values.size()), sentence, ignored, status);
    raiseIfOutOfMemory(status);
  }
  if (U_FAILURE(status)) return std::nullopt;
  if (sentence.isBogus()) throw std::bad_alloc();
  return std::u16string(sentence.getBuffer(), static_cast<std::size_t>(sentence.length()));
}

std::u16string listBehind(std::u16string text, const std::vector<std::u16string>& arguments) {
  const char16_t* separator = u" (";
  for (const std::u16string& argument : arguments) {
    text.append(separator).append(argument);
    separator = u", ";
  }
  if (!arguments.empty()) text.push_back(u')');
  return text;
}

std::string narrowed(std::u16string sentence) {
  std::replace(sentence.begin(), sentence.end(), u'\0', u'\uFFFD');
  return lx::text::toUtf8(sentence);
}

}  // namespace

CatalogMessage::CatalogMessage(const char* catalogue, const char* key, const char16_t* text,
                               std::vector<std::u16string> arguments) {
  const std::u16string pattern(text);
  std::optional<std::u16string> formatted = format(withoutEmptyEnd(pattern, arguments), arguments);
  std::u16string sentence = formatted ? std::move(*formatted) : listBehind(pattern, arguments);
  std::string narrow = narrowed(sentence);
  state_ = std::make_shared<const State>(
      State{catalogue, key, std::move(arguments), std::move(sentence), std::move(narrow)});
}

CatalogMessage::CatalogMessage(const CatalogMessage&) noexcept = default;
CatalogMessage& CatalogMessage::operator=(const CatalogMessage&) noexcept = default;
CatalogMessage::~CatalogMessage() = default;

const char* CatalogMessage::catalogue() const noexcept {
  return state_->catalogue.c_str();
}

const char* CatalogMessage::key() const noexcept {
  return state_->key.c_str();
}

const std::vector<std::u16string>& CatalogMessage::arguments() const noexcept {
  return state_->arguments;
}

std::u16string CatalogMessage::text() const {
  return state_->text;
}

const char* CatalogMessage::what() const noexcept {
  return state_->what.c_str();
}

}  // namespace lx::services
