#include "tests/adapters/json/readText.h"

#include <utility>

#include "adapters/json/FormatFailure.h"
#include "platform/host/ArrayComparison.h"
#include "platform/host/ArrayText.h"

using nd::adapters::json::FormatFailure;
using nd::adapters::json::PaddedText;
using nd::adapters::json::readDocument;
using nd::adapters::json::Variable;

std::vector<Variable> readText(std::string_view text) {
  return std::move(readDocument(PaddedText(text)).variables);
}

hvArrayPtr readValue(std::string_view value) {
  std::vector<Variable> variables = readText("{\"v\": " + std::string(value) + "}");
  return std::move(variables.at(0).value);
}

testing::AssertionResult readsAs(std::string_view value, const hvArrayPtr& expected) {
  const hvArrayPtr actual = readValue(value);
  if (hvEqual(actual.get(), expected.get())) return testing::AssertionSuccess();
  return testing::AssertionFailure() << value << " was read as\n"
                                     << hvFormat(actual.get(), "actual") << "and not as\n"
                                     << hvFormat(expected.get(), "expected");
}

std::string failureOf(std::string_view text) {
  try {
    static_cast<void>(readText(text));
  } catch (const FormatFailure& failure) {
    return failure.what();
  }
  return "it was read";
}
