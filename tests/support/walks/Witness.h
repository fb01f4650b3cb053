#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"

namespace walking {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;

/// Notes the change sets of a model and compares them with the difference of what a twin was and is.
class Witness final : private lx::base::ChangeObserver {
 public:
  explicit Witness(const Model& model);
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() override;

  /// Say whether anything was told since the last call of `difference`.
  bool wasTold() const noexcept { return told_.times != 0; }

  /// Say what was told amiss since the last call, between which the model went from one state to another;
  /// empty if it was told right: in one change set, or in none if nothing changed. The states are maps of
  /// the twin's elements by their numbers; each element tells what a property's `value` is and whether
  /// another `holdsSame` there.
  template <class Pairing, class Elements>
  std::string difference(const Pairing& pairing, const Elements& before, const Elements& after);

 private:
  struct Change {
    ModelElement element;
    unsigned index;
    Value old;
  };
  struct Told {
    int times = 0;
    std::vector<ModelElement> created, destroyed;
    std::vector<Change> changes;
  };
  template <class Content>
  using Old = std::map<std::pair<int, unsigned>, Content>;

  void changed(const lx::base::ChangeSet& changes) noexcept override;

  static std::string listed(const std::vector<int>& ids);
  template <class Pairing>
  static std::vector<int> idsOf(const Pairing& pairing, const std::vector<ModelElement>& elements);
  template <class Elements>
  static std::vector<int> only(const Elements& in, const Elements& notIn);
  template <class Content, class Elements>
  static Old<Content> changesBetween(const Elements& before, const Elements& after);
  template <class Pairing, class Content>
  static std::string written(const Pairing& pairing, const Old<Content>& changes);

  const Model model_;
  Told told_;
};

template <class Pairing>
std::vector<int> Witness::idsOf(const Pairing& pairing, const std::vector<ModelElement>& elements) {
  std::vector<int> result;
  for (const ModelElement& element : elements) result.push_back(pairing.idOf(element));
  return result;
}

/// List what is in one and not in the other.
template <class Elements>
std::vector<int> Witness::only(const Elements& in, const Elements& notIn) {
  std::vector<int> result;
  for (const auto& [id, element] : in) {
    if (!notIn.contains(id)) result.push_back(id);
  }
  return result;
}

/// Give the old values of what changed. Proxies that a collection holds apart belong to it without showing.
template <class Content, class Elements>
Witness::Old<Content> Witness::changesBetween(const Elements& before, const Elements& after) {
  Old<Content> result;
  for (const auto& [id, old] : before) {
    const auto found = after.find(id);
    if (found == after.end() || old == found->second) continue;
    for (unsigned index = 1; index <= old.values.size(); ++index) {
      if (!old.holdsSame(found->second, index)) result.emplace(std::pair(id, index), old.value(index));
    }
  }
  return result;
}

template <class Pairing, class Content>
std::string Witness::written(const Pairing& pairing, const Old<Content>& changes) {
  std::string text;
  for (const auto& [place, content] : changes) {
    text += "#" + std::to_string(place.first) + "." + std::to_string(place.second) + " was " +
            pairing.written(content) + "; ";
  }
  return text;
}

template <class Pairing, class Elements>
std::string Witness::difference(const Pairing& pairing, const Elements& before, const Elements& after) {
  const Told told = std::exchange(told_, {});
  const std::vector<int> created = idsOf(pairing, told.created);
  std::vector<int> destroyed = idsOf(pairing, told.destroyed);
  std::sort(destroyed.begin(), destroyed.end());
  using Content = std::remove_cvref_t<decltype(before.begin()->second.value(1))>;
  Old<Content> changes;
  for (const Change& each : told.changes) {
    const int id = pairing.idOf(each.element);
    const auto known = after.find(id);
    if (known == after.end()) return "told as changed: #" + std::to_string(id) + ", which isn't there";
    const bool isFirst =
        changes.emplace(std::pair(id, each.index), pairing.contentOf(known->second, each.index, each.old))
            .second;
    if (!isFirst) return "a property was told twice";
  }

  if (const std::vector<int> wanted = only(after, before); created != wanted)
    return "told as created: " + listed(created) + " and not " + listed(wanted);
  if (const std::vector<int> wanted = only(before, after); destroyed != wanted)
    return "told as destroyed: " + listed(destroyed) + " and not " + listed(wanted);
  if (const Old<Content> wanted = changesBetween<Content>(before, after); changes != wanted)
    return "told as changed: " + written(pairing, changes) + " and not " + written(pairing, wanted);
  const int wanted = created.empty() && destroyed.empty() && changes.empty() ? 0 : 1;
  return told.times == wanted ? "" : "told " + std::to_string(told.times) + " times";
}

}  // namespace walking
