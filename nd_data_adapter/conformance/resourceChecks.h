#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "nd_data_adapter/conformance/Answers.h"
#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/conformance/openFiles.h"

/// What stays behind, and what an adapter has to bear.
namespace nd::conformance::checks {

/// Asks an open adapter for all that it can do.
inline void askAll(CPPAdapterV2& adapter) {
  Answers::of(adapter);
  adapter.isReady();
  adapter.hasVariants();
  Client client;
  client.readNowhere(adapter);
  client.getConditionalDataNowhere(adapter);
}

inline void releasesAllWithoutClose(Subject& subject, Report& report) {
  const std::size_t arraysBefore = hvGetLiveArrayCount();
  const std::vector<std::string> filesBefore = openFiles();
  {
    Client client;
    std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    adapter->open(subject.goodSource());
    client.read(*adapter);
    const Contents held = client.contents();
    adapter.reset();
    report.expect(client.contents().equals(held),
                  "when the adapter goes, its client no longer holds what was read");
    for (const std::u16string& source : allSources(subject)) {
      adapter = newAdapter(subject);
      adapter->open(source);
      askAll(*adapter);
    }
  }
  const std::string files = openedSince(filesBefore);
  report.expect(files.empty(),
                "adapters were dropped without close, and these files are still open: " + files);
  report.expect(hvGetLiveArrayCount() == arraysBefore,
                "adapters were dropped without close, and arrays are left of them");
}

inline void leaksNoArray(Subject& subject, Report& report) {
  for (const std::u16string& source : allSources(subject)) {
    const std::size_t before = hvGetLiveArrayCount();
    {
      const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
      adapter->open(source);
      askAll(*adapter);
      adapter->close();
    }
    const std::size_t after = hvGetLiveArrayCount();
    report.expect(after == before, "after reads of " + inQuotes(source) + " there are " +
                                       std::to_string(after) + " host arrays, and before there were " +
                                       std::to_string(before));
  }
}

inline void keepsNoFileHandle(Subject& subject, Report& report) {
  for (const std::u16string& source : allSources(subject)) {
    const std::vector<std::string> before = openFiles();
    const auto expectNone = [&](const std::string& when) {
      const std::string files = openedSince(before);
      std::string finding = "the source is " + inQuotes(source);
      finding.append(", and ").append(when).append(" these files are still open: ").append(files);
      report.expect(files.empty(), std::move(finding));
    };
    std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    adapter->open(source);
    if (!subject.mayHoldFilesWhileOpen()) expectNone("after open");
    askAll(*adapter);
    if (!subject.mayHoldFilesWhileOpen()) expectNone("after getData");
    adapter->close();
    expectNone("after close");
    adapter.reset();
    expectNone("when the adapter is gone");
  }
}

inline void bearsEmptyPointers(Subject& subject, Report& report) {
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(subject.goodSource());
  Client client;
  const Statement statement = client.readNowhere(*adapter);
  report.expect(!statement.isFailure(),
                "a good source can't be read into an empty pointer: " + inQuotes(statement.message));
  client.getConditionalDataNowhere(*adapter);
  client.writeNothing(*adapter);
  for (const std::u16string& source : failingSources(subject)) {
    adapter->open(source);
    report.expect(client.readNowhere(*adapter).isFailure(),
                  "no error is stated for " + inQuotes(source) + " if the workspace is an empty pointer");
  }
}

inline void bearsAnyText(Subject& subject, Report& report) {
  for (const std::u16string& text : subject.oddTexts()) {
    try {
      const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
      adapter->isSourceValid(text);
      adapter->supportsReading(text);
      adapter->supportsWriting(text);
      adapter->open(text);
      askAll(*adapter);
      adapter->close();
    } catch (const std::exception& thrown) {
      report.expect(false, std::string(thrown.what()) +
                               "; only getData and writeData may fail, and they state it in their error");
    }
  }
}

}  // namespace nd::conformance::checks
