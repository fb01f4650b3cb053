#include "platform/foundation/ReferenceCollection.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "tests/support/model/Branch.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/MoreReferences.h"
#include "tests/support/model/Robot.h"
#include "tests/support/model/Sets.h"

using namespace lx::base;
using probe::Machine;
using probe::Thing;
using probe::inner::Robot;

namespace {

class CollectionFactory : public testing::Test {
 protected:
  /// Makes the collection in which a property of an owner holds elements of class E.
  template <class E, class Owner>
  static std::unique_ptr<AbstractOwnedCollection> made(const Owner& owner, const char16_t* property) {
    return E::metaClass().impl()->instantiateCollection(*owner.impl(), Owner::metaClass().property(property));
  }

  /// Tells whether the collection is of class C, for which E is asked by the owner's property.
  template <class C, class E, class Owner>
  static bool isMade(const Owner& owner, const char16_t* property) {
    const std::unique_ptr<AbstractOwnedCollection> collection = made<E>(owner, property);
    return dynamic_cast<const C*>(collection.get()) != nullptr && &collection->owner() == owner.impl() &&
           collection->getCollectionProperty() == Owner::metaClass().property(property);
  }

  const Model model = Model::create();
  const probe::Containers containers = probe::Containers::create(model);
  const probe::References references = probe::References::create(model);
};

TEST_F(CollectionFactory, MakesSequencesThatContain) {
  EXPECT_TRUE((isMade<ElementSequence<Thing>, Thing>(containers, u"row")));
  EXPECT_TRUE((isMade<ElementSequence<Robot>, Robot>(Robot::create(model), u"tools")));
  EXPECT_TRUE(
      (isMade<ElementSequence<probe::Branch>, probe::Branch>(probe::Branch::create(model), u"branches")));
}

TEST_F(CollectionFactory, MakesMapsByTheirKeys) {
  EXPECT_TRUE((isMade<ElementMap<std::u16string, Thing>, Thing>(containers, u"byName")));
  EXPECT_TRUE((isMade<ElementMap<std::int32_t, Thing>, Thing>(containers, u"byNumber")));
  EXPECT_TRUE((isMade<ElementMultimap<std::u16string, Thing>, Thing>(containers, u"allByName")));
  EXPECT_TRUE((isMade<ElementMultimap<std::int32_t, Thing>, Thing>(containers, u"allByNumber")));
}

TEST_F(CollectionFactory, MakesMapsByKeysThatAreInherited) {
  EXPECT_TRUE((isMade<ElementMap<std::u16string, Machine>, Machine>(containers, u"machines")));
  EXPECT_TRUE((isMade<ElementMap<std::u16string, Robot>, Robot>(containers, u"machines")));
  EXPECT_FALSE((isMade<ElementMultimap<std::u16string, Machine>, Machine>(containers, u"machines")));
}

TEST_F(CollectionFactory, MakesCollectionsThatRefer) {
  using Row = TypedReferenceCollection<Thing, std::vector<Thing>>;
  using Bag = TypedReferenceCollection<Thing, std::unordered_set<Thing>>;
  using ProxyRow = TypedReferenceCollectionWithProxies<Thing, std::vector<Thing>>;
  using ProxyBag = TypedReferenceCollectionWithProxies<Thing, std::unordered_set<Thing>>;
  EXPECT_TRUE((isMade<Row, Thing>(references, u"row")));
  EXPECT_TRUE((isMade<Bag, Thing>(references, u"bag")));
  EXPECT_TRUE((isMade<ProxyRow, Thing>(references, u"proxyRow")));
  EXPECT_TRUE((isMade<ProxyBag, Thing>(references, u"proxyBag")));
  EXPECT_FALSE((isMade<ProxyRow, Thing>(references, u"row")));
}

TEST_F(CollectionFactory, MakesAnEmptyCollectionThatIsNotTheOwnersOwn) {
  const Thing held = Thing::Builder(model).setName(u"held").create();
  references.getRowMutable().add(held);
  const auto collection = made<Thing>(references, u"row");
  const auto& row = dynamic_cast<const TypedReferenceCollection<Thing, std::vector<Thing>>&>(*collection);
  EXPECT_TRUE(row.empty());
  EXPECT_NE(&row, &references.row());
  EXPECT_EQ(references.row().size(), 1U);
}

TEST_F(CollectionFactory, MakesNothingForASingleElement) {
  EXPECT_FALSE(made<Thing>(containers, u"one"));
  EXPECT_FALSE(made<Thing>(references, u"one"));
}

TEST_F(CollectionFactory, MakesNothingByAKeyThatTheClassHasNot) {
  EXPECT_FALSE(made<probe::Leaf>(containers, u"byName"));
}

TEST_F(CollectionFactory, IsNotThereForTheFoundationsOwnClasses) {
  EXPECT_FALSE(ModelElement::metaClass().impl()->instantiateCollection(
      *containers.impl(), probe::Containers::metaClass().property(u"mixed")));
}

}  // namespace
