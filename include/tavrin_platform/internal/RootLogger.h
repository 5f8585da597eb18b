#pragma once

#include <log4cplus/logger.h>

#include <atomic>

namespace zq::internal {

// The root logger of log4cplus, for as long as it may be used.
//
// log4cplus deletes its loggers together with its static objects; using one afterwards is undefined
// behaviour. log4cplus is loaded before the libraries that use it and outlives their static objects. The
// destruction of this static object therefore marks the end of use.
class RootLogger {
 public:
  // Obtains the logger when the library is loaded. At the first use, log4cplus may already be destroyed.
  struct TakenAtLoad {
    TakenAtLoad() { Get(); }
  };

  RootLogger(const RootLogger&) = delete;
  RootLogger& operator=(const RootLogger&) = delete;

  // Returns null if log4cplus may already be destroyed.
  static log4cplus::Logger* Get() {
    if (destroyed.load(std::memory_order_acquire)) return nullptr;
    static RootLogger root;
    return &root.logger_;
  }

 private:
  RootLogger() = default;
  ~RootLogger() { destroyed.store(true, std::memory_order_release); }

  inline static std::atomic<bool> destroyed{false};

  log4cplus::Logger logger_ = log4cplus::Logger::getRoot();
};

}  // namespace zq::internal
