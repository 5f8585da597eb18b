// The faults that a test can switch on in the test platform.
#pragma once

#include <tavrin_platform/Export.h>
#include <string>

struct PlatformFaults {
  bool noRoot = false;        // documents have no root
  bool noIterator = false;    // elements have no iterator
  std::string documentError;  // parsing throws a std::length_error with this message, unless it is ""
  std::string rootError;      // requesting the root throws a ZqError
  std::string nameError;      // comparing a name throws a ZqError
};

TAVRIN_EXPORT extern PlatformFaults platformFaults;
