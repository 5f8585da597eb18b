#pragma once

#include <string>

#include "Grammar.h"

namespace completions {

// Returns the script that completes command lines of a grammar.
std::string ForBash(const Grammar& grammar);
std::string ForFish(const Grammar& grammar);
std::string ForZsh(const Grammar& grammar);

}  // namespace completions
