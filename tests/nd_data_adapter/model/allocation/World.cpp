#include "tests/nd_data_adapter/model/allocation/World.h"

#include <map>
#include <sstream>

#include "nd_data_adapter/builtin_adapters/TestV2Adapter.h"
#include "platform/host/Workspace.h"

namespace allocation_test {

namespace {

using Numbers = std::map<const ModelElement::Impl*, std::size_t>;

std::string numberOf(const Numbers& numbers, const ModelElement& element) {
  const auto found = numbers.find(element.impl());
  return found == numbers.end() ? "none" : "#" + std::to_string(found->second);
}

std::string contentOf(const Numbers& numbers, const Value& value) {
  if (value.is<ModelElement>()) return numberOf(numbers, value.as<ModelElement>());
  if (value.is<std::vector<ModelElement>>()) {
    std::string text;
    for (const ModelElement& each : value.as<std::vector<ModelElement>>())
      text += numberOf(numbers, each) + " ";
    return "[" + text + "]";
  }
  if (value.is<Model>()) return value.as<Model>() ? "a model" : "no model";
  if (value.is<std::shared_ptr<CPPAdapterV2>>()) {
    return value.as<std::shared_ptr<CPPAdapterV2>>() ? "an adapter" : "no adapter";
  }
  if (value.is<boost::shared_ptr<inWorkSpace_tag>>()) {
    return value.as<boost::shared_ptr<inWorkSpace_tag>>() ? "a workspace" : "no workspace";
  }
  return written(value);
}

/// Find the elements of a keyed collection by their keys and by themselves.
template <class Collection>
void writeFound(std::ostream& out, const Numbers& numbers, const Collection& collection) {
  for (const auto& key : collection.keys()) {
    out << lx::text::toUtf8(key) << ':';
    for (const auto& element : collection.findAll(key)) {
      out << numberOf(numbers, element) << (collection.contains(element) ? ' ' : '!');
    }
  }
  out << '\n';
}

CPPAdapterV2Entry namedEntry(const Model& model, const std::u16string& name) {
  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model);
  entry.setName(name);
  return entry;
}

}  // namespace

World::World(bool isObserved_) : isObserved(isObserved_) {
  workspace = inCreateWorkspace(1);
  adapter = TestV2Adapter::make();
  report = reportOf(model, {u"a", Long, u"c"});
  other = reportOf(model, {u"o"});
  variants = variantsOf(model, {u"b", u"a", u"b"});
  container = containerOf(model, {u"n", u"m"});
  container.getConditionControlsMutable().assign({u"c", Long});
  container.metaDataCache().first().setValue(reportOf(model, {u"deep", Long}));
  container.setDataCache(workspace);
  cache = AdapterCacheV2::create(model);
  for (const char16_t* const name : {u"x", u"y"})
    cache.impl()->getCPPCacheMutable().add(namedEntry(model, name));
  tuple = ChangeTuple::create(model);
  gone = ChangeTuple::create(model);
  gone.destroy();
  proxy = ChangeTuple::create(model);
  proxy.impl()->convertToProxy();
  entry = ConditionControlChangeEntry::create(model);
  metadata = MetaDataEntry::create(model);
  held = namedEntry(model, u"h");
  config = AdapterConfig::create(model);
  error = AdapterError::create(model);
  ChangeTuple::create(second);
  if (isObserved) model.impl()->addObserver(reader);
}

World::~World() {
  if (isObserved) model.impl()->removeObserver(reader);
}

void World::touch() const {
  report.changes().at(0).setId(u"touched");
  report.createIntoChanges(ChangeTuple::Builder().setId(u"d"));
  other.changes().at(0).destroy();
  variants.variants().first().setName(u"z");
  container.metaDataCache().first().setName(u"z");
  container.getConditionControlsMutable().add(u"e");
  cache.impl()->getCPPCacheMutable().first().setName(u"z");
  tuple.setId(u"touched");
  entry.setPreviousValue(u"touched");
  metadata.setName(u"touched");
  held.setAdapter(adapter);
  config.setSection(u"touched");
  error.setErrorMessage(u"touched");
}

std::string World::state() const {
  Numbers numbers;
  for (const ModelElement& element : model.impl()->elements()) {
    numbers.emplace(element.impl(), numbers.size());
  }
  std::ostringstream out;
  for (const ModelElement& element : model.impl()->elements()) {
    out << numberOf(numbers, element) << (element.isProxy() ? " proxy " : " ")
        << lx::text::toUtf8(element.getMetaClass().getName()) << " in "
        << numberOf(numbers, element.container());
    for (const lx::base::meta::Property& property : element.getMetaClass().getProperties()) {
      out << ' ' << lx::text::toUtf8(property.getName()) << '='
          << contentOf(numbers, element.impl()->getPropertyValue(property));
    }
    out << '\n';
  }
  writeFound(out, numbers, variants.variants());
  writeFound(out, numbers, container.metaDataCache());
  writeFound(out, numbers, cache.impl()->getCPPCache());
  for (const ModelElement& each :
       {ModelElement(report), ModelElement(other), ModelElement(variants), ModelElement(container),
        ModelElement(cache), ModelElement(tuple), ModelElement(gone), ModelElement(proxy),
        ModelElement(entry), ModelElement(metadata), ModelElement(held)}) {
    out << numberOf(numbers, each) << (each.isAlive() ? " lives " : " is gone ");
  }
  out << "the second model " << (second.isAlive() ? "lives with " : "is gone with ")
      << second.impl()->numberOfElements();
  return out.str();
}

}  // namespace allocation_test
