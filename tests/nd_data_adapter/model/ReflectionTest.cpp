#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using namespace nd::data::adapter;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::CannotSetReadOnlyProperty;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using testing::StartsWith;

namespace {

using Elements = std::vector<ModelElement>;

/// Sets a property by name, expects the value by name and by the typed accessor, and that it was there
/// before.
template <class E, class T, class Getter>
void expectBothWays(const E& element, const char16_t* name, const T& value, Getter getter) {
  ASSERT_FALSE((element.*getter)() == value) << "the property has the value already";
  EXPECT_EQ(element.getPropertyValue(name), Value((element.*getter)()));
  element.setPropertyValue(name, Value(value));
  EXPECT_EQ((element.*getter)(), value);
  EXPECT_EQ(element.getPropertyValue(name), Value(value));
}

TEST(Reflection, ReachesEverySingleValueAsTheAccessorsDo) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  expectBothWays(tuple, u"x", ChangeType::Modify, &ChangeTuple::x);
  expectBothWays(tuple, u"id", std::u16string(u"gain"), &ChangeTuple::id);

  const auto entry = ConditionControlChangeEntry::create(model);
  expectBothWays(entry, u"name", std::u16string(u"V"), &ConditionControlChangeEntry::name);
  expectBothWays(entry, u"previousValue", std::u16string(u"1"), &ConditionControlChangeEntry::previousValue);

  const AdapterConfig config = AdapterConfig::create(model);
  expectBothWays(config, u"adapterName", std::u16string(u"Ini"), &AdapterConfig::adapterName);
  expectBothWays(config, u"section", std::u16string(u"s"), &AdapterConfig::section);
  expectBothWays(config, u"adapterType", AdapterType::HOBJAdapter, &AdapterConfig::adapterType);
  expectBothWays(config, u"supportsReading", true, &AdapterConfig::supportsReading);
  expectBothWays(config, u"supportsWriting", true, &AdapterConfig::supportsWriting);

  const AdapterError error = AdapterError::create(model);
  expectBothWays(error, u"ErrorMessage", std::u16string(u"gone"), &AdapterError::errorMessage);

  const MetaDataEntry metadata = MetaDataEntry::create(model);
  expectBothWays(metadata, u"name", std::u16string(u"unit"), &MetaDataEntry::name);
  EXPECT_EQ(metadata.impl()->getName(), u"unit");

  const DataContainer container = DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> one = inCreateWorkspace(1), two = inCreateWorkspace(1);
  expectBothWays(container, u"DataCache", one, &DataContainer::dataCache);
  expectBothWays(container, u"ConditionalCache", two, &DataContainer::conditionalCache);
  expectBothWays(container, u"DataModel", Model::create(), &DataContainer::dataModel);
}

TEST(Reflection, ReachesTheAdapterOfAnEntry) {
  const Model model = Model::create();
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  const std::shared_ptr<CPPAdapterV2> adapter = TestV2Adapter::make();
  expectBothWays(entry, u"Adapter", adapter, &CPPAdapterV2Entry::adapter);
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { entry.setPropertyValue(u"Adapter", Value(1)); }),
            "CannotCastIncompatibleTypes(Integer; std::shared_ptr<CPPAdapterV2>)");
  EXPECT_EQ(entry.adapter(), adapter);
  entry.setPropertyValue(u"Adapter", Value(std::shared_ptr<CPPAdapterV2>()));
  EXPECT_EQ(entry.adapter(), nullptr);
  EXPECT_EQ(adapter.use_count(), 1);
}

TEST(Reflection, ReachesAContainedReference) {
  const Model model = Model::create();
  const MetaDataEntry entry = MetaDataEntry::create(model);
  EXPECT_FALSE(entry.hasPropertyValue(u"value"));
  EXPECT_EQ(entry.getPropertyValue(u"value"), Value(ModelElement()));
  const ChangeTuple tuple = ChangeTuple::create(model);
  entry.setPropertyValue(u"value", Value(tuple));
  EXPECT_EQ(entry.value(), tuple);
  EXPECT_EQ(tuple.container(), entry);
  EXPECT_TRUE(entry.hasPropertyValue(u"value"));
  EXPECT_EQ(entry.getPropertyValue(u"value"), Value(tuple));
  EXPECT_EQ(entry.impl()->getValue(), tuple);
  EXPECT_TRUE(entry.impl()->hasValue());
  entry.setPropertyValue(u"value", Value(ModelElement()));
  EXPECT_FALSE(tuple.isAlive());
  EXPECT_EQ(entry.impl()->getValue(), ModelElement());
  EXPECT_FALSE(entry.impl()->hasValue());
}

