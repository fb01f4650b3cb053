#include "benchmarks/reading/Roads.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <simdjson.h>

#include "adapters/json/register.h"
#include "nd_data_adapter/nd_data_adapter.h"

namespace reading {

namespace {

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::AdapterManagerV2;
using nd::data::adapter::DataContainer;

bool isSame(const hvArray* array, const std::vector<double>& numbers) {
  if (hvGetClassCode(array) != hvClassCode::Double || hvIsComplex(array)) return false;
  if (hvGetDimensions(array) != hvDims{1, numbers.size()}) return false;
  return std::memcmp(hvGetData<double>(array), numbers.data(), numbers.size() * sizeof(double)) == 0;
}

}  // namespace

NamedNumbers readByPeer(const std::string& path) {
  namespace ondemand = simdjson::ondemand;
  const simdjson::padded_string text = simdjson::padded_string::load(path);
  ondemand::parser parser;
  ondemand::document document = parser.iterate(text);
  NamedNumbers all;
  for (auto member : document.get_object()) {
    const std::string_view name = member.unescaped_key();
    std::vector<double>& numbers = all.emplace_back(name, std::vector<double>()).second;
    ondemand::value value = member.value();
    if (value.type() == ondemand::json_type::array) {
      for (auto element : value.get_array()) numbers.push_back(element.get_double());
    } else {
      numbers.push_back(value.get_double());
    }
  }
  return all;
}

boost::shared_ptr<inWorkSpace_tag> readByLibrary(const std::string& path) {
  nd::adapters::registerJsonAdapter();
  const std::u16string source = lx::text::toUtf16(path);
  const std::u16string section = u"JSON";
  const lx::base::Model model = lx::base::Model::create();
  const DataContainer container = DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(0);
  container.setDataCache(workspace);
  AdapterManagerV2::openSource(source, section, {});
  const AdapterError error = AdapterManagerV2::getData(source, section, container, u"", model);
  AdapterManagerV2::closeSource(source, section, {});
  if (error.getId() != AdapterDiagnostic::NoDiagnostic)
    throw std::runtime_error(lx::text::toUtf8(error.errorMessage()));
  return workspace;
}

std::string findDifference(const boost::shared_ptr<inWorkSpace_tag>& workspace, const NamedNumbers& numbers) {
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  for (const auto& [itsName, its] : numbers) {
    if (!walk.get_next_variable(value, name) || name != itsName || !isSame(value, its)) return itsName;
  }
  return walk.get_next_variable(value, name) ? name : std::string();
}

}  // namespace reading
