#pragma once

#include <string>
#include <vector>

#include "nd_data_adapter/model/ChangeReport.h"
#include "nd_data_adapter/model/ChangeTuple.h"
#include "nd_data_adapter/model/ConditionControlChangeEntry.h"
#include "nd_data_adapter/model/ConditionControlChangeReport.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"

/// What the tests of the model have in common.
namespace model_test {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Transaction;
using lx::base::Value;
using nd::data::adapter::ChangeReport;
using nd::data::adapter::ChangeTuple;
using nd::data::adapter::ChangeType;
using nd::data::adapter::ConditionControlChangeEntry;
using nd::data::adapter::ConditionControlChangeReport;
using nd::data::adapter::DataContainer;
using nd::data::adapter::MetaDataEntry;

inline Transaction begin(const Model& model) {
  return model.impl()->beginTransaction(false);
}

inline std::uint64_t transactions(const Model& model) {
  return model.impl()->counters().transactions;
}

inline std::uint64_t notices(const Model& model) {
  return model.impl()->counters().notices;
}

/// Writes down all of a model: each element in the order of creation, with its container and all values.
/// Elements stand for themselves, so that two descriptions are equal only if the very same elements are in
/// the same places.
std::string stateOf(const Model& model);

/// Writes a property's value as `stateOf` does; "?" for a type that no class of the library has.
std::string written(const Value& value);

/// Makes a report with a tuple for each id.
ChangeReport reportOf(const Model& model, const std::vector<std::u16string>& ids);

/// Makes a report with an entry for each name; the entries' previous values are "0", "1" and so on.
ConditionControlChangeReport variantsOf(const Model& model, const std::vector<std::u16string>& names);

/// Makes a container with metadata under each name.
DataContainer containerOf(const Model& model, const std::vector<std::u16string>& names);

std::vector<std::u16string> idsOf(const ChangeReport& report);

/// Lists an entry's name and previous value, joined by a colon, for each entry of the report.
std::vector<std::u16string> namesOf(const ConditionControlChangeReport& report);

using Texts = std::vector<std::u16string>;

}  // namespace model_test
