#include <algorithm>
#include <map>
#include <vector>

#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"

using namespace probing;
using lx::base::createProxy;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Things = std::vector<Thing>;

boost::uuids::uuid numbered(std::size_t number) {
  boost::uuids::uuid uuid = identity(static_cast<std::uint8_t>(number % 256));
  uuid.data[14] = static_cast<std::uint8_t>(number / 256);
  uuid.data[0] = 1;
  return uuid;
}

/// What stands in a list without those at some places.
Things without(const Things& all, const std::vector<std::size_t>& places) {
  Things result;
  for (std::size_t at = 0; at < all.size(); ++at) {
    if (std::find(places.begin(), places.end(), at) == places.end()) result.push_back(all[at]);
  }
  return result;
}

Things joined(std::vector<Things> lists) {
  Things result;
  for (const Things& each : lists) result.insert(result.end(), each.begin(), each.end());
  return result;
}

// A multimap in which a key stands for thousands

class ManyEquals : public testing::Test {
 protected:
  static constexpr std::size_t Count = 3000;
  static constexpr std::size_t Middle = Count / 2;

  ManyEquals() {
    Transaction transaction = begin(model);
    lesser = thing(model, u"a");
    greater = thing(model, u"z");
    home.getAllByNameMutable().add(greater);
    for (std::size_t at = 0; at < Count; ++at) {
      equals.push_back(thing(model, u"m"));
      home.getAllByNameMutable().add(equals.back());
    }
    home.getAllByNameMutable().add(lesser);
    transaction.commit();
  }

  /// The multimap holds these in this order, and finds the equals among them by their key.
  void expectHeld(const Things& before, const Things& under, const Things& behind) const {
    const auto& held = home.allByName();
    EXPECT_TRUE(elementsOf(held) == plain(joined({before, under, behind})));
    EXPECT_EQ(held.size(), before.size() + under.size() + behind.size());
    EXPECT_TRUE(held.findAll(u"m") == under);
    EXPECT_EQ(held.find(u"m"), under.empty() ? Thing() : under.front());
    EXPECT_EQ(held.contains(u"m"), !under.empty());
    EXPECT_EQ(held.findGreater(u"m"), behind.empty() ? Thing() : behind.front());
    const std::vector<std::u16string> keys = held.keys();
    EXPECT_EQ(std::count(keys.begin(), keys.end(), u"m"), static_cast<std::ptrdiff_t>(under.size()));
    EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
  }

  static Elements plain(const Things& things) { return {things.begin(), things.end()}; }

  const Model model = Model::create();
  const Containers home = Containers::create(model);
  Thing lesser, greater;
  Things equals;
};

TEST_F(ManyEquals, StandInTheOrderOfTheirAdding) {
  expectHeld({lesser}, equals, {greater});
}

TEST_F(ManyEquals, AreClearedAndComeBack) {
  undoneThenDone(model, [&] { home.getAllByNameMutable().clear(); });
  expectHeld({}, {}, {});
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST_F(ManyEquals, AreRemovedFromEveryPlaceAndComeBack) {
  const std::vector<std::size_t> places{0, 1, 2, Middle - 1, Middle, Middle + 1, Count - 2, Count - 1};
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) EXPECT_TRUE(home.getAllByNameMutable().remove(equals[place]));
  });
  expectHeld({lesser}, without(equals, places), {greater});
  for (const std::size_t place : places) {
    EXPECT_FALSE(equals[place].isAlive());
    EXPECT_FALSE(home.getAllByNameMutable().remove(equals[place])) << "it is gone already";
  }
}

TEST_F(ManyEquals, AreRemovedInAnyOrderUntilNoneIsLeft) {
  undoneThenDone(model, [&] {
    // From the front and from the back in turn; what is left are those in the middle.
    for (std::size_t at = 0; at < Middle; ++at) {
      const Thing& next = at % 2 == 0 ? equals[at / 2] : equals[Count - 1 - at / 2];
      EXPECT_TRUE(home.getAllByNameMutable().remove(next));
    }
  });
  const Things left(equals.data() + Middle / 2, equals.data() + (Count - Middle / 2));
  ASSERT_EQ(left.size(), Count - Middle);
  expectHeld({lesser}, left, {greater});
  for (std::size_t at = 0; at < left.size(); ++at) {  // from the middle to both ends
    const std::size_t half = left.size() / 2;
    left[at % 2 == 0 ? half + at / 2 : half - 1 - at / 2].destroy();
  }
  expectHeld({lesser}, {}, {greater});
}

