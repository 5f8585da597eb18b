#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "Choices.h"
#include "CommandLine.h"
#include "Text.h"

namespace tool {
namespace {

// Operands after "--" get this prefix, so that none of them is parsed as an option or a subcommand. CLI11
// supports "--" only after a subcommand, and ignores it if all required operands precede it.
constexpr char operandMark = '\0';

std::string WithoutMarks(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), operandMark), text.end());
  return text;
}

std::vector<std::string> SubcommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* subcommand : app.get_subcommands({})) names.push_back(subcommand->get_name());
  return names;
}

// Returns the long options and the subcommands that are valid here.
std::vector<std::string> KnownWords(const CLI::App& app) {
  std::vector<std::string> known =
      app.get_subcommands().empty() ? SubcommandNames(app) : std::vector<std::string>();
  const auto addOptions = [&known](const CLI::App& command) {
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
    }
  };
  addOptions(app);
  for (const CLI::App* subcommand : app.get_subcommands()) addOptions(*subcommand);
  return known;
}

// The exit statuses of CLI11 are replaced by those in --help.
Status ReportParseError(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(error);
    return Status::success;
  }
  std::string command = app.get_name();
  for (const CLI::App* subcommand : app.get_subcommands()) command += ' ' + subcommand->get_name();
  std::string problem = WithoutMarks(error.what());
  if (const auto unknown = app.remaining(); app.get_subcommands().empty() && !unknown.empty())
    problem = "there is no subcommand or option " + Quoted(WithoutMarks(unknown.front()));
  else if (!unknown.empty())
    problem = "there is no option " + Quoted(WithoutMarks(unknown.front()));
  if (const auto unknown = app.remaining(true); !unknown.empty())
    problem += SpellingHint(unknown.front().substr(0, unknown.front().find('=')), KnownWords(app));
  std::cerr << "tavrin: " << problem << "\nTry '" << command << " --help'.\n";
  return Status::usage;
}

// Returns the arguments in reverse order, as the parser expects them.
std::vector<std::string> Arguments(int argc, char** argv, const CLI::App& app) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
  if (dashes != arguments.end()) {
    const std::vector<std::string> subcommands = SubcommandNames(app);
    const bool hasSubcommand =
        std::find_first_of(arguments.begin(), dashes, subcommands.begin(), subcommands.end()) != dashes;
    auto operand = arguments.erase(dashes);
    if (!hasSubcommand && operand != arguments.end()) ++operand;  // the subcommand
    for (; operand != arguments.end(); ++operand) operand->insert(0, 1, operandMark);
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

void RemoveOperandMarks(CLI::App& app) {
  const CLI::Validator removeMarks(
      [](std::string& operand) {
        operand = WithoutMarks(std::move(operand));
        return std::string();
      },
      "");
  for (CLI::App* subcommand : app.get_subcommands({})) {
    for (CLI::Option* option : subcommand->get_options()) {
      if (option->get_positional()) option->transform(removeMarks);
    }
  }
}

}  // namespace

Status RunCommandLine(int argc, char** argv) {
  Session session;
  CLI::App app;
  DescribeCommandLine(app, session);
  RemoveOperandMarks(app);
  try {
    auto arguments = Arguments(argc, argv, app);
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    session.status = ReportParseError(app, error);
  }
  return session.status;
}

}  // namespace tool
