#include <memory>

#include "adapters/json/JsonAdapter.h"
#include "nd_data_adapter/conformance/registerConformanceTests.h"

namespace {

class JsonFiles final : public nd::conformance::FileSubject {
 public:
  JsonFiles()
      : FileSubject({.extension = ".json",
                     .good = R"({"gain": 1, "table": [[1, 2], [3, 4]], "plant": {"unit": "V"}})",
                     .otherGood = R"({"gain": 2, "table": [[5, 6], [7, 8]], "plant": {"unit": "A"}})",
                     .bad = {R"({"gain": 3, "table": [[1, 2], [3, 4]], "plant": {"unit": "V"})",
                             R"({"gain": 3, "table": [1, 2, 01]})", "{\"gain\": 3, \"unit\": \"\xFF\"}",
                             "[1, 2]", ""}}) {}

  std::shared_ptr<CPPAdapterV2> makeAdapter() override {
    return std::make_shared<nd::adapters::json::JsonAdapter>();
  }
};

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<JsonFiles>("JsonAdapterConformance");

}  // namespace
