/// @file
/// A capture of log records, for warnings that a test expects.
#pragma once

#include <log4cplus/appender.h>
#include <log4cplus/logger.h>
#include <log4cplus/loglevel.h>
#include <log4cplus/spi/loggingevent.h>

#include <algorithm>
#include <mutex>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tavrin_testing {

/// A record of the log.
struct LogRecord {
  log4cplus::LogLevel level;  ///< its level, such as log4cplus::WARN_LOG_LEVEL
  std::string message;        ///< its message
  std::string file;           ///< the source that wrote it, such as "tavrin_driver/CmdMessage"
  int line;                   ///< the line of that source
  std::string function;       ///< the signature of the function that wrote it
};

/// Writes level, source and text of a record.
inline void PrintTo(const LogRecord& record, std::ostream* os) {
  *os << log4cplus::getLogLevelManager().toString(record.level) << ' ' << record.file << ": "
      << record.message;
}

/// Collects the records of the root logger during its lifetime, from the given level upwards. Other appenders
/// receive no records during that time. The destructor restores appenders and level.
///
/// @code
/// LogCapture log;
/// EXPECT_THROW(command.getParamRequiredIntRanged("CELSIUS", 30, 5), ExceptionParameterInvalid);
/// EXPECT_THAT(log.warnings(), ElementsAre(HasSubstr("Incorrect range")));
/// @endcode
class LogCapture {
 public:
  /// Starts collecting.
  explicit LogCapture(log4cplus::LogLevel level = log4cplus::WARN_LOG_LEVEL)
      : root_(log4cplus::Logger::getRoot()),
        level_(root_.getLogLevel()),
        appenders_(root_.getAllAppenders()) {
    root_.removeAllAppenders();
    root_.setLogLevel(level);
    root_.addAppender(log4cplus::SharedAppenderPtr(new Appender(*this)));
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture() {
    root_.removeAllAppenders();
    root_.setLogLevel(level_);
    for (const auto& appender : appenders_) root_.addAppender(appender);
  }

  /// Returns all records.
  std::vector<LogRecord> records() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return records_;
  }

  /// Returns the messages of all records.
  std::vector<std::string> messages() const {
    std::vector<std::string> messages;
    for (const LogRecord& record : records()) messages.push_back(record.message);
    return messages;
  }

  /// Returns the messages of the warnings, without the call stacks that follow them.
  std::vector<std::string> warnings() const {
    std::vector<std::string> warnings;
    for (const LogRecord& record : records()) {
      const std::size_t digits = record.message.find_first_not_of("0123456789");
      const bool isFrame =
          digits != 0 && digits != std::string::npos && record.message.compare(digits, 2, "# ") == 0;
      if (record.level == log4cplus::WARN_LOG_LEVEL && !isFrame) warnings.push_back(record.message);
    }
    return warnings;
  }

 private:
  /// @cond INTERNAL
  class Appender : public log4cplus::Appender {
   public:
    explicit Appender(LogCapture& capture) : capture_(capture) {}
    Appender(const Appender&) = delete;
    Appender& operator=(const Appender&) = delete;
    ~Appender() override { destructorImpl(); }

    void close() override { closed = true; }

   protected:
    void append(const log4cplus::spi::InternalLoggingEvent& event) override {
      const std::lock_guard<std::mutex> lock(capture_.mutex_);
      capture_.records_.push_back(
          {event.getLogLevel(), event.getMessage(), event.getFile(), event.getLine(), event.getFunction()});
    }

   private:
    LogCapture& capture_;
  };
  /// @endcond

  log4cplus::Logger root_;
  log4cplus::LogLevel level_;
  std::vector<log4cplus::SharedAppenderPtr> appenders_;
  mutable std::mutex mutex_;
  std::vector<LogRecord> records_;
};

}  // namespace tavrin_testing
