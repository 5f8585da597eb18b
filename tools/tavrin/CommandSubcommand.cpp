#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "MessageView.h"
#include "Parameters.h"
#include "Requirement.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct CommandOptions {
  std::vector<std::string> files;
  bool lines = false;
  std::vector<std::string> variables;
  std::vector<std::string> requirements;
  MessageForm form;
};

// A requirement and its outcome: a result, or a problem.
struct ParamReading {
  const Requirement* requirement = nullptr;
  Json::Value result;
  std::string text;  // from which the result was read
  std::string problem;
  bool isOutside = false;  // of its bounds
};

// Shows commands one after another.
class CommandViewer {
 public:
  CommandViewer(const CommandOptions& options, const Console& console, Reporter& reporter)
      : options_(options), form_(options.form), console_(console), headings_(console), reporter_(reporter) {
    for (const std::string& variable : options.variables) variables_.Set(variable);
    std::transform(options.requirements.begin(), options.requirements.end(),
                   std::back_inserter(requirements_), ParseRequirement);
  }

  Status Show(const std::string& file, const std::string& text) {
    if (!options_.lines) return ShowOne(file, text, 0);
    Status status = Status::success;
    std::istringstream lines(text);
    std::string line;
    for (std::uint32_t number = 1; std::getline(lines, line); ++number) {
      if (line.find_first_not_of(WHITESPACE) != std::string::npos)
        status = Worst(status, ShowOne(file, line, number));
    }
    return status;
  }

 private:
  // Shows a message that is a file, or a line of one.
  Status ShowOne(const std::string& file, const std::string& text, std::uint32_t line) {
    FileReport report{file, Subject::command, tavrin::diagnostics::DiagnoseCommand(text), text, line};
    CCmdMessage message(variables_, 0);
    std::vector<ParamReading> readings;
    bool isRefused = false;
    const auto load = [&] {
      isRefused = message.Load(text) != 0;
      return !isRefused;
    };
    if (!LoadMessage(load)) {
      report.status = Status::unreadable;
      if (isRefused) AddWhatWasRead(report.diagnostics, message);
    } else {
      readings = Read(message);
      AddProblems(report.diagnostics, readings);
      if (reporter_.IsJson()) report.fields = AsJson(message, readings);
      report.print = [&] { Print(line == 0 ? file : fmt::format("{}:{}", file, line), message, readings); };
    }
    return reporter_.Report(report);
  }

