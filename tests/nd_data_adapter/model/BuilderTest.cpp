#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "tests/nd_data_adapter/model/Probe.h"

using namespace model_test;
using lxb::messages::CannotAddIncompatibleTypes;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::CannotCastIncompatibleTypes;
using lxb::messages::InvalidValue;
using lxb::messages::NoSuchType;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterType;
using nd::data::adapter::CPPAdapterV2Entry;
using testing::StartsWith;

namespace {

lx::base::meta::Property propertyOf(const ModelElement::Builder& builder, const char16_t* name) {
  return builder.getMetaClass().property(name);
}

TEST(Builder, GivesTheElementTheValuesThatItGathered) {
  const Model model = Model::create();
  const AdapterConfig config = AdapterConfig::Builder(model)
                                   .setAdapterName(u"Ini")
                                   .setSection(u"parameters")
                                   .setAdapterType(AdapterType::HOBJAdapter)
                                   .setSupportsReading(true)
                                   .create();
  EXPECT_EQ(config.adapterName(), u"Ini");
  EXPECT_EQ(config.section(), u"parameters");
  EXPECT_EQ(config.adapterType(), AdapterType::HOBJAdapter);
  EXPECT_TRUE(config.supportsReading());
  EXPECT_FALSE(config.supportsWriting());
}

TEST(Builder, LeavesTheDefaultsOfWhatItDidNotGather) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::Builder(model).setId(u"gain").create();
  EXPECT_EQ(tuple.x(), ChangeType::Create);
}

TEST(Builder, KnowsTheClassOfItsElementsAndItsModel) {
  const Model model = Model::create();
  ChangeTuple::Builder builder(model);
  EXPECT_EQ(builder.getMetaClass(), ChangeTuple::metaClass());
  EXPECT_EQ(builder.getModel(), model);
  EXPECT_FALSE(ChangeTuple::Builder().getModel());
}

TEST(Builder, MakesContentsInTheOrderOfTheirAdding) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::Builder(model)
                                  .setChanges(ChangeTuple::Builder().setId(u"b"))
                                  .setChanges(ChangeTuple::Builder().setId(u"a"))
                                  .create();
  EXPECT_EQ(idsOf(report), (Texts{u"b", u"a"}));
  EXPECT_EQ(report.changes().at(0).container(), report);
}

TEST(Builder, MakesContentsOfContents) {
  const Model model = Model::create();
  const DataContainer container =
      DataContainer::Builder(model)
          .setConditionControls({u"one", u"two"})
          .setMetaDataCache(MetaDataEntry::Builder().setName(u"report").setValue(
              ChangeReport::Builder().setChanges(ChangeTuple::Builder().setId(u"deep"))))
          .create();
  EXPECT_EQ(container.conditionControls().values(), (Texts{u"one", u"two"}));
  const ModelElement value = container.metaDataCache().find(u"report").value();
  ASSERT_EQ(value.getMetaClass(), ChangeReport::metaClass());
  EXPECT_EQ(idsOf(ChangeReport(static_cast<ChangeReport::Impl*>(value.impl()))), (Texts{u"deep"}));
  EXPECT_EQ(model.impl()->numberOfElements(), 4U);
}

TEST(Builder, SortsWhatIsKeyed) {
  const Model model = Model::create();
  const auto report = ConditionControlChangeReport::Builder(model)
                          .setVariants(ConditionControlChangeEntry::Builder().setName(u"b"))
                          .setVariants(ConditionControlChangeEntry::Builder().setName(u"a"))
                          .create();
  EXPECT_EQ(report.variants().keys(), (Texts{u"a", u"b"}));
}

TEST(Builder, MakesElementsOfTheGivenIdentity) {
  const Model model = Model::create();
  const auto uuid = boost::uuids::string_generator()("11111111-1111-4111-8111-111111111111");
  EXPECT_EQ(ChangeTuple::Builder(model).create(uuid).identifier(), uuid);
}

TEST(Builder, MakesAsManyElementsAsItIsAskedFor) {
  const Model model = Model::create(), other = Model::create();
  ChangeReport::Builder builder(model);
  builder.setChanges(ChangeTuple::Builder().setId(u"a"));
  const ChangeReport one = builder.create(), two = builder.create();
  builder.setModel(other);
  const ChangeReport three = builder.create();
  EXPECT_FALSE(one == two);
  EXPECT_EQ(three.getModel(), other);
  for (const ChangeReport& each : {one, two, three}) EXPECT_EQ(idsOf(each), (Texts{u"a"}));
  EXPECT_FALSE(one.changes().at(0) == two.changes().at(0));
}

