#pragma once

#include "Subcommands.h"

namespace tool {

// Adds the whole command line to the app. Parsing runs a subcommand, which sets the session's status. The app
// must not outlive the session.
void DescribeCommandLine(CLI::App& app, Session& session);

// Parses the command line, runs its subcommand, and returns the status. Reports usage errors on the standard
// error stream.
Status RunCommandLine(int argc, char** argv);

}  // namespace tool
