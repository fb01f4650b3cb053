#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nd_data_adapter/conformance/FileSubject.h"
#include "nd_data_adapter/conformance/checks.h"
#include "nd_data_adapter/nd_data_adapter.h"
#include "tests/nd_data_adapter/conformance/BrokenAdapters.h"
#include "tests/nd_data_adapter/conformance/LineAdapter.h"

using nd::conformance::allChecks;
using nd::conformance::Check;
using nd::conformance::FileSubject;
using nd::conformance::Report;
using nd::conformance::run;
using nd::conformance::Subject;
using nd::conformance::SubjectFactory;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

template <class Adapter>
class Lines : public FileSubject {
 public:
  Lines()
      : FileSubject({.extension = ".lines",
                     .good = "gain 1\nrate 20\n",
                     .otherGood = "gain 2\nrate 30\n",
                     .bad = {"gain 3\nrate\n", "gain\n"}}) {}
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<Adapter>(); }
};

/// Allows what is no fault by itself, so that only the other half of it is one.
class LinesWithAnOpenFile final : public Lines<broken::ReleasesItsFileInCloseOnly> {
 public:
  bool mayHoldFilesWhileOpen() const override { return true; }
};

template <class S>
std::unique_ptr<Subject> make() {
  return std::make_unique<S>();
}

struct Fault {
  /// What the adapter does.
  const char* name;
  SubjectFactory makeSubject;
  /// The check that is there for it, and words of what it says.
  const char* check;
  const char* words;
};

template <class Adapter>
Fault fault(const char* name, const char* check, const char* words) {
  return {name, make<Lines<Adapter>>, check, words};
}

const std::vector<Fault>& faults() {
  using namespace broken;
  static const std::vector<Fault> all = {
      fault<GetsANameByItsOpening>("GetsANameByItsOpening", "KeepsItsNameSectionAndExtensions", "after open"),
      fault<ForgetsTheDot>("ForgetsTheDot", "ListsExtensionsWithTheirDot", "doesn't begin with a dot"),
      fault<TakesAnythingForASource>("TakesAnythingForASource", "TellsGoodSourcesFromAbsentOnes",
                                     "isSourceValid is true for the absent source"),
      fault<ClonesItsOpening>("ClonesItsOpening", "MakesFreshClones", "A clone of an open adapter"),
      fault<SharesItsOpening>("SharesItsOpening", "MakesClonesThatShareNothing",
                              "An open adapter whose clones were opened, read and dropped: getData delivers"),
      fault<BindsToWhatItIsAskedAbout>("BindsToWhatItIsAskedAbout", "AnswersQuestionsWithoutSideEffects",
                                       "An open adapter that was asked about other sources"),
      fault<StaysWithItsFirstSource>("StaysWithItsFirstSource", "OpensAndClosesInAnyOrder",
                                     "After open of another source, open: getData delivers"),
      fault<AddsToTheMetadata>("AddsToTheMetadata", "ReplacesWhatTheClientHeld", "A client who reads twice"),
      fault<TrustsAnyChecksum>("TrustsAnyChecksum", "ReadsWhatTheClientHasNotSeen",
                               "A client who has seen another checksum"),
      fault<TakesTheSizeForAChecksum>("TakesTheSizeForAChecksum", "ChecksumFollowsTheContent",
                                      "the content has changed, and the checksum is still"),
      fault<TakesTheTimeForAChecksum>("TakesTheTimeForAChecksum", "ChecksumFollowsTheContent",
                                      "the checksum is another one"),
      fault<DeliversWhileItReads>("DeliversWhileItReads", "LeavesTheClientsDataAfterAnError",
                                  "a client with data from elsewhere holds gain = 3"),
      fault<DropsTheMetadataFirst>("DropsTheMetadataFirst", "LeavesTheClientsDataAfterAnError",
                                   "a client with data from elsewhere"),
      fault<ForgetsTheSource>("ForgetsTheSource", "StatesErrorsWithNameAndSource", "names the source ''"),
      fault<SaysThatItWrote>("SaysThatItWrote", "RefusesWhatItSaysItCanNotDo", "writeData states no error"),
      fault<WantsAWorkspace>("WantsAWorkspace", "BearsEmptyPointers", "there is no workspace"),
      fault<ThrowsAtOddSources>("ThrowsAtOddSources", "BearsAnyText", "made an operation throw"),
      fault<LeaksAnArray>("LeaksAnArray", "LeaksNoArray", "host arrays"),
      fault<KeepsItsFileOpen>("KeepsItsFileOpen", "KeepsNoFileHandle",
                              "after open these files are still open"),
      {"ReleasesItsFileInCloseOnly", make<LinesWithAnOpenFile>, "ReleasesAllWithoutClose",
       "these files are still open"},
      fault<FailsBehindTheRead>("FailsBehindTheRead", "ServesTheBroker", "nobody asks this"),
  };
  return all;
}

const Check& checkNamed(const std::string& name) {
  const auto found = std::find_if(allChecks.begin(), allChecks.end(),
                                  [&](const Check& check) { return name == check.name; });
  if (found == allChecks.end()) throw std::logic_error("there is no check " + name);
  return *found;
}

class PlantedFault : public testing::TestWithParam<Fault> {};

}  // namespace

