#include "tests/platform/foundation/random/Witness.h"

#include <algorithm>
#include <utility>

#include "tests/platform/foundation/random/Access.h"

namespace model_walk {

namespace {

using Old = std::map<std::pair<Id, unsigned>, Content>;

std::string written(const Old& changes) {
  std::string text;
  for (const auto& [place, content] : changes) {
    text += "#" + std::to_string(place.first) + "." + std::to_string(place.second) + " was " +
            model_walk::written(content) + "; ";
  }
  return text;
}

/// List what is in one and not in the other.
Content only(const Twin::Elements& in, const Twin::Elements& notIn) {
  Content result;
  for (const auto& [id, element] : in) {
    if (!notIn.contains(id)) result.push_back(id);
  }
  return result;
}

Content sorted(Content content) {
  std::sort(content.begin(), content.end());
  return content;
}

/// Give the old values of what changed. Proxies that a collection holds apart belong to it without showing.
Old changesBetween(const Twin::Elements& before, const Twin::Elements& after) {
  Old result;
  for (const auto& [id, old] : before) {
    const auto found = after.find(id);
    if (found == after.end()) continue;
    for (unsigned index = 1; index <= old.values.size(); ++index) {
      const bool isSame =
          old.value(index) == found->second.value(index) && old.apart(index) == found->second.apart(index);
      if (!isSame) result[{id, index}] = old.value(index);
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

std::string Witness::difference(const Pairing& pairing, const Twin::Elements& before,
                                const Twin::Elements& after) {
  const int told = std::exchange(told_, 0);
  const Content created = pairing.idsOf(std::exchange(created_, {}));
  const Content destroyed = sorted(pairing.idsOf(std::exchange(destroyed_, {})));
  Old changes;
  for (const Change& each : std::exchange(changes_, {})) {
    const Id id = pairing.idOf(each.element);
    const auto known = after.find(id);
    if (known == after.end()) return "told as changed: #" + std::to_string(id) + ", which isn't there";
    const Content old = accessTo(known->second.kind, each.index).readValue(pairing, each.old);
    if (!changes.emplace(std::pair(id, each.index), old).second) return "a property was told twice";
  }

  if (const Content wanted = only(after, before); created != wanted) {
    return "told as created: " + model_walk::written(created) + " and not " + model_walk::written(wanted);
  }
  if (const Content wanted = only(before, after); destroyed != wanted) {
    return "told as destroyed: " + model_walk::written(destroyed) + " and not " + model_walk::written(wanted);
  }
  if (const Old wanted = changesBetween(before, after); changes != wanted) {
    return "told as changed: " + written(changes) + " and not " + written(wanted);
  }
  const int wanted = created.empty() && destroyed.empty() && changes.empty() ? 0 : 1;
  return told == wanted ? "" : "told " + std::to_string(told) + " times";
}

}  // namespace model_walk
