#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/services/CatalogMessage.h"
#include "platform/text/Convert.h"

namespace support {

/// An exception of nobody's hierarchy.
struct OwnException {
  int number = 7;
};

struct Thrown {
  const char* name;
  std::exception_ptr object;
};

/// Gives one exception of each kind that an adapter might throw.
inline std::vector<Thrown> everyKindOfException() {
  return {{"RuntimeError", std::make_exception_ptr(std::runtime_error("the source is offline"))},
          {"OwnType", std::make_exception_ptr(OwnException())},
          {"Int", std::make_exception_ptr(42)},
          {"BadAlloc", std::make_exception_ptr(std::bad_alloc())}};
}

/// Tells whether a call is left by this very exception object.
template <class Call>
bool isLeftBy(const std::exception_ptr& thrown, Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (...) {
    return std::current_exception() == thrown;
  }
  return false;
}

/// Gives the catalogued exception that leaves a call, as its key and first argument, "InvalidValue(ndx.X.f)";
/// "nothing" if none does.
template <class Call>
std::string raisedBy(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const lx::services::CatalogMessage& message) {
    const std::string first =
        message.arguments().empty() ? "" : lx::text::toUtf8(message.arguments().front());
    return std::string(message.key()) + "(" + first + ")";
  }
  return "nothing";
}

}  // namespace support
