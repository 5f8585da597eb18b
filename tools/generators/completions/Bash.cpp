#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "Shells.h"

namespace completions {
namespace {

constexpr char head[] = R"(# Completes the command line of {0} in bash.

# Sets `expected` to the value that follows an option of a subcommand: FILE, WORD if it cannot be completed, or
# the words to choose from. Without an option it is the operand; after "-" it is the options themselves.
_{0}_expect() {{
  case $1:$2 in
)";

constexpr char tail[] = R"(    *) expected= ;;
  esac
}}

_{0}() {{
  local subcommand= expected= last= word index
  local current=${{COMP_WORDS[COMP_CWORD]}}
  for ((index = 1; index <= COMP_CWORD; ++index)); do
    word=${{COMP_WORDS[index]}}
    if [[ $word == +([:=]) ]]; then # bash treats the text before and after these as words
      expected=$last
      ((index < COMP_CWORD)) || current=
    elif ((index == COMP_CWORD)); then
      break
    elif [[ $expected ]]; then
      expected=
    elif [[ $word == -* ]]; then
      _{0}_expect "$subcommand" "$word"
      last=$expected
    else
      subcommand=${{subcommand:-$word}}
      last=
    fi
  done

  if [[ ! $expected ]]; then
    [[ $current == -* ]] && word=- || word=
    _{0}_expect "$subcommand" "$word"
  fi
  COMPREPLY=()
  case $expected in
    FILE) compopt -o default ;;
    WORD) ;;
    *) mapfile -t COMPREPLY < <(compgen -W "$expected" -- "$current") ;;
  esac
}}

complete -F _{0} {0}
)";

std::string Expected(const Argument& argument) {
  switch (argument.kind) {
    case Argument::Kind::file:
      return "FILE";
    case Argument::Kind::word:
      return "WORD";
    case Argument::Kind::choice:
      return fmt::format("'{}'", fmt::join(argument.choices, " "));
    case Argument::Kind::none:
      break;
  }
  return "";
}

std::string CasesOf(const std::string& subcommand, const Command& command) {
  std::string text;
  const auto add = [&](const std::vector<std::string>& options, const std::string& expected) {
    std::vector<std::string> patterns;
    std::transform(options.begin(), options.end(), std::back_inserter(patterns),
                   [&](const std::string& option) { return subcommand + ":" + option; });
    text += fmt::format("    {}) expected={} ;;\n", fmt::join(patterns, " | "), expected);
  };
  add({""}, Expected(command.operand));
  add({"-"}, fmt::format("'{}'", fmt::join(NamesOf(command.options), " ")));
  for (const Option& option : command.options) {
    if (option.argument.kind != Argument::Kind::none) add(option.names, Expected(option.argument));
  }
  return text;
}

}  // namespace

std::string ForBash(const Grammar& grammar) {
  const std::string& name = grammar.program.name;
  std::string script = fmt::format(head, name) + CasesOf("", grammar.program);
  for (const Command& subcommand : grammar.subcommands) script += CasesOf(subcommand.name, subcommand);
  return script + fmt::format(tail, name);
}

}  // namespace completions
