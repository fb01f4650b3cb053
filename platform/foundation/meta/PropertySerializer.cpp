#include "platform/foundation/meta/PropertySerializer.h"

#include <charconv>

#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/Report.h"
#include "platform/text/Convert.h"

namespace lx::base::meta {

PropertySerializer::~PropertySerializer() = default;

boost::optional<std::u16string> PropertySerializer::serializeOptionalValue(const Value&) const {
  return boost::none;
}

namespace detail {

namespace {

[[noreturn]] void raiseUnreadable(const std::u16string& text, const std::u16string& wanted) {
  report::invalidValue(u"\"" + text + u"\"", u"the text is not that of " + wanted + u".");
}

}  // namespace

std::u16string toText(const std::u16string& value) {
  return value;
}
std::u16string toText(const std::string& value) {
  return text::toUtf16(value);
}
std::u16string toText(bool value) {
  return value ? u"true" : u"false";
}
std::u16string toText(std::int32_t value) {
  return text::toUtf16(std::to_string(value));
}
std::u16string toText(const boost::uuids::uuid& value) {
  return text::toUtf16(boost::uuids::to_string(value));
}

void fromText(const std::u16string& text, std::u16string& value) {
  value = text;
}
void fromText(const std::u16string& text, std::string& value) {
  value = text::toUtf8(text);
}

void fromText(const std::u16string& text, bool& value) {
  if (text != u"true" && text != u"false") raiseUnreadable(text, u"a boolean, which is true or false");
  value = text == u"true";
}

void fromText(const std::u16string& text, std::int32_t& value) {
  const std::string digits = text::toUtf8(text);
  const char* const end = digits.data() + digits.size();
  const auto [last, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || last != end) raiseUnreadable(text, u"an integer of 32 bits");
}

void fromText(const std::u16string& text, boost::uuids::uuid& value) {
  if (!boost::conversion::try_lexical_convert(text::toUtf8(text), value)) {
    raiseUnreadable(text, u"a UUID, such as 0f40bd84-e4d9-3112-ba83-02023181b729");
  }
}

void raiseNoText(const char* operation) {
  report::invalidValue(operation, "values of this type live in memory only and have no text.");
}

void raiseNoOrder() {
  report::invalidValue("combineAsUnmanagedSetValue",
                       "values of this type have no order; combine them as a sequence.");
}

}  // namespace detail

PropertySerializerRegistry& PropertySerializerRegistry::getInstance() {
  static PropertySerializerRegistry& registry = *new PropertySerializerRegistry;  // as the meta registry does
  return registry;
}

void PropertySerializerRegistry::registerPropertySerializer(
    const std::u16string& type, const std::u16string& format,
    std::shared_ptr<const PropertySerializer> serializer) {
  const std::scoped_lock lock(mutex_);
  entries_[{type, format}] = std::move(serializer);
}

std::shared_ptr<const PropertySerializer> PropertySerializerRegistry::find(
    const std::u16string& type, const std::u16string& format) const {
  const std::scoped_lock lock(mutex_);
  const auto found = entries_.find({type, format});
  return found == entries_.end() ? nullptr : found->second;
}

}  // namespace lx::base::meta