TEST(Reflection, ReachesAListOfTexts) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  EXPECT_FALSE(container.hasPropertyValue(u"ConditionControls"));
  EXPECT_EQ(container.getPropertyValue(u"ConditionControls"), Value(Texts{}));
  container.setPropertyValue(u"ConditionControls", Value(Texts{u"b", u"a", u"b"}));
  EXPECT_TRUE(container.hasPropertyValue(u"ConditionControls"));
  EXPECT_EQ(container.conditionControls().values(), (Texts{u"b", u"a", u"b"}));
  EXPECT_EQ(container.getPropertyValue(u"ConditionControls"), Value(Texts{u"b", u"a", u"b"}));
}

TEST(Reflection, ReplacesTheElementsOfASequence) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"old"});
  const ChangeTuple old = report.changes().at(0), a = ChangeTuple::create(model),
                    b = ChangeTuple::create(model);
  EXPECT_EQ(report.getPropertyValue(u"changes"), Value(Elements{old}));
  report.setPropertyValue(u"changes", Value(Elements{b, a}));
  EXPECT_FALSE(old.isAlive());
  EXPECT_EQ(report.changes().at(0), b);
  EXPECT_EQ(report.changes().at(1), a);
  report.setPropertyValue(u"changes", Value(Elements{}));
  EXPECT_FALSE(report.hasPropertyValue(u"changes"));
  EXPECT_FALSE(a.isAlive());
}

TEST(Reflection, ReplacesTheElementsOfAKeyedCollection) {
  const Model model = Model::create();
  const auto report = variantsOf(model, {u"old"});
  const auto b = ConditionControlChangeEntry::create(model), a = ConditionControlChangeEntry::create(model);
  b.setName(u"b"), a.setName(u"a");
  report.setPropertyValue(u"Variants", Value(Elements{b, a}));
  EXPECT_EQ(report.variants().keys(), (Texts{u"a", u"b"}));
  EXPECT_EQ(report.getPropertyValue(u"Variants"), Value(Elements{a, b}));
}

TEST(Reflection, BeginsNoTransactionForAnEqualList) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const auto variants = variantsOf(model, {u"a", u"b"});
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  report.setPropertyValue(u"changes", report.getPropertyValue(u"changes"));
  variants.setPropertyValue(u"Variants", variants.getPropertyValue(u"Variants"));
  EXPECT_EQ(transactions(model), begun);
  EXPECT_EQ(stateOf(model), before);
}

TEST(Reflection, RefusesAListThatNamesAnElementOfTheOldOneAndLeavesThat) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a", u"b"});
  const std::string before = stateOf(model);
  const Elements turned{report.changes().at(1), report.changes().at(0)};
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { report.setPropertyValue(u"changes", Value(turned)); }),
            "CannotAddNonExistentObject(nd.data.adapter.ChangeReport.changes)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(Reflection, SaysOfASingleValueThatItIsThere) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_TRUE(tuple.hasPropertyValue(u"id"));
  EXPECT_TRUE(tuple.hasPropertyValue(u"x"));
  tuple.destroy();
  EXPECT_FALSE(tuple.hasPropertyValue(u"id"));
}

TEST(Reflection, AnswersWithTheZeroOfADeadElementAndRefusesToSetIt) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const ChangeReport report = reportOf(model, {u"a"});
  tuple.setId(u"gain");
  tuple.destroy();
  report.destroy();
  EXPECT_EQ(tuple.getPropertyValue(u"id"), Value(u""));
  EXPECT_EQ(report.getPropertyValue(u"changes"), Value(Elements{}));
  EXPECT_FALSE(report.hasPropertyValue(u"changes"));
  EXPECT_THAT(raised<InvalidValue>([&] { tuple.setPropertyValue(u"id", Value(u"")); }),
              StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.id; "));
}

