// The exact C++ types of operations: hosts and adapters are compiled against them.

#include <type_traits>

#include <boost/uuid/uuid.hpp>

#include "nd_data_adapter/broker/CPPAdapterV2.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/services/Diagnostic.h"

using namespace nd::data::adapter;
using lx::base::Model;

namespace {

using Text = std::u16string;
using Texts = std::vector<Text>;
using Adapter = std::shared_ptr<CPPAdapterV2>;
using Adapters = std::vector<Adapter>;
using Uuid = boost::uuids::uuid;

template <class Wanted, class Given>
bool isStatic(Given) {
  return std::is_same_v<Given, Wanted*>;
}

template <class Class, class Wanted, class Given>
bool isMember(Given) {
  return std::is_same_v<Given, Wanted Class::*>;
}

// The facade

TEST(Signatures, OfTheFacadesOperationsOnAdapters) {
  using Manager = AdapterManagerV2;
  EXPECT_TRUE((isStatic<bool(const Adapter&)>(&Manager::registerCPPAdapter)));
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::unregisterAdapterByName)));
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::isExtensionRegistered)));
  EXPECT_TRUE((isStatic<Texts()>(&Manager::getAllRegisteredAdapterNames)));
  EXPECT_TRUE((isStatic<Texts()>(&Manager::getAllOpenedAdapterNamesWithSection)));
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::closeAdapterbyNamesWithSection)));
}

TEST(Signatures, OfTheFacadesOperationsOnSources) {
  using Manager = AdapterManagerV2;
  using GetData = AdapterError(const Text&, const Text&, const DataContainer&, const Text&, const Model&);
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::doesSourceExist)));
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::hasReadingAdapters)));
  EXPECT_TRUE((isStatic<bool(const Text&)>(&Manager::hasWritingAdapters)));
  EXPECT_TRUE((isStatic<std::vector<AdapterConfig>(const Text&, const Model&)>(&Manager::getAdapterConfig)));
  EXPECT_TRUE((isStatic<bool(const Text&, const Text&, const Uuid&)>(&Manager::openSource)));
  EXPECT_TRUE((isStatic<Text(const Text&, const Text&)>(&Manager::getChecksum)));
  EXPECT_TRUE((isStatic<Texts(const Text&, const Text&)>(&Manager::getExternalSources)));
  EXPECT_TRUE((isStatic<GetData>(&Manager::getData)));
  EXPECT_TRUE((isStatic<bool(const Text&, const Text&, const Uuid&)>(&Manager::closeSource)));
}

// The registry and the cache

TEST(Signatures, OfTheRegistrysElement) {
  using Impl = AdapterRegistryV2::Impl;
  EXPECT_TRUE((isMember<Impl, bool(const Adapter&)>(&Impl::registerCPPAdapter)));
  EXPECT_TRUE((isMember<Impl, bool(const Text&)>(&Impl::unregisterCPPAdapter)));
  EXPECT_TRUE((isMember<Impl, Adapter(const Text&)>(&Impl::getNewCPPAdapter)));
  EXPECT_TRUE((isMember<Impl, Adapter(const Text&)>(&Impl::getCPPAdapterForStaticUse)));
  EXPECT_TRUE((isMember<Impl, Adapters(const Text&)>(&Impl::getCPPAdapterStaticForSource)));
  EXPECT_TRUE((isMember<Impl, Texts()>(&Impl::getDisplayList)));
  EXPECT_TRUE((isMember<Impl, Texts()>(&Impl::getAllAdapterNames)));
  EXPECT_TRUE((isMember<Impl, bool(const Text&)>(&Impl::isAdapterRegisteredByName)));
  EXPECT_TRUE((isMember<Impl, bool(const Text&)>(&Impl::isAdapterRegisteredByExtension)));
}

