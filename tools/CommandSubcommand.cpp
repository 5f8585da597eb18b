#include <fmt/format.h>

#include <json/value.h>
#include <tavrin_driver/CmdMessage.h>
#include <algorithm>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "CommandLint.h"
#include "MessageView.h"
#include "Parameters.h"
#include "Requirement.h"
#include "Subcommands.h"
#include "Text.h"
#include "tavrin_driver/internal/Secrets.h"

namespace tool {
namespace {

struct Options {
  std::vector<std::string> files;
  std::vector<std::string> variables;
  std::vector<std::string> requirements;
  MessageForm form;
};

// A requirement and what came of it: a result, or a problem.
struct Reading {
  const Requirement* requirement = nullptr;
  Json::Value result;
  std::string text;  // from which the result was read
  std::string problem;
};

// Shows one command after the other.
class CommandViewer {
 public:
  CommandViewer(const Options& options, const Console& console)
      : form_(options.form), console_(console), headings_(console) {
    for (const std::string& variable : options.variables) variables_.Set(variable);
    std::transform(options.requirements.begin(), options.requirements.end(),
                   std::back_inserter(requirements_), ParseRequirement);
  }

  Status Show(const std::string& file, const std::string& text) {
    CCmdMessage message(variables_, 0);
    if (!Load(file, text, message)) return Status::Unreadable;
    const std::vector<Reading> readings = Read(message);
    if (form_.xml)
      Console::Out() << message.toXml(!form_.showSecrets) << '\n';
    else if (form_.dump)
      message.print(Console::Out()) << '\n';
    else if (form_.json)
      Console::WriteJson(AsJson(file, message, readings));
    else
      Print(file, message, readings);
    return TellProblems(file, readings);
  }

 private:
  bool Load(const std::string& file, const std::string& text, CCmdMessage& message) const {
    bool refused = false;
    const bool loaded = LoadMessage(console_, file, LintCommand(text), [&] {
      refused = message.Load(text) != 0;
      return !refused;
    });
    if (refused) TellWhatWasRead(file, message);
    return loaded;
  }

  // A factory of the library returns the message all the same, so drivers may get to see it.
  void TellWhatWasRead(const std::string& file, const CCmdMessage& message) const {
    if (message.getRawCommand().empty() && message.GetParamMap().empty()) return;
    console_.Note(file,
                  {{}, fmt::format("a controller that ignores the failure goes on with {}", Title(message))});
  }

  static std::string Title(const CCmdMessage& message) {
    return fmt::format("command {}, {}", Quoted(message.getRawCommand()),
                       ParameterCount(message.GetParamMap().size()));
  }

  std::vector<Reading> Read(const CCmdMessage& message) {
    std::vector<Reading> readings;
    std::transform(requirements_.begin(), requirements_.end(), std::back_inserter(readings),
                   [this, &message](const Requirement& requirement) { return Read(message, requirement); });
    return readings;
  }

  Reading Read(const CCmdMessage& message, const Requirement& requirement) {
    Reading reading;
    reading.requirement = &requirement;
    reading.text = message.getParam(requirement.name);
    try {
      reading.result = ReadRequired(message, requirement);
    } catch (const ExceptionParameterMissing&) {
      reading.problem = WhyMissing(message, requirement.name);
    } catch (const ExceptionParameterInvalid&) {
      reading.problem = fmt::format("is outside {}..{}", requirement.min, requirement.max);
      if (!form_.Hides(requirement.name)) reading.problem += ": " + Quoted(reading.text);
    }
    if (form_.Hides(requirement.name)) reading.result = reading.text = tavrin::maskedValue;
    return reading;
  }

  static std::string WhyMissing(const CCmdMessage& message, const std::string& name) {
    const auto found = message.GetParamMap().find(name);
    if (found == message.GetParamMap().end()) return "is missing";
    return fmt::format("is variable {}, which has no value; --variable {}=VALUE supplies one",
                       VariableName(found->second), VariableName(found->second));
  }

  void Print(const std::string& file, const CCmdMessage& message, const std::vector<Reading>& readings) {
    headings_.Print(file, Title(message));
    if (!message.GetParamMap().empty()) Parameters(message).AsTable().Print(Console::Out(), console_);
    Table results({"REQUIRED", "READS AS", "TEXT"});
    for (const Reading& reading : readings) {
      if (reading.problem.empty())
        results.AddRow({reading.requirement->text, ResultText(reading.result), reading.text});
    }
    if (results.HasRows()) results.Print(Console::Out(), console_);
  }

  Json::Value AsJson(const std::string& file, const CCmdMessage& message,
                     const std::vector<Reading>& readings) {
    Json::Value document;
    document["file"] = file;
    document["command"] = message.getRawCommand();
    document["parameters"] = Parameters(message).AsJson();
    for (const Reading& reading : readings) {
      Json::Value entry;
      entry["name"] = reading.requirement->name;
      entry["requirement"] = reading.requirement->text;
      if (reading.problem.empty())
        entry["value"] = reading.result;
      else
        entry["problem"] = reading.problem;
      document["required"].append(entry);
    }
    return document;
  }

  ParameterView Parameters(const CCmdMessage& message) {
    return {message.GetParamMap(), variables_, form_.showSecrets};
  }

  static Status TellProblems(const std::string& file, const std::vector<Reading>& readings) {
    Status status = Status::Fine;
    for (const Reading& reading : readings) {
      if (reading.problem.empty()) continue;
      Console::Error(
          file,
          {{}, fmt::format("required parameter {} {}", Quoted(reading.requirement->name), reading.problem)});
      status = Status::No;
    }
    return status;
  }

  const MessageForm& form_;
  const Console& console_;
  Headings headings_;
  VariableStore variables_;
  std::vector<Requirement> requirements_;
};

}  // namespace

void AddCommand(CLI::App& app, Session& session) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("command",
                         "Show command messages, XML or JSON, as a driver receives them:\n"
                         "the name, and the parameters in a table. Notes on the standard\n"
                         "error stream tell what the lenient loader passes over.");
  AddFileOption(*command, options->files);
  options->form.AddTo(*command);
  command
      ->add_option("--variable", options->variables,
                   "What a controller answers when it is asked for the\n"
                   "variable; may be repeated")
      ->type_name("DEVICE:VARIABLE=VALUE")
      ->allow_extra_args(false);
  command
      ->add_option("--require", options->requirements,
                   "Read the parameter as a driver that requires it,\n"
                   "and say what comes out; may be repeated.\n"
                   "KIND: int, uint, bool, double[,PRECISION], text,\n"
                   "or MIN..MAX, which is an int within bounds")
      ->type_name("NAME[:KIND]")
      ->allow_extra_args(false);
  command->callback(
      [options, &session] { session.status = ShowFiles<CommandViewer>(*options, session.console); });
}

}  // namespace tool
