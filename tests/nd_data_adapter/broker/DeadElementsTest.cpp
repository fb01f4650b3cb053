// Operations that are called where no element is: on one that is gone, past its handle and through it, and
// through a null handle. Each raises and names itself.

#include <functional>
#include <set>
#include <utility>

#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/text/Convert.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::text::toUtf8;
using support::Lines;
using support::raisedBy;

namespace {

using Adapter = std::shared_ptr<CPPAdapterV2>;

/// An operation of a class, with a call that an element and a handle take alike.
template <class Handle>
struct Operation {
  template <class Call>
  Operation(std::string theName, const Call& call)
      : name(std::move(theName)), callElement(call), callHandle(call) {}

  std::string name;
  std::function<void(typename Handle::Impl&)> callElement;
  std::function<void(const Handle&)> callHandle;
};

/// Lists the operations of a class. The adapter is for those that take one.
template <class Handle>
std::vector<Operation<Handle>> operationsOf(const Adapter& adapter);

template <>
std::vector<Operation<AdapterRegistryV2>> operationsOf(const Adapter& adapter) {
  return {{"registerCPPAdapter", [adapter](auto& it) { it.registerCPPAdapter(adapter); }},
          {"registerCPPAdapter", [](auto& it) { it.registerCPPAdapter(nullptr); }},
          {"unregisterCPPAdapter", [](auto& it) { it.unregisterCPPAdapter(u"a"); }},
          {"getNewCPPAdapter", [](auto& it) { it.getNewCPPAdapter(u"a"); }},
          {"getCPPAdapterForStaticUse", [](auto& it) { it.getCPPAdapterForStaticUse(u"a"); }},
          {"getCPPAdapterStaticForSource", [](auto& it) { it.getCPPAdapterStaticForSource(u"x.test"); }},
          {"getDisplayList", [](auto& it) { it.getDisplayList(); }},
          {"getAllAdapterNames", [](auto& it) { it.getAllAdapterNames(); }},
          {"isAdapterRegisteredByName", [](auto& it) { it.isAdapterRegisteredByName(u"a"); }},
          {"isAdapterRegisteredByExtension", [](auto& it) { it.isAdapterRegisteredByExtension(u".test"); }}};
}

template <>
std::vector<Operation<AdapterCacheV2>> operationsOf(const Adapter& adapter) {
  return {{"addCPPAdapterToCache", [adapter](auto& it) { it.addCPPAdapterToCache(adapter, u"p"); }},
          {"addCPPAdapterToCache", [](auto& it) { it.addCPPAdapterToCache(nullptr, u"p"); }},
          {"removeCPPAdapterFromCache", [](auto& it) { it.removeCPPAdapterFromCache(u"q"); }},
          {"getCPPAdapter", [](auto& it) { it.getCPPAdapter(u"q"); }},
          {"getAllAdapterQualifiers", [](auto& it) { it.getAllAdapterQualifiers(); }}};
}

template <>
std::vector<Operation<CPPAdapterV2Entry>> operationsOf(const Adapter&) {
  return {{"setName", [](auto& it) { it.setName(u"q"); }}};
}

template <>
std::vector<Operation<AdapterError>> operationsOf(const Adapter&) {
  return {{"setError", [](auto& it) { it.setError(AdapterDiagnostic::NoDiagnostic, u"", u"", u""); }},
          {"getId", [](auto& it) { it.getId(); }},
          {"getAdapterName", [](auto& it) { it.getAdapterName(); }},
          {"getSource", [](auto& it) { it.getSource(); }}};
}

template <>
std::vector<Operation<DataContainer>> operationsOf(const Adapter&) {
  return {{"destroyContainer", [](auto& it) { it.destroyContainer(); }}};
}

// What takes an adapter has one when it comes to its end.

void fill(const lx::base::ModelElement&, const Adapter&) {}
void fill(const AdapterRegistryV2& registry, const Adapter& adapter) {
  EXPECT_TRUE(registry.registerCPPAdapter(adapter));
}
void fill(const AdapterCacheV2& cache, const Adapter& adapter) {
  EXPECT_TRUE(cache.addCPPAdapterToCache(adapter, u"q"));
}
void fill(const CPPAdapterV2Entry& entry, const Adapter& adapter) {
  entry.setAdapter(adapter);
}

template <class Handle>
class NoElement : public support::BrokerTest {
 protected:
  /// Makes an element that holds what elements of its class hold.
  Handle make() const {
    const Handle element = Handle::create(model);
    fill(element, probe);
    return element;
  }

