// Each operation at each moment of a process, from the constructors of global objects to the last destructor.
// Each combination runs in a separate process and must return the same result as in this process.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "RunProgram.h"
#include "lifetime/Moments.h"
#include "lifetime/Operations.h"

namespace {

std::string Repeated(const std::string& text, int count) {
  std::string texts;
  for (int i = 0; i < count; ++i) texts += text;
  return texts;
}

void ExpectEachOperationWorks(const Moment& moment, const std::string& program, bool usedBefore,
                              bool canLog) {
  for (std::size_t i = 0; i < operationCount; ++i) {
    const Operation& operation = operations[i];
    SCOPED_TRACE(operation.name);
    ProgramRun run;
    run.commandLine = {program};
    run.environment = {{"OPERATION", operation.name}, {"MOMENT", moment.name}};
    if (usedBefore) run.environment["USED_BEFORE"] = "yes";
    const int warningsBefore = usedBefore ? 2 : 0;  // one for each of two threads
    const int warnings = Warns(operation) && canLog ? 1 : 0;
    ExpectOutcome(run, ResultInThisProcess(operation), warningsBefore + warnings);
  }
}

}  // namespace

class LifetimeOfEachOperation : public testing::TestWithParam<Moment> {};

TEST_P(LifetimeOfEachOperation, WorksOnFirstUse) {
  ExpectEachOperationWorks(GetParam(), TAVRIN_LIFETIME_PROGRAM, false, CanLog(GetParam()));
}

TEST_P(LifetimeOfEachOperation, WorksAfterUse) {
  ExpectEachOperationWorks(GetParam(), TAVRIN_LIFETIME_PROGRAM, true, CanLog(GetParam()));
}

TEST_P(LifetimeOfEachOperation, OfAStaticBuildWorksOnFirstUse) {
  ExpectEachOperationWorks(GetParam(), TAVRIN_LIFETIME_STATIC_PROGRAM, false, GetParam().canLogStatically);
}

TEST_P(LifetimeOfEachOperation, OfAStaticBuildWorksAfterUse) {
  ExpectEachOperationWorks(GetParam(), TAVRIN_LIFETIME_STATIC_PROGRAM, true, GetParam().canLogStatically);
}

INSTANTIATE_TEST_SUITE_P(, LifetimeOfEachOperation, testing::ValuesIn(moments),
                         [](const auto& row) -> std::string { return row.param.name; });

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
