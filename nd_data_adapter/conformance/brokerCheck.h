#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "nd_data_adapter/conformance/Answers.h"
#include "nd_data_adapter/conformance/Client.h"
#include "nd_data_adapter/conformance/Report.h"
#include "nd_data_adapter/conformance/Subject.h"
#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"

/// The road of one read, as a tool goes it.
namespace nd::conformance::checks {

/// Tells whether the adapter that is registered under a name is of the same class as another one.
inline bool isRegistered(const std::u16string& name, const CPPAdapterV2& like) {
  const std::shared_ptr<CPPAdapterV2> found =
      data::adapter::AdapterRegistryV2::getInstance().getNewCPPAdapter(name);
  const CPPAdapterV2* const adapter = found.get();
  return adapter != nullptr && typeid(*adapter) == typeid(like);
}

/// Registers an adapter for the time of a scope, unless its name is taken.
class Registration {
 public:
  explicit Registration(const std::shared_ptr<CPPAdapterV2>& adapter)
      : name_(adapter->getAdapterName()),
        isOurs_(data::adapter::AdapterManagerV2::registerCPPAdapter(adapter)) {}
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;
  bool isOurs() const noexcept { return isOurs_; }
  ~Registration() {
    if (isOurs_) data::adapter::AdapterManagerV2::unregisterAdapterByName(name_);
  }

 private:
  std::u16string name_;
  bool isOurs_;
};

/// Closes a source at the end of a scope, also when opening it has thrown.
class Opening {
 public:
  Opening(std::u16string source, std::u16string section)
      : source_(std::move(source)), section_(std::move(section)) {}
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;
  ~Opening() { data::adapter::AdapterManagerV2::closeSource(source_, section_, {}); }

  bool open() { return data::adapter::AdapterManagerV2::openSource(source_, section_, {}); }

 private:
  std::u16string source_;
  std::u16string section_;
};

inline void servesTheBroker(Subject& subject, Report& report) {
  using Broker = data::adapter::AdapterManagerV2;
  using data::adapter::AdapterDiagnostic;
  const std::u16string source = subject.goodSource();
  const std::shared_ptr<CPPAdapterV2> prototype = newPrototype(subject);
  const std::u16string name = prototype->getAdapterName();
  const std::u16string section = prototype->getSectionName();
  const Registration registration(prototype);
  if (!report.expect(registration.isOurs() || isRegistered(name, *subject.makeAdapter()),
                     "the broker doesn't register the adapter: its name " + inQuotes(name) +
                         " is that of another one")) {
    return;
  }

  const std::vector<std::u16string> names = Broker::getAllRegisteredAdapterNames();
  report.expect(std::find(names.begin(), names.end(), name) != names.end(),
                "the broker doesn't list the adapter under its name " + inQuotes(name));
  report.expect(Broker::doesSourceExist(source), "the broker says that the good source doesn't exist");
  report.expect(Broker::hasReadingAdapters(source), "the broker knows nobody who reads the good source");

  Opening opening(source, section);
  report.expect(opening.open(), "the broker can't open the good source for the section " + inQuotes(section));
  Client client;
  const data::adapter::AdapterError error =
      Broker::getData(source, section, client.container(), {}, client.model());
  report.expect(error.getId() == AdapterDiagnostic::NoDiagnostic,
                "the broker can't read the good source: " + inQuotes(error.errorMessage()));
  const Contents held = client.contents();
  const Contents wanted = Answers::of(*newAdapter(subject), source).contents;
  report.expect(held.equals(wanted, subject.answersFromSourceAlone()),
                "the broker gets " + held.describe() + " from the good source and not " + wanted.describe());
  Broker::getChecksum(source, section);
  Broker::getExternalSources(source, section);

  for (const std::u16string& failing : failingSources(subject)) {
    Opening failingOne(failing, section);
    failingOne.open();
    const data::adapter::AdapterError stated =
        Broker::getData(failing, section, client.container(), {}, client.model());
    report.expect(stated.getId() != AdapterDiagnostic::NoDiagnostic,
                  "the broker is told of no error when it reads " + inQuotes(failing));
    report.expect(
        stated.getId() != AdapterDiagnostic::Unsupported || !stated.getAdapterName().empty(),
        "the broker does not bring " + inQuotes(failing) + " to the adapter: has it another extension?");
  }
}

}  // namespace nd::conformance::checks
