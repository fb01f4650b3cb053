#include "platform/foundation/ModelImpl.h"

#include <algorithm>

#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/Identity.h"
#include "platform/foundation/ModelAccess.h"
#include "platform/foundation/Report.h"

namespace lx::base {

detail::Level::Level() {
  created.mask_ = ~std::uint64_t{0};  // everything counts as saved, so that no old value is ever kept
  created.level_ = this;
}

Model::Impl::Impl(const Constellation& constellation, std::shared_ptr<const WorkQueueFactory> factory,
                  Origin origin)
    : factory_(std::move(factory)),
      constellation_(constellation),
      origin_(std::move(origin)),
      uuid_(origin_.uuid.value_or(boost::uuids::uuid{})),
      identifiedItself_(origin_.uuid.has_value()) {}

Model::Impl::~Impl() = default;

void Model::Impl::end() noexcept {
  if (telling_ != 0) {
    isUntidy_ = true;  // what tells does it afterwards
    return;
  }
  if (alive_) {
    references_ = 1;  // what is torn down may take and drop handles to this model
    ModelAccess::tearDown(*this, true);
    if (--references_ != 0) return;
  }
  delete this;
}

boost::uuids::uuid Model::Impl::identifier() {
  if (!identifiedItself_) {
    uuid_ = detail::randomIdentity();
    identifiedItself_ = true;
  }
  return uuid_;
}

void Model::Impl::destroy() {
  const Model keep(this);
  if (!alive_) return;
  if (top_ != nullptr)
    report::invalidValue("Model.destroy", "the model has an open transaction; end it first.");
  ModelAccess::tearDown(*this, false);
}

Transaction Model::Impl::beginTransaction(bool quiet) {
  return Transaction(ModelAccess::begin(*this, quiet));
}

ModelElement Model::Impl::findElement(const boost::uuids::uuid& uuid) const {
  const auto [first, last] = identified_.equal_range(uuid);
  ModelElement::Impl* found = nullptr;
  for (auto each = first; each != last && (found == nullptr || found->isProxy()); ++each) {
    if (each->second->isAlive() && (found == nullptr || !each->second->isProxy())) found = each->second;
  }
  return ModelElement(found);
}

std::vector<ModelElement> Model::Impl::elements() const {
  std::vector<ModelElement> result;
  for (ModelElement::Impl* element = oldest_; element != nullptr; element = element->next_) {
    if (element->isAlive()) result.emplace_back(element);
  }
  return result;
}

std::vector<ModelElement> Model::Impl::roots() const {
  std::vector<ModelElement> result = elements();
  std::erase_if(result, [](const ModelElement& element) { return element.impl()->container() != nullptr; });
  return result;
}

std::size_t Model::Impl::numberOfElements() const noexcept {
  std::size_t count = 0;
  for (const ModelElement::Impl* element = oldest_; element != nullptr; element = element->next_) {
    if (element->isAlive()) ++count;
  }
  return count;
}

void Model::Impl::identify(const boost::uuids::uuid& uuid, ModelElement::Impl& element) {
  const ModelElement bearer = findElement(uuid);
  if (bearer && !bearer.isProxy()) {
    const std::string text = boost::uuids::to_string(uuid);
    report::cannotAddSecondObject(u"The identity " + std::u16string(text.begin(), text.end()));
  }
  identified_.emplace(uuid, &element);
}

void Model::Impl::addObserver(ChangeObserver& observer) {
  observers_.push_back(&observer);
}

void Model::Impl::removeObserver(ChangeObserver& observer) noexcept {
  const auto found = std::find(observers_.begin(), observers_.end(), &observer);
  if (found == observers_.end()) return;
  if (telling_ == 0) {
    observers_.erase(found);
  } else {
    *found = nullptr;
    isUntidy_ = true;
  }
}

void Model::Impl::removeObservers() noexcept {
  std::fill(observers_.begin(), observers_.end(), nullptr);
  if (telling_ == 0)
    observers_.clear();
  else
    isUntidy_ = true;
}

}  // namespace lx::base
