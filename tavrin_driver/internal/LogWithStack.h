#pragma once

#include <log4cplus/loglevel.h>

#include <tavrin_platform/Logger.h>
#include <string>
#include <string_view>
#include <vector>

// The log records of the library. All of them go through the root logger of log4cplus, which is obtained when
// the library is loaded. Logging is initialised before the first record, unless the program has done so.
// Records are dropped once the static objects of the library are destroyed: log4cplus may be gone by then.
namespace tavrin {

// Where a log record comes from. The file is a fixed text, the same in every build directory; the function is
// its full signature, as __PRETTY_FUNCTION__ gives it.
struct LogSource {
  const char* file;
  int line;
  const char* function;
};

// Whether a record of that level would be written: a question to ask before formatting one.
bool IsLogged(log4cplus::LogLevel level);

// Writes one record where the level is enabled, and otherwise does nothing with the message.
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
