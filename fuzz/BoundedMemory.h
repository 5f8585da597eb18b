#pragma once

#include <string>

// Runs UseInput(), and requires that it takes memory in proportion to the length of the input.
void CheckMemory(const std::string& input);
