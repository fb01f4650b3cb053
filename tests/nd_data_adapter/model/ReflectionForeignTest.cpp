// Properties of other classes, and lists of which not all elements can be put in.
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "tests/nd_data_adapter/model/Probe.h"

using namespace model_test;
using lxb::messages::CannotAddIncompatibleTypes;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::CannotCreateCrossModelAssociation;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::CPPAdapterV2Entry;

namespace {

using Elements = std::vector<ModelElement>;

TEST(Reflection, RefusesAPropertyOfAnotherClassThatHasTheIndexOfAnOwnOne) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  tuple.setId(u"mine");
  const auto section = AdapterConfig::metaClass().property(u"section");
  ASSERT_EQ(section.getIndex(), ChangeTuple::metaClass().property(u"id").getIndex());
  const std::string refused = "NoSuchType(nd.data.adapter.ChangeTuple.section)";
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.impl()->getPropertyValue(section); }), refused);
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.impl()->hasPropertyValue(section); }), refused);
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.impl()->setPropertyValue(section, Value(u"intruder")); }),
            refused);
  EXPECT_EQ(tuple.id(), u"mine");
}

TEST(Reflection, RefusesAPropertyOfAnotherClassWithAnIndexOfItsOwn) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const auto metadata = DataContainer::metaClass().property(u"MetaDataCache");
  EXPECT_EQ(raised<NoSuchType>([&] { tuple.impl()->getPropertyValue(metadata); }),
            "NoSuchType(nd.data.adapter.ChangeTuple.MetaDataCache)");
}

TEST(Reflection, ReachesPropertiesOfAnElementOfASubclass) {
  const Model model = Model::create();
  const auto probe = createProbe<ChangeTuple>(model, nullptr);
  const auto id = ChangeTuple::metaClass().property(u"id");
  probe.impl()->setPropertyValue(id, Value(u"gain"));
  EXPECT_EQ(probe.impl()->getPropertyValue(id), Value(u"gain"));
}

/// A report with one element, which counts how often it is told that it is about to be destroyed.
struct Replaced {
  Replaced() {
    report.getChangesMutable().add(createProbe<ChangeTuple>(model, [this](const ChangeTuple&) { ++told; }));
  }
  void set(const Elements& elements) const { report.setPropertyValue(u"changes", Value(elements)); }

  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  int told = 0;
};

const std::string NonExistent = "CannotAddNonExistentObject(nd.data.adapter.ChangeReport.changes)";

TEST(ReplaceElements, TellsTheFormerOnesWhenAllFit) {
  Replaced replaced;
  replaced.set({ChangeTuple::create(replaced.model)});
  EXPECT_EQ(replaced.told, 1);
  replaced.set({});
}

TEST(ReplaceElements, LooksAtAllNewElementsBeforeAnyFormerOneIsTold) {
  Replaced replaced;
  const ChangeTuple good = ChangeTuple::create(replaced.model), dead = ChangeTuple::create(replaced.model),
                    foreign = ChangeTuple::create(Model::create());
  const Model other = Model::create();
  const ChangeTuple stranger = ChangeTuple::create(other);
  const AdapterConfig config = AdapterConfig::create(replaced.model);
  dead.destroy();
  const std::string before = stateOf(replaced.model);
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] {
              replaced.set({good, config});
            }),
            "CannotAddIncompatibleTypes(nd.data.adapter.ChangeReport.changes; nd.data.adapter.AdapterConfig; "
            "nd.data.adapter.ChangeTuple)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { replaced.set({good, ModelElement()}); }), NonExistent);
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { replaced.set({good, dead}); }), NonExistent);
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] {
              replaced.set({good, foreign});
            }),
            NonExistent)
      << "its model has gone";
  EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] {
              replaced.set({good, stranger});
            }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.ChangeReport.changes)");
  EXPECT_EQ(
      raised<InvalidValue>([&] {
        replaced.set({good, good});
      }),
      "InvalidValue(nd.data.adapter.ChangeReport.changes; the list names an element twice; name it once.)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] {
              replaced.set({good, replaced.report.changes().at(0)});
            }),
            NonExistent)
      << "it would go with the former ones";
  EXPECT_EQ(replaced.told, 0);
  EXPECT_EQ(stateOf(replaced.model), before);
}

TEST(ReplaceElements, RefusesWhatAFormerElementContains) {
  const Model model = Model::create();
  const DataContainer container = containerOf(model, {u"outer"}), inside = containerOf(model, {u"inner"});
  container.metaDataCache().first().setValue(inside);
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] {
              container.setPropertyValue(u"MetaDataCache", Value(Elements{inside.metaDataCache().first()}));
            }),
            "CannotAddNonExistentObject(nd.data.adapter.DataContainer.MetaDataCache)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(ReplaceElements, RefusesTwoOfOneKeyInAMapBeforeAnyFormerOneIsTold) {
  int told = 0;
  const Model model = Model::create();
  auto& map = AdapterCacheV2::create(model).impl()->getCPPCacheMutable();
  map.add(createProbe<CPPAdapterV2Entry>(model, [&](const CPPAdapterV2Entry&) { ++told; }));
  const auto entry = [&](const char16_t* name) {
    const CPPAdapterV2Entry made = CPPAdapterV2Entry::create(model);
    made.setName(name);
    return made;
  };
  const Elements next{entry(u"b"), entry(u"a"), entry(u"b")};
  EXPECT_EQ(
      raised<lxb::messages::UniquenessConstraint>([&] { lx::base::detail::replaceElements(map, next); }),
      "UniquenessConstraint(nd.data.adapter.AdapterCacheV2.CPPCache; b)");
  EXPECT_EQ(told, 0);
  lx::base::detail::replaceElements(map, {next[0], next[1]});
  EXPECT_EQ(told, 1);
  EXPECT_EQ(map.keys(), (Texts{u"a", u"b"}));
}

TEST(ValueOfAnElement, IsOfItsClassOnly) {
  const Model model = Model::create();
  const Value value(AdapterConfig::create(model));
  EXPECT_TRUE(value.is<AdapterConfig>());
  EXPECT_TRUE(value.is<ModelElement>());
  EXPECT_FALSE(value.is<ChangeTuple>());
  EXPECT_EQ(raised<CannotCastIncompatibleTypes>([&] { static_cast<void>(value.as<ChangeTuple>()); }),
            "CannotCastIncompatibleTypes(nd.data.adapter.AdapterConfig; nd.data.adapter.ChangeTuple)");
  EXPECT_TRUE(Value(ModelElement()).is<ChangeTuple>()) << "a null handle is one of every class";
}

TEST(ValueOfElements, IsAListOfHandlesOfTheRootClass) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const ChangeTuple a = ChangeTuple::create(model), b = ChangeTuple::create(model);
  const Value value(std::vector<ChangeTuple>{b, a});
  EXPECT_EQ(value, Value(Elements{b, a}));
  EXPECT_TRUE(value.is<std::vector<ChangeTuple>>());
  EXPECT_FALSE(value.is<std::vector<AdapterConfig>>());
  EXPECT_EQ(
      raised<CannotCastIncompatibleTypes>([&] { static_cast<void>(value.as<std::vector<AdapterConfig>>()); }),
      "CannotCastIncompatibleTypes(nd.data.adapter.ChangeTuple; nd.data.adapter.AdapterConfig)");
  report.setPropertyValue(u"changes", value);
  EXPECT_EQ(report.changes().at(0), b);
  EXPECT_EQ(report.changes().at(1), a);
}

}  // namespace
