/// @file
/// Initialisation of logging, and the call stack for log records.
#pragma once

#include <tavrin_platform/Export.h>
#include <atomic>
#include <string>
#include <vector>

namespace zq {

/// The process-wide configuration of log4cplus. All members are thread-safe.
///
/// @code
/// if (!zq::Logger::hasBeenInitialized) zq::Logger::initialize();
/// @endcode
///
/// All log records are sent to the root logger of log4cplus. Authors of platforms: initialize() may configure
/// that logger differently, or leave it to the program, but must set `hasBeenInitialized` at its end.
class TAVRIN_EXPORT Logger {
 public:
  /// True once initialize() has run.
  static std::atomic<bool> hasBeenInitialized;

  /// Writes records of level WARN and above to the standard error stream, unless the program has configured
  /// an appender at the root logger. Calling it again does nothing.
  static void initialize();

  /// Returns the current call stack, one demangled string per frame, the caller of this function first.
  static std::vector<std::string> getStackFrames();
};

}  // namespace zq
