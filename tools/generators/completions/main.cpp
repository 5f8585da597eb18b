#include <iostream>
#include <map>
#include <optional>
#include <string>

#include "Arguments.h"
#include "Shells.h"

// An exception terminates the program and fails the build.
int main(int argc, char** argv) {
  using namespace completions;
  const std::map<std::string, std::string (*)(const Grammar&)> writers{
      {"bash", ForBash}, {"fish", ForFish}, {"zsh", ForZsh}};
  std::string shell;
  generators::Arguments arguments("Writes the script that completes the command line of tavrin for a shell.");
  arguments.AddOperand("SHELL", shell, {"bash", "fish", "zsh"}, "bash, fish or zsh");
  if (const std::optional<int> status = arguments.Parse(argc, argv)) return *status;

  std::cout << writers.at(shell)(DescribeTool()) << std::flush;
  return std::cout ? 0 : 1;
}
