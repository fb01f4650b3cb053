#pragma once

#include <string>

#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"

namespace nd::conformance {

/// Expect an error that a person can use: a diagnostic of the enumeration, a message, the adapter's name.
/// `story` begins the sentence.
inline void expectStatedError(const Statement& statement, CPPAdapterV2& adapter, Report& report,
                              const std::string& story) {
  if (!report.expect(statement.isFailure(), story + " states no error")) return;
  const int number = static_cast<int>(statement.diagnostic);
  report.expect(number >= 1 && number <= 7, story + " states the diagnostic " + std::to_string(number) +
                                                ", which is none of the enumeration");
  report.expect(!statement.message.empty(), story + " states an error without a message");
  const std::u16string name = adapter.getAdapterName();
  report.expect(statement.adapter == name, story + " states an error of the adapter " +
                                               inQuotes(statement.adapter) + " and not of " + inQuotes(name));
}

/// Expect an error that names the source, too.
inline void expectStatedError(const Statement& statement, CPPAdapterV2& adapter, const std::u16string& source,
                              Report& report, const std::string& story) {
  expectStatedError(statement, adapter, report, story);
  report.expect(!statement.isFailure() || statement.source == source,
                story + " states an error of the source " + inQuotes(statement.source));
}

/// Expect that a client's data are as they were.
inline void expectStill(const Client& client, const Contents& before, Report& report,
                        const std::string& story) {
  const Contents after = client.contents();
  report.expect(after.isStill(before),
                story + ": the client holds " + after.describe() + " and no longer " + before.describe());
}

}  // namespace nd::conformance
