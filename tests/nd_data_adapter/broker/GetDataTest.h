#pragma once

#include <string>
#include <vector>

#include "nd_data_adapter/model/AdapterError.h"
#include "nd_data_adapter/model/AdapterManagerV2.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/host/Workspace.h"
#include "tests/support/BrokerTest.h"

/// What the tests of `getData` have in common.
namespace get_data_test {

/// Describes an error as `contentsOf` does.
inline std::string error(int diagnostic, const std::string& message, const std::string& adapter,
                         const std::string& source) {
  return "AdapterError Diagnostic=" + std::to_string(diagnostic) + " ErrorMessage='" + message +
         "' Adapter='" + adapter + "' SourceFile='" + source + "'";
}

inline const std::string noError = error(0, "", "", "");

/// A test with a container that holds a workspace and two condition controls, and a registered probe.
class GetDataTest : public support::BrokerTest {
 protected:
  GetDataTest() {
    container.setDataCache(workspace);
    for (const char16_t* name : {u"old", u"older"}) container.getConditionControlsMutable().add(name);
  }

  void open(const std::u16string& section = u"s") const {
    EXPECT_TRUE(nd::data::adapter::AdapterManagerV2::openSource(u"x.test", section, {}));
    calls();
  }

  nd::data::adapter::AdapterError get(const std::u16string& section = u"s",
                                      const std::u16string& prevChecksum = u"") const {
    return nd::data::adapter::AdapterManagerV2::getData(u"x.test", section, container, prevChecksum,
                                                        tmpModel);
  }

  std::vector<std::u16string> controls() const { return container.conditionControls().values(); }

  const lx::base::Model model = lx::base::Model::create();
  const lx::base::Model tmpModel = lx::base::Model::create();
  const nd::data::adapter::DataContainer container = nd::data::adapter::DataContainer::create(model);
  const boost::shared_ptr<inWorkSpace_tag> workspace = inCreateWorkspace(4);
  support::ProbeScript& script = registerProbe(u"a")->script();
};

}  // namespace get_data_test
