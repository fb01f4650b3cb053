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
  std::vector<std::u16string> sources = failingSources(subject);
  sources.push_back(good);
  sources.push_back(subject.otherGoodSource());
  const std::string before = subject.surroundings();
  const Answers undisturbed = Answers::of(*newAdapter(subject), good);

  const std::shared_ptr<CPPAdapterV2> prototype = subject.makeAdapter();
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
  report.expect(subject.surroundings() == before, "asking and reading changed what is around: it was\n" +
                                                      before + "and is\n" + subject.surroundings());
}

inline void tellsGoodSourcesFromAbsentOnes(Subject& subject, Report& report) {
  for (const std::u16string& source : {subject.goodSource(), subject.otherGoodSource()}) {
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
    report.expect(!adapter->open(source), "open is true for the absent source " + inQuotes(source));
    report.expect(!adapter->hasData(), "hasData is true for the absent source " + inQuotes(source));
  }
}

inline void opensAndClosesInAnyOrder(Subject& subject, Report& report) {
  using Adapter = CPPAdapterV2&;
  const std::u16string good = subject.goodSource();
  const std::u16string other = subject.otherGoodSource();
  const std::vector<std::u16string> failing = failingSources(subject);
  const Answers ofGood = Answers::of(*newAdapter(subject), good);
  const Answers ofNothing = Answers::of(*newAdapter(subject));

  const std::vector<std::pair<std::string, std::function<void(Adapter)>>> beforeOpen = {
      {"close", [](Adapter adapter) { adapter.close(); }},
      {"open", [&](Adapter adapter) { adapter.open(good); }},
      {"open of another source", [&](Adapter adapter) { adapter.open(other); }},
      {"open and getData of another source", [&](Adapter adapter) { Answers::of(adapter, other); }},
      {"open, close",
       [&](Adapter adapter) {
         adapter.open(good);
         adapter.close();
       }},
      {"open of another source, close, close",
       [&](Adapter adapter) {
         adapter.open(other);
         adapter.close();
         adapter.close();
       }},
      {"open and getData of sources that can't be read", [&](Adapter adapter) {
         for (const std::u16string& source : failing) Answers::of(adapter, source);
       }}};
  for (const auto& [story, act] : beforeOpen) {
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    act(*adapter);
    report.expect(adapter->open(good), "After " + story + ": open is false for a good source");
    expectSameAnswers(Answers::of(*adapter), ofGood, subject, report, "After " + story + ", open");
    adapter->close();
    expectSameAnswers(Answers::of(*adapter), ofNothing, subject, report, "After " + story + ", open, close");
  }
}

}  // namespace nd::conformance::checks
