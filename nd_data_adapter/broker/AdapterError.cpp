#include "nd_data_adapter/model/AdapterError.h"

#include <memory>

#include "nd_data_adapter/broker/messages.h"
#include "platform/services/Diagnostic.h"

namespace nd::data::adapter {

namespace {

struct DestroyDiagnostic {
  void operator()(ndsvDiagnosticImpl* diagnostic) const noexcept { ndsvDestroyDiagnostic(diagnostic); }
};
using DiagnosticPtr = std::unique_ptr<ndsvDiagnosticImpl, DestroyDiagnostic>;

/// Make the diagnostic of one error; null if it states no failure, and then its texts aren't asked for.
DiagnosticPtr makeDiagnostic(const AdapterError& error) {
  namespace messages = ndx::messages;
  const AdapterDiagnostic id = error.getId();
  if (id <= AdapterDiagnostic::NoDiagnostic || id > AdapterDiagnostic::AmbiguousSource) return nullptr;
  const std::u16string source = error.getSource();
  const std::u16string message = error.errorMessage();
  const auto make = [](const lx::services::CatalogMessage& text) {
    return DiagnosticPtr(ndsvCreateDiagnostic(text, u""));
  };
  switch (id) {
    case AdapterDiagnostic::NoDiagnostic:
      break;
    case AdapterDiagnostic::GenericFailure:
      return make(messages::AdapterErrorGeneric(source, message));
    case AdapterDiagnostic::Unsupported:
      return make(messages::AdapterErrorUnsupported(source, message));
    case AdapterDiagnostic::Inaccessible:
      return make(messages::AdapterErrorInaccessible(source, message));
    case AdapterDiagnostic::NoPermission:
      return make(messages::AdapterErrorNoPermission(source, message));
    case AdapterDiagnostic::UnrecognizedFormat:
      return make(messages::AdapterErrorUnrecognizedFormat(source, message));
    case AdapterDiagnostic::HardError:
      return make(messages::AdapterErrorHardError(source, message));
    case AdapterDiagnostic::AmbiguousSource:
      return make(messages::AdapterErrorAmbiguousSource(source, message));
  }
  return nullptr;
}

}  // namespace

void AdapterError::Impl::setError(const AdapterDiagnostic& d, const std::u16string& msg,
                                  const std::u16string& name, const std::u16string& source) {
  checkAlive("nd.data.adapter.AdapterError.setError");
  setDiagnostic(d);
  setErrorMessage(msg);
  setAdapter(name);
  setSourceFile(source);
}

AdapterDiagnostic AdapterError::Impl::getId() {
  checkAlive("nd.data.adapter.AdapterError.getId");
  return getDiagnostic();
}
std::u16string AdapterError::Impl::getAdapterName() {
  checkAlive("nd.data.adapter.AdapterError.getAdapterName");
  return getAdapter();
}
std::u16string AdapterError::Impl::getSource() {
  checkAlive("nd.data.adapter.AdapterError.getSource");
  return getSourceFile();
}

ndsvDiagnosticImpl* AdapterError::convertAdapterErrorsToDiagnostic(
    const std::vector<AdapterError>& errorMsgs) {
  DiagnosticPtr result;
  // Whom the making of a diagnostic lets act may change the caller's list and handles: each is a handle of
  // our own, taken by index.
  for (std::size_t at = 0; at < errorMsgs.size(); ++at) {
    const AdapterError error(errorMsgs[at].impl());
    if (!error.isAlive()) continue;
    DiagnosticPtr added = makeDiagnostic(error);
    if (added == result) {
      static_cast<void>(added.release());
    } else if (ndsvGetNumItemsInDiagnostic(added.get()) > 0) {
      ndsvDiagnosticImpl* joined = result.get();
      ndsvConcatenateDiagnosticsNoCheck(joined, added.get(), false);
      static_cast<void>(added.release());
      static_cast<void>(result.release());
      result.reset(joined);
    }
    error.impl()->destroy();
  }
  return result.release();
}

}  // namespace nd::data::adapter
