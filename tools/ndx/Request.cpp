#include "tools/ndx/Request.h"

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "adapters/registerShippedAdapters.h"
#include "tools/ndx/Failure.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/nearNames.h"
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
  ndx get flight_control.json -- --odd-name
  ndx --load ./params_adapter.so ls engine.params

What stands behind -- is a name, whatever it looks like.

Exit status:
  0  all went well; also when the reader of a pipe has seen enough
  1  the source could not be read
  2  the command line is wrong; a module can't be loaded, or registers no adapter;
     several adapters read the source, and no section was chosen; a name is no
     UTF-8, or can mean two files
  3  no adapter reads the source, or not this section
  4  the source has no such variable; nothing was shown
  5  the output could not be written)";

// The parser gives "[a,b]" and "++" a meaning of their own, which no name may have here.
constexpr char Shield = '\001';

std::string unshielded(const std::string& text) {
  return text.starts_with(Shield) ? text.substr(1) : text;
}

/// Give the arguments in the order that the parser wants, the last first, names shielded from it.
std::vector<std::string> prepared(const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  bool areNamesOnly = false;
  for (const std::string& argument : arguments) {
    if (!areNamesOnly && argument == "--") {
      areNamesOnly = true;
    } else {
      const bool isName = areNamesOnly || argument.starts_with('[') || argument == "++";
      result.push_back(isName ? Shield + argument : argument);
    }
  }
  std::reverse(result.begin(), result.end());
  return result;
}

}  // namespace

/// The grammar of the command line and what was found on it.
class Request::Parser {
 public:
  Parser() {
    app_.footer(Footer);
    app_.set_version_flag("--version", fmt::format("ndx {}", Version), "Print the version and end");
    addLoad(app_);
    app_.require_subcommand(1);
    addCommand("adapters", "List the registered adapters",
               {"ndx adapters", "ndx adapters --section JSON", "ndx adapters --json",
                "ndx adapters --load ./params_adapter.so"});
    addCommand("info", "Tell what is known of a source",
               {"ndx info flight_control.json", "ndx info --section JSON flight_control.json",
                "ndx info --json flight_control.json", "ndx info --load ./params_adapter.so engine.params"});
    addCommand("ls", "List the variables of a source: name, class, size, bytes, preview",
               {"ndx ls flight_control.json", "ndx ls --section JSON flight_control.json",
                "ndx ls --json flight_control.json", "ndx ls --load ./params_adapter.so engine.params"});
    CLI::App& get =
        addCommand("get", "Show whole values",
                   {"ndx get flight_control.json Gain", "ndx get --section JSON flight_control.json Gain",
                    "ndx get --json flight_control.json Gain SampleTime",
                    "ndx get --load ./params_adapter.so engine.params idle_speed"});
    get.add_option("NAME", variables_, "The variables to show, in this order")->required();
  }

  void parse(const std::vector<std::string>& arguments) {
    app_.parse(prepared(arguments));
    for (std::string* text : {&source_, &section_}) *text = unshielded(*text);
    for (std::string& variable : variables_) variable = unshielded(variable);
  }

  void execute(Output& out) const {
    nd::adapters::registerShippedAdapters();
    for (const std::string& module : modules_) loadModule(unshielded(module));
    const std::optional<std::string> section = given("--section") ? std::optional(section_) : std::nullopt;
    const std::string command = chosen()->get_name();
    if (command == "adapters") return showAdapters(section, asJson_, out);
    if (source_.empty()) {
      throw Failure(ExitStatus::WrongUsage, "the name of the source is empty",
                    {fmt::format("ndx {} --help tells how it is used, with examples.", command)});
    }
    const SourceName name{source_, section};
    if (command == "info") return showInfo(name, asJson_, out);
    if (command == "ls") return listVariables(name, asJson_, out);
    getVariables(name, variables_, asJson_, out);
  }

  std::string help() const { return chosen() == nullptr ? app_.help() : chosen()->help("ndx"); }

  /// Say what is wrong with the arguments that the parser refused.
  std::string message(const CLI::ParseError& refusal, const std::vector<std::string>& arguments) const {
    const bool isCommandMissing = chosen() == nullptr && !arguments.front().starts_with('-');
    if (isCommandMissing) return fmt::format("there is no command {}", quote(arguments.front()));
    std::string text = refusal.what();
    std::erase(text, Shield);
    return text;
  }

  /// Say which command or option may have been meant by one that there isn't.
  std::vector<std::string> hints(const std::vector<std::string>& arguments) const {
    std::vector<std::string> commands;
    for (const CLI::App* each : app_.get_subcommands({})) commands.push_back(each->get_name());
    std::vector<std::string> result;
    const CLI::App* const scope = chosen() == nullptr ? &app_ : chosen();
    for (const std::string& argument : arguments) {
      if (argument == "--") break;
      const bool isOption = argument.starts_with('-');
      if (!isOption && scope != &app_) continue;
      for (const std::string& near : nearNames(argument, isOption ? optionsOf(*scope) : commands, 1))
        result.push_back(fmt::format("Instead of {}, did you mean {}?", quote(argument), quote(near)));
    }
    result.push_back(scope == &app_ ? "The commands are " + join(commands, ", ") +
                                          "; ndx --help tells how they are used, with examples."
                                    : fmt::format("ndx {} --help tells how it is used, with examples.",
                                                  scope->get_name()));
    return result;
  }

 private:
  CLI::App& addCommand(const char* name, const char* description, const std::vector<std::string>& examples) {
    CLI::App* const command = app_.add_subcommand(name, description);
    command->footer("Examples:\n  " + join(examples, "\n  "));
    command->add_flag("--json", asJson_, "Write JSON, for programs");
    const bool hasSource = std::string_view(name) != "adapters";
    command
        ->add_option("--section", section_,
                     hasSource ? "The part of the source to read, if several adapters read it"
                               : "List only the adapters for this section")
        ->type_name("SECTION");
    addLoad(*command);
    if (hasSource) {
      command->add_option("SOURCE", source_, "A file, or another source that an adapter reads")->required();
    }
    return *command;
  }

  void addLoad(CLI::App& app) {
    app.add_option_function<std::vector<std::string>>(
           "--load",
           [this](const std::vector<std::string>& modules) {
             modules_.insert(modules_.end(), modules.begin(), modules.end());
           },
           "Load an adapter module first; may be repeated")
        ->type_name("MODULE")
        ->allow_extra_args(false);
  }

  const CLI::App* chosen() const {
    const std::vector<CLI::App*> parsed = app_.get_subcommands();
    return parsed.empty() ? nullptr : parsed.front();
  }

  bool given(const char* option) const { return chosen()->count(option) > 0; }

  static std::vector<std::string> optionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
  }

  CLI::App app_{"Reads the data of sources, whatever their format.", "ndx"};
  std::vector<std::string> modules_;
  std::vector<std::string> variables_;
  std::string source_;
  std::string section_;
  bool asJson_ = false;
};

Request::Request() : parser_(std::make_unique<Parser>()) {}

Request::~Request() = default;

std::string Request::parse(const std::vector<std::string>& arguments) {
  try {
    parser_->parse(arguments);
    return {};
  } catch (const CLI::CallForHelp&) {
    return parser_->help();
  } catch (const CLI::CallForVersion& version) {
    return std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& wrong) {
    throw Failure(ExitStatus::WrongUsage, parser_->message(wrong, arguments), parser_->hints(arguments));
  }
}

void Request::execute(Output& out) const {
  parser_->execute(out);
}

}  // namespace nd::tools
