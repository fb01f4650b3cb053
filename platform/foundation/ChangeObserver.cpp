#include "platform/foundation/ChangeObserver.h"

#include <algorithm>

#include "platform/foundation/ModelAccess.h"

namespace lx::base {

ChangeObserver::~ChangeObserver() = default;

const Value& ChangeSet::label() const noexcept {
  static const Value none{};
  return label_ == nullptr ? none : *label_;
}

std::vector<std::unique_ptr<ModelElement::Impl::Changes>> ChangeSet::changes() const {
  std::vector<std::unique_ptr<ModelElement::Impl::Changes>> result;
  ModelAccess::forEachChanged(saved_,
                              [&](const ModelElement::Impl& element, const ModelElement::Impl::Storage& old) {
                                result.push_back(element.createChanges(old));
                              });
  std::reverse(result.begin(), result.end());
  return result;
}

}  // namespace lx::base