TEST(Builder, LeavesElementsAloneThatItMadeBeforeItsValuesChanged) {
  const Model model = Model::create();
  ChangeTuple::Builder builder(model);
  const ChangeTuple one = builder.setId(u"one").create();
  const ChangeTuple two = builder.setId(u"two").create();
  EXPECT_EQ(one.id(), u"one");
  EXPECT_EQ(two.id(), u"two");
}

TEST(Builder, RefusesToMakeAnythingWithoutAModel) {
  EXPECT_THAT(raised<InvalidValue>([] { ChangeTuple::Builder().create(); }),
              StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.Builder.create; "));
}

TEST(Builder, MakesNothingOutsideOfACreation) {
  const Model model = Model::create();
  ChangeTuple::Builder builder(model);
  EXPECT_THAT(raised<InvalidValue>([&] { builder.doCreate(false, {}); }),
              StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.Builder"));
  builder.create();
  EXPECT_THAT(raised<InvalidValue>([&] { builder.doCreate(false, {}); }),
              StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.Builder"));
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST(Builder, LeavesNothingBehindWhenAChildFails) {
  const Model model = Model::create();
  const auto taken = ChangeTuple::create(model).identifier();
  class Late : public ChangeTuple::Builder {
   public:
    ModelElement doCreate(bool, const boost::uuids::uuid&) override { throw Refusal(); }
  };
  ChangeReport::Builder builder(model);
  builder.setChanges(ChangeTuple::Builder());
  builder.setChanges(Late());
  EXPECT_THROW(builder.create(), Refusal);
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
  EXPECT_FALSE(model.impl()->hasOpenTransaction());
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { ChangeReport::Builder(model).create(taken); }),
            "CannotAddSecondObject(The identity " + boost::uuids::to_string(taken) + ")");
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST(Builder, LeavesTheSurroundingTransactionAsItWasWhenItFails) {
  const Model model = Model::create();
  Transaction open = begin(model);
  const ChangeTuple before = ChangeTuple::create(model);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { ChangeReport::Builder(model).create(before.identifier()); }),
            "CannotAddSecondObject(The identity " + boost::uuids::to_string(before.identifier()) + ")");
  open.commit();
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{before});
}

TEST(Builder, IsOneTransactionAndTellsOneNotice) {
  const Model model = Model::create();
  ChangeReport::Builder builder(model);
  builder.setChanges(ChangeTuple::Builder()).setChanges(ChangeTuple::Builder());
  class Counter final : public lx::base::ChangeObserver {
   public:
    void changed(const lx::base::ChangeSet& changes) noexcept override {
      created.push_back(changes.created().size());
    }
    std::vector<std::size_t> created;
  } counter;
  model.impl()->addObserver(counter);
  builder.create();
  EXPECT_EQ(counter.created, std::vector<std::size_t>{3});
}

TEST(Builder, CopiesItsValuesWithItself) {
  const Model model = Model::create();
  ChangeTuple::Builder original(model);
  original.setId(u"a");
  ChangeTuple::Builder copy(original);
  original.setId(u"b");
  EXPECT_EQ(copy.create().id(), u"a");
  EXPECT_EQ(original.create().id(), u"b");
}

TEST(Builder, DefersTheAnnouncementOfAnElementToTheEndOfItsCreation) {
  /// Makes its element late, as a builder may ask for.
  class Late : public ChangeTuple::Builder {
   public:
    using ChangeTuple::Builder::Builder;
    ModelElement doCreate(bool, const boost::uuids::uuid& uuid) override {
      const ModelElement element = ChangeTuple::Builder::doCreate(true, uuid);
      wasAlive = element.isAlive();
      return element;
    }
    bool wasAlive = true;
  };
  const Model model = Model::create();
  Late late(model);
  late.setId(u"late");
  const ChangeTuple tuple = late.create();
  EXPECT_FALSE(late.wasAlive);
  EXPECT_TRUE(tuple.isAlive());
  EXPECT_EQ(tuple.id(), u"late");
}

/// Asks for its element's announcement to be deferred, wherever it is made.
class LateTuple : public ChangeTuple::Builder {
 public:
  ModelElement doCreate(bool, const boost::uuids::uuid& uuid) override {
    return ChangeTuple::Builder::doCreate(true, uuid);
  }
};

