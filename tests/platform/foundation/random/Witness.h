#pragma once

#include <string>

#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"
#include "tests/platform/foundation/random/Pairing.h"

namespace model_walk {

/// Notes the change sets of a model and compares them with the difference of what a twin was and is.
class Witness final : private lx::base::ChangeObserver {
 public:
  explicit Witness(const Model& model) : model_(model) { model_.impl()->addObserver(*this); }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() override { model_.impl()->removeObserver(*this); }

  /// Say what was told amiss since the last call, between which the model went from one state to another;
  /// empty if it was told right: in one change set, or in none if nothing changed.
  std::string difference(const Pairing& pairing, const Twin::Elements& before, const Twin::Elements& after);

  /// Say whether anything was told since the last call, which must not be.
  bool wasTold() const noexcept { return told_ != 0; }

 private:
  struct Change {
    ModelElement element;
    unsigned index;
    Value old;
  };

  void changed(const lx::base::ChangeSet& changes) noexcept override;

  const Model model_;
  int told_ = 0;
  std::vector<ModelElement> created_, destroyed_;
  std::vector<Change> changes_;
};

}  // namespace model_walk
