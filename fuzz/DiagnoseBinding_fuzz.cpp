// The documented properties of the diagnostics of a binding, checked with the loader and a strict reader.

#include <tavrin_diagnostics/Diagnostics.h>
#include <iostream>
#include <string>

#include "DiagnosticsProperties.h"
#include "Require.h"
#include "Target.h"

void UseInput(const std::string& input) { tavrin::diagnostics::DiagnoseBinding(input); }

void CheckInput(const std::string& input) {
  const std::string broken = BrokenPropertyOfBinding(input);
  if (!broken.empty()) std::cerr << broken << '\n';
  Require(broken.empty(), "the diagnosis agrees with the loader");
}
