#pragma once

#include <boost/optional.hpp>

#include "platform/export.h"
#include "platform/foundation/Model.h"
#include "platform/foundation/Value.h"

namespace lx::base {

namespace detail {
struct Level;
}

/// An open transaction on a model: what changes while it is open is undone unless it is committed.
///
/// Transactions nest. An inner commit hands its changes to the transaction around it; an inner one that ends
/// without commit undoes exactly its own changes. The outermost commit tells the model's observers once.
/// The destructor undoes what was not committed; it throws nothing and allocates nothing.
///
/// The transaction that was begun last must end first. A transaction that ends while inner ones are open
/// takes them along: they are undone and can't be committed any more. An open transaction keeps its model
/// alive.
class ND_PLATFORM_EXPORT Transaction {
 public:
  Transaction() noexcept = default;
  Transaction(Transaction&& other) noexcept;
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  Transaction& operator=(Transaction&&) = delete;
  ~Transaction();

  /// End the transaction and keep its changes. A value given becomes the label of the change set that the
  /// outermost commit tells.
  ///
  /// Raises `InvalidValue` if the transaction is not open or an inner one still is; nothing has then ended.
  void commit(const boost::optional<Value>& label = boost::none);

  bool isOpen() const noexcept { return level_ != nullptr; }

 private:
  friend class Model::Impl;
  friend class ModelAccess;
  friend struct detail::Level;
  explicit Transaction(detail::Level& level) noexcept;

  detail::Level* level_ = nullptr;
};

}  // namespace lx::base
