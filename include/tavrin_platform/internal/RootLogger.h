#pragma once

#include <log4cplus/logger.h>

#include <atomic>

namespace zq::internal {

// The root logger of log4cplus as long as it may be used.
//
// log4cplus deletes its loggers together with its own static objects, and using one afterwards is undefined
// behaviour. It is loaded before the libraries that use it and outlives their static objects, so the end of
// those marks the moment.
class RootLogger {
 public:
  // Takes the logger when the library is loaded. On first use could be too late: log4cplus may be gone by
  // then.
  struct TakenAtLoad {
    TakenAtLoad() { Get(); }
  };

  RootLogger(const RootLogger&) = delete;
  RootLogger& operator=(const RootLogger&) = delete;

  // Returns null when log4cplus may be gone.
  static log4cplus::Logger* Get() {
    if (destroyed.load(std::memory_order_acquire)) return nullptr;
    static RootLogger root;  // GCOVR_EXCL_BR_LINE: compiler-generated guard
    return &root.logger_;
  }

 private:
  RootLogger() = default;
  ~RootLogger() { destroyed.store(true, std::memory_order_release); }

  inline static std::atomic<bool> destroyed{false};

  log4cplus::Logger logger_ = log4cplus::Logger::getRoot();
};

}  // namespace zq::internal
