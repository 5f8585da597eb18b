#include "tools/tavrin/Progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>

namespace {

using tool::Progress;
using std::chrono_literals::operator""ms;

// A progress line with a clock that the test sets.
class ProgressTest : public testing::Test {
 protected:
  Progress On(bool isTerminal) {
    return {stream_, isTerminal, [this] { return now_; }};
  }
  void Wait(std::chrono::milliseconds time) { now_ += time; }

  // Returns the output since the last call.
  std::string Written() {
    std::string text = stream_.str();
    stream_.str("");
    return text;
  }

 private:
  std::ostringstream stream_;
  Progress::Clock::time_point now_;
};

std::string One() { return "one"; }
std::string Second() { return "second"; }

TEST_F(ProgressTest, AppearsAfterHalfASecond) {
  Progress progress = On(true);
  progress.Update(One);
  Wait(499ms);
  progress.Update(One);
  EXPECT_EQ(Written(), "");
  Wait(1ms);
  progress.Update(One);
  EXPECT_EQ(Written(), "one");
}

TEST_F(ProgressTest, ChangesTenTimesASecond) {
  Progress progress = On(true);
  Wait(500ms);
  progress.Update(One);
  Wait(99ms);
  progress.Update(Second);
  EXPECT_EQ(Written(), "one");
  Wait(1ms);
  progress.Update(Second);
  EXPECT_EQ(Written(), "\r   \rsecond");
}

TEST_F(ProgressTest, DisappearsWhenDone) {
  Progress progress = On(true);
  Wait(1000ms);
  progress.Update(One);
  progress.Done();
  EXPECT_EQ(Written(), "one\r   \r");
  progress.Done();
  EXPECT_EQ(Written(), "");
}

TEST_F(ProgressTest, DisappearsWhenDestroyed) {
  {
    Progress progress = On(true);
    Wait(1000ms);
    progress.Update(One);
  }
  EXPECT_EQ(Written(), "one\r   \r");
}

TEST_F(ProgressTest, WaitsHalfASecondAgainForTheNextTask) {
  Progress progress = On(true);
  Wait(1000ms);
  progress.Update(One);
  progress.Done();
  Written();
  Wait(499ms);
  progress.Update(Second);
  EXPECT_EQ(Written(), "");
  Wait(1ms);
  progress.Update(Second);
  EXPECT_EQ(Written(), "second");
}

TEST_F(ProgressTest, IsForTerminalsOnly) {
  Progress progress = On(false);
  Wait(1000ms);
  progress.Update(One);
  progress.Done();
  EXPECT_EQ(Written(), "");
}

TEST_F(ProgressTest, ShowsNothingThatWouldWrap) {
  Progress progress = On(true);
  Wait(1000ms);
  progress.Update([] { return std::string(80, 'x'); });
  EXPECT_EQ(Written(), "");
  Wait(100ms);
  progress.Update([] { return std::string(79, 'x'); });
  EXPECT_EQ(Written(), std::string(79, 'x'));
}

TEST_F(ProgressTest, CountsTheWidthOfCharacters) {
  Progress progress = On(true);
  Wait(1000ms);
  progress.Update([] { return std::string("K\xC3\xBC"); });
  progress.Done();
  EXPECT_EQ(Written(), "K\xC3\xBC\r  \r");
}

}  // namespace
