#include "tests/support/BrokerTest.h"

#include "nd_data_adapter/broker/internal/FirstGenerationRoad.h"
#include "nd_data_adapter/model/AdapterCacheV2.h"
#include "nd_data_adapter/model/AdapterRegistryV2.h"
#include "platform/host/hv.h"
#include "platform/services/Diagnostic.h"

using nd::data::adapter::AdapterCacheV2;
using nd::data::adapter::AdapterRegistryV2;
using nd::data::adapter::detail::FirstGenerationRoad;

namespace support {

void BrokerTest::emptyBroker() {
  FirstGenerationRoad::replace(nullptr);
  AdapterCacheV2::getInstance().getModel().destroy();
  AdapterRegistryV2::getInstance().getModel().destroy();
}

BrokerTest::BrokerTest() {
  emptyBroker();
  arraysBefore_ = hvGetLiveArrayCount();
  diagnosticsBefore_ = ndsvGetLiveDiagnosticCount();
}

BrokerTest::~BrokerTest() {
  log->forgetActions();
  emptyBroker();
  EXPECT_EQ(ProbeAdapter::live(), 0U) << "an adapter was not released";
  EXPECT_EQ(hvGetLiveArrayCount(), arraysBefore_) << "a host array was not freed";
  EXPECT_EQ(ndsvGetLiveDiagnosticCount(), diagnosticsBefore_) << "a diagnostic was not destroyed";
}

std::shared_ptr<ProbeAdapter> BrokerTest::makeProbe(const std::u16string& name, const std::u16string& section,
                                                    const std::vector<std::u16string>& extensions) const {
  ProbeScript script;
  script.name = name;
  script.section = section;
  script.extensions = extensions;
  return std::make_shared<ProbeAdapter>(log, script);
}

std::shared_ptr<ProbeAdapter> BrokerTest::registerProbe(const std::u16string& name,
                                                        const std::u16string& section,
                                                        const std::vector<std::u16string>& extensions) {
  std::shared_ptr<ProbeAdapter> probe = makeProbe(name, section, extensions);
  EXPECT_TRUE(AdapterRegistryV2::getInstance().registerCPPAdapter(probe));
  log->take();
  return probe;
}

}  // namespace support
