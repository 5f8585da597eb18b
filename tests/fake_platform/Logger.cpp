// A logger library that adds no appender, so the program configures logging. Its frames are addresses.

#include "tavrin_platform/Logger.h"

#include <execinfo.h>

#include <array>
#include <sstream>

std::atomic<bool> zq::Logger::hasBeenInitialized{false};

void zq::Logger::initialize() { hasBeenInitialized = true; }

[[gnu::noinline]] std::vector<std::string> zq::Logger::getStackFrames() {
  std::array<void*, 32> addresses{};
  const int count = backtrace(addresses.data(), static_cast<int>(addresses.size()));
  std::vector<std::string> frames;
  for (int i = 1; i < count; ++i) {  // the first frame is this function
    std::ostringstream text;
    text << addresses[static_cast<std::size_t>(i)];
    frames.push_back(text.str());
  }
  return frames;
}
