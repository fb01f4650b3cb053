// An operation holds the element that it works on: whom it lets act may destroy the element and let go of the
// handle through which it was called.

#include <functional>
#include <utility>

#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/ModelImpl.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "tests/support/AtEachNotice.h"
#include "tests/support/BrokerTest.h"
#include "tests/support/Thrown.h"
#include "tests/support/describe.h"

using namespace nd::data::adapter;
using lx::base::Model;
using lx::base::Value;
using support::AtEachNotice;
using support::Lines;
using support::raisedBy;

namespace {

/// Destroys an element and lets go of its handle; does nothing where that has been done.
template <class Handle>
void endThrough(Handle& handle) {
  const Handle last = std::exchange(handle, Handle());
  if (last) last.destroy();
}

/// An element that lets its caller act in the midst of an operation, and notes when it ends.
template <class Base>
class LetGo : public Base {
 public:
  LetGo(const Model& model, Lines& lines) : Base(model, {}), lines_(&lines) {}
  ~LetGo() override { lines_->push_back("ends"); }

  std::function<void()> whenCalled;

 protected:
  /// Lets the caller act, and then notes that the operation goes on. Nothing of the element is used behind
  /// the act, so that one that has ended by then is seen in the order of the notes.
  void run() {
    Lines& lines = *lines_;
    const std::function<void()> act = std::exchange(whenCalled, nullptr);
    act();
    lines.push_back("goes on");
  }

 private:
  Lines* lines_;
};

class ErrorLetGo final : public LetGo<AdapterError::Impl> {
 public:
  using LetGo::LetGo;
  AdapterDiagnostic getId() override {
    run();
    return AdapterDiagnostic::HardError;
  }
};

class ContainerLetGo final : public LetGo<DataContainer::Impl> {
 public:
  using LetGo::LetGo;
  void destroyContainer() override { run(); }
};

class HeldElement : public support::BrokerTest {
 protected:
  /// Makes an element and a handle to it, which is the last when the element lets go.
  template <class Handle, class Element>
  Handle make() {
    auto* const impl = new Element(model, lines);
    const Handle handle(impl);
    impl->notifyCreated();
    return handle;
  }

  const Model model = Model::create();
  Lines lines;
};

const Lines wentOnAndEnded{"goes on", "ends"};

TEST_F(HeldElement, EndsBehindAnOperationThatIsCalledThroughItsLastHandle) {
  auto error = make<AdapterError, ErrorLetGo>();
  static_cast<ErrorLetGo*>(error.impl())->whenCalled = [&] { endThrough(error); };
  EXPECT_EQ(error.getId(), AdapterDiagnostic::HardError);
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, EndsBehindAnOperationWithoutResult) {
  auto container = make<DataContainer, ContainerLetGo>();
  static_cast<ContainerLetGo*>(container.impl())->whenCalled = [&] { endThrough(container); };
  container.destroyContainer();
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, EndsBehindAnOperationThatIsCalledByReflection) {
  auto error = make<AdapterError, ErrorLetGo>();
  static_cast<ErrorLetGo*>(error.impl())->whenCalled = [&] { endThrough(error); };
  EXPECT_EQ(error.invoke(u"getId", {}), Value(AdapterDiagnostic::HardError));
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, RaisesWhenAnObserverDestroysTheErrorThatIsBeingSet) {
  AdapterError error = AdapterError::create(model);
  const AtEachNotice observer(model, [&] { endThrough(error); });
  EXPECT_EQ(raisedBy([&] { error.setError(AdapterDiagnostic::HardError, u"message", u"name", u"source"); }),
            "InvalidValue(nd.data.adapter.AdapterError.ErrorMessage)");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
}

TEST_F(HeldElement, RaisesWhenAnObserverDestroysTheErrorThatIsBeingSetByReflection) {
  AdapterError error = AdapterError::create(model);
  const AtEachNotice observer(model, [&] { endThrough(error); });
  EXPECT_EQ(raisedBy([&] {
              error.invoke(u"setError", {Value(AdapterDiagnostic::HardError), Value(u"message"),
                                         Value(u"name"), Value(u"source")});
            }),
            "InvalidValue(nd.data.adapter.AdapterError.ErrorMessage)");
}

TEST_F(HeldElement, LeavesTheConditionalDataWhenAnObserverDestroysTheContainerMeanwhile) {
  DataContainer container = DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> conditional = inCreateWorkspace(1);
  inAssignInDesiredWS(hvArrayPtr(hvCreateDoubleScalar(1)).get(), "offset", conditional);
  container.setDataCache(inCreateWorkspace(1));
  container.setConditionalCache(conditional);
  const AtEachNotice observer(model, [&] { endThrough(container); });
  EXPECT_EQ(raisedBy([&] { container.destroyContainer(); }), "nothing");
  EXPECT_EQ(model.impl()->numberOfElements(), 0U);
  EXPECT_EQ(conditional.use_count(), 1);
  EXPECT_EQ(support::contentsOf(conditional), Lines{"offset: 1x1 double = 1"})
      << "it was no longer the container's";
}

}  // namespace
