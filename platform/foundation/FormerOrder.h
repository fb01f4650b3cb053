#pragma once

#include <algorithm>
#include <unordered_map>

namespace lx::base::detail {

/// The order that nodes had before some changes. Only the links that were others are kept, so that looking
/// back costs what was changed and not what is there.
///
/// `Present` gives the neighbours that a node has now: `behind(node)` and `before(node)`. Null stands for
/// either end.
template <class Node, class Present>
class FormerOrder {
 public:
  explicit FormerOrder(const Present& present) : present_(present) {}

  /// Take back, from the latest to the earliest, that a node was put in, or taken from where it stood before
  /// another.
  void erase(const Node* node) { link(before(node), behind(node)); }
  void insert(const Node* node, const Node* next) {
    link(before(next), node);
    link(node, next);
  }

  /// Give the node that stood behind another; the first one behind null.
  const Node* behind(const Node* node) const {
    const auto found = behind_.find(node);
    return found == behind_.end() ? present_.behind(node) : found->second;
  }

  /// Tell whether nodes that have all stayed have the order that they had.
  bool isPresent() const {
    return std::all_of(behind_.begin(), behind_.end(),
                       [&](const auto& link) { return present_.behind(link.first) == link.second; });
  }

 private:
  const Node* before(const Node* node) const {
    const auto found = before_.find(node);
    return found == before_.end() ? present_.before(node) : found->second;
  }

  void link(const Node* node, const Node* next) {
    behind_[node] = next;
    before_[next] = node;
  }

  const Present present_;
  std::unordered_map<const Node*, const Node*> behind_;
  std::unordered_map<const Node*, const Node*> before_;
};

}  // namespace lx::base::detail
