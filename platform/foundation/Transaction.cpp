#include "platform/foundation/Transaction.h"

#include "platform/foundation/ModelAccess.h"
#include "platform/foundation/Report.h"

namespace lx::base {

Transaction::Transaction(detail::Level& level) noexcept : level_(&level) {
  level.owner = this;
}

Transaction::Transaction(Transaction&& other) noexcept : level_(other.level_) {
  other.level_ = nullptr;
  if (level_ != nullptr) level_->owner = this;
}

Transaction::~Transaction() {
  if (level_ != nullptr) ModelAccess::rollBack(*level_);
}

void Transaction::commit(const boost::optional<Value>& label) {
  if (level_ == nullptr) {
    report::invalidValue("Transaction.commit",
                         "the transaction is not open: it was committed or undone already.");
  }
  ModelAccess::commit(*level_, label);
}

}  // namespace lx::base
