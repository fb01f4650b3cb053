#pragma once

#include <string>

#include "tools/ndx/Output.h"

namespace nd::tools {

/// Keeps in memory what is written.
class TextOutput final : public Output {
 public:
  explicit TextOutput(const Look& look = {}) noexcept : Output(look) {}

  std::string text;

 protected:
  void put(std::string_view written) override { text += written; }
};

}  // namespace nd::tools
