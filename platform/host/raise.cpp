#include "platform/host/internal/raise.h"

#include <string>
#include <string_view>

#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
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
  throw hv::messages::NullArray(wide(operation));
}

void raiseWrongClass(std::string_view operation, std::string_view wanted, const hvArray* given) {
  throw hv::messages::WrongClass(wide(operation), wide(wanted), classOf(given));
}

void raiseNotNumeric(hvClassCode code) {
  throw hv::messages::NotNumeric(wide(std::to_string(static_cast<int>(code))));
}

void raiseTooFewDimensions(std::size_t count) {
  throw hv::messages::TooFewDimensions(wide(count));
}

void raiseArrayTooLarge(const std::string& size) {
  throw hv::messages::ArrayTooLarge(wide(size));
}

void raiseIndexOutOfRange(const char* operation, std::size_t index, std::size_t count) {
  throw hv::messages::IndexOutOfRange(wide(operation), wide(index), wide(count));
}

void raiseNoSuchField(std::string_view operation, std::string_view field, const std::string& known) {
  throw hv::messages::NoSuchField(wide(operation), wide(field), wide(known));
}

void raiseDuplicateField(std::string_view field) {
  throw hv::messages::DuplicateField(wide(field));
}

void raiseInsideItself(std::string_view operation) {
  throw hv::messages::InsideItself(wide(operation));
}

void raiseAlreadyTakenOver(std::string_view operation) {
  throw hv::messages::AlreadyTakenOver(wide(operation));
}

void raiseNestedTooDeep(std::string_view operation) {
  throw hv::messages::NestedTooDeep(wide(operation), wide(hvMaximumNesting));
}

void raiseNotOneText(std::string_view operation, const hvArray* given) {
  throw hv::messages::NotOneText(wide(operation), wide(hvDescribe(given)));
}

void raiseNullText(std::string_view operation) {
  throw hv::messages::NullText(wide(operation));
}

void raiseStaleData() {
  throw hv::messages::StaleData();
}

}  // namespace hvdetail