TEST(Signatures, OfTheRegistrysHandleAreConst) {
  using Handle = AdapterRegistryV2;
  EXPECT_TRUE((isMember<Handle, bool(const Adapter&) const>(&Handle::registerCPPAdapter)));
  EXPECT_TRUE((isMember<Handle, bool(const Text&) const>(&Handle::unregisterCPPAdapter)));
  EXPECT_TRUE((isMember<Handle, Adapter(const Text&) const>(&Handle::getNewCPPAdapter)));
  EXPECT_TRUE((isMember<Handle, Adapter(const Text&) const>(&Handle::getCPPAdapterForStaticUse)));
  EXPECT_TRUE((isMember<Handle, Adapters(const Text&) const>(&Handle::getCPPAdapterStaticForSource)));
  EXPECT_TRUE((isMember<Handle, Texts() const>(&Handle::getDisplayList)));
  EXPECT_TRUE((isMember<Handle, Texts() const>(&Handle::getAllAdapterNames)));
  EXPECT_TRUE((isMember<Handle, bool(const Text&) const>(&Handle::isAdapterRegisteredByName)));
  EXPECT_TRUE((isMember<Handle, bool(const Text&) const>(&Handle::isAdapterRegisteredByExtension)));
  EXPECT_TRUE((isStatic<AdapterRegistryV2()>(&Handle::getInstance)));
}

TEST(Signatures, OfTheCachesElement) {
  using Impl = AdapterCacheV2::Impl;
  EXPECT_TRUE((isMember<Impl, bool(const Adapter&, const Text&)>(&Impl::addCPPAdapterToCache)));
  EXPECT_TRUE((isMember<Impl, bool(const Text&)>(&Impl::removeCPPAdapterFromCache)));
  EXPECT_TRUE((isMember<Impl, Adapter(const Text&)>(&Impl::getCPPAdapter)));
  EXPECT_TRUE((isMember<Impl, Texts()>(&Impl::getAllAdapterQualifiers)));
}

TEST(Signatures, OfTheCachesHandleAreConst) {
  using Handle = AdapterCacheV2;
  EXPECT_TRUE((isMember<Handle, bool(const Adapter&, const Text&) const>(&Handle::addCPPAdapterToCache)));
  EXPECT_TRUE((isMember<Handle, bool(const Text&) const>(&Handle::removeCPPAdapterFromCache)));
  EXPECT_TRUE((isMember<Handle, Adapter(const Text&) const>(&Handle::getCPPAdapter)));
  EXPECT_TRUE((isMember<Handle, Texts() const>(&Handle::getAllAdapterQualifiers)));
  EXPECT_TRUE((isStatic<AdapterCacheV2()>(&Handle::getInstance)));
}

// Entries and errors

TEST(Signatures, OfAnEntryAndOfAnErrorsElement) {
  using Error = AdapterError::Impl;
  using SetError = void(const AdapterDiagnostic&, const Text&, const Text&, const Text&);
  EXPECT_TRUE((isMember<CPPAdapterV2Entry::Impl, void(const Text&)>(&CPPAdapterV2Entry::Impl::setName)));
  EXPECT_TRUE((isMember<Error, SetError>(&Error::setError)));
  EXPECT_TRUE((isMember<Error, AdapterDiagnostic()>(&Error::getId)));
  EXPECT_TRUE((isMember<Error, Text()>(&Error::getAdapterName)));
  EXPECT_TRUE((isMember<Error, Text()>(&Error::getSource)));
}

TEST(Signatures, OfAnEntrysHandleAreConst) {
  using Handle = CPPAdapterV2Entry;
  EXPECT_TRUE((isMember<Handle, Text() const>(&Handle::adapterName)));
  EXPECT_TRUE((isMember<Handle, Adapter() const>(&Handle::adapter)));
  EXPECT_TRUE((isMember<Handle, void(const Text&) const>(&Handle::setName)));
  EXPECT_TRUE((isMember<Handle, void(const Adapter&) const>(&Handle::setAdapter)));
  EXPECT_TRUE((isMember<Handle::Impl, void(const Adapter&)>(&Handle::Impl::setAdapter)));
}

