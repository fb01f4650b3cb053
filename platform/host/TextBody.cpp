#include "platform/host/internal/TextBody.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace hvdetail {
namespace {

bool sameText(const TextBody::Text& left, const TextBody::Text& right) {
  if (left.has_value() != right.has_value()) return false;
  return !left || (left->size() == right->size() &&
                   std::memcmp(left->data(), right->data(), left->size() * sizeof(char16_t)) == 0);
}

}  // namespace

TextBody::TextBody(Shape shape, std::vector<Text> texts) noexcept
    : Body(hvClassCode::String, hvComplexity::Real, std::move(shape)), texts_(std::move(texts)) {}

BodyRef TextBody::clone() const {
  return BodyRef(new TextBody(shape(), texts_));
}

bool TextBody::holdsSame(const Body& other) const {
  const std::vector<Text>& theirs = static_cast<const TextBody&>(other).texts_;
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    if (!sameText(texts_[i], theirs[i])) return false;
  }
  return true;
}

std::size_t TextBody::byteSize(SizeMemo&) const {
  std::size_t units = 0;
  for (const Text& text : texts_) units += text ? text->size() : 0;
  return units * sizeof(char16_t);
}

}  // namespace hvdetail
