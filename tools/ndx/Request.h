#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/ndx/Output.h"

namespace nd::tools {

/// What a command line asks for, and its execution.
class Request {
 public:
  Request();
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;
  ~Request();

  /// Take the arguments in, without the program's name. Gives the text of the help or the version if one of
  /// them was asked for, otherwise nothing. Raises Failure WrongUsage.
  std::string parse(const std::vector<std::string>& arguments);

  /// Do what was asked for. Raises Failure and OutputFailure, and passes on what adapters raise.
  void execute(Output& out) const;

 private:
  class Parser;  // keeps the library that parses out of everything else

  std::unique_ptr<Parser> parser_;
};

}  // namespace nd::tools
