#pragma once

#include <array>
#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/conformance/brokerCheck.h"
#include "nd_data_adapter/conformance/failureChecks.h"
#include "nd_data_adapter/conformance/identityChecks.h"
#include "nd_data_adapter/conformance/openingChecks.h"
#include "nd_data_adapter/conformance/readingChecks.h"
#include "nd_data_adapter/conformance/resourceChecks.h"

namespace nd::conformance {

/// One promise of the contract, and what looks whether an adapter keeps it.
struct Check {
  /// The promise as a name: "LeavesTheClientsDataAfterAnError".
  const char* name;
  void (*look)(Subject& subject, Report& report);
  /// Counts what is left behind. What an adapter makes once for the whole process doesn't count, so that such
  /// a check looks twice and the first time doesn't tell.
  bool counts = false;
};

/// All checks, in the order in which a new adapter comes to pass them.
inline constexpr std::array allChecks{
    Check{"KeepsItsNameSectionAndExtensions", checks::keepsItsNameSectionAndExtensions},
    Check{"ListsExtensionsWithTheirDot", checks::listsExtensionsWithTheirDot},
    Check{"TellsGoodSourcesFromAbsentOnes", checks::tellsGoodSourcesFromAbsentOnes},
    Check{"MakesFreshClones", checks::makesFreshClones},
    Check{"MakesClonesThatShareNothing", checks::makesClonesThatShareNothing},
    Check{"AnswersQuestionsWithoutSideEffects", checks::answersQuestionsWithoutSideEffects},
    Check{"OpensAndClosesInAnyOrder", checks::opensAndClosesInAnyOrder},
    Check{"ReplacesWhatTheClientHeld", checks::replacesWhatTheClientHeld},
    Check{"ReadsWhatTheClientHasNotSeen", checks::readsWhatTheClientHasNotSeen},
    Check{"ChecksumFollowsTheContent", checks::checksumFollowsTheContent},
    Check{"LeavesTheClientsDataAfterAnError", checks::leavesTheClientsDataAfterAnError},
    Check{"StatesErrorsWithNameAndSource", checks::statesErrorsWithNameAndSource},
    Check{"RefusesWhatItSaysItCanNotDo", checks::refusesWhatItSaysItCanNotDo},
    Check{"BearsEmptyPointers", checks::bearsEmptyPointers},
    Check{"BearsAnyText", checks::bearsAnyText},
    Check{"LeaksNoArray", checks::leaksNoArray, true},
    Check{"KeepsNoFileHandle", checks::keepsNoFileHandle, true},
    Check{"ReleasesAllWithoutClose", checks::releasesAllWithoutClose, true},
    Check{"ServesTheBroker", checks::servesTheBroker},
};

using SubjectFactory = std::function<std::unique_ptr<Subject>()>;

/// Run one check on a subject of its own. What the adapter throws is a finding, too.
///
///     for (const Check& check : allChecks) std::cout << check.name << '\n' << run(check, makeSubject);
inline Report run(const Check& check, const SubjectFactory& makeSubject) {
  Report report;
  try {
    const std::unique_ptr<Subject> subject = makeSubject();
    const bool hasWhatItMeets =
        report.expect(!subject->meetsBadSources() || !subject->badSources().empty(),
                      "no bad source was handed over; let meetsBadSources be false if there can't be one") &&
        report.expect(
            !subject->meetsAbsentSources() || !subject->absentSources().empty(),
            "no absent source was handed over; let meetsAbsentSources be false if there can't be one") &&
        report.expect(
            !subject->hasOtherGoodSource() || subject->otherGoodSource() != subject->goodSource(),
            "no other good source was handed over; let hasOtherGoodSource be false if there can't be one");
    if (!hasWhatItMeets) return report;
    if (check.counts) {
      Report ignored;
      check.look(*makeSubject(), ignored);
    }
    check.look(*subject, report);
  } catch (const std::exception& thrown) {
    report.expect(false, thrown.what());
  } catch (...) {
    report.expect(false, "something was thrown that is no std::exception");
  }
  return report;
}

}  // namespace nd::conformance
