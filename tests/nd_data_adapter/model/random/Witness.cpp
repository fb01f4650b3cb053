#include "tests/nd_data_adapter/model/random/Witness.h"

#include <algorithm>
#include <utility>

namespace random_walk {

namespace {

using Old = std::map<std::pair<Id, unsigned>, Content>;

std::string written(const Old& changes) {
  std::string text;
  for (const auto& [place, content] : changes) {
    text += "#" + std::to_string(place.first) + "." + std::to_string(place.second) + " was " +
            random_walk::written(content) + "; ";
  }
  return text;
}

/// List what is in one and not in the other.
std::vector<Id> only(const Twin& in, const Twin& notIn) {
  std::vector<Id> result;
  for (const auto& [id, element] : in.elements()) {
    if (!notIn.contains(id)) result.push_back(id);
  }
  return result;
}

std::vector<Id> idsOf(const Pairing& pairing, const std::vector<ModelElement>& elements) {
  std::vector<Id> result;
  for (const ModelElement& element : elements) result.push_back(pairing.idOf(element));
  return result;
}

std::vector<Id> proxiesOf(const Twin::Element& element, unsigned index) {
  const auto found = element.proxies.find(index);
  return found == element.proxies.end() ? std::vector<Id>() : found->second;
}

Old changesBetween(const Twin& before, const Twin& after) {
  Old result;
  for (const auto& [id, old] : before.elements()) {
    if (!after.contains(id)) continue;
    for (unsigned index = 1; index <= old.values.size(); ++index) {
      const bool hasOtherProxies = proxiesOf(old, index) != proxiesOf(after.at(id), index);
      if (old.value(index) != after.at(id).value(index) || hasOtherProxies) {
        result[{id, index}] = old.value(index);
      }
    }
  }
  return result;
}

}  // namespace

void Witness::changed(const lx::base::ChangeSet& changes) noexcept {
  ++told_;
  created_.insert(created_.end(), changes.created().begin(), changes.created().end());
  destroyed_.insert(destroyed_.end(), changes.destroyed().begin(), changes.destroyed().end());
  for (const auto& each : changes.changes()) {
    for (const unsigned index : each->properties()) {
      changes_.push_back({each->element(), index, each->oldValue(index)});
    }
  }
}

std::string Witness::difference(const Pairing& pairing, const Twin& before, const Twin& after) {
  const int told = std::exchange(told_, 0);
  const std::vector<Id> created = idsOf(pairing, std::exchange(created_, {}));
  std::vector<Id> destroyed = idsOf(pairing, std::exchange(destroyed_, {}));
  std::sort(destroyed.begin(), destroyed.end());
  Old changes;
  for (const Change& each : std::exchange(changes_, {})) {
    const bool isFirst =
        changes.emplace(std::pair(pairing.idOf(each.element), each.index), pairing.contentOf(each.old))
            .second;
    if (!isFirst) return "a property was told twice";
  }

  if (const auto wanted = only(after, before); created != wanted) {
    return "told as created: " + random_walk::written(created) + " and not " + random_walk::written(wanted);
  }
  if (const auto wanted = only(before, after); destroyed != wanted) {
    return "told as destroyed: " + random_walk::written(destroyed) + " and not " +
           random_walk::written(wanted);
  }
  if (const Old wanted = changesBetween(before, after); changes != wanted) {
    return "told as changed: " + written(changes) + " and not " + written(wanted);
  }
  const int wanted = created.empty() && destroyed.empty() && changes.empty() ? 0 : 1;
  return told == wanted ? "" : "told " + std::to_string(told) + " times";
}

}  // namespace random_walk
