#pragma once

#include <functional>
#include <utility>

#include "tests/platform/foundation/random/Pairing.h"
#include "tests/support/model/Containers.h"

namespace model_walk {

/// An element that can be made to do something when it is about to be destroyed.
class HearingContainers final : public probe::Containers::Impl {
 public:
  /// While one lives, all such elements call its function with themselves when they are about to be
  /// destroyed. Only one lives at a time.
  class AtEnd {
   public:
    explicit AtEnd(std::function<void(const ModelElement::Impl&)> told) { told_ = std::move(told); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { told_ = nullptr; }
  };

  /// Create one in a model, as `Containers::create` does.
  static ModelElement create(const Model& model, const boost::uuids::uuid& uuid) {
    lx::base::Transaction transaction = model.impl()->beginTransaction(false);
    const probe::Containers result(new HearingContainers(model, uuid));
    result.impl()->notifyCreated();
    transaction.commit();
    return result;
  }

  /// Tell whether an element is one.
  static bool is(const ModelElement& element) {
    return dynamic_cast<const HearingContainers*>(element.impl()) != nullptr;
  }

  void aboutToDestroy() override {
    if (told_) told_(*this);
  }

 private:
  HearingContainers(const Model& model, const boost::uuids::uuid& uuid)
      : probe::Containers::Impl(model, uuid) {}

  static inline std::function<void(const ModelElement::Impl&)> told_;
};

}  // namespace model_walk
