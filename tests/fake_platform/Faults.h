// What goes wrong in the test platform while a test wants it to.
#pragma once

#include <tavrin_platform/Export.h>
#include <string>

struct PlatformFaults {
  bool noRoot = false;        // documents have no root
  bool noIterator = false;    // elements have no iterator
  std::string documentError;  // parsing throws a std::length_error with this text unless it is ""
  std::string rootError;      // asking for a root throws a ZqError
  std::string nameError;      // comparing a name throws a ZqError
};

TAVRIN_EXPORT extern PlatformFaults platformFaults;
