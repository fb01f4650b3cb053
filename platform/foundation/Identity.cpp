#include "platform/foundation/Identity.h"

#include <mutex>

#include <boost/uuid/random_generator.hpp>

namespace lx::base::detail {

boost::uuids::uuid randomIdentity() {
  struct Source {
    std::mutex mutex;
    boost::uuids::random_generator_mt19937 generator;
  };
  static Source& source = *new Source;  // outlives all that may ask
  const std::scoped_lock lock(source.mutex);
  return source.generator();
}

}  // namespace lx::base::detail
