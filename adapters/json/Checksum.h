#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace nd::adapters::json {

/// The checksum of a content, added piece by piece: XXH3 of 128 bits as 32 lower-case hexadecimal digits.
class Checksum {
 public:
  Checksum();
  ~Checksum();

  void add(std::string_view piece) noexcept;
  std::u16string text() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Give the checksum of a whole content.
std::u16string checksumOf(std::string_view content);

}  // namespace nd::adapters::json
