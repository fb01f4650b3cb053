#include <algorithm>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "platform/foundation/Query.h"
#include "platform/foundation/meta/StandardTypes.h"
#include "platform/services/CatalogMessage.h"
#include "tests/platform/foundation/whole/Ways.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/Cube.h"
#include "tests/support/model/Defaults.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/MetaPackageProbe.h"
#include "tests/support/model/MoreReferences.h"
#include "tests/support/model/Optionals.h"
#include "tests/support/model/Sets.h"
#include "tests/support/model/Traits.h"
#include "tests/support/model/Twig.h"
#include "tests/support/model/Values.h"

using namespace whole_test;
using lx::base::meta::StandardTypes;
using lx::base::query::Constrainable;
using lx::base::query::find;
using probe::Branch;
using probe::Containers;
using probe::Cube;
using probe::Defaults;
using probe::Leaf;
using probe::Lists;
using probe::Machine;
using probe::Optionals;
using probe::References;
using probe::Sets;
using probe::Shape;
using probe::Square;
using probe::Thing;
using probe::Traits;
using probe::Values;
using probe::inner::MoreReferences;
using probe::inner::Robot;

namespace {

/// Makes models whose elements have random values and hold and mean each other at random.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) { probe::MetaPackageProbe::getInstance(); }

  std::size_t below(std::size_t bound) { return engine_() % bound; }

  template <class T>
  const T& oneOf(const std::vector<T>& list) {
    return list[below(list.size())];
  }

  Model model() {
    static const std::vector<const char16_t*> classes{
        u"probe.Values",      u"probe.Optionals",  u"probe.Defaults",   u"probe.Traits",
        u"probe.Lists",       u"probe.Sets",       u"probe.Thing",      u"probe.Machine",
        u"probe.inner.Robot", u"probe.Containers", u"probe.References", u"probe.inner.MoreReferences",
        u"probe.Branch",      u"probe.Leaf",       u"probe.Twig",       u"probe.Square",
        u"probe.Cube"};
    const Model model = Model::create();
    for (int round = 0; round < 10; ++round) {
      for (const char16_t* each : classes) make(model, each);
    }
    for (const ModelElement& each : model.impl()->elements()) fill(each);
    for (int round = 0; round < 5; ++round) oneOf(model.impl()->elements()).destroy();
    for (int round = 0; round < 5; ++round) oneOf(model.impl()->elements()).impl()->convertToProxy();
    return model;
  }

 private:
  void fill(const ModelElement& element) {
    if (!element.isAlive()) return;
    for (const Property& property : element.getMetaClass().getProperties()) {
      if (!element.isAlive() || below(3) == 0) continue;
      try {
        element.setPropertyValue(property.getName(), value(element, property));
      } catch (
          const lx::services::CatalogMessage&) {  // is read-only, makes a circle, has a key that is taken
      }
    }
  }

  Value value(const ModelElement& element, const Property& property) {
    if (property.getName() == u"side") return Value(static_cast<std::int32_t>(below(5)));
    const auto* const type = dynamic_cast<const Class::Impl*>(property.getType().impl());
    if (type == nullptr || property.getType() == StandardTypes::model())
      return oneOf(samplesOf(property.getType().getQualifiedName()).of(property.getValueFlags()));
    Elements fitting;
    for (const ModelElement& each : element.getModel().impl()->elements()) {
      if (each.getMetaClass().isSubclassOf(Class(const_cast<Class::Impl*>(type)))) fitting.push_back(each);
    }
    if (property.getUpper() == 1)
      return Value(fitting.empty() || below(3) == 0 ? ModelElement() : oneOf(fitting));
    std::shuffle(fitting.begin(), fitting.end(), engine_);
    fitting.resize(std::min(fitting.size(), below(4)));
    return Value(fitting);
  }

  std::mt19937 engine_;
};

/// List the elements of a class, as a plain walk over the model finds them.
template <class E>
std::vector<E> elementsOf(const Model& model) {
  std::vector<E> result;
  for (const ModelElement& each : model.impl()->elements()) {
    if (dynamic_cast<typename E::Impl*>(each.impl()) != nullptr) result.push_back(of<E>(each));
  }
  return result;
}

/// Ask an element by a getter of its handle or of itself.
template <class T, class E, class Getter>
T read(const E& element, Getter getter) {
  const auto& answer = [&]() -> decltype(auto) {
    if constexpr (std::is_invocable_v<Getter, const E&>)
      return std::invoke(getter, element);
    else
      return std::invoke(getter, *element.impl());
  }();
  if constexpr (std::is_convertible_v<decltype(answer), T>)
    return answer;
  else if constexpr (std::is_same_v<T, Elements>)
    return listed(answer).template as<Elements>();
  else
    return answer.values();
}

