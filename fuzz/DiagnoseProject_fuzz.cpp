// The documented properties of the diagnosis of a project, checked with the validator.

#include <tavrin_diagnostics/Diagnostics.h>
#include <iostream>
#include <string>

#include "DiagnosticsProperties.h"
#include "Require.h"
#include "Target.h"

void UseInput(const std::string& input) { tavrin::diagnostics::DiagnoseProject(std::string(input)); }

void CheckInput(const std::string& input) {
  const std::string broken = BrokenPropertyOfProject(input);
  if (!broken.empty()) std::cerr << broken << '\n';
  Require(broken.empty(), "the diagnosis agrees with the validator");
}
