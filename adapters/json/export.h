#pragma once

// ND_JSON_ADAPTER_EXPORT marks what the module of the JSON adapter offers to others.
#define ND_JSON_ADAPTER_EXPORT __attribute__((visibility("default")))
