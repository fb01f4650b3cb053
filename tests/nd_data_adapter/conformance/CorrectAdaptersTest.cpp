#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/nd_data_adapter/conformance/natures.h"

using nd::conformance::allChecks;
using nd::conformance::Check;
using nd::conformance::Report;
using nd::conformance::run;
using nd::conformance::SubjectFactory;
using testing::IsEmpty;

namespace {

struct Correct {
  /// What the adapter is like.
  const char* name;
  SubjectFactory makeSubject;
  /// The checks that have nothing to ask of it.
  std::vector<std::string> skipped{};
};

std::vector<Correct> correctAdapters() {
  using namespace natures;
  using Texts = std::vector<std::u16string>;
  return {
      {"ReadsFiles", make<Lines<LineAdapter>>},
      {"ReadsFolders", make<FolderSubject>},
      {"HoldsItsFileOpen", make<OpenFile>},
      {"MakesItsData", make<Series>, {"ChecksumFollowsTheContent"}},
      {"CountsRevisions", make<Revisions>},
      {"Adds", make<Adds>, {"ReplacesWhatTheClientHeld"}},
      {"OpensLazily", make<Lazy>},
      {"NeedsNoSource", make<NeedsNoSource>},
      {"HasOneSource", make<OneSource>},
      {"NeverFails", make<Unfailing>, {"LeavesTheClientsDataAfterAnError", "StatesErrorsWithNameAndSource"}},
      {"ReadsWhatNobodyChanges", make<Fixed>, {"ChecksumFollowsTheContent"}},
      {"MustNotBeAskedForAnyText", make<Careful>},
      {"LeavesWhatTheClientHas",
       makeAltered(
           {.getData =
                [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                  return (self.isOpen() && !prevChecksum.empty() &&
                          prevChecksum == self.getCurrentChecksum()) ||
                         self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                }})},
      {"WritesAndHasVariants", makeAltered({.supportsWriting = [](auto&, auto&) { return true; },
                                            .writeData = [](auto&, auto&, auto&, auto&) { return true; },
                                            .hasVariants = [](auto&) { return true; },
                                            .variantControls =
                                                [](auto&) {
                                                  return Texts{u"speed", u"load"};
                                                }})},
      {"NamesWhatItDependsOn",
       makeAltered(
           {.externalSources = [](auto& self) { return self.isOpen() ? Texts{u"other.lines"} : Texts(); }})},
      {"HasAnEmptySection", makeAltered({.section = [](auto&) { return u""; }})},
      {"KeepsOneArrayForTheProcess",
       makeAltered(
           {.getData =
                [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                  static const hvArrayPtr constant(hvCreateDoubleScalar(1.0));
                  return self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error);
                }})},
      {"OpensOneFileForTheProcess", makeAltered({.open =
                                                     [](auto& self, auto& source) {
                                                       static const int file =
                                                           ::open("/dev/urandom", O_RDONLY);
                                                       return file >= 0 && self.LineAdapter::open(source);
                                                     }})},
      {"KeepsItsLastChecksum", makeAltered({.checksum =
                                                [](auto& self) {
                                                  if (self.isOpen())
                                                    self.note = self.LineAdapter::getCurrentChecksum();
                                                  return self.note;
                                                }})},
      {"DeliversInAnyOrder",
       makeAltered(
           {.getData =
                [](auto& self, auto& dataCache, auto& metaDataCache, auto& prevChecksum, auto& error) {
                  static int reads = 0;
                  std::string content;
                  AlteredAdapter::Variables variables;
                  if (!self.LineAdapter::getData(dataCache, metaDataCache, prevChecksum, error)) return false;
                  self.readContent(content);
                  AlteredAdapter::parse(content, variables);
                  if (++reads % 2 == 0) std::reverse(variables.begin(), variables.end());
                  inClearArraysInDesiredWS(dataCache);
                  AlteredAdapter::assign(variables, dataCache);
                  return true;
                }})},
  };
}

class CorrectAdapter : public testing::TestWithParam<Correct> {};

}  // namespace

TEST_P(CorrectAdapter, HasNoFindings) {
  std::vector<std::string> skipped;
  for (const Check& check : allChecks) {
    const Report report = run(check, GetParam().makeSubject);
    EXPECT_THAT(report.findings(), IsEmpty()) << check.name;
    if (!report.skipped().empty()) skipped.emplace_back(check.name);
  }
  EXPECT_EQ(skipped, GetParam().skipped);
}

INSTANTIATE_TEST_SUITE_P(Natures, CorrectAdapter, testing::ValuesIn(correctAdapters()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(Checks, RegisterNothingForGoodIfTheAdapterIsThereAlready) {
  const auto registered = std::make_shared<LineAdapter>();
  using nd::data::adapter::AdapterManagerV2;
  ASSERT_TRUE(AdapterManagerV2::registerCPPAdapter(registered));
  EXPECT_THAT(run(checkNamed("ServesTheBroker"), make<Lines<LineAdapter>>).findings(), IsEmpty());
  EXPECT_TRUE(AdapterManagerV2::unregisterAdapterByName(u"Lines"));
}