  // A factory of the library returns the message nevertheless, so drivers may receive it.
  static void AddWhatWasRead(Diagnostics& diagnostics, const CCmdMessage& message) {
    if (message.getRawCommand().empty() && message.GetParamMap().empty()) return;
    const auto error = std::find_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
      return diagnostic.severity == Severity::error;
    });
    if (error == diagnostics.end()) return;
    std::string& hint = error->hint;
    hint = fmt::format("a controller that ignores the failure continues with {}{}{}", Title(message),
                       hint.empty() ? "" : "; ", hint);
  }

  static std::string Title(const CCmdMessage& message) {
    return fmt::format("command {}, {}", Quoted(message.getRawCommand()),
                       Counted(message.GetParamMap().size(), "parameter"));
  }

  std::vector<ParamReading> Read(const CCmdMessage& message) {
    std::vector<ParamReading> readings;
    std::transform(requirements_.begin(), requirements_.end(), std::back_inserter(readings),
                   [this, &message](const Requirement& requirement) { return Read(message, requirement); });
    return readings;
  }

  ParamReading Read(const CCmdMessage& message, const Requirement& requirement) {
    ParamReading reading;
    reading.requirement = &requirement;
    reading.text = message.getParam(requirement.name);
    try {
      reading.result = ReadRequired(message, requirement);
    } catch (const ExceptionParameterMissing&) {
      reading.problem = WhyMissing(message, requirement.name);
    } catch (const ExceptionParameterInvalid&) {
      reading.problem = "is outside " + BoundsOf(requirement);
      reading.isOutside = true;
      if (!form_.Hides(requirement.name)) reading.problem += ": " + Quoted(reading.text);
    }
    if (form_.Hides(requirement.name)) reading.result = reading.text = tavrin::diagnostics::MaskedValue();
    return reading;
  }

  static std::string WhyMissing(const CCmdMessage& message, const std::string& name) {
    const auto found = message.GetParamMap().find(name);
    if (found == message.GetParamMap().end()) return "is missing";
    return fmt::format("is variable {}, which has no value; --variable {}=VALUE supplies one",
                       VariableName(found->second), VariableName(found->second));
  }

  void Print(const std::string& file, const CCmdMessage& message, const std::vector<ParamReading>& readings) {
    if (form_.xml) {
      Console::Out() << message.toXml(!form_.report.showSecrets) << '\n';
      return;
    }
    if (form_.dump) {
      message.print(Console::Out()) << '\n';
      return;
    }
    headings_.Print(file, Title(message));
    if (!message.GetParamMap().empty()) Parameters(message).AsTable().Print(Console::Out(), console_);
    Table results({"REQUIRED", "READS AS", "TEXT"});
    for (const ParamReading& reading : readings) {
      if (reading.problem.empty())
        results.AddRow({reading.requirement->text, ResultText(reading.result), reading.text});
    }
    if (results.HasRows()) results.Print(Console::Out(), console_);
  }

  Json::Value AsJson(const CCmdMessage& message, const std::vector<ParamReading>& readings) {
    Json::Value document;
    document["command"] = message.getRawCommand();
    document["parameters"] = Parameters(message).AsJson();
    for (const ParamReading& reading : readings) {
      Json::Value entry;
      entry["name"] = reading.requirement->name;
      entry["requirement"] = reading.requirement->text;
      if (reading.problem.empty())
        entry["value"] = reading.result;
      else
        entry["problem"] = reading.problem;
      if (reading.problem.empty() && form_.Hides(reading.requirement->name)) entry["masked"] = true;
      document["required"].append(entry);
    }
    return document;
  }

  ParameterView Parameters(const CCmdMessage& message) {
    return {message.GetParamMap(), variables_, form_.report.showSecrets};
  }

  static void AddProblems(Diagnostics& diagnostics, const std::vector<ParamReading>& readings) {
    for (const ParamReading& reading : readings) {
      if (reading.problem.empty()) continue;
      Diagnostic diagnostic{};
      diagnostic.rule = reading.isOutside ? "require/out-of-range" : "require/missing";
      diagnostic.severity = Severity::error;
      diagnostic.text =
          fmt::format("required parameter {} {}", Quoted(reading.requirement->name), reading.problem);
      diagnostics.push_back(std::move(diagnostic));
    }
  }

  const CommandOptions& options_;
  const MessageForm& form_;
  const Console& console_;
  Headings headings_;
  Reporter& reporter_;
  VariableStore variables_;
  std::vector<Requirement> requirements_;
};

}  // namespace

void AddCommand(CLI::App& app, Session& session) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* const command =
      app.add_subcommand("command",
                         "Show commands in XML or JSON as a driver receives them: the name,\n"
                         "and the parameters in a table. Warnings on the standard error\n"
                         "stream report the parts that the lenient loader ignores.");
  AddFileOption(*command, options->files);
  options->form.AddTo(*command);
  command->add_flag("--lines", options->lines, "Read a command from each line of a file");
  command
      ->add_option("--variable", options->variables,
                   "The value that the controller returns for a variable;\n"
                   "may be repeated")
      ->type_name("DEVICE:VARIABLE=VALUE")
      ->allow_extra_args(false);
  command
      ->add_option("--require", options->requirements,
                   "Read a parameter as a driver that requires it, and\n"
                   "print the result; may be repeated. KIND: int, uint,\n"
                   "bool, double[,PRECISION], text (the default), or\n"
                   "MIN..MAX for a number within these bounds")
      ->type_name("NAME[:KIND]")
      ->allow_extra_args(false);
  command->callback([options, &session] {
    session.status = ShowFiles<CommandViewer>(*options, session.console, {".json", ".xml"});
  });
}

}  // namespace tool
