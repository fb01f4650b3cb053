#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include <boost/container/small_vector.hpp>

#include "platform/foundation/ModelElement.h"

namespace lx::base::detail {

/// The steps of a collection that a rollback takes back: a stack, the latest on top. `Change` has a member
/// `below`. Steps are kept as long as there is a mark, which old values may be read by.
template <class Change>
class Journal {
 public:
  Journal() noexcept = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal() { clear(); }

  Change* top() const noexcept { return top_; }
  void push(std::unique_ptr<Change> change) noexcept {
    change->below = top_;
    top_ = change.release();
  }
  std::unique_ptr<Change> pop() noexcept {
    std::unique_ptr<Change> change(top_);
    top_ = change->below;
    return change;
  }
  void clear() noexcept {
    while (top_ != nullptr) pop();
  }

  /// Count a mark. What no mark has asked for any more goes first.
  void addMark() noexcept {
    if (marks_++ == 0) clear();
  }

  /// Take a mark away that was restored from. Steps that nobody asks for any more stay until the next mark:
  /// letting go of what they hold must not run the code of others while things are being undone.
  void removeMark() noexcept { --marks_; }

  bool isMarked() const noexcept { return marks_ != 0; }

 private:
  Change* top_ = nullptr;
  std::size_t marks_ = 0;
};

/// What a storage keeps of a collection: the place in its journal up to which changes are to be taken back.
template <class Core>
class JournalMark {
 public:
  JournalMark() noexcept = default;
  JournalMark(const JournalMark&) = delete;
  JournalMark& operator=(const JournalMark&) = delete;
  JournalMark& operator=(JournalMark&& other) noexcept {
    end();
    core_ = std::exchange(other.core_, nullptr);
    top_ = other.top_;
    return *this;
  }
  ~JournalMark() { end(); }

  void set(Core& core) noexcept {
    end();
    core.journal().addMark();
    core_ = &core;
    top_ = core.journal().top();
  }

  /// Take the mark away behind what was restored from it.
  void clear() noexcept { std::exchange(core_, nullptr)->journal().removeMark(); }

  const typename Core::Change* top() const noexcept { return top_; }

 private:
  void end() noexcept {
    if (core_ == nullptr) return;
    Core& core = *core_;
    clear();
    if (!core.journal().isMarked()) core.journal().clear();
  }

  Core* core_ = nullptr;
  const typename Core::Change* top_ = nullptr;
};

/// Tell whether a journal's changes down to a mark cancel each other out in number, element by element.
/// `delta` gives the element that a change concerns and +1, -1 or 0.
template <class Change, class Delta>
bool membershipIsUnchanged(const Change* top, const Change* mark, Delta delta) {
  boost::container::small_vector<std::pair<const ModelElement::Impl*, int>, 8> sums;
  for (; top != nullptr && top != mark; top = top->below) sums.push_back(delta(*top));
  std::sort(sums.begin(), sums.end());
  for (std::size_t at = 0; at < sums.size();) {
    int sum = 0;
    const ModelElement::Impl* const element = sums[at].first;
    for (; at < sums.size() && sums[at].first == element; ++at) sum += sums[at].second;
    if (sum != 0) return false;
  }
  return true;
}

}  // namespace lx::base::detail
