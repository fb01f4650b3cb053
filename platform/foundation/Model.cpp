#include "platform/foundation/Model.h"

#include <utility>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Report.h"
#include "platform/foundation/meta/MetaRegistry.h"

namespace lx::base {

WorkQueueFactory::~WorkQueueFactory() = default;

const std::shared_ptr<const WorkQueueFactory>& WorkQueueFactory::getDefault() {
  static const auto& factory =
      *new std::shared_ptr<const WorkQueueFactory>(std::make_shared<const WorkQueueFactory>());
  return factory;
}

Model::Model(Impl* impl) noexcept : impl_(impl) {
  if (impl_ != nullptr) impl_->addRef();
}

Model::Model(const Model& other) noexcept : Model(other.impl_) {}

Model::~Model() {
  if (impl_ != nullptr) impl_->removeRef();
}

Model& Model::operator=(const Model& other) noexcept {
  Model copy(other);
  return *this = std::move(copy);
}

Model& Model::operator=(Model&& other) noexcept {
  Model taken(std::move(other));
  std::swap(impl_, taken.impl_);
  return *this;
}

meta::Class Model::metaClass() {
  return meta::MetaRegistry::getInstance().getClass(u"lx.base.Model");
}

Model Model::create(const Constellation& constellation,
                    const std::shared_ptr<const WorkQueueFactory>& factory) {
  return Model(new Impl(constellation, factory, {}));
}

Model Model::createTransientModel() {
  return Model(
      new Impl({}, WorkQueueFactory::getDefault(), {.isTransient = true, .address = {}, .uuid = {}}));
}

Model Model::createRegistryModel(const std::u16string& address, const boost::uuids::uuid& uuid) {
  return Model(
      new Impl({}, WorkQueueFactory::getDefault(), {.isTransient = false, .address = address, .uuid = uuid}));
}

bool Model::isTransient() const noexcept {
  return impl_ != nullptr && impl_->origin().isTransient;
}

std::u16string Model::address() const {
  return impl_ == nullptr ? std::u16string() : impl_->origin().address;
}

bool Model::isAlive() const noexcept {
  return impl_ != nullptr && impl_->isAlive();
}

boost::uuids::uuid Model::identifier() const {
  if (impl_ == nullptr) report::invalidValue("Model.identifier", "the handle is null; give a model.");
  return impl_->identifier();
}

void Model::destroy() const {
  if (impl_ == nullptr) report::invalidValue("Model.destroy", "the handle is null; give a model.");
  impl_->destroy();
}

Model::Thawer::Thawer(const Model& model) noexcept : model_(model) {
  if (model_) model_.impl()->frozen_ = false;
}

Model::Thawer::Thawer(Thawer&& other) noexcept : model_(std::move(other.model_)) {}

Model::Thawer::~Thawer() {
  if (model_) model_.impl()->frozen_ = true;
}

void Model::Freezer::freeze(const Model& model) {
  if (!model.isAlive()) report::missingModel("Model.Freezer.freeze");
  model.impl()->frozen_ = true;
}

Model::Thawer Model::Freezer::thaw(const Model& model) {
  if (!model.isAlive()) report::missingModel("Model.Freezer.thaw");
  return Thawer(model.impl()->isFrozen() ? model : Model());
}

}  // namespace lx::base
