#include <CLI/CLI.hpp>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "Choices.h"
#include "CommandLine.h"
#include "Status.h"
#include "Text.h"

namespace {

using tool::Status;

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
    problem = "there is no subcommand or option " + tool::Quoted(WithoutMarks(unknown.front()));
  else if (!unknown.empty())
    problem = "there is no option " + tool::Quoted(WithoutMarks(unknown.front()));
  if (const auto unknown = app.remaining(true); !unknown.empty())
    problem += tool::SpellingHint(unknown.front().substr(0, unknown.front().find('=')), KnownWords(app));
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

Status Run(int argc, char** argv) {
  tool::Session session;
  CLI::App app;
  tool::DescribeCommandLine(app, session);
  RemoveOperandMarks(app);
  try {
    auto arguments = Arguments(argc, argv, app);
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    session.status = ReportParseError(app, error);
  }
  return session.status;
}

// A full device is detected at the latest when the last output is flushed.
Status FlushOutput() {
  errno = 0;
  if (std::cout.flush()) return Status::success;
  std::cerr << "tavrin: the output cannot be written";
  if (errno != 0) std::cerr << ": " << std::generic_category().message(errno);
  std::cerr << '\n';
  return Status::unreadable;
}

// log4cplus starts threads when it is loaded, and throws if the system has no resources for them.
[[noreturn]] void ReportTermination() {
  const std::exception_ptr reason = std::current_exception();
  if (!reason) std::abort();
  try {
    std::rethrow_exception(reason);
  } catch (const std::exception& error) {
    // The streams may not be initialised yet.
    const std::string text = std::string("tavrin: ") + error.what() + '\n';
    if (write(STDERR_FILENO, text.data(), text.size()) < 0) std::abort();
  }
  std::_Exit(static_cast<int>(Status::unreadable));
}

// Runs before the initialisation of shared libraries.
[[gnu::section(".preinit_array"), gnu::used]] void (*const setTerminationReport)() = [] {
  std::set_terminate(ReportTermination);
};

}  // namespace

int main(int argc, char** argv) {
  // A process that ignores this signal passes that on to its children. Without the default action, a closed
  // pipe would be reported as an error instead of ending the tool.
  std::signal(SIGPIPE, SIG_DFL);
  Status status = Status::unreadable;
  try {
    status = Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "tavrin: " << error.what() << '\n';
  }
  return static_cast<int>(tool::Worst(status, FlushOutput()));
}
