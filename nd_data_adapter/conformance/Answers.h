#pragma once

#include <string>
#include <vector>

#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"

namespace nd::conformance {

/// What an adapter answers, as it stands, to all that a client may ask: to compare two adapters.
struct Answers {
  bool hasData = false;
  std::u16string checksum;
  std::vector<std::u16string> externalSources;
  std::vector<std::u16string> variantControls;
  Statement statement;
  Contents contents;

  static Answers of(CPPAdapterV2& adapter) {
    Answers answers;
    answers.hasData = adapter.hasData();
    answers.checksum = adapter.getCurrentChecksum();
    answers.externalSources = adapter.getExternalSources();
    answers.variantControls = adapter.getVariantControls();
    Client client;
    answers.statement = client.read(adapter);
    answers.contents = client.contents();
    return answers;
  }

  /// Open an adapter and give its answers.
  static Answers of(CPPAdapterV2& adapter, const std::u16string& source) {
    adapter.open(source);
    return of(adapter);
  }
};

/// Note where two adapters answer differently that must not; `story` begins the sentence. Values and checksum
/// count only if the subject says that they come from the source alone.
inline void expectSameAnswers(const Answers& actual, const Answers& wanted, const Subject& subject,
                              Report& report, const std::string& story) {
  const bool withValues = subject.answersFromSourceAlone();
  const auto but = [](const auto& is, const auto& should) { return " is " + is + " and not " + should; };
  const auto number = [](const Statement& statement) {
    return std::to_string(static_cast<int>(statement.diagnostic));
  };
  report.expect(actual.hasData == wanted.hasData, story + ": hasData" +
                                                      but(std::string(actual.hasData ? "true" : "false"),
                                                          std::string(wanted.hasData ? "true" : "false")));
  report.expect(!withValues || actual.checksum == wanted.checksum,
                story + ": the checksum" + but(inQuotes(actual.checksum), inQuotes(wanted.checksum)));
  report.expect(actual.externalSources == wanted.externalSources,
                story + ": getExternalSources gives another list");
  report.expect(actual.variantControls == wanted.variantControls,
                story + ": getVariantControls gives another list");
  report.expect(
      actual.statement.diagnostic == wanted.statement.diagnostic,
      story + ": the diagnostic of getData" + but(number(actual.statement), number(wanted.statement)) +
          (actual.statement.isFailure() ? "; it says " + inQuotes(actual.statement.message) : std::string()));
  report.expect(
      actual.contents.equals(wanted.contents, withValues),
      story + ": getData delivers " + actual.contents.describe() + " and not " + wanted.contents.describe());
}

}  // namespace nd::conformance