TEST(Signatures, OfAConfiguration) {
  using Handle = AdapterConfig;
  EXPECT_TRUE((isMember<Handle, Text() const>(&Handle::adapterName)));
  EXPECT_TRUE((isMember<Handle, Text() const>(&Handle::section)));
  EXPECT_TRUE((isMember<Handle, AdapterType() const>(&Handle::adapterType)));
  EXPECT_TRUE((isMember<Handle, bool() const>(&Handle::supportsReading)));
  EXPECT_TRUE((isMember<Handle, bool() const>(&Handle::supportsWriting)));
  EXPECT_TRUE((isMember<Handle, void(const Text&) const>(&Handle::setAdapterName)));
  EXPECT_TRUE((isMember<Handle, void(const Text&) const>(&Handle::setSection)));
  EXPECT_TRUE((isMember<Handle, void(const AdapterType&) const>(&Handle::setAdapterType)));
  EXPECT_TRUE((isMember<Handle, void(const bool&) const>(&Handle::setSupportsReading)));
  EXPECT_TRUE((isMember<Handle, void(const bool&) const>(&Handle::setSupportsWriting)));
}

TEST(Signatures, OfAConfigurationsElement) {
  using Impl = AdapterConfig::Impl;
  EXPECT_TRUE((isMember<Impl, void(const Text&)>(&Impl::setAdapterName)));
  EXPECT_TRUE((isMember<Impl, void(const Text&)>(&Impl::setSection)));
  EXPECT_TRUE((isMember<Impl, void(const AdapterType&)>(&Impl::setAdapterType)));
  EXPECT_TRUE((isMember<Impl, void(const bool&)>(&Impl::setSupportsReading)));
  EXPECT_TRUE((isMember<Impl, void(const bool&)>(&Impl::setSupportsWriting)));
}

// Containers and metadata

using Workspace = boost::shared_ptr<inWorkSpace_tag>;
using Controls = lx::base::PrimitiveSequence<Text>;
using MetaData = lx::base::ElementMultimap<Text, MetaDataEntry>;

TEST(Signatures, OfAContainer) {
  using Handle = DataContainer;
  using CreateInto = MetaDataEntry(const MetaDataEntry::BuilderWrapper&, const Uuid&) const;
  EXPECT_TRUE((isMember<Handle, Workspace() const>(&Handle::dataCache)));
  EXPECT_TRUE((isMember<Handle, Workspace() const>(&Handle::conditionalCache)));
  EXPECT_TRUE((isMember<Handle, const Controls&() const>(&Handle::conditionControls)));
  EXPECT_TRUE((isMember<Handle, Model() const>(&Handle::dataModel)));
  EXPECT_TRUE((isMember<Handle, const MetaData&() const>(&Handle::metaDataCache)));
  EXPECT_TRUE((isMember<Handle, void(const Workspace&) const>(&Handle::setDataCache)));
  EXPECT_TRUE((isMember<Handle, void(const Workspace&) const>(&Handle::setConditionalCache)));
  EXPECT_TRUE((isMember<Handle, Controls&() const>(&Handle::getConditionControlsMutable)));
  EXPECT_TRUE((isMember<Handle, void(const Model&) const>(&Handle::setDataModel)));
  EXPECT_TRUE((isMember<Handle, MetaData&() const>(&Handle::getMetaDataCacheMutable)));
  EXPECT_TRUE((isMember<Handle, CreateInto>(&Handle::createIntoMetaDataCache)));
  EXPECT_TRUE((isMember<Handle, void() const>(&Handle::destroyContainer)));
  EXPECT_TRUE((isMember<Handle::Impl, void()>(&Handle::Impl::destroyContainer)));
}

