#include "tests/nd_data_adapter/model/allocation/WholeWorld.h"

#include <map>
#include <set>
#include <sstream>

#include <boost/uuid/uuid_io.hpp>

#include "platform/foundation/CreateElement.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "platform/text/Convert.h"

namespace allocation_test {

namespace {

using Numbers = std::map<const ModelElement::Impl*, std::size_t>;

/// The collections that hold a proxy, by the number of its identity.
enum Place : unsigned {
  Row = 1,
  Mixed,
  ByName,
  ByNumber,
  AllByName,
  AllByNumber,
  One,
  ProxyRow,
  ProxyBag,
  Free
};

std::string text(const Numbers& numbers, const ModelElement& element) {
  const auto found = numbers.find(element.impl());
  if (found == numbers.end()) return element ? element.isAlive() ? "foreign" : "gone" : "none";
  return "#" + std::to_string(found->second);
}

std::string text(const Numbers&, const Model& model) {
  return model ? "a model" : "no model";
}
std::string text(const Numbers&, const std::shared_ptr<int>& ticket) {
  return ticket ? "a ticket" : "no ticket";
}
std::string text(const Numbers&, probe::TokenTag* token) {
  return token != nullptr ? "a token" : "no token";
}
std::string text(const Numbers&, probe::Colour colour) {
  return lx::text::toUtf8(toText(colour));
}
template <class T>
requires(!std::is_base_of_v<ModelElement, T>) std::string text(const Numbers&, const T& value) {
  return lx::text::toUtf8(lx::base::meta::detail::toText(value));
}

template <class List>
std::string textOfAll(const Numbers& numbers, const List& list) {
  std::string result = "[";
  for (const auto& each : list) {
    const typename List::value_type& value = each;
    result += text(numbers, value) + " ";
  }
  return result + "]";
}

template <class T>
bool writeAs(std::string& out, const Numbers& numbers, const Value& value) {
  if (value.is<T>()) return out = text(numbers, value.as<T>()), true;
  if (value.is<boost::optional<T>>()) {
    const boost::optional<T>& content = value.as<boost::optional<T>>();
    return out = content ? text(numbers, *content) : "absent", true;
  }
  if (value.is<std::vector<T>>()) return out = textOfAll(numbers, value.as<std::vector<T>>()), true;
  if constexpr (requires(const T& each) { each < each; }) {
    if (value.is<std::set<T>>()) return out = textOfAll(numbers, value.as<std::set<T>>()), true;
  }
  return false;
}

template <class... T>
std::string written(const Numbers& numbers, const Value& value) {
  std::string result = "?";
  static_cast<void>((writeAs<T>(result, numbers, value) || ...));
  return result;
}

/// Find the elements of a keyed collection by their keys and by themselves, and list its proxies.
template <class Collection>
std::string found(const Numbers& numbers, const Collection& collection) {
  std::string result;
  for (const auto& key : collection.keys()) {
    result += text(numbers, key) + ":";
    for (const auto& element : collection.findAll(key))
      result += text(numbers, static_cast<const ModelElement&>(element)) +
                (collection.contains(element) ? ' ' : '!');
  }
  return result + " and " + textOfAll(numbers, collection.proxies()) + "\n";
}

Thing named(const Model& model, const std::u16string& name, std::int32_t number) {
  const Thing thing = Thing::create(model);
  thing.setName(name);
  thing.setNumber(number);
  return thing;
}

template <class Collection>
void addProxy(const Model& model, Collection& collection, Place place) {
  collection.add(lx::base::createProxy<Thing>(model, WholeWorld::identity(place)));
}

template <class Collection>
void addThree(const Model& model, Collection& collection, bool isMap) {
  collection.add(named(model, u"b", 2));
  collection.add(named(model, Long, 3));
  collection.add(isMap ? named(model, u"a", 1) : named(model, u"b", 2));
}

}  // namespace

boost::uuids::uuid WholeWorld::identity(unsigned number) {
  boost::uuids::uuid result{};
  result.data[0] = 0xaa;
  result.data[15] = static_cast<std::uint8_t>(number);
  return result;
}

WholeWorld::WholeWorld(bool isObserved_) : isObserved(isObserved_) {
  containers = Containers::create(model);
  addThree(model, containers.getRowMutable(), false);
  addThree(model, containers.getByNameMutable(), true);
  addThree(model, containers.getByNumberMutable(), true);
  addThree(model, containers.getAllByNameMutable(), false);
  addThree(model, containers.getAllByNumberMutable(), false);
  containers.getMixedMutable().add(probe::Sets::create(model));
  addProxy(model, containers.getRowMutable(), Row);
  addProxy(model, containers.getMixedMutable(), Mixed);
  addProxy(model, containers.getByNameMutable(), ByName);
  addProxy(model, containers.getByNumberMutable(), ByNumber);
  addProxy(model, containers.getAllByNameMutable(), AllByName);
  addProxy(model, containers.getAllByNumberMutable(), AllByNumber);
  containers.setAny(probe::Values::create(model));
  thing = named(model, u"free", 9);
  target = named(model, u"target", 8);
  foreign = named(second, u"foreign", 7);
  proxy = lx::base::createProxy<Thing>(model, identity(Free));
  references = MoreReferences::create(model);
  other = MoreReferences::create(model);
  references.setName(u"first");
  references.setOne(lx::base::createProxy<Thing>(model, identity(One)));
  references.setAny(foreign);
  references.setOther(other);
  other.setOther(references);
  other.setOne(target);
  references.getRowMutable().add(target);
  references.getRowMutable().add(containers.row().at(0));
  references.getMixedMutable().add(containers);
  references.getMixedMutable().add(target);
  references.getBagMutable().add(target);
  for (const Thing& each : containers.row()) {
    if (!each.isProxy()) references.getBagMutable().add(each);
  }
  references.getAnyBagMutable().add(target);
  references.getAnyBagMutable().add(references);
  references.getProxyRowMutable().add(target);
  references.getProxyBagMutable().add(target);
  references.getAnyProxyRowMutable().add(proxy);
  addProxy(model, references.getProxyRowMutable(), ProxyRow);
  addProxy(model, references.getProxyBagMutable(), ProxyBag);
  values = probe::Values::create(model);
  optionals = probe::Optionals::create(model);
  optionals.setText(std::u16string(Long));
  lists = probe::Lists::create(model);
  lists.getTextsMutable().assign({u"a", Long});
  sets = probe::Sets::create(model);
  sets.getTextsMutable().assign(std::vector<std::u16string>{u"a", Long});
  sets.getNumbersMutable().assign(std::vector<std::int32_t>{1, 2, 3});
  cube = probe::Cube::create(model);
  robot = Robot::create(model);
  robot.getPartsMutable().add(named(model, u"part", 1));
  robot.setHeld(named(model, u"held", 2));
  robot.getOrdersMutable().add(named(model, u"order", 3));
  for (unsigned place = Row; place <= Free; ++place)
    loaded.push_back(place == Mixed ? ModelElement(Machine::create(model, identity(place)))
                                    : ModelElement(Thing::create(model, identity(place))));
  for (std::size_t place = 0; place < loaded.size(); ++place) {
    loaded[place].setPropertyValue(u"name", Value(std::u16string(1, static_cast<char16_t>(u'p' + place))));
    loaded[place].setPropertyValue(u"number", Value(static_cast<std::int32_t>(100 + place)));
  }
  if (isObserved) model.impl()->addObserver(reader);
}

WholeWorld::~WholeWorld() {
  if (isObserved) model.impl()->removeObserver(reader);
}

void WholeWorld::touch() const {
  containers.getRowMutable().insert(1, named(model, u"touched", 40));
  containers.getMixedMutable().add(named(model, u"touched", 40));
  containers.byName().first().setName(u"z");
  containers.byNumber().first().setNumber(50);
  containers.allByName().first().setName(u"z");
  containers.allByNumber().first().setNumber(50);
  thing.setRemark(std::u16string(u"touched"));
  target.setRemark(std::u16string(u"touched"));
  references.setName(u"touched");
  references.setMachine(robot);
  references.getRowMutable().insert(0, thing);
  references.getMixedMutable().add(thing);
  references.getBagMutable().add(thing);
  references.getAnyBagMutable().remove(references);
  references.getProxyRowMutable().add(thing);
  references.getProxyBagMutable().add(thing);
  references.getAnyProxyRowMutable().add(thing);
  other.setOne(thing);
  values.setText(u"touched");
  optionals.setText(boost::none);
  lists.getTextsMutable().add(u"touched");
  sets.getTextsMutable().add(u"touched");
  sets.getNumbersMutable().remove(2);
  cube.setSide(4);
  robot.setTask(std::u16string(u"touched"));
}

std::string WholeWorld::state() const {
  Numbers numbers;
  for (const ModelElement& element : model.impl()->elements())
    numbers.emplace(element.impl(), numbers.size());
  std::ostringstream out;
  for (const ModelElement& element : model.impl()->elements()) {
    out << text(numbers, element) << (element.isProxy() ? " proxy " : " ")
        << lx::text::toUtf8(element.getMetaClass().getName()) << " in " << text(numbers, element.container())
        << " referred to by " << textOfAll(numbers, element.referrers());
    for (const lx::base::meta::Property& property : element.getMetaClass().getProperties()) {
      out << ' ' << lx::text::toUtf8(property.getName()) << '='
          << written<std::u16string, std::string, bool, std::int32_t, Model, boost::uuids::uuid,
                     probe::Colour, std::shared_ptr<int>, probe::TokenTag*, ModelElement>(
                 numbers, element.impl()->getPropertyValue(property));
    }
    out << '\n';
  }
  out << found(numbers, containers.byName()) << found(numbers, containers.byNumber())
      << found(numbers, containers.allByName()) << found(numbers, containers.allByNumber())
      << found(numbers, robot.parts()) << found(numbers, robot.orders())
      << textOfAll(numbers, references.proxyRow().proxies())
      << textOfAll(numbers, references.proxyBag().proxies())
      << textOfAll(numbers, references.anyProxyRow().proxies());
  for (unsigned place = Row; place <= Free; ++place) {
    const boost::uuids::uuid uuid = identity(place);
    out << text(numbers, model.impl()->findElement(uuid))
        << (references.impl()->inverseContainsProxyTo(10, uuid) ? '+' : '-')
        << (references.impl()->inverseContainsProxyTo(11, uuid) ? '+' : '-')
        << (containers.impl()->inverseContainsProxyTo(5, uuid) ? '+' : '-');
  }
  for (const ModelElement& each :
       {ModelElement(containers), ModelElement(references), ModelElement(other), ModelElement(thing),
        ModelElement(target), ModelElement(proxy), ModelElement(robot)}) {
    out << text(numbers, each) << (each.isAlive() ? " lives " : " is gone ");
  }
  out << "the second model has " << second.impl()->numberOfElements() << " and its thing is called "
      << lx::text::toUtf8(foreign.name());
  return out.str();
}

}  // namespace allocation_test
