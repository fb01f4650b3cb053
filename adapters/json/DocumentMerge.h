#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "adapters/json/Document.h"
#include "platform/text/Hash.h"

namespace nd::adapters::json {

/// Lays contents over one another.
///
/// A variable that comes again has the later value, at the place where it came first; of its metadata an
/// entry that comes again has the later value, and the others stay.
class DocumentMerge {
 public:
  /// Lay a content over those added before. Its arrays are shared, not copied.
  void add(const Content& content);

  /// Give what came of it. Nothing is added afterwards.
  Content finish() noexcept { return std::move(result_); }

 private:
  using Index = std::unordered_map<std::string, std::size_t, lx::text::Hash, std::equal_to<>>;

  static void assign(std::vector<Variable>& all, const Variable& variable, Index& index);

  Content result_;
  Index variables_;
  Index metaData_;
};

}  // namespace nd::adapters::json
