#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <system_error>

#include "CommandLine.h"
#include "Status.h"

namespace {

using tool::Status;

// A full device is detected at the latest when the last output is flushed.
Status FlushOutput() {
  errno = 0;
  if (std::cout.flush()) return Status::success;
  std::cerr << "tavrin: the output cannot be written";
  if (errno != 0) std::cerr << ": " << std::generic_category().message(errno);
  std::cerr << '\n';
  return Status::unreadable;
}

// log4cplus starts threads when it is loaded, and throws if the system has no resources for them.
[[noreturn]] void ReportTermination() {
  const std::exception_ptr reason = std::current_exception();
  if (!reason) std::abort();
  try {
    std::rethrow_exception(reason);
  } catch (const std::exception& error) {
    // The streams may not be initialised yet.
    const std::string text = std::string("tavrin: ") + error.what() + '\n';
    if (write(STDERR_FILENO, text.data(), text.size()) < 0) std::abort();
  }
  std::_Exit(static_cast<int>(Status::unreadable));
}

// Runs before the initialisation of shared libraries.
[[gnu::section(".preinit_array"), gnu::used]] void (*const setTerminationReport)() = [] {
  std::set_terminate(ReportTermination);
};

}  // namespace

int main(int argc, char** argv) {
  // A process that ignores this signal passes that on to its children. Without the default action, a closed
  // pipe would be reported as an error instead of ending the tool.
  std::signal(SIGPIPE, SIG_DFL);
  Status status = Status::unreadable;
  try {
    status = tool::RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "tavrin: " << error.what() << '\n';
  }
  return static_cast<int>(tool::Worst(status, FlushOutput()));
}
