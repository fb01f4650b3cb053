#include "tests/nd_data_adapter/model/random/Pairing.h"

#include <algorithm>
#include <optional>

#include <boost/shared_ptr.hpp>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterType.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"

using namespace model_test;
using lx::base::meta::Property;
using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterConfig;
using nd::data::adapter::AdapterType;
using nd::data::adapter::CPPAdapterV2Entry;

namespace random_walk {

namespace {

const std::vector<Property>& descriptionsOf(Kind kind) {
  static const std::vector<std::vector<Property>> all{
      ChangeTuple::metaClass().getProperties(),
      ChangeReport::metaClass().getProperties(),
      ConditionControlChangeEntry::metaClass().getProperties(),
      ConditionControlChangeReport::metaClass().getProperties(),
      MetaDataEntry::metaClass().getProperties(),
      DataContainer::metaClass().getProperties(),
      CPPAdapterV2Entry::metaClass().getProperties(),
      AdapterCacheV2::metaClass().getProperties(),
      AdapterConfig::metaClass().getProperties()};
  return all[static_cast<std::size_t>(kind)];
}

std::string nameOf(Id id) {
  return "#" + std::to_string(id);
}

std::vector<Id> ids(const Pairing& pairing, const auto& elements) {
  std::vector<Id> result;
  for (const ModelElement& element : elements) result.push_back(pairing.idOf(element));
  return result;
}

/// Compare a keyed collection, walked over and asked for keys, with what its property should hold.
std::string differenceOfKeyed(const Pairing& pairing, const Twin& twin, const auto& collection,
                              const Twin::Element& element, unsigned index) {
  const std::vector<Id>& children = element.children(index);
  const std::vector<Id> proxies = element.apart(index);
  if (ids(pairing, collection.proxies()) != proxies) {
    return "its proxies are " + written(ids(pairing, collection.proxies()));
  }
  if (ids(pairing, collection) != children) return "its walk is " + written(ids(pairing, collection));
  if (collection.size() != children.size() || collection.empty() != children.empty()) return "its size";
  std::vector<std::u16string> keys;
  for (const Id child : children) keys.push_back(std::get<std::u16string>(twin.at(child).value(1)));
  if (collection.keys() != keys) return "its keys are " + written(collection.keys());
  std::vector<std::u16string> asked = keys;
  asked.emplace_back(u"no such key");
  for (const std::u16string& key : asked) {
    std::vector<Id> found;
    for (std::size_t at = 0; at < keys.size(); ++at) {
      if (keys[at] == key) found.push_back(children[at]);
    }
    if (ids(pairing, collection.findAll(key)) != found) return "what it finds under " + written(Content(key));
    if (pairing.idOf(collection.find(key)) != (found.empty() ? 0 : found.front()))
      return "its first of a key";
    if (collection.contains(key) == found.empty()) return "what it contains";
  }
  return {};
}

}  // namespace

void Pairing::add(const ModelElement& element, Kind kind) {
  ids_.emplace(element.impl(), next());
  ofKind_[static_cast<std::size_t>(kind)].push_back(next());
  elements_.push_back({element, kind});
}

Id Pairing::idOf(const ModelElement& element) const {
  if (!element) return 0;
  const auto found = ids_.find(element.impl());
  return found == ids_.end() ? -1 : found->second;
}

Content Pairing::contentOf(const Value& value) const {
  if (value.is<std::u16string>()) return value.as<std::u16string>();
  if (value.is<bool>()) return long{value.as<bool>()};
  if (value.is<ChangeType>()) return static_cast<long>(value.as<ChangeType>());
  if (value.is<AdapterType>()) return static_cast<long>(value.as<AdapterType>());
  if (value.is<Texts>()) return value.as<Texts>();
  if (value.is<std::vector<ModelElement>>()) return ids(*this, value.as<std::vector<ModelElement>>());
  if (value.is<ModelElement>()) {
    const Id id = idOf(value.as<ModelElement>());
    return id == 0 ? std::vector<Id>() : std::vector<Id>{id};
  }
  using Address = const void*;
  if (value.is<Model>()) return Address{value.as<Model>().impl()};
  if (value.is<std::shared_ptr<CPPAdapterV2>>()) {
    return Address{value.as<std::shared_ptr<CPPAdapterV2>>().get()};
  }
  return Address{value.as<boost::shared_ptr<inWorkSpace_tag>>().get()};
}

Id Pairing::bearerOf(const boost::uuids::uuid& uuid, const Twin& twin) const {
  Id bearer = 0;
  for (const auto& [id, borne] : identities_) {
    if (borne != uuid || !twin.contains(id)) continue;
    if (!twin.at(id).isProxy) return id;
    bearer = id;
  }
  return bearer;
}

std::string Pairing::difference(const Model& model, const Twin& twin) const {
  const std::vector<ModelElement> elements = model.impl()->elements();
  std::vector<Id> expected;
  for (const auto& [id, element] : twin.elements()) expected.push_back(id);
  if (ids(*this, elements) != expected) {
    return "there are " + written(ids(*this, elements)) + " and not " + written(expected);
  }
  for (const auto& [id, element] : twin.elements()) {
    const ModelElement& handle = (*this)[id];
    if (handle.isProxy() != element.isProxy) return nameOf(id) + " is a proxy, or none";
    if (idOf(handle.container()) != element.container) {
      return nameOf(id) + " is in " + nameOf(idOf(handle.container())) + " and not in " +
             nameOf(element.container);
    }
    for (const Property& property : descriptionsOf(element.kind)) {
      const Content content = contentOf(handle.impl()->getPropertyValue(property));
      const Content& wanted = element.value(property.getIndex());
      if (content != wanted) {
        return nameOf(id) + "." + lx::text::toUtf8(property.getName()) + " is " + written(content) +
               " and not " + written(wanted);
      }
    }
  }
  return {};
}

std::string Pairing::closeDifference(const Model& model, const Twin& twin) const {
  if (std::string text = difference(model, twin); !text.empty()) return text;
  if (model.impl()->numberOfElements() != twin.elements().size()) return "the number of elements";
  std::vector<Id> roots;
  for (Id id = 1; id < next(); ++id) {
    if (!twin.contains(id)) {
      if (std::string text = differenceOfGone(id); !text.empty()) return nameOf(id) + " is gone: " + text;
      continue;
    }
    if (!(*this)[id].isAlive()) return nameOf(id) + " is not alive";
    if ((*this)[id].getModel() != model) return nameOf(id) + " has another model";
    if (twin.at(id).container == 0) roots.push_back(id);
    if (std::string text = differenceOfCollections(id, twin); !text.empty()) return nameOf(id) + ": " + text;
  }
  if (ids(*this, model.impl()->roots()) != roots) return "the roots";
  for (const auto& [id, uuid] : identities_) {
    if ((*this)[id].identifier() != uuid) return nameOf(id) + " has another identity";
    // Of several proxies any may be found.
    const Id bearer = bearerOf(uuid, twin), found = idOf(model.impl()->findElement(uuid));
    const bool isProxyToo =
        bearer != 0 && found > 0 && twin.at(bearer).isProxy && twin.contains(found) && twin.at(found).isProxy;
    if (found != bearer && (!isProxyToo || (*this)[found].identifier() != uuid)) {
      return "the identity of " + nameOf(id) + " finds " + nameOf(idOf(model.impl()->findElement(uuid)));
    }
  }
  return {};
}

std::string Pairing::differenceOfGone(Id id) const {
  const ModelElement& handle = (*this)[id];
  if (handle.isAlive()) return "it is alive";
  if (handle.container()) return "it has a container";
  if (handle.getModel()) return "it has a model";
  for (const Property& property : descriptionsOf(kindOf(id))) {
    const Content content = contentOf(handle.impl()->getPropertyValue(property));
    if (content != propertiesOf(kindOf(id))[property.getIndex() - 1].zero) {
      return lx::text::toUtf8(property.getName()) + " is " + written(content);
    }
  }
  return {};
}

std::string Pairing::differenceOfCollections(Id id, const Twin& twin) const {
  const ModelElement& handle = (*this)[id];
  const Twin::Element& element = twin.at(id);
  switch (element.kind) {
    case Kind::Report: {
      const auto& changes = as<ChangeReport>(handle).changes();
      const std::vector<Id>& children = element.children(1);
      if (ids(*this, changes) != children) return "its walk is " + written(ids(*this, changes));
      if (changes.size() != children.size()) return "its size";
      for (std::size_t at = 0; at < children.size(); ++at) {
        if (idOf(changes.at(at)) != children[at] || !changes.contains(changes.at(at))) return "its positions";
      }
      return as<ChangeReport>(handle).hasChanges() == children.empty() ? "whether it has changes" : "";
    }
    case Kind::Variants:
      return differenceOfKeyed(*this, twin, as<ConditionControlChangeReport>(handle).variants(), element, 1);
    case Kind::Container:
      if (as<DataContainer>(handle).conditionControls().values() != std::get<Texts>(element.value(3))) {
        return "its texts";
      }
      return differenceOfKeyed(*this, twin, as<DataContainer>(handle).metaDataCache(), element, 5);
    case Kind::Cache:
      return differenceOfKeyed(*this, twin, as<AdapterCacheV2>(handle).impl()->getCPPCache(), element, 1);
    case Kind::Metadata:
      return as<MetaDataEntry>(handle).hasValue() == element.children(2).empty() ? "whether it has a value"
                                                                                 : "";
    default:
      return {};
  }
}

}  // namespace random_walk