/// Compares queries for elements of one class with plain filters.
template <class E>
class Comparison {
 public:
  explicit Comparison(const Model& model) : model_(model), all_(elementsOf<E>(model)) {
    EXPECT_GT(all_.size(), 1U);
    EXPECT_EQ(find<E>(typename E::Constrainables(model)), all_);
  }

  /// Ask for each value that the property has, and for its type's zero.
  template <class T, class C, class Getter>
  void operator()(Constrainable<T> C::*property, Getter getter) const {
    std::vector<T> values{T{}};
    for (const E& each : all_) values.push_back(read<T>(each, getter));
    for (const T& value : values) {
      const auto is = [&](const E& each) { return read<T>(each, getter) == value; };
      const auto isNot = [&](const T& present) { return !(present == value); };
      typename E::Constrainables equal(model_), other(model_), both(model_);
      (equal.*property).equals(value);
      (other.*property).satisfies(isNot);
      (both.*property).equals(value);
      (both.*property).satisfies(isNot);
      EXPECT_EQ(find<E>(equal), filtered(is));
      EXPECT_EQ(find<E>(other), filtered([&](const E& each) { return !is(each); }));
      EXPECT_EQ(find<E>(equal).size() + find<E>(other).size(), all_.size());
      EXPECT_TRUE(both.matches().empty());
    }
  }

  template <class F>
  std::vector<E> filtered(F condition) const {
    std::vector<E> result;
    std::copy_if(all_.begin(), all_.end(), std::back_inserter(result), condition);
    return result;
  }

 private:
  Model model_;
  std::vector<E> all_;
};

class Queries : public testing::TestWithParam<unsigned> {
 protected:
  Random random_{GetParam()};
  Model model_ = random_.model();
};

TEST_P(Queries, FindWhatAFilterBySingleValuesFinds) {
  using Q = Values::Constrainables;
  const Comparison<Values> compare(model_);
  compare(&Q::text, &Values::text);
  compare(&Q::narrow, &Values::narrow);
  compare(&Q::flag, &Values::flag);
  compare(&Q::number, &Values::number);
  compare(&Q::world, &Values::world);
  compare(&Q::identity, &Values::identity);
  compare(&Q::colour, &Values::colour);
  compare(&Q::ticket, &Values::ticket);
  compare(&Q::token, &Values::token);
  const Comparison<Defaults> defaults(model_);
  defaults(&Defaults::Constrainables::number, &Defaults::number);
  defaults(&Defaults::Constrainables::colour, &Defaults::colour);
}

TEST_P(Queries, FindWhatAFilterByOptionalValuesFinds) {
  using Q = Optionals::Constrainables;
  const Comparison<Optionals> compare(model_);
  compare(&Q::text, &Optionals::text);
  compare(&Q::narrow, &Optionals::narrow);
  compare(&Q::flag, &Optionals::flag);
  compare(&Q::number, &Optionals::number);
  compare(&Q::world, &Optionals::world);
  compare(&Q::identity, &Optionals::identity);
  compare(&Q::colour, &Optionals::colour);
  compare(&Q::ticket, &Optionals::ticket);
  compare(&Q::token, &Optionals::token);
}

TEST_P(Queries, FindWhatAFilterByListsFinds) {
  using Q = Lists::Constrainables;
  const Comparison<Lists> compare(model_);
  compare(&Q::texts, &Lists::texts);
  compare(&Q::narrows, &Lists::narrows);
  compare(&Q::flags, &Lists::flags);
  compare(&Q::numbers, &Lists::numbers);
  compare(&Q::worlds, &Lists::worlds);
  compare(&Q::identities, &Lists::identities);
  compare(&Q::colours, &Lists::colours);
  compare(&Q::tickets, &Lists::tickets);
}

TEST_P(Queries, FindWhatAFilterBySetsFinds) {
  using Q = Sets::Constrainables;
  const Comparison<Sets> compare(model_);
  compare(&Q::texts, &Sets::texts);
  compare(&Q::narrows, &Sets::narrows);
  compare(&Q::flags, &Sets::flags);
  compare(&Q::numbers, &Sets::numbers);
  compare(&Q::identities, &Sets::identities);
  compare(&Q::colours, &Sets::colours);
}

TEST_P(Queries, FindWhatAFilterByContentsFinds) {
  using Q = Containers::Constrainables;
  const Comparison<Containers> compare(model_);
  compare(&Q::one, &Containers::one);
  compare(&Q::any, &Containers::any);
  compare(&Q::row, &Containers::row);
  compare(&Q::mixed, &Containers::mixed);
  compare(&Q::byName, &Containers::byName);
  compare(&Q::byNumber, &Containers::byNumber);
  compare(&Q::allByName, &Containers::allByName);
  compare(&Q::allByNumber, &Containers::allByNumber);
  compare(&Q::machines, &Containers::machines);
  compare(&Q::inside, &Containers::Impl::getInside);
  const Comparison<Branch> branches(model_);
  branches(&Branch::Constrainables::leaf, &Branch::leaf);
  branches(&Branch::Constrainables::twigs, &Branch::twigs);
}

