#include <memory>
#include <set>

#include "platform/foundation/Builder.h"
#include "platform/foundation/Query.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "platform/services/CatalogMessage.h"
#include "tests/nd_data_adapter/model/allocation/WholeWorld.h"

namespace allocation_test {

namespace {

using Elements = std::vector<ModelElement>;
using Texts = std::vector<std::u16string>;

template <class F>
void refused(F step) {
  try {
    step();
  } catch (const lx::services::CatalogMessage&) {
    return;
  }
  ADD_FAILURE() << "was not refused";
}

}  // namespace

std::vector<WholeOperation> referenceOperations() {
  return {
      {"refer", [](const WholeWorld& world) { world.references.setMachine(world.robot); }},
      {"refer to another", [](const WholeWorld& world) { world.references.setOne(world.thing); }},
      {"refer to another model", [](const WholeWorld& world) { world.other.setOne(world.foreign); }},
      {"refer to nothing", [](const WholeWorld& world) { world.references.setOther({}); }},
      {"refer to itself", [](const WholeWorld& world) { world.references.setOther(world.references); }},
      {"refer to a proxy", [](const WholeWorld& world) { world.references.setOne(world.proxy); }},
      {"refer to what contains", [](const WholeWorld& world) { world.references.setOwner(world.other); }},
      {"destroy what others refer to", [](const WholeWorld& world) { world.other.destroy(); }},
      {"list who refers", [](const WholeWorld& world) { static_cast<void>(world.target.referrers()); }},
      {"refer, destroy and come back",
       [](const WholeWorld& world) {
         Transaction transaction = world.model.impl()->beginTransaction(false);
         world.references.setMachine(world.robot);
         {
           const Transaction abandoned = world.model.impl()->beginTransaction(false);
           world.robot.destroy();
           world.target.destroy();
         }
         transaction.commit();
       }},
  };
}

std::vector<WholeOperation> valueOperations() {
  return {
      {"add to a set of texts",
       [](const WholeWorld& world) { world.sets.getTextsMutable().add(std::u16string(Long) + u"!"); }},
      {"add to a set of numbers", [](const WholeWorld& world) { world.sets.getNumbersMutable().add(9); }},
      {"add to an empty set",
       [](const WholeWorld& world) { world.sets.getIdentitiesMutable().add(WholeWorld::identity(3)); }},
      {"remove from a set", [](const WholeWorld& world) { world.sets.getTextsMutable().remove(Long); }},
      {"clear a set", [](const WholeWorld& world) { world.sets.getTextsMutable().clear(); }},
      {"assign a set",
       [](const WholeWorld& world) {
         world.sets.getTextsMutable().assign(Texts{Long, u"c", Long});
       }},
      {"list a set", [](const WholeWorld& world) { static_cast<void>(world.sets.texts().values()); }},
      {"assign lists",
       [](const WholeWorld& world) {
         Transaction transaction = world.model.impl()->beginTransaction(false);
         world.lists.getTextsMutable().assign({Long, Long});
         world.lists.getFlagsMutable().assign({true, false});
         world.lists.getNarrowsMutable().assign({"a narrow text with memory of its own"});
         world.lists.getWorldsMutable().assign({world.second, Model()});
         transaction.commit();
       }},
      {"set an optional text",
       [](const WholeWorld& world) { world.optionals.setText(std::u16string(Long) + u"!"); }},
      {"take an optional text away", [](const WholeWorld& world) { world.optionals.setText(boost::none); }},
      {"set other optional values",
       [](const WholeWorld& world) {
         Transaction transaction = world.model.impl()->beginTransaction(false);
         world.optionals.setNumber(7);
         world.optionals.setNarrow(std::string("a narrow text with memory of its own"));
         world.optionals.setWorld(world.second);
         world.optionals.setColour(probe::Colour::Blue);
         transaction.commit();
       }},
      {"set an optional model", [](const WholeWorld& world) { world.optionals.setWorld(world.second); }},
      {"set single values",
       [](const WholeWorld& world) {
         Transaction transaction = world.model.impl()->beginTransaction(false);
         world.values.setText(Long);
         world.values.setNarrow("a narrow text with memory of its own");
         world.values.setWorld(world.second);
         world.values.setIdentity(WholeWorld::identity(5));
         transaction.commit();
       }},
  };
}

std::vector<WholeOperation> builderOperations() {
  return {
      {"build a reference to what is there",
       [](const WholeWorld& world) {
         probe::References::Builder(world.model).setOne(world.thing).setAny(world.foreign).create();
       }},
      {"build references in every kind of collection",
       [](const WholeWorld& world) {
         MoreReferences::Builder(world.model)
             .setRow(world.target)
             .setRow(world.thing)
             .setBag(world.target)
             .setProxyRow(world.proxy)
             .setProxyBag(world.proxy)
             .setMixed(world.references)
             .create();
       }},
      {"build what is referred to",
       [](const WholeWorld& world) {
         MoreReferences::Builder(world.model)
             .setOne(Thing::Builder().setName(Long))
             .setRow(Machine::Builder().setSpeeds({1, 2}))
             .setBag(Thing::Builder())
             .create();
       }},
      {"build a circle",
       [](const WholeWorld& world) {
         const auto first = std::make_shared<MoreReferences::Builder>();
         lx::base::ModelElement::BuilderWrapper own{std::shared_ptr<ModelElement::Builder>(first)};
         own.borrow();
         first->setAny(own).setOther(MoreReferences::Builder().setAny(own).setOwner(world.other));
         first->createIn(world.model);
       }},
      {"build three levels with sets",
       [](const WholeWorld& world) {
         Containers::Builder(world.model)
             .setAny(probe::Sets::Builder().setTexts({Long, u"a"}).setNumbers({1, 2}))
             .setByName(Robot::Builder().setName(Long).setParts(Thing::Builder().setName(u"p")))
             .setByNumber(Thing::Builder().setNumber(1))
             .setByNumber(Thing::Builder().setNumber(2))
             .create();
       }},
      {"build what is refused",
       [](const WholeWorld& world) {
         refused([&] {
           Containers::Builder(world.model)
               .setByNumber(Thing::Builder().setNumber(1))
               .setByNumber(Thing::Builder().setNumber(1))
               .create();
         });
         refused([&] { MoreReferences::Builder(world.model).setRow(world.foreign).create(); });
       }},
      {"create into a map by a number",
       [](const WholeWorld& world) {
         if (!world.containers.byNumber().contains(77))
           world.containers.createIntoByNumber(Robot::Builder().setNumber(77).setName(Long));
       }},
      {"create into a reference",
       [](const WholeWorld& world) {
         if (!world.containers.one()) world.containers.createIntoOne(Thing::Builder().setName(Long));
       }},
      {"build by the description of the class",
       [](const WholeWorld& world) {
         const auto type = MoreReferences::metaClass();
         const auto builder = type.impl()->instantiateBuilder(world.model);
         builder->setOrAdd(type.property(u"row"), Value(Elements{world.thing, world.target}));
         builder->setOrAdd(type.property(u"own"), std::make_unique<probe::References::Builder>());
         builder->create();
       }},
  };
}

std::vector<WholeOperation> reflectionOperations() {
  return {
      {"get lists and sets by name",
       [](const WholeWorld& world) {
         for (const char16_t* name : {u"row", u"bag", u"proxyRow", u"anyBag", u"one"})
           static_cast<void>(world.references.getPropertyValue(name));
         static_cast<void>(world.sets.getPropertyValue(u"texts"));
         static_cast<void>(world.lists.getPropertyValue(u"texts"));
         static_cast<void>(world.containers.getPropertyValue(u"byNumber"));
       }},
      {"set a row by name",
       [](const WholeWorld& world) {
         world.references.setPropertyValue(u"row", Value(Elements{world.thing, world.robot}));
       }},
      {"set a bag by name",
       [](const WholeWorld& world) {
         world.references.setPropertyValue(u"bag", Value(Elements{world.thing, world.target}));
       }},
      {"set a row with proxies by name",
       [](const WholeWorld& world) {
         world.references.setPropertyValue(u"proxyRow", Value(Elements{world.proxy, world.target}));
       }},
      {"set a reference by name",
       [](const WholeWorld& world) {
         world.references.setPropertyValue(u"machine", Value(ModelElement(world.robot)));
       }},
      {"set a set by name",
       [](const WholeWorld& world) {
         world.sets.setPropertyValue(u"texts", Value(std::set<std::u16string>{Long, u"c"}));
       }},
      {"set a list by name",
       [](const WholeWorld& world) {
         world.lists.setPropertyValue(u"texts", Value(Texts{Long, u"c"}));
       }},
      {"set an optional value by name",
       [](const WholeWorld& world) {
         world.optionals.setPropertyValue(
             u"text", Value(boost::optional<std::u16string>(std::u16string(Long) + u"?")));
       }},
      {"set a list by name that is refused",
       [](const WholeWorld& world) {
         refused([&] {
           world.references.setPropertyValue(u"row", Value(Elements{world.thing, world.foreign}));
         });
       }},
      {"set a map by name",
       [](const WholeWorld& world) {
         world.containers.setPropertyValue(u"byNumber", Value(Elements{world.robot, world.thing}));
       }},
      {"invoke by name",
       [](const WholeWorld& world) {
         static_cast<void>(world.cube.invoke(u"area", {}));
         static_cast<void>(world.cube.impl()->invoke(world.cube.getMetaClass().operation(u"corners"), {}));
         static_cast<void>(world.cube.getPropertyValue(u"label"));
         world.cube.setSide(3);
       }},
  };
}

std::vector<WholeOperation> queryOperations() {
  return {
      {"query by references",
       [](const WholeWorld& world) {
         MoreReferences::Constrainables wanted(world.model);
         wanted.one.equals(world.target);
         wanted.row.satisfies([](const Elements& row) { return row.size() < 5; });
         lx::base::query::find<MoreReferences>(wanted);
       }},
      {"query by sets and lists",
       [](const WholeWorld& world) {
         probe::Sets::Constrainables sets(world.model);
         sets.texts.equals({Long, u"a"});
         lx::base::query::find<probe::Sets>(sets);
         probe::Lists::Constrainables lists(world.model);
         lists.texts.satisfies([](const Texts& texts) { return texts.empty(); });
         lx::base::query::find<probe::Lists>(lists);
       }},
      {"query by what is contained, and by derived values",
       [](const WholeWorld& world) {
         Containers::Constrainables containers(world.model);
         containers.byNumber.satisfies([](const Elements& things) { return !things.empty(); });
         lx::base::query::find<Containers>(containers);
         probe::Cube::Constrainables cubes(world.model);
         cubes.label.equals(u"Cube 6");
         lx::base::query::find<probe::Cube>(cubes);
       }},
  };
}

}  // namespace allocation_test
