#pragma once

#include <functional>
#include <utility>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"

namespace support {

/// Runs a function at each notice of a model, for the time of a scope. What the function changes in the model
/// gives notices, too.
class AtEachNotice final : private lx::base::ChangeObserver {
 public:
  AtEachNotice(const lx::base::Model& model, std::function<void()> run)
      : model_(model), run_(std::move(run)) {
    model_.impl()->addObserver(*this);
  }
  AtEachNotice(const AtEachNotice&) = delete;
  AtEachNotice& operator=(const AtEachNotice&) = delete;
  ~AtEachNotice() override { model_.impl()->removeObserver(*this); }

 private:
  void changed(const lx::base::ChangeSet&) noexcept override { run_(); }

  lx::base::Model model_;
  std::function<void()> run_;
};

}  // namespace support
