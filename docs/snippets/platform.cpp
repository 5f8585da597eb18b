// The code of the page for integrators; platform.txt contains what it prints.

#include <log4cplus/configurator.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/Version.h>
#include <tavrin_platform/IVariableManager.h>
#include <cstdint>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "Sections.h"

namespace {

//! [variables]
class VariableStore : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = values_.find(Key(idDevice, idVariable));
    if (found == values_.end()) return -1;
    value = found->second;
    return 0;
  }

  void Set(std::uint32_t idDevice, std::uint32_t idVariable, std::string value) {
    const std::lock_guard<std::mutex> lock(mutex_);
    values_[Key(idDevice, idVariable)] = std::move(value);
  }

 private:
  static std::uint64_t Key(std::uint32_t device, std::uint32_t variable) {
    return (std::uint64_t{device} << 32U) | variable;
  }

  std::mutex mutex_;
  std::unordered_map<std::uint64_t, std::string> values_;
};
//! [variables]

void Variables() {
  const Section section("variables");
  VariableStore variables;
  variables.Set(7, 1001, "40");
  CCmdMessage command("SET_LEVEL", variables);
  command.addVarParam("LEVEL", "number", 7, 1001);
  std::cout << command.getParam("LEVEL") << '\n';
}

void Logging() {
  const Section section("record");
  VariableStore variables;
  CCmdMessage command("SET_LEVEL", variables);
  command.addParam("LEVEL", "number", 75);
  try {
    command.getParamRequiredIntRanged("LEVEL", 100, 0);
  } catch (const ExceptionParameterInvalid&) {
    return;
  }
}

void Version() {
  //! [version]
  static_assert(TAVRIN_DRIVER_VERSION >= 10000, "needs the headers of 1.0.0");
  if (zq::LibraryVersion() < 10000) throw std::runtime_error("needs the library of 1.0.0");
  //! [version]
}

}  // namespace

int main() {
  //! [logging]
  log4cplus::PropertyConfigurator::doConfigure("log4cplus.properties");
  //! [logging]
  Variables();
  Logging();
  Version();
}
