#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/Required.h>

#include <iostream>

// Stands in for the controller, which knows the current values of all device variables.
class Controller : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t device, std::uint32_t variable, std::string& value) override {
    if (device != 7 || variable != 1001) return -1;
    value = "40";
    return 0;
  }
};

int main() {
  Controller controller;
  CCmdMessage command(controller, 0);
  if (command.Load(R"({"devicecommand": {"command": "SET_LEVEL", "params": [
        {"name": "PIN", "type": "string", "value": {"static": "4711"}},
        {"name": "LEVEL", "type": "number", "value": {"variable": {"deviceid": 7, "variableid": 1001}}}]}})") !=
      0)
    return 1;

  std::cout << command.getRawCommand() << ' ' << command.getParamRequiredIntRanged("LEVEL", 0, 100) << '\n';
  std::cout << command.toXml(true) << '\n';  // true: secrets are masked
  try {
    zq::RequireDouble(command, "RAMP_SECONDS", {0, 60});
  } catch (const ExceptionParameterMissing& error) {
    std::cout << error.what() << '\n';
  }
}
