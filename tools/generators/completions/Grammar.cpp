#include "Grammar.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <sstream>

#include "tools/tavrin/CommandLine.h"

namespace completions {
namespace {

// Returns the first sentence of a help text on one line.
std::string Brief(std::string help) {
  std::replace(help.begin(), help.end(), '\n', ' ');
  for (const char* const end : {". ", ": ", "; "}) help.resize(std::min(help.find(end), help.size()));
  if (!help.empty() && help.back() == '.') help.pop_back();
  return help;
}

// CLI11 appends a membership check to the name of a type, as in "WHEN:{auto,always,never}".
Argument ArgumentOf(const CLI::Option& option) {
  if (option.get_items_expected_max() == 0) return {};
  const std::string type = option.get_positional() ? option.get_name(true) : option.get_type_name();
  const std::size_t brace = type.find(":{");
  if (brace != std::string::npos) {
    Argument choice{Argument::Kind::choice, type.substr(0, brace), {}};
    std::istringstream words(type.substr(brace + 2, type.size() - brace - 3));
    for (std::string word; std::getline(words, word, ',');) choice.choices.push_back(word);
    return choice;
  }
  return {type.compare(0, 4, "FILE") == 0 ? Argument::Kind::file : Argument::Kind::word, type, {}};
}

Option OptionOf(const CLI::App& app, const CLI::Option& option) {
  Option result{{}, Brief(option.get_description()), ArgumentOf(option), false};
  for (const std::string& name : option.get_snames()) result.names.push_back('-' + name);
  for (const std::string& name : option.get_lnames()) result.names.push_back("--" + name);
  result.endsAll = &option == app.get_help_ptr() || &option == app.get_version_ptr();
  return result;
}

Command CommandOf(const CLI::App& app) {
  Command command{app.get_name(), Brief(app.get_description()), {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional())
      command.operand = ArgumentOf(*option);
    else
      command.options.push_back(OptionOf(app, *option));
  }
  return command;
}

// The options of the program may also follow a subcommand.
void Inherit(Command& subcommand, const Command& program) {
  for (const Option& option : program.options) {
    const auto isSame = [&option](const Option& own) { return own.names == option.names; };
    if (std::none_of(subcommand.options.begin(), subcommand.options.end(), isSame))
      subcommand.options.push_back(option);
  }
}

}  // namespace

Grammar DescribeTool() {
  tool::Session session;
  CLI::App app;
  tool::DescribeCommandLine(app, session);
  Grammar grammar{CommandOf(app), {}};
  grammar.program.operand = {Argument::Kind::choice, "SUBCOMMAND", {}};
  for (const CLI::App* description : app.get_subcommands({})) {
    Command& subcommand = grammar.subcommands.emplace_back(CommandOf(*description));
    Inherit(subcommand, grammar.program);
    grammar.program.operand.choices.push_back(subcommand.name);
  }
  return grammar;
}

std::vector<std::string> NamesOf(const std::vector<Option>& options) {
  std::vector<std::string> names;
  for (const Option& option : options) names.insert(names.end(), option.names.begin(), option.names.end());
  return names;
}

}  // namespace completions
