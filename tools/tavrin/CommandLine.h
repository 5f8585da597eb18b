#pragma once

#include "Subcommands.h"

namespace tool {

// Describes the whole command line to the app. Parsing it then runs a subcommand, which sets the session's
// status; the app lives no longer than the session.
void DescribeCommandLine(CLI::App& app, Session& session);

}  // namespace tool
