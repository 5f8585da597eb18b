#pragma once

#include <log4cplus/loglevel.h>

#include <tavrin_platform/Logger.h>
#include <string>
#include <string_view>
#include <vector>

// Functions that write the log records of the library to the root logger of log4cplus, which is obtained when
// the library is loaded. Logging is initialised before the first record, unless the program has done so.
// Records are dropped once the static objects of the library are destroyed, because log4cplus may be
// destroyed by then.
namespace tavrin {

// The source of a log record. The file is a fixed string, the same in every build directory. The function is
// its full signature, as in __PRETTY_FUNCTION__.
struct LogSource {
  const char* file;
  int line;
  const char* function;
};

// Returns whether a record of that level would be written. Call it before formatting a record.
bool IsLogged(log4cplus::LogLevel level);

// Writes one record if the level is enabled.
void Log(log4cplus::LogLevel level, std::string_view message, const LogSource& source);

// Writes a warning for each frame of a call stack, "<number># <frame>".
void WarnWithFrames(const std::vector<std::string>& frames, const LogSource& source);

// Writes a warning and then the call stack, which is collected even when warnings are disabled. Always
// inlined, so that the stack begins with the function that warns.
[[gnu::always_inline]] inline void WarnWithStack(std::string_view message, const LogSource& source) {
  Log(log4cplus::WARN_LOG_LEVEL, message, source);
  WarnWithFrames(zq::Logger::getStackFrames(), source);
}

}  // namespace tavrin
