#pragma once

#include <functional>
#include <utility>

#include "tests/nd_data_adapter/model/ModelTest.h"

namespace model_test {

/// An element of class E that calls a function when it is told that it is about to be destroyed.
template <class E>
class Probe final : public E::Impl {
 public:
  using Told = std::function<void(const E& self)>;

  Probe(const Model& model, Told told) : E::Impl(model, {}), told_(std::move(told)) {}

  void aboutToDestroy() override {
    if (told_) told_(E(this));
  }

 private:
  Told told_;
};

template <class E>
E createProbe(const Model& model, typename Probe<E>::Told told) {
  Transaction transaction = begin(model);
  const E probe(new Probe<E>(model, std::move(told)));
  probe.impl()->notifyCreated();
  transaction.commit();
  return probe;
}

/// What a probe throws.
struct Refusal : std::exception {
  const char* what() const noexcept override { return "refused"; }
};

}  // namespace model_test
