#pragma once

#include <memory>
#include <utility>

#include "nd_data_adapter/conformance/FileSubject.h"
#include "nd_data_adapter/conformance/checks.h"
#include "tests/nd_data_adapter/conformance/AlteredAdapter.h"

inline nd::conformance::FileContents contentsOfLines() {
  return {.extension = ".lines",
          .good = "gain 1\nrate 20\n",
          .otherGood = "gain 2\nrate 30\n",
          .bad = {"gain 3\nrate\n", "gain\n"}};
}

/// Files of lines for an adapter of any class.
template <class Adapter>
class Lines : public nd::conformance::FileSubject {
 public:
  Lines() : FileSubject(contentsOfLines()) {}
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<Adapter>(); }
};

/// Files of lines for an altered adapter.
class AlteredLines : public nd::conformance::FileSubject {
 public:
  explicit AlteredLines(AlteredAdapter::Ways ways) : FileSubject(contentsOfLines()), ways_(std::move(ways)) {}
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<AlteredAdapter>(ways_); }

 private:
  AlteredAdapter::Ways ways_;
};

template <class S>
std::unique_ptr<nd::conformance::Subject> make() {
  return std::make_unique<S>();
}

template <class S = AlteredLines>
nd::conformance::SubjectFactory makeAltered(AlteredAdapter::Ways ways) {
  return [ways = std::move(ways)] { return std::make_unique<S>(ways); };
}

/// Give the check of a name.
inline const nd::conformance::Check& checkNamed(const std::string& name) {
  for (const nd::conformance::Check& check : nd::conformance::allChecks) {
    if (name == check.name) return check;
  }
  throw std::logic_error("there is no check " + name);
}
