#include "platform/foundation/messages.h"
#include "tests/nd_data_adapter/model/generator/hostile/Hostile.h"
#include "tests/platform/foundation/raised.h"

using hostile::std::lx::base::Flag;
using hostile::std::lx::base::Hostile;
using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;

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
