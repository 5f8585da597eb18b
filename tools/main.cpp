#include <CLI/CLI.hpp>

#include <cerrno>
#include <exception>
#include <iostream>
#include <string>
#include <system_error>

#include "CommandLine.h"
#include "Status.h"
#include "Text.h"

namespace {

using tool::Status;

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
  Status status = Status::Unreadable;
  try {
    status = Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "tavrin: " << error.what() << '\n';
  }
  return static_cast<int>(tool::Worst(status, FlushOutput()));
}
