#pragma once

/// The test model is linked into the programs that use it.
#define PROBE_EXPORT
