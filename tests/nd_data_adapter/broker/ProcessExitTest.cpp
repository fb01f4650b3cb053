// The end of the process with adapters registered and sources open. Each test ends a process of its own,
// whose adapters write what happens to them to the error output.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/text/Convert.h"
#include "tests/support/ProbeAdapter.h"
#include "tests/support/Thrown.h"

using namespace nd::data::adapter;
using support::CallLog;
using support::ProbeAdapter;
using support::ProbeScript;
using testing::ExitedWithCode;

namespace {

/// Notes calls where the parent process sees them.
void tell(const std::string& line) {
  std::fprintf(stderr, "<%s>", line.c_str());
}

class Loud final : public ProbeAdapter {
 public:
  struct Acts {
    std::function<void()> whenCloned{};
    std::function<void()> whenOpened{};
    std::function<void()> whenRead{};
    std::function<void()> whenClosed{};
    std::function<void()> whenEnded{};
  };

  Loud(const std::u16string& name, Acts acts)
      : ProbeAdapter(std::make_shared<CallLog>(), scriptOf(name)), name_(name), acts_(std::move(acts)) {}
  ~Loud() override {
    tell("end " + what());
    if (acts_.whenEnded) acts_.whenEnded();
  }

  CPPAdapterV2* clone() override {
    if (acts_.whenCloned) acts_.whenCloned();
    return new Loud(*this, source_);
  }
  bool open(const std::u16string& source) override {
    source_ = source;
    if (acts_.whenOpened) acts_.whenOpened();
    return true;
  }
  bool getData(const Workspace&, MetaDataCache&, const std::u16string&, AdapterError&) override {
    if (acts_.whenRead) acts_.whenRead();
    return true;
  }
  bool close() override {
    tell("close " + what());
    if (acts_.whenClosed) acts_.whenClosed();
    return true;
  }

 private:
  Loud(const Loud& prototype, std::u16string source)
      : ProbeAdapter(std::make_shared<CallLog>(), scriptOf(prototype.name_)),
        name_(prototype.name_),
        source_(std::move(source)),
        acts_(prototype.acts_) {}

  static ProbeScript scriptOf(const std::u16string& name) {
    ProbeScript script;
    script.name = name;
    script.section = u"s";
    return script;
  }

  std::string what() const { return lx::text::toUtf8(source_.empty() ? name_ : source_); }

  std::u16string name_;
  std::u16string source_;
  Acts acts_;
};

void registerLoud(const std::u16string& name, Loud::Acts acts = {}) {
  if (!AdapterManagerV2::registerCPPAdapter(std::make_shared<Loud>(name, std::move(acts)))) std::_Exit(3);
}

void open(const std::u16string& source) {
  if (!AdapterManagerV2::openSource(source, u"s", {})) std::_Exit(3);
}

/// Made before main begins, so that it ends when all that was made later has ended.
struct AtTheVeryEnd {
  std::function<void()> act;
  ~AtTheVeryEnd() {
    if (act) act();
  }
};
AtTheVeryEnd atTheVeryEnd;

class ProcessExitDeathTest : public testing::Test {
 protected:
  void SetUp() override {
    AdapterCacheV2::getInstance().destroy();
    AdapterRegistryV2::getInstance().destroy();
  }
};

TEST_F(ProcessExitDeathTest, ClosesOpenedSourcesInTheirOrderAndThenReleasesThePrototypes) {
  EXPECT_EXIT(
      {
        registerLoud(u"b");
        registerLoud(u"a");
        open(u"y.test");
        open(u"x.test");
        std::exit(0);
      },
      ExitedWithCode(0), "^<close x.test><end x.test><close y.test><end y.test><end a><end b>$");
}

TEST_F(ProcessExitDeathTest, EndsInOrderWhenAdaptersThrowAsTheyAreClosed) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenClosed = [] { throw std::runtime_error("the source is offline"); }});
        open(u"x.test");
        open(u"y.test");
        std::exit(0);
      },
      ExitedWithCode(0), "^<close x.test><end [xy].test><end [xy].test><end a>$");
}

