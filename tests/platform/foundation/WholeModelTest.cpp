// One of everything that a metamodel can have: what is described is what is made.

#include "platform/foundation/messages.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "tests/platform/foundation/raised.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/Defaults.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/MoreReferences.h"
#include "tests/support/model/Optionals.h"
#include "tests/support/model/Robot.h"
#include "tests/support/model/Sets.h"
#include "tests/support/model/Traits.h"
#include "tests/support/model/Twig.h"
#include "tests/support/model/Values.h"
#include "tests/support/model/bodies.h"

using namespace lx::base;
using probe::Colour;
using probe::Thing;
using probe::inner::Robot;
using Text = std::u16string;

namespace {

const boost::uuids::uuid Id{{1, 2, 3}};

class WholeModel : public testing::Test {
 protected:
  const Model model = Model::create();
};

TEST_F(WholeModel, SetsAndGivesASingleValueOfEveryType) {
  const auto values = probe::Values::create(model);
  const auto ticket = std::make_shared<int>(4);
  probe::TokenTag tag;
  values.setText(u"wide");
  values.setNarrow("narrow");
  values.setFlag(true);
  values.setNumber(-5);
  values.setWorld(model);
  values.setIdentity(Id);
  values.setColour(Colour::Blue);
  values.setTicket(ticket);
  values.setToken(&tag);
  EXPECT_EQ(values.text(), u"wide");
  EXPECT_EQ(values.narrow(), "narrow");
  EXPECT_TRUE(values.flag());
  EXPECT_EQ(values.number(), -5);
  EXPECT_EQ(values.world(), model);
  EXPECT_EQ(values.identity(), Id);
  EXPECT_EQ(values.colour(), Colour::Blue);
  EXPECT_EQ(values.ticket(), ticket);
  EXPECT_EQ(values.token(), &tag);
  values.setWorld({});
}

TEST_F(WholeModel, GivesTheZeroOfEveryTypeAtFirst) {
  const auto values = probe::Values::create(model);
  EXPECT_EQ(values.text(), u"");
  EXPECT_EQ(values.narrow(), "");
  EXPECT_FALSE(values.flag());
  EXPECT_EQ(values.number(), 0);
  EXPECT_FALSE(values.world());
  EXPECT_TRUE(values.identity().is_nil());
  EXPECT_EQ(values.colour(), Colour::Red);
  EXPECT_FALSE(values.ticket());
  EXPECT_EQ(values.token(), nullptr);
}

TEST_F(WholeModel, GivesTheDefaultsThatAreDescribed) {
  const auto defaults = probe::Defaults::create(model);
  EXPECT_EQ(defaults.text(), u"wide \" text");
  EXPECT_EQ(defaults.narrow(), "narrow");
  EXPECT_TRUE(defaults.flag());
  EXPECT_EQ(defaults.number(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(defaults.colour(), Colour::Blue);
  EXPECT_EQ(probe::Defaults::metaClass().property(u"number").getDefaultText().value(), u"-2147483648");
}

TEST_F(WholeModel, TellsAnAbsentValueFromAZero) {
  const auto optionals = probe::Optionals::create(model);
  EXPECT_FALSE(optionals.hasNumber());
  optionals.setNumber(0);
  optionals.setText(Text());
  optionals.setFlag(false);
  optionals.setColour(Colour::Red);
  optionals.setTicket(std::shared_ptr<int>());
  EXPECT_TRUE(optionals.hasNumber() && optionals.hasText() && optionals.hasFlag() && optionals.hasColour() &&
              optionals.hasTicket());
  EXPECT_FALSE(optionals.hasNarrow() || optionals.hasWorld() || optionals.hasIdentity() ||
               optionals.hasToken());
  optionals.setNumber(boost::none);
  EXPECT_FALSE(optionals.hasNumber());
}

TEST_F(WholeModel, KeepsListsOfEveryType) {
  const auto lists = probe::Lists::create(model);
  lists.getTextsMutable().assign({u"b", u"a", u"b"});
  lists.getNarrowsMutable().add("n");
  lists.getFlagsMutable().assign({true, false, true});
  lists.getNumbersMutable().add(3);
  lists.getWorldsMutable().add(model);
  lists.getIdentitiesMutable().add(Id);
  lists.getColoursMutable().add(Colour::Green);
  lists.getTicketsMutable().add(nullptr);
  EXPECT_EQ(lists.texts().values(), (std::vector<Text>{u"b", u"a", u"b"}));
  EXPECT_EQ(lists.flags().values(), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(lists.colours().at(0), Colour::Green);
  EXPECT_EQ(lists.getPropertyValue(u"flags"), Value(std::vector<bool>{true, false, true}));
  EXPECT_EQ(lists.worlds().at(0), model);
  lists.getWorldsMutable().clear();
}

TEST_F(WholeModel, KeepsSetsOfEveryTypeThatHasAnOrder) {
  const auto sets = probe::Sets::create(model);
  EXPECT_TRUE(sets.getTextsMutable().add(u"b"));
  EXPECT_TRUE(sets.getTextsMutable().add(u"a"));
  EXPECT_FALSE(sets.getTextsMutable().add(u"b"));
  sets.getNarrowsMutable().add("n");
  sets.getFlagsMutable().add(true);
  sets.getFlagsMutable().add(false);
  sets.getNumbersMutable().add(-1);
  sets.getIdentitiesMutable().add(Id);
  sets.getColoursMutable().add(Colour::Green);
  sets.getColoursMutable().add(Colour::Blue);
  EXPECT_EQ(sets.texts().values(), (std::vector<Text>{u"a", u"b"}));
  EXPECT_EQ(sets.flags().values(), (std::vector<bool>{false, true}));
  EXPECT_EQ(sets.colours().values(), (std::vector<Colour>{Colour::Blue, Colour::Green}));
  EXPECT_TRUE(sets.hasIdentities());
  EXPECT_EQ(sets.getPropertyValue(u"texts"), Value(std::set<Text>{u"a", u"b"}));
}

TEST_F(WholeModel, BuildsSetsAndFindsElementsByThem) {
  const auto sets = probe::Sets::Builder(model).setTexts({u"b", u"a", u"b"}).setNumbers({2, 1}).create();
  EXPECT_EQ(sets.numbers().values(), (std::vector<std::int32_t>{1, 2}));
  probe::Sets::create(model);
  probe::Sets::Constrainables wanted(model);
  wanted.texts.equals({u"a", u"b"});
  EXPECT_EQ(query::find<probe::Sets>(wanted), std::vector<probe::Sets>{sets});
}

TEST_F(WholeModel, GivesEveryLevelOfSubclassesItsOwnPropertiesAndTheInheritedOnes) {
  const auto robot = Robot::Builder(model)
                         .setName(u"robot")
                         .setNumber(1)
                         .setRemark(Text(u"noted"))
                         .setSerial("S1")
                         .setSpeeds({1, 2})
                         .setParts(Thing::Builder().setName(u"arm"))
                         .setTask(Text(u"weld"))
                         .setTools(Robot::Builder().setName(u"little"))
                         .setHeld(Thing::Builder().setName(u"screw"))
                         .setOrders(Thing::Builder().setNumber(2))
                         .create();
  EXPECT_EQ(robot.name(), u"robot");
  EXPECT_EQ(robot.speeds().values(), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(robot.parts().find(u"arm").container(), robot);
  EXPECT_EQ(robot.tools().at(0).getMetaClass(), Robot::metaClass());
  EXPECT_EQ(robot.held().name(), u"screw");
  EXPECT_EQ(robot.orders().first().number(), 2);
  std::vector<unsigned> indices;
  for (const auto& property : Robot::metaClass().getProperties()) indices.push_back(property.getIndex());
  EXPECT_EQ(indices, (std::vector<unsigned>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST_F(WholeModel, GivesItsPropertiesByTheirIndicesAtEveryLevel) {
  const auto robot = Robot::create(model);
  EXPECT_EQ(robot.impl()->getPropertyByIndex(1), Thing::metaClass().property(u"name"));
  EXPECT_EQ(robot.impl()->getPropertyByIndex(6), probe::Machine::metaClass().property(u"parts"));
  EXPECT_EQ(robot.impl()->getPropertyByIndex(10), Robot::metaClass().property(u"orders"));
  EXPECT_EQ(raised<lxb::messages::NoSuchType>([&] { robot.impl()->getPropertyByIndex(11); }),
            "NoSuchType(probe.inner.Robot.#11)");
  EXPECT_EQ(raised<lxb::messages::NoSuchType>([&] { robot.impl()->getPropertyByIndex(0); }),
            "NoSuchType(probe.inner.Robot.#0)");
}

TEST_F(WholeModel, LetsClassesContainEachOther) {
  const auto branch = probe::Branch::create(model);
  const auto leaf = branch.createIntoLeaf(probe::Leaf::Builder());
  const auto inner = leaf.createIntoBranch(probe::Twig::Builder());
  leaf.setGrownOn(branch);
  EXPECT_EQ(inner.container(), leaf);
  EXPECT_EQ(inner.getMetaClass(), probe::Twig::metaClass());
  EXPECT_EQ(leaf.grownOn(), branch);
  branch.createIntoTwigs(probe::Twig::Builder());
  branch.destroy();
  EXPECT_FALSE(inner.isAlive());
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST_F(WholeModel, PassesBuildersOfSubclassesOnByTheirWrappers) {
  const probe::Twig::BuilderWrapper twig((probe::Twig::Builder()));
  const probe::Branch::BuilderWrapper branch(twig);
  const auto made = probe::Branch::create(model).createIntoBranches(branch);
  EXPECT_EQ(made.getMetaClass(), probe::Twig::metaClass());
}

TEST_F(WholeModel, TakesNoBuilderOfAnotherClass) {
  EXPECT_TRUE((std::is_convertible_v<probe::Twig::Builder, probe::Branch::BuilderWrapper>));
  EXPECT_FALSE((std::is_convertible_v<probe::Branch::Builder, probe::Twig::BuilderWrapper>));
  EXPECT_FALSE((std::is_convertible_v<probe::Leaf::Builder, probe::Branch::BuilderWrapper>));
  EXPECT_FALSE((std::is_convertible_v<probe::Branch::BuilderWrapper, probe::Twig::BuilderWrapper>));
}

TEST_F(WholeModel, DescribesItsTraits) {
  const auto traits = [](const char16_t* name) { return probe::Traits::metaClass().property(name).traits(); };
  EXPECT_TRUE(probe::Traits::metaClass().isHidden());
  EXPECT_TRUE(traits(u"hidden").isHidden);
  EXPECT_TRUE(traits(u"ordered").isOrdered);
  EXPECT_TRUE(traits(u"unique").isUnique);
  EXPECT_TRUE(traits(u"fixed").isReadOnly);
  EXPECT_TRUE(traits(u"passing").isTransient);
  EXPECT_FALSE(traits(u"unread").hasPublicGetter);
  EXPECT_FALSE(traits(u"unwritten").hasPublicSetter);
  EXPECT_TRUE(traits(u"unwritten").hasPublicGetter);
  EXPECT_FALSE(traits(u"ordered").isHidden || traits(u"ordered").isUnique || traits(u"ordered").isReadOnly);
  const auto refers = [](const char16_t* name) {
    return probe::References::metaClass().property(name).traits();
  };
  EXPECT_TRUE(refers(u"proxyRow").acceptsProxies);
  EXPECT_FALSE(refers(u"row").acceptsProxies || refers(u"row").isContained);
}

TEST_F(WholeModel, AnswersWhetherAPropertyHoldsAProxy) {
  const auto references = probe::inner::MoreReferences::create(model);
  const Thing thing = Thing::create(model);
  const Robot robot = Robot::create(model);
  references.getProxyRowMutable().add(thing);
  references.getRobotsMutable().add(robot);
  const unsigned row = probe::References::metaClass().property(u"proxyRow").getIndex();
  const unsigned robots = probe::inner::MoreReferences::metaClass().property(u"robots").getIndex();
  EXPECT_FALSE(references.impl()->inverseContainsProxyTo(row, thing.identifier()));
  thing.impl()->convertToProxy();
  robot.impl()->convertToProxy();
  EXPECT_TRUE(references.impl()->inverseContainsProxyTo(row, thing.identifier()));
  EXPECT_TRUE(references.impl()->inverseContainsProxyTo(robots, robot.identifier()));
  EXPECT_FALSE(references.impl()->inverseContainsProxyTo(robots, thing.identifier()));
  EXPECT_FALSE(references.impl()->inverseContainsProxyTo(1, thing.identifier()));
}

TEST_F(WholeModel, TellsReferencesFromContents) {
  const auto references = probe::References::create(model);
  const Thing thing = Thing::create(model);
  references.setOne(thing);
  references.setAny(thing);
  references.getBagMutable().add(thing);
  references.getAnyBagMutable().add(thing);
  EXPECT_FALSE(thing.container());
  references.destroy();
  EXPECT_TRUE(thing.isAlive());
}

}  // namespace
