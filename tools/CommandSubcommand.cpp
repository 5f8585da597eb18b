#include <fmt/format.h>

#include <json/value.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "CommandLint.h"
#include "Input.h"
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
  bool xml = false;
  bool dump = false;
  bool json = false;
  bool showSecrets = false;
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
  CommandViewer(const Options& options, const Console& console) : options_(options), console_(console) {
    for (const std::string& variable : options.variables) variables_.Set(variable);
    std::transform(options.requirements.begin(), options.requirements.end(),
                   std::back_inserter(requirements_), ParseRequirement);
  }

  Status Show(const std::string& file, const std::string& text) {
    CCmdMessage message(variables_, 0);
    const LintResult lint = LintCommand(text);
    for (const Finding& note : lint.notes) console_.Note(file, note);
    if (!Load(file, text, message, lint.objection)) return Status::Unreadable;
    const std::vector<Reading> readings = Read(message);
    if (options_.xml)
      Console::Out() << message.toXml(!options_.showSecrets) << '\n';
    else if (options_.dump)
      message.print(Console::Out()) << '\n';
    else if (options_.json)
      Console::WriteJson(AsJson(file, message, readings));
    else
      Print(file, message, readings);
    return TellProblems(file, readings);
  }

 private:
  // What the library says is what counts; the objection explains it.
  bool Load(const std::string& file, const std::string& text, CCmdMessage& message,
            const Finding& objection) const {
    const auto fail = [&](const std::string& error) {
      Console::Error(file, objection.text.empty() ? Finding{{}, error} : objection);
      return false;
    };
    try {
      if (message.Load(text) == 0) return true;
      fail("the text does not hold a command");
      TellWhatWasRead(file, message);
      return false;
    } catch (const zq::ZqError& error) {
      return fail(Printable(error.what()));
    } catch (const Json::Exception& error) {
      return fail(Printable(error.what()));
    }
  }

  // A factory of the library returns the message all the same, so drivers may get to see it.
  void TellWhatWasRead(const std::string& file, const CCmdMessage& message) const {
    if (message.getRawCommand().empty() && message.GetParamMap().empty()) return;
    console_.Note(file,
                  {{}, fmt::format("a controller that ignores the failure goes on with {}", Title(message))});
  }

  static std::string Title(const CCmdMessage& message) {
    const std::size_t count = message.GetParamMap().size();
    return fmt::format("command {}, {} parameter{}", Quoted(message.getRawCommand()), count,
                       count == 1 ? "" : "s");
  }

  bool Hides(const std::string& name) const { return !options_.showSecrets && tavrin::IsSecret(name); }

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
      if (!Hides(requirement.name)) reading.problem += ": " + Quoted(reading.text);
    }
    if (Hides(requirement.name)) reading.result = reading.text = tavrin::maskedValue;
    return reading;
  }

  static std::string WhyMissing(const CCmdMessage& message, const std::string& name) {
    const auto found = message.GetParamMap().find(name);
    if (found == message.GetParamMap().end()) return "is missing";
    return fmt::format("is variable {}, which has no value; --variable {}=VALUE supplies one",
                       VariableName(found->second), VariableName(found->second));
  }

  void Print(const std::string& file, const CCmdMessage& message, const std::vector<Reading>& readings) {
    std::ostream& out = Console::Out();
    if (printedBefore_) out << '\n';
    printedBefore_ = true;
    out << Printable(file) << ": " << console_.Paint(Title(message), fmt::emphasis::bold) << '\n';
    if (!message.GetParamMap().empty()) Parameters(message).AsTable().Print(out, console_);
    Table results({"REQUIRED", "READS AS", "TEXT"});
    for (const Reading& reading : readings) {
      if (reading.problem.empty())
        results.AddRow({reading.requirement->text, ResultText(reading.result), reading.text});
    }
    if (results.HasRows()) results.Print(out, console_);
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
    return {message.GetParamMap(), variables_, options_.showSecrets};
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

  const Options& options_;
  const Console& console_;
  VariableStore variables_;
  std::vector<Requirement> requirements_;
  bool printedBefore_ = false;
};

Status Run(const Options& options, const Console& console) {
  if (options.dump && !options.showSecrets)
    throw CLI::ValidationError("--dump",
                               "the printed form masks no secrets, so --show-secrets is needed with it");
  CommandViewer viewer(options, console);
  return ForEachFile(options.files, [&viewer](const std::string& name, const std::string& content) {
    return viewer.Show(name, content);
  });
}

}  // namespace

void AddCommand(CLI::App& app, Session& session) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      app.add_subcommand("command",
                         "Show command messages, XML or JSON, as a driver receives them:\n"
                         "the name, and the parameters in a table. Notes on the standard\n"
                         "error stream tell what the lenient loader passes over.");
  command->add_option("FILE", options->files, "A file with one message; \"-\" is the standard input")
      ->required()
      ->type_name("");
  CLI::Option* const xml =
      command->add_flag("--xml", options->xml, "Print the XML form instead of the table");
  CLI::Option* const dump = command->add_flag("--dump", options->dump,
                                              "Print the form for logs instead, unescaped; it\n"
                                              "never masks a secret: needs --show-secrets");
  CLI::Option* const json = command->add_flag("--json", options->json,
                                              "Print a JSON document instead, one line a file;\n"
                                              "everything but ASCII is escaped");
  xml->excludes(dump)->excludes(json);
  dump->excludes(json);
  command->add_flag("--show-secrets", options->showSecrets,
                    "Show the values of parameters named \"pin\" or\n"
                    "with \"password\" in the name, not ******");
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
  command->callback([options, &session] { session.status = Run(*options, session.console); });
}

}  // namespace tool
