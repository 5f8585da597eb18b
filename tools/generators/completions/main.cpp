#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <string>

#include "Shells.h"
#include "tools/tavrin/CommandLine.h"

// An exception terminates the program and fails the build.
int main(int argc, char** argv) {
  using namespace completions;
  const std::map<std::string, std::string (*)(const Grammar&)> writers{
      {"bash", ForBash}, {"fish", ForFish}, {"zsh", ForZsh}};
  CLI::App options("Writes the script that completes the command line of tavrin for a shell.");
  std::string shell;
  options.add_option("SHELL", shell, "bash, fish or zsh")
      ->required()
      ->check(CLI::IsMember(writers))
      ->type_name("");
  CLI11_PARSE(options, argc, argv);

  tool::Session session;
  CLI::App tavrin;
  tool::DescribeCommandLine(tavrin, session);
  std::cout << writers.at(shell)(Describe(tavrin)) << std::flush;
  return std::cout ? 0 : 1;
}
