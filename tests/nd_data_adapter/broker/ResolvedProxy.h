#pragma once

#include <memory>
#include <string>

#include <boost/uuid/uuid.hpp>
#include <gtest/gtest.h>

#include "nd_data_adapter/model/CPPAdapterV2Entry.h"
#include "platform/foundation/CreateElement.h"
#include "tests/support/describe.h"

namespace support {

inline boost::uuids::uuid someIdentity() {
  boost::uuids::uuid result{};
  result.data[15] = 1;
  return result;
}

/// Puts a proxy into the entries of a registry or a cache, makes the entry for which it stands, of this name
/// and adapter, and resolves the proxy. The broker then has this, and nothing before.
template <class Entries>
void expectResolvedProxy(Entries& entries, const std::u16string& name,
                         const std::shared_ptr<CPPAdapterV2>& adapter, const std::string& line) {
  using nd::data::adapter::CPPAdapterV2Entry;
  const lx::base::Model model = entries.owner().getModel();
  const auto proxy = lx::base::createProxy<CPPAdapterV2Entry>(model, someIdentity());
  entries.add(proxy);
  EXPECT_FALSE(entries.resolveProxy(proxy)) << "the model doesn't have the entry";

  const CPPAdapterV2Entry entry = CPPAdapterV2Entry::create(model, someIdentity());
  entry.setName(name);
  entry.setAdapter(adapter);
  EXPECT_TRUE(stateOfBroker().empty()) << "the proxy stands there, the entry beside it";
  EXPECT_EQ(entries.resolveProxy(proxy), entry);
  EXPECT_EQ(stateOfBroker(), Lines{line});
  EXPECT_TRUE(entries.proxies().empty());
  EXPECT_FALSE(proxy.isAlive());
}

}  // namespace support
