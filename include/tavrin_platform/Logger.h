/// @file
/// Start-up of logging, and the call stack for log records.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "Export.h"

namespace zq {

/// The process-wide set-up of log4cplus. All members may be called from any thread.
///
/// What is logged goes to the root logger of log4cplus. A platform that sets it up in another way, or leaves
/// that to the program, still sets `hasBeenInitialized` at the end of initialize().
class TAVRIN_EXPORT Logger {
 public:
  /// Whether initialize() has run.
  static std::atomic<bool> hasBeenInitialized;

  /// Sends WARN and above to the standard error stream, unless the program has configured an appender of its
  /// own at the root logger. Calling it again does nothing.
  static void initialize();

  /// @return the current call stack, one demangled text a frame, the caller of this function first.
  static std::vector<std::string> getStackFrames();
};

}  // namespace zq
