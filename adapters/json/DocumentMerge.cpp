#include "adapters/json/DocumentMerge.h"

#include <utility>

namespace nd::adapters::json {

void DocumentMerge::add(const Content& content) {
  for (const Variable& variable : content.variables) assign(result_.variables, variable, variables_);
  for (const VariableMetaData& later : content.metaData) {
    const auto [place, isNew] = metaData_.try_emplace(later.variable, result_.metaData.size());
    if (isNew) result_.metaData.push_back({later.variable, {}});
    std::vector<Variable>& entries = result_.metaData[place->second].entries;
    Index index;
    for (std::size_t position = 0; position < entries.size(); ++position)
      index.emplace(entries[position].name, position);
    for (const Variable& entry : later.entries) assign(entries, entry, index);
  }
}

void DocumentMerge::assign(std::vector<Variable>& all, const Variable& variable, Index& index) {
  hvArrayPtr value(hvCreateSharedDataCopy(variable.value.get()));
  const auto [place, isNew] = index.try_emplace(variable.name, all.size());
  if (isNew) {
    all.push_back({variable.name, std::move(value)});
  } else {
    all[place->second].value = std::move(value);
  }
}

}  // namespace nd::adapters::json