TEST(Builder, PutsAChildThatIsDeferredInBehindTheOthers) {
  const Model model = Model::create();
  LateTuple late;
  late.setId(u"late");
  const ChangeReport report = ChangeReport::Builder(model)
                                  .setChanges(late)
                                  .setChanges(ChangeTuple::Builder().setId(u"in time"))
                                  .create();
  EXPECT_EQ(idsOf(report), (Texts{u"in time", u"late"}));
  EXPECT_EQ(report.changes().at(1).container(), report);
}

TEST(Builder, PutsADeferredChildInWithItsContents) {
  class LateReport : public ChangeReport::Builder {
   public:
    ModelElement doCreate(bool, const boost::uuids::uuid& uuid) override {
      return ChangeReport::Builder::doCreate(true, uuid);
    }
  };
  const Model model = Model::create();
  LateReport late;
  late.setChanges(ChangeTuple::Builder().setId(u"in time")).setChanges(LateTuple());
  const MetaDataEntry entry = MetaDataEntry::Builder(model).setValue(late).create();
  ASSERT_EQ(entry.value().getMetaClass(), ChangeReport::metaClass());
  EXPECT_EQ(idsOf(ChangeReport(static_cast<ChangeReport::Impl*>(entry.value().impl()))),
            (Texts{u"in time", u""}));
}

TEST(Builder, KeepsItsOwnModelWhenItMakesAnElementInAnother) {
  const Model own = Model::create(), other = Model::create();
  ChangeTuple::Builder builder(own);
  EXPECT_EQ(builder.createIn(other).getModel(), other);
  EXPECT_EQ(builder.getModel(), own);
  EXPECT_EQ(builder.create().getModel(), own);
}

TEST(Builder, KeepsItsOwnModelWhenACreationFails) {
  class Failing : public ChangeTuple::Builder {
   public:
    using ChangeTuple::Builder::Builder;
    ModelElement doCreate(bool, const boost::uuids::uuid&) override { throw Refusal(); }
  };
  const Model own = Model::create(), other = Model::create();
  Failing builder(own);
  EXPECT_THROW(builder.createIn(other), Refusal);
  EXPECT_EQ(builder.getModel(), own);
}

TEST(BuilderByProperty, SetsAndAddsValues) {
  const Model model = Model::create();
  ChangeTuple::Builder tuple(model);
  tuple.setOrAdd(propertyOf(tuple, u"id"), Value(u"gain"));
  tuple.setOrAdd(propertyOf(tuple, u"x"), Value(ChangeType::Delete));
  const ChangeTuple made = tuple.create();
  EXPECT_EQ(made.id(), u"gain");
  EXPECT_EQ(made.x(), ChangeType::Delete);

  DataContainer::Builder container(model);
  const auto controls = propertyOf(container, u"ConditionControls");
  container.setOrAdd(controls, Value(Texts{u"one", u"two"}));
  container.setOrAdd(controls, Value(u"three"));
  EXPECT_EQ(container.create().conditionControls().values(), (Texts{u"one", u"two", u"three"}));
}

TEST(BuilderByProperty, TakesChildBuildersAndElements) {
  const Model model = Model::create();
  const ChangeTuple there = ChangeTuple::create(model);
  ChangeReport::Builder report(model);
  auto child = std::make_unique<ChangeTuple::Builder>();
  child->setId(u"built");
  report.setOrAdd(propertyOf(report, u"changes"), std::unique_ptr<ModelElement::Builder>(std::move(child)));
  report.setOrAdd(propertyOf(report, u"changes"), Value(there));
  const ChangeReport made = report.create();
  ASSERT_EQ(made.changes().size(), 2U);
  EXPECT_EQ(made.changes().at(0).id(), u"built");
  EXPECT_EQ(made.changes().at(1), there);
}

TEST(BuilderByProperty, RefusesValuesOfAnotherTypeAndKeepsWhatItHas) {
  const Model model = Model::create();
  ChangeTuple::Builder builder(model);
  builder.setId(u"kept");
  const auto refusal = [&](const char16_t* name, const Value& value) {
    return raised<CannotCastIncompatibleTypes>([&] { builder.setOrAdd(propertyOf(builder, name), value); });
  };
  EXPECT_EQ(refusal(u"id", Value(true)), "CannotCastIncompatibleTypes(Boolean; String)");
  EXPECT_EQ(refusal(u"x", Value(std::int32_t{1})),
            "CannotCastIncompatibleTypes(Integer; nd::data::adapter::ChangeType)");
  EXPECT_EQ(refusal(u"id", Value()), "CannotCastIncompatibleTypes(an empty value; String)");
  EXPECT_EQ(builder.create().id(), u"kept");
}

