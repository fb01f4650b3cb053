#include "platform/foundation/messages.h"
#include "tests/nd_data_adapter/model/generator/hostile/Hostile.h"
#include "tests/nd_data_adapter/model/generator/hostile/ModelElements.h"
#include "tests/nd_data_adapter/model/generator/hostile/Value.h"
#include "tests/platform/foundation/raised.h"

using hostile::std::lx::base::Flag;
using hostile::std::lx::base::Hostile;
using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;
using HostileValue = hostile::std::lx::base::Value;

namespace {

TEST(HostileModel, KeepsItsMembersApartFromThoseOfTheFoundation) {
  const Model model = Model::create();
  const Hostile hostile = Hostile::create(model);
  hostile.setValue(u"value");
  hostile.getElementMutable().add(u"element");
  hostile.setResult(std::int32_t{1});
  hostile.setProperty(true);
  hostile.setIndex(2);
  hostile.setTo(u"to");
  hostile.setModels(model);
  hostile.setUuid(boost::uuids::uuid{{7}});
  EXPECT_EQ(hostile.value(), u"value");
  EXPECT_EQ(hostile.element().at(0), u"element");
  EXPECT_EQ(hostile.result().value(), 1);
  EXPECT_TRUE(hostile.property());
  EXPECT_EQ(hostile.index(), 2);
  EXPECT_EQ(hostile.to(), u"to");
  EXPECT_EQ(hostile.models(), model);
  EXPECT_EQ(hostile.getModel(), model);
  EXPECT_EQ(hostile.uuid(), (boost::uuids::uuid{{7}}));
  EXPECT_NE(hostile.identifier(), hostile.uuid());
  EXPECT_EQ(hostile.std(), Flag::value);
  EXPECT_EQ(hostile.lx(), Flag::Texts);
  EXPECT_EQ(hostile.boost(), u"\\\"");
  hostile.setModels(Model());
}

TEST(HostileModel, KeepsDefaultsThatHaveNulsWhole) {
  const Model model = Model::create();
  const Hostile hostile = Hostile::create(model);
  EXPECT_EQ(hostile.cut(), std::u16string(u"a\0b", 3));
  EXPECT_EQ(hostile.cutNarrow(), std::string("\0\xc3\xa9\0", 4));
  EXPECT_EQ(Hostile::metaClass().property(u"cut").getDefaultText().value(), std::u16string(u"a\0b", 3));
  EXPECT_EQ(Hostile::metaClass().property(u"cutNarrow").getDefaultText().value(),
            std::u16string(u"\0\u00e9\0", 3));
}

TEST(HostileModel, BuildsAndNests) {
  const Model model = Model::create();
  const Hostile other = Hostile::create(model);
  const Hostile hostile = Hostile::Builder(model)
                              .setValue(u"outer")
                              .setModels(Model())
                              .setSetOrAdd(u"set or add")
                              .setDoCreate(u"do create")
                              .setFields({u"b", u"a"})
                              .setHostile(other)
                              .setChild(other)
                              .setChild(Hostile::Builder().setValue(u"referred to"))
                              .setBuilder(Hostile::Builder().setValue(u"inner"))
                              .setValues(Hostile::Builder().setValue(u"listed"))
                              .setValues(HostileValue::Builder().setValue(u"listed, too"))
                              .setOrchestrator(Hostile::Builder().setValue(u"keyed"))
                              .create();
  EXPECT_EQ(hostile.getModel(), model);
  EXPECT_EQ(hostile.models(), Model());
  EXPECT_EQ(hostile.setOrAdd(), u"set or add");
  EXPECT_EQ(hostile.doCreate(), u"do create");
  EXPECT_EQ(hostile.fields().values(), (std::vector<std::u16string>{u"a", u"b"}));
  EXPECT_EQ(hostile.hostile(), other);
  EXPECT_EQ(hostile.child().size(), 2U);
  EXPECT_TRUE(hostile.child().contains(other));
  EXPECT_EQ(hostile.builder().value(), u"inner");
  EXPECT_EQ(hostile.values().at(0).value(), u"listed");
  EXPECT_EQ(hostile.values().at(1).getMetaClass(), HostileValue::metaClass());
  EXPECT_EQ(hostile.orchestrator().find(u"keyed").value(), u"keyed");
}

TEST(HostileModel, IsFoundByPropertiesThatAreCalledLikeWhatQueriesHave) {
  const Model model = Model::create();
  const Hostile one = Hostile::create(model);
  one.setAddCondition(u"one");
  one.setMatches(u"both");
  const Hostile two = Hostile::create(model);
  two.setAddCondition(u"two");
  two.setMatches(u"both");
  Hostile::Constrainables wanted(model);
  wanted.addCondition.equals(u"two");
  wanted.matches.equals(u"both");
  EXPECT_EQ(lx::base::query::find<Hostile>(wanted), std::vector<Hostile>{two});
}

TEST(HostileModel, GivesOutArgumentsThatAreCalledLikeTypes) {
  const Model model = Model::create();
  const Hostile hostile = Hostile::create(model);
  Flag flag = Flag::name;
  std::vector<Hostile> made;
  std::u16string text;
  EXPECT_TRUE(hostile.typed(2, hostile, flag, made, text));
  EXPECT_EQ(flag, Flag::Flag);
  EXPECT_EQ(made, (std::vector<Hostile>{hostile, hostile}));
  EXPECT_EQ(text, u"texts");
}

TEST(HostileModel, OverridesAndDerives) {
  const Model model = Model::create();
  const HostileValue value = HostileValue::create(model);
  value.setValue(u"so");
  EXPECT_EQ(value.toText(), u"value of hostile");
  EXPECT_EQ(Hostile::create(model).toText(), u"hostile");
  EXPECT_EQ(value.derived(), u"so'");
  EXPECT_EQ(value.getPropertyValue(u"derived"), Value(u"so'"));
  EXPECT_EQ(value.getPropertyValue(u"Flag"), Value(Flag::Texts));
}

TEST(HostileModel, KeysAMapByAPropertyThatIsCalledLikeAnArgument) {
  const Model model = Model::create();
  const auto elements = hostile::std::lx::base::ModelElements::create(model);
  elements.createIntoKeyIndex(hostile::std::lx::base::ModelElements::Builder().setIndex(3));
  EXPECT_EQ(elements.keyIndex().find(3).index(), 3);
}

TEST(HostileModel, PassesArgumentsByTheirNames) {
  const Model model = Model::create();
  const Hostile hostile = Hostile::create(model);
  EXPECT_EQ(hostile.operate(u"a", hostile, 0, true, Flag::name, {}, u"b"), u"ab");
  const std::vector<Value> arguments{Value(u"a"), Value(hostile),    Value(std::int32_t{0}),
                                     Value(true), Value(Flag::name), Value(std::vector<ModelElement>()),
                                     Value(u"b")};
  EXPECT_EQ(hostile.invoke(u"operate", arguments), Value(u"ab"));
}

}  // namespace