TEST(Reflection, RefusesToSetAReadOnlyProperty) {
  const Model model = Model::create();
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setName(u"Ini");
  EXPECT_EQ(entry.getPropertyValue(u"AdapterName"), Value(u"Ini"));
  EXPECT_EQ(
      raised<CannotSetReadOnlyProperty>([&] { entry.setPropertyValue(u"AdapterName", Value(u"Other")); }),
      "CannotSetReadOnlyProperty(nd.data.adapter.CPPAdapterV2Entry.AdapterName)");
  EXPECT_EQ(entry.adapterName(), u"Ini");
}

TEST(Reflection, RefusesPropertiesThatAreNotPublic) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  for (const std::string name : {"Diagnostic", "Adapter", "SourceFile"}) {
    const std::u16string wide = lx::text::toUtf16(name);
    EXPECT_EQ(raised<CannotSetReadOnlyProperty>([&] { error.setPropertyValue(wide, Value(u"x")); }),
              "CannotSetReadOnlyProperty(nd.data.adapter.AdapterError." + name + ")");
    EXPECT_THAT(raised<InvalidValue>([&] { error.getPropertyValue(wide); }),
                StartsWith("InvalidValue(nd.data.adapter.AdapterError." + name + "; "));
    EXPECT_THAT(raised<InvalidValue>([&] { error.hasPropertyValue(wide); }),
                StartsWith("InvalidValue(nd.data.adapter.AdapterError." + name + "; "));
  }
  EXPECT_EQ(error.getSource(), u"");
  const AdapterCacheV2 cache = AdapterCacheV2::create(model);
  EXPECT_EQ(
      raised<CannotSetReadOnlyProperty>([&] { cache.setPropertyValue(u"CPPCache", Value(Elements{})); }),
      "CannotSetReadOnlyProperty(nd.data.adapter.AdapterCacheV2.CPPCache)");
}

TEST(Reflection, RefusesValuesOfAnotherTypeAndLeavesTheOldOne) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"gain");
  const DataContainer container = DataContainer::create(model);
  const std::string before = stateOf(model);
  const auto refusal = [](const ModelElement& element, const char16_t* name, const Value& value) {
    return raised<CannotCastIncompatibleTypes>([&] { element.setPropertyValue(name, value); });
  };
  EXPECT_EQ(refusal(tuple, u"id", Value(std::string("gain"))),
            "CannotCastIncompatibleTypes(StdString; String)");
  EXPECT_EQ(refusal(tuple, u"x", Value(std::int32_t{2})),
            "CannotCastIncompatibleTypes(Integer; nd::data::adapter::ChangeType)");
  EXPECT_EQ(refusal(container, u"ConditionControls", Value(u"one")),
            "CannotCastIncompatibleTypes(String; a list of String)");
  EXPECT_EQ(refusal(container, u"MetaDataCache", Value(ModelElement())),
            "CannotCastIncompatibleTypes(ModelElement; a list of ModelElement)");
  EXPECT_EQ(refusal(container, u"DataModel", Value()), "CannotCastIncompatibleTypes(an empty value; Model)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(Reflection, KnowsNoPropertyOfAnotherName) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const std::string refused = "NoSuchType(nd.data.adapter.ChangeTuple.Id)";
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.getPropertyValue(u"Id"); }), refused);
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.hasPropertyValue(u"Id"); }), refused);
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.setPropertyValue(u"Id", Value(u"")); }), refused);
}

TEST(Reflection, GivesPropertiesByIndex) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  EXPECT_EQ(container.impl()->getPropertyByIndex(1).getName(), u"DataCache");
  EXPECT_EQ(container.impl()->getPropertyByIndex(5).getName(), u"MetaDataCache");
  for (const unsigned index : {0U, 6U}) {
    EXPECT_EQ(raised<NoSuchType>([&] { container.impl()->getPropertyByIndex(index); }),
              "NoSuchType(nd.data.adapter.DataContainer.#" + std::to_string(index) + ")");
  }
}

