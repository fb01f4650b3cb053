#include <map>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/conformance/faults/Fault.h"

namespace {

/// A subject that leaves the good source as it is when it should change it.
class NeverChanged final : public Lines<LineAdapter> {
 public:
  void changeGoodSource() override {}
};

/// Keeps for good what a source held when it was first read.
bool deliverWhatWasReadFirst(AlteredAdapter& self, const CPPAdapterV2::Workspace& dataCache,
                             CPPAdapterV2::MetaDataCache& metaDataCache, const std::u16string& prevChecksum,
                             AlteredAdapter::Error& error) {
  static std::map<std::u16string, std::string> contents;
  std::string content;
  if (!self.readContent(content)) {
    return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
  }
  AlteredAdapter::Variables variables;
  AlteredAdapter::parse(contents.emplace(self.boundSource(), content).first->second, variables);
  inClearArraysInDesiredWS(dataCache);
  AlteredAdapter::assign(variables, dataCache);
  metaDataCache.clear();
  AlteredAdapter::addUnit(metaDataCache);
  return true;
}

}  // namespace

std::vector<Fault> readingFaults() {
  using namespace broken;
  const char* const checksum = "ChecksumFollowsTheContent";
  const char* const seen = "ReadsWhatTheClientHasNotSeen";
  const auto original = [](auto& self) { return self.LineAdapter::getCurrentChecksum(); };
  const auto number = [](auto value) { return lx::text::toUtf16(std::to_string(value)); };
  return {
      altered("HasNoChecksum", checksum, "the checksum of a good source is empty",
              {.checksum = [](auto&) { return u""; }}),
      altered("CountsTheQuestions", checksum, "the checksum changes when it is asked for again",
              {.checksum = [=](auto& self) { return original(self) + number(++self.count); }}),
      altered("CountsTheReads", checksum, "the checksum changes by a read",
              {.checksum = [=](auto& self) { return original(self) + number(self.count); },
               .getData =
                   [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     ++self.count;
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("TakesItselfIntoTheChecksum", checksum, "two adapters give the same source different checksums",
              {.checksum =
                   [=](auto& self) {
                     static int objects = 0;
                     if (self.count == 0) self.count = ++objects;
                     return original(self) + number(self.count);
                   }}),
      altered("TakesTheBeginningForAChecksum", checksum,
              "the content has changed at its end, and the checksum is still 'gain 1'",
              {.checksum =
                   [](auto& self) {
                     std::string content;
                     if (self.isOpen()) self.readContent(content);
                     return lx::text::toUtf16(content.substr(0, 6));
                   }}),
      planted<TakesTheSizeForAChecksum>("TakesTheSizeForAChecksum", checksum,
                                        "the content has changed, and the checksum is still"),
      altered("RemembersTheFirstChecksum", checksum,
              "gives another checksum than one that is opened afterwards",
              {.checksum =
                   [=](auto& self) {
                     if (self.note.empty()) self.note = original(self);
                     return self.note + original(self);
                   }}),
      altered("TiresOfChanges", checksum, "the content has changed, and the checksum is still",
              {.checksum =
                   [=](auto& self) {
                     const std::u16string now = original(self);
                     if (now != self.note && ++self.count <= 3) self.note = now;
                     return self.note;
                   }}),
      planted<TakesTheTimeForAChecksum>(
          "TakesTheTimeForAChecksum", checksum,
          "the content is that of the beginning, and the checksum is another one"),
      planted<TakesTheTimeForAChecksum>(
          "TakesTheTimeAgain", checksum,
          "the same content was written again, and the checksum is another one"),

      planted<AddsToTheMetadata>("AddsToTheMetadata", "ReplacesWhatTheClientHeld",
                                 "A client who reads twice"),
      altered("KeepsOtherVariables", "ReplacesWhatTheClientHeld",
              "A client who held other data and metadata holds gain = 1, held_by_the_client",
              {.getData =
                   [](auto& self, auto&... arguments) {
                     const auto& [dataCache, metaDataCache, prevChecksum, error] = std::tie(arguments...);
                     const CPPAdapterV2::Workspace own = inCreateWorkspace(16);
                     if (!self.LineAdapter::getData(own, metaDataCache, prevChecksum, error)) return false;
                     std::string content;
                     AlteredAdapter::Variables variables;
                     self.readContent(content);
                     AlteredAdapter::parse(content, variables);
                     AlteredAdapter::assign(variables, dataCache);
                     return true;
                   }}),
      planted<TrustsAnyChecksum>("TrustsAnyChecksum", seen, "A client who has seen another checksum"),
      altered("ClearsForThoseWhoHaveSeenAll", seen,
              "A client who holds the data and has seen their checksum ends up with nothing",
              {.getData =
                   [=](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                     if (self.isOpen() && !prevChecksum.empty() && prevChecksum == original(self)) {
                       inClearArraysInDesiredWS(dataCache);
                       metaDataCache.clear();
                       return true;
                     }
                     return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                   }}),
      altered("ReadsOnceAndForAll", seen, "a changed source is read as gain = 1",
              {.getData = deliverWhatWasReadFirst}),
      {"NeverChanged", seen, "a changed source is read as gain = 1", make<NeverChanged>},
  };
}
