#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"

using lx::base::Model;

namespace {

const boost::uuids::uuid Nil{};
const auto Known = boost::lexical_cast<boost::uuids::uuid>("4c1d7a90-5f0e-3b1a-8c55-2f8f10a7ffff");

TEST(RegistryModel, KeepsItsAddressAndItsIdentity) {
  const Model model = Model::createRegistryModel(u"registry@here", Known);
  EXPECT_TRUE(model.isAlive());
  EXPECT_EQ(model.address(), u"registry@here");
  EXPECT_EQ(model.identifier(), Known);
  EXPECT_FALSE(model.isTransient());
}

TEST(RegistryModel, MayHaveTheNilIdentity) {
  const Model model = Model::createRegistryModel(u"registry@here", Nil);
  EXPECT_EQ(model.identifier(), Nil);
  EXPECT_EQ(model.identifier(), Nil);
}

TEST(RegistryModel, IsANewOneEachTime) {
  const Model one = Model::createRegistryModel(u"registry@here", Known);
  const Model two = Model::createRegistryModel(u"registry@here", Known);
  EXPECT_FALSE(one == two);
  one.destroy();
  EXPECT_FALSE(one.isAlive());
  EXPECT_TRUE(two.isAlive());
}

TEST(RegistryModel, TellsAddressAndIdentityAlsoWhenItIsGone) {
  const Model model = Model::createRegistryModel(u"registry@here", Known);
  model.destroy();
  EXPECT_EQ(model.address(), u"registry@here");
  EXPECT_EQ(model.identifier(), Known);
}

TEST(RegistryModel, MayHaveAnEmptyAddress) {
  EXPECT_EQ(Model::createRegistryModel(u"", Known).address(), u"");
}

TEST(TransientModel, IsEmptyAliveAndSaysWhatItIs) {
  const Model model = Model::createTransientModel();
  EXPECT_TRUE(model.isAlive());
  EXPECT_TRUE(model.isTransient());
  EXPECT_EQ(model.address(), u"");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  EXPECT_NE(model.identifier(), Nil);
  EXPECT_NE(model.identifier(), Model::createTransientModel().identifier());
}

TEST(Model, IsNeitherTransientNorRegisteredUnlessMadeSo) {
  const Model model = Model::create();
  EXPECT_FALSE(model.isTransient());
  EXPECT_EQ(model.address(), u"");
  EXPECT_NE(model.identifier(), Nil);
}

TEST(Model, WithoutModelIsNothingAtAll) {
  EXPECT_FALSE(Model().isTransient());
  EXPECT_EQ(Model().address(), u"");
}

}  // namespace
