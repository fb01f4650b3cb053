// What a model can do, shown on the classes of the library. Each part prints what it finds.

#include <iostream>
#include <string>
#include <thread>

#include <boost/uuid/string_generator.hpp>

#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/CreateElement.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/Query.h"
#include "platform/foundation/meta/Access.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "platform/text/Convert.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Transaction;
using lx::base::Value;
using lx::base::meta::MetaRegistry;
using lx::base::meta::Property;
using lx::base::meta::PropertySerializerRegistry;
using lx::text::toUtf8;

namespace {

std::string idsOf(const ChangeReport& report) {
  std::string ids;
  for (const ChangeTuple& tuple : report.changes()) ids += (ids.empty() ? "" : " ") + toUtf8(tuple.id());
  return "[" + ids + "]";
}

void elementsBelongToTheirModel() {
  // [elements]
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setX(ChangeType::Modify);
  tuple.setId(u"Gain");

  const ChangeTuple same = tuple;  // handles are shallow: both name one element
  same.destroy();
  std::cout << "alive: " << tuple.isAlive() << ", id: \"" << toUtf8(tuple.id()) << "\"\n";
  // [/elements]
}

void modelsHaveTheirPurposes() {
  // [models]
  const Model task = Model::createTransientModel();
  const auto uuid = boost::uuids::string_generator()("96e7e68d-dd59-3a6d-9f81-067fb4700702");
  const Model settings = Model::createRegistryModel(u"settings", uuid);
  std::cout << "transient: " << task.isTransient() << ", address: " << toUtf8(settings.address())
            << ", by its UUID: " << (settings.identifier() == uuid) << '\n';
  // [/models]
}

void containersOwnWhatTheyContain() {
  // [containment]
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"Gain");
  report.getChangesMutable().add(tuple);
  std::cout << idsOf(report) << ", contained: " << (tuple.container() == report) << '\n';

  report.destroy();
  std::cout << "alive: " << tuple.isAlive() << '\n';
  // [/containment]
}

void keysKeepTheirOrder() {
  // [keys]
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  for (const char16_t* name : {u"Speed", u"Altitude"}) {
    container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(name));
  }
  const MetaDataEntry altitude = container.metaDataCache().find(u"Altitude");
  altitude.setName(u"Thrust");  // moves to where its new key belongs
  for (const MetaDataEntry& entry : container.metaDataCache()) std::cout << toUtf8(entry.name()) << ' ';
  std::cout << '\n';
  // [/keys]
}

void whatIsNotCommittedIsUndone() {
  // [transactions]
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  {
    Transaction outer = model.impl()->beginTransaction(false);
    report.createIntoChanges(ChangeTuple::Builder().setId(u"kept"));
    {
      const Transaction inner = model.impl()->beginTransaction(false);
      report.getChangesMutable().clear();
      report.createIntoChanges(ChangeTuple::Builder().setId(u"lost"));
    }  // not committed: the report is as it was when the inner transaction began
    outer.commit();
  }
  std::cout << idsOf(report) << '\n';
  // [/transactions]
}

void aFailureLeavesNothingHalfMade() {
  // [failure]
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  const ChangeReport report = ChangeReport::create(model);
  try {
    Transaction transaction = model.impl()->beginTransaction(false);
    report.createIntoChanges(ChangeTuple::Builder().setId(u"Gain"));
    report.setPropertyValue(u"changes", Value(std::u16string(u"no list of elements")));
    transaction.commit();
  } catch (const std::exception& error) {
    std::cout << error.what() << '\n';
  }
  std::cout << idsOf(report) << '\n';
  // [/failure]
}

void aFrozenModelRefusesChanges() {
  // [freezing]
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  Transaction open = model.impl()->beginTransaction(false);
  tuple.setId(u"Gain");
  Model::Freezer::freeze(model);
  tuple.setId(u"Gain");  // changes nothing, so that nothing is refused
  try {
    tuple.setId(u"Offset");
  } catch (const std::exception& error) {
    std::cout << error.what() << '\n';
  }
  open.commit();  // was begun before
  {
    const Model::Thawer thawed = Model::Freezer::thaw(model);
    tuple.setId(tuple.id() + u" 2");
  }
  std::cout << toUtf8(tuple.id()) << ", frozen: " << model.impl()->isFrozen() << '\n';
  // [/freezing]
}

