#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

// What may stand on a command line, as shells need it to complete one.
namespace completions {

// What an option or an operand takes.
struct Argument {
  enum class Kind { None, Word, Choice, File };

  Kind kind = Kind::None;
  std::string name;                  // as the help calls it
  std::vector<std::string> choices;  // of a Choice
};

struct Option {
  std::vector<std::string> names;  // with their dashes
  std::string help;
  Argument argument;
  bool endsAll = false;  // nothing else matters beside it
};

// The program, or one of its subcommands.
struct Command {
  std::string name;
  std::string help;
  std::vector<Option> options;  // all that may stand behind it
  Argument operand;             // the program's are its subcommands
};

struct Grammar {
  Command program;
  std::vector<Command> subcommands;
};

Grammar Describe(const CLI::App& app);

// The names of options in one list.
std::vector<std::string> NamesOf(const std::vector<Option>& options);

}  // namespace completions
