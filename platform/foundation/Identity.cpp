#include "platform/foundation/Identity.h"

#include <boost/uuid/random_generator.hpp>

namespace lx::base::detail {

boost::uuids::uuid randomIdentity() {
  thread_local boost::uuids::random_generator_mt19937 generator;
  return generator();
}

}  // namespace lx::base::detail