TEST(BuilderByProperty, RefusesAPropertyOfAnotherClass) {
  ChangeTuple::Builder builder;
  EXPECT_EQ(raised<NoSuchType>(
                [&] { builder.setOrAdd(ChangeReport::metaClass().property(u"changes"), Value(u"")); }),
            "NoSuchType(nd.data.adapter.ChangeTuple.changes)");
  EXPECT_EQ(raised<NoSuchType>([&] {
              builder.setOrAdd(ChangeReport::metaClass().property(u"changes"),
                               std::make_unique<ChangeTuple::Builder>());
            }),
            "NoSuchType(nd.data.adapter.ChangeTuple.changes)");
}

TEST(BuilderByProperty, RefusesAChildForAPropertyThatContainsNothing) {
  ChangeTuple::Builder builder;
  EXPECT_THAT(raised<InvalidValue>([&] {
                builder.setOrAdd(propertyOf(builder, u"id"), std::make_unique<ChangeTuple::Builder>());
              }),
              StartsWith("InvalidValue(nd.data.adapter.ChangeTuple.id; "));
}

TEST(BuilderByProperty, RefusesASecondElementForAPropertyThatHoldsOne) {
  const Model model = Model::create();
  const std::string refused = "CannotAddSecondObject(nd.data.adapter.MetaDataEntry.value)";
  MetaDataEntry::Builder builder(model);
  const auto value = propertyOf(builder, u"value");
  builder.setValue(ChangeTuple::Builder().setId(u"first"));
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { builder.setValue(ChangeTuple::Builder()); }), refused);
  EXPECT_EQ(raised<CannotAddSecondObject>(
                [&] { builder.setOrAdd(value, std::make_unique<ChangeTuple::Builder>()); }),
            refused);
  EXPECT_EQ(
      raised<CannotAddSecondObject>([&] { builder.setOrAdd(value, Value(ChangeTuple::create(model))); }),
      refused);
  EXPECT_EQ(builder.create().value().getPropertyValue(u"id"), Value(u"first"));
}

TEST(BuilderByProperty, RefusesElementsThatDoNotFitWhenTheyAreToBePutIn) {
  const Model model = Model::create(), other = Model::create();
  const auto changes = ChangeReport::metaClass().property(u"changes");
  const auto create = [&](const Value& value) {
    ChangeReport::Builder builder(model);
    builder.setOrAdd(changes, value);
    builder.create();
  };
  const AdapterConfig config = AdapterConfig::create(model);
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] { create(Value(config)); }),
            "CannotAddIncompatibleTypes(nd.data.adapter.ChangeReport.changes; nd.data.adapter.AdapterConfig; "
            "nd.data.adapter.ChangeTuple)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { create(Value(ModelElement())); }),
            "CannotAddNonExistentObject(nd.data.adapter.ChangeReport.changes)");
  EXPECT_EQ(raised<lxb::messages::CannotCreateCrossModelAssociation>(
                [&] { create(Value(ChangeTuple::create(other))); }),
            "CannotCreateCrossModelAssociation(nd.data.adapter.ChangeReport.changes)");
  EXPECT_EQ(stateOf(model), before);
}

TEST(BuilderByProperty, RefusesABuilderOfAnotherClassWhenItsElementIsToBePutIn) {
  const Model model = Model::create();
  ChangeReport::Builder builder(model);
  builder.setOrAdd(propertyOf(builder, u"changes"), std::make_unique<AdapterConfig::Builder>());
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] { builder.create(); }),
            "CannotAddIncompatibleTypes(nd.data.adapter.ChangeReport.changes; nd.data.adapter.AdapterConfig; "
            "nd.data.adapter.ChangeTuple)");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(BuilderByProperty, SetsWhatIsReadOnlyAfterwards) {
  const Model model = Model::create();
  CPPAdapterV2Entry::Builder builder(model);
  builder.setOrAdd(propertyOf(builder, u"AdapterName"), Value(u"Ini"));
  EXPECT_EQ(builder.create().adapterName(), u"Ini");
}

TEST(BuilderWrapper, CarriesACopyOfTheBuilder) {
  const Model model = Model::create();
  ChangeTuple::Builder builder;
  builder.setId(u"as wrapped");
  const ChangeTuple::BuilderWrapper wrapper(builder);
  builder.setId(u"changed later");
  const ChangeReport report = ChangeReport::create(model);
  EXPECT_EQ(report.createIntoChanges(wrapper).id(), u"as wrapped");
  EXPECT_EQ(report.createIntoChanges(wrapper).id(), u"as wrapped");
  EXPECT_FALSE(builder.getModel());
}

