#include "tavrin_platform/Logger.h"

#include <boost/stacktrace.hpp>
#include <log4cplus/consoleappender.h>
#include <log4cplus/helpers/property.h>

#include <tavrin_platform/internal/RootLogger.h>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <mutex>
#include <new>
#include <stdexcept>

using zq::internal::RootLogger;

namespace {

// In a statically linked program this runs before all constructors that may log.
[[gnu::init_priority(101)]] const RootLogger::TakenAtLoad rootLogger;

log4cplus::SharedAppenderPtr StandardErrorAppender() {
  log4cplus::helpers::Properties properties;
  properties.setProperty(LOG4CPLUS_TEXT("logToStdErr"), LOG4CPLUS_TEXT("true"));
  properties.setProperty(LOG4CPLUS_TEXT("Threshold"), LOG4CPLUS_TEXT("WARN"));
  properties.setProperty(LOG4CPLUS_TEXT("layout"), LOG4CPLUS_TEXT("log4cplus::PatternLayout"));
  properties.setProperty(LOG4CPLUS_TEXT("layout.ConversionPattern"),
                         LOG4CPLUS_TEXT("%D{%Y-%m-%d %H:%M:%S.%q} %p %m [%F:%L]%n"));
  try {
    // GCOVR_EXCL_BR_START: if the construction fails, generated code checks whether it has memory to free.
    return log4cplus::SharedAppenderPtr(new log4cplus::ConsoleAppender(properties));
    // GCOVR_EXCL_BR_STOP
  } catch (const std::runtime_error&) {
    throw std::bad_alloc();  // The properties are valid, so no other error is possible.
  }
}

}  // namespace

std::atomic<bool> zq::Logger::hasBeenInitialized{false};

void zq::Logger::initialize() {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  if (hasBeenInitialized) return;

  log4cplus::Logger* root = RootLogger::Get();
  // GCOVR_EXCL_BR_START: null only at the end of a process; the programs that test this are not measured.
  if (root != nullptr && root->getAllAppenders().empty()) root->addAppender(StandardErrorAppender());
  // GCOVR_EXCL_BR_STOP
  hasBeenInitialized = true;  // last, because other threads then log without the lock
}

// Not inlined, so that exactly one frame has to be skipped.
[[gnu::noinline]] std::vector<std::string> zq::Logger::getStackFrames() {
  const boost::stacktrace::stacktrace stack(1, std::numeric_limits<std::size_t>::max());
  std::vector<std::string> frames;
  frames.reserve(stack.size());
  std::transform(stack.begin(), stack.end(), std::back_inserter(frames),
                 [](const boost::stacktrace::frame& frame) {
                   // A frame's address is the return address of its call, which may belong to another
                   // function.
                   return to_string(boost::stacktrace::frame(static_cast<const char*>(frame.address()) - 1));
                 });
  return frames;
}
