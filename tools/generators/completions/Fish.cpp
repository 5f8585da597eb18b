#include <fmt/format.h>

#include "Shells.h"

namespace completions {
namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "'";
}

std::string NamesOf(const Option& option) {
  std::string text;
  for (const std::string& name : option.names)
    text += name[1] == '-' ? " -l " + name.substr(2) : " -s " + name.substr(1);
  return text;
}

std::string ArgumentOf(const Option& option) {
  switch (option.argument.kind) {
    case Argument::Kind::file:
      return " -r -F";
    case Argument::Kind::word:
      return " -x";
    case Argument::Kind::choice:
      return fmt::format(" -x -a '{}'", fmt::join(option.argument.choices, " "));
    case Argument::Kind::none:
      break;
  }
  return "";
}

std::string OptionsOf(const std::string& program, const std::string& condition, const Command& command) {
  std::string text;
  for (const Option& option : command.options) {
    text += fmt::format("complete -c {} -n {}{}{} -d {}\n", program, Quoted(condition), NamesOf(option),
                        ArgumentOf(option), Quoted(option.help));
  }
  return text;
}

}  // namespace

std::string ForFish(const Grammar& grammar) {
  const std::string& program = grammar.program.name;
  std::string script =
      fmt::format("# Completes the command line of {0} in fish.\n\ncomplete -c {0} -f\n", program);
  const auto& names = grammar.program.operand.choices;
  const std::string before = fmt::format("not __fish_seen_subcommand_from {}", fmt::join(names, " "));
  script += OptionsOf(program, before, grammar.program);
  for (const Command& subcommand : grammar.subcommands) {
    const std::string behind = "__fish_seen_subcommand_from " + subcommand.name;
    script += fmt::format("\ncomplete -c {} -n {} -a {} -d {}\n", program, Quoted(before), subcommand.name,
                          Quoted(subcommand.help));
    if (subcommand.operand.kind == Argument::Kind::file)
      script += fmt::format("complete -c {} -n {} -F\n", program, Quoted(behind));
    script += OptionsOf(program, behind, subcommand);
  }
  return script;
}

}  // namespace completions
