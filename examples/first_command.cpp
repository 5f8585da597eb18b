#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/Required.h>
#include <iostream>

// Simulates the controller, which stores the current values of all device variables.
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

  //! [command]
  CCmdMessage command(controller, 0);
  if (command.Load(R"({
        "devicecommand": {
          "command": "SET_LEVEL",
          "params": [
            {"name": "LEVEL", "type": "number", "value": {"variable": {"deviceid": 7, "variableid": 1001}}}
          ]
        }
      })") != 0)
    return 1;

  std::cout << command.getRawCommand() << ' ' << command.getParamRequiredIntRanged("LEVEL", 0, 100) << '\n';
  try {
    zq::RequireDouble(command, "RAMP_SECONDS", {0, 60});
  } catch (const ExceptionParameterMissing& error) {
    std::cout << error.what() << '\n';
  }
  //! [command]
}
