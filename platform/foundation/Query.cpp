#include "platform/foundation/Query.h"

#include <algorithm>

#include "platform/foundation/Report.h"

namespace lx::base::query {

AbstractQuery::AbstractQuery(const Model& model) : model_(model) {
  if (!model.isAlive()) report::missingModel("AbstractQuery");
}

AbstractQuery::~AbstractQuery() = default;

void AbstractQuery::addCondition(Condition condition) {
  conditions_.push_back(std::move(condition));
}

std::vector<ModelElement> AbstractQuery::matches() const {
  std::vector<ModelElement> result = model_.impl()->elements();
  std::erase_if(result, [&](const ModelElement& element) {
    return !std::all_of(conditions_.begin(), conditions_.end(),
                        [&](const Condition& condition) { return condition(*element.impl()); });
  });
  return result;
}

}  // namespace lx::base::query
