#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/text/Convert.h"

namespace nd::conformance {

/// What a check found: a sentence for each promise that the adapter broke, none if all is well.
class Report {
 public:
  /// Note what was found unless the promise holds. Gives whether it holds.
  bool expect(bool holds, std::string finding) {
    if (!holds) findings_.push_back(std::move(finding));
    return holds;
  }

  /// Note that the adapter, by its nature, can't be asked this.
  void skip(std::string reason) { skipped_ = std::move(reason); }

  const std::vector<std::string>& findings() const noexcept { return findings_; }

  /// Give why nothing was asked; empty if something was.
  const std::string& skipped() const noexcept { return skipped_; }

  friend std::ostream& operator<<(std::ostream& stream, const Report& report) {
    for (const std::string& finding : report.findings_) stream << "  - " << finding << '\n';
    return stream;
  }

 private:
  std::vector<std::string> findings_;
  std::string skipped_;
};

/// Show a source, a name or a message within a finding.
inline std::string inQuotes(const std::u16string& text) {
  return "'" + lx::text::toUtf8(text) + "'";
}

}  // namespace nd::conformance
