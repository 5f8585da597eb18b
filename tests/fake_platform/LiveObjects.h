// How many objects of the test platform are in use, for tests of what the library keeps.
#pragma once

#include <tavrin_platform/Export.h>
#include <atomic>

struct LiveObjects {
  std::atomic<int> nodes{0};  // that pointers own
  std::atomic<int> documents{0};
};

TAVRIN_EXPORT extern LiveObjects liveObjects;
