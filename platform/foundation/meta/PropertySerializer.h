#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <boost/optional.hpp>
#include <boost/uuid/uuid.hpp>

#include "platform/export.h"
#include "platform/foundation/Value.h"

namespace lx::base::meta {

/// Turns the values of one type into text and back, and makes the values and lists that reflection needs.
class ND_PLATFORM_EXPORT PropertySerializer {
 public:
  virtual ~PropertySerializer();

  /// Read a value. Raises `InvalidValue` for a text that is none.
  virtual Value parseValue(const std::u16string& text) const = 0;

  /// Read a value that may be absent: gives a `boost::optional` of the type, empty for no text.
  virtual Value parseOptionalValue(const boost::optional<std::u16string>& text) const = 0;

  /// Write a value. Raises `CannotCastIncompatibleTypes` for one of another type, `InvalidValue` for one
  /// that has no text.
  virtual std::u16string serializeValue(const Value& value) const = 0;

  /// Write a `boost::optional` of the type; none for an empty one. A serializer that doesn't write such
  /// values gives none for every one.
  virtual boost::optional<std::u16string> serializeOptionalValue(const Value& value) const;

  /// Give the type's zero.
  virtual Value createDefaultValue() const = 0;

  /// Give an empty `boost::optional` of the type.
  virtual Value createEmptyOptionalValue() const = 0;

  /// Make one value of many, an unmanaged one: a `std::vector` or a `std::set` of the type, texts by code
  /// unit. Raise `CannotCastIncompatibleTypes` for one of another type, `InvalidValue` for a set of a type
  /// without order.
  virtual Value combineAsUnmanagedSequenceValue(const std::vector<Value>& values) const = 0;
  virtual Value combineAsUnmanagedSetValue(const std::vector<Value>& values) const = 0;

  /// Tell whether values of the type live in memory only and are never written out.
  virtual bool isTransientOnly() const noexcept { return false; }
};

namespace detail {

/// The text form of the standard types. Texts are taken as they are; numbers are decimal; booleans are "true"
/// and "false"; an identity has 36 characters.
ND_PLATFORM_EXPORT std::u16string toText(const std::u16string& value);
ND_PLATFORM_EXPORT std::u16string toText(const std::string& value);
ND_PLATFORM_EXPORT std::u16string toText(bool value);
ND_PLATFORM_EXPORT std::u16string toText(std::int32_t value);
ND_PLATFORM_EXPORT std::u16string toText(const boost::uuids::uuid& value);
ND_PLATFORM_EXPORT void fromText(const std::u16string& text, std::u16string& value);
ND_PLATFORM_EXPORT void fromText(const std::u16string& text, std::string& value);
ND_PLATFORM_EXPORT void fromText(const std::u16string& text, bool& value);
ND_PLATFORM_EXPORT void fromText(const std::u16string& text, std::int32_t& value);
ND_PLATFORM_EXPORT void fromText(const std::u16string& text, boost::uuids::uuid& value);

template <class T>
Value unmanaged(T content) {
  Value result(std::move(content));
  ValueMeta(result).setUnmanaged();
  return result;
}

[[noreturn]] ND_PLATFORM_EXPORT void raiseNoText(const char* operation);
[[noreturn]] ND_PLATFORM_EXPORT void raiseNoOrder();

}  // namespace detail

/// The values and lists that a type gets whatever its text is.
template <class T>
class SerializerBase : public PropertySerializer {
 public:
  Value createDefaultValue() const override { return Value(T{}); }
  Value createEmptyOptionalValue() const override { return Value(boost::optional<T>()); }

  Value combineAsUnmanagedSequenceValue(const std::vector<Value>& values) const override {
    std::vector<T> result;
    result.reserve(values.size());
    for (const Value& value : values) result.push_back(value.as<T>());
    return detail::unmanaged(std::move(result));
  }

  Value combineAsUnmanagedSetValue(const std::vector<Value>& values) const override {
    if constexpr (requires(const T& value) { value < value; }) {
      std::set<T> result;
      for (const Value& value : values) result.insert(value.as<T>());
      return detail::unmanaged(std::move(result));
    } else {
      detail::raiseNoOrder();
    }
  }

  Value parseOptionalValue(const boost::optional<std::u16string>& text) const override {
    return text ? Value(boost::optional<T>(this->parseValue(*text).template as<T>()))
                : createEmptyOptionalValue();
  }

  boost::optional<std::u16string> serializeOptionalValue(const Value& value) const override {
    const boost::optional<T>& content = value.as<boost::optional<T>>();
    if (!content) return boost::none;
    return this->serializeValue(Value(*content));
  }
};

/// Serializes a type by its functions `toText` and `fromText`, found beside the type.
template <class T>
class DefaultPropertySerializer : public SerializerBase<T> {
 public:
  Value parseValue(const std::u16string& text) const override {
    using detail::fromText;
    if constexpr (requires(T & value) { fromText(text, value); }) {
      T value{};
      fromText(text, value);
      return Value(std::move(value));
    } else {
      detail::raiseNoText("parseValue");
    }
  }

  std::u16string serializeValue(const Value& value) const override {
    using detail::toText;
    if constexpr (requires(const T& content) { toText(content); })
      return toText(value.as<T>());
    else
      detail::raiseNoText("serializeValue");
  }
};

/// For a type whose values live in memory only, such as a pointer: they are neither written nor read, which
/// raises `InvalidValue`.
template <class T>
class TransientOnlyPropertySerializer : public DefaultPropertySerializer<T> {
 public:
  Value parseValue(const std::u16string&) const override { detail::raiseNoText("parseValue"); }
  std::u16string serializeValue(const Value&) const override { detail::raiseNoText("serializeValue"); }
  bool isTransientOnly() const noexcept override { return true; }
};

/// Knows the serializers of all types, by the type's qualified name and the name of a format. Any thread may
/// ask it.
class ND_PLATFORM_EXPORT PropertySerializerRegistry {
 public:
  using Entries =
      std::map<std::pair<std::u16string, std::u16string>, std::shared_ptr<const PropertySerializer>>;

  static PropertySerializerRegistry& getInstance();

  /// Register a serializer; one that was there under these names is replaced.
  void registerPropertySerializer(const std::u16string& type, const std::u16string& format,
                                  std::shared_ptr<const PropertySerializer> serializer);

  /// Find a serializer; null if there is none.
  std::shared_ptr<const PropertySerializer> find(const std::u16string& type,
                                                 const std::u16string& format = u"") const;

 private:
  friend class MetaRegistry;
  mutable std::mutex mutex_;
  Entries entries_;
};

}  // namespace lx::base::meta
