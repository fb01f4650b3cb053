#include "tests/adapters/json/agreement.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <boost/optional.hpp>

#include "adapters/json/ExactReader.h"
#include "adapters/json/FormatFailure.h"
#include "adapters/json/PaddedText.h"
#include "adapters/json/Reader.h"
#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/leaves.h"
#include "tests/adapters/json/losslessForm.h"

using nd::adapters::json::Document;
using nd::adapters::json::ExactReader;
using nd::adapters::json::Fault;
using nd::adapters::json::FormatFailure;
using nd::adapters::json::PaddedText;
using nd::adapters::json::Variable;
using nd::adapters::json::VariableMetaData;

namespace {

/// What was read, or what was said.
struct Outcome {
  boost::optional<Document> document;
  std::string failure;
};

Outcome readQuickly(const PaddedText& content) {
  try {
    return {nd::adapters::json::readDocument(content), {}};
  } catch (const FormatFailure& failure) {
    return {boost::none, failure.what()};
  }
}

Outcome readExactly(const PaddedText& content) {
  const std::string_view text = content.text();
  try {
    return {ExactReader(text).document(), {}};
  } catch (const Fault& fault) {
    return {boost::none,
            FormatFailure(nd::adapters::json::placeOf(text, fault.offset), fault.message).what()};
  }
}

bool areEqual(const std::vector<Variable>& left, const std::vector<Variable>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const Variable& one, const Variable& other) {
                      return one.name == other.name && hvEqual(one.value.get(), other.value.get());
                    });
}

bool areEqual(const Document& left, const Document& right) {
  return areEqual(left.variables, right.variables) && left.metaDataOffsets == right.metaDataOffsets &&
         std::equal(left.metaData.begin(), left.metaData.end(), right.metaData.begin(), right.metaData.end(),
                    [](const VariableMetaData& one, const VariableMetaData& other) {
                      return one.variable == other.variable && areEqual(one.entries, other.entries);
                    });
}

std::string describe(const Outcome& outcome) {
  return outcome.document ? "it was read" : outcome.failure;
}

/// A text may hold the parser's words, too.
bool isUnexplained(const std::string& failure) {
  const std::size_t behindPlace = failure.find(": ");
  return behindPlace != std::string::npos && failure.compare(behindPlace, 22, ": the parser gives up ") == 0;
}

bool hasDollarNames(std::string_view text) {
  return text.find('$') != std::string_view::npos || text.find("\\u0024") != std::string_view::npos;
}

/// Give the forms of values that don't read as those values.
std::string lossOf(const std::vector<Variable>& variables) {
  for (const Variable& variable : variables) {
    const std::string form = losslessForm(variable.value.get());
    const Outcome again = readQuickly(PaddedText("{\"v\": " + form + "}"));
    if (!again.document) return again.failure + " in the form " + form;
    if (!hvEqual(again.document->variables.at(0).value.get(), variable.value.get()))
      return "another value has the form " + form;
  }
  return {};
}

/// What of a text is not what was read of it: nothing may be lost, and each value has a form that reads as
/// the value.
std::string lossOf(const Document& document, std::string_view text) {
  if (!hasDollarNames(text) && leavesOf(document.variables) != leavesOf(text))
    return "what was read has other leaves than the text";
  for (const VariableMetaData& metaData : document.metaData) {
    if (const std::string loss = lossOf(metaData.entries); !loss.empty()) return loss;
  }
  return lossOf(document.variables);
}

std::string compare(const PaddedText& content) {
  const Outcome quick = readQuickly(content);
  const Outcome exact = readExactly(content);
  if (quick.failure != exact.failure) return "quickly: " + describe(quick) + "\nexactly: " + describe(exact);
  if (isUnexplained(quick.failure)) return quick.failure;
  if (quick.document && !areEqual(*quick.document, *exact.document)) return "other values were read";
  if (!quick.document && !quick.failure.starts_with("line ")) return "no place: " + quick.failure;
  return quick.document ? lossOf(*quick.document, content.text()) : std::string();
}

}  // namespace

std::string disagreementOn(std::string_view bytes) {
  const std::size_t arrays = hvGetLiveArrayCount();
  const std::string disagreement = compare(PaddedText(bytes));
  if (disagreement.empty() && hvGetLiveArrayCount() != arrays) return "arrays are left behind";
  return disagreement;
}
