#include "platform/host/internal/Body.h"

#include <array>

#include "platform/host/internal/ArrayHandle.h"
#include "platform/host/internal/raise.h"

namespace hvdetail {

struct WritePermit::State {
  std::size_t holders = 1;
  bool ended = false;

  static void release(State* state) noexcept {
    if (state != nullptr && --state->holders == 0) delete state;
  }
};

Body::Body(hvClassCode classCode, hvComplexity complexity, Shape shape) noexcept
    : shape_(std::move(shape)), classCode_(classCode), complexity_(complexity) {}

Body::~Body() {
  endPermits();
}

std::string_view Body::className() const noexcept {
  return nameOf(classCode_);
}

bool Body::isA(std::string_view className) const noexcept {
  if (className == "numeric") return isNumeric(classCode_);
  const bool isFloat = classCode_ == hvClassCode::Single || classCode_ == hvClassCode::Double;
  if (className == "float") return isFloat;
  if (className == "integer") return isNumeric(classCode_) && !isFloat;
  return className == this->className();
}

WritePermit::State& Body::permitState() {
  if (permitState_ == nullptr) permitState_ = new WritePermit::State;
  return *permitState_;
}

void Body::endPermits() noexcept {
  if (permitState_ == nullptr) return;
  permitState_->ended = true;
  WritePermit::State::release(std::exchange(permitState_, nullptr));
}

WritePermit::WritePermit(hvArray* array) : state_(&array->writableBody().permitState()) {
  ++state_->holders;
}

WritePermit::WritePermit(const WritePermit& other) noexcept : state_(other.state_) {
  if (state_ != nullptr) ++state_->holders;
}

WritePermit& WritePermit::operator=(const WritePermit& other) noexcept {
  WritePermit copy(other);
  std::swap(state_, copy.state_);
  return *this;
}

WritePermit::~WritePermit() {
  State::release(state_);
}

void WritePermit::check() const {
  if (state_ != nullptr && state_->ended) raiseStaleData();
}

std::string_view nameOf(hvClassCode classCode) noexcept {
  static constexpr std::array<std::string_view, 16> names = {
      "",     "logical", "char",  "string", "cell",  "struct", "single", "double",
      "int8", "uint8",   "int16", "uint16", "int32", "uint32", "int64",  "uint64"};
  const auto number = static_cast<std::size_t>(classCode);
  return number < names.size() ? names[number] : std::string_view();
}

bool isNumeric(hvClassCode classCode) noexcept {
  return classCode >= hvClassCode::Single && classCode <= hvClassCode::UInt64;
}

bool equalBodies(const Body& left, const Body& right) {
  if (&left == &right) return true;
  return left.classCode() == right.classCode() && left.complexity() == right.complexity() &&
         left.shape() == right.shape() && left.holdsSame(right);
}

}  // namespace hvdetail
