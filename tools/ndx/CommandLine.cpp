#include "tools/ndx/CommandLine.h"

#include <exception>
#include <new>

#include <fmt/format.h>

#include "platform/host/ArrayText.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/Request.h"
#include "tools/ndx/paint.h"
#include "tools/ndx/quote.h"

namespace nd::tools {
namespace {

void show(const Failure& failure, Output& err) {
  err.write(paint(err.look(), Paint::Error, "ndx:") + " " + hvEscape(failure.message()) + "\n");
  for (const std::string& hint : failure.hints()) err.write("  " + hvEscape(hint) + "\n");
}

void checkArguments(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (isUtf8(argument)) continue;
    throw Failure(
        ExitStatus::WrongUsage, fmt::format("the argument {} is no UTF-8", quote(argument)),
        {"Sources and variables are named in UTF-8. Give the file a name in UTF-8, or make a link to it "
         "that has one."});
  }
  if (!arguments.empty()) return;
  throw Failure(ExitStatus::WrongUsage, "nothing was asked for",
                {"Say what to do: ndx adapters, ndx info SOURCE, ndx ls SOURCE, ndx get SOURCE NAME…",
                 "ndx --help tells all of it, with examples."});
}

void perform(const std::vector<std::string>& arguments, Output& out) {
  checkArguments(arguments);
  Request request;
  const std::string answer = request.parse(arguments);
  if (!answer.empty()) return out.write(answer);
  try {
    request.execute(out);
  } catch (const Failure&) {
    out.finish();  // what was found out before is still of use
    throw;
  }
}

ExitStatus performAndTell(const std::vector<std::string>& arguments, Output& out, Output& err) {
  try {
    perform(arguments, out);
    out.finish();
    return ExitStatus::Success;
  } catch (const Failure& failure) {
    show(failure, err);
    return failure.status();
  } catch (const OutputFailure& failure) {
    if (failure.isClosedPipe()) return ExitStatus::Success;
    show(
        Failure(ExitStatus::OutputFailed, fmt::format("the output could not be written: {}", failure.what())),
        err);
    return ExitStatus::OutputFailed;
  } catch (const std::bad_alloc&) {
    show(Failure(ExitStatus::Unreadable, "there is not enough memory for this source"), err);
  } catch (const std::exception& error) {
    show(Failure(ExitStatus::Unreadable, fmt::format("an adapter broke off: {}", error.what())), err);
  } catch (...) {
    show(Failure(ExitStatus::Unreadable, "an adapter broke off with an error of its own kind"), err);
  }
  return ExitStatus::Unreadable;
}

}  // namespace

int run(const std::vector<std::string>& arguments, Output& out, Output& err) noexcept {
  ExitStatus status = ExitStatus::OutputFailed;
  try {
    status = performAndTell(arguments, out, err);
    err.finish();
  } catch (...) {
    // Nothing is left to write to; the status says that it went wrong.
    if (status == ExitStatus::Success) status = ExitStatus::OutputFailed;
  }
  return static_cast<int>(status);
}

}  // namespace nd::tools
