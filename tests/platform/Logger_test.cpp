#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <log4cplus/helpers/timehelper.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>
#include <log4cplus/spi/loggingevent.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_testing/LogCapture.h>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

// Visible, so that the frames have names.
namespace stack {

using Frames = std::vector<std::string>;

[[gnu::noinline]] TAVRIN_EXPORT void Inner(Frames& frames) { frames = zq::Logger::getStackFrames(); }

[[gnu::noinline]] TAVRIN_EXPORT void Outer(int number, Frames& frames) {
  Inner(frames);
  frames.push_back("the end of " + std::to_string(number));
}

[[noreturn, gnu::noinline]] TAVRIN_EXPORT void Throw() { throw zq::Logger::getStackFrames(); }

[[noreturn, gnu::noinline]] TAVRIN_EXPORT void EndWithACall() { Throw(); }

}  // namespace stack

namespace {

const bool initializedBeforeAll = zq::Logger::hasBeenInitialized;

log4cplus::Logger Root() { return log4cplus::Logger::getRoot(); }

void LogAtEveryLevel() {
  LOG4CPLUS_TRACE(Root(), "a trace");
  LOG4CPLUS_DEBUG(Root(), "a detail");
  LOG4CPLUS_INFO(Root(), "a notice");
  LOG4CPLUS_WARN(Root(), "a warning");
  LOG4CPLUS_ERROR(Root(), "an error");
}

// A program that has not configured logging.
class Logger : public testing::Test {
 protected:
  Logger() {
    Root().removeAllAppenders();
    zq::Logger::hasBeenInitialized = false;
  }
};

}  // namespace

TEST_F(Logger, SendsWarningsToStandardErrorIfNothingIsConfigured) {
  // log4cplus starts threads, so the child is a new program instead of a fork.
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        zq::Logger::initialize();
        Root().setLogLevel(log4cplus::TRACE_LOG_LEVEL);
        LogAtEveryLevel();
        std::exit(0);
      },
      ExitedWithCode(0),
      MatchesRegex("[-0-9]{10} [0-9:]{8}[.][0-9]{3} WARN a warning \\[" __FILE__ ":[0-9]+\\]\n"
                   "[-0-9]{10} [0-9:]{8}[.][0-9]{3} ERROR an error \\[" __FILE__ ":[0-9]+\\]\n"));
}

// log4cplus formats times in the time zone of the process.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    setenv("TZ", name, 1);
    tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    unsetenv("TZ");
    tzset();
  }
};

TEST_F(Logger, DefaultOutputIsTheLocalTimeTheLevelTheTextAndTheSource) {
  const TimeZone zone("XXX-05:30");  // five and a half hours ahead of UTC
  zq::Logger::initialize();
  const log4cplus::SharedAppenderPtrList appenders = Root().getAllAppenders();
  ASSERT_THAT(appenders, SizeIs(1));

  const auto time = log4cplus::helpers::from_time_t(1'772'652'600) + std::chrono::milliseconds(89);
  const log4cplus::spi::InternalLoggingEvent event("root", log4cplus::WARN_LOG_LEVEL, "ndc", {}, "the text",
                                                   "thread", "thread", time, "tavrin_driver/Source", 17);
  std::ostringstream line;
  appenders.front()->getLayout()->formatAndAppend(line, event);
  EXPECT_EQ(line.str(), "2026-03-05 01:00:00.089 WARN the text [tavrin_driver/Source:17]\n");
}

TEST_F(Logger, FlagIsFalseAtFirst) { EXPECT_FALSE(initializedBeforeAll); }

TEST_F(Logger, InitializingSetsTheFlag) {
  EXPECT_FALSE(zq::Logger::hasBeenInitialized);
  zq::Logger::initialize();
  EXPECT_TRUE(zq::Logger::hasBeenInitialized);
}

TEST_F(Logger, InitializingTwiceAddsOneAppender) {
  zq::Logger::initialize();
  zq::Logger::initialize();
  EXPECT_THAT(Root().getAllAppenders(), SizeIs(1));
}

TEST_F(Logger, RemovedAppenderIsNotReplaced) {
  zq::Logger::initialize();
  Root().removeAllAppenders();
  zq::Logger::initialize();
  EXPECT_THAT(Root().getAllAppenders(), SizeIs(0));
}

TEST_F(Logger, AddsNoAppenderToThatOfTheProgram) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  const log4cplus::SharedAppenderPtrList before = Root().getAllAppenders();
  zq::Logger::initialize();
  EXPECT_TRUE(zq::Logger::hasBeenInitialized);
  EXPECT_EQ(Root().getAllAppenders(), before);
  LogAtEveryLevel();
  EXPECT_THAT(log.messages(), ElementsAre("a trace", "a detail", "a notice", "a warning", "an error"));
}

TEST_F(Logger, KeepsTheLevelOfTheProgram) {
  const log4cplus::LogLevel before = Root().getLogLevel();
  Root().setLogLevel(log4cplus::INFO_LOG_LEVEL);
  zq::Logger::initialize();
  EXPECT_EQ(Root().getLogLevel(), log4cplus::INFO_LOG_LEVEL);
  Root().setLogLevel(before);
}

TEST_F(Logger, ThreadsThatSeeTheFlagCanLog) {
  constexpr int rounds = 100;
  constexpr int threadCount = 8;
  for (int round = 0; round < rounds; ++round) {
    Root().removeAllAppenders();
    zq::Logger::hasBeenInitialized = false;

    std::atomic<int> waiting{threadCount};
    std::atomic<int> unusable{0};
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i) {
      threads.emplace_back([&, initializes = i % 2 == 0] {
        --waiting;
        while (waiting > 0) std::this_thread::yield();
        if (initializes) zq::Logger::initialize();
        while (!zq::Logger::hasBeenInitialized) std::this_thread::yield();
        if (Root().getAllAppenders().empty()) ++unusable;
      });
    }
    for (std::thread& thread : threads) thread.join();

    ASSERT_EQ(unusable, 0) << "in round " << round;
    ASSERT_THAT(Root().getAllAppenders(), SizeIs(1)) << "in round " << round;
  }
}

TEST_F(Logger, StackBeginsWithTheCaller) {
  stack::Frames frames;
  stack::Outer(1, frames);
  ASSERT_GE(frames.size(), 3U);
  EXPECT_THAT(frames[0], StartsWith("stack::Inner(std::vector<"));
  EXPECT_THAT(frames[1], StartsWith("stack::Outer(int, std::vector<"));
}

TEST_F(Logger, FramesNameAFunctionThatEndsWithACall) {
  try {
    stack::EndWithACall();
  } catch (const stack::Frames& frames) {
    ASSERT_GE(frames.size(), 3U);
    EXPECT_THAT(frames[0], StartsWith("stack::Throw() in "));
    EXPECT_THAT(frames[1], StartsWith("stack::EndWithACall() in "));
  }
}
