#pragma once

#include <string>

// What a fuzz target defines: checks everything that it claims about one input, and ends the program where a
// claim does not hold. LibFuzzer.cpp makes a fuzzer of it, Replay.cpp a test.
void CheckInput(const std::string& input);