// [observer]
class Log final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet& changes) noexcept override {
    std::cout << "created " << changes.created().size() << ", destroyed " << changes.destroyed().size();
    for (const auto& change : changes.changes()) {
      for (const unsigned index : change->properties()) {
        const auto property = change->element().getMetaClass().propertyByIndex(index);
        std::cout << ", changed " << toUtf8(property.getQualifiedName());
        const Value old = change->oldValue(index);
        if (old.is<std::u16string>()) std::cout << " from " << toUtf8(old.as<std::u16string>());
      }
    }
    std::cout << '\n';
  }
};

void observersHearOfEachCommitOnce() {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"Gain");

  Log log;
  model.impl()->addObserver(log);
  Transaction transaction = model.impl()->beginTransaction(false);
  tuple.setId(u"Offset");
  tuple.setId(u"Bias");
  ChangeTuple::create(model);
  transaction.commit();  // one notice, with the value from before the transaction
  model.impl()->removeObserver(log);
}
// [/observer]

void buildersMakeWholeTrees() {
  // [builders]
  const Model model = Model::create();
  const ChangeReport report =
      ChangeReport::Builder(model)
          .setChanges(ChangeTuple::Builder().setId(u"Gain").setX(ChangeType::Create))
          .setChanges(ChangeTuple::Builder().setId(u"Offset").setX(ChangeType::Delete))
          .create();
  std::cout << idsOf(report) << '\n';
  // [/builders]
}

void reflectionKnowsEveryPropertyByName() {
  // [reflection]
  const Model model = Model::create();
  const AdapterConfig config = AdapterConfig::create(model);
  config.setPropertyValue(u"adapterName", Value(std::u16string(u"JSON")));
  for (const Property& property : config.getMetaClass().getProperties()) {
    std::cout << toUtf8(property.getName()) << ": " << toUtf8(property.getType().getName()) << '\n';
  }
  std::cout << toUtf8(config.getPropertyValue(u"adapterName").as<std::u16string>()) << '\n';
  // [/reflection]
}

void operationsAreCalledByName() {
  // [operations]
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  error.invoke(u"setError",
               {Value(AdapterDiagnostic::NoPermission), Value(u"locked"), Value(u"JSON"), Value(u"a.json")});
  std::cout << toUtf8(toText(error.invoke(u"getId", {}).as<AdapterDiagnostic>())) << '\n';
  try {
    error.invoke(u"setError", {Value(u"locked")});
  } catch (const std::exception& refusal) {
    std::cout << refusal.what() << '\n';
  }
  // [/operations]
}

void aTagSaysWhatReflectionMayRead() {
  // [access]
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  error.setError(AdapterDiagnostic::NoPermission, u"locked", u"JSON", u"a.json");
  const Property adapter = error.getMetaClass().property(u"Adapter");  // internal to its class
  const Value name = lx::base::meta::getPropertyValue(error, adapter, lx::base::access::Internal());
  std::cout << toUtf8(name.as<std::u16string>()) << '\n';
  try {
    lx::base::meta::getPropertyValue(error, adapter, lx::base::access::Public());
  } catch (const std::exception& refusal) {
    std::cout << refusal.what() << '\n';
  }
  // [/access]
}

void serializersTurnValuesIntoText() {
  // [serializers]
  const PropertySerializerRegistry& serializers = PropertySerializerRegistry::getInstance();
  const Property x = ChangeTuple::metaClass().property(u"x");
  const auto change = serializers.find(x.getType().getQualifiedName());
  std::cout << toUtf8(change->serializeValue(Value(ChangeType::Modify)))
            << ", read again: " << (change->parseValue(u"Modify") == Value(ChangeType::Modify))
            << ", absent: " << !change->serializeOptionalValue(change->createEmptyOptionalValue()) << '\n';

  const Property workspace = DataContainer::metaClass().property(u"DataCache");
  const auto pointer = serializers.find(workspace.getType().getQualifiedName());
  std::cout << "in memory only: " << pointer->isTransientOnly() << '\n';
  // [/serializers]
}

