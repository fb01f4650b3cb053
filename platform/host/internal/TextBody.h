#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <boost/optional.hpp>

#include "platform/host/internal/Body.h"

namespace hvdetail {

/// The texts of a string array; none is the missing value.
class TextBody final : public Body {
 public:
  using Text = boost::optional<std::u16string>;

  TextBody(Shape shape, std::vector<Text> texts) noexcept;

  const Text& at(std::size_t index) const { return texts_[index]; }
  void set(std::size_t index, Text text) noexcept { texts_[index] = std::move(text); }

  BodyRef clone() const override;
  bool holdsSame(const Body& other) const override;
  std::size_t byteSize(SizeMemo& memo) const override;

 private:
  std::vector<Text> texts_;
};

}  // namespace hvdetail