TEST(Signatures, OfMetadata) {
  using Handle = MetaDataEntry;
  using lx::base::ModelElement;
  using CreateInto = ModelElement(const ModelElement::BuilderWrapper&, const Uuid&) const;
  EXPECT_TRUE((isMember<Handle, Text() const>(&Handle::name)));
  EXPECT_TRUE((isMember<Handle, ModelElement() const>(&Handle::value)));
  EXPECT_TRUE((isMember<Handle, bool() const>(&Handle::hasValue)));
  EXPECT_TRUE((isMember<Handle, void(const Text&) const>(&Handle::setName)));
  EXPECT_TRUE((isMember<Handle, void(const ModelElement&) const>(&Handle::setValue)));
  EXPECT_TRUE((isMember<Handle, CreateInto>(&Handle::createIntoValue)));
}

TEST(Signatures, OfMetadatasElement) {
  using Impl = MetaDataEntry::Impl;
  using lx::base::ModelElement;
  EXPECT_TRUE((isMember<Impl, Text() const>(&Impl::getName)));
  EXPECT_TRUE((isMember<Impl, ModelElement() const>(&Impl::getValue)));
  EXPECT_TRUE((isMember<Impl, bool() const>(&Impl::hasValue)));
  EXPECT_TRUE((isMember<Impl, void(const Text&)>(&Impl::setName)));
  EXPECT_TRUE((isMember<Impl, void(const ModelElement&)>(&Impl::setValue)));
}

TEST(Signatures, OfTheConversionOfErrors) {
  using Convert = ndsvDiagnosticImpl*(const std::vector<AdapterError>&);
  EXPECT_TRUE((isStatic<Convert>(&AdapterError::convertAdapterErrorsToDiagnostic)));
}

// What is not public

template <class T>
concept ReadsTheRegistrysMap = requires(const T& object) {
  object.cPPRegistry();
};
template <class T>
concept AsksForTheRegistrysMap = requires(const T& object) {
  object.hasCPPRegistry();
};
template <class T>
concept ChangesTheRegistrysMap = requires(T& object) {
  object.getCPPRegistryMutable();
};
template <class T>
concept MakesEntriesOfTheRegistry = requires(T& object, const CPPAdapterV2Entry::BuilderWrapper& builder) {
  object.createIntoCPPRegistry(builder);
};

/// A handle that makes public what is protected.
struct OpenRegistry : AdapterRegistryV2 {
  using AdapterRegistryV2::cPPRegistry;
};

TEST(Handles, OfTheRegistryHideItsMap) {
  EXPECT_FALSE(ReadsTheRegistrysMap<AdapterRegistryV2>);
  EXPECT_FALSE(AsksForTheRegistrysMap<AdapterRegistryV2>);
  EXPECT_FALSE(ChangesTheRegistrysMap<AdapterRegistryV2>);
  EXPECT_FALSE(MakesEntriesOfTheRegistry<AdapterRegistryV2>);
  EXPECT_TRUE(ReadsTheRegistrysMap<OpenRegistry>) << "it is there for subclasses";
  EXPECT_TRUE(AsksForTheRegistrysMap<AdapterRegistryV2::Impl>);
  EXPECT_TRUE(ChangesTheRegistrysMap<AdapterRegistryV2::Impl>);
  EXPECT_TRUE(MakesEntriesOfTheRegistry<AdapterRegistryV2::Impl>);
}

template <class T>
concept ReadsTheCachesMap = requires(const T& object) {
  object.cPPCache();
};
template <class T>
concept AsksForTheCachesMap = requires(const T& object) {
  object.hasCPPCache();
};
template <class T>
concept ChangesTheCachesMap = requires(T& object) {
  object.getCPPCacheMutable();
};
template <class T>
concept MakesEntriesOfTheCache = requires(T& object, const CPPAdapterV2Entry::BuilderWrapper& builder) {
  object.createIntoCPPCache(builder);
};
template <class T>
concept GivesTheCachesMap = requires(const T& object) {
  object.getCPPCache();
};

