// When memory runs out in an operation of the broker, nothing of it is left: all operations that keep this
// rule without exception, and a proof that every one is looked at here or in AllocationFailureTest.cpp.

#include <cctype>
#include <functional>
#include <ostream>
#include <set>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/broker/AllocationFailureTest.h"

using namespace nd::data::adapter;
using allocation_failure_test::BrokerAllocationFailure;
using allocation_failure_test::liveAdapters;
using allocation_failure_test::Section;
using allocation_failure_test::Silent;
using allocation_failure_test::Source;
using support::Lines;

namespace {

/// What the operations work with: a registered adapter and one that is not, an opened source, and an error.
/// The texts are too long for short strings, and are there before memory runs out.
struct Things {
  const std::u16string name = Silent().getAdapterName();
  const std::u16string source = Source;
  const std::u16string section = Section;
  const std::u16string qualifier = source + u"::" + section;
  const std::u16string other = u"another source with a name that fits into no short string.test";
  const std::u16string otherQualifier = other + u"::" + section;
  const std::u16string unclaimed = u"a source that no adapter of the registry claims.none";
  const std::u16string extension = u".an extension that fits into no short string";
  const boost::uuids::uuid observer{};
  std::shared_ptr<CPPAdapterV2> adapter;
  AdapterError error;
  lx::base::Model model;
};

struct Row {
  std::string operation;  // class and operation, and after ": " in which situation
  std::size_t failures;   // at least; 0 for an operation that needs no memory
  std::function<void(const Things&)> run;
  bool isRegistered = true;  // an adapter, before the operation
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
  return stream << row.operation;
}

AdapterRegistryV2 registry() {
  return AdapterRegistryV2::getInstance();
}
AdapterCacheV2 cache() {
  return AdapterCacheV2::getInstance();
}

using M = AdapterManagerV2;

std::vector<Row> rows() {
  using T = const Things&;
  return {
      {"AdapterManagerV2.registerCPPAdapter", 4U, [](T it) { M::registerCPPAdapter(it.adapter); }, false},
      {"AdapterManagerV2.registerCPPAdapter: taken", 1U, [](T it) { M::registerCPPAdapter(it.adapter); }},
      {"AdapterManagerV2.unregisterAdapterByName", 0U, [](T it) { M::unregisterAdapterByName(it.name); }},
      {"AdapterManagerV2.isExtensionRegistered", 1U, [](T it) { M::isExtensionRegistered(it.extension); }},
      {"AdapterManagerV2.getAllRegisteredAdapterNames", 3U, [](T) { M::getAllRegisteredAdapterNames(); }},
      {"AdapterManagerV2.getAllOpenedAdapterNamesWithSection", 2U,
       [](T) { M::getAllOpenedAdapterNamesWithSection(); }},
      {"AdapterManagerV2.closeAdapterbyNamesWithSection", 0U,
       [](T it) { M::closeAdapterbyNamesWithSection(it.qualifier); }},
      {"AdapterManagerV2.doesSourceExist", 3U, [](T it) { M::doesSourceExist(it.source); }},
      {"AdapterManagerV2.hasReadingAdapters", 3U, [](T it) { M::hasReadingAdapters(it.source); }},
      {"AdapterManagerV2.hasReadingAdapters: claimed by nobody", 1U,
       [](T it) { M::hasReadingAdapters(it.unclaimed); }},
      {"AdapterManagerV2.hasWritingAdapters", 3U, [](T it) { M::hasWritingAdapters(it.source); }},
      {"AdapterManagerV2.getAdapterConfig", 5U, [](T it) { M::getAdapterConfig(it.source, it.model); }},
      {"AdapterManagerV2.openSource: claimed by nobody", 1U,
       [](T it) { M::openSource(it.unclaimed, it.section, it.observer); }},
      {"AdapterManagerV2.openSource: open already", 5U,
       [](T it) { M::openSource(it.source, it.section, it.observer); }},
      {"AdapterManagerV2.getChecksum", 1U, [](T it) { M::getChecksum(it.source, it.section); }},
      {"AdapterManagerV2.getChecksum: not open", 1U, [](T it) { M::getChecksum(it.other, it.section); }},
      {"AdapterManagerV2.getExternalSources", 1U, [](T it) { M::getExternalSources(it.source, it.section); }},
      {"AdapterManagerV2.getExternalSources: not open", 1U,
       [](T it) { M::getExternalSources(it.other, it.section); }},
      {"AdapterManagerV2.closeSource", 1U, [](T it) { M::closeSource(it.source, it.section, it.observer); }},
      {"AdapterManagerV2.closeSource: not open", 1U,
       [](T it) { M::closeSource(it.other, it.section, it.observer); }},

      {"AdapterRegistryV2.registerCPPAdapter", 3U, [](T it) { registry().registerCPPAdapter(it.adapter); },
       false},
      {"AdapterRegistryV2.unregisterCPPAdapter", 0U, [](T it) { registry().unregisterCPPAdapter(it.name); }},
      {"AdapterRegistryV2.getNewCPPAdapter", 2U, [](T it) { registry().getNewCPPAdapter(it.name); }},
      {"AdapterRegistryV2.getCPPAdapterForStaticUse", 0U,
       [](T it) { registry().getCPPAdapterForStaticUse(it.name); }},
      {"AdapterRegistryV2.getCPPAdapterStaticForSource", 3U,
       [](T it) { registry().getCPPAdapterStaticForSource(it.source); }},
      {"AdapterRegistryV2.getDisplayList", 3U, [](T) { registry().getDisplayList(); }},
      {"AdapterRegistryV2.getAllAdapterNames", 2U, [](T) { registry().getAllAdapterNames(); }},
      {"AdapterRegistryV2.isAdapterRegisteredByName", 0U,
       [](T it) { registry().isAdapterRegisteredByName(it.name); }},
      {"AdapterRegistryV2.isAdapterRegisteredByExtension", 1U,
       [](T it) { registry().isAdapterRegisteredByExtension(it.extension); }},

      {"AdapterCacheV2.getInstance", 0U, [](T) { cache(); }},
      {"AdapterCacheV2.addCPPAdapterToCache", 3U,
       [](T it) { cache().addCPPAdapterToCache(it.adapter, it.otherQualifier); }},
      {"AdapterCacheV2.addCPPAdapterToCache: taken", 0U,
       [](T it) { cache().addCPPAdapterToCache(it.adapter, it.qualifier); }},
      {"AdapterCacheV2.removeCPPAdapterFromCache", 0U,
       [](T it) { cache().removeCPPAdapterFromCache(it.qualifier); }},
      {"AdapterCacheV2.getCPPAdapter", 0U, [](T it) { cache().getCPPAdapter(it.qualifier); }},
      {"AdapterCacheV2.getAllAdapterQualifiers", 2U, [](T) { cache().getAllAdapterQualifiers(); }},

      {"CPPAdapterV2Entry.setName", 1U,
       [](T it) { cache().impl()->getCPPCache().first().setName(it.otherQualifier); }},
      {"AdapterError.getId", 0U, [](T it) { it.error.getId(); }},
      {"AdapterError.getAdapterName", 1U, [](T it) { it.error.getAdapterName(); }},
      {"AdapterError.getSource", 1U, [](T it) { it.error.getSource(); }},
  };
}

class BrokerAllocationFailureOf : public BrokerAllocationFailure, public testing::WithParamInterface<Row> {};

TEST_P(BrokerAllocationFailureOf, AnOperationLeavesNoTraceAndLetsItBeRepeated) {
  const Row& row = GetParam();
  Things things;
  things.adapter = std::make_shared<Silent>();
  const auto prepare = [&] {
    if (row.isRegistered) openOne();
    things.model = model;
    things.error = AdapterError::create(model);
    things.error.setError(AdapterDiagnostic::Unsupported, things.name, things.name, things.source);
  };
  const std::size_t failures = failEachWithoutATrace(prepare, [&] { row.run(things); });
  EXPECT_GE(failures, row.failures);
  EXPECT_EQ(failures == 0, row.failures == 0);
  cache().destroy();
  registry().destroy();
  EXPECT_EQ(things.adapter.use_count(), 1);
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
  std::string name = info.param.operation;
  std::erase_if(name, [](char each) { return std::isalnum(static_cast<unsigned char>(each)) == 0; });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Each, BrokerAllocationFailureOf, testing::ValuesIn(rows()), nameOf);

TEST(BrokerAllocationFailures, AreLookedAtInEachOperationOfTheBrokersClasses) {
  std::set<std::string> lookedAt{// whose failures leave something, or make something that stays
                                 "AdapterManagerV2.openSource",
                                 "AdapterManagerV2.getData",
                                 "AdapterRegistryV2.getInstance",
                                 "AdapterError.setError",
                                 "AdapterError.convertAdapterErrorsToDiagnostic",
                                 "DataContainer.destroyContainer"};
  for (const Row& row : rows()) lookedAt.insert(row.operation.substr(0, row.operation.find(':')));
  std::set<std::string> all;
  for (const lx::base::meta::Class& type :
       {AdapterManagerV2::metaClass(), AdapterRegistryV2::metaClass(), AdapterCacheV2::metaClass(),
        CPPAdapterV2Entry::metaClass(), AdapterError::metaClass(), DataContainer::metaClass()}) {
    for (const lx::base::meta::Operation& operation : type.getOwnOperations())
      all.insert(lx::text::toUtf8(type.getName() + u"." + operation.getName()));
  }
  EXPECT_EQ(lookedAt, all);
}

// Operations that bear it, or leave something

TEST_F(BrokerAllocationFailure, TakesASourceForAbsentThatNobodyClaimsAndWhosePathCanNotBeAsked) {
  const std::u16string source = u"a source that no adapter of the registry claims.none";
  bears = true;
  EXPECT_GE(failEachWithoutATrace(registerOne, [&] { EXPECT_FALSE(M::doesSourceExist(source)); }), 1U);
}

TEST_F(BrokerAllocationFailure, LeavesOfTheErrorOfWhatIsNotOpenAPrefixOfWhatItStates) {
  const auto contents = [](const std::string& more) {
    Lines lines{
        "DataContainer DataCache=[] ConditionalCache=none ConditionControls=[former] DataModel=none "
        "MetaDataCache=[]"};
    if (!more.empty()) lines.push_back("AdapterError " + more);
    return lines;
  };
  const std::vector<Lines> allowed{contents(""),
                                   contents("Diagnostic=0 ErrorMessage='' Adapter='' SourceFile=''"),
                                   contents("Diagnostic=2 ErrorMessage='' Adapter='' SourceFile=''")};
  const std::u16string source = Source;
  const std::u16string section = Section;
  EXPECT_GE(failEach(
                registerOne, [&] { M::getData(source, section, container, u"", model); },
                [&](const Lines&) {
                  EXPECT_THAT(allowed, testing::Contains(support::contentsOf(model)));
                  EXPECT_EQ(liveAdapters, 1U);
                }),
            3U);
}

TEST_F(BrokerAllocationFailure, LeavesAWorkspaceOfAContainerThatIsDestroyedWholeOrEmptiedOrGone) {
  const auto contents = [](const std::string& data, const std::string& conditional) {
    return Lines{"DataContainer DataCache=" + data + " ConditionalCache=" + conditional +
                 " ConditionControls=[former] DataModel=none MetaDataCache=[]"};
  };
  const std::string full = "[gain: 0x0 double = []]";
  const std::vector<Lines> allowed{contents(full, full), contents("[]", full), contents("none", full),
                                   contents("none", "[]")};
  const auto prepare = [&] {
    container.setConditionalCache(inCreateWorkspace(2));
    inAssignInDesiredWS(nullptr, "gain", container.dataCache());
    inAssignInDesiredWS(nullptr, "gain", container.conditionalCache());
  };
  failEach(
      prepare, [&] { container.destroyContainer(); },
      [&](const Lines&) {
        EXPECT_THAT(allowed, testing::Contains(support::contentsOf(model)));
        container.destroyContainer();
        EXPECT_EQ(support::contentsOf(model), contents("none", "none"));
      });
  EXPECT_EQ(support::contentsOf(model), contents("none", "none"));
}

TEST_F(BrokerAllocationFailure, ReleasesAllPrototypesAlsoWhenTheEndOfTheRegistryHasToBeRepeated) {
  EXPECT_GE(failEach(
                registerOne, [] { registry().destroy(); },
                [](const Lines&) {
                  EXPECT_LE(liveAdapters, 1U);
                  registry().destroy();
                  EXPECT_EQ(liveAdapters, 0U);
                }),
            1U);
}

}  // namespace
