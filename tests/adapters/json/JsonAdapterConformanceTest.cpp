#include <filesystem>
#include <memory>
#include <string>

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

/// Files with a tagged value and metadata that include another one. It is only the included file that
/// changes.
class JsonFilesThatInclude final : public nd::conformance::FileSubject {
 public:
  JsonFilesThatInclude()
      : FileSubject({.extension = ".json",
                     .good = including("good_part"),
                     .otherGood = including("next_part"),
                     .bad = {including("fail_part"), including("lost_part"), including("bad_3"),
                             R"({"$include": "good_part.json", "$meta": {"no_variable": {}}})",
                             R"({"$include": "good_part.json", "gain": {"$class": "int8"}})"}}) {
    write("good_part", FirstPart);
    write("next_part", NextPart);
    write("fail_part", FailingPart);
  }

  std::shared_ptr<CPPAdapterV2> makeAdapter() override {
    return std::make_shared<nd::adapters::json::JsonAdapter>();
  }
  void changeGoodSource() override { change("good_part", NextPart); }
  void changeEndOfGoodSource() override { change("good_part", R"({"limit": [1, 2, 9]})"); }
  void rewriteGoodSource() override {
    write("good_part", FirstPart);
    FileSubject::rewriteGoodSource();
  }
  void spoilGoodSource() override { change("good_part", FailingPart); }
  void removeGoodSource() override { std::filesystem::remove(pathOf("good_part")); }

 private:
  static constexpr const char* FirstPart = R"({"limit": [1, 2, 3]})";
  static constexpr const char* NextPart = R"({"limit": [4, 5, 6]})";
  static constexpr const char* FailingPart = R"({"limit": [4, 5, 6})";

  static std::string including(const std::string& name) {
    return R"({"$include": ")" + name +
           R"(.json", "gain": {"$class": "int8", "$size": [2, 1], "$data": [1, -1]},
               "$meta": {"limit": {"unit": "V"}, "gain": {"description": "of the inner loop"}}})";
  }
};

[[maybe_unused]] const bool registered =
    nd::conformance::registerConformanceTests<JsonFiles>("JsonAdapterConformance") &&
    nd::conformance::registerConformanceTests<JsonFilesThatInclude>("JsonAdapterConformanceWithIncludes");

}  // namespace
