#include "tests/nd_data_adapter/model/ModelTest.h"

#include <sstream>

#include <boost/shared_ptr.hpp>

#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"

namespace model_test {

namespace {

template <class T>
bool write(std::ostream& out, const Value& value) {
  if (!value.is<T>()) return false;
  using lx::base::meta::detail::toText;
  out << '"' << lx::text::toUtf8(toText(value.as<T>())) << '"';
  return true;
}

template <class T>
bool writePointer(std::ostream& out, const Value& value) {
  if (!value.is<T>()) return false;
  out << static_cast<const void*>(value.as<T>().get());
  return true;
}

void write(std::ostream& out, const ModelElement& element) {
  out << static_cast<const void*>(element.impl());
}

bool writeList(std::ostream& out, const Value& value) {
  if (value.is<std::vector<ModelElement>>()) {
    out << '[';
    for (const ModelElement& element : value.as<std::vector<ModelElement>>()) write(out, element), out << ' ';
    out << ']';
    return true;
  }
  if (!value.is<Texts>()) return false;
  out << '[';
  for (const std::u16string& text : value.as<Texts>()) out << '"' << lx::text::toUtf8(text) << "\" ";
  out << ']';
  return true;
}

}  // namespace

std::string written(const Value& value) {
  std::ostringstream out;
  if (value.is<ModelElement>()) {
    write(out, value.as<ModelElement>());
  } else if (value.is<Model>()) {
    out << static_cast<const void*>(value.as<Model>().impl());
  } else if (!write<std::u16string>(out, value) && !write<bool>(out, value) &&
             !write<ChangeType>(out, value) && !write<nd::data::adapter::AdapterType>(out, value) &&
             !write<nd::data::adapter::AdapterDiagnostic>(out, value) && !writeList(out, value) &&
             !writePointer<boost::shared_ptr<inWorkSpace_tag>>(out, value) &&
             !writePointer<std::shared_ptr<CPPAdapterV2>>(out, value)) {
    out << '?';
  }
  return out.str();
}

std::string stateOf(const Model& model) {
  std::ostringstream out;
  for (const ModelElement& element : model.impl()->elements()) {
    write(out, element);
    out << ' ' << lx::text::toUtf8(element.getMetaClass().getName()) << " in ";
    write(out, element.container());
    for (const lx::base::meta::Property& property : element.getMetaClass().getProperties()) {
      out << ' ' << lx::text::toUtf8(property.getName()) << '='
          << written(element.impl()->getPropertyValue(property));
    }
    out << '\n';
  }
  return out.str();
}

ChangeReport reportOf(const Model& model, const std::vector<std::u16string>& ids) {
  const ChangeReport report = ChangeReport::create(model);
  for (const std::u16string& id : ids) report.createIntoChanges(ChangeTuple::Builder().setId(id));
  return report;
}

ConditionControlChangeReport variantsOf(const Model& model, const std::vector<std::u16string>& names) {
  const ConditionControlChangeReport report = ConditionControlChangeReport::create(model);
  int count = 0;
  for (const std::u16string& name : names) {
    report.createIntoVariants(ConditionControlChangeEntry::Builder().setName(name).setPreviousValue(
        lx::text::toUtf16(std::to_string(count++))));
  }
  return report;
}

DataContainer containerOf(const Model& model, const std::vector<std::u16string>& names) {
  const DataContainer container = DataContainer::create(model);
  for (const std::u16string& name : names) {
    container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(name));
  }
  return container;
}

std::vector<std::u16string> idsOf(const ChangeReport& report) {
  std::vector<std::u16string> result;
  for (const ChangeTuple& tuple : report.changes()) result.push_back(tuple.id());
  return result;
}

std::vector<std::u16string> namesOf(const ConditionControlChangeReport& report) {
  std::vector<std::u16string> result;
  for (const ConditionControlChangeEntry& entry : report.variants()) {
    result.push_back(entry.name() + u":" + entry.previousValue());
  }
  return result;
}

}  // namespace model_test
