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

  subject.changeEndOfGoodSource();
  report.expect(adapter->getCurrentChecksum() != first,
                "the content has changed at its end, and the checksum is still " + inQuotes(first));
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
  const auto compare = [&](const Client& client, const Contents& wanted, const std::string& who) {
    const Contents held = client.contents();
    report.expect(subject.replacesWhatTheClientHeld() ? held.equals(wanted) : held.includes(wanted),
                  who + " ends up with " + held.describe() + " and not " + wanted.describe());
  };
  const std::unique_ptr<CPPAdapterV2> adapter = newAdapter(subject);
  adapter->open(good);
  Client client;
  client.read(*adapter);
  const Contents first = client.contents();
  const std::u16string checksum = adapter->getCurrentChecksum();
  client.read(*adapter, checksum);
  compare(client, first, "A client who holds the data and has seen their checksum");
  Client stranger;
  stranger.read(*adapter, u"the checksum of another content");
  compare(stranger, first, "A client who has seen another checksum");
  if (!subject.canChangeSources()) return;
  subject.changeGoodSource();
  const Contents changed = Answers::of(*newAdapter(subject), good).contents;
  report.expect(!changed.equals(first), "a changed source is read as " + changed.describe() + ", as before");
  client.read(*adapter, checksum);
  compare(client, changed, "A client who has seen the checksum of the former content");
}

}  // namespace nd::conformance::checks
