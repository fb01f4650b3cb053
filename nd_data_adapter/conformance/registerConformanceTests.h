#pragma once

#include <concepts>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "nd_data_adapter/conformance/FileSubject.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/conformance/checks.h"

namespace nd::conformance {

/// Fail the running test with what a check found, or skip it if the check had nothing to ask.
inline void expectNothingFound(const Report& report) {
  if (!report.findings().empty()) {
    ADD_FAILURE() << "The adapter breaks its contract:\n" << report;
  } else if (!report.skipped().empty()) {
    GTEST_SKIP() << report.skipped();
  }
}

/// A check as a test of GoogleTest.
class ConformanceTest : public testing::Test {
 public:
  ConformanceTest(const Check& check, SubjectFactory makeSubject)
      : check_(check), makeSubject_(std::move(makeSubject)) {}

  void TestBody() override { expectNothingFound(run(check_, makeSubject_)); }

 private:
  Check check_;
  SubjectFactory makeSubject_;
};

/// Have GoogleTest hold an adapter against the whole contract, in a test for each promise.
///
/// Call it before the tests run, as by the initialisation of a variable; the suite's name must be free:
///
///     struct Ini : nd::conformance::FileSubject { … };
///     const bool registered = nd::conformance::registerConformanceTests<Ini>("IniAdapterConformance");
template <std::derived_from<Subject> S>
bool registerConformanceTests(const std::string& suite, const Place& where = Place::here()) {
  for (const Check& check : allChecks) {
    testing::RegisterTest(suite.c_str(), check.name, nullptr, nullptr, where.file.data(), where.line,
                          [&check]() -> ConformanceTest* {
                            return new ConformanceTest(check, [] { return std::make_unique<S>(); });
                          });
  }
  return true;
}

}  // namespace nd::conformance