void aValueSaysToWhomItsContentBelongs() {
  // [unmanaged]
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  container.getConditionControlsMutable().assign({u"Mass", u"Drag"});
  Value controls = container.getPropertyValue(u"ConditionControls");
  const Value combined = PropertySerializerRegistry::getInstance()
                             .find(u"lx.base.String")
                             ->combineAsUnmanagedSequenceValue({Value(u"Mass"), Value(u"Drag")});
  std::cout << "unmanaged: " << controls.isUnmanaged() << ' ' << combined.isUnmanaged()
            << ", equal: " << (controls == combined) << '\n';
  lx::base::ValueMeta(controls).setUnmanaged();
  std::cout << "unmanaged: " << controls.isUnmanaged() << '\n';
  // [/unmanaged]
}

void theRegistryKnowsEveryType() {
  // [registry]
  const MetaRegistry& registry = MetaRegistry::getInstance();
  const lx::base::meta::Class tuple = ChangeTuple::metaClass();
  std::cout << toUtf8(registry.getType(u"String").getQualifiedName())
            << ", the same class: " << (registry.getClass(u"nd.data.adapter.ChangeTuple") == tuple) << '\n';
  try {
    registry.getClass(u"String");  // a type, but no class
  } catch (const std::exception& error) {
    std::cout << error.what() << '\n';
  }
  std::size_t properties = 0;
  std::thread([&] { properties = tuple.getProperties().size(); }).join();
  std::cout << properties << " properties\n";
  // [/registry]
}

void queriesFindElements() {
  // [queries]
  const Model model = Model::create();
  for (const ChangeType x : {ChangeType::Create, ChangeType::Delete, ChangeType::Delete}) {
    ChangeTuple::create(model).setX(x);
  }
  ChangeTuple::Constrainables wanted(model);
  wanted.x.equals(ChangeType::Delete);
  std::cout << lx::base::query::find<ChangeTuple>(wanted).size() << " deleted\n";
  // [/queries]
}

void proxiesStandForWhatIsNotLoaded() {
  // [proxies]
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  const auto uuid = boost::uuids::string_generator()("0f40bd84-e4d9-3112-ba83-02023181b729");
  const MetaDataEntry proxy = lx::base::createProxy<MetaDataEntry>(model, uuid);
  container.getMetaDataCacheMutable().add(proxy);
  std::cout << container.metaDataCache().size() << " loaded, " << container.metaDataCache().proxies().size()
            << " not\n";

  const MetaDataEntry entry = MetaDataEntry::create(model, uuid);  // the element comes
  entry.setName(u"Gain");
  container.getMetaDataCacheMutable().resolveProxy(proxy);
  std::cout << "found: " << (container.metaDataCache().find(u"Gain") == entry)
            << ", proxy alive: " << proxy.isAlive() << '\n';
  // [/proxies]
}

}  // namespace

int main() {
  std::cout << std::boolalpha;
  elementsBelongToTheirModel();
  modelsHaveTheirPurposes();
  containersOwnWhatTheyContain();
  keysKeepTheirOrder();
  whatIsNotCommittedIsUndone();
  aFailureLeavesNothingHalfMade();
  aFrozenModelRefusesChanges();
  observersHearOfEachCommitOnce();
  buildersMakeWholeTrees();
  reflectionKnowsEveryPropertyByName();
  operationsAreCalledByName();
  aTagSaysWhatReflectionMayRead();
  serializersTurnValuesIntoText();
  aValueSaysToWhomItsContentBelongs();
  theRegistryKnowsEveryType();
  queriesFindElements();
  proxiesStandForWhatIsNotLoaded();
}
