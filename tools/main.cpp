#include <CLI/CLI.hpp>

#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <tavrin_diagnostics/Diagnostics.h>

#include "CommandLine.h"
#include "Status.h"
#include "Text.h"

namespace {

using tool::Status;

// The option or subcommand that the first unknown word is nearest to, "" without one.
std::string SpellingHint(const CLI::App& app) {
  const auto unknown = app.remaining(true);
  if (unknown.empty()) return "";
  std::vector<std::string> known;
  const auto addOptions = [&known](const CLI::App& command) {
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
    }
  };
  addOptions(app);
  for (const CLI::App* subcommand : app.get_subcommands()) addOptions(*subcommand);
  if (app.get_subcommands().empty()) {
    for (const CLI::App* subcommand : app.get_subcommands({})) known.push_back(subcommand->get_name());
  }
  const std::string word = unknown.front().substr(0, unknown.front().find('='));
  return tavrin::diagnostics::NearestName(word, known);
}

// CLI11 has exit codes of its own; ours are those of --help.
Status ReportParseError(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(error);
    return Status::Fine;
  }
  std::string command = app.get_name();
  for (const CLI::App* subcommand : app.get_subcommands()) command += ' ' + subcommand->get_name();
  std::string problem = error.what();
  if (const auto unknown = app.remaining(); app.get_subcommands().empty() && !unknown.empty())
    problem = "there is no subcommand or option " + tool::Quoted(unknown.front());
  else if (!unknown.empty())
    problem = "there is no option " + tool::Quoted(unknown.front());
  if (const std::string hint = SpellingHint(app); !hint.empty()) problem += "; did you mean " + hint + '?';
  std::cerr << "tavrin: " << problem << "\nTry '" << command << " --help'.\n";
  return Status::Usage;
}

Status Run(int argc, char** argv) {
  tool::Session session;
  CLI::App app;
  tool::DescribeCommandLine(app, session);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    session.status = ReportParseError(app, error);
  }
  return session.status;
}

// A full disk shows at the latest when the last of the output is written.
Status FlushOutput() {
  errno = 0;
  if (std::cout.flush()) return Status::Fine;
  std::cerr << "tavrin: the output cannot be written";
  if (errno != 0) std::cerr << ": " << std::generic_category().message(errno);
  std::cerr << '\n';
  return Status::Unreadable;
}

}  // namespace

int main(int argc, char** argv) {
  // A program that ignores this signal passes that on to those that it starts. A closed pipe then were an
  // error of ours, and not the end that a shell expects.
  std::signal(SIGPIPE, SIG_DFL);
  Status status = Status::Unreadable;
  try {
    status = Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "tavrin: " << error.what() << '\n';
  }
  return static_cast<int>(tool::Worst(status, FlushOutput()));
}
