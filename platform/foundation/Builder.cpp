#include "platform/foundation/Builder.h"

#include "platform/foundation/Report.h"

namespace lx::base {

namespace {

/// Give a place another value for a time.
template <class T>
class Meanwhile {
 public:
  Meanwhile(T& place, T value) : place_(place), former_(std::exchange(place, std::move(value))) {}
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;
  ~Meanwhile() { place_ = std::move(former_); }

 private:
  T& place_;
  T former_;
};

}  // namespace

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
  const Meanwhile<Model> there(model_, model);
  const Meanwhile<Orchestrator*> scope(orchestrator_, &orchestrator);
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
  return found == created_.end() ? ModelElement() : found->second;
}

void ModelElement::Builder::Orchestrator::add(const Builder& builder, const ModelElement& element) {
  created_[&builder] = element;
}

void ModelElement::Builder::Orchestrator::defer(std::function<void()> rest) {
  deferred_.push_back(std::move(rest));
}

void ModelElement::Builder::Orchestrator::commit() {
  for (std::size_t at = 0; at < deferred_.size(); ++at) deferred_[at]();
  deferred_.clear();
}

ModelElement::BuilderWrapper::BuilderWrapper(std::shared_ptr<Builder> builder)
    : builder_(std::move(builder)) {
  if (!builder_) report::invalidValue("BuilderWrapper", "there is no builder to carry; give one.");
}

namespace detail {

void raiseContainsNothing(const meta::Property& property) {
  report::invalidValue(property.getQualifiedName(), u"the property contains no elements; give a value.");
}

void raiseForeignProperty(const ModelElement::Builder& builder, const meta::Property& property) {
  report::noSuchType(builder.getMetaClass().getQualifiedName() + u"." + property.getName());
}

void raiseSecondChild(const meta::Property& property) {
  report::cannotAddSecondObject(property.getQualifiedName());
}

}  // namespace detail
}  // namespace lx::base
