#pragma once

#include <boost/uuid/uuid.hpp>

#include "platform/export.h"

namespace lx::base::detail {

/// Give a new random identity (RFC 4122, version 4). The generator is seeded by the system once.
/// Any thread may ask.
ND_PLATFORM_EXPORT boost::uuids::uuid randomIdentity();

}  // namespace lx::base::detail