TEST_P(Queries, FindWhatAFilterByReferencesFinds) {
  using Q = References::Constrainables;
  const Comparison<References> compare(model_);
  compare(&Q::name, &References::name);
  compare(&Q::one, &References::one);
  compare(&Q::any, &References::any);
  compare(&Q::machine, &References::machine);
  compare(&Q::other, &References::other);
  compare(&Q::row, &References::row);
  compare(&Q::mixed, &References::mixed);
  compare(&Q::bag, &References::bag);
  compare(&Q::anyBag, &References::anyBag);
  compare(&Q::proxyRow, &References::proxyRow);
  compare(&Q::proxyBag, &References::proxyBag);
  compare(&Q::anyProxyRow, &References::anyProxyRow);
  compare(&Q::inside, &References::Impl::getInside);
  compare(&Q::insideOne, &References::Impl::getInsideOne);
  compare(&Q::fixed, &References::fixed);
  const Comparison<Leaf> leaves(model_);
  leaves(&Leaf::Constrainables::grownOn, &Leaf::grownOn);
}

TEST_P(Queries, FindWhatAFilterByDerivedAndInternalValuesFinds) {
  using Q = Shape::Constrainables;
  const Comparison<Shape> compare(model_);
  compare(&Q::side, &Shape::side);
  compare(&Q::label, &Shape::label);
  compare(&Q::half, &Shape::half);
  compare(&Q::holder, &Shape::holder);
  compare(&Q::secret, &Shape::Impl::getSecret);
  const Comparison<Traits> traits(model_);
  traits(&Traits::Constrainables::unread, &Traits::Impl::getUnread);
  traits(&Traits::Constrainables::inside, &Traits::Impl::getInside);
  traits(&Traits::Constrainables::fixedList, &Traits::fixedList);
}

TEST_P(Queries, FindWhatAFilterByInheritedValuesFinds) {
  const Comparison<Thing> things(model_);
  const Comparison<Machine> machines(model_);
  const Comparison<Robot> robots(model_);
  const Comparison<MoreReferences> references(model_);
  things(&Thing::Constrainables::name, &Thing::name);
  machines(&Thing::Constrainables::name, &Thing::name);
  machines(&Machine::Constrainables::speeds, &Machine::speeds);
  robots(&Robot::Constrainables::name, &Thing::name);
  robots(&Robot::Constrainables::speeds, &Machine::speeds);
  robots(&Robot::Constrainables::task, &Robot::task);
  robots(&Robot::Constrainables::orders, &Robot::orders);
  references(&References::Constrainables::one, &References::one);
  references(&MoreReferences::Constrainables::robots, &MoreReferences::robots);
  references(&MoreReferences::Constrainables::owner, &MoreReferences::owner);
  const Comparison<Cube> cubes(model_);
  cubes(&Cube::Constrainables::label, &Shape::label);
  cubes(&Cube::Constrainables::colour, &Square::colour);
  EXPECT_GT(elementsOf<Thing>(model_).size(), elementsOf<Machine>(model_).size());
  EXPECT_GT(elementsOf<Machine>(model_).size(), elementsOf<Robot>(model_).size());
}

TEST_P(Queries, FindWhatAFilterBySeveralConditionsFinds) {
  const Comparison<Machine> compare(model_);
  const std::vector<Machine> all = elementsOf<Machine>(model_);
  std::size_t found = 0;
  for (int round = 0; round < 60; ++round) {
    const Machine one = random_.oneOf(all), other = random_.oneOf(all);
    const std::int32_t bound = other.number();
    const std::size_t parts = random_.below(3);
    Machine::Constrainables wanted(model_);
    wanted.name.equals(one.name());
    wanted.remark.satisfies(
        [&](const boost::optional<std::u16string>& remark) { return remark.has_value() == one.hasRemark(); });
    wanted.number.satisfies([&](std::int32_t number) { return number <= bound; });
    wanted.number.satisfies([&](std::int32_t number) { return number != 1; });
    wanted.parts.satisfies([&](const Elements& present) { return present.size() <= parts; });
    const auto expected = compare.filtered([&](const Machine& each) {
      return each.name() == one.name() && each.hasRemark() == one.hasRemark() && each.number() <= bound &&
             each.number() != 1 && each.parts().size() <= parts;
    });
    EXPECT_EQ(find<Machine>(wanted), expected);
    found += expected.size();
  }
  EXPECT_GT(found, 0U);
}

INSTANTIATE_TEST_SUITE_P(OfRandomModels, Queries, testing::Values(1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U));

}  // namespace
