#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <boost/container/small_vector.hpp>
#include <boost/optional.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include "adapters/json/Block.h"
#include "platform/text/Hash.h"

namespace nd::adapters::json {

/// Collects the names of one object's members and notices one that comes twice.
///
/// As long as they come as expected, in the same order, nothing is copied: so the objects of an array share
/// one list.
class MemberNames {
 public:
  explicit MemberNames(std::shared_ptr<const MemberNameList> expected = nullptr) noexcept;

  /// Add a name that stands at an offset of the text. A name that is there already is not added; the result
  /// is then the number that it was added under, else none.
  boost::optional<std::size_t> add(std::string_view name, std::size_t offset);

  /// Tell where a name stands that was added, counted from 0.
  std::size_t offsetOf(std::size_t position) const { return offsets_[position]; }

  /// Give the names in the order in which they were added. Nothing is added afterwards.
  std::shared_ptr<const MemberNameList> finish();

 private:
  /// Let a table hold positions that are told apart by the names there.
  struct HashAt {
    std::size_t operator()(std::size_t position) const noexcept {
      return lx::text::hash(std::string_view((*names)[position]));
    }
    const MemberNameList* names;
  };
  struct EqualAt {
    bool operator()(std::size_t left, std::size_t right) const noexcept {
      return (*names)[left] == (*names)[right];
    }
    const MemberNameList* names;
  };

  void keepOwn();
  boost::optional<std::size_t> findLikeLast();

  std::shared_ptr<const MemberNameList> expected_;
  std::shared_ptr<MemberNameList> own_;
  boost::container::small_vector<std::size_t, 16> offsets_;
  /// The positions of own names, once there are many.
  boost::optional<boost::unordered_flat_set<std::size_t, HashAt, EqualAt>> index_;
};

}  // namespace nd::adapters::json
