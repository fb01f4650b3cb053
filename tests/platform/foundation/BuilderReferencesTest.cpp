#include <gmock/gmock.h>

#include "platform/foundation/meta/MetaImpl.h"
#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/MoreReferences.h"

using namespace probing;
using probe::Branch;
using probe::Leaf;
using testing::ElementsAre;

namespace {

using BuilderWrapper = ModelElement::BuilderWrapper;

/// Give the builder in a wrapper as one of its class.
template <class E>
typename E::Builder& in(const typename E::BuilderWrapper& wrapper) {
  return static_cast<typename E::Builder&>(*wrapper.builder());
}

TEST(BuilderReferences, ReferToElementsThatAreThere) {
  const Model model = Model::create();
  const Thing a = thing(model), b = thing(model);
  const References holder = References::Builder(model).setOne(a).setRow(b).setRow(a).setBag(a).create();
  EXPECT_EQ(holder.one(), a);
  EXPECT_THAT(elementsOf(holder.row()), ElementsAre(b, a));
  EXPECT_TRUE(holder.bag().contains(a));
  EXPECT_EQ(a.referrers(), Elements{holder});
  EXPECT_EQ(model.impl()->numberOfElements(), 3U);
}

TEST(BuilderReferences, MakeWhatIsOnlyReferredToInNoContainer) {
  const Model model = Model::create();
  const References holder = References::Builder(model)
                                .setOne(Thing::Builder().setName(u"a"))
                                .setRow(Thing::Builder().setName(u"b"))
                                .setProxyBag(Thing::Builder().setName(u"c"))
                                .create();
  EXPECT_EQ(holder.one().name(), u"a");
  EXPECT_EQ(holder.row().at(0).name(), u"b");
  EXPECT_EQ((*holder.proxyBag().begin()).name(), u"c");
  EXPECT_FALSE(holder.one().container());
  EXPECT_EQ(model.impl()->roots().size(), 4U);
}

TEST(BuilderReferences, MakeOneElementOfABuilderThatIsGivenTwice) {
  const Model model = Model::create();
  const Thing::BuilderWrapper once(Thing::Builder().setName(u"once"));
  const References holder =
      References::Builder(model).setOne(once).setAny(once).setRow(once).setBag(once).create();
  EXPECT_EQ(model.impl()->numberOfElements(), 2U);
  EXPECT_EQ(holder.one().name(), u"once");
  EXPECT_EQ(holder.any(), holder.one());
  EXPECT_EQ(holder.row().at(0), holder.one());
  EXPECT_TRUE(holder.bag().contains(holder.one()));
}

TEST(BuilderReferences, MakeTheElementInItsContainerWhereverTheReferenceStands) {
  const Model model = Model::create();
  const References::BuilderWrapper inner(References::Builder().setName(u"inner"));
  const auto outer = probe::inner::MoreReferences::Builder(model).setOther(inner).setOwn(inner).create();
  EXPECT_EQ(outer.other(), outer.own().first());
  EXPECT_EQ(outer.other().container(), outer);
  EXPECT_EQ(model.impl()->elements(), (Elements{outer, outer.other()}));
}

TEST(BuilderReferences, MayFormACircle) {
  const Model model = Model::create();
  const References::BuilderWrapper first(References::Builder().setName(u"first"));
  const References::BuilderWrapper second(References::Builder().setName(u"second"));
  References::BuilderWrapper back(first);
  back.borrow();
  in<References>(first).setOther(second);
  in<References>(second).setOther(back);
  const References made(static_cast<References::Impl*>(first.builder()->createIn(model).impl()));
  EXPECT_EQ(model.impl()->numberOfElements(), 2U);
  EXPECT_EQ(made.name(), u"first");
  EXPECT_EQ(made.other().name(), u"second");
  EXPECT_EQ(made.other().other(), made);
}

TEST(BuilderReferences, MayReferToThemselves) {
  const Model model = Model::create();
  const References::BuilderWrapper wrapper{References::Builder()};
  References::BuilderWrapper self(wrapper);
  self.borrow();
  in<References>(wrapper).setOther(self).setAny(self);
  const References made(static_cast<References::Impl*>(wrapper.builder()->createIn(model).impl()));
  EXPECT_EQ(made.other(), made);
  EXPECT_EQ(made.any(), made);
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST(BuilderReferences, MayReferFromAChildToItsParent) {
  const Model model = Model::create();
  const Branch::BuilderWrapper parent{Branch::Builder()};
  Branch::BuilderWrapper back(parent);
  back.borrow();
  in<Branch>(parent).setLeaf(Leaf::Builder().setGrownOn(back));
  const Containers place = Containers::create(model);
  undoneThenDone(model, [&] { place.createIntoMixed(parent); });
  const Branch branch(static_cast<Branch::Impl*>(place.mixed().at(0).impl()));
  EXPECT_EQ(branch.leaf().grownOn(), branch);
  EXPECT_EQ(branch.leaf().container(), branch);
  EXPECT_EQ(branch.referrers(), Elements{branch.leaf()});
  EXPECT_EQ(model.impl()->numberOfElements(), 3U);
}

TEST(BuilderReferences, RefuseACircleOfContainmentAndLeaveNothing) {
  const Model model = Model::create();
  const Branch::BuilderWrapper branch{Branch::Builder()};
  Branch::BuilderWrapper back(branch);
  back.borrow();
  in<Branch>(branch).setLeaf(Leaf::Builder().setBranch(back));
  const std::string circle =
      "the element contains the one it would be put into; an element can't contain itself.)";
  EXPECT_EQ(raised<InvalidValue>([&] { branch.builder()->createIn(model); }),
            "InvalidValue(probe.Branch.leaf; " + circle);
  const Branch::BuilderWrapper own{Branch::Builder()};
  Branch::BuilderWrapper itself(own);
  itself.borrow();
  in<Branch>(own).setBranches(itself);
  EXPECT_EQ(raised<InvalidValue>([&] { own.builder()->createIn(model); }),
            "InvalidValue(probe.Branch.branches; " + circle);
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST(BuilderReferences, LeaveNothingWhenOneFails) {
  const Model model = Model::create(), other = Model::create();
  const Thing dead = thing(model), foreign = thing(other), good = thing(model);
  dead.destroy();
  const std::string before = stateOf(model);
  EXPECT_EQ(
      raised<InvalidValue>(
          [&] { References::Builder(model).setOne(Thing::Builder()).setAny(dead).create(); }),
      "InvalidValue(probe.References.any; the element was destroyed; refer to one that exists, or to none.)");
  EXPECT_EQ(raised<CannotCreateCrossModelAssociation>([&] {
              References::Builder(model).setBag(Thing::Builder()).setRow(good).setRow(foreign).create();
            }),
            "CannotCreateCrossModelAssociation(probe.References.row)");
  EXPECT_EQ(raised<CannotAddNonExistentObject>([&] { References::Builder(model).setRow(Thing()).create(); }),
            "CannotAddNonExistentObject(probe.References.row)");
  EXPECT_EQ(stateOf(model), before);
  const References across = References::Builder(model).setOne(foreign).create();
  EXPECT_EQ(across.one(), foreign) << "a single reference may go to another model";
}

TEST(BuilderReferences, MakeNewElementsEachTime) {
  const Model model = Model::create();
  References::Builder builder(model);
  builder.setOne(Thing::Builder());
  const References first = builder.create(), second = builder.create();
  EXPECT_NE(first.one(), second.one());
  EXPECT_EQ(model.impl()->numberOfElements(), 4U);
}

TEST(BuilderReferences, AreGatheredByReflection) {
  const Model model = Model::create();
  const Thing a = thing(model), b = thing(model);
  const auto builder = References::metaClass().impl()->instantiateBuilder(model);
  const auto property = [](const char16_t* name) { return References::metaClass().property(name); };
  builder->setOrAdd(property(u"one"), Value(a));
  builder->setOrAdd(property(u"row"), Value(Elements{b, a}));
  builder->setOrAdd(property(u"bag"), Value(a));
  builder->setOrAdd(property(u"bag"), std::make_unique<Thing::Builder>());
  EXPECT_EQ(raised<CannotAddSecondObject>([&] { builder->setOrAdd(property(u"one"), Value(b)); }),
            "CannotAddSecondObject(probe.References.one)");
  EXPECT_EQ(
      raised<InvalidValue>([&] { builder->setOrAdd(property(u"name"), std::make_unique<Thing::Builder>()); }),
      "InvalidValue(probe.References.name; the property takes no elements; give a value.)");
  const References made(static_cast<References::Impl*>(builder->create({}).impl()));
  EXPECT_EQ(made.one(), a);
  EXPECT_THAT(elementsOf(made.row()), ElementsAre(b, a));
  EXPECT_EQ(made.bag().size(), 2U);
}

TEST(BuilderReferences, RefuseAnElementOfAnotherClassByReflection) {
  const Model model = Model::create();
  const auto builder = References::metaClass().impl()->instantiateBuilder(model);
  builder->setOrAdd(References::metaClass().property(u"machine"), std::make_unique<Thing::Builder>());
  EXPECT_EQ(raised<CannotAddIncompatibleTypes>([&] { builder->create({}); }),
            "CannotAddIncompatibleTypes(probe.References.machine; probe.Thing; probe.Machine)");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

/// Makes what it is told to, and defers it.
class Deferring final : public References::Builder {
 public:
  ModelElement doCreate(bool, const boost::uuids::uuid& uuid) override {
    const ModelElement made = References::Builder::doCreate(true, uuid);
    EXPECT_FALSE(made.isAlive());
    EXPECT_EQ(orchestrator().getCreatedElement(*this), made);
    EXPECT_FALSE(orchestrator().isFinished(*this));
    return made;
  }
};

TEST(BuilderReferences, OfADeferredElementAreMadeWhenItIsThere) {
  const Model model = Model::create();
  const auto deferring = std::make_shared<Deferring>();
  deferring->setName(u"late").setOne(Thing::Builder().setName(u"its own"));
  References::Builder holder(model);
  holder.values().doSetOrAdd(References::metaClass().property(u"other"),
                             std::shared_ptr<ModelElement::Builder>(deferring));
  const References made = holder.create();
  EXPECT_EQ(made.other().name(), u"late");
  EXPECT_TRUE(made.other().isAlive());
  EXPECT_EQ(made.other().one().name(), u"its own");
}

}  // namespace
