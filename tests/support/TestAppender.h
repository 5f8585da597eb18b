#pragma once

#include <log4cplus/appender.h>
#include <log4cplus/spi/loggingevent.h>

#include <tavrin_testing/LogCapture.h>
#include <functional>
#include <utility>

// Passes every record to a function.
class TestAppender : public log4cplus::Appender {
 public:
  explicit TestAppender(std::function<void(tavrin_testing::LogRecord)> receive)
      : receive_(std::move(receive)) {}
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
  std::function<void(tavrin_testing::LogRecord)> receive_;
};
