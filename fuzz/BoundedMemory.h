#pragma once

#include <string>

// Runs UseInput(), and requires that its memory is proportional to the length of the input.
void CheckMemory(const std::string& input);
