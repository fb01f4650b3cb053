#include "tests/adapters/json/AdapterFixture.h"

#include <memory>

#include "platform/foundation/Cast.h"
#include "tests/adapters/json/arrays.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;

namespace {

std::vector<std::string> shown(const boost::shared_ptr<inWorkSpace_tag>& workspace) {
  std::vector<std::string> variables;
  WorkSpaceIterator walk(workspace, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) variables.push_back(hvFormat(value, name));
  return variables;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const ContainerState& state) {
  for (const std::string& variable : state.variables) stream << variable;
  for (const std::u16string& name : state.metaData) stream << "metadata: " << lx::text::toUtf8(name) << "\n";
  for (const std::string& content : state.contentOfMetaData) stream << content;
  return stream;
}

std::ostream& operator<<(std::ostream& stream, const ErrorState& state) {
  return stream << static_cast<int>(state.diagnostic) << ", " << lx::text::toUtf8(state.message) << ", "
                << lx::text::toUtf8(state.adapter) << ", " << lx::text::toUtf8(state.source);
}

AdapterFixture::AdapterFixture() : container_(DataContainer::create(model_)) {
  container_.setDataCache(workspace_);
}

AdapterFixture::~AdapterFixture() {
  container_.destroyContainer();
  container_.impl()->getMetaDataCacheMutable().clear();
  inClearArraysInDesiredWS(workspace_);
  EXPECT_EQ(hvGetLiveArrayCount(), arraysBefore_);
}

std::u16string AdapterFixture::write(std::string_view name, std::string_view content) const {
  return lx::text::toUtf16(folder_.write(name, content));
}

std::u16string AdapterFixture::sourceOf(std::string_view name) const {
  return lx::text::toUtf16(folder_.path(name));
}

void AdapterFixture::fillContainer() {
  for (const char* const name : {"former", "a"}) {
    inAssignInDesiredWS(arrays::scalar(77).get(), name, workspace_);
    const boost::shared_ptr<inWorkSpace_tag> entries = inCreateWorkspace(1);
    inAssignInDesiredWS(arrays::row(u"former unit").get(), "unit", entries);
    const DataContainer holder = DataContainer::create(model_);
    holder.setDataCache(entries);
    const MetaDataEntry entry = MetaDataEntry::create(model_);
    entry.setName(lx::text::toUtf16(name));
    entry.setValue(holder);
    container_.impl()->getMetaDataCacheMutable().add(entry);
  }
}

void AdapterFixture::emptyContainer() {
  inClearArraysInDesiredWS(workspace_);
  container_.impl()->getMetaDataCacheMutable().clear();
}

ErrorState AdapterFixture::getData(const std::u16string& prevChecksum) {
  const AdapterError error = AdapterError::create(model_);
  error.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u"");
  AdapterError handed = error;
  const bool succeeded =
      adapter_.getData(workspace_, container_.impl()->getMetaDataCacheMutable(), prevChecksum, handed);
  EXPECT_EQ(succeeded, error.getId() == AdapterDiagnostic::NoDiagnostic);
  return {error.getId(), error.errorMessage(), error.getAdapterName(), error.getSource()};
}

std::u16string AdapterFixture::sentenceOfGetData() {
  AdapterError error = AdapterError::create(model_);
  adapter_.getData(workspace_, container_.impl()->getMetaDataCacheMutable(), u"", error);
  const auto destroy = [](ndsvDiagnosticImpl* diagnostic) { ndsvDestroyDiagnostic(diagnostic); };
  const std::unique_ptr<ndsvDiagnosticImpl, decltype(destroy)> diagnostic(
      AdapterError::convertAdapterErrorsToDiagnostic({error}), destroy);
  return diagnostic ? ndsvFormatDiagnostic(diagnostic.get()) : std::u16string();
}

ContainerState AdapterFixture::state() const {
  ContainerState state;
  state.variables = shown(workspace_);
  state.metaData = container_.metaDataCache().keys();
  for (const MetaDataEntry& entry : container_.metaDataCache()) {
    for (const std::string& each : shown(lx::base::castTo<DataContainer>(entry.value()).dataCache()))
      state.contentOfMetaData.push_back(lx::text::toUtf8(entry.name()) + "." + each);
  }
  return state;
}

const hvArray* AdapterFixture::entry(const std::u16string& variable, const std::string& name) const {
  const MetaDataEntry found = container_.metaDataCache().find(variable);
  if (!found) return nullptr;
  return inGetValueFromWorkspace(name, lx::base::castTo<DataContainer>(found.value()).dataCache());
}

ErrorState AdapterFixture::failure(AdapterDiagnostic diagnostic, const std::u16string& message,
                                   const std::u16string& source) {
  return {diagnostic, message, u"JSON", source};
}
