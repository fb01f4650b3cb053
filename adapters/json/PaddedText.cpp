#include "adapters/json/PaddedText.h"

#include <algorithm>

namespace nd::adapters::json {

PaddedText::PaddedText(std::size_t size)
    : bytes_(std::make_unique_for_overwrite<char[]>(size + padding)), size_(size) {
  shrink(size);
}

PaddedText::PaddedText(std::string_view text) : PaddedText(text.size()) {
  std::copy(text.begin(), text.end(), data());
}

void PaddedText::shrink(std::size_t size) noexcept {
  size_ = size;
  std::fill_n(bytes_.get() + size_, padding, '\0');
}

std::string_view PaddedText::text() const noexcept {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  std::string_view text = content();
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  return text;
}

}  // namespace nd::adapters::json
