#pragma once

#include <log4cplus/logger.h>

#include <string>

namespace tavrin {

// Where a log record comes from. The file is a fixed text, the same in every build directory.
struct LogSource {
  const char* file;
  int line;
  const char* function;
};

// Writes one record through the root logger where the level is enabled, starting logging up where nobody has.
void Log(log4cplus::LogLevel level, const std::string& message, const LogSource& source);

// Writes a warning and then the call stack, one record a frame.
void WarnWithStack(const std::string& message, const LogSource& source);

}  // namespace tavrin
