#pragma once

/// The classes of the tests are part of the test program.
#define SHOP_EXPORT
