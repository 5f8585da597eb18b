// Each operation at each moment of a process, from the constructors of global objects to the last destructor.
// Each combination runs in a separate process and must return the same result as in this process.

#include <gtest/gtest.h>

#include <tavrin_testing/LogCapture.h>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "RunProgram.h"
#include "lifetime/Operations.h"

namespace {

constexpr std::string_view kWarning = "Incorrect range - minimum (100) is greater than maximum (0)";

// The only operation that logs, by default to the standard error stream.
bool Warns(const Operation& operation) { return operation.name == std::string_view("Warn"); }

std::string ResultInThisProcess(const Operation& operation) {
  const tavrin_testing::LogCapture log(log4cplus::OFF_LOG_LEVEL);
  return operation.run();
}

int Count(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

void ExpectOutcome(const ProgramRun& run, const std::string& result, int warnings) {
  const ProgramOutcome outcome = RunProgram(run);
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_EQ(outcome.out, result);
  EXPECT_EQ(Count(outcome.err, kWarning), warnings) << outcome;
  EXPECT_EQ(outcome.err.empty(), warnings == 0) << outcome;
}

std::string Repeated(const std::string& text, int count) {
  std::string texts;
  for (int i = 0; i < count; ++i) texts += text;
  return texts;
}

struct Moment {
  const char* name;
  bool canLog;            // whether log4cplus exists
  bool canLogStatically;  // the same if the library is linked statically
};

void PrintTo(const Moment& moment, std::ostream* os) { *os << moment.name; }

constexpr Moment kMoments[] = {
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

}  // namespace

class Lifetime : public testing::TestWithParam<Moment> {
 protected:
  // Whether the program can log, as it is linked in this build.
  static bool CanLog() { return TAVRIN_SHARED_LIBRARIES ? GetParam().canLog : GetParam().canLogStatically; }

  static void ExpectEachOperationWorks(const std::string& program, bool usedBefore, bool canLog) {
    for (std::size_t i = 0; i < operationCount; ++i) {
      const Operation& operation = operations[i];
      SCOPED_TRACE(operation.name);
      ProgramRun run;
      run.commandLine = {program};
      run.environment = {{"OPERATION", operation.name}, {"MOMENT", GetParam().name}};
      if (usedBefore) run.environment["USED_BEFORE"] = "yes";
      const int warningsBefore = usedBefore ? 2 : 0;  // one for each of two threads
      const int warnings = Warns(operation) && canLog ? 1 : 0;
      ExpectOutcome(run, ResultInThisProcess(operation), warningsBefore + warnings);
    }
  }
};

TEST_P(Lifetime, EachOperationWorksOnFirstUse) {
  ExpectEachOperationWorks(TAVRIN_LIFETIME_PROGRAM, false, CanLog());
}

TEST_P(Lifetime, EachOperationWorksAfterUse) {
  ExpectEachOperationWorks(TAVRIN_LIFETIME_PROGRAM, true, CanLog());
}

TEST_P(Lifetime, EachOperationOfAStaticBuildWorksOnFirstUse) {
  ExpectEachOperationWorks(TAVRIN_LIFETIME_STATIC_PROGRAM, false, GetParam().canLogStatically);
}

TEST_P(Lifetime, EachOperationOfAStaticBuildWorksAfterUse) {
  ExpectEachOperationWorks(TAVRIN_LIFETIME_STATIC_PROGRAM, true, GetParam().canLogStatically);
}

// Starts few processes, so that it can also run under slow tools.
TEST_P(Lifetime, AllOperationsWorkInOneProcess) {
  std::string results;
  for (std::size_t i = 0; i < operationCount; ++i) results += ResultInThisProcess(operations[i]);
  const struct {
    const char* program;
    bool canLog;
  } rows[] = {{TAVRIN_LIFETIME_PROGRAM, CanLog()},
              {TAVRIN_LIFETIME_STATIC_PROGRAM, GetParam().canLogStatically}};
  for (const auto& [program, canLog] : rows) {
    ProgramRun run;
    run.commandLine = {program};
    run.environment = {{"MOMENT", GetParam().name}, {"USED_BEFORE", "yes"}};
    ExpectOutcome(run, results, canLog ? 3 : 2);
  }
}

INSTANTIATE_TEST_SUITE_P(, Lifetime, testing::ValuesIn(kMoments),
                         [](const auto& row) -> std::string { return row.param.name; });

TEST(LifetimeOfObjects, CanEndWithTheProcess) {
  for (const char* program : {TAVRIN_LIFETIME_PROGRAM, TAVRIN_LIFETIME_STATIC_PROGRAM}) {
    ProgramRun run;
    run.commandLine = {program};
    run.environment = {{"MOMENT", "ObjectsInStaticStorage"}};
    EXPECT_EQ(RunProgram(run), ProgramOutcome()) << program;
  }
}

TEST(LifetimeOfAModule, CanEndBeforeTheProcess) {
  for (std::size_t i = 0; i < operationCount; ++i) {
    const Operation& operation = operations[i];
    SCOPED_TRACE(operation.name);
    ProgramRun run;
    run.commandLine = {TAVRIN_LIFETIME_HOST, TAVRIN_LIFETIME_MODULE, operation.name};
    constexpr int uses = 20;
    ExpectOutcome(run, Repeated(ResultInThisProcess(operation), uses), Warns(operation) ? uses : 0);
  }
}

TEST(LifetimeOfAModule, EachOperationWorksAfterItsStaticObjectsAreDestroyed) {
  for (std::size_t i = 0; i < operationCount; ++i) {
    const Operation& operation = operations[i];
    SCOPED_TRACE(operation.name);
    ProgramRun run;
    run.commandLine = {TAVRIN_LIFETIME_HOST, TAVRIN_LIFETIME_MODULE, operation.name, "at-exit"};
    ExpectOutcome(run, ResultInThisProcess(operation), 0);
  }
}
