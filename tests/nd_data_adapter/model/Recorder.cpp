#include "tests/nd_data_adapter/model/Recorder.h"

namespace model_test {

void Recorder::changed(const lx::base::ChangeSet& changes) noexcept {
  if (step_) step_(changes);
  std::string text;
  if (!changes.label().isEmpty()) text += "label " + written(changes.label()) + " ";
  for (const ModelElement& element : changes.created()) text += "+" + nameOf(element) + " ";
  for (const ModelElement& element : changes.destroyed()) text += "-" + nameOf(element) + " ";
  for (const auto& change : changes.changes()) {
    for (const unsigned index : change->properties()) {
      const auto property = change->element().getMetaClass().propertyByIndex(index);
      text += nameOf(change->element()) + "." + lx::text::toUtf8(property.getName()) + " was " +
              written(change->oldValue(index)) + " ";
    }
  }
  if (!text.empty()) text.pop_back();
  notices_.push_back(text);
}

std::string Recorder::nameOf(const ModelElement& element) const {
  if (!element) return "none";
  for (const auto& [named, name] : names_) {
    if (named == element) return name;
  }
  return "a " + lx::text::toUtf8(element.getMetaClass().getName());
}

std::string Recorder::written(const Value& value) const {
  if (value.is<ModelElement>()) return nameOf(value.as<ModelElement>());
  if (!value.is<std::vector<ModelElement>>()) return model_test::written(value);
  std::string text = "[";
  for (const ModelElement& element : value.as<std::vector<ModelElement>>()) {
    text += (text.size() == 1 ? "" : " ") + nameOf(element);
  }
  return text + "]";
}

}  // namespace model_test
