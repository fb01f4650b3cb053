#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"

using namespace probing;
using lx::base::ReferenceCollection;
using lx::base::detail::ContainmentSlot;
using lx::base::detail::Link;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A field by hand that refers to one element, and keeps what it was told of its target.
class Pointer final : public lx::base::detail::ReferringField {
 public:
  Pointer(const References& owner, const char16_t* property)
      : ReferringField(*owner.impl(), References::metaClass().property(property).getIndex()) {
    link.field = this;
  }

  bool accepts(const ModelElement::Impl&) const noexcept override { return true; }
  void targetDies(Link&) override { told.emplace_back("dies"); }
  void targetBecomesProxy(Link&) override { told.emplace_back("becomes a proxy"); }
  void targetIsResolved(Link&, ModelElement::Impl&) override { told.emplace_back("is resolved"); }
  void loseAll() override {}

  void pointTo(const Thing& target) {
    link.target = target;
    owner()._inverseAddThis(link);
  }
  void pointToNothing() {
    link.target.impl()->inverseRemove(link);
    link.target = ModelElement();
  }
  bool isKnownTo(const Thing& target) const { return owner()._inverseContainsThis(*target.impl(), index()); }

  Link link;
  std::vector<std::string> told;
};

class ElementCore : public testing::Test {
 protected:
  static ContainmentSlot& slotOf(const Containers& containers) { return containers.getRowMutable(); }

  const Model model = Model::create();
  const Model otherModel = Model::create();
  const Containers home = Containers::create(model);
  const Containers elsewhere = Containers::create(model);
  const References holder = References::create(model);
  const References second = References::create(model);
  const Thing child = thing(model, u"a");
  const Thing foreign = thing(otherModel, u"foreign");
};

// Models

TEST_F(ElementCore, LetsElementsOfTheSameModelPass) {
  const std::string before = stateOf(model);
  const std::uint64_t begun = transactions(model);
  for (const ReferenceCollection* each : {static_cast<const ReferenceCollection*>(&holder.row()),
                                          static_cast<const ReferenceCollection*>(&holder.bag()),
                                          static_cast<const ReferenceCollection*>(&holder.proxyRow()),
                                          static_cast<const ReferenceCollection*>(&holder.proxyBag())}) {
    EXPECT_NO_THROW(each->checkCompatibleModel(*child.impl()));
    EXPECT_NO_THROW(each->checkCompatibleModel(*holder.impl()));
  }
  EXPECT_NO_THROW(slotOf(home).checkCompatibleModel(*child.impl()));
  EXPECT_EQ(stateOf(model), before);
  EXPECT_EQ(transactions(model), begun);
}

TEST_F(ElementCore, StopsElementsOfAnotherModel) {
  const auto refusal = [&](const auto& collection) {
    return raised<CannotCreateCrossModelAssociation>(
        [&] { collection.checkCompatibleModel(*foreign.impl()); });
  };
  const Transaction open = begin(model);
  EXPECT_EQ(refusal(holder.row()), "CannotCreateCrossModelAssociation(probe.References.row)");
  EXPECT_EQ(refusal(holder.bag()), "CannotCreateCrossModelAssociation(probe.References.bag)");
  EXPECT_EQ(refusal(holder.proxyRow()), "CannotCreateCrossModelAssociation(probe.References.proxyRow)");
  EXPECT_EQ(refusal(holder.proxyBag()), "CannotCreateCrossModelAssociation(probe.References.proxyBag)");
  EXPECT_EQ(refusal(home.row()), "CannotCreateCrossModelAssociation(probe.Containers.row)");
  EXPECT_EQ(refusal(home.byName()), "CannotCreateCrossModelAssociation(probe.Containers.byName)");
}

TEST_F(ElementCore, CountsAnElementAsOfItsModelUntilItIsGoneForGood) {
  {
    const Transaction open = begin(model);
    child.destroy();
    EXPECT_NO_THROW(holder.row().checkCompatibleModel(*child.impl()));
  }
  child.destroy();
  EXPECT_EQ(
      raised<CannotCreateCrossModelAssociation>([&] { holder.row().checkCompatibleModel(*child.impl()); }),
      "CannotCreateCrossModelAssociation(probe.References.row)");
}

// Containers

