#pragma once

#include <string>
#include <vector>

// The grammar of the command line, for the completions of shells.
namespace completions {

// The kind of argument of an option or an operand.
struct Argument {
  enum class Kind { none, word, choice, file };

  Kind kind = Kind::none;
  std::string name;                  // as in the help
  std::vector<std::string> choices;  // of a Choice
};

struct Option {
  std::vector<std::string> names;  // including the dashes
  std::string help;
  Argument argument;
  bool endsAll = false;  // ends the program, whatever else is on the command line
};

// The program, or one of its subcommands.
struct Command {
  std::string name;
  std::string help;
  std::vector<Option> options;  // all options that may follow
  Argument operand;             // for the program: its subcommands
};

struct Grammar {
  Command program;
  std::vector<Command> subcommands;
};

// Returns the grammar of the tool.
Grammar DescribeTool();

// Returns the names of all options.
std::vector<std::string> NamesOf(const std::vector<Option>& options);

}  // namespace completions
