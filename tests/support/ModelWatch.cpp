#include "tests/support/ModelWatch.h"

#include <memory>

#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"

using lx::base::ModelElement;
using lx::text::toUtf8;

namespace support {

ModelWatch::ModelWatch(const lx::base::Model& model)
    : model_(model), transactionsBefore_(model.impl()->counters().transactions) {
  model.impl()->addObserver(*this);
}

ModelWatch::~ModelWatch() {
  model_.impl()->removeObserver(*this);
}

std::uint64_t ModelWatch::transactions() const {
  return model_.impl()->counters().transactions - transactionsBefore_;
}

void ModelWatch::changed(const lx::base::ChangeSet& changes) noexcept {
  const auto classOf = [](const ModelElement& element) {
    return toUtf8(element.impl()->getMetaClass().getQualifiedName());
  };
  Lines lines;
  for (const ModelElement& element : changes.created()) lines.push_back("created " + classOf(element));
  for (const ModelElement& element : changes.destroyed()) lines.push_back("destroyed " + classOf(element));
  for (const std::unique_ptr<ModelElement::Impl::Changes>& change : changes.changes()) {
    for (const unsigned index : change->properties()) {
      lines.push_back("changed " + toUtf8(change->element().impl()->nameOfProperty(index)));
    }
  }
  notices_.push_back(lines);
}

}  // namespace support
