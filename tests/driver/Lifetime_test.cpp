// All operations at each moment of a process, from the constructors of global objects to the last destructor.
// These are few processes, so that they can also run under tools that are slow.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "RunProgram.h"
#include "lifetime/Moments.h"
#include "lifetime/Operations.h"

class Lifetime : public testing::TestWithParam<Moment> {};

TEST_P(Lifetime, AllOperationsWorkInOneProcess) {
  std::string results;
  for (std::size_t i = 0; i < operationCount; ++i) results += ResultInThisProcess(operations[i]);
  const struct {
    const char* program;
    bool canLog;
  } rows[] = {{TAVRIN_LIFETIME_PROGRAM, CanLog(GetParam())},
              {TAVRIN_LIFETIME_STATIC_PROGRAM, GetParam().canLogStatically}};
  for (const auto& [program, canLog] : rows) {
    ProgramRun run;
    run.commandLine = {program};
    run.environment = {{"MOMENT", GetParam().name}, {"USED_BEFORE", "yes"}};
    ExpectOutcome(run, results, canLog ? 3 : 2);
  }
}

INSTANTIATE_TEST_SUITE_P(, Lifetime, testing::ValuesIn(moments),
                         [](const auto& row) -> std::string { return row.param.name; });

TEST(LifetimeOfObjects, CanEndWithTheProcess) {
  for (const char* program : {TAVRIN_LIFETIME_PROGRAM, TAVRIN_LIFETIME_STATIC_PROGRAM}) {
    ProgramRun run;
    run.commandLine = {program};
    run.environment = {{"MOMENT", "ObjectsInStaticStorage"}};
    EXPECT_EQ(RunProgram(run), ProgramOutcome()) << program;
  }
}
