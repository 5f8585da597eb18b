#pragma once

#include <string>

// The functions that a fuzz target defines. They terminate the program if a property is violated.
// LibFuzzer.cpp makes a fuzzer of a target, Replay.cpp a test.

// Processes an input as a program would, without checks. Its memory is bounded.
void UseInput(const std::string& input);

// Checks all properties of the target for an input.
void CheckInput(const std::string& input);
