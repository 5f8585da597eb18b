// Runs one operation of the library, or all of them, at one moment of the process and writes the results to
// the standard output.
//
// Environment variables select both, because constructors of global objects can read them: OPERATION (by
// default all operations) and MOMENT. With USED_BEFORE, main() and the other thread run each operation first.

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "Operations.h"

namespace {

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string RunAll() {
  std::string results;
  for (std::size_t i = 0; i < operationCount; ++i) results += operations[i].run();
  return results;
}

void RunAt(std::string_view moment) {
  if (Variable("MOMENT") != moment) return;
  const std::string_view operation = Variable("OPERATION");
  const std::string result = operation.empty() ? RunAll() : RunOperation(operation);
  if (write(STDOUT_FILENO, result.data(), result.size()) != static_cast<ssize_t>(result.size())) _exit(1);
}

struct AtStartAndEnd {
  AtStartAndEnd() { RunAt("GlobalConstructor"); }
  ~AtStartAndEnd() { RunAt("GlobalDestructor"); }
} const atStartAndEnd;

std::vector<std::shared_ptr<void>> destroyedAtEnd;

[[gnu::destructor]] void RunLast() { RunAt("LastDestructor"); }

struct AtThreadEnd {
  const char* moment;
  ~AtThreadEnd() { RunAt(moment); }
};

void UseThisThread(const char* momentBefore, const char* momentAfter) {
  static thread_local const AtThreadEnd before{momentBefore};
  if (!Variable("USED_BEFORE").empty()) RunAll();
  static thread_local const AtThreadEnd after{momentAfter};
}

}  // namespace

int main() {
  std::atexit([] {
    RunAt("ExitHandler");
    std::thread([] { RunAt("ThreadOfExitHandler"); }).join();
  });
  UseThisThread("MainThreadObjectConstructedBeforeUse", "MainThreadObjectConstructedAfterUse");
  // A pointer, because GCC's check of alignment reports references to functions in ARM's Thumb code.
  std::thread(&UseThisThread, "ThreadObjectConstructedBeforeUse", "ThreadObjectConstructedAfterUse").join();
  if (Variable("MOMENT") == "ObjectsInStaticStorage") destroyedAtEnd = NewObjects();
}
