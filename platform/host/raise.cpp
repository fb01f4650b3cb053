#include "platform/host/internal/raise.h"

#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
#include "platform/host/HostError.h"
#include "platform/host/messages.h"
#include "platform/text/Convert.h"

namespace hvdetail {
namespace {

std::u16string wide(std::string_view text) {
  return lx::text::toUtf16(text);
}
std::u16string wide(std::size_t number) {
  return wide(std::to_string(number));
}

std::u16string classOf(const hvArray* array) {
  std::string name(hvIsComplex(array) ? "complex " : "");
  name += hvGetClassName(array);
  return wide(name);
}

}  // namespace

void raiseNullArray(std::string_view operation) {
  throw hvError(hv::messages::NullArray(wide(operation)));
}

void raiseWrongClass(std::string_view operation, std::string_view wanted, const hvArray* given) {
  throw hvError(hv::messages::WrongClass(wide(operation), wide(wanted), classOf(given)));
}

void raiseNotNumeric(hvClassCode code) {
  throw hvError(hv::messages::NotNumeric(wide(std::to_string(static_cast<int>(code)))));
}

void raiseTooFewDimensions(std::size_t count) {
  throw hvError(hv::messages::TooFewDimensions(wide(count)));
}

void raiseArrayTooLarge(const std::string& size) {
  throw hvError(hv::messages::ArrayTooLarge(wide(size)));
}

void raiseIndexOutOfRange(const char* operation, std::size_t index, std::size_t count) {
  throw hvError(hv::messages::IndexOutOfRange(wide(operation), wide(index), wide(count)));
}

void raiseNoSuchField(std::string_view operation, std::string_view field, const std::string& known) {
  throw hvError(hv::messages::NoSuchField(wide(operation), wide(field), wide(known)));
}

void raiseDuplicateField(std::string_view field) {
  throw hvError(hv::messages::DuplicateField(wide(field)));
}

void raiseInsideItself(std::string_view operation) {
  throw hvError(hv::messages::InsideItself(wide(operation)));
}

void raiseAlreadyTakenOver(std::string_view operation) {
  throw hvError(hv::messages::AlreadyTakenOver(wide(operation)));
}

void raiseNestedTooDeep(std::string_view operation) {
  throw hvError(hv::messages::NestedTooDeep(wide(operation), wide(hvMaximumNesting)));
}

void raiseNotOneText(std::string_view operation, const hvArray* given) {
  throw hvError(hv::messages::NotOneText(wide(operation), wide(hvDescribe(given))));
}

void raiseNullText(std::string_view operation) {
  throw hvError(hv::messages::NullText(wide(operation)));
}

void raiseStaleData() {
  throw hvError(hv::messages::StaleData());
}

}  // namespace hvdetail
