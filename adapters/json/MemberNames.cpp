#include "adapters/json/MemberNames.h"

#include <algorithm>
#include <utility>

namespace nd::adapters::json {
namespace {

/// Up to here a walk along the names is quicker than a table.
constexpr std::size_t fewNames = 16;

}  // namespace

MemberNames::MemberNames(std::shared_ptr<const MemberNameList> expected) noexcept
    : expected_(std::move(expected)) {}

boost::optional<std::size_t> MemberNames::add(std::string_view name, std::size_t offset) {
  const std::size_t position = offsets_.size();
  if (!own_) {
    const bool isExpected = expected_ && position < expected_->size() && (*expected_)[position] == name;
    if (!isExpected) keepOwn();
  }
  if (own_) {
    own_->emplace_back(name);
    if (const auto earlier = findLikeLast()) {
      own_->pop_back();
      return earlier;
    }
  }
  offsets_.push_back(offset);
  return boost::none;
}

std::shared_ptr<const MemberNameList> MemberNames::finish() {
  if (!own_ && expected_ && expected_->size() == offsets_.size()) return std::move(expected_);
  if (!own_) keepOwn();
  return std::move(own_);
}

void MemberNames::keepOwn() {
  own_ = std::make_shared<MemberNameList>();
  if (!expected_) return;
  own_->assign(expected_->begin(), expected_->begin() + static_cast<std::ptrdiff_t>(offsets_.size()));
}

boost::optional<std::size_t> MemberNames::findLikeLast() {
  const std::size_t last = own_->size() - 1;
  if (last < fewNames) {
    const auto found = std::find(own_->begin(), own_->end() - 1, own_->back());
    if (found == own_->end() - 1) return boost::none;
    return static_cast<std::size_t>(found - own_->begin());
  }
  if (!index_) {
    index_.emplace(2 * fewNames, HashAt{own_.get()}, EqualAt{own_.get()});
    for (std::size_t position = 0; position < last; ++position) index_->insert(position);
  }
  const auto [found, isNew] = index_->insert(last);
  if (isNew) return boost::none;
  return *found;
}

}  // namespace nd::adapters::json
