#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "nd_data_adapter/model/DataContainer.h"
#include "nd_data_adapter/model/MetaDataEntry.h"
#include "platform/foundation/ElementMap.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"
#include "platform/text/Convert.h"

namespace nd::conformance {

/// What a client holds, by name: a copy, so that it can be compared later.
class Contents {
 public:
  Contents() = default;
  explicit Contents(const data::adapter::DataContainer& container)
      : metaData_(container.metaDataCache().keys()),
        entries_(container.metaDataCache().begin(), container.metaDataCache().end()) {
    WorkSpaceIterator walk(container.dataCache(), false, false, true);
    const hvArray* value = nullptr;
    std::string name;
    while (walk.get_next_variable(value, name)) {
      variables_.push_back({name, hvArrayPtr(hvCreateSharedDataCopy(value))});
    }
    std::sort(variables_.begin(), variables_.end(),
              [](const Variable& a, const Variable& b) { return a.name < b.name; });
    std::sort(metaData_.begin(), metaData_.end());
  }

  bool hasVariables() const noexcept { return !variables_.empty(); }

  /// Tell whether the same variables are there, with the same values if these count too, and the same names
  /// of metadata.
  bool equals(const Contents& other, bool withValues = true) const {
    return std::equal(variables_.begin(), variables_.end(), other.variables_.begin(), other.variables_.end(),
                      [&](const Variable& a, const Variable& b) { return a.equals(b, withValues); }) &&
           metaData_ == other.metaData_;
  }

  /// Tell whether all of the other is there, with the same values, and maybe more.
  bool includes(const Contents& other) const {
    return std::all_of(other.variables_.begin(), other.variables_.end(),
                       [&](const Variable& wanted) {
                         return std::any_of(variables_.begin(), variables_.end(),
                                            [&](const Variable& each) { return each.equals(wanted, true); });
                       }) &&
           std::includes(metaData_.begin(), metaData_.end(), other.metaData_.begin(), other.metaData_.end());
  }

  /// Tell whether nothing was touched: the same variables with the same values, and the very same metadata.
  bool isStill(const Contents& before) const { return equals(before) && entries_ == before.entries_; }

  /// Describe all for a finding, cut where it gets long.
  std::string describe() const {
    std::string text;
    for (const Variable& variable : variables_) {
      text += (text.empty() ? "" : ", ") + variable.name + " = " + hvPreview(variable.value.get(), 40);
    }
    if (variables_.empty()) text = metaData_.empty() ? "nothing" : "no variables";
    for (const std::u16string& name : metaData_) text += " (metadata '" + lx::text::toUtf8(name) + "')";
    constexpr std::size_t most = 400;
    if (text.size() > most) text = text.substr(0, most) + " …";
    return text;
  }

 private:
  struct Variable {
    std::string name;
    hvArrayPtr value;

    bool equals(const Variable& other, bool withValues) const {
      return name == other.name && (!withValues || hvEqual(value.get(), other.value.get()));
    }
  };

  std::vector<Variable> variables_;
  std::vector<std::u16string> metaData_;
  std::vector<data::adapter::MetaDataEntry> entries_;
};

}  // namespace nd::conformance
