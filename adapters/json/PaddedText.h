#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace nd::adapters::json {

/// The content of a file, with the zero bytes behind it that the parser wants to be able to read.
class PaddedText {
 public:
  /// How many bytes may be read behind the text.
  static constexpr std::size_t padding = 64;

  /// Make a text of `size` bytes that wait to be filled.
  explicit PaddedText(std::size_t size);

  /// Copy a text.
  explicit PaddedText(std::string_view text);

  /// The bytes to fill.
  char* data() noexcept { return bytes_.get(); }
  std::size_t size() const noexcept { return size_; }

  /// Keep only the first `size` bytes.
  void shrink(std::size_t size) noexcept;

  /// All bytes.
  std::string_view content() const noexcept { return {bytes_.get(), size_}; }

  /// The text: all bytes but the byte order mark of UTF-8, if there is one.
  std::string_view text() const noexcept;

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

}  // namespace nd::adapters::json
