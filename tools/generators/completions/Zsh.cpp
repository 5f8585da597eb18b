#include <fmt/format.h>

#include "Shells.h"

namespace completions {
namespace {

// Quotes a string, with a backslash before characters that end a part of an argument's description.
std::string Escaped(const std::string& text, const std::string& special) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'')
      escaped += R"('\'')";
    else
      (special.find(c) != std::string::npos ? escaped += '\\' : escaped) += c;
  }
  return escaped;
}

std::string Described(const Argument& argument) {
  const std::string name = Escaped(argument.name, ":");
  switch (argument.kind) {
    case Argument::Kind::file:
      return fmt::format(":{}:_files", name);
    case Argument::Kind::word:
      return fmt::format(":{}: ", name);
    case Argument::Kind::choice:
      return fmt::format(":{}:({})", name, fmt::join(argument.choices, " "));
    case Argument::Kind::none:
      break;
  }
  return "";
}

// Returns an option without an argument, with an argument after a space or "=" repeatedly, or once.
std::string Described(const std::string& name, const Option& option) {
  const bool isFlag = option.argument.kind == Argument::Kind::none;
  return fmt::format("{}{}{}[{}]{}",
                     option.endsAll ? "(- *)"
                     : isFlag       ? ""
                                    : "*",
                     name, isFlag ? "" : "=", Escaped(option.help, "[]\\"), Described(option.argument));
}

std::string OptionsOf(const Command& command, const std::string& indent) {
  std::string text;
  for (const Option& option : command.options) {
    for (const std::string& name : option.names)
      text += fmt::format("{}'{}' \\\n", indent, Described(name, option));
  }
  return text;
}

std::string CaseOf(const Command& subcommand) {
  return fmt::format("        {})\n          _arguments -s \\\n{}            '*{}'\n          ;;\n",
                     subcommand.name, OptionsOf(subcommand, "            "), Described(subcommand.operand));
}

}  // namespace

std::string ForZsh(const Grammar& grammar) {
  std::string names;
  std::string cases;
  for (const Command& subcommand : grammar.subcommands) {
    names += fmt::format("        '{}:{}'\n", subcommand.name, Escaped(subcommand.help, ""));
    cases += CaseOf(subcommand);
  }
  return fmt::format(R"(#compdef {0}
# Completes the command line of {0} in zsh.

_{0}() {{
  local curcontext=$curcontext state line
  local -a subcommands
  _arguments -C \
{1}    '1:subcommand:->subcommand' \
    '*::argument:->argument'
  case $state in
    subcommand)
      subcommands=(
{2}      )
      _describe subcommand subcommands
      ;;
    argument)
      curcontext=${{curcontext%:*:*}}:{0}-$line[1]:
      case $line[1] in
{3}      esac
      ;;
  esac
}}

_{0} "$@"
)",
                     grammar.program.name, OptionsOf(grammar.program, "    "), names, cases);
}

}  // namespace completions
