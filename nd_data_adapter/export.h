#pragma once

// ND_DATA_ADAPTER_EXPORT marks what the library's shared object offers to others.
#define ND_DATA_ADAPTER_EXPORT __attribute__((visibility("default")))
