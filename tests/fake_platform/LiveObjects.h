// Counts the objects of the test platform that are in use, for tests of what the library keeps alive.
#pragma once

#include <tavrin_platform/Export.h>
#include <atomic>

struct LiveObjects {
  std::atomic<int> nodes{0};  // owned by pointers
  std::atomic<int> documents{0};
};

TAVRIN_EXPORT extern LiveObjects liveObjects;
