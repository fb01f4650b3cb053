#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "tests/nd_data_adapter/model/ModelTest.h"

using namespace model_test;
using boost::uuids::uuid;
using lxb::messages::CannotAddSecondObject;

namespace {

const uuid One = boost::uuids::string_generator()("11111111-1111-4111-8111-111111111111");
const std::string Taken = "CannotAddSecondObject(The identity 11111111-1111-4111-8111-111111111111)";

TEST(ElementIdentity, IsTheOneThatItWasCreatedWith) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model, One);
  EXPECT_EQ(tuple.identifier(), One);
  EXPECT_EQ(tuple.impl()->getProxyId(), One);
  EXPECT_EQ(model.impl()->findElement(One), tuple);
}

TEST(ElementIdentity, IsRandomAndMadeWhenFirstAskedFor) {
  const Model model = Model::create();
  const ChangeTuple one = ChangeTuple::create(model);
  const ChangeTuple two = ChangeTuple::create(model);
  const uuid first = one.identifier();
  EXPECT_FALSE(first.is_nil());
  EXPECT_EQ(first.version(), uuid::version_random_number_based);
  EXPECT_EQ(one.identifier(), first);
  EXPECT_NE(two.identifier(), first);
  EXPECT_EQ(model.impl()->findElement(first), one);
}

TEST(ElementIdentity, IsAskedForWithoutATransaction) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const std::uint64_t before = transactions(model);
  tuple.identifier();
  EXPECT_EQ(transactions(model), before);
}

TEST(ElementIdentity, StaysWhenTheTransactionInWhichItWasFirstAskedForIsAbandoned) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  uuid first{};
  {
    const Transaction open = begin(model);
    first = tuple.identifier();
  }
  EXPECT_EQ(tuple.identifier(), first);
  EXPECT_EQ(model.impl()->findElement(first), tuple);
}

TEST(FindElement, FindsNothingForNilOrAnUnknownIdentity) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  EXPECT_FALSE(model.impl()->findElement({}));
  EXPECT_FALSE(model.impl()->findElement(One));
}

TEST(FindElement, FindsNoElementThatIsGone) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model, One);
  {
    const Transaction open = begin(model);
    tuple.destroy();
    EXPECT_FALSE(model.impl()->findElement(One));
  }
  EXPECT_EQ(model.impl()->findElement(One), tuple);
  tuple.destroy();
  EXPECT_FALSE(model.impl()->findElement(One));
}

TEST(FindElement, FindsContainedElements) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model);
  const ChangeTuple tuple = report.createIntoChanges(ChangeTuple::Builder(), One);
  EXPECT_EQ(model.impl()->findElement(One), tuple);
  report.destroy();
  EXPECT_FALSE(model.impl()->findElement(One));
}

TEST(FindElement, SeesItsOwnModelOnly) {
  const Model here = Model::create();
  const Model there = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(here, One);
  EXPECT_FALSE(there.impl()->findElement(One));
  const ChangeTuple twin = ChangeTuple::create(there, One);
  EXPECT_EQ(there.impl()->findElement(One), twin);
}

TEST(ElementIdentity, CanNotBeThatOfALivingElement) {
  const Model model = Model::create();
  const ChangeReport report = ChangeReport::create(model, One);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { ChangeTuple::create(model, One); }), Taken);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { ChangeTuple::Builder(model).create(One); }), Taken);
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { report.createIntoChanges(ChangeTuple::Builder(), One); }),
            Taken);
  EXPECT_EQ(model.impl()->elements(), std::vector<ModelElement>{report});
  EXPECT_TRUE(report.changes().empty());
  EXPECT_EQ(model.impl()->findElement(One), report);
}

TEST(ElementIdentity, CanNotBeThatWhichALivingElementGotAtRandom) {
  const Model model = Model::create();
  const ChangeTuple tuple = ChangeTuple::create(model);
  const uuid random = tuple.identifier();
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { ChangeTuple::create(model, random); }),
            "CannotAddSecondObject(The identity " + boost::uuids::to_string(random) + ")");
}

TEST(ElementIdentity, IsFreeAgainOnceItsElementIsDestroyed) {
  const Model model = Model::create();
  ChangeTuple::create(model, One).destroy();
  const ChangeTuple second = ChangeTuple::create(model, One);
  EXPECT_EQ(model.impl()->findElement(One), second);
}

TEST(ElementIdentity, IsFreeAgainOnceTheCreationIsUndone) {
  const Model model = Model::create();
  {
    const Transaction open = begin(model);
    ChangeTuple::create(model, One);
  }
  EXPECT_FALSE(model.impl()->findElement(One));
  const ChangeTuple second = ChangeTuple::create(model, One);
  EXPECT_EQ(model.impl()->findElement(One), second);
}

TEST(ElementIdentity, GoesToASecondElementInTheTransactionThatDestroyedTheFirst) {
  const Model model = Model::create();
  const ChangeTuple first = ChangeTuple::create(model, One);
  Transaction open = begin(model);
  first.destroy();
  const ChangeTuple second = ChangeTuple::create(model, One);
  EXPECT_EQ(model.impl()->findElement(One), second);
  open.commit();
  EXPECT_EQ(model.impl()->findElement(One), second);
  EXPECT_FALSE(first.isAlive());
}

TEST(ElementIdentity, ReturnsToTheFirstElementWhenThatTransactionIsAbandoned) {
  const Model model = Model::create();
  const ChangeTuple first = ChangeTuple::create(model, One);
  ChangeTuple second, third;
  {
    const Transaction open = begin(model);
    first.destroy();
    second = ChangeTuple::create(model, One);
    second.destroy();
    third = ChangeTuple::create(model, One);
  }
  EXPECT_EQ(model.impl()->findElement(One), first);
  EXPECT_TRUE(first.isAlive());
  EXPECT_FALSE(second.isAlive());
  EXPECT_FALSE(third.isAlive());
}

TEST(ElementIdentity, OfADeadElementIsTheOneThatItHad) {
  const Model model = Model::create();
  const ChangeTuple known = ChangeTuple::create(model, One);
  const ChangeTuple unknown = ChangeTuple::create(model);
  known.destroy();
  unknown.destroy();
  EXPECT_EQ(known.identifier(), One);
  EXPECT_TRUE(unknown.identifier().is_nil());
}

}  // namespace