TEST_F(ElementCore, ContainsAChildUntilTheTransactionIsUndone) {
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    home.impl()->_setContainedByThis(*child.impl(), slotOf(home));
    EXPECT_EQ(child.container(), home);
    EXPECT_EQ(child.impl()->containmentSlot(), &slotOf(home));
    EXPECT_TRUE(slotOf(home).holds(child));
    EXPECT_TRUE(child.impl()->isMovedInOpenTransaction());
    EXPECT_THAT(model.impl()->roots(), testing::Not(testing::Contains(child)));
  }
  EXPECT_FALSE(child.container());
  EXPECT_EQ(child.impl()->containmentSlot(), nullptr);
  EXPECT_FALSE(child.impl()->isMovedInOpenTransaction());
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementCore, GivesAChildBackToTheContainerThatItHad) {
  home.getRowMutable().add(child);
  const std::string before = stateOf(model);
  {
    const Transaction outer = begin(model);
    {
      const Transaction inner = begin(model);
      elsewhere.impl()->_setContainedByThis(*child.impl(), slotOf(elsewhere));
      EXPECT_EQ(child.container(), elsewhere);
      home.impl()->_setContainedByThis(*child.impl(), home.getMixedMutable());
      EXPECT_EQ(child.container(), home);
      EXPECT_EQ(child.impl()->containmentSlot(), &home.getMixedMutable());
    }
    EXPECT_EQ(child.impl()->containmentSlot(), &slotOf(home));
    Transaction inner = begin(model);
    elsewhere.impl()->_setContainedByThis(*child.impl(), slotOf(elsewhere));
    inner.commit();
    EXPECT_EQ(child.container(), elsewhere);
  }
  EXPECT_EQ(child.impl()->containmentSlot(), &slotOf(home));
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementCore, SetsTheContainerWithoutMoreAdo) {
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    child.impl()->basicSetContainer(&slotOf(home));
    EXPECT_EQ(child.container(), home);
    EXPECT_FALSE(child.impl()->isMovedInOpenTransaction()) << "no old container is kept";
  }
  EXPECT_EQ(child.container(), home) << "so that undoing gives none back";
  child.impl()->basicSetContainer(nullptr);
  EXPECT_FALSE(child.container());
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementCore, GivesTheContainerBackIfItIsSetBehindANotice) {
  home.getRowMutable().add(child);
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    child.impl()->notifyModifying(ModelElement::Impl::ContainerIndex);
    child.impl()->basicSetContainer(nullptr);
    EXPECT_FALSE(child.container());
    EXPECT_TRUE(child.impl()->isMovedInOpenTransaction());
    child.impl()->basicSetContainer(&slotOf(elsewhere));
    EXPECT_EQ(child.container(), elsewhere);
  }
  EXPECT_EQ(child.impl()->containmentSlot(), &slotOf(home));
  EXPECT_EQ(stateOf(model), before);
}

// References

TEST_F(ElementCore, NotesAReferenceAtItsTarget) {
  const std::string before = stateOf(model);
  Pointer one(holder, u"one"), any(holder, u"any"), other(second, u"one");
  {
    const Transaction open = begin(model);
    any.pointTo(child);
    EXPECT_EQ(child.impl()->incoming(), &any.link);
    EXPECT_TRUE(any.isKnownTo(child));
    EXPECT_FALSE(one.isKnownTo(child)) << "another property of the holder";
    EXPECT_FALSE(other.isKnownTo(child)) << "another holder";
    other.pointTo(child);
    one.pointTo(child);
    EXPECT_EQ(child.impl()->incoming(), &one.link) << "the latest";
    EXPECT_TRUE(one.isKnownTo(child) && other.isKnownTo(child) && any.isKnownTo(child));
    EXPECT_FALSE(one.isKnownTo(thing(model)));
    EXPECT_THAT(child.referrers(), ElementsAre(holder, second)) << "each once, the oldest reference first";
    other.pointToNothing();
    EXPECT_FALSE(other.isKnownTo(child));
    EXPECT_THAT(child.referrers(), ElementsAre(holder));
    one.pointToNothing();
    any.pointToNothing();
    EXPECT_EQ(child.impl()->incoming(), nullptr);
  }
  EXPECT_EQ(stateOf(model), before);
}

TEST_F(ElementCore, NumbersReferencesOnceAndForAll) {
  Pointer first(holder, u"one"), later(second, u"one");
  const Transaction open = begin(model);
  EXPECT_EQ(first.link.number, 0U);
  first.pointTo(child);
  later.pointTo(child);
  const std::uint64_t number = first.link.number;
  EXPECT_GT(number, 0U);
  EXPECT_GT(later.link.number, number);
  first.pointToNothing();
  first.pointTo(child);
  EXPECT_EQ(first.link.number, number);
  EXPECT_EQ(child.impl()->incoming(), &first.link);
  EXPECT_THAT(child.referrers(), ElementsAre(holder, second)) << "by number, whoever was noted last";
  first.pointToNothing();
  later.pointToNothing();
}

TEST_F(ElementCore, LeavesANotedReferenceToTheFieldThatNotedIt) {
  Pointer pointer(holder, u"one");
  {
    const Transaction open = begin(model);
    pointer.pointTo(child);
  }
  EXPECT_TRUE(pointer.isKnownTo(child)) << "the field itself takes it back";
  EXPECT_THAT(pointer.told, IsEmpty());
  pointer.pointToNothing();
  EXPECT_FALSE(pointer.isKnownTo(child));
}