/// A handle that makes public what is protected.
struct OpenCache : AdapterCacheV2 {
  using AdapterCacheV2::cPPCache;
};

TEST(Handles, OfTheCacheHideItsMap) {
  EXPECT_FALSE(ReadsTheCachesMap<AdapterCacheV2>);
  EXPECT_FALSE(AsksForTheCachesMap<AdapterCacheV2>);
  EXPECT_FALSE(ChangesTheCachesMap<AdapterCacheV2>);
  EXPECT_FALSE(MakesEntriesOfTheCache<AdapterCacheV2>);
  EXPECT_FALSE(GivesTheCachesMap<AdapterCacheV2>);
  EXPECT_TRUE(ReadsTheCachesMap<OpenCache>) << "it is there for subclasses";
  EXPECT_TRUE(AsksForTheCachesMap<AdapterCacheV2::Impl>);
  EXPECT_TRUE(ChangesTheCachesMap<AdapterCacheV2::Impl>);
  EXPECT_TRUE(MakesEntriesOfTheCache<AdapterCacheV2::Impl>);
  EXPECT_TRUE(GivesTheCachesMap<AdapterCacheV2::Impl>);
}

template <class T>
concept SetsTheAdapterName = requires(T& object) {
  object.setAdapterName(u"");
};
template <class T>
concept SetsTheName = requires(T& object) {
  object.setName(u"");
};

TEST(Handles, OfAnEntryHaveNoSetterOfItsReadOnlyName) {
  EXPECT_FALSE(SetsTheAdapterName<CPPAdapterV2Entry>);
  EXPECT_FALSE(SetsTheAdapterName<CPPAdapterV2Entry::Impl>);
  EXPECT_TRUE(SetsTheName<CPPAdapterV2Entry>);
  EXPECT_TRUE(SetsTheName<CPPAdapterV2Entry::Impl>);
  EXPECT_TRUE(SetsTheAdapterName<AdapterConfig>) << "a property that can be written has one";
}

template <class T>
concept ReadsTheDiagnostic = requires(const T& object) {
  object.diagnostic();
};
template <class T>
concept ReadsTheAdapter = requires(const T& object) {
  object.adapter();
};
template <class T>
concept ReadsTheSourceFile = requires(const T& object) {
  object.sourceFile();
};
template <class T>
concept SetsTheDiagnostic = requires(T& object) {
  object.setDiagnostic(AdapterDiagnostic::HardError);
};
template <class T>
concept SetsTheAdapter = requires(T& object) {
  object.setAdapter(u"");
};
template <class T>
concept SetsTheSourceFile = requires(T& object) {
  object.setSourceFile(u"");
};

/// A handle that makes public what is protected.
struct OpenError : AdapterError {
  using AdapterError::adapter;
  using AdapterError::diagnostic;
  using AdapterError::sourceFile;
};

TEST(Handles, OfAnErrorHideWhatSetErrorSetsButForTheMessage) {
  EXPECT_FALSE(ReadsTheDiagnostic<AdapterError>);
  EXPECT_FALSE(ReadsTheAdapter<AdapterError>);
  EXPECT_FALSE(ReadsTheSourceFile<AdapterError>);
  EXPECT_FALSE(SetsTheDiagnostic<AdapterError>);
  EXPECT_FALSE(SetsTheAdapter<AdapterError>);
  EXPECT_FALSE(SetsTheSourceFile<AdapterError>);
  EXPECT_TRUE(ReadsTheDiagnostic<OpenError> && ReadsTheAdapter<OpenError> && ReadsTheSourceFile<OpenError>)
      << "they are there for subclasses";
  EXPECT_TRUE(SetsTheDiagnostic<AdapterError::Impl>);
  EXPECT_TRUE(SetsTheAdapter<AdapterError::Impl>);
  EXPECT_TRUE(SetsTheSourceFile<AdapterError::Impl>);
}

}  // namespace