TEST_F(ProcessExitDeathTest, EndsInOrderWhateverAdaptersThrow) {
  for (const support::Thrown& thrown : support::everyKindOfException()) {
    SCOPED_TRACE(thrown.name);
    EXPECT_EXIT(
        {
          registerLoud(u"a", {.whenClosed = [&] { std::rethrow_exception(thrown.object); }});
          open(u"x.test");
          std::exit(0);
        },
        ExitedWithCode(0), "^<close x.test><end x.test><end a>$");
  }
}

// The end of the process in the middle of a call: what the call holds stays

TEST_F(ProcessExitDeathTest, ClosesTheOpenSourcesWhenAnAdapterEndsTheProcessAsItIsCloned) {
  EXPECT_EXIT(
      {
        static bool isDue = false;
        registerLoud(u"a", {.whenCloned = [] {
                       if (isDue) std::exit(0);
                     }});
        open(u"x.test");
        isDue = true;
        open(u"y.test");
      },
      ExitedWithCode(0), "^<close x.test><end x.test>$");
}

TEST_F(ProcessExitDeathTest, ClosesAnAdapterThatEndsTheProcessAsItIsOpened) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenOpened = [] { std::exit(0); }});
        open(u"x.test");
      },
      ExitedWithCode(0), "^<close x.test>$");
}

TEST_F(ProcessExitDeathTest, ClosesAnAdapterThatEndsTheProcessAsItIsRead) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenRead = [] { std::exit(0); }});
        open(u"x.test");
        open(u"y.test");
        const lx::base::Model model = lx::base::Model::create();
        AdapterManagerV2::getData(u"x.test", u"s", DataContainer::create(model), u"", model);
      },
      ExitedWithCode(0), "^<close x.test><close y.test><end y.test><end a>$");
}

TEST_F(ProcessExitDeathTest, ClosesNoAdapterTwiceWhenOneEndsTheProcessAsItIsClosed) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenClosed = [] { std::exit(0); }});
        open(u"x.test");
        AdapterCacheV2::getInstance().destroy();
      },
      ExitedWithCode(0), "^<close x.test><end a>$");
}

TEST_F(ProcessExitDeathTest, EndsInOrderWhenAnAdapterEndsTheProcessInItsEnd) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenEnded = [] {
                       static bool isFirst = true;
                       if (std::exchange(isFirst, false)) std::exit(0);
                     }});
        open(u"x.test");
        open(u"y.test");
        AdapterManagerV2::closeSource(u"x.test", u"s", {});
      },
      ExitedWithCode(0), "^<end x.test><close y.test><end y.test><end a>$");
}

TEST_F(ProcessExitDeathTest, LeavesOpenWhatKeepsTheModelOfTheCache) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenEnded = [kept = AdapterCacheV2::getInstance().getModel()] {}});
        open(u"x.test");
        std::exit(0);
      },
      ExitedWithCode(0), "^<end a>$");
}

TEST_F(ProcessExitDeathTest, EndsInOrderWhenMainReturnsWithNothingRegistered) {
  EXPECT_EXIT(
      {
        AdapterManagerV2::getAllRegisteredAdapterNames();
        std::exit(0);
      },
      ExitedWithCode(0), "^$");
}

TEST_F(ProcessExitDeathTest, StillHasTheRegistryWhileSourcesAreClosed) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenClosed = [] {
                       for (const std::u16string& name : AdapterManagerV2::getAllRegisteredAdapterNames()) {
                         tell("knows " + lx::text::toUtf8(name));
                       }
                     }});
        open(u"x.test");
        std::exit(0);
      },
      ExitedWithCode(0), "^<close x.test><knows a><end x.test><end a>$");
}

TEST_F(ProcessExitDeathTest, BearsAnAdapterThatClosesAndOpensSourcesAsItIsClosed) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenClosed = [] {
                       static bool isFirst = true;
                       if (!std::exchange(isFirst, false)) return;
                       AdapterManagerV2::closeSource(u"y.test", u"s", {});
                       open(u"z.test");
                     }});
        open(u"x.test");
        open(u"y.test");
        std::exit(0);
      },
      ExitedWithCode(0),
      "^<close x.test>(<end y.test>)?<end x.test>(<end y.test>)?<close z.test><end z.test><end a>$");
}

