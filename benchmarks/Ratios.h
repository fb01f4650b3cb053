#pragma once

#include <benchmark/benchmark.h>

/// Name the benchmark of the same run by which this one is to be measured: its floor, or a peer.
inline void measureBy(benchmark::State& state, const char* floor) {
  state.SetLabel(floor);
}
