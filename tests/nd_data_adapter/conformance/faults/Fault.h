#pragma once

#include <ostream>
#include <utility>
#include <vector>

#include "tests/nd_data_adapter/conformance/BrokenAdapters.h"
#include "tests/nd_data_adapter/conformance/lines.h"

/// An adapter, or a subject, with one fault.
struct Fault {
  /// What it does.
  const char* name;
  /// The check that is there for it, and words of what it says.
  const char* check;
  const char* words;
  nd::conformance::SubjectFactory makeSubject;
};

/// Shows a fault in the message of a failing test.
inline void PrintTo(const Fault& fault, std::ostream* stream) {
  *stream << fault.name;
}

inline Fault altered(const char* name, const char* check, const char* words, AlteredAdapter::Ways ways) {
  return {name, check, words, makeAltered(std::move(ways))};
}

template <class Adapter>
Fault planted(const char* name, const char* check, const char* words) {
  return {name, check, words, make<Lines<Adapter>>};
}

std::vector<Fault> identityFaults();
std::vector<Fault> openingFaults();
std::vector<Fault> readingFaults();
std::vector<Fault> failureFaults();
std::vector<Fault> resourceFaults();
std::vector<Fault> brokerFaults();

/// Lists all faults that the checks have to find.
inline std::vector<Fault> allFaults() {
  std::vector<Fault> all;
  for (auto* const list :
       {identityFaults, openingFaults, readingFaults, failureFaults, resourceFaults, brokerFaults}) {
    for (Fault& fault : list()) all.push_back(std::move(fault));
  }
  return all;
}
