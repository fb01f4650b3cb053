#pragma once

// ND_PLATFORM_EXPORT marks what the platform's shared library offers to others.
#define ND_PLATFORM_EXPORT __attribute__((visibility("default")))
