// The code of the section about fork in the page for integrators; forking.txt contains what it prints.

#include <log4cplus/config.hxx>
#include <log4cplus/configurator.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/IVariableManager.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>
#include <thread>

#include "Sections.h"

namespace {

class NoVariables : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t /*idDevice*/, std::uint32_t /*idVariable*/,
                       std::string& /*value*/) override {
    return -1;
  }
};

// Loads a command, logs a warning and writes the command, as the processes of a host do.
void Work(const char* process) {
  const Section section(process);
  NoVariables variables;
  CCmdMessage command(variables, 0);
  if (command.Load(R"({"devicecommand": {"command": "UNLOCK", "params": [
        {"name": "PIN", "type": "string", "value": {"static": "4711"}}]}})") != 0)
    return;
  try {
    command.getParamRequiredIntRanged("PIN", 9999, 0);
  } catch (const ExceptionParameterInvalid& error) {
    std::cout << error.what() << '\n';
  }
  std::cout << command.toXml(true) << '\n';
}

// Kills this process if it does not end, which is the failure that this program exists to find.
void EndByItself() { alarm(60); }

//! [threads]
// Returns the number of threads of this process.
std::ptrdiff_t ThreadCount() {
  const std::filesystem::directory_iterator threads("/proc/self/task");
  return std::distance(begin(threads), end(threads));
}
//! [threads]

}  // namespace

int main() {
  EndByItself();
  //! [fork]
  log4cplus::deinitialize();  // its threads may still be ending when it returns
  while (ThreadCount() > 1) std::this_thread::yield();

  const pid_t child = fork();

  // Both processes configure their own logging.
  log4cplus::PropertyConfigurator::doConfigure("log4cplus.properties");
  //! [fork]
  EndByItself();  // the child does not inherit the parent's alarm
  if (child == 0) {
    Work("child");
    std::exit(0);
  }
  int status = -1;
  if (child < 0 || waitpid(child, &status, 0) != child) return 1;
  Work("parent");
  const Section section("status");
  std::cout << status << '\n';
}
