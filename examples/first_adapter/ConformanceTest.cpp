// [conformance]
#include <memory>

#include "GainsAdapter.h"
#include "nd_data_adapter/conformance/registerConformanceTests.h"

struct GainsFiles final : nd::conformance::FileSubject {
  GainsFiles()
      : FileSubject({.extension = ".gains",
                     .good = "speed 1\ntorque 20\n",
                     .otherGood = "speed 2\ntorque 30\n",
                     .bad = {"speed 3\ntorque\n", "speed 3\nspeed 4\n", "speed 3 4\n"}}) {}
  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<GainsAdapter>(); }
};

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<GainsFiles>("GainsAdapterConformance");
// [/conformance]
