#include "platform/host/internal/ContainerBody.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/host/ArrayComparison.h"
#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/raise.h"

namespace hvdetail {
namespace {

std::size_t nestingOf(const hvArray* value) noexcept {
  return value == nullptr ? 0 : value->body().nesting();
}

std::size_t addSizes(std::size_t left, std::size_t right) noexcept {
  std::size_t sum = 0;
  return __builtin_add_overflow(left, right, &sum) ? std::numeric_limits<std::size_t>::max() : sum;
}

std::size_t byteSizeOf(const hvArray& value, SizeMemo& memo) {
  const Body& body = value.body();
  if (!body.isShared() || body.nesting() == 0) return body.byteSize(memo);
  const auto known = memo.find(&body);
  if (known != memo.end()) return known->second;
  const std::size_t size = body.byteSize(memo);
  memo.emplace(&body, size);
  return size;
}

}  // namespace

ContainerBody::ContainerBody(hvClassCode classCode, Shape shape, std::size_t childCount)
    : Body(classCode, hvComplexity::Real, std::move(shape)), children_(childCount, nullptr) {}

ContainerBody::~ContainerBody() {
  for (hvArray* const child : children_) delete child;
}

std::size_t ContainerBody::nestingWith(std::size_t position, const hvArray* value,
                                       std::string_view operation) const {
  const std::size_t needed = nestingOf(value) + 1;
  if (needed > hvMaximumNesting) raiseNestedTooDeep(operation);
  const bool deepestGoes = needed < nesting_ && nestingOf(children_[position]) + 1 == nesting_;
  if (!deepestGoes) return std::max(nesting_, needed);
  std::size_t result = needed;
  // Starting behind the position finds the next deep one at once when all are replaced in their order.
  for (std::size_t step = 1; step < children_.size() && result < nesting_; ++step) {
    result = std::max(result, nestingOf(children_[(position + step) % children_.size()]) + 1);
  }
  return result;
}

hvArray* ContainerBody::exchangeChild(std::size_t position, hvArray* value, std::size_t nesting) noexcept {
  nesting_ = nesting;
  return std::exchange(children_[position], value);
}

bool ContainerBody::holdsSame(const Body& other) const {
  const std::vector<hvArray*>& theirs = static_cast<const ContainerBody&>(other).children_;
  return std::equal(children_.begin(), children_.end(), theirs.begin(), hvEqual);
}

std::size_t ContainerBody::byteSize(SizeMemo& memo) const {
  std::size_t size = 0;
  for (const hvArray* const child : children_) {
    if (child != nullptr) size = addSizes(size, byteSizeOf(*child, memo));
  }
  return size;
}

void ContainerBody::copyChildren(const ContainerBody& other) {
  nesting_ = other.nesting_;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (other.children_[i] == nullptr) continue;
    children_[i] = new hvArray(other.children_[i]->reference());
    children_[i]->takeOver();
  }
}

CellBody::CellBody(const Shape& shape)
    : ContainerBody(hvClassCode::Cell, shape, checkedCount(shape.count(), sizeof(void*))) {}

BodyRef CellBody::clone() const {
  auto copy = std::make_unique<CellBody>(shape());
  copy->copyChildren(*this);
  return BodyRef(copy.release());
}

FieldTable::FieldTable(std::vector<std::string> names) : names_(std::move(names)) {
  if (names_.size() <= fewNames) {
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (scan(names_[i]) != i) raiseDuplicateField(names_[i]);
    }
    return;
  }
  numbers_.reserve(names_.size());
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (!numbers_.emplace(names_[i], i).second) raiseDuplicateField(names_[i]);
  }
}

std::size_t FieldTable::scan(std::string_view name) const noexcept {
  const auto found = std::find(names_.begin(), names_.end(), name);
  return found == names_.end() ? none : static_cast<std::size_t>(found - names_.begin());
}

std::size_t FieldTable::find(std::string_view name) const noexcept {
  if (names_.size() <= fewNames) return scan(name);
  const auto found = numbers_.find(name);
  return found == numbers_.end() ? none : found->second;
}

StructBody::StructBody(const Shape& shape, std::shared_ptr<const FieldTable> fields)
    : ContainerBody(hvClassCode::Structure, shape,
                    checkedCount(checkedBytes(shape.count(), fields->names().size()), sizeof(void*))),
      fields_(std::move(fields)) {}

BodyRef StructBody::clone() const {
  auto copy = std::make_unique<StructBody>(shape(), fields_);
  copy->copyChildren(*this);
  return BodyRef(copy.release());
}

bool StructBody::holdsSame(const Body& other) const {
  const auto& theirs = static_cast<const StructBody&>(other);
  const bool sameFields = fields_ == theirs.fields_ || fields_->names() == theirs.fields_->names();
  return sameFields && ContainerBody::holdsSame(other);
}

void putChild(hvArray& container, std::size_t position, hvArray* value, std::string_view operation) {
  if (value == &container) raiseInsideItself(operation);
  if (value != nullptr && value->isTakenOver()) raiseAlreadyTakenOver(operation);
  const auto& present = static_cast<const ContainerBody&>(container.body());
  const std::size_t nesting = present.nestingWith(position, value, operation);
  auto& writable = static_cast<ContainerBody&>(container.writableBody());
  hvArray* const former = writable.exchangeChild(position, value, nesting);
  if (value != nullptr) value->takeOver();
  // The former child goes last: its end may run code that uses the container.
  delete former;
}

}  // namespace hvdetail
