#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/CallLog.h"
#include "tests/support/ProbeAdapter.h"

namespace support {

/// A test that begins with an empty registry and an empty cache, without a first generation, and at whose end
/// nothing is left: no adapter, no host array, no diagnostic.
class BrokerTest : public testing::Test {
 protected:
  BrokerTest();
  ~BrokerTest() override;

  /// Makes a probe that claims ".test" for a section, and registers nothing.
  std::shared_ptr<ProbeAdapter> makeProbe(const std::u16string& name, const std::u16string& section = u"s",
                                          const std::vector<std::u16string>& extensions = {u".test"}) const;

  /// Makes a probe, registers it past the facade, and forgets what it was asked for that.
  std::shared_ptr<ProbeAdapter> registerProbe(const std::u16string& name,
                                              const std::u16string& section = u"s",
                                              const std::vector<std::u16string>& extensions = {u".test"});

  /// Gives what was asked since the last time.
  Lines calls() const { return log->take(); }

  std::shared_ptr<CallLog> log = std::make_shared<CallLog>();

 private:
  static void emptyBroker();

  std::size_t arraysBefore_;
  std::size_t diagnosticsBefore_;
};

}  // namespace support
