#include <gmock/gmock.h>

#include "tests/platform/foundation/Probing.h"
#include "tests/support/model/Sets.h"

using namespace probing;
using probe::Colour;
using probe::Sets;
using testing::ElementsAre;

namespace {

using Texts = std::vector<std::u16string>;

TEST(PrimitiveSet, HoldsEachValueOnceInItsOrder) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  auto& texts = sets.getTextsMutable();
  EXPECT_TRUE(texts.empty());
  EXPECT_TRUE(texts.add(u"b"));
  EXPECT_TRUE(texts.add(u"a"));
  EXPECT_FALSE(texts.add(u"b"));
  EXPECT_EQ(texts.size(), 2U);
  EXPECT_TRUE(texts.contains(u"a"));
  EXPECT_FALSE(texts.contains(u"c"));
  EXPECT_THAT(texts.values(), ElementsAre(u"a", u"b"));
  EXPECT_TRUE(sets.hasTexts());
}

TEST(PrimitiveSet, OrdersTextsByCodeUnit) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  const std::u16string lone(1, char16_t{0xd800}), last(1, char16_t{0xffff});
  sets.getTextsMutable().assign(Texts{last, u"\u00e9", u"", u"z", lone, u"B", u"a"});
  EXPECT_THAT(sets.texts().values(), ElementsAre(u"", u"B", u"a", u"z", u"\u00e9", lone, last));
}

TEST(PrimitiveSet, IsWalkedInOrder) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  sets.getNumbersMutable().assign(std::vector<std::int32_t>{3, -1, 2, 3});
  std::vector<std::int32_t> walked;
  for (const std::int32_t each : sets.numbers()) walked.push_back(each);
  EXPECT_THAT(walked, ElementsAre(-1, 2, 3));
  EXPECT_EQ(
      raised<InvalidValue>([&] {
        for (const std::int32_t each : sets.numbers()) sets.getNumbersMutable().remove(each);
      }),
      "InvalidValue(probe.Sets.numbers; the collection changed while it was walked; start again from its "
      "beginning.)");
}

/// Write down the texts, also as reflection has them.
std::string written(const Sets& sets) {
  std::string result;
  for (const std::u16string& each : sets.texts().values()) result += lx::text::toUtf8(each) + " ";
  const Value value = sets.getPropertyValue(u"texts");
  for (const std::u16string& each : value.as<std::set<std::u16string>>()) {
    result += lx::text::toUtf8(each) + ";";
  }
  return result;
}

template <class F>
void expectUndone(const Sets& sets, F step) {
  const Model model = sets.getModel();
  const std::string before = written(sets);
  {
    const Transaction outer = begin(model);
    {
      const Transaction inner = begin(model);
      step();
      EXPECT_NE(written(sets), before);
    }
    EXPECT_EQ(written(sets), before);
    Transaction inner = begin(model);
    step();
    inner.commit();
  }
  EXPECT_EQ(written(sets), before);
  try {
    const Transaction open = begin(model);
    step();
    throw Abandoned();
  } catch (const Abandoned&) {
  }
  EXPECT_EQ(written(sets), before);
  step();
}

TEST(PrimitiveSet, IsUndone) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  auto& texts = sets.getTextsMutable();
  expectUndone(sets, [&] { texts.assign(Texts{u"a", u"b", u"c"}); });
  expectUndone(sets, [&] { texts.add(u"d"); });
  expectUndone(sets, [&] { EXPECT_TRUE(texts.remove(u"b")); });
  EXPECT_FALSE(texts.remove(u"b"));
  EXPECT_THAT(texts.values(), ElementsAre(u"a", u"c", u"d"));
  expectUndone(sets, [&] { sets.destroy(); });
  EXPECT_TRUE(texts.empty());
  EXPECT_FALSE(texts.contains(u"a"));
  EXPECT_TRUE(texts.values().empty());
  EXPECT_EQ(texts.begin(), texts.end());
}

TEST(PrimitiveSet, ClearsAndLosesItsValuesWithAProxy) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  auto& texts = sets.getTextsMutable();
  texts.assign(Texts{u"a", u"b"});
  expectUndone(sets, [&] { texts.clear(); });
  texts.add(u"a");
  expectUndone(sets, [&] { sets.impl()->convertToProxy(); });
  EXPECT_TRUE(texts.empty());
  const std::string refused = "CannotModifyProxy(probe.Sets.texts)";
  EXPECT_EQ(raised<CannotModifyProxy>([&] { texts.add(u"a"); }), refused);
  EXPECT_EQ(raised<CannotModifyProxy>([&] { texts.remove(u"a"); }), refused);
  EXPECT_EQ(raised<CannotModifyProxy>([&] { texts.clear(); }), refused);
  EXPECT_EQ(raised<CannotModifyProxy>([&] { texts.assign(Texts{}); }), refused);
}

TEST(PrimitiveSet, MakesNoTransactionForWhatChangesNothing) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  auto& texts = sets.getTextsMutable();
  texts.assign(Texts{u"a", u"b"});
  const std::uint64_t begun = transactions(model);
  texts.add(u"a");
  texts.remove(u"c");
  texts.assign(Texts{u"b", u"a", u"b"});
  sets.setPropertyValue(u"texts", Value(std::set<std::u16string>{u"a", u"b"}));
  EXPECT_EQ(transactions(model), begun);
}

TEST(PrimitiveSet, IsASetOrAListByReflection) {
  const Model model = Model::create();
  const Sets sets = Sets::create(model);
  EXPECT_EQ(sets.getPropertyValue(u"numbers"), Value(std::set<std::int32_t>()));
  EXPECT_FALSE(sets.hasPropertyValue(u"numbers"));
  sets.setPropertyValue(u"numbers", Value(std::vector<std::int32_t>{2, 1, 2}));
  EXPECT_EQ(sets.getPropertyValue(u"numbers"), Value(std::set<std::int32_t>{1, 2}));
  sets.setPropertyValue(u"numbers", Value(std::set<std::int32_t>{7}));
  EXPECT_THAT(sets.numbers().values(), ElementsAre(7));
  EXPECT_EQ(raised<lxb::messages::CannotCastIncompatibleTypes>([&] {
              sets.setPropertyValue(u"numbers", Value(std::u16string(u"7")));
            }).substr(0, 28),
            "CannotCastIncompatibleTypes(");
  EXPECT_THAT(sets.numbers().values(), ElementsAre(7));
}

TEST(PrimitiveSet, IsBuiltFromSingleValuesListsAndSets) {
  const Model model = Model::create();
  Sets::Builder builder(model);
  const auto property = [](const char16_t* name) { return Sets::metaClass().property(name); };
  builder.setOrAdd(property(u"numbers"), Value(std::int32_t{3}));
  builder.setOrAdd(property(u"numbers"), Value(std::int32_t{1}));
  builder.setOrAdd(property(u"texts"), Value(Texts{u"b", u"a", u"b"}));
  builder.setOrAdd(property(u"colours"), Value(std::set<Colour>{Colour::Green}));
  const Sets sets = builder.create();
  EXPECT_THAT(sets.numbers().values(), ElementsAre(1, 3));
  EXPECT_THAT(sets.texts().values(), ElementsAre(u"a", u"b"));
  EXPECT_THAT(sets.colours().values(), ElementsAre(Colour::Green));
}

}  // namespace