TEST(BuilderWrapper, HasTheModelOfTheContainerFromThenOn) {
  const ChangeTuple::BuilderWrapper child{ChangeTuple::Builder()};
  const ChangeTuple::BuilderWrapper nested{ChangeTuple::Builder()};
  const ChangeReport::BuilderWrapper value{ChangeReport::Builder().setChanges(nested)};
  const Model model = Model::create();
  ChangeReport::create(model).createIntoChanges(child);
  MetaDataEntry::create(model).createIntoValue(value);
  EXPECT_EQ(child.builder()->getModel(), model);
  EXPECT_EQ(value.builder()->getModel(), model);
  EXPECT_FALSE(nested.builder()->getModel()) << "what is made within another has its model meanwhile only";
  EXPECT_EQ(child.builder()->create().getModel(), model);
}

TEST(BuilderWrapper, OfABuilderThatIsGivenLeavesThatWithoutModel) {
  const Model model = Model::create();
  const ChangeTuple::Builder builder;
  ChangeReport::create(model).createIntoChanges(builder);
  EXPECT_FALSE(builder.getModel());
}

TEST(BuilderWrapper, IsOneBuilderWithinACreationHoweverOftenItIsGiven) {
  const Model model = Model::create();
  const ChangeTuple::Builder builder;
  const ChangeTuple::BuilderWrapper wrapper(builder);
  EXPECT_EQ(ChangeReport::Builder(model).setChanges(wrapper).setChanges(wrapper).create().changes().size(),
            1U);
  EXPECT_EQ(ChangeReport::Builder(model).setChanges(builder).setChanges(builder).create().changes().size(),
            2U);
}

TEST(BuilderWrapper, MakesOneElementForTwoPlacesWhichTheLastOneGets) {
  const Model model = Model::create();
  const ChangeTuple::BuilderWrapper shared(ChangeTuple::Builder().setId(u"shared"));
  const auto container = DataContainer::Builder(model)
                             .setMetaDataCache(MetaDataEntry::Builder().setName(u"a").setValue(shared))
                             .setMetaDataCache(MetaDataEntry::Builder().setName(u"b").setValue(shared))
                             .create();
  EXPECT_FALSE(container.metaDataCache().find(u"a").value());
  EXPECT_EQ(container.metaDataCache().find(u"b").value().getPropertyValue(u"id"), Value(u"shared"));
}

TEST(BuilderWrapper, RefusesToCarryNothing) {
  EXPECT_THAT(raised<InvalidValue>(
                  [] { ModelElement::BuilderWrapper wrapper{std::shared_ptr<ModelElement::Builder>()}; }),
              StartsWith("InvalidValue(BuilderWrapper; "));
}

TEST(BuilderWrapper, UsesTheModelOfTheContainerWhateverTheBuilderHad) {
  const Model model = Model::create(), other = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const ChangeTuple tuple = report.createIntoChanges(ChangeTuple::Builder(other));
  EXPECT_EQ(tuple.getModel(), model);
  EXPECT_EQ(other.impl()->numberOfElements(), 0U);
}

TEST(CreateInto, LeavesNothingBehindWhenItFails) {
  const Model model = Model::create();
  const ChangeReport report = reportOf(model, {u"a"});
  const auto taken = report.identifier();
  const std::string before = stateOf(model);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { report.createIntoChanges(ChangeTuple::Builder(), taken); }),
            "CannotAddSecondObject(The identity " + boost::uuids::to_string(taken) + ")");
  EXPECT_EQ(stateOf(model), before);
}

TEST(InstantiateBuilder, GivesABuilderOfTheClassForTheModel) {
  const Model model = Model::create();
  const auto builder = ChangeTuple::metaClass().impl()->instantiateBuilder(model);
  ASSERT_TRUE(builder);
  EXPECT_EQ(builder->getMetaClass(), ChangeTuple::metaClass());
  builder->setOrAdd(ChangeTuple::metaClass().property(u"id"), Value(u"gain"));
  const ModelElement made = builder->create();
  EXPECT_EQ(made.getModel(), model);
  EXPECT_EQ(made.getPropertyValue(u"id"), Value(u"gain"));
}

TEST(InstantiateBuilder, GivesNoneForAnAbstractClass) {
  EXPECT_FALSE(ModelElement::metaClass().impl()->instantiateBuilder(Model::create()));
}

}  // namespace