TEST_P(PlantedFault, IsFoundByTheCheckThatIsThereForIt) {
  const Report report = run(checkNamed(GetParam().check), GetParam().makeSubject);
  EXPECT_THAT(report.findings(), Contains(HasSubstr(GetParam().words)));
}

INSTANTIATE_TEST_SUITE_P(Faults, PlantedFault, testing::ValuesIn(faults()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(Checks, FindNothingInAnAdapterThatKeepsItsContract) {
  for (const Check& check : allChecks) {
    const Report report = run(check, make<Lines<LineAdapter>>);
    EXPECT_THAT(report.findings(), IsEmpty()) << check.name;
    EXPECT_EQ(report.skipped(), "") << check.name;
  }
}

TEST(Checks, HaveAFaultEachThatTheyFind) {
  std::set<std::string> proved;
  for (const Fault& each : faults()) proved.insert(each.check);
  for (const Check& check : allChecks) EXPECT_THAT(proved, Contains(std::string(check.name)));
}

TEST(Checks, HaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const Check& check : allChecks) EXPECT_TRUE(names.insert(check.name).second) << check.name;
}

TEST(Checks, AreAllInTheManual) {
  std::ifstream file(ND_WRITING_AN_ADAPTER);
  const std::string manual{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  for (const Check& check : allChecks) {
    EXPECT_THAT(manual, HasSubstr("| `" + std::string(check.name) + "` |"));
  }
}

TEST(Checks, SayOfAnAdapterWithoutClonesThatItCanNotBeOpened) {
  for (const char* const name : {"MakesFreshClones", "LeaksNoArray", "OpensAndClosesInAnyOrder"}) {
    const Report report = run(checkNamed(name), make<Lines<broken::HasNoClones>>);
    EXPECT_THAT(report.findings(), Contains(HasSubstr("clone gave null"))) << name;
  }
}

TEST(Checks, AskForTheSourcesThatTheSubjectForgot) {
  class WithoutBadSources : public Lines<LineAdapter> {
   public:
    std::vector<std::u16string> badSources() override { return {}; }
  };
  class WithoutAbsentSources : public Lines<LineAdapter> {
   public:
    std::vector<std::u16string> absentSources() override { return {}; }
  };
  for (const Check& check : allChecks) {
    EXPECT_THAT(run(check, make<WithoutBadSources>).findings(), Contains(HasSubstr("meetsBadSources")));
    EXPECT_THAT(run(check, make<WithoutAbsentSources>).findings(), Contains(HasSubstr("meetsAbsentSources")));
  }
}

TEST(Checks, AskForTwoGoodSourcesThatCanBeToldApart) {
  class WithTheSameTwice : public Lines<LineAdapter> {
   public:
    std::u16string otherGoodSource() override { return goodSource(); }
  };
  EXPECT_THAT(run(checkNamed("MakesClonesThatShareNothing"), make<WithTheSameTwice>).findings(),
              Contains(HasSubstr("gain = 1, rate = 20 (metadata 'unit'), so that they can't be told apart")));
}

TEST(Checks, AskLessWhereTheSubjectSaysThatTheAdapterCanNot) {
  class WithoutFailures : public Lines<LineAdapter> {
   public:
    bool meetsBadSources() const override { return false; }
    bool meetsAbsentSources() const override { return false; }
  };
  class Fixed : public Lines<LineAdapter> {
   public:
    bool canChangeSources() const override { return false; }
  };
  class Adding : public Lines<broken::AddsToTheMetadata> {
   public:
    bool replacesWhatTheClientHeld() const override { return false; }
  };
  class Timed : public Lines<LineAdapter> {
   public:
    bool keepsChecksumOfRewrittenSource() const override { return false; }
  };
  EXPECT_EQ(run(checkNamed("LeavesTheClientsDataAfterAnError"), make<WithoutFailures>).skipped(),
            "every source can be read");
  EXPECT_EQ(run(checkNamed("StatesErrorsWithNameAndSource"), make<WithoutFailures>).skipped(),
            "every source can be read");
  EXPECT_EQ(run(checkNamed("ChecksumFollowsTheContent"), make<Fixed>).skipped(),
            "the sources can't be changed");
  EXPECT_EQ(run(checkNamed("ReplacesWhatTheClientHeld"), make<Adding>).skipped(),
            "a read adds to what the client holds");
  const Report timed = run(checkNamed("ChecksumFollowsTheContent"), make<Timed>);
  EXPECT_THAT(timed.findings(), IsEmpty());
  EXPECT_EQ(timed.skipped(), "");
}

TEST(Checks, ReportWhatAnAdapterThrowsWhateverItIs) {
  class Thrower : public LineAdapter {
   public:
    CPPAdapterV2* clone() override { throw 7; }
  };
  const Report report = run(checkNamed("LeaksNoArray"), make<Lines<Thrower>>);
  EXPECT_THAT(report.findings(), Contains(HasSubstr("no std::exception")));
}

TEST(Checks, LeaveNothingRegisteredAndNothingOpen) {
  for (const Check& check : allChecks) run(check, make<Lines<LineAdapter>>);
  EXPECT_FALSE(nd::data::adapter::AdapterManagerV2::isExtensionRegistered(u".lines"));
  EXPECT_THAT(nd::data::adapter::AdapterManagerV2::getAllOpenedAdapterNamesWithSection(), IsEmpty());
}
