// What the storage of a class with superclasses holds: bits and old values of its own and inherited
// properties.
#include <cstdint>
#include <memory>

#include <gtest/gtest.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Robot.h"

using namespace probing;
using probe::inner::Robot;

namespace {

enum Index : unsigned { Name = 1, Number, Remark, Serial, Speeds, Parts, Task, Tools, Held, Orders };

using Text = boost::optional<std::u16string>;
using Numbers = std::vector<std::int32_t>;

/// A robot whose latest storage can be looked at.
class WatchedRobot final : public Robot::Impl {
 public:
  explicit WatchedRobot(const Model& model) : Robot::Impl(model, {}) {}

  std::unique_ptr<ModelElement::Impl::Storage> createStorage() const override {
    std::unique_ptr<ModelElement::Impl::Storage> storage = Robot::Impl::createStorage();
    latest = storage.get();
    return storage;
  }

  mutable ModelElement::Impl::Storage* latest = nullptr;
};

class SubclassStorage : public testing::Test {
 protected:
  SubclassStorage() {
    Transaction transaction = begin(model);
    watched = new WatchedRobot(model);
    robot = Robot(watched);
    watched->notifyCreated();
    robot.setName(u"arm");
    robot.setSerial("A1");
    robot.getSpeedsMutable().add(3);
    robot.setTask(std::u16string(u"weld"));
    here = Containers::create(model);
    there = Containers::create(model);
    here.getRowMutable().add(robot);
    transaction.commit();
  }

  /// Change the number, so that the open transaction has the storage that this gives. What an operation keeps
  /// in a transaction of its own comes into it.
  ModelElement::Impl::Storage& begunStorage() {
    robot.setNumber(robot.number() + 1);
    return *watched->latest;
  }
  static std::uint64_t bit(unsigned index) { return std::uint64_t{1} << index; }

  const Model model = Model::create();
  WatchedRobot* watched = nullptr;
  Robot robot;
  Containers here, there;
};

TEST_F(SubclassStorage, MarksWhatEachClassAddsByItsIndex) {
  const Transaction open = begin(model);
  const ModelElement::Impl::Storage& storage = begunStorage();
  std::uint64_t wanted = bit(Number);
  EXPECT_EQ(storage.mask(), wanted);
  robot.setName(u"leg");
  EXPECT_EQ(storage.mask(), wanted |= bit(Name));
  robot.setSerial("B2");
  EXPECT_EQ(storage.mask(), wanted |= bit(Serial));
  robot.getSpeedsMutable().add(4);
  EXPECT_EQ(storage.mask(), wanted |= bit(Speeds));
  robot.createIntoParts(Thing::Builder().setName(u"screw"));
  EXPECT_EQ(storage.mask(), wanted |= bit(Parts));
  robot.setTask(boost::none);
  EXPECT_EQ(storage.mask(), wanted |= bit(Task));
  robot.createIntoHeld(Thing::Builder());
  EXPECT_EQ(storage.mask(), wanted |= bit(Held));
}

TEST_F(SubclassStorage, GivesTheOldValuesOfInheritedAndOwnProperties) {
  const Transaction open = begin(model);
  const ModelElement::Impl::Storage& storage = begunStorage();
  robot.setName(u"leg");
  robot.setName(u"foot");
  robot.setSerial("B2");
  robot.getSpeedsMutable().add(4);
  robot.setTask(boost::none);
  const ModelElement tool = robot.createIntoTools(Machine::Builder());
  EXPECT_EQ(storage.getOldValue(Name), Value(u"arm"));
  EXPECT_EQ(storage.getOldValue(Number), Value(7));
  EXPECT_EQ(storage.getOldValue(Serial), Value(std::string("A1")));
  EXPECT_EQ(storage.getOldValue(Speeds), Value(Numbers{3}));
  EXPECT_EQ(storage.getOldValue(Task), Value(Text(u"weld")));
  EXPECT_EQ(storage.getOldValue(Tools), Value(Elements()));
  EXPECT_EQ(robot.getPropertyValue(u"tools"), Value(Elements{tool}));
}

TEST_F(SubclassStorage, GivesAnEmptyValueForWhatHasNotChangedWhicheverClassAddsIt) {
  const Transaction open = begin(model);
  const ModelElement::Impl::Storage& storage = begunStorage();
  for (const unsigned index : {Name, Remark, Serial, Speeds, Parts, Task, Tools, Held, Orders})
    EXPECT_TRUE(storage.getOldValue(index).isEmpty()) << index;
  EXPECT_TRUE(storage.getOldValue(Orders + 1).isEmpty()) << "there is no such property";
}

TEST_F(SubclassStorage, ForgetsWhatIsInheritedAndWasChangedBack) {
  const Transaction open = begin(model);
  ModelElement::Impl::Storage& storage = begunStorage();
  robot.setName(u"leg");
  robot.setSerial("B2");
  robot.setTask(boost::none);
  robot.setName(u"arm");
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Serial) | bit(Task));
  EXPECT_TRUE(storage.getOldValue(Name).isEmpty());
  robot.setSerial("A1");
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Task));
}

TEST_F(SubclassStorage, ForgetsWhatIsItsOwnAndWasChangedBack) {
  const Transaction open = begin(model);
  ModelElement::Impl::Storage& storage = begunStorage();
  robot.setName(u"leg");
  robot.setTask(boost::none);
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Name) | bit(Task));
  robot.setTask(std::u16string(u"weld"));
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Name));
  EXPECT_TRUE(storage.getOldValue(Task).isEmpty());
}

TEST_F(SubclassStorage, ForgetsTheContainerWhenTheElementWasMovedBack) {
  constexpr unsigned Container = 63;
  const Transaction open = begin(model);
  ModelElement::Impl::Storage& storage = begunStorage();
  there.getRowMutable().add(robot);
  ASSERT_EQ(robot.container(), there);
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Container));
  here.getRowMutable().add(robot);
  ASSERT_EQ(robot.container(), here);
  EXPECT_EQ(storage.mask(), bit(Number) | bit(Container));
  storage.revertUnchanged(*watched);
  EXPECT_EQ(storage.mask(), bit(Number));
}

}  // namespace