TEST(Invoke, CallsOperationsWithAndWithoutResult) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  const Value nothing = error.invoke(u"setError", {Value(AdapterDiagnostic::HardError), Value(u"message"),
                                                   Value(u"adapter"), Value(u"source")});
  EXPECT_TRUE(nothing.isEmpty());
  EXPECT_EQ(error.invoke(u"getId", {}), Value(AdapterDiagnostic::HardError));
  EXPECT_EQ(error.invoke(u"getAdapterName", {}), Value(u"adapter"));
  EXPECT_EQ(error.invoke(u"getSource", {}), Value(u"source"));
  EXPECT_EQ(error.errorMessage(), u"message");

  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  EXPECT_TRUE(entry.invoke(u"setName", {Value(u"Ini")}).isEmpty());
  EXPECT_EQ(entry.adapterName(), u"Ini");

  const AdapterRegistryV2 registry = AdapterRegistryV2::create(model);
  registry.impl()->getCPPRegistryMutable().add(entry);
  EXPECT_EQ(registry.invoke(u"isAdapterRegisteredByName", {Value(u"Ini")}), Value(true));
  EXPECT_EQ(registry.invoke(u"isAdapterRegisteredByName", {Value(u"ini")}), Value(false));
}

TEST(Invoke, CallsTheOperationThatEmptiesAContainer) {
  const Model model = Model::create();
  const DataContainer container = DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "gain", workspace);
  container.setDataCache(workspace);
  EXPECT_TRUE(container.invoke(u"destroyContainer", {}).isEmpty());
  EXPECT_EQ(container.dataCache(), nullptr);
  const hvArray* value = nullptr;
  std::string name;
  EXPECT_FALSE(WorkSpaceIterator(workspace, false, false, true).get_next_variable(value, name)) << name;
}

TEST(Invoke, GivesListsAsVectors) {
  const Model model = Model::create();
  const AdapterCacheV2 cache = AdapterCacheV2::create(model);
  EXPECT_EQ(cache.invoke(u"getAllAdapterQualifiers", {}), Value(Texts{}));
  EXPECT_EQ(cache.invoke(u"getCPPAdapter", {Value(u"q")}), Value(std::shared_ptr<CPPAdapterV2>()));
}

TEST(Invoke, RefusesAnotherNumberOfArguments) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  EXPECT_EQ(raised<InvalidValue>([&] { error.invoke(u"getId", {Value(true)}); }),
            "InvalidValue(nd.data.adapter.AdapterError.getId; the operation takes 0 arguments, not 1.)");
  EXPECT_EQ(raised<InvalidValue>([&] { error.invoke(u"setError", {}); }),
            "InvalidValue(nd.data.adapter.AdapterError.setError; the operation takes 4 arguments, not 0.)");
}

TEST(Invoke, RefusesArgumentsOfAnotherType) {
  const Model model = Model::create();
  const AdapterRegistryV2 registry = AdapterRegistryV2::create(model);
  EXPECT_THAT(
      raised<CannotCastIncompatibleTypes>([&] { registry.invoke(u"isAdapterRegisteredByName", {Value(1)}); }),
      StartsWith("CannotCastIncompatibleTypes(Integer; "));
}

TEST(Invoke, RefusesOperationsWithoutInvoker) {
  const Model model = Model::create();
  const AdapterRegistryV2 registry = AdapterRegistryV2::create(model);
  EXPECT_THAT(raised<InvalidValue>([&] { registry.invoke(u"getInstance", {}); }),
              StartsWith("InvalidValue(nd.data.adapter.AdapterRegistryV2.getInstance; "));
  const AdapterError error = AdapterError::create(model);
  EXPECT_THAT(raised<InvalidValue>(
                  [&] { error.invoke(u"convertAdapterErrorsToDiagnostic", {Value(Elements{error})}); }),
              StartsWith("InvalidValue(nd.data.adapter.AdapterError.convertAdapterErrorsToDiagnostic; "));
  EXPECT_TRUE(error.isAlive());
}

TEST(Invoke, KnowsNoOperationOfAnotherName) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  EXPECT_EQ(raised<NoSuchType>([&] { error.invoke(u"getID", {}); }),
            "NoSuchType(nd.data.adapter.AdapterError.getID)");
}

TEST(Invoke, RefusesADeadElementAndNamesTheOperation) {
  const Model model = Model::create();
  const AdapterError error = AdapterError::create(model);
  error.destroy();
  EXPECT_THAT(raised<InvalidValue>([&] { error.invoke(u"getId", {}); }),
              StartsWith("InvalidValue(nd.data.adapter.AdapterError.getId; "));
}

TEST(Invoke, RefusesAnOperationOfAnotherClass) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const auto operation = AdapterError::metaClass().operation(u"getId");
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { tuple.impl()->invoke(operation, {}); }),
            "CannotCastIncompatibleTypes(nd.data.adapter.ChangeTuple; nd.data.adapter.AdapterError)");
}

}  // namespace