TEST_F(ManyEquals, AreTakenByAnotherContainerAndComeBackBehindTheOthers) {
  const std::vector<std::size_t> places{0, Middle, Count - 1};
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) home.getRowMutable().add(equals[place]);
  });
  expectHeld({lesser}, without(equals, places), {greater});
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) home.getAllByNameMutable().add(equals[place]);
  });
  expectHeld({lesser}, joined({without(equals, places), {equals[0], equals[Middle], equals[Count - 1]}}),
             {greater});
  EXPECT_TRUE(home.row().empty());
}

TEST_F(ManyEquals, AreRenamedToEitherSide) {
  const std::vector<std::size_t> places{0, 7, Middle, Middle + 1, Count - 2, Count - 1};
  undoneThenDone(model, [&] {
    equals[Middle].setName(u"b");
    equals[0].setName(u"b");
    equals[Count - 1].setName(u"aa");
    equals[Middle + 1].setName(u"n");
    equals[7].setName(u"zz");
    equals[Count - 2].setName(u"z");
  });
  expectHeld({lesser, equals[Count - 1], equals[Middle], equals[0]}, without(equals, places),
             {equals[Middle + 1], greater, equals[Count - 2], equals[7]});
}

TEST_F(ManyEquals, StandBehindTheOthersWhenTheyAreRenamedAndBack) {
  undoneThenDone(model, [&] {
    for (const std::size_t place : {Middle, std::size_t{0}, Count - 1}) {
      equals[place].setName(u"passing");
      equals[place].setName(u"m");
    }
  });
  expectHeld(
      {lesser},
      joined({without(equals, {0, Middle, Count - 1}), {equals[Middle], equals[0], equals[Count - 1]}}),
      {greater});
}

TEST_F(ManyEquals, AreRenamedAllAndComeBackInTheirOrder) {
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    for (std::size_t at = 0; at < Count; ++at) equals[at].setName(at % 2 == 0 ? u"even" : u"odd");
    EXPECT_FALSE(home.allByName().contains(u"m"));
    Things even, odd;
    for (std::size_t at = 0; at < Count; ++at) (at % 2 == 0 ? even : odd).push_back(equals[at]);
    EXPECT_TRUE(home.allByName().findAll(u"even") == even);
    EXPECT_TRUE(home.allByName().findAll(u"odd") == odd);
    for (std::size_t at = Count; at-- > 0;) equals[at].setName(u"m");
    EXPECT_TRUE(home.allByName().findAll(u"m") == Things(equals.rbegin(), equals.rend()));
  }
  EXPECT_EQ(stateOf(model), before);
  expectHeld({lesser}, equals, {greater});
}

TEST_F(ManyEquals, AreSetApartAsProxiesAndComeBack) {
  const std::vector<std::size_t> places{0, Middle, Count - 1};
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) equals[place].impl()->convertToProxy();
  });
  expectHeld({lesser}, without(equals, places), {greater});
  EXPECT_THAT(home.allByName().proxies(), ElementsAre(equals[0], equals[Middle], equals[Count - 1]));
}

// A map that holds many proxies

class ManyProxies : public testing::Test {
 protected:
  static constexpr std::size_t Count = 2000;
  static constexpr std::size_t Middle = Count / 2;

  ManyProxies() {
    Transaction transaction = begin(model);
    for (const char16_t* name : {u"c", u"a", u"b"}) {
      loaded.push_back(thing(model, name));
      home.getByNameMutable().add(loaded.back());
    }
    for (std::size_t at = 0; at < Count; ++at) {
      proxies.push_back(createProxy<Thing>(model, numbered(at)));
      home.getByNameMutable().add(proxies.back());
    }
    transaction.commit();
  }

