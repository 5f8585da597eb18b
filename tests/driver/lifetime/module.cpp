// A module that uses the library, for host.cpp to load.

#include <tavrin_platform/Export.h>
#include <string>

#include "Operations.h"

extern "C" TAVRIN_EXPORT void RunOperationOfModule(const char* name, std::string& result) {
  result = RunOperation(name);
}
