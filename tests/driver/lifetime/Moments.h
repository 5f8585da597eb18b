// The moments of a process at which the tests call the library, and what its programs print then.
#pragma once

#include <gtest/gtest.h>

#include <tavrin_testing/LogCapture.h>
#include <ostream>
#include <string>
#include <string_view>

#include "Operations.h"
#include "RunProgram.h"

inline constexpr std::string_view warning = "Incorrect range - minimum (100) is greater than maximum (0)";

// The only operation that logs, by default to the standard error stream.
inline bool Warns(const Operation& operation) { return operation.name == std::string_view("Warn"); }

inline std::string ResultInThisProcess(const Operation& operation) {
  const tavrin_testing::LogCapture log(log4cplus::OFF_LOG_LEVEL);
  return operation.run();
}

inline int Count(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

inline void ExpectOutcome(const ProgramRun& run, const std::string& result, int warnings) {
  const ProgramOutcome outcome = RunProgram(run);
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_EQ(outcome.out, result);
  EXPECT_EQ(Count(outcome.err, warning), warnings) << outcome;
  EXPECT_EQ(outcome.err.empty(), warnings == 0) << outcome;
}

struct Moment {
  const char* name;
  bool canLog;            // whether log4cplus exists
  bool canLogStatically;  // the same if the library is linked statically
};

inline void PrintTo(const Moment& moment, std::ostream* os) { *os << moment.name; }

inline constexpr Moment moments[] = {
    {"GlobalConstructor", true, true},
    {"MainThreadObjectConstructedBeforeUse", true, true},
    {"MainThreadObjectConstructedAfterUse", true, true},
    {"ThreadObjectConstructedBeforeUse", true, true},
    {"ThreadObjectConstructedAfterUse", true, true},
    {"ExitHandler", true, true},
    {"ThreadOfExitHandler", true, true},
    {"GlobalDestructor", true, true},
    {"LastDestructor", true, false},
};

// Returns whether the program with the build's kind of linking can log.
inline bool CanLog(const Moment& moment) {
  return TAVRIN_SHARED_LIBRARIES ? moment.canLog : moment.canLogStatically;
}
