#pragma once

namespace nd::tools {

/// What the tool tells its caller; `ndx --help` and docs/ndx.md describe the numbers.
enum class ExitStatus : int {
  Success = 0,
  Unreadable = 1,
  WrongUsage = 2,
  NoAdapter = 3,
  NoVariable = 4,
  OutputFailed = 5,
};

}  // namespace nd::tools
