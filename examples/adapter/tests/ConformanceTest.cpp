#include <memory>

#include <params/ParamsAdapter.h>

#include "nd_data_adapter/conformance/registerConformanceTests.h"

namespace {

class ParamsFiles final : public nd::conformance::FileSubject {
 public:
  ParamsFiles()
      : FileSubject({.extension = ".params",
                     .good = "gain = 1\nunit = \"m\"\n",
                     .otherGood = "gain = 2\nunit = \"s\"\n",
                     .bad = {"gain = 3\nunit = m\n", "gain = 3\nunit = \"\xFF\"\n", "gain"}}) {}

  std::shared_ptr<CPPAdapterV2> makeAdapter() override { return std::make_shared<params::ParamsAdapter>(); }
};

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<ParamsFiles>("ParamsAdapterConformance");

}  // namespace
