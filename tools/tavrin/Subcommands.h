#pragma once

#include "Console.h"
#include "Status.h"

namespace CLI {
class App;
}

namespace tool {

// One run of the program: the inputs of its subcommand, and its status.
struct Session {
  Console console;
  Status status = Status::success;
};

// Each function adds a subcommand with a callback that runs it and sets the session's status. Usage errors
// that only the callback detects are thrown as CLI::ParseError.
void AddBinding(CLI::App& app, Session& session);
void AddColor(CLI::App& app, Session& session);
void AddCommand(CLI::App& app, Session& session);
void AddConditional(CLI::App& app, Session& session);
void AddExplain(CLI::App& app, Session& session);
void AddMake(CLI::App& app, Session& session);
void AddRules(CLI::App& app, Session& session);
void AddValidate(CLI::App& app, Session& session);

}  // namespace tool
