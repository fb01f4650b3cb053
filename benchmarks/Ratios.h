#pragma once

#include <string>

#include <benchmark/benchmark.h>

/// Name the benchmark of the same run by which this one is to be measured: its floor, or a peer. Counters of
/// the same name are compared like the times.
///
/// Of benchmarks with one argument, each is measured by the floor's of the same argument, written behind its
/// name as in "Floor/10"; beyond the times, what they grow by for each one of the argument is compared.
inline void measureBy(benchmark::State& state, const std::string& floor) {
  state.SetLabel(floor);
}
