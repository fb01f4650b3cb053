// What any thread may do: look types up, keep handles to them, read them. Also run under the thread
// sanitizer.

#include <atomic>
#include <thread>

#include "platform/foundation/ModelImpl.h"
#include "platform/foundation/meta/AbstractMetaPackage.h"
#include "platform/foundation/meta/MetaRegistry.h"
#include "platform/foundation/meta/StandardTypes.h"
#include "tests/support/model/MetaPackageProbe.h"
#include "tests/support/model/Robot.h"
#include "tests/support/model/bodies.h"

using namespace lx::base;
using namespace lx::base::meta;
using probe::inner::Robot;

namespace {

constexpr int Threads = 4;
constexpr int Rounds = 300;

/// Runs a step by several threads at once, so often each; gives the number of the rounds that it called good.
template <class Step>
int goodRounds(Step step) {
  std::atomic<bool> started = false;
  std::atomic<int> good = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < Threads; ++number) {
    threads.emplace_back([&, number] {
      while (!started) std::this_thread::yield();
      for (int round = 0; round < Rounds; ++round) {
        if (step(number, round)) ++good;
      }
    });
  }
  started = true;
  for (std::thread& thread : threads) thread.join();
  return good;
}

TEST(Threads, LookTypesUpByNameAndKeepTheirHandles) {
  const MetaRegistry& registry = MetaRegistry::getInstance();
  std::vector<std::vector<Type>> kept(Threads);
  EXPECT_EQ(goodRounds([&](int number, int) {
              const Type found = registry.getType(u"String");
              kept[static_cast<std::size_t>(number)].push_back(found);
              return found.getQualifiedName() == u"lx.base.String" && !registry.findType(u"Nothing") &&
                     registry.getPrimitiveType(u"StdString") == StandardTypes::stdString();
            }),
            Threads * Rounds);
}

TEST(Threads, ReadOneClassAtOnce) {
  EXPECT_EQ(goodRounds([](int, int) {
              const Class robot = Robot::metaClass();
              const std::vector<Property> properties = robot.getProperties();
              return properties.size() == 10 && robot.isSubclassOf(probe::Thing::metaClass()) &&
                     robot.property(u"name").getType() == StandardTypes::string() &&
                     robot.propertyByIndex(10).getKey() == u"number" &&
                     robot.getMetaClass().getName() == u"Class";
            }),
            Threads * Rounds);
}

TEST(Threads, AskForSerializersAndNativeTypes) {
  probe::MetaPackageProbe::getInstance();
  EXPECT_EQ(goodRounds([](int, int) {
              const auto serializer = PropertySerializerRegistry::getInstance().find(u"probe.Colour");
              return serializer->serializeValue(Value(probe::Colour::Green)) == u"Green" &&
                     MetaRegistry::getInstance().isCorrectTypeForTypeId(probe::Thing::metaClass(),
                                                                        typeid(Robot));
            }),
            Threads * Rounds);
}

TEST(Threads, UseModelsOfTheirOwn) {
  EXPECT_EQ(goodRounds([](int number, int round) {
              const Model model = Model::create();
              const Robot robot = Robot::Builder(model)
                                      .setName(u"robot")
                                      .setNumber(number)
                                      .setParts(probe::Thing::Builder().setName(u"arm"))
                                      .create();
              robot.setPropertyValue(u"number", Value(std::int32_t{round}));
              return robot.number() == round && robot.parts().contains(u"arm") &&
                     robot.identifier() != model.identifier() &&
                     robot.getPropertyValue(u"name") == Value(u"robot");
            }),
            Threads * Rounds);
}

/// Makes packages and types outside of any metamodel.
class Maker : public AbstractMetaPackage {
 public:
  using AbstractMetaPackage::addType;
  using AbstractMetaPackage::createPackage;
  using AbstractMetaPackage::createPrimitiveType;
};

TEST(Threads, LookTypesUpWhileOthersAreRegisteredAndTakenAway) {
  MetaRegistry& registry = MetaRegistry::getInstance();
  EXPECT_EQ(goodRounds([&](int number, int) {
              if (number != 0) return registry.getType(u"String") == StandardTypes::string();
              {
                MetaRegistry::Update update(registry);
                const Package package = Maker::createPackage(u"passing", u"/passing");
                const Type type =
                    Maker::createPrimitiveType("4c1d7a90-5f0e-3b1a-8c55-2f8f10a7fffe", u"Part", u"Part");
                Maker::addType(package, type);
                registry.registerTypeNames(type, {u"passing.Part"});
                registry.registerRootPackage(package);
                update.commit();
              }
              const bool wasThere = static_cast<bool>(registry.findType(u"passing.Part"));
              MetaRegistry::Update update(registry);
              registry.unregisterRootPackage(u"passing");
              update.commit();
              return wasThere && !registry.findType(u"passing.Part");
            }),
            Threads * Rounds);
}

TEST(Threads, AskForSerializersWhileUpdatesAreAbandoned) {
  MetaRegistry& registry = MetaRegistry::getInstance();
  const auto& serializers = lx::base::meta::PropertySerializerRegistry::getInstance();
  EXPECT_EQ(goodRounds([&](int number, int) {
              if (number != 0) return serializers.find(u"lx.base.String") != nullptr;
              const MetaRegistry::Update abandoned(registry);
              return true;
            }),
            Threads * Rounds);
}

}  // namespace
