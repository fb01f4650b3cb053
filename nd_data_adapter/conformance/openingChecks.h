#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "nd_data_adapter/conformance/Answers.h"
#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/conformance/statements.h"

/// Questions, and how adapters are opened and closed.
namespace nd::conformance::checks {

/// Asks all that may be asked about a source, and gives the answers.
inline std::vector<bool> askAbout(CPPAdapterV2& adapter, const std::vector<std::u16string>& sources) {
  std::vector<bool> answers;
  for (const std::u16string& source : sources) {
    answers.push_back(adapter.isSourceValid(source));
    answers.push_back(adapter.supportsReading(source));
    answers.push_back(adapter.supportsWriting(source));
  }
  answers.push_back(adapter.isReady());
  return answers;
}

inline void answersQuestionsWithoutSideEffects(Subject& subject, Report& report) {
  const std::u16string good = subject.goodSource();
  const std::vector<std::u16string> sources = allSources(subject);
  const std::string before = subject.surroundings();
  const Answers undisturbed = Answers::of(*newAdapter(subject), good);

  const std::shared_ptr<CPPAdapterV2> prototype = newPrototype(subject);
  const std::vector<bool> first = askAbout(*prototype, sources);
  report.expect(askAbout(*prototype, sources) == first,
                "the same questions about the same sources get other answers the second time");
  expectSameAnswers(Answers::of(*cloneOf(*prototype), good), undisturbed, subject, report,
                    "A clone of a prototype that was asked about sources");

  const std::unique_ptr<CPPAdapterV2> adapter = cloneOf(*prototype);
  adapter->open(good);
  askAbout(*adapter, sources);
  Answers::of(*adapter);
  askAbout(*adapter, sources);
  expectSameAnswers(Answers::of(*adapter), undisturbed, subject, report,
                    "An open adapter that was asked about other sources");
  const auto expectNoTrace = [&](const std::string& what) {
    const std::string after = subject.surroundings();
    report.expect(after == before, what + " changed what is around: it was\n" + before + "and is\n" + after);
  };
  expectNoTrace("asking about sources and reading the good one");
  for (const std::u16string& source : sources) {
    const std::unique_ptr<CPPAdapterV2> reader = cloneOf(*prototype);
    reader->open(source);
    expectNoTrace("open of " + inQuotes(source));
    Answers::of(*reader);
    Client().readNowhere(*reader);
    expectNoTrace("reading " + inQuotes(source));
    reader->close();
    expectNoTrace("close of " + inQuotes(source));
    cloneOf(*prototype)->open(source);
    expectNoTrace("an adapter that was dropped with " + inQuotes(source) + " open");
  }
}

inline void tellsGoodSourcesFromAbsentOnes(Subject& subject, Report& report) {
  for (const std::u16string& source : goodSources(subject)) {
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    report.expect(adapter->isSourceValid(source),
                  "isSourceValid is false for the good source " + inQuotes(source));
    report.expect(adapter->supportsReading(source),
                  "supportsReading is false for the good source " + inQuotes(source));
    report.expect(adapter->open(source), "open is false for the good source " + inQuotes(source));
    report.expect(adapter->hasData(), "hasData is false for the good source " + inQuotes(source));
    Client client;
    const Statement statement = client.read(*adapter);
    report.expect(!statement.isFailure(),
                  "the good source " + inQuotes(source) + " can't be read: " + inQuotes(statement.message));
    report.expect(client.contents().hasVariables(),
                  "the good source " + inQuotes(source) + " gives no variable");
  }
  if (!subject.meetsAbsentSources()) return;
  for (const std::u16string& source : subject.absentSources()) {
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    report.expect(!adapter->isSourceValid(source),
                  "isSourceValid is true for the absent source " + inQuotes(source));
    const bool isFound = adapter->open(source);
    report.expect(!isFound || !subject.findsAbsentSourcesAtOpen(),
                  "open is true for the absent source " + inQuotes(source));
    report.expect(!adapter->hasData(), "hasData is true for the absent source " + inQuotes(source));
  }
}

/// Expects of an adapter without open source that it has no data and says so, whatever the client has seen.
inline void expectNothingIsOpen(CPPAdapterV2& adapter, const std::u16string& seen, Report& report,
                                const std::string& story) {
  report.expect(!adapter.hasData(), story + ": hasData is true, and nothing is open");
  for (const std::u16string& prevChecksum : {std::u16string(), seen}) {
    Client client;
    client.holdSomething();
    const Contents held = client.contents();
    const Statement statement = client.read(adapter, prevChecksum);
    expectStatedError(statement, adapter, report, story + ": getData with nothing open");
    expectStill(client, held, report, story + ": getData with nothing open");
  }
}

inline void opensAndClosesInAnyOrder(Subject& subject, Report& report) {
  using Adapter = CPPAdapterV2&;
  const std::u16string good = subject.goodSource();
  const std::u16string other = goodSources(subject).back();
  const std::vector<std::u16string> failing = failingSources(subject);
  const Answers ofGood = Answers::of(*newAdapter(subject), good);

  const std::vector<std::pair<std::string, std::function<void(Adapter)>>> stories = {
      {"Without a call", [](Adapter) {}},
      {"After close", [](Adapter adapter) { adapter.close(); }},
      {"After open", [&](Adapter adapter) { adapter.open(good); }},
      {"After open of another source", [&](Adapter adapter) { adapter.open(other); }},
      {"After open and getData of another source", [&](Adapter adapter) { Answers::of(adapter, other); }},
      {"After open, close",
       [&](Adapter adapter) {
         adapter.open(good);
         adapter.close();
       }},
      {"After open of another source, close, close",
       [&](Adapter adapter) {
         adapter.open(other);
         adapter.close();
         adapter.close();
       }},
      {"After open and getData of sources that can't be read", [&](Adapter adapter) {
         for (const std::u16string& source : failing) Answers::of(adapter, source);
       }}};
  for (const auto& each : stories) {
    const std::string& story = each.first;
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    const auto close = [&](const std::string& then) {
      adapter->close();
      if (subject.hasDataOnlyWhileOpen())
        expectNothingIsOpen(*adapter, ofGood.checksum, report, story + then);
    };
    each.second(*adapter);
    report.expect(adapter->open(good), story + ": open is false for a good source");
    expectSameAnswers(Answers::of(*adapter), ofGood, subject, report, story + ", open");
    close(", open, close");
    adapter->open(failing.empty() ? other : failing.front());
    close(", open, close, open of another source, close");
  }
  if (subject.hasDataOnlyWhileOpen())
    expectNothingIsOpen(*newAdapter(subject), ofGood.checksum, report, "Before any open");
}

}  // namespace nd::conformance::checks