  /// The map holds these elements, and these proxies apart.
  void expectHeld(const Elements& elements, const Things& apart) const {
    EXPECT_TRUE(elementsOf(home.byName()) == elements);
    EXPECT_EQ(home.byName().size(), elements.size());
    EXPECT_TRUE(home.byName().proxies() == apart);
    for (const std::size_t at : {std::size_t{0}, Middle, Count - 1}) {
      const bool isApart = std::find(apart.begin(), apart.end(), proxies[at]) != apart.end();
      EXPECT_EQ(home.byName().containsProxyTo(numbered(at)), isApart) << at;
      EXPECT_EQ(home.byName().contains(proxies[at]), isApart) << at;
    }
  }

  const Model model = Model::create();
  const Containers home = Containers::create(model);
  Things loaded, proxies;
};

TEST_F(ManyProxies, StandInTheOrderOfTheirComing) {
  expectHeld({loaded[1], loaded[2], loaded[0]}, proxies);
  EXPECT_THAT(home.byName().keys(), ElementsAre(u"a", u"b", u"c"));
}

TEST_F(ManyProxies, AreClearedAndComeBack) {
  undoneThenDone(model, [&] { home.getByNameMutable().clear(); });
  expectHeld({}, {});
  EXPECT_EQ(model.impl()->numberOfElements(), 1U);
}

TEST_F(ManyProxies, AreRemovedFromEveryPlaceAndComeBack) {
  const std::vector<std::size_t> places{0, 1, Middle - 1, Middle, Count - 2, Count - 1};
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) EXPECT_TRUE(home.getByNameMutable().remove(proxies[place]));
  });
  expectHeld({loaded[1], loaded[2], loaded[0]}, without(proxies, places));
  for (const std::size_t place : places) EXPECT_FALSE(proxies[place].isAlive());
}

TEST_F(ManyProxies, AreRemovedInTheOrderOfTheirComingUntilNoneIsLeft) {
  undoneThenDone(model, [&] {
    for (const Thing& each : proxies) EXPECT_TRUE(home.getByNameMutable().remove(each));
  });
  expectHeld({loaded[1], loaded[2], loaded[0]}, {});
}

TEST_F(ManyProxies, AreTakenByAnotherContainerAndComeBackBehindTheOthers) {
  const std::vector<std::size_t> places{0, Middle, Count - 1};
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) home.getRowMutable().add(proxies[place]);
    for (const std::size_t place : places) home.getByNameMutable().add(proxies[place]);
  });
  expectHeld({loaded[1], loaded[2], loaded[0]},
             joined({without(proxies, places), {proxies[0], proxies[Middle], proxies[Count - 1]}}));
}

TEST_F(ManyProxies, GiveWayToTheirElements) {
  const std::vector<std::size_t> places{0, Middle, Count - 1};
  std::map<std::size_t, Thing> elements;
  for (const std::size_t place : places) {
    elements[place] = Thing::create(model, numbered(place));
    elements[place].setName(std::u16string(place + 1 < Count ? u"d" : u"") + (place == 0 ? u"1" : u"2"));
  }
  undoneThenDone(model, [&] {
    for (const std::size_t place : places) {
      EXPECT_EQ(home.getByNameMutable().resolveProxy(proxies[place]), elements[place]);
    }
  });
  expectHeld({elements[Count - 1], loaded[1], loaded[2], loaded[0], elements[0], elements[Middle]},
             without(proxies, places));
}

TEST_F(ManyProxies, StayWhereTheyAreWhenElementsBesideThemChange) {
  undoneThenDone(model, [&] {
    loaded[0].setName(u"0");
    home.getByNameMutable().remove(loaded[1]);
    home.getByNameMutable().add(thing(model, u"new"));
  });
  EXPECT_THAT(home.byName().keys(), ElementsAre(u"0", u"b", u"new"));
  EXPECT_TRUE(home.byName().proxies() == proxies);
}

TEST_F(ManyProxies, AreJoinedByWhatBecomesOne) {
  undoneThenDone(model, [&] {
    loaded[2].impl()->convertToProxy();
    loaded[0].impl()->convertToProxy();
  });
  expectHeld({loaded[1]}, joined({proxies, {loaded[2], loaded[0]}}));
}

}  // namespace
