#pragma once

#include "Collector.h"

namespace tavrin::diagnostics {

// Checks a command in JSON. Throws a Refusal where the loader refuses it.
void CheckJsonCommand(Collector& collector);

}  // namespace tavrin::diagnostics
