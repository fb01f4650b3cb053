#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/host/Array.h"

// One function for each error of the array layer, so that the callers stay readable.
namespace hvdetail {

[[noreturn]] void raiseNullArray(std::string_view operation);
[[noreturn]] void raiseWrongClass(std::string_view operation, std::string_view wanted, const hvArray* given);
[[noreturn]] void raiseNotNumeric(hvClassCode code);
[[noreturn]] void raiseTooFewDimensions(std::size_t count);
[[noreturn]] void raiseArrayTooLarge(const std::string& size);
[[noreturn]] void raiseNoSuchField(std::string_view operation, std::string_view field,
                                   const std::string& known);
[[noreturn]] void raiseDuplicateField(std::string_view field);
[[noreturn]] void raiseInsideItself(std::string_view operation);
[[noreturn]] void raiseAlreadyTakenOver(std::string_view operation);
[[noreturn]] void raiseNestedTooDeep(std::string_view operation);
[[noreturn]] void raiseNotOneText(std::string_view operation, const hvArray* given);
[[noreturn]] void raiseNullText(std::string_view operation);
[[noreturn]] void raiseStaleData();

}  // namespace hvdetail