TEST_F(ElementCore, TellsTheFieldThatRefersOfWhatHappensToItsTarget) {
  Pointer pointer(holder, u"one");
  pointer.pointTo(child);
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    child.impl()->convertToProxy();
    EXPECT_THAT(pointer.told, ElementsAre("becomes a proxy"));
    const Thing loaded = Thing::create(model, child.identifier());
    EXPECT_EQ(child.impl()->resolve(), loaded);
    EXPECT_THAT(pointer.told, ElementsAre("becomes a proxy", "is resolved"));
    child.destroy();
    EXPECT_THAT(pointer.told, ElementsAre("becomes a proxy", "is resolved", "dies"));
  }
  EXPECT_EQ(pointer.told.size(), 3U) << "undoing tells nothing";
  EXPECT_EQ(stateOf(model), before);
  pointer.pointToNothing();
}

TEST_F(ElementCore, ForgetsAReferenceThatIsUndone) {
  const unsigned one = References::metaClass().property(u"one").getIndex();
  const unsigned row = References::metaClass().property(u"row").getIndex();
  {
    const Transaction open = begin(model);
    holder.setOne(child);
    EXPECT_TRUE(holder.impl()->_inverseContainsThis(*child.impl(), one));
    EXPECT_FALSE(holder.impl()->_inverseContainsThis(*child.impl(), row));
    second.getRowMutable().add(child);
    EXPECT_TRUE(second.impl()->_inverseContainsThis(*child.impl(), row));
  }
  EXPECT_FALSE(holder.impl()->_inverseContainsThis(*child.impl(), one));
  EXPECT_FALSE(second.impl()->_inverseContainsThis(*child.impl(), row));
  holder.setOne(foreign);
  EXPECT_FALSE(holder.impl()->_inverseContainsThis(*foreign.impl(), one)) << "an element of another model";
}

// Identities

TEST_F(ElementCore, IsNamedByItsIdentity) {
  const Thing named = Thing::create(model, identity(5));
  EXPECT_EQ(named.impl()->getProxyId(), identity(5));
  EXPECT_EQ(named.impl()->getPersistentProxyId(false), identity(5));
  EXPECT_EQ(named.impl()->getPersistentProxyId(true), identity(5));
  {
    const Transaction open = begin(model);
    named.impl()->convertToProxy();
    EXPECT_EQ(named.impl()->getProxyId(), identity(5));
    EXPECT_EQ(named.impl()->getPersistentProxyId(false), identity(5));
  }
  EXPECT_EQ(named.impl()->getProxyId(), identity(5));
  named.destroy();
  EXPECT_EQ(named.impl()->getProxyId(), identity(5)) << "also when it is gone";
}

TEST_F(ElementCore, MakesAnIdentityWhenItIsAskedForAndKeepsItWhateverIsUndone) {
  boost::uuids::uuid made{};
  {
    const Transaction open = begin(model);
    EXPECT_TRUE(child.impl()->getPersistentProxyId(false).is_nil());
    EXPECT_TRUE(child.impl()->getPersistentProxyId(false).is_nil()) << "asking made none";
    made = child.impl()->getPersistentProxyId(true);
    EXPECT_FALSE(made.is_nil());
    EXPECT_EQ(child.impl()->getPersistentProxyId(false), made);
  }
  EXPECT_EQ(child.impl()->getPersistentProxyId(false), made);
  EXPECT_EQ(child.impl()->getProxyId(), made);
  EXPECT_EQ(child.identifier(), made);
  EXPECT_EQ(model.impl()->findElement(made), child);
}

TEST_F(ElementCore, MakesAnIdentityForTheProxyIdToo) {
  boost::uuids::uuid made{};
  Thing passing;
  {
    const Transaction open = begin(model);
    made = child.impl()->getProxyId();
    passing = thing(model);
    EXPECT_EQ(model.impl()->findElement(passing.impl()->getProxyId()), passing);
  }
  EXPECT_FALSE(made.is_nil());
  EXPECT_EQ(child.impl()->getPersistentProxyId(false), made);
  EXPECT_NE(made, passing.impl()->getPersistentProxyId(false));
  EXPECT_FALSE(model.impl()->findElement(passing.impl()->getPersistentProxyId(false)));
}

TEST_F(ElementCore, MakesNoIdentityForWhatIsGone) {
  child.destroy();
  EXPECT_TRUE(child.impl()->getProxyId().is_nil());
  EXPECT_TRUE(child.impl()->getPersistentProxyId(true).is_nil());
}

}  // namespace
