#include "platform/host/Workspace.h"
#include "platform/services/CatalogMessage.h"
#include "tests/nd_data_adapter/model/allocation/Operations.h"

namespace allocation_test {

namespace {

boost::uuids::uuid someIdentity() {
  boost::uuids::uuid uuid{};
  uuid.data[0] = 7;
  return uuid;
}

/// Run what is to be refused by a catalogued exception.
template <class F>
void refused(F step) {
  try {
    step();
  } catch (const lx::services::CatalogMessage&) {
    return;
  }
  ADD_FAILURE() << "was not refused";
}

}  // namespace

std::vector<Operation> lifeOperations() {
  return {
      {"create", [](const World& world) { ChangeTuple::create(world.model); }},
      {"create one of each class",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         ChangeReport::create(world.model);
         ConditionControlChangeEntry::create(world.model);
         ConditionControlChangeReport::create(world.model);
         MetaDataEntry::create(world.model);
         DataContainer::create(world.model);
         CPPAdapterV2Entry::create(world.model);
         AdapterCacheV2::create(world.model);
         AdapterConfig::create(world.model);
         AdapterError::create(world.model);
         transaction.commit();
       }},
      {"create with an identity",
       [](const World& world) { ChangeTuple::create(world.model, someIdentity()); }},
      {"create with an identity in use",
       [](const World& world) {
         refused([&] { ChangeTuple::create(world.model, world.tuple.identifier()); });
       }},
      {"create in a new model",
       [](const World&) {
         reportOf(Model::create(), {u"a", Long});
       }},
      {"destroy", [](const World& world) { world.tuple.destroy(); }},
      {"destroy what is contained",
       [](const World& world) {
         if (world.report.changes().size() == 3) world.report.changes().at(1).destroy();
       }},
      {"destroy what is contained by its key",
       [](const World& world) {
         if (world.variants.variants().size() == 3) world.variants.variants().first().destroy();
       }},
      {"destroy with all contents", [](const World& world) { world.container.destroy(); }},
      {"destroy the cache", [](const World& world) { world.cache.destroy(); }},
      {"destroy what is gone", [](const World& world) { world.gone.destroy(); }},
      {"make a proxy", [](const World& world) { world.tuple.impl()->convertToProxy(); }},
      {"make a proxy of what contains", [](const World& world) { world.container.impl()->convertToProxy(); }},
      {"make a proxy of what is held by a key",
       [](const World& world) { world.cache.impl()->getCPPCache().first().impl()->convertToProxy(); }},
      {"ask for the identity", [](const World& world) { world.tuple.identifier(); }},
      {"ask the model for its identity", [](const World& world) { world.model.identifier(); }},
      {"list", [](const World& world) { world.model.impl()->elements(), world.model.impl()->roots(); }},
      {"query",
       [](const World& world) {
         ChangeTuple::Constrainables wanted(world.model);
         wanted.id.equals(Long);
         wanted.x.satisfies([](const ChangeType& x) { return x != ChangeType::Delete; });
         lx::base::query::find<ChangeTuple>(wanted);
       }},
      {"observe a model",
       [](const World& world) {
         Reader reader;
         world.second.impl()->addObserver(reader);
         world.second.impl()->removeObserver(reader);
       }},
      {"destroy a model", [](const World& world) { world.second.destroy(); }},
  };
}

Operation nameOfFreeEntry() {
  return {"name an entry that is free", [](const World& world) { world.held.setName(Long); }};
}

std::vector<Operation> valueOperations() {
  return {
      {"set a text", [](const World& world) { world.tuple.setId(Long); }},
      {"set a text of what is contained",
       [](const World& world) { world.report.changes().at(1).setId(u"new"); }},
      {"set a literal", [](const World& world) { world.tuple.setX(ChangeType::Delete); }},
      {"set a value to what it is", [](const World& world) { world.report.changes().at(1).setId(Long); }},
      {"set a truth value", [](const World& world) { world.config.setSupportsReading(true); }},
      {"set the other values of a configuration",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         world.config.setAdapterName(Long);
         world.config.setSection(Long);
         world.config.setAdapterType(AdapterType::HOBJAdapter);
         world.config.setSupportsWriting(true);
         transaction.commit();
       }},
      {"set an error",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         world.error.setError(nd::data::adapter::AdapterDiagnostic::HardError, Long, Long, Long);
         transaction.commit();
       }},
      {"set the message of an error", [](const World& world) { world.error.setErrorMessage(Long); }},
      {"set a previous value", [](const World& world) { world.entry.setPreviousValue(Long); }},
      {"set a key of what is free", [](const World& world) { world.entry.setName(Long); }},
      {"set the key of metadata", [](const World& world) { world.metadata.setName(Long); }},
      {"set a workspace", [](const World& world) { world.container.setDataCache(nullptr); }},
      {"set the other workspace",
       [](const World& world) { world.container.setConditionalCache(world.workspace); }},
      {"set a model", [](const World& world) { world.container.setDataModel(world.second); }},
      {"set an adapter", [](const World& world) { world.held.setAdapter(world.adapter); }},
      {"contain", [](const World& world) { world.metadata.setValue(world.tuple); }},
      {"contain what something else contains",
       [](const World& world) { world.metadata.setValue(world.report); }},
      {"replace what is contained",
       [](const World& world) { world.container.metaDataCache().first().setValue(world.tuple); }},
      {"replace what is contained by a part of it",
       [](const World& world) {
         const ModelElement value = world.container.metaDataCache().first().value();
         if (!value || value.getMetaClass() != ChangeReport::metaClass()) return;
         const ChangeReport report(static_cast<ChangeReport::Impl*>(value.impl()));
         world.container.metaDataCache().first().setValue(report.changes().at(0));
       }},
      {"contain nothing any more",
       [](const World& world) { world.container.metaDataCache().first().setValue(ModelElement()); }},
      {"set a value of a proxy", [](const World& world) { refused([&] { world.proxy.setId(Long); }); }},
      {"set a value of what is gone", [](const World& world) { refused([&] { world.gone.setId(Long); }); }},
  };
}

}  // namespace allocation_test
