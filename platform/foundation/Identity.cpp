#include "platform/foundation/Identity.h"

#include <boost/uuid/random_generator.hpp>

namespace lx::base::detail {

boost::uuids::uuid randomIdentity() {
  static auto& generator = *new boost::uuids::random_generator_mt19937;  // outlives all that may ask
  return generator();
}

}  // namespace lx::base::detail
