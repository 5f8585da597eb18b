#pragma once

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/spi/loggingevent.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

// What a log record says.
struct LogEvent {
  log4cplus::LogLevel level;
  std::string message;
  std::string file;
  int line;
  std::string function;
};

// Hands every record to a function.
class TestAppender : public log4cplus::Appender {
 public:
  explicit TestAppender(std::function<void(LogEvent)> receive) : receive_(std::move(receive)) {}
  TestAppender(const TestAppender&) = delete;
  TestAppender& operator=(const TestAppender&) = delete;
  ~TestAppender() override { destructorImpl(); }

  void close() override { closed = true; }

 protected:
  void append(const log4cplus::spi::InternalLoggingEvent& event) override {
    receive_(
        {event.getLogLevel(), event.getMessage(), event.getFile(), event.getLine(), event.getFunction()});
  }

 private:
  std::function<void(LogEvent)> receive_;
};

// Collects the records that the root logger writes as long as it lives, at one level and above. It is the
// only appender meanwhile; afterwards the root logger has none, and its level is the one of before.
class LogCapture {
 public:
  explicit LogCapture(log4cplus::LogLevel level = log4cplus::TRACE_LOG_LEVEL)
      : root_(log4cplus::Logger::getRoot()), previousLevel_(root_.getLogLevel()) {
    root_.removeAllAppenders();
    root_.setLogLevel(level);
    root_.addAppender(log4cplus::SharedAppenderPtr(
        new TestAppender([this](LogEvent event) { events_.push_back(std::move(event)); })));
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture() {
    root_.removeAllAppenders();
    root_.setLogLevel(previousLevel_);
  }

  const std::vector<LogEvent>& events() const { return events_; }

  std::vector<std::string> messages() const {
    std::vector<std::string> messages;
    for (const LogEvent& event : events_) messages.push_back(event.message);
    return messages;
  }

 private:
  log4cplus::Logger root_;
  log4cplus::LogLevel previousLevel_;
  std::vector<LogEvent> events_;
};
