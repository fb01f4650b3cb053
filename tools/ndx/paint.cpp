#include "tools/ndx/paint.h"

namespace nd::tools {

std::string paint(const Look& look, Paint meaning, std::string_view text) {
  if (!look.hasColours) return std::string(text);
  const std::string_view begin = meaning == Paint::Heading ? "\033[1m" : "\033[1;31m";
  return std::string(begin) + std::string(text) + "\033[0m";
}

}  // namespace nd::tools
