#include "tests/adapters/json/AdapterFixture.h"

#include <memory>

#include "tests/adapters/json/arrays.h"

using nd::data::adapter::AdapterDiagnostic;
using nd::data::adapter::AdapterError;
using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;

std::ostream& operator<<(std::ostream& stream, const ContainerState& state) {
  for (const std::string& variable : state.variables) stream << variable;
  for (const std::u16string& name : state.metaData) stream << "metadata: " << lx::text::toUtf8(name) << "\n";
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
  inAssignInDesiredWS(arrays::scalar(1).get(), "former", workspace_);
  MetaDataEntry entry = MetaDataEntry::create(model_);
  entry.setName(u"former");
  container_.impl()->getMetaDataCacheMutable().add(entry);
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
  WorkSpaceIterator walk(workspace_, false, false, true);
  const hvArray* value = nullptr;
  std::string name;
  while (walk.get_next_variable(value, name)) state.variables.push_back(hvFormat(value, name));
  state.metaData = container_.metaDataCache().keys();
  return state;
}

ErrorState AdapterFixture::failure(AdapterDiagnostic diagnostic, const std::u16string& message,
                                   const std::u16string& source) {
  return {diagnostic, message, u"JSON", source};
}
