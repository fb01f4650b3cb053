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
  /// Makes a collection as the one in which a property of an owner holds elements of class E.
  template <class E, class Owner>
  static std::shared_ptr<const AbstractOwnedCollection> made(const Owner& owner, const char16_t* property) {
    return E::metaClass().impl()->instantiateCollection(*owner.impl(), Owner::metaClass().property(property));
  }

  /// Tells whether the collection is of class C, for which E is asked by the owner's property.
  template <class C, class E, class Owner>
  static bool isMade(const Owner& owner, const char16_t* property) {
    const auto collection = made<E>(owner, property);
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

/// Whether elements can be put into a collection, and be taken out.
template <class Collection>
concept Changeable = requires(Collection& collection, const Thing& element) {
  collection.add(element);
  collection.remove(element);
  collection.clear();
  collection.resolveProxy(element);
};

TEST_F(CollectionFactory, MakesCollectionsThatNothingCanBePutInto) {
  using Made = decltype(made<Thing>(containers, u"row"))::element_type;
  EXPECT_TRUE(std::is_const_v<Made>);
  using Row = ElementSequence<Thing>;
  using Map = ElementMap<std::u16string, Thing>;
  using Multimap = ElementMultimap<std::int32_t, Thing>;
  using Referring = TypedReferenceCollection<Thing, std::vector<Thing>>;
  using WithProxies = TypedReferenceCollectionWithProxies<Thing, std::unordered_set<Thing>>;
  EXPECT_TRUE(Changeable<Row> && Changeable<Map> && Changeable<Multimap> && Changeable<Referring> &&
              Changeable<WithProxies>);
  EXPECT_FALSE(Changeable<const Row> || Changeable<const Map> || Changeable<const Multimap> ||
               Changeable<const Referring> || Changeable<const WithProxies>);
}

TEST_F(CollectionFactory, MakesCollectionsThatOutliveTheirOwners) {
  std::shared_ptr<const AbstractOwnedCollection> row, bag;
  {
    const Model passing = Model::create();
    row = made<Thing>(probe::Containers::create(passing), u"row");
    bag = made<Thing>(probe::References::create(passing), u"bag");
  }
  for (const auto& each : {row, bag}) {
    EXPECT_FALSE(each->owner().isAlive());
    EXPECT_FALSE(each->getModel());
  }
  EXPECT_EQ(row->getCollectionProperty(), probe::Containers::metaClass().property(u"row"));
  EXPECT_EQ(bag->getCollectionProperty(), probe::References::metaClass().property(u"bag"));
  EXPECT_TRUE(dynamic_cast<const ElementSequence<Thing>&>(*row).empty());
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
