#pragma once

#include "Console.h"
#include "Status.h"

namespace CLI {
class App;
}

namespace tool {

// One run of the program: what its subcommand works with, and what came of it.
struct Session {
  Console console;
  Status status = Status::Fine;
};

// Each of these adds one subcommand, with a callback that runs it and sets the session's status. Mistakes in
// the command line that show only then are thrown as CLI::ParseError.
void AddBinding(CLI::App& app, Session& session);
void AddColor(CLI::App& app, Session& session);
void AddCommand(CLI::App& app, Session& session);
void AddConditional(CLI::App& app, Session& session);
void AddExplain(CLI::App& app, Session& session);
void AddMake(CLI::App& app, Session& session);
void AddRules(CLI::App& app, Session& session);
void AddValidate(CLI::App& app, Session& session);

}  // namespace tool
