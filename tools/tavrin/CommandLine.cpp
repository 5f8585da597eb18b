#include "CommandLine.h"

#include <CLI/CLI.hpp>

#include "Choices.h"

namespace tool {

void DescribeCommandLine(CLI::App& app, Session& session) {
  app.name("tavrin");
  app.description("Shows and checks the messages, colours and projects of a home-automation controller.");
  app.set_version_flag("--version", "tavrin " TAVRIN_VERSION, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.add_option("--color", session.console.colorChoice,
                 "Colour the output. auto: if it is a terminal, unless\n"
                 "NO_COLOR is set or TERM is dumb")
      ->check(OneOf({"auto", "always", "never"}))
      ->type_name("WHEN")
      ->take_last();
  app.footer(statusHelp);
  app.fallthrough();
  app.require_subcommand(1);
  AddCommand(app, session);
  AddBinding(app, session);
  AddConditional(app, session);
  AddColor(app, session);
  AddValidate(app, session);
  AddMake(app, session);
  AddRules(app, session);
  AddExplain(app, session);
}

}  // namespace tool
