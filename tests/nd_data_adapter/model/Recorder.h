#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/ChangeObserver.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

namespace model_test {

/// Notes all that a model tells while it lives: a text for each change set. Elements are written by the names
/// that the test gave them.
class Recorder final : public lx::base::ChangeObserver {
 public:
  explicit Recorder(const Model& model) : model_(model) { model_.impl()->addObserver(*this); }
  ~Recorder() override { model_.impl()->removeObserver(*this); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void call(const ModelElement& element, const std::string& name) { names_.emplace_back(element, name); }

  /// Asks for a function to be called at each notice, before it is noted.
  void whenTold(std::function<void(const lx::base::ChangeSet&)> step) { step_ = std::move(step); }

  /// Gives the texts of the notices so far and forgets them.
  std::vector<std::string> take() { return std::exchange(notices_, {}); }

  void changed(const lx::base::ChangeSet& changes) noexcept override;

 private:
  std::string nameOf(const ModelElement& element) const;
  std::string written(const Value& value) const;

  Model model_;
  std::vector<std::pair<ModelElement, std::string>> names_;
  std::function<void(const lx::base::ChangeSet&)> step_;
  std::vector<std::string> notices_;
};

}  // namespace model_test
