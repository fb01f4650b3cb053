#pragma once

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "platform/export.h"

namespace lx::services {

/// A message of a catalogue with its arguments: thrown as an exception, or made into an item of a diagnostic.
///
/// The messages of a catalogue are classes of their own, generated from the catalogue's file, one per key:
///
///     throw lxb::messages::CannotModifyProxy(u"nd.data.adapter.Opaque.Name");
///
/// Copies share their state, so copying, moving and asking for narrow texts throw nothing.
class ND_PLATFORM_EXPORT CatalogMessage : public std::exception {
 public:
  CatalogMessage(const CatalogMessage&) noexcept;
  CatalogMessage& operator=(const CatalogMessage&) noexcept;
  ~CatalogMessage() override;

  /// Get the name of the catalogue, such as "lxb:messages". Valid as long as this message or a copy of it.
  const char* catalogue() const noexcept;

  /// Get the key within the catalogue. Valid as long as this message or a copy of it.
  const char* key() const noexcept;

  /// Get the arguments in the order of their places in the text. Valid as long as this message or a copy of
  /// it.
  const std::vector<std::u16string>& arguments() const noexcept;

  /// Get the finished sentence: the catalogue's text with the arguments in their places.
  std::u16string text() const;

  /// Get the finished sentence in UTF-8, with U+FFFD for each NUL, which would end it, and for each surrogate
  /// without its partner. Valid as long as this message or a copy of it.
  const char* what() const noexcept override;

 protected:
  /// Form the sentence from a text in the notation of ICU's MessageFormat, with {0} for the first argument
  /// and so on. A place at the end whose argument is empty goes with the blank before it. A text that can't
  /// be formatted is taken as it stands, with the arguments behind it, so that a message is never lost. The
  /// strings are copied. Throws nothing but what an allocation throws.
  CatalogMessage(const char* catalogue, const char* key, const char16_t* text,
                 std::vector<std::u16string> arguments);

 private:
  struct State;

  std::shared_ptr<const State> state_;
};

}  // namespace lx::services
