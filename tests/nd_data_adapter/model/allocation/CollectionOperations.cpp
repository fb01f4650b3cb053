#include "platform/foundation/meta/MetaImpl.h"
#include "platform/services/CatalogMessage.h"
#include "tests/nd_data_adapter/model/allocation/Operations.h"

namespace allocation_test {

namespace {

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

std::vector<Operation> collectionOperations() {
  return {
      {"add to a sequence", [](const World& world) { world.report.getChangesMutable().add(world.tuple); }},
      {"insert into a sequence",
       [](const World& world) { world.report.getChangesMutable().insert(1, world.tuple); }},
      {"move between sequences",
       [](const World& world) {
         if (!world.other.changes().empty())
           world.report.getChangesMutable().insert(0, world.other.changes().at(0));
       }},
      {"add so much that a sequence grows",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         for (int count = 0; count < 6; ++count) {
           world.report.getChangesMutable().add(ChangeTuple::create(world.model));
         }
         transaction.commit();
       }},
      {"remove from a sequence",
       [](const World& world) {
         if (world.report.changes().size() == 3) {
           world.report.getChangesMutable().remove(world.report.changes().at(0));
         }
       }},
      {"clear a sequence", [](const World& world) { world.report.getChangesMutable().clear(); }},
      {"add what is gone",
       [](const World& world) { refused([&] { world.report.getChangesMutable().add(world.gone); }); }},
      {"add to a multimap", [](const World& world) { world.variants.getVariantsMutable().add(world.entry); }},
      {"move between multimap and reference",
       [](const World& world) {
         const MetaDataEntry first = world.container.metaDataCache().first();
         if (first != world.metadata) world.metadata.setValue(first);
       }},
      {"move a key in a multimap",
       [](const World& world) { world.variants.variants().find(u"b").setName(Long); }},
      {"remove from a multimap",
       [](const World& world) {
         if (world.variants.variants().size() == 3) {
           world.variants.getVariantsMutable().remove(world.variants.variants().first());
         }
       }},
      {"clear a multimap", [](const World& world) { world.container.getMetaDataCacheMutable().clear(); }},
      {"add to a map", [](const World& world) { world.cache.impl()->getCPPCacheMutable().add(world.held); }},
      {"move a key in a map",
       [](const World& world) {
         const CPPAdapterV2Entry entry = world.cache.impl()->getCPPCache().find(u"x");
         if (entry) entry.setName(Long);
       }},
      {"move to a key that is taken",
       [](const World& world) {
         refused([&] {
           const auto& map = world.cache.impl()->getCPPCache();
           map.first().setName(map.keys().back());
         });
       }},
      {"clear a map", [](const World& world) { world.cache.impl()->getCPPCacheMutable().clear(); }},
      {"add to the texts",
       [](const World& world) {
         if (world.container.conditionControls().size() < 4)
           world.container.getConditionControlsMutable().add(Long);
       }},
      {"assign the texts",
       [](const World& world) {
         world.container.getConditionControlsMutable().assign({Long, Long, u"c"});
       }},
      {"clear the texts", [](const World& world) { world.container.getConditionControlsMutable().clear(); }},
      {"find and list",
       [](const World& world) {
         static_cast<void>(world.variants.variants().findAll(u"b"));
         static_cast<void>(world.variants.variants().keys());
         static_cast<void>(world.container.conditionControls().values());
       }},
  };
}

std::vector<Operation> builderOperations() {
  return {
      {"create into a sequence",
       [](const World& world) {
         world.report.createIntoChanges(ChangeTuple::Builder().setX(ChangeType::Modify).setId(Long));
       }},
      {"create into a multimap",
       [](const World& world) {
         world.variants.createIntoVariants(
             ConditionControlChangeEntry::Builder().setName(u"a").setPreviousValue(Long));
       }},
      {"create into a map",
       [](const World& world) {
         CPPAdapterV2Entry::Builder builder;
         builder.values().doSetAdapterName(Long);
         if (world.cache.impl()->getCPPCache().contains(std::u16string(Long))) return;
         world.cache.impl()->getCPPCacheMutable().createInto(CPPAdapterV2Entry::BuilderWrapper(builder));
       }},
      {"create into a map under a key that is taken",
       [](const World& world) {
         CPPAdapterV2Entry::Builder builder;
         builder.values().doSetAdapterName(world.cache.impl()->getCPPCache().first().adapterName());
         refused([&] {
           world.cache.impl()->getCPPCacheMutable().createInto(CPPAdapterV2Entry::BuilderWrapper(builder));
         });
       }},
      {"create into a reference",
       [](const World& world) {
         if (!world.metadata.value()) world.metadata.createIntoValue(ChangeTuple::Builder().setId(Long));
       }},
      {"create into three levels",
       [](const World& world) {
         world.container.createIntoMetaDataCache(MetaDataEntry::Builder().setName(Long).setValue(
             ChangeReport::Builder()
                 .setChanges(ChangeTuple::Builder().setId(Long))
                 .setChanges(ChangeTuple::Builder())));
       }},
      {"build",
       [](const World& world) {
         DataContainer::Builder(world.model)
             .setDataCache(world.workspace)
             .setConditionControls({Long, u"c"})
             .setMetaDataCache(MetaDataEntry::Builder().setName(u"n"))
             .setMetaDataCache(MetaDataEntry::Builder().setName(u"m"))
             .create();
       }},
      {"build by the description of the class",
       [](const World& world) {
         const auto builder = ChangeTuple::metaClass().impl()->instantiateBuilder(world.model);
         builder->setOrAdd(ChangeTuple::metaClass().property(u"id"), Value(Long));
         builder->create();
       }},
  };
}

}  // namespace allocation_test
