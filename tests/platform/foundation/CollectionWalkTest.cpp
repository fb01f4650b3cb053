#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/Sets.h"

using namespace probing;
using lx::base::createProxy;
using probe::Lists;
using probe::Sets;

namespace {

// Each kind of collection: the class that has it, the collection, and how one thing more gets into it.

template <class OwnerOfKind>
struct Kind {
  using Owner = OwnerOfKind;

  static Thing numbered(const Owner& owner, int number) {
    const Thing result = thing(owner.getModel(), std::u16string(1, static_cast<char16_t>(u'a' + number)));
    result.setNumber(number);
    return result;
  }
  static Thing proxied(const Owner& owner, int number) {
    return createProxy<Thing>(owner.getModel(), identity(static_cast<std::uint8_t>(number + 1)));
  }
};

struct Row : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getRowMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct RowOfAnyClass : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getMixedMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct MapByText : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getByNameMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct MapByNumber : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getByNumberMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct MultimapByText : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getAllByNameMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct MultimapByNumber : Kind<Containers> {
  static auto& of(const Owner& owner) { return owner.getAllByNumberMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct ReferenceRow : Kind<References> {
  static auto& of(const Owner& owner) { return owner.getRowMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct ReferenceBag : Kind<References> {
  static auto& of(const Owner& owner) { return owner.getBagMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(numbered(owner, number)); }
};
struct ReferenceRowWithProxies : Kind<References> {
  static auto& of(const Owner& owner) { return owner.getProxyRowMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(proxied(owner, number)); }
};
struct ReferenceBagWithProxies : Kind<References> {
  static auto& of(const Owner& owner) { return owner.getProxyBagMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(proxied(owner, number)); }
};
struct NumberSequence : Kind<Lists> {
  static auto& of(const Owner& owner) { return owner.getNumbersMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(number); }
};
struct TextSequence : Kind<Lists> {
  static auto& of(const Owner& owner) { return owner.getTextsMutable(); }
  static void add(const Owner& owner, int number) {
    of(owner).add(std::u16string(40, static_cast<char16_t>(u'a' + number)));
  }
};
struct NumberSet : Kind<Sets> {
  static auto& of(const Owner& owner) { return owner.getNumbersMutable(); }
  static void add(const Owner& owner, int number) { of(owner).add(number); }
};
struct TextSet : Kind<Sets> {
  static auto& of(const Owner& owner) { return owner.getTextsMutable(); }
  static void add(const Owner& owner, int number) {
    of(owner).add(std::u16string(40, static_cast<char16_t>(u'a' + number)));
  }
};

template <class K>
class CollectionWalk : public testing::Test {
 protected:
  using Owner = typename K::Owner;
  using Iterator = decltype(K::of(std::declval<Owner>()).begin());

  void fill(int count) const {
    for (int number = 0; number < count; ++number) K::add(owner, number);
  }

  static std::string property() {
    const Model any = Model::create();
    return lx::text::toUtf8(K::of(Owner::create(any)).getCollectionProperty().getQualifiedName());
  }

  /// Looking and both ways of going on raise that, and leave the iterator where it is.
  static void expectRaised(Iterator& iterator, const std::string& message) {
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(raised<InvalidValue>([&] { static_cast<void>(*iterator); }), message) << "looking";
      EXPECT_EQ(raised<InvalidValue>([&] { ++iterator; }), message) << "going on";
      EXPECT_EQ(raised<InvalidValue>([&] { iterator++; }), message) << "looking and going on";
    }
  }

  static void expectAtEnd(Iterator iterator) {
    expectRaised(iterator,
                 "InvalidValue(" + property() + "; the walk is at the end of the collection; stop there.)");
  }

  /// Say that the owner, unless it is gone, has changed the collection.
  static void expectChanged(Iterator iterator, const std::string& subject = property()) {
    expectRaised(iterator,
                 "InvalidValue(" + subject +
                     "; the collection changed while it was walked; start again from its beginning.)");
  }
  static void expectOwnerless(const Iterator& iterator) { expectChanged(iterator, "A collection"); }

  Model model = Model::create();
  Owner owner = Owner::create(model);
};

using Kinds = testing::Types<Row, RowOfAnyClass, MapByText, MapByNumber, MultimapByText, MultimapByNumber,
                             ReferenceRow, ReferenceBag, ReferenceRowWithProxies, ReferenceBagWithProxies,
                             NumberSequence, TextSequence, NumberSet, TextSet>;
TYPED_TEST_SUITE(CollectionWalk, Kinds);

TYPED_TEST(CollectionWalk, ComesByEveryElementAndEnds) {
  this->fill(3);
  const auto& collection = TypeParam::of(this->owner);
  std::size_t count = 0;
  auto iterator = collection.begin();
  for (; !(iterator == collection.end()); ++iterator) {
    static_cast<void>(*iterator);
    ++count;
  }
  EXPECT_EQ(count, 3U);
  this->expectAtEnd(iterator);
  EXPECT_TRUE(iterator == collection.end());
}

TYPED_TEST(CollectionWalk, OfNothingRaises) {
  typename TestFixture::Iterator iterator;
  this->expectRaised(iterator,
                     "InvalidValue(CollectionIterator; the iterator is of no collection; take that of one.)");
}

TYPED_TEST(CollectionWalk, OfNothingStartsAnewByAssignment) {
  this->fill(1);
  typename TestFixture::Iterator iterator;
  iterator = TypeParam::of(this->owner).begin();
  EXPECT_NO_THROW(static_cast<void>(*iterator));
  EXPECT_NO_THROW(++iterator);
  this->expectAtEnd(iterator);
}

TYPED_TEST(CollectionWalk, GoesNotBeyondTheEnd) {
  this->fill(3);
  this->expectAtEnd(TypeParam::of(this->owner).end());
}

TYPED_TEST(CollectionWalk, OfAnEmptyCollectionIsAtItsEndAtOnce) {
  const auto& collection = TypeParam::of(this->owner);
  EXPECT_TRUE(collection.begin() == collection.end());
  this->expectAtEnd(collection.begin());
  this->expectAtEnd(collection.end());
}

TYPED_TEST(CollectionWalk, EndsWithAChange) {
  this->fill(3);
  const auto& collection = TypeParam::of(this->owner);
  auto second = collection.begin();
  ++second;
  const auto first = collection.begin(), end = collection.end();
  TypeParam::add(this->owner, 3);
  for (const auto& each : {first, second, end}) this->expectChanged(each);
  std::size_t count = 0;
  for (const auto& each : collection) {
    static_cast<void>(each);
    ++count;
  }
  EXPECT_EQ(count, 4U) << "another walk is none of their concern";
}

TYPED_TEST(CollectionWalk, EndsWithTheFirstAndTheLastElement) {
  const auto& collection = TypeParam::of(this->owner);
  const auto ofNone = collection.begin();
  this->fill(1);
  this->expectChanged(ofNone);
  const auto first = collection.begin(), end = collection.end();
  TypeParam::of(this->owner).clear();
  this->expectChanged(first);
  this->expectChanged(end);
  this->expectAtEnd(collection.begin());
}

TYPED_TEST(CollectionWalk, EndsWithAChangeAndWithItsUndoing) {
  this->fill(2);
  const auto& collection = TypeParam::of(this->owner);
  const auto before = collection.begin();
  std::optional<typename TestFixture::Iterator> within;
  {
    const Transaction open = begin(this->model);
    TypeParam::add(this->owner, 2);
    within = collection.begin();
    this->expectChanged(before);
    EXPECT_NO_THROW(static_cast<void>(**within));
  }
  this->expectChanged(before);
  this->expectChanged(*within);
  EXPECT_NO_THROW(static_cast<void>(*collection.begin()));
}

TYPED_TEST(CollectionWalk, GoesOnBesideChangesOfOthers) {
  this->fill(2);
  const auto& collection = TypeParam::of(this->owner);
  auto iterator = collection.begin();
  const typename TestFixture::Owner other = TestFixture::Owner::create(this->model);
  TypeParam::add(other, 5);
  EXPECT_NO_THROW(static_cast<void>(*iterator));
  EXPECT_NO_THROW(++iterator);
  EXPECT_NO_THROW(iterator++);
  EXPECT_TRUE(iterator == collection.end());
}

TYPED_TEST(CollectionWalk, EndsWithItsOwner) {
  this->fill(3);
  const auto& collection = TypeParam::of(this->owner);
  const auto first = collection.begin(), end = collection.end();
  this->owner.destroy();
  for (const auto& each : {first, end}) this->expectOwnerless(each);
  EXPECT_TRUE(collection.begin() == collection.end());
  for (const auto& each : {collection.begin(), collection.end()}) this->expectOwnerless(each);
}

TYPED_TEST(CollectionWalk, RestsWhileItsOwnerIsGoneInAnOpenTransaction) {
  this->fill(3);
  const auto& collection = TypeParam::of(this->owner);
  const auto first = collection.begin(), end = collection.end();
  {
    const Transaction open = begin(this->model);
    this->owner.destroy();
    for (const auto& each : {first, end}) this->expectOwnerless(each);
  }
  EXPECT_EQ(collection.size(), 3U);
  EXPECT_NO_THROW(static_cast<void>(*collection.begin()));
}

TYPED_TEST(CollectionWalk, EndsWithItsModel) {
  this->fill(3);
  const auto& collection = TypeParam::of(this->owner);
  const auto first = collection.begin(), end = collection.end();
  this->model.destroy();
  for (const auto& each : {first, end}) this->expectOwnerless(each);
}

TYPED_TEST(CollectionWalk, KeepsTheMemoryOfItsOwner) {
  this->fill(3);
  const auto first = TypeParam::of(this->owner).begin(), end = TypeParam::of(this->owner).end();
  this->owner = typename TestFixture::Owner();
  this->model = Model();
  for (const auto& each : {first, end}) this->expectOwnerless(each);
}

// What else changes a collection than who puts into it

TEST(KeyedWalk, EndsWhenAKeyChanges) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing child = thing(model, u"a");
  home.getByNameMutable().add(child);
  home.getByNameMutable().add(thing(model, u"b"));
  const auto first = home.byName().begin();
  child.setName(u"c");
  EXPECT_THROW(static_cast<void>(*first), InvalidValue);
  const auto again = home.byName().begin();
  child.setNumber(1);
  EXPECT_EQ((*again).name(), u"b") << "a property that is no key of the collection is none of its concern";
}

TEST(KeyedWalk, EndsWhenAnElementBecomesAProxy) {
  const Model model = Model::create();
  const Containers home = Containers::create(model);
  const Thing child = thing(model, u"a");
  home.getAllByNameMutable().add(child);
  const auto first = home.allByName().begin();
  child.impl()->convertToProxy();
  EXPECT_THROW(static_cast<void>(*first), InvalidValue);
  EXPECT_TRUE(home.allByName().begin() == home.allByName().end());
  EXPECT_THROW(static_cast<void>(*home.allByName().begin()), InvalidValue);
}

TEST(ReferenceWalk, EndsWhenATargetEnds) {
  const Model model = Model::create();
  const References holder = References::create(model);
  const Thing target = thing(model, u"a");
  holder.getRowMutable().add(target);
  holder.getBagMutable().add(target);
  holder.getProxyRowMutable().add(target);
  holder.getProxyBagMutable().add(target);
  const auto row = holder.row().begin();
  const auto bag = holder.bag().begin();
  const auto proxyRow = holder.proxyRow().begin();
  const auto proxyBag = holder.proxyBag().begin();
  target.destroy();
  EXPECT_THROW(static_cast<void>(*row), InvalidValue);
  EXPECT_THROW(static_cast<void>(*bag), InvalidValue);
  EXPECT_THROW(static_cast<void>(*proxyRow), InvalidValue);
  EXPECT_THROW(static_cast<void>(*proxyBag), InvalidValue);
}

}  // namespace
