#pragma once

#include <string>

// What a fuzz target defines. Each of them ends the program where a claim does not hold. LibFuzzer.cpp makes
// a fuzzer of a target, Replay.cpp a test.

// Does with an input what a program does, and nothing else. The memory that it takes is bounded.
void UseInput(const std::string& input);

// Checks everything else that the target claims about an input.
void CheckInput(const std::string& input);
