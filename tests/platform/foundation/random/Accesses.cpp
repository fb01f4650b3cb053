// How each property of the test model is reached, in the order of the properties.
#include <array>

#include "platform/foundation/CreateElement.h"
#include "platform/text/Convert.h"
#include "tests/platform/foundation/random/ElementAccess.h"
#include "tests/platform/foundation/random/HearingContainers.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/Defaults.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/MoreReferences.h"
#include "tests/support/model/Optionals.h"
#include "tests/support/model/Robot.h"
#include "tests/support/model/Sets.h"
#include "tests/support/model/Traits.h"
#include "tests/support/model/Twig.h"
#include "tests/support/model/Values.h"

namespace model_walk {

using namespace probe;
using probe::inner::MoreReferences;
using probe::inner::Robot;

namespace {

using Accesses = std::vector<std::shared_ptr<const Access>>;

template <auto Get, auto Set = nullptr, class... Initial>
std::shared_ptr<const Access> value(Initial... initial) {
  return std::make_shared<ValueAccess<Get, Set>>(initial...);
}
template <auto Get, auto GetMutable = nullptr>
std::shared_ptr<const Access> values() {
  return std::make_shared<ValuesAccess<Get, GetMutable>>();
}
template <auto Get, auto Set, auto CreateInto>
std::shared_ptr<const Access> child() {
  return std::make_shared<ElementAccess<Get, Set, CreateInto>>(0U);
}
template <auto Get, auto Set>
std::shared_ptr<const Access> reference(unsigned index) {
  return std::make_shared<ElementAccess<Get, Set>>(index);
}
template <auto Get, auto GetMutable, auto CreateInto = nullptr>
std::shared_ptr<const Access> collection(unsigned key = 0) {
  return std::make_shared<CollectionAccess<Get, GetMutable, CreateInto>>(key);
}

Accesses operator+(Accesses inherited, const Accesses& own) {
  inherited.insert(inherited.end(), own.begin(), own.end());
  return inherited;
}

template <class I>
Accesses singles() {
  return {value<&I::getText, &I::setText>(),     value<&I::getNarrow, &I::setNarrow>(),
          value<&I::getFlag, &I::setFlag>(),     value<&I::getNumber, &I::setNumber>(),
          value<&I::getWorld, &I::setWorld>(),   value<&I::getIdentity, &I::setIdentity>(),
          value<&I::getColour, &I::setColour>(), value<&I::getTicket, &I::setTicket>(),
          value<&I::getToken, &I::setToken>()};
}

Accesses ofDefaults() {
  using I = Defaults::Impl;
  return {value<&I::getText, &I::setText>(std::u16string(u"wide \" text")),
          value<&I::getNarrow, &I::setNarrow>(std::string("narrow")), value<&I::getFlag, &I::setFlag>(true),
          value<&I::getNumber, &I::setNumber>(INT32_MIN), value<&I::getColour, &I::setColour>(Colour::Blue)};
}

Accesses ofTraits() {
  using I = Traits::Impl;
  return {value<&I::getHidden, &I::setHidden>(),
          value<&I::getOrdered, &I::setOrdered>(),
          value<&I::getUnique, &I::setUnique>(),
          value<&I::getFixed>(),
          value<&I::getPassing, &I::setPassing>(),
          value<&I::getUnread, &I::setUnread>(),
          value<&I::getUnwritten, &I::setUnwritten>(),
          value<&I::getInside, &I::setInside>(),
          values<&I::getFixedList>(),
          values<&I::getInsideList, &I::getInsideListMutable>()};
}

Accesses ofLists() {
  using I = Lists::Impl;
  return {
      values<&I::getTexts, &I::getTextsMutable>(),     values<&I::getNarrows, &I::getNarrowsMutable>(),
      values<&I::getFlags, &I::getFlagsMutable>(),     values<&I::getNumbers, &I::getNumbersMutable>(),
      values<&I::getWorlds, &I::getWorldsMutable>(),   values<&I::getIdentities, &I::getIdentitiesMutable>(),
      values<&I::getColours, &I::getColoursMutable>(), values<&I::getTickets, &I::getTicketsMutable>()};
}

Accesses ofSets() {
  using I = Sets::Impl;
  return {
      values<&I::getTexts, &I::getTextsMutable>(),           values<&I::getNarrows, &I::getNarrowsMutable>(),
      values<&I::getFlags, &I::getFlagsMutable>(),           values<&I::getNumbers, &I::getNumbersMutable>(),
      values<&I::getIdentities, &I::getIdentitiesMutable>(), values<&I::getColours, &I::getColoursMutable>()};
}

Accesses ofThing() {
  using I = Thing::Impl;
  return {value<&I::getName, &I::setName>(), value<&I::getNumber, &I::setNumber>(7),
          value<&I::getRemark, &I::setRemark>()};
}

Accesses ofMachine() {
  using I = Machine::Impl;
  return ofThing() + Accesses{value<&I::getSerial, &I::setSerial>(),
                              values<&I::getSpeeds, &I::getSpeedsMutable>(),
                              collection<&I::getParts, &I::getPartsMutable, &I::createIntoParts>(1)};
}

Accesses ofRobot() {
  using I = Robot::Impl;
  return ofMachine() + Accesses{value<&I::getTask, &I::setTask>(),
                                collection<&I::getTools, &I::getToolsMutable, &I::createIntoTools>(),
                                child<&I::getHeld, &I::setHeld, &I::createIntoHeld>(),
                                collection<&I::getOrders, &I::getOrdersMutable, &I::createIntoOrders>(2)};
}

Accesses ofContainers() {
  using I = Containers::Impl;
  return {child<&I::getOne, &I::setOne, &I::createIntoOne>(),
          child<&I::getAny, &I::setAny, &I::createIntoAny>(),
          collection<&I::getRow, &I::getRowMutable, &I::createIntoRow>(),
          collection<&I::getMixed, &I::getMixedMutable, &I::createIntoMixed>(),
          collection<&I::getByName, &I::getByNameMutable, &I::createIntoByName>(1),
          collection<&I::getByNumber, &I::getByNumberMutable, &I::createIntoByNumber>(2),
          collection<&I::getAllByName, &I::getAllByNameMutable, &I::createIntoAllByName>(1),
          collection<&I::getAllByNumber, &I::getAllByNumberMutable, &I::createIntoAllByNumber>(2),
          collection<&I::getMachines, &I::getMachinesMutable, &I::createIntoMachines>(1),
          collection<&I::getInside, &I::getInsideMutable, &I::createIntoInside>()};
}

Accesses ofReferences() {
  using I = References::Impl;
  return {value<&I::getName, &I::setName>(),
          reference<&I::getOne, &I::setOne>(2),
          reference<&I::getAny, &I::setAny>(3),
          reference<&I::getMachine, &I::setMachine>(4),
          reference<&I::getOther, &I::setOther>(5),
          collection<&I::getRow, &I::getRowMutable>(),
          collection<&I::getMixed, &I::getMixedMutable>(),
          collection<&I::getBag, &I::getBagMutable>(),
          collection<&I::getAnyBag, &I::getAnyBagMutable>(),
          collection<&I::getProxyRow, &I::getProxyRowMutable>(),
          collection<&I::getProxyBag, &I::getProxyBagMutable>(),
          collection<&I::getAnyProxyRow, &I::getAnyProxyRowMutable>(),
          collection<&I::getInside, &I::getInsideMutable>(),
          reference<&I::getInsideOne, &I::setInsideOne>(14),
          reference<&I::getFixed, nullptr>(15)};
}

Accesses ofMoreReferences() {
  using I = MoreReferences::Impl;
  return ofReferences() + Accesses{reference<&I::getRobot, &I::setRobot>(16),
                                   collection<&I::getRobots, &I::getRobotsMutable>(),
                                   collection<&I::getOwn, &I::getOwnMutable, &I::createIntoOwn>(1),
                                   reference<&I::getOwner, &I::setOwner>(19)};
}

Accesses ofBranch() {
  using I = Branch::Impl;
  return {child<&I::getLeaf, &I::setLeaf, &I::createIntoLeaf>(),
          collection<&I::getBranches, &I::getBranchesMutable, &I::createIntoBranches>(),
          collection<&I::getTwigs, &I::getTwigsMutable, &I::createIntoTwigs>()};
}

Accesses ofLeaf() {
  using I = Leaf::Impl;
  return {child<&I::getBranch, &I::setBranch, &I::createIntoBranch>(),
          reference<&I::getGrownOn, &I::setGrownOn>(2)};
}

Accesses ofSquare() {
  return {value<&Square::Impl::getSide, &Square::Impl::setSide>(1),
          value<&Square::Impl::getColour, &Square::Impl::setColour>()};
}

/// What is known of a kind.
struct Class {
  lx::base::meta::Class description;
  Accesses accesses;
  ModelElement (*create)(const Model& model, const boost::uuids::uuid& uuid);
  ModelElement (*createProxy)(const Model& model, const boost::uuids::uuid& uuid);
  std::unique_ptr<ModelElement::Builder> (*makeBuilder)();
  std::vector<lx::base::meta::Property> properties = {};
  std::vector<std::string> names = {};  // of the properties
};

template <class E>
Class classOf(const Accesses& accesses) {
  Class result{
      E::metaClass(), accesses,
      [](const Model& model, const boost::uuids::uuid& uuid) -> ModelElement {
        return E::create(model, uuid);
      },
      [](const Model& model, const boost::uuids::uuid& uuid) -> ModelElement {
        return lx::base::createProxy<E>(model, uuid);
      },
      []() -> std::unique_ptr<ModelElement::Builder> { return std::make_unique<typename E::Builder>(); }};
  for (unsigned index = 1; index <= accesses.size(); ++index) {
    result.properties.push_back(result.description.propertyByIndex(index));
    result.names.push_back(lx::text::toUtf8(result.properties.back().getName()));
  }
  return result;
}

Class containers() {
  Class result = classOf<Containers>(ofContainers());
  result.create = &HearingContainers::create;
  return result;
}

const std::array<Class, Kinds>& classes() {
  static const std::array<Class, Kinds> all{classOf<Values>(singles<Values::Impl>()),
                                            classOf<Optionals>(singles<Optionals::Impl>()),
                                            classOf<Defaults>(ofDefaults()),
                                            classOf<Traits>(ofTraits()),
                                            classOf<Lists>(ofLists()),
                                            classOf<Sets>(ofSets()),
                                            classOf<Thing>(ofThing()),
                                            classOf<Machine>(ofMachine()),
                                            classOf<Robot>(ofRobot()),
                                            containers(),
                                            classOf<References>(ofReferences()),
                                            classOf<MoreReferences>(ofMoreReferences()),
                                            classOf<Branch>(ofBranch()),
                                            classOf<Leaf>(ofLeaf()),
                                            classOf<Twig>(ofBranch()),
                                            classOf<Square>(ofSquare()),
                                            classOf<Cube>(ofSquare())};
  return all;
}

const Class& classAt(Kind kind) {
  return classes()[static_cast<std::size_t>(kind)];
}

std::vector<PropertyOfKind> describe(const Class& owner) {
  std::vector<PropertyOfKind> result;
  for (std::size_t at = 0; at < owner.accesses.size(); ++at) {
    PropertyOfKind property = owner.accesses[at]->describe();
    const lx::base::meta::Traits& traits = owner.properties[at].traits();
    property.isSetByName = !traits.isReadOnly && traits.hasPublicSetter;
    for (int kind = 0; kind < Kinds; ++kind) {
      const bool isTaken = owner.accesses[at]->accepts(classAt(static_cast<Kind>(kind)).description);
      if (isTaken) property.kinds |= 1U << kind;
    }
    result.push_back(property);
  }
  return result;
}

}  // namespace

const std::vector<PropertyOfKind>& propertiesOf(Kind kind) {
  static const std::vector<std::vector<PropertyOfKind>> all = [] {
    std::vector<std::vector<PropertyOfKind>> result;
    for (const Class& each : classes()) result.push_back(describe(each));
    return result;
  }();
  return all[static_cast<std::size_t>(kind)];
}

const Access& accessTo(Kind kind, unsigned index) {
  return *classAt(kind).accesses[index - 1];
}

const lx::base::meta::Property& descriptionOf(Kind kind, unsigned index) {
  return classAt(kind).properties[index - 1];
}

const std::string& writtenNameOf(Kind kind, unsigned index) {
  return classAt(kind).names[index - 1];
}

ModelElement createElement(Kind kind, const Model& model, const boost::uuids::uuid& uuid) {
  return classAt(kind).create(model, uuid);
}

ModelElement createProxy(Kind kind, const Model& model, const boost::uuids::uuid& uuid) {
  return classAt(kind).createProxy(model, uuid);
}

std::unique_ptr<ModelElement::Builder> makeBuilder(Kind kind) {
  return classAt(kind).makeBuilder();
}

}  // namespace model_walk
