#pragma once

#include <memory>
#include <string>
#include <vector>

#include "nd_data_adapter/conformance/Answers.h"
#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"

/// What reads deliver, and what the checksum says of it.
namespace nd::conformance::checks {

inline void checksumFollowsTheContent(Subject& subject, Report& report) {
  if (!subject.answersFromSourceAlone())
    return report.skip("the checksum doesn't come from the source alone");
  if (!subject.canChangeSources()) return report.skip("the sources can't be changed");
  const std::u16string good = subject.goodSource();
  const auto checksumOfAnother = [&] {
    const std::unique_ptr<CPPAdapterV2> another = newAdapter(subject);
    another->open(good);
    return another->getCurrentChecksum();
  };
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  const std::u16string first = adapter->getCurrentChecksum();
  report.expect(!first.empty(), "the checksum of a good source is empty");
  report.expect(adapter->getCurrentChecksum() == first, "the checksum changes when it is asked for again");
  Client().read(*adapter);
  report.expect(adapter->getCurrentChecksum() == first, "the checksum changes by a read");
  report.expect(checksumOfAnother() == first, "two adapters give the same source different checksums");

  subject.changeGoodSource();
  const std::u16string changed = adapter->getCurrentChecksum();
  report.expect(changed != first, "the content has changed, and the checksum is still " + inQuotes(first));
  report.expect(checksumOfAnother() == changed,
                "an adapter that was open before the content changed gives another checksum than one that is "
                "opened afterwards");
  subject.rewriteGoodSource();
  const std::u16string rewritten = adapter->getCurrentChecksum();
  report.expect(rewritten != changed,
                "the content has changed, and the checksum is still " + inQuotes(changed));
  if (subject.keepsChecksumOfRewrittenSource()) {
    report.expect(rewritten == first,
                  "the content is that of the beginning, and the checksum is another one");
    subject.rewriteGoodSource();
    report.expect(adapter->getCurrentChecksum() == rewritten,
                  "the same content was written again, and the checksum is another one");
  }
}

inline void replacesWhatTheClientHeld(Subject& subject, Report& report) {
  if (!subject.replacesWhatTheClientHeld()) return report.skip("a read adds to what the client holds");
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(subject.goodSource());
  Client fresh;
  fresh.read(*adapter);
  const Contents wanted = fresh.contents();
  const auto compare = [&](const Client& client, const std::string& story) {
    const Contents held = client.contents();
    report.expect(held.equals(wanted, subject.answersFromSourceAlone()),
                  story + " holds " + held.describe() + " and not " + wanted.describe());
  };
  Client client;
  client.holdSomething();
  client.read(*adapter);
  compare(client, "A client who held other data and metadata");
  client.read(*adapter);
  compare(client, "A client who reads twice");
}

inline void readsWhatTheClientHasNotSeen(Subject& subject, Report& report) {
  if (!subject.answersFromSourceAlone()) return report.skip("the data don't come from the source alone");
  const std::u16string good = subject.goodSource();
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  Client client;
  client.read(*adapter);
  const Contents first = client.contents();
  const std::u16string checksum = adapter->getCurrentChecksum();
  client.read(*adapter, checksum);
  report.expect(client.contents().equals(first),
                "A client who holds the data and has seen their checksum ends up with " +
                    client.contents().describe() + " and not " + first.describe());
  Client stranger;
  stranger.read(*adapter, u"the checksum of another content");
  report.expect(stranger.contents().equals(first), "A client who has seen another checksum ends up with " +
                                                       stranger.contents().describe() + " and not " +
                                                       first.describe());
  if (!subject.canChangeSources()) return;
  subject.changeGoodSource();
  const Contents changed = Answers::of(*newAdapter(subject), good).contents;
  report.expect(!changed.equals(first), "a changed source is read as " + changed.describe() + ", as before");
  client.read(*adapter, checksum);
  report.expect(client.contents().equals(changed),
                "A client who has seen the checksum of the former content ends up with " +
                    client.contents().describe() + " and not " + changed.describe());
}

inline void leavesTheClientsDataAfterAnError(Subject& subject, Report& report) {
  const std::vector<std::u16string> sources = failingSources(subject);
  if (sources.empty()) return report.skip("every source can be read");
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  for (const std::u16string& source : sources) {
    const auto compare = [&](const Client& client, const Contents& before, const std::string& who) {
      const Contents after = client.contents();
      report.expect(after.isStill(before), "The read of " + inQuotes(source) + " failed, and " + who +
                                               " holds " + after.describe() + " and no longer " +
                                               before.describe());
    };
    Client client;
    client.holdSomething();
    const Contents held = client.contents();
    adapter->open(source);
    report.expect(client.read(*adapter).isFailure(), "no error is stated for " + inQuotes(source));
    compare(client, held, "a client with data from elsewhere");

    adapter->open(subject.goodSource());
    Client reader;
    reader.read(*adapter);
    const Contents good = reader.contents();
    adapter->open(source);
    reader.read(*adapter);
    compare(reader, good, "a client with data from another source");
  }
}

inline void statesErrorsWithNameAndSource(Subject& subject, Report& report) {
  const std::vector<std::u16string> sources = failingSources(subject);
  if (sources.empty()) return report.skip("every source can be read");
  for (const std::u16string& source : sources) {
    const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
    adapter->open(source);
    const Statement statement = Client().read(*adapter);
    if (!report.expect(statement.isFailure(), "no error is stated for " + inQuotes(source))) continue;
    const int number = static_cast<int>(statement.diagnostic);
    report.expect(number >= 1 && number <= 7, "the diagnostic for " + inQuotes(source) + " is " +
                                                  std::to_string(number) +
                                                  ", which is none of the enumeration");
    report.expect(!statement.message.empty(), "the error for " + inQuotes(source) + " has no message");
    report.expect(statement.adapter == adapter->getAdapterName(),
                  "the error for " + inQuotes(source) + " names the adapter " + inQuotes(statement.adapter));
    report.expect(statement.source == source,
                  "the error for " + inQuotes(source) + " names the source " + inQuotes(statement.source));
  }
}

inline void refusesWhatItSaysItCanNotDo(Subject& subject, Report& report) {
  const std::u16string good = subject.goodSource();
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  if (!adapter->supportsWriting(good)) {
    const std::string before = subject.surroundings();
    const Statement statement = Client().writeNothing(*adapter);
    report.expect(statement.isFailure(), "supportsWriting is false, and writeData states no error");
    report.expect(subject.surroundings() == before,
                  "supportsWriting is false, and writeData changed something");
  }
  report.expect(adapter->hasVariants() == !adapter->getVariantControls().empty(),
                adapter->hasVariants() ? "hasVariants is true, and getVariantControls is empty"
                                       : "hasVariants is false, and getVariantControls names controls");
}

}  // namespace nd::conformance::checks
