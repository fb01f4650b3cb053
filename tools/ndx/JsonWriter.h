#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/ndx/Output.h"

namespace nd::tools {

/// Writes JSON, all of it in one line and without blanks.
///
///     JsonWriter json(out);
///     json.beginObject();
///     json.key("name").text("Gain");
///     json.key("bytes").number(std::uint64_t{8});
///     json.endObject();                            // {"name":"Gain","bytes":8}
///
/// It trusts its caller to end what was begun and to give a key within objects, and nowhere else.
class JsonWriter {
 public:
  explicit JsonWriter(Output& out) noexcept : out_(out) {}

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }

  /// Write the name of a member, whose value comes next.
  JsonWriter& key(std::string_view utf8);

  /// Write a text. In UTF-8 each ill-formed sequence becomes U+FFFD, and so does each lone surrogate.
  /// Whatever could drive a terminal is escaped.
  void text(std::string_view utf8);
  void text(std::u16string_view text);

  /// Write a number with all of its digits; floating-point ones with the fewest that read back as the same
  /// number of their type. Those that JSON has no number for are the texts "NaN", "Inf" and "-Inf".
  void number(std::int64_t value);
  void number(std::uint64_t value);
  void number(double value);
  void number(float value);

  void truth(bool value);
  void null();

 private:
  void begin(char bracket);
  void end(char bracket);
  void separate();
  void plain(std::string_view text);
  void string(std::string_view wellFormed);

  Output& out_;
  bool needsComma_ = false;
};

}  // namespace nd::tools
