// What the diagnostics of a conditional promise, against the loader and a strict reading.

#include <iostream>
#include <string>

#include "Require.h"
#include "Target.h"
#include "diagnostics/Properties.h"

void CheckInput(const std::string& input) {
  const std::string broken = BrokenPropertyOfConditional(input);
  if (!broken.empty()) std::cerr << broken << '\n';
  Require(broken.empty(), "the diagnosis agrees with the loader");
}