TEST_F(ProcessExitDeathTest, StillHasTheRegistryForAPrototypeThatAsksForItInItsEnd) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenEnded = [] {
                       const AdapterRegistryV2 registry = AdapterRegistryV2::getInstance();
                       tell(registry.isAlive() ? "alive" : "dead");
                       tell(registry.isAdapterRegisteredByName(u"a") ? "knows a" : "does not know a");
                     }});
        std::exit(0);
      },
      ExitedWithCode(0), "^<end a><alive><knows a>$");
}

TEST_F(ProcessExitDeathTest, ReleasesWhatAPrototypeRegistersInItsEnd) {
  EXPECT_EXIT(
      {
        registerLoud(u"b", {.whenEnded = [] { registerLoud(u"a"); }});
        std::exit(0);
      },
      ExitedWithCode(0), "^<end b><end a>$");
}

TEST_F(ProcessExitDeathTest, KeepsTheRegistryThatIsMadeAnewWhileTheFormerModelEnds) {
  EXPECT_EXIT(
      {
        // No entry of the registry, so that it goes when the registry has gone already.
        CPPAdapterV2Entry::create(AdapterRegistryV2::getInstance().getModel())
            .setAdapter(std::make_shared<Loud>(u"a", Loud::Acts{.whenEnded = [] { registerLoud(u"z"); }}));
        atTheVeryEnd.act = [] {
          for (const std::u16string& name : AdapterManagerV2::getAllRegisteredAdapterNames()) {
            tell("knows " + lx::text::toUtf8(name));
          }
        };
        std::exit(0);
      },
      ExitedWithCode(0), "^<end a><knows z>$");
}

TEST_F(ProcessExitDeathTest, ReleasesThePrototypesOfARegistryThatWasMadeAnew) {
  EXPECT_EXIT(
      {
        registerLoud(u"a");
        open(u"x.test");
        AdapterRegistryV2::getInstance().destroy();
        registerLoud(u"c");
        registerLoud(u"b");
        tell("exit");
        std::exit(0);
      },
      ExitedWithCode(0), "^<end a><exit><close x.test><end x.test><end b><end c>$");
}

TEST_F(ProcessExitDeathTest, ClosesTheSourcesOfACacheThatWasMadeAnew) {
  EXPECT_EXIT(
      {
        registerLoud(u"a");
        open(u"x.test");
        AdapterCacheV2::getInstance().destroy();
        open(u"z.test");
        open(u"y.test");
        tell("exit");
        std::exit(0);
      },
      ExitedWithCode(0),
      "^<close x.test><end x.test><exit><close y.test><end y.test><close z.test><end z.test><end a>$");
}

TEST_F(ProcessExitDeathTest, MakesNewEmptySingletonsForAnAdapterThatAsksWhenTheyAreGone) {
  EXPECT_EXIT(
      {
        registerLoud(u"a", {.whenEnded = [] {
                       const AdapterCacheV2 cache = AdapterCacheV2::getInstance();
                       tell(cache.isAlive() && cache.getAllAdapterQualifiers().empty() ? "an empty cache"
                                                                                       : "no such cache");
                     }});
        open(u"x.test");
        std::exit(0);
      },
      ExitedWithCode(0), "<end a><an empty cache>$");
}

TEST_F(ProcessExitDeathTest, MakesNewEmptySingletonsForWhatEndsLaterStill) {
  EXPECT_EXIT(
      {
        registerLoud(u"a");
        open(u"x.test");
        atTheVeryEnd.act = [] {
          tell(AdapterManagerV2::getAllRegisteredAdapterNames().empty() ? "no adapter" : "an adapter");
          tell(AdapterManagerV2::getAllOpenedAdapterNamesWithSection().empty() ? "nothing open"
                                                                               : "something open");
        };
        std::exit(0);
      },
      ExitedWithCode(0), "<end a><no adapter><nothing open>$");
}

}  // namespace
