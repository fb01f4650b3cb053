// Reads a JSON file of parameters and shows two of them, or says why that can't be done:
//
//     example_embed ../parameters/flight_control.json

// [smallest]
#include <iostream>

#include "adapters/json/register.h"
#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/text/Convert.h"

using namespace nd::data::adapter;

int main(int argc, char** argv) {
  const std::u16string source = lx::text::toUtf16(argc > 1 ? argv[1] : "flight_control.json");
  nd::adapters::registerJsonAdapter();

  const lx::base::Model model = lx::base::Model::create();
  const DataContainer container = DataContainer::create(model);
  container.setDataCache(inCreateWorkspace(100));

  // A source that can't be opened is no special case: the read says in words what is wrong.
  AdapterManagerV2::openSource(source, u"JSON", {});
  const AdapterError error = AdapterManagerV2::getData(source, u"JSON", container, u"", model);
  AdapterManagerV2::closeSource(source, u"JSON", {});

  if (ndsvDiagnosticImpl* const why = AdapterError::convertAdapterErrorsToDiagnostic({error})) {
    std::cerr << lx::text::toUtf8(ndsvFormatDiagnostic(why)) << '\n';
    ndsvDestroyDiagnostic(why);
    return 1;
  }
  for (const std::string name : {"SampleTime", "Gain"}) {
    const hvArray* const value = inGetValueFromWorkspace(name, container.dataCache());
    std::cout << (value == nullptr ? "There is no " + name + ".\n" : hvFormat(value, name));
  }
}
// [/smallest]
