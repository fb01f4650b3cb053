#pragma once

/// The classes of the benchmarks are part of the benchmark program.
#define STOCK_EXPORT
