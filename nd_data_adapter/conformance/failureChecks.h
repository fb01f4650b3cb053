#pragma once

#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/conformance/statements.h"

/// What comes of sources that can't be read, and of what an adapter says that it can't do.
namespace nd::conformance::checks {

/// Spoils and removes the good source while an adapter has it open, and looks at a client who reads it again.
inline void leavesTheClientsDataWhenTheSourceFails(Subject& subject, Report& report) {
  const std::u16string good = subject.goodSource();
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  Client client;
  client.read(*adapter);
  const Contents held = client.contents();
  const std::u16string seen = adapter->getCurrentChecksum();
  const auto readAgain = [&](const std::string& story, bool mustFail) {
    for (const std::u16string& prevChecksum : {std::u16string(), seen}) {
      const bool fails = client.read(*adapter, prevChecksum).isFailure();
      report.expect(fails || !mustFail, story + ", and no error is stated");
      if (fails) expectStill(client, held, report, story);
    }
  };
  if (subject.meetsBadSources()) {
    subject.spoilGoodSource();
    readAgain("The good source was spoiled while it was open", true);
    subject.rewriteGoodSource();
  }
  if (subject.meetsAbsentSources()) {
    subject.removeGoodSource();
    readAgain("The good source was removed while it was open", !subject.mayHoldFilesWhileOpen());
  }
}

inline void leavesTheClientsDataAfterAnError(Subject& subject, Report& report) {
  const std::vector<std::u16string> sources = failingSources(subject);
  if (sources.empty()) return report.skip("every source can be read");
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  Client reader;
  adapter->open(subject.goodSource());
  reader.read(*adapter);
  const Contents good = reader.contents();
  const std::u16string seen = adapter->getCurrentChecksum();
  for (const std::u16string& source : sources) {
    adapter->open(source);
    for (const std::u16string& prevChecksum :
         {std::u16string(), seen, std::u16string(u"the checksum of another content")}) {
      const std::string story = "The read of " + inQuotes(source) +
                                " for a client who has seen the checksum " + inQuotes(prevChecksum);
      Client client;
      client.holdSomething();
      const Contents held = client.contents();
      report.expect(client.read(*adapter, prevChecksum).isFailure(), story + " states no error");
      expectStill(client, held, report, story + " and holds data from elsewhere");
      reader.read(*adapter, prevChecksum);
      expectStill(reader, good, report, story + " and holds data from another source");
    }
  }
  if (subject.canChangeSources()) leavesTheClientsDataWhenTheSourceFails(subject, report);
}

inline void statesErrorsWithNameAndSource(Subject& subject, Report& report) {
  const std::vector<std::u16string> sources = failingSources(subject);
  if (sources.empty()) return report.skip("every source can be read");
  for (const std::u16string& source : sources) {
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    adapter->open(source);
    expectStatedError(Client().read(*adapter), *adapter, source, report, "getData of " + inQuotes(source));
  }
}

inline void refusesWhatItSaysItCanNotDo(Subject& subject, Report& report) {
  const std::u16string good = subject.goodSource();
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  if (!adapter->supportsWriting(good)) {
    const std::string story = "writeData without supportsWriting";
    const std::string before = subject.surroundings();
    Client client;
    client.holdSomething();
    const Contents held = client.contents();
    expectStatedError(client.write(*adapter), *adapter, good, report, story);
    expectStill(client, held, report, story);
    report.expect(subject.surroundings() == before, story + " changes what is around");
  }
  report.expect(adapter->hasVariants() == !adapter->getVariantControls().empty(),
                adapter->hasVariants() ? "hasVariants is true, and getVariantControls is empty"
                                       : "hasVariants is false, and getVariantControls names controls");
}

}  // namespace nd::conformance::checks
