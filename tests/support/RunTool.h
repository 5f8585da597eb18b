#pragma once

#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"

// Runs the tool in the directory of the examples.
inline ProgramOutcome Tool(std::vector<std::string> arguments, const std::string& input = "") {
  ProgramRun run;
  run.commandLine = std::move(arguments);
  run.commandLine.insert(run.commandLine.begin(), TAVRIN_TOOL);
  run.input = input;
  run.directory = TAVRIN_EXAMPLES_DIR;
  return RunProgram(run);
}
