#include "tests/platform/foundation/random/Kinds.h"

namespace model_walk {

const char* nameOf(Kind kind) {
  static const char* const names[] = {
      "Values",     "Optionals",  "Defaults",       "Traits", "Lists", "Sets", "Thing",  "Machine", "Robot",
      "Containers", "References", "MoreReferences", "Branch", "Leaf",  "Twig", "Square", "Cube"};
  return names[static_cast<int>(kind)];
}

std::string written(const Content& content) {
  std::string result = "[";
  for (const int each : content) result += std::to_string(each) + " ";
  return result + "]";
}

}  // namespace model_walk
