// Operations whose observers destroy the element that they work on, and let go of the handle through which
// they were called.

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

class HeldElement : public support::BrokerTest {
 protected:
  const Model model = Model::create();
};

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
