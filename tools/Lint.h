#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Console.h"

namespace tool {

using Findings = std::vector<Finding>;

// What the loader of a message does not tell: it returns -1 or throws what a library threw, and silently
// passes over whatever it does not know.
struct LintResult {
  Findings notes;     // what is passed over, in the order of the text
  Finding objection;  // what the loader objects to, with an empty text when it loads the message
};

// Ends a walk where the loader would give up.
class Objection : public std::runtime_error {
 public:
  Objection(const Place& place, const std::string& text) : std::runtime_error(text), place_(place) {}
  Finding finding() const { return {place_, what()}; }

 private:
  Place place_;
};

// What a walk over a text notes, in the order of the text, and what it throws.
LintResult Collect(const std::function<void(Findings& notes)>& walk);

// Where a text begins that is not blank. Throws Objection where there is nothing.
std::size_t BeginningOf(const std::string& text);

// Throws Objection to the character that a text begins with.
[[noreturn]] void ObjectToBeginning(const std::string& text, std::size_t first, const std::string& expected);

}  // namespace tool
