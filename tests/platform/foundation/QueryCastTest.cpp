#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Robot.h"

using namespace probing;
using lx::base::query::find;
using probe::inner::Robot;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class QueryCast : public testing::Test {
 protected:
  const Model model = Model::create();
  const Machine first = Machine::create(model);
  const Thing plain = thing(model, u"plain");
  const References holder = References::create(model);
  const Robot robot = Robot::create(model);
  const Machine last = Machine::create(model);
};

TEST_F(QueryCast, GivesWhatIsOfTheClassInTheOrderOfCreation) {
  const Thing::Constrainables things(model);
  EXPECT_THAT(find<Thing>(things), ElementsAre(first, plain, robot, last));
  EXPECT_THAT(find<Machine>(things), ElementsAre(first, robot, last));
  EXPECT_THAT(find<Robot>(things), ElementsAre(robot));
}

TEST_F(QueryCast, GivesWhatIsOfASubclassAsWhatItInherits) {
  const Machine::Constrainables machines(model);
  EXPECT_THAT(find<Thing>(machines), ElementsAre(first, robot, last));
  EXPECT_THAT(find<ModelElement>(machines), ElementsAre(first, robot, last));
  EXPECT_THAT(find<Thing>(Robot::Constrainables(model)), ElementsAre(robot));
}

TEST_F(QueryCast, GivesNothingOfAClassThatTheQueryCannotMeet) {
  EXPECT_THAT(find<References>(Thing::Constrainables(model)), IsEmpty());
  EXPECT_THAT(find<Machine>(References::Constrainables(model)), IsEmpty());
  EXPECT_THAT(find<References>(References::Constrainables(model)), ElementsAre(holder));
}

TEST_F(QueryCast, KeepsTheConditions) {
  first.setNumber(1);
  plain.setNumber(1);
  robot.setNumber(1);
  robot.setSerial("met");
  Thing::Constrainables things(model);
  things.number.equals(1);
  EXPECT_THAT(find<Thing>(things), ElementsAre(first, plain, robot));
  EXPECT_THAT(find<Machine>(things), ElementsAre(first, robot));
  things.name.equals(u"plain");
  EXPECT_THAT(find<Machine>(things), IsEmpty());
  EXPECT_THAT(find<Thing>(things), ElementsAre(plain));
  Machine::Constrainables machines(model);
  machines.serial.equals("met");
  EXPECT_THAT(find<Thing>(machines), ElementsAre(robot));
}

TEST_F(QueryCast, GivesHandlesThatTheClassWorksThrough) {
  robot.setTask(std::u16string(u"paint"));
  last.getSpeedsMutable().add(3);
  const std::vector<Machine> machines = find<Machine>(Thing::Constrainables(model));
  ASSERT_EQ(machines.size(), 3U);
  EXPECT_THAT(machines[2].speeds().values(), ElementsAre(3));
  machines[1].setSerial("seen");
  EXPECT_EQ(robot.serial(), "seen");
  EXPECT_EQ(find<Robot>(Thing::Constrainables(model)).at(0).task().value_or(u""), u"paint");
}

TEST_F(QueryCast, AsksTheModelEachTime) {
  const Thing::Constrainables things(model);
  {
    const Transaction open = begin(model);
    robot.destroy();
    const Machine passing = Machine::create(model);
    EXPECT_THAT(find<Machine>(things), ElementsAre(first, last, passing));
    EXPECT_THAT(find<Robot>(things), IsEmpty());
  }
  EXPECT_THAT(find<Machine>(things), ElementsAre(first, robot, last));
}

TEST_F(QueryCast, GivesProxiesByTheirClass) {
  const Machine proxy = lx::base::createProxy<Machine>(model, identity(1));
  lx::base::createProxy<Thing>(model, identity(2));
  EXPECT_THAT(find<Machine>(Thing::Constrainables(model)), ElementsAre(first, robot, last, proxy));
}

}  // namespace
