#pragma once

#include <exception>
#include <string>

#include "platform/services/CatalogMessage.h"
#include "platform/text/Convert.h"

/// Writes a catalogued exception as its key with its arguments: "InvalidValue(subject; cure)".
inline std::string written(const lx::services::CatalogMessage& message) {
  std::string arguments;
  for (const std::u16string& argument : message.arguments()) {
    arguments += (arguments.empty() ? "" : "; ") + lx::text::toUtf8(argument);
  }
  return std::string(message.key()) + "(" + arguments + ")";
}

/// Runs a step that is to raise a message of class M, and gives that message with its arguments. What
/// happened instead is said in words, so that no comparison with a message holds.
template <class M, class F>
std::string raised(F step) {
  try {
    step();
  } catch (const M& message) {
    return written(message);
  } catch (const std::exception& other) {
    return std::string("raised something else: ") + other.what();
  }
  return "raised nothing";
}
