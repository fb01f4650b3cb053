#include "platform/foundation/Builder.h"

#include "platform/foundation/Report.h"
#include "platform/foundation/internal/Meanwhile.h"

namespace lx::base {

ModelElement::Builder::~Builder() = default;

ModelElement ModelElement::Builder::create(const boost::uuids::uuid& uuid) {
  return createIn(model_, uuid);
}

ModelElement ModelElement::Builder::createIn(const Model& model, const boost::uuids::uuid& uuid) {
  if (!model.isAlive()) {
    report::invalidValue(getMetaClass().getQualifiedName() + u".Builder.create",
                         u"the builder has no living model; set one first.");
  }
  Transaction transaction = model.impl()->beginTransaction(false);
  Orchestrator orchestrator;
  const ModelElement element = createWithin(orchestrator, model, uuid);
  orchestrator.commit();
  transaction.commit();
  return element;
}

ModelElement ModelElement::Builder::createWithin(Orchestrator& orchestrator, const Model& model,
                                                 const boost::uuids::uuid& uuid) {
  const detail::Meanwhile<Model> there(model_, model);
  const detail::Meanwhile<Orchestrator*> scope(orchestrator_, &orchestrator);
  return doCreate(false, uuid);
}

ModelElement::Builder::Orchestrator& ModelElement::Builder::orchestrator() const {
  if (orchestrator_ == nullptr) {
    report::invalidValue(getMetaClass().getQualifiedName() + u".Builder.doCreate",
                         u"no creation is under way; call create.");
  }
  return *orchestrator_;
}

ModelElement ModelElement::Builder::Orchestrator::getCreatedElement(const Builder& builder) const {
  const auto found = created_.find(&builder);
  return found == created_.end() ? ModelElement() : found->second.element;
}

bool ModelElement::Builder::Orchestrator::isFinished(const Builder& builder) const {
  const auto found = created_.find(&builder);
  return found != created_.end() && found->second.isFinished;
}

void ModelElement::Builder::Orchestrator::add(const Builder& builder, const ModelElement& element) {
  created_[&builder] = {element, false};
}

void ModelElement::Builder::Orchestrator::finish(const Builder& builder) {
  created_[&builder].isFinished = true;
}

void ModelElement::Builder::Orchestrator::defer(std::function<void()> rest) {
  deferred_.push_back(std::move(rest));
}

void ModelElement::Builder::Orchestrator::refer(std::shared_ptr<Builder> builder, const ModelElement& element,
                                                const Model& model,
                                                std::function<void(const ModelElement&)> set) {
  references_.push_back({std::move(builder), element, model, std::move(set)});
}

void ModelElement::Builder::Orchestrator::commit() {
  // What is done and made here may defer and refer further.
  std::size_t done = 0, made = 0;
  while (done < deferred_.size() || made < references_.size()) {
    if (done < deferred_.size()) {
      const std::function<void()> rest = std::move(deferred_[done++]);
      rest();
      continue;
    }
    const std::shared_ptr<Builder> builder = references_[made].builder;
    const Model model = references_[made].model;
    if (builder) {
      const ModelElement target = builder->createWithin(*this, model);
      references_[made].element = target;
    }
    ++made;
  }
  deferred_.clear();
  for (const Pending& reference : std::exchange(references_, {})) reference.set(reference.element);
}

ModelElement::BuilderWrapper::BuilderWrapper(std::shared_ptr<Builder> builder)
    : builder_(std::move(builder)) {
  if (!builder_) report::invalidValue("BuilderWrapper", "there is no builder to carry; give one.");
}

namespace detail {

void raiseContainsNothing(const meta::Property& property) {
  report::invalidValue(property.getQualifiedName(), u"the property takes no elements; give a value.");
}

void raiseForeignProperty(const ModelElement::Builder& builder, const meta::Property& property) {
  if (property.traits().isDerived && builder.getMetaClass().isSubclassOf(property.getOwner())) {
    report::cannotSetReadOnlyProperty(property);
  }
  report::noSuchType(builder.getMetaClass().getQualifiedName() + u"." + property.getName());
}

void raiseAbstract(const ModelElement::Builder& builder) {
  report::invalidValue(builder.getMetaClass().getQualifiedName() + u".Builder.create",
                       u"the class is abstract; create an element of a subclass.");
}

void raiseSecondChild(const meta::Property& property) {
  report::cannotAddSecondObject(property.getQualifiedName());
}

}  // namespace detail
}  // namespace lx::base
