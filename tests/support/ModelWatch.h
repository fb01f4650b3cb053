#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/support/CallLog.h"

namespace support {

/// Watches a model for the time of a scope: counts the transactions that are begun and keeps every notice, as
/// lines like "created nd.data.adapter.AdapterError" and "changed nd.data.adapter.AdapterError.Adapter".
class ModelWatch final : private lx::base::ChangeObserver {
 public:
  explicit ModelWatch(const lx::base::Model& model);
  ModelWatch(const ModelWatch&) = delete;
  ModelWatch& operator=(const ModelWatch&) = delete;
  ~ModelWatch() override;

  /// Counts the transactions begun since the watch began, those of mutators and inner ones included.
  std::uint64_t transactions() const;

  /// Gives the notices since the watch began.
  const std::vector<Lines>& notices() const noexcept { return notices_; }

  bool hasOpenTransaction() const { return model_.impl()->hasOpenTransaction(); }

 private:
  void changed(const lx::base::ChangeSet& changes) noexcept override;

  lx::base::Model model_;
  std::uint64_t transactionsBefore_;
  std::vector<Lines> notices_;
};

}  // namespace support
