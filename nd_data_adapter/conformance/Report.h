#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/text/Convert.h"

namespace nd::conformance {

/// A place in a source.
struct Place {
  std::string_view file;
  int line = 0;

  /// Give the place of the call; as a default argument, that of the call which leaves it out.
  static Place here(const char* file = __builtin_FILE(), int line = __builtin_LINE()) { return {file, line}; }
};

/// What a check found: a sentence for each promise that the adapter broke, none if all is well.
class Report {
 public:
  /// Note what was found unless the promise holds. Gives whether it holds.
  bool expect(bool holds, std::string finding, const Place& where = Place::here()) {
    if (!holds) {
      findings_.push_back(std::move(finding));
      places_.push_back(where);
    }
    return holds;
  }

  /// Note that the adapter, by its nature, can't be asked this.
  void skip(std::string reason) { skipped_ = std::move(reason); }

  const std::vector<std::string>& findings() const noexcept { return findings_; }

  /// Give for each finding where its expectation stands.
  const std::vector<Place>& places() const noexcept { return places_; }

  /// Give why nothing was asked; empty if something was.
  const std::string& skipped() const noexcept { return skipped_; }

  friend std::ostream& operator<<(std::ostream& stream, const Report& report) {
    for (std::size_t at = 0; at < report.findings_.size(); ++at) {
      const auto& [file, line] = report.places_[at];
      stream << "  - " << report.findings_[at] << " [" << file.substr(file.rfind('/') + 1) << ':' << line
             << "]\n";
    }
    return stream;
  }

 private:
  std::vector<std::string> findings_;
  std::vector<Place> places_;
  std::string skipped_;
};

/// Show a source, a name or a message within a finding, cut where it gets long.
inline std::string inQuotes(const std::u16string& text) {
  constexpr std::size_t most = 400;
  if (text.size() <= most) return "'" + lx::text::toUtf8(text) + "'";
  return "'" + lx::text::toUtf8(text.substr(0, 40)) + " …' of " + std::to_string(text.size()) + " characters";
}

}  // namespace nd::conformance
