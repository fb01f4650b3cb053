#include "tests/support/walks/Witness.h"

namespace walking {

Witness::Witness(const Model& model) : model_(model) {
  model_.impl()->addObserver(*this);
}

Witness::~Witness() {
  model_.impl()->removeObserver(*this);
}

void Witness::changed(const lx::base::ChangeSet& changes) noexcept {
  ++told_.times;
  told_.created.insert(told_.created.end(), changes.created().begin(), changes.created().end());
  told_.destroyed.insert(told_.destroyed.end(), changes.destroyed().begin(), changes.destroyed().end());
  for (const auto& each : changes.changes()) {
    for (const unsigned index : each->properties())
      told_.changes.push_back({each->element(), index, each->oldValue(index)});
  }
}

std::string Witness::listed(const std::vector<int>& ids) {
  std::string result = "[";
  for (const int id : ids) result += "#" + std::to_string(id) + " ";
  return result + "]";
}

}  // namespace walking
