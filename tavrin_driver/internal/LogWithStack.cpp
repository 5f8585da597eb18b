#include "LogWithStack.h"

#include <fmt/format.h>
#include <log4cplus/logger.h>

#include <cstddef>

namespace {

// A log4cplus logger is a handle; writing through it changes nothing that is ours.
const log4cplus::Logger root = log4cplus::Logger::getRoot();

}  // namespace

bool tavrin::IsLogged(log4cplus::LogLevel level) {
  if (!zq::Logger::hasBeenInitialized) zq::Logger::initialize();
  return root.isEnabledFor(level);
}

void tavrin::Log(log4cplus::LogLevel level, std::string_view message, const LogSource& source) {
  if (IsLogged(level)) root.forcedLog(level, std::string(message), source.file, source.line, source.function);
}

void tavrin::WarnWithFrames(const std::vector<std::string>& frames, const LogSource& source) {
  for (std::size_t i = 0; i < frames.size(); ++i)
    Log(log4cplus::WARN_LOG_LEVEL, fmt::format("{}# {}", i, frames[i]), source);
}
