#pragma once

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "tools/ndx/ExitStatus.h"

namespace nd::tools {

/// Why the tool gives up: the status it ends with, a sentence for the person, and lines that help on.
///
/// The texts may hold anything that a file or an argument holds; they are made harmless when they are shown.
class Failure : public std::exception {
 public:
  Failure(ExitStatus status, std::string message, std::vector<std::string> hints = {})
      : status_(status), message_(std::move(message)), hints_(std::move(hints)) {}

  const char* what() const noexcept override { return message_.c_str(); }
  ExitStatus status() const noexcept { return status_; }
  const std::string& message() const noexcept { return message_; }
  const std::vector<std::string>& hints() const noexcept { return hints_; }

 private:
  ExitStatus status_;
  std::string message_;
  std::vector<std::string> hints_;
};

}  // namespace nd::tools