  static std::string raisedIn(const std::string& operation) {
    return "InvalidValue(" + toUtf8(Handle::metaClass().getQualifiedName()) + "." + operation + ")";
  }

  /// Expects each operation to raise when it is called on an element that is gone, and to ask no adapter.
  void expectEachToRaisePastItsHandle(const Handle& dead) const {
    ASSERT_FALSE(dead.isAlive());
    calls();
    for (const Operation<Handle>& each : operations)
      EXPECT_EQ(raisedBy([&] { each.callElement(*dead.impl()); }), raisedIn(each.name));
    EXPECT_EQ(calls(), Lines{});
  }

  /// Expects so of each that is called through a handle.
  void expectEachToRaiseThroughAHandle(const Handle& handle) const {
    ASSERT_FALSE(handle.isAlive());
    calls();
    for (const Operation<Handle>& each : operations)
      EXPECT_EQ(raisedBy([&] { each.callHandle(handle); }), raisedIn(each.name));
    EXPECT_EQ(calls(), Lines{});
  }

  const Model model = Model::create();
  const Adapter probe = makeProbe(u"a");
  const std::vector<Operation<Handle>> operations = operationsOf<Handle>(probe);
};

using ClassesWithOperations =
    testing::Types<AdapterRegistryV2, AdapterCacheV2, CPPAdapterV2Entry, AdapterError, DataContainer>;
TYPED_TEST_SUITE(NoElement, ClassesWithOperations);

TYPED_TEST(NoElement, LetsEachOperationRaiseThatIsCalledPastItsHandleWhenItIsDestroyed) {
  const TypeParam element = this->make();
  element.destroy();
  this->expectEachToRaisePastItsHandle(element);
}

TYPED_TEST(NoElement, LetsEachOperationRaiseThatIsCalledPastItsHandleWhenItsModelIsDestroyed) {
  const TypeParam element = this->make();
  this->model.destroy();
  this->expectEachToRaisePastItsHandle(element);
}

TYPED_TEST(NoElement, LetsEachOperationRaiseThatIsCalledThroughItsHandleWhenItIsDestroyed) {
  const TypeParam element = this->make();
  element.destroy();
  this->expectEachToRaiseThroughAHandle(element);
}

TYPED_TEST(NoElement, LetsEachOperationRaiseThatIsCalledThroughItsHandleWhenItsModelIsDestroyed) {
  const TypeParam element = this->make();
  this->model.destroy();
  this->expectEachToRaiseThroughAHandle(element);
}

TYPED_TEST(NoElement, LetsEachOperationRaiseThatIsCalledThroughANullHandle) {
  this->expectEachToRaiseThroughAHandle(TypeParam());
}

TYPED_TEST(NoElement, IsLookedAtInEachOperationOfItsClass) {
  std::set<std::string> lookedAt;
  for (const Operation<TypeParam>& each : this->operations) lookedAt.insert(each.name);
  std::set<std::string> all;
  for (const lx::base::meta::Operation& operation : TypeParam::metaClass().getOwnOperations()) {
    if (!operation.isStatic()) all.insert(toUtf8(operation.getName()));
  }
  EXPECT_EQ(lookedAt, all);
}

// The end that is called by hand

template <class Handle>
class NoElementToEnd : public NoElement<Handle> {};

using ClassesWithAnEnd = testing::Types<AdapterRegistryV2, AdapterCacheV2>;
TYPED_TEST_SUITE(NoElementToEnd, ClassesWithAnEnd);

TYPED_TEST(NoElementToEnd, RaisesAndClosesNobody) {
  const TypeParam element = this->make();
  element.destroy();
  this->calls();
  EXPECT_EQ(raisedBy([&] { element.impl()->aboutToDestroy(); }), this->raisedIn("aboutToDestroy"));
  EXPECT_EQ(this->calls(), Lines{});
}

TYPED_TEST(NoElementToEnd, RaisesWhenItsModelIsDestroyed) {
  const TypeParam element = this->make();
  this->model.destroy();
  EXPECT_EQ(raisedBy([&] { element.impl()->aboutToDestroy(); }), this->raisedIn("aboutToDestroy"));
}

}  // namespace
