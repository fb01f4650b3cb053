#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/export.h"
#include "platform/foundation/ModelElement.h"

namespace lx::base {

class ChangeSet;

/// Told of changes once each outermost transaction has been committed and the model stands whole.
class ND_PLATFORM_EXPORT ChangeObserver {
 public:
  virtual ~ChangeObserver();

  /// Called once a commit. The change set lives for the call only. The observer may change the model in
  /// transactions of its own, whose notices come at once, within this one; it must not throw, since what is
  /// committed can't be taken back.
  virtual void changed(const ChangeSet& changes) noexcept = 0;
};

/// What happened in one outermost transaction. Nothing is copied for it: the lists are those of the commit.
class ND_PLATFORM_EXPORT ChangeSet {
 public:
  ChangeSet(const ChangeSet&) = delete;
  ChangeSet& operator=(const ChangeSet&) = delete;

  /// Give the model that changed.
  Model model() const { return Model(model_); }

  /// Give the label of the commit, empty if it had none.
  const Value& label() const noexcept;

  /// List the elements that now exist and did not, and those that existed and don't any more.
  std::span<const ModelElement> created() const noexcept { return created_; }
  std::span<const ModelElement> destroyed() const noexcept { return destroyed_; }

  /// List what changed of elements that existed before and exist now, property by property.
  std::vector<std::unique_ptr<ModelElement::Impl::Changes>> changes() const;

 private:
  friend class ModelAccess;
  using Elements = std::span<const ModelElement>;
  using Storage = ModelElement::Impl::Storage;

  ChangeSet(Model::Impl& model, Elements created, Elements destroyed, const Storage* saved,
            const Value* label) noexcept
      : model_(&model), created_(created), destroyed_(destroyed), saved_(saved), label_(label) {}

  Model::Impl* model_;
  Elements created_;
  Elements destroyed_;
  const Storage* saved_;
  const Value* label_;
};

}  // namespace lx::base
