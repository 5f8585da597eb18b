#include "tavrin_driver/internal/LogWithStack.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <log4cplus/logger.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_testing/LogCapture.h>
#include <functional>
#include <string>
#include <vector>

#include "TestAppender.h"

using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::OFF_LOG_LEVEL;
using log4cplus::TRACE_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Replaces the logger library in these tests.
struct FakeLogger {
  int starts = 0;
  int stacks = 0;
  std::vector<std::string> frames;
  std::string stackCaller;
  std::function<void()> onStack;
} fake;

class LogWithStack : public testing::Test {
 protected:
  LogWithStack() {
    fake = FakeLogger();
    zq::Logger::hasBeenInitialized = false;
  }
};

constexpr tavrin::LogSource source = {"tavrin_driver/Source", 17, "void Driver::Run(int)"};

}  // namespace

std::atomic<bool> zq::Logger::hasBeenInitialized{false};

void zq::Logger::initialize() {
  ++fake.starts;
  hasBeenInitialized = true;
}

[[gnu::noinline]] std::vector<std::string> zq::Logger::getStackFrames() {
  ++fake.stacks;
  if (fake.onStack) fake.onStack();
  Dl_info caller{};
  if (dladdr(__builtin_return_address(0), &caller) != 0 && caller.dli_sname != nullptr)
    fake.stackCaller = caller.dli_sname;
  return fake.frames;
}

extern "C" [[gnu::noinline]] TAVRIN_EXPORT void FunctionThatWarns() {
  tavrin::WarnWithStack("A warning", source);
  fake.frames.clear();
}

TEST_F(LogWithStack, RecordContainsLevelMessageAndSource) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  tavrin::Log(TRACE_LOG_LEVEL, "A line", source);
  ASSERT_EQ(log.records().size(), 1U);
  const tavrin_testing::LogRecord event = log.records().front();
  EXPECT_EQ(event.level, TRACE_LOG_LEVEL);
  EXPECT_EQ(event.message, "A line");
  EXPECT_EQ(event.file, "tavrin_driver/Source");
  EXPECT_EQ(event.line, 17);
  EXPECT_EQ(event.function, "void Driver::Run(int)");
}

TEST_F(LogWithStack, RecordBelowTheLevelIsNotWritten) {
  const tavrin_testing::LogCapture log(WARN_LOG_LEVEL);
  EXPECT_FALSE(tavrin::IsLogged(TRACE_LOG_LEVEL));
  EXPECT_TRUE(tavrin::IsLogged(WARN_LOG_LEVEL));
  tavrin::Log(TRACE_LOG_LEVEL, "A line", source);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LogWithStack, FirstLevelCheckInitializesLogging) {
  const tavrin_testing::LogCapture log(OFF_LOG_LEVEL);
  EXPECT_FALSE(tavrin::IsLogged(TRACE_LOG_LEVEL));
  EXPECT_EQ(fake.starts, 1);
  tavrin::Log(WARN_LOG_LEVEL, "A line", source);
  EXPECT_EQ(fake.starts, 1);
}

TEST_F(LogWithStack, InitializedLoggingIsNotChanged) {
  zq::Logger::hasBeenInitialized = true;
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  tavrin::Log(WARN_LOG_LEVEL, "A line", source);
  EXPECT_EQ(fake.starts, 0);
  EXPECT_THAT(log.messages(), ElementsAre("A line"));
}

TEST_F(LogWithStack, WarningIsFollowedByARecordForEachFrame) {
  fake.frames = {"f(int) in libdriver.so", "main in driver", ""};
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  tavrin::WarnWithStack("A warning", source);
  EXPECT_THAT(log.messages(),
              ElementsAre("A warning", "0# f(int) in libdriver.so", "1# main in driver", "2# "));
  for (const tavrin_testing::LogRecord& event : log.records()) {
    EXPECT_EQ(event.level, WARN_LOG_LEVEL);
    EXPECT_EQ(event.file, "tavrin_driver/Source");
    EXPECT_EQ(event.line, 17);
    EXPECT_EQ(event.function, "void Driver::Run(int)");
  }
}

TEST_F(LogWithStack, WarningIsWrittenBeforeTheStackIsCollected) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  std::vector<std::string> written;
  fake.onStack = [&] { written = log.messages(); };
  tavrin::WarnWithStack("A warning", source);
  EXPECT_THAT(written, ElementsAre("A warning"));
}

TEST_F(LogWithStack, StackIsCollectedWhenWarningsAreDisabled) {
  fake.frames = {"main"};
  const tavrin_testing::LogCapture log(ERROR_LOG_LEVEL);
  tavrin::WarnWithStack("A warning", source);
  EXPECT_EQ(fake.stacks, 1);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LogWithStack, LevelIsCheckedBeforeEachRecord) {
  fake.frames = {"first", "second", "third"};
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  std::vector<std::string> messages;
  log4cplus::Logger root = log4cplus::Logger::getRoot();
  root.addAppender(log4cplus::SharedAppenderPtr(new TestAppender([&](tavrin_testing::LogRecord event) {
    messages.push_back(event.message);
    if (event.message == "1# second") root.setLogLevel(OFF_LOG_LEVEL);
  })));
  tavrin::WarnWithStack("A warning", source);
  EXPECT_THAT(messages, ElementsAre("A warning", "0# first", "1# second"));
}

TEST_F(LogWithStack, StackBeginsWithTheFunctionThatWarns) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  FunctionThatWarns();
  EXPECT_EQ(fake.stackCaller, "FunctionThatWarns");
}
