#include "tools/ndx/CommandLine.h"

#include <exception>
#include <new>

#include <CLI/CLI.hpp>

#include "adapters/json/register.h"
#include "platform/host/ArrayText.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/paint.h"
#include "tools/ndx/quote.h"
#include "tools/ndx/version.h"

namespace nd::tools {
namespace {

constexpr const char* Footer = R"(Examples:
  ndx adapters
  ndx info flight_control.json
  ndx ls flight_control.json
  ndx ls --section JSON flight_control.json
  ndx get flight_control.json Gain SampleTime
  ndx get --json flight_control.json Gain
  ndx --load ./params_adapter.so ls engine.params

Exit status:
  0  all went well; also when the reader of a pipe has seen enough
  1  the source could not be read
  2  the command line is wrong
  3  no adapter reads the source, or not this section
  4  the source has no such variable
  5  the output could not be written)";

void show(const Failure& failure, Output& err) {
  err.write(paint(err.look(), Paint::Error, "ndx:") + " " + hvEscape(failure.message()) + "\n");
  for (const std::string& hint : failure.hints()) err.write("  " + hvEscape(hint) + "\n");
}

void checkArguments(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (isUtf8(argument)) continue;
    throw Failure(
        ExitStatus::WrongUsage, "the argument " + quote(argument) + " is no UTF-8",
        {"Sources and variables are named in UTF-8. Give the file a name in UTF-8, or make a link to it "
         "that has one."});
  }
}

/// The command line: what was asked for, and with which options.
class CommandLine {
 public:
  CommandLine() {
    app_.footer(Footer);
    app_.set_version_flag("--version", std::string("ndx ") + Version, "Print the version and end");
    app_.add_option("--load", modules_, "Load an adapter module first; may be repeated")
        ->type_name("MODULE")
        ->allow_extra_args(false);
    app_.require_subcommand(1);
    adapters_ = command("adapters", "List the registered adapters", "  ndx adapters\n  ndx adapters --json");
    info_ = command("info", "Tell what is known of a source", "  ndx info flight_control.json");
    list_ = command("ls", "List the variables of a source: name, class, size, bytes, preview",
                    "  ndx ls flight_control.json\n  ndx ls --json flight_control.json");
    get_ =
        command("get", "Show whole values",
                "  ndx get flight_control.json Gain\n  ndx get --json flight_control.json Gain SampleTime");
    for (CLI::App* each : {info_, list_, get_}) {
      each->add_option("SOURCE", name_.source, "A file, or another source that an adapter reads")->required();
    }
    get_->add_option("NAME", variables_, "The variables to show, in this order")->required();
  }

  void parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // as the parser wants them
    app_.parse(std::move(arguments));
  }

  void execute(Output& out) const {
    nd::adapters::registerJsonAdapter();
    for (const std::string& module : modules_) loadModule(module);
    if (adapters_->parsed())
      showAdapters(asJson_, out);
    else if (info_->parsed())
      showInfo(name_, asJson_, out);
    else if (list_->parsed())
      listVariables(name_, asJson_, out);
    else
      getVariables(name_, variables_, asJson_, out);
  }

  std::string help() const {
    for (const CLI::App* each : {adapters_, info_, list_, get_}) {
      if (each->parsed()) return each->help("ndx");
    }
    return app_.help();
  }

 private:
  CLI::App* command(const char* name, const char* description, const std::string& examples) {
    CLI::App* const made = app_.add_subcommand(name, description);
    made->footer("Examples:\n" + examples);
    made->add_flag("--json", asJson_, "Write JSON, for programs");
    made->add_option("--section", name_.section,
                     "The part of the source to read, if several adapters read it")
        ->type_name("SECTION");
    made->fallthrough();
    return made;
  }

  CLI::App app_{"Reads the data of sources, whatever their format.", "ndx"};
  CLI::App* adapters_ = nullptr;
  CLI::App* info_ = nullptr;
  CLI::App* list_ = nullptr;
  CLI::App* get_ = nullptr;
  std::vector<std::string> modules_;
  std::vector<std::string> variables_;
  SourceName name_;
  bool asJson_ = false;
};

void perform(const std::vector<std::string>& arguments, Output& out) {
  checkArguments(arguments);
  CommandLine line;
  if (arguments.empty()) {
    throw Failure(ExitStatus::WrongUsage, "nothing was asked for",
                  {"Say what to do: ndx adapters, ndx info SOURCE, ndx ls SOURCE, ndx get SOURCE NAME…",
                   "ndx --help tells all of it, with examples."});
  }
  try {
    line.parse(arguments);
  } catch (const CLI::CallForHelp&) {
    out.write(line.help());
    return;
  } catch (const CLI::CallForVersion& version) {
    out.write(std::string(version.what()) + "\n");
    return;
  } catch (const CLI::ParseError& wrong) {
    throw Failure(ExitStatus::WrongUsage, wrong.what(), {"ndx --help tells how it is used, with examples."});
  }
  try {
    line.execute(out);
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
    show(Failure(ExitStatus::OutputFailed, std::string("the output could not be written: ") + failure.what()),
         err);
    return ExitStatus::OutputFailed;
  } catch (const std::bad_alloc&) {
    show(Failure(ExitStatus::Unreadable, "there is not enough memory for this source"), err);
  } catch (const std::exception& error) {
    show(Failure(ExitStatus::Unreadable, std::string("an adapter broke off: ") + error.what()), err);
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
