#include "tests/platform/foundation/random/Pairing.h"

#include <algorithm>

#include "tests/platform/foundation/random/Access.h"

namespace model_walk {

namespace {

std::string nameOf(Id id) {
  return "#" + std::to_string(id);
}

}  // namespace

void Pairing::add(const ModelElement& element) {
  ids_.emplace(element.impl(), next());
  elements_.push_back(element);
}

Id Pairing::idOf(const ModelElement& element) const {
  if (!element) return 0;
  const auto found = ids_.find(element.impl());
  return found == ids_.end() ? -1 : found->second;
}

Content Pairing::contentOf(const Twin::Element& element, unsigned index, const Value& value) const {
  return accessTo(element.kind, index).readValue(*this, value);
}

Id Pairing::bearerOf(const boost::uuids::uuid& uuid, int model, const Twin& twin) const {
  for (const auto& [id, borne] : identities_) {
    if (borne == uuid && twin.contains(id) && twin.at(id).model == model && !twin.at(id).isProxy) return id;
  }
  return 0;
}

Id Pairing::loadedFor(Id proxy, const Twin& twin) const {
  const auto found = identities_.find(proxy);
  if (!twin.isProxy(proxy) || found == identities_.end()) return 0;
  return bearerOf(found->second, twin.at(proxy).model, twin);
}

std::string Pairing::difference(const Model& model, int number, const Twin& twin) const {
  const Twin::Elements& wanted = twin.elements(number);
  const std::vector<ModelElement> elements = model.impl()->elements();
  bool isSame = elements.size() == wanted.size();
  auto each = wanted.begin();
  for (std::size_t at = 0; isSame && at < elements.size(); ++at)
    isSame = idOf(elements[at]) == (each++)->first;
  if (!isSame) return "the elements are " + written(idsOf(elements));
  for (const auto& [id, element] : wanted) {
    if (std::string text = differenceOf(id, element); !text.empty()) return nameOf(id) + text;
  }
  return {};
}

std::string Pairing::differenceOf(Id id, const Twin::Element& element) const {
  ModelElement::Impl& impl = *(*this)[id].impl();
  if (impl.isProxy() != element.isProxy) return " is a proxy, or none";
  const Id container = idOf(ModelElement(impl.container()));
  if (container != element.container)
    return " is in " + nameOf(container) + " and not in " + nameOf(element.container);
  if (container != 0 && element.slot != impl.containmentSlot()->index()) return " is in another property";
  for (unsigned index = 1; index <= element.values.size(); ++index) {
    const Content content = accessTo(element.kind, index).read(*this, impl);
    if (content == element.value(index)) continue;
    return "." + writtenNameOf(element.kind, index) + " is " + written(content) + " and not " +
           written(element.value(index));
  }
  return {};
}

std::string Pairing::closeDifference(const Model& model, int number, const Twin& twin) const {
  if (std::string text = difference(model, number, twin); !text.empty()) return text;
  if (model.impl()->numberOfElements() != twin.elements(number).size()) return "the number of elements";
  Content roots;
  for (const auto& [id, element] : twin.elements(number)) {
    if (element.container == 0) roots.push_back(id);
    if ((*this)[id].getModel() != model) return nameOf(id) + " has another model";
    if (std::string text = closeDifferenceOf(id, twin); !text.empty()) return nameOf(id) + text;
  }
  if (idsOf(model.impl()->roots()) != roots) return "the roots";
  return differenceOfIdentities(model, number, twin);
}

std::string Pairing::differenceOfGone(const Twin& twin) const {
  for (Id id = 1; id < next(); ++id) {
    if (twin.contains(id)) continue;
    if (std::string text = differenceOfGone(id, twin.kindOf(id)); !text.empty())
      return nameOf(id) + " is gone: " + text;
  }
  return {};
}

std::string Pairing::closeDifferenceOf(Id id, const Twin& twin) const {
  ModelElement::Impl& impl = *(*this)[id].impl();
  const Twin::Element& element = twin.at(id);
  if (!impl.isAlive()) return " is not alive";
  for (unsigned index = 1; index <= element.values.size(); ++index) {
    if (std::string text = closeDifferenceOf(impl, element, index, twin); !text.empty())
      return "." + writtenNameOf(element.kind, index) + ": " + text;
  }
  return differenceOfReferrers(id, twin);
}

std::string Pairing::closeDifferenceOf(ModelElement::Impl& impl, const Twin::Element& element, unsigned index,
                                       const Twin& twin) const {
  const Access& access = accessTo(element.kind, index);
  const auto& property = descriptionOf(element.kind, index);
  const Content content = access.readValue(*this, impl.getPropertyValue(property));
  if (content != element.value(index)) return "it shows as " + written(content);
  if (impl.hasPropertyValue(property) == element.value(index).empty()) return "whether it has a value";
  if (std::string text = access.difference(*this, impl, element, index); !text.empty()) return text;
  if (!isOfElements(propertiesOf(element.kind)[index - 1].form)) return {};
  std::vector<boost::uuids::uuid> held;  // of proxies
  for (const Content* each : {&element.value(index), &element.apart(index)}) {
    for (const Id id : *each) {
      const auto found = twin.isProxy(id) ? identities_.find(id) : identities_.end();
      if (found != identities_.end()) held.push_back(found->second);
    }
  }
  for (const auto& [bearer, uuid] : identities_) {
    const bool isHeld = std::find(held.begin(), held.end(), uuid) != held.end();
    if (impl.inverseContainsProxyTo(index, uuid) != isHeld) return "what proxies it holds";
  }
  return {};
}

/// Compare what refers to an element. References that came at once stand in any order.
std::string Pairing::differenceOfReferrers(Id id, const Twin& twin) const {
  const Content told = idsOf((*this)[id].referrers());
  const std::vector<std::pair<int, Id>> wanted = twin.referrers(id);
  std::vector<std::pair<int, Id>> found;
  for (const Id each : told) {
    const auto known =
        std::find_if(wanted.begin(), wanted.end(), [&](const auto& one) { return one.second == each; });
    if (known == wanted.end()) return " is referred to by " + written(told);
    found.push_back(*known);
  }
  const bool isInOrder = std::is_sorted(found.begin(), found.end(), [](const auto& left, const auto& right) {
    return left.first < right.first;
  });
  std::sort(found.begin(), found.end());
  if (found != wanted) return " is referred to by " + written(told);
  return isInOrder ? "" : " is referred to in the order " + written(told);
}

std::string Pairing::differenceOfGone(Id id, Kind kind) const {
  const ModelElement& handle = (*this)[id];
  if (handle.isAlive()) return "it is alive";
  if (handle.container()) return "it has a container";
  if (handle.getModel()) return "it has a model";
  if (!handle.referrers().empty()) return "it is referred to";
  const std::vector<PropertyOfKind>& properties = propertiesOf(kind);
  for (unsigned index = 1; index <= properties.size(); ++index) {
    const Content content = accessTo(kind, index).read(*this, *handle.impl());
    if (content != properties[index - 1].zero) return writtenNameOf(kind, index) + " is " + written(content);
  }
  return {};
}

std::string Pairing::differenceOfIdentities(const Model& model, int number, const Twin& twin) const {
  for (const auto& [id, uuid] : identities_) {
    if ((*this)[id].identifier() != uuid) return nameOf(id) + " has another identity";
    const Id found = idOf(model.impl()->findElement(uuid));
    const Id loaded = bearerOf(uuid, number, twin);
    const bool isRight = loaded != 0 ? found == loaded : found == 0 || identities_.at(found) == uuid;
    if (!isRight) return "the identity of " + nameOf(id) + " finds " + nameOf(found);
    if (loaded != 0 || found != 0) {
      if (!twin.contains(found) || twin.at(found).model != number)
        return "the identity of " + nameOf(id) + " finds " + nameOf(found) + ", which isn't there";
      continue;
    }
    if (twin.contains(id) && twin.at(id).model == number)
      return "the identity of " + nameOf(id) + " finds nothing";
  }
  return {};
}

std::vector<Content> Pairing::orderOfBags(int number, const Twin& twin) const {
  std::vector<Content> result;
  for (const auto& [id, element] : twin.elements(number)) {
    const std::vector<PropertyOfKind>& properties = propertiesOf(element.kind);
    for (unsigned index = 1; index <= properties.size(); ++index) {
      if (properties[index - 1].form == Form::Bag && element.value(index).size() > 1)
        result.push_back(accessTo(element.kind, index).order(*this, *(*this)[id].impl()));
    }
  }
  return result;
}

}  // namespace model_walk
