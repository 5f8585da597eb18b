#include "LogWithStack.h"

#include <fmt/format.h>

#include <tavrin_platform/internal/RootLogger.h>
#include <cstddef>

using zq::internal::RootLogger;

namespace {

// In a statically linked program this runs before all constructors that may log.
[[gnu::init_priority(101)]] const RootLogger::TakenAtLoad rootLogger;

}  // namespace

bool tavrin::IsLogged(log4cplus::LogLevel level) {
  const log4cplus::Logger* root = RootLogger::Get();
  if (root == nullptr) return false;
  if (!zq::Logger::hasBeenInitialized) zq::Logger::initialize();
  return root->isEnabledFor(level);
}

void tavrin::Log(log4cplus::LogLevel level, std::string_view message, const LogSource& source) {
  if (IsLogged(level))
    RootLogger::Get()->forcedLog(level, std::string(message), source.file, source.line, source.function);
}

void tavrin::WarnWithFrames(const std::vector<std::string>& frames, const LogSource& source) {
  for (std::size_t i = 0; i < frames.size(); ++i)
    Log(log4cplus::WARN_LOG_LEVEL, fmt::format("{}# {}", i, frames[i]), source);
}
