#include "nd_data_adapter/model/AdapterDiagnostic.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "tests/nd_data_adapter/model/allocation/Operations.h"

namespace allocation_test {

namespace {

using lx::base::meta::PropertySerializerRegistry;

/// Write a value and read it again, alone, as an optional one, and in lists.
void serialize(const std::u16string& type, const Value& value) {
  const auto serializer = PropertySerializerRegistry::getInstance().find(type);
  ASSERT_TRUE(serializer) << lx::text::toUtf8(type);
  const Value again = serializer->parseValue(serializer->serializeValue(value));
  EXPECT_EQ(again, value);
  const boost::optional<std::u16string> text = serializer->serializeValue(again);
  static_cast<void>(serializer->serializeOptionalValue(serializer->parseOptionalValue(text)));
  static_cast<void>(serializer->combineAsUnmanagedSequenceValue({value, again}));
  static_cast<void>(serializer->combineAsUnmanagedSetValue({value, again}));
  static_cast<void>(serializer->createDefaultValue());
  static_cast<void>(serializer->createEmptyOptionalValue());
}

}  // namespace

std::vector<Operation> transactionOperations() {
  return {
      {"an empty transaction", [](const World& world) { begin(world.model).commit(); }},
      {"a transaction over everything",
       [](const World& world) {
         if (world.tuple.id() == Long) return;
         Transaction transaction = begin(world.model);
         world.tuple.setId(Long);
         world.report.getChangesMutable().clear();
         world.cache.destroy();
         world.container.metaDataCache().first().setName(u"z");
         world.container.getConditionControlsMutable().clear();
         reportOf(world.model, {u"a", Long});
         transaction.commit(Value(std::u16string(Long)));
       }},
      {"transactions within each other",
       [](const World& world) {
         Transaction outer = begin(world.model);
         world.tuple.setId(u"outer");
         {
           Transaction inner = begin(world.model);
           world.tuple.setId(Long);
           world.tuple.setX(ChangeType::Delete);
           world.variants.variants().find(u"b").setName(u"0");
           Transaction innermost = begin(world.model);
           world.report.createIntoChanges(ChangeTuple::Builder().setId(Long));
           world.config.setSection(Long);
           innermost.commit();
           inner.commit(Value(std::u16string(Long)));
         }
         outer.commit();
       }},
      {"an inner transaction that is abandoned",
       [](const World& world) {
         Transaction outer = begin(world.model);
         world.tuple.setId(Long);
         {
           const Transaction inner = begin(world.model);
           world.report.destroy();
           world.tuple.setId(u"inner");
           world.container.metaDataCache().first().setName(u"zz");
         }
         outer.commit();
       }},
      {"a transaction that changes and changes back",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         const std::u16string id = world.tuple.id();
         world.tuple.setId(Long);
         world.tuple.setId(id);
         const auto first = world.variants.variants().first();
         const std::u16string name = first.name();
         first.setName(u"zz");
         first.setName(name);
         transaction.commit();
       }},
      {"a quiet transaction",
       [](const World& world) {
         Transaction transaction = world.model.impl()->beginTransaction(true);
         world.tuple.setId(Long);
         transaction.commit();
       }},
  };
}

std::vector<Operation> reflectionOperations() {
  return {
      {"get by name",
       [](const World& world) {
         static_cast<void>(world.tuple.getPropertyValue(u"id"));
         static_cast<void>(world.report.getPropertyValue(u"changes"));
         static_cast<void>(world.variants.getPropertyValue(u"Variants"));
         static_cast<void>(world.container.getPropertyValue(u"ConditionControls"));
         static_cast<void>(world.container.hasPropertyValue(u"DataCache"));
       }},
      {"set a text by name", [](const World& world) { world.tuple.setPropertyValue(u"id", Value(Long)); }},
      {"set texts by name",
       [](const World& world) {
         world.container.setPropertyValue(u"ConditionControls", Value(Texts{u"c", Long, Long}));
       }},
      {"set a list by name",
       [](const World& world) {
         world.report.setPropertyValue(u"changes", Value(std::vector<ModelElement>{world.tuple}));
       }},
      {"set a keyed list by name",
       [](const World& world) {
         world.variants.setPropertyValue(u"Variants", Value(std::vector<ModelElement>{world.entry}));
       }},
      {"set what is contained by name",
       [](const World& world) {
         world.metadata.setPropertyValue(u"value", Value(ModelElement(world.tuple)));
       }},
      {"invoke an operation",
       [](const World& world) {
         Transaction transaction = begin(world.model);
         const Value text(Long);
         world.error.invoke(u"setError",
                            {Value(nd::data::adapter::AdapterDiagnostic::HardError), text, text, text});
         transaction.commit();
       }},
      {"invoke an operation with a result",
       [](const World& world) { world.cache.invoke(u"getAllAdapterQualifiers", {}); }},
      {"serialize texts", [](const World&) { serialize(u"lx.base.String", Value(std::u16string(Long))); }},
      {"serialize truth values", [](const World&) { serialize(u"lx.base.Boolean", Value(true)); }},
      {"serialize numbers", [](const World&) { serialize(u"lx.base.Integer", Value(std::int32_t{-7})); }},
      {"serialize identities", [](const World&) { serialize(u"lx.base.UUID", Value(ChangeTuple::Uuid())); }},
      {"serialize literals",
       [](const World&) { serialize(u"nd.data.adapter.ChangeType", Value(ChangeType::Delete)); }},
      {"describe a class",
       [](const World&) {
         static_cast<void>(DataContainer::metaClass().getProperties());
         static_cast<void>(DataContainer::metaClass().property(u"DataModel").getQualifiedName());
         static_cast<void>(
             lx::base::meta::MetaRegistry::getInstance().findType(u"nd.data.adapter.ChangeType"));
       }},
  };
}

}  // namespace allocation_test
