// The code of the guide to commands; commands.txt contains what it prints.

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/Required.h>
#include <tavrin_platform/IVariableManager.h>
#include <cstdint>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "Sections.h"

namespace {

// Simulates the controller's variables.
class Variables : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override {
    const auto found = values.find({idDevice, idVariable});
    if (found == values.end()) return -1;
    value = found->second;
    return 0;
  }

  std::map<std::pair<std::uint32_t, std::uint32_t>, std::string> values;
};

//! [light]
class Light {
 public:
  void Execute(const ICmdMessage& command) {
    const std::string& name = command.getRawCommand();
    if (name == "ON")
      DimTo(100, 0);
    else if (name == "OFF")
      DimTo(0, 0);
    else if (name == "SET_LEVEL")
      SetLevel(command);
    else
      std::cout << "unknown command " << name << '\n';
  }

 private:
  void SetLevel(const ICmdMessage& command) {
    // All parameters are read before the light changes, so a rejected command changes nothing.
    const std::int32_t level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
    const double seconds =
        command.hasParam("RAMP_SECONDS") ? command.getParamRequiredDouble("RAMP_SECONDS", 1) : 0;
    DimTo(level, seconds);
  }

  void DimTo(std::int32_t percent, double seconds) {
    std::cout << "from " << percent_ << "% to " << percent << "% in " << seconds << " s\n";
    percent_ = percent;
  }

  std::int32_t percent_ = 0;
};
//! [light]

const std::string setLevel = R"(
    <devicecommand><command>SET_LEVEL</command><params>
      <param><name>LEVEL</name><value type="number"><static>75</static></value></param>
      <param><name>RAMP_SECONDS</name><value type="number"><static>2,5</static></value></param>
    </params></devicecommand>)";

//! [refuse]
// Passes a command to the driver, which propagates the exceptions of the message to its host.
bool Carry(Light& light, const ICmdMessage& command) {
  try {
    light.Execute(command);
    return true;
  } catch (const ExceptionParameterMissing& error) {
    std::cout << command.getRawCommand() << " rejected: " << error.what() << '\n';
  } catch (const ExceptionParameterInvalid& error) {
    std::cout << command.getRawCommand() << " rejected: " << error.what() << '\n';
  }
  return false;
}
//! [refuse]

void Receive(Variables& variables, Light& light, const std::string& text) {
  const Section section("receive");
  //! [receive]
  const auto command = CCmdMessage::CreateFromString(text, variables);
  light.Execute(*command);
  //! [receive]
}

void Refuse(Variables& variables, Light& light) {
  const Section section("refuse");
  CCmdMessage command("SET_LEVEL", variables);
  Carry(light, command);
  command.addParam("LEVEL", "number", 150);
  Carry(light, command);
}

// As the header shows it.
void Ranged(Variables& variables) {
  const Section section("ranged");
  CCmdMessage command("SET_LEVEL", variables);
  command.addParam("LEVEL", "number", 75);
  int level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
  std::cout << level << '\n';
}

void Load(Variables& variables) {
  const Section section("load");
  //! [load]
  for (const std::string text : {"", "SET_LEVEL", "<devicecommand>", R"({"devicecommand": 1})"}) {
    CCmdMessage command(variables, 0);
    std::cout << '"' << text << "\": " << command.Load(text) << '\n';
  }
  //! [load]
}

void Malformed(Variables& variables) {
  const Section section("malformed");
  const std::string text =
      "<devicecommand><command>ON</command><params><param><name>LEVEL</name><value type='number'><variable>"
      "<deviceid>seven</deviceid></variable></value></param></params></devicecommand>";
  //! [malformed]
  CCmdMessage command(variables, 0);
  try {
    if (command.Load(text) != 0) std::cout << "not a command\n";
  } catch (const std::exception& error) {  // zq::ZqError for XML, Json::Exception for JSON
    std::cout << error.what() << '\n';
  }
  //! [malformed]
}

void Conversions(Variables& variables) {
  const Section section("conversions");
  CCmdMessage command("EXAMPLE", variables);
  //! [conversions]
  command.addParam("COUNT", "number", "12 lamps");
  command.addParam("WORD", "number", "many");
  command.addParam("HUGE", "number", "99999999999");
  command.addParam("SECONDS", "number", "2,46");
  command.addParam("MUTE", "bool", "True");
  command.addParam("HOLD", "bool", "yes");
  std::cout << command.getParamRequiredInt("COUNT") << '\n'
            << command.getParamRequiredInt("WORD") << '\n'
            << command.getParamRequiredInt("HUGE") << '\n'
            << command.getParamRequiredDouble("SECONDS", 1) << '\n'
            << std::boolalpha << command.getParamRequiredBool("MUTE") << '\n'
            << command.getParamRequiredBool("HOLD") << '\n';
  //! [conversions]
}

//! [strict]
enum class Mode { heat, off };

void SetPoint(const ICmdMessage& command) {
  const double celsius = zq::RequireDouble(command, "CELSIUS", {5, 30});
  const Mode mode = zq::RequireEnum<Mode>(command, "MODE", {{"HEAT", Mode::heat}, {"OFF", Mode::off}});
  const double seconds = zq::OptionalDouble(command, "RAMP_SECONDS", 0, {0, 60});
  std::cout << (mode == Mode::heat ? "heats to " : "would heat to ") << celsius << " in " << seconds
            << " s\n";
}
//! [strict]

void Strict(Variables& variables) {
  const Section section("strict");
  const std::map<std::string, DriverParam> common = {{"MODE", {"MODE", "string", "HEAT"}}};
  for (const std::string celsius : {"21,5", "31", "many"}) {
    CCmdMessage command("SET_POINT", common, variables);
    command.addParam("CELSIUS", "number", celsius);
    try {
      SetPoint(command);
    } catch (const std::runtime_error& error) {
      std::cout << error.what() << '\n';
    }
  }
  try {
    SetPoint(CCmdMessage("SET_POINT", common, variables));
  } catch (const ExceptionParameterMissing& error) {
    std::cout << error.what() << '\n';
  }
}

void Variable(Variables& variables) {
  const Section section("variable");
  CCmdMessage command("SET_LEVEL", variables);
  //! [variable]
  command.addVarParam("LEVEL", "number", 7, 1001);  // variable 1001 of device 7

  variables.values[{7, 1001}] = "40";
  std::cout << command.getParamRequiredInt("LEVEL") << '\n';
  variables.values[{7, 1001}] = "60";
  std::cout << command.getParamRequiredInt("LEVEL") << '\n';

  variables.values.clear();
  std::cout << '"' << command.getParam("LEVEL") << "\"\n";
  try {
    command.getParamRequiredInt("LEVEL");
  } catch (const ExceptionParameterMissing& error) {
    std::cout << error.what() << '\n';
  }
  //! [variable]
}

void Build(Variables& variables) {
  const Section section("build");
  //! [build]
  CCmdMessage command("UNLOCK", variables);
  command.addParam("USER", "string", "Ada");
  command.addParam("PIN", "string", "4711");
  command.addParam("PIN", "string", "0000");  // ignored: PIN already exists
  command.addParamDouble("SECONDS", "number", 2.5);
  command.overwriteParam("USER", "string", "Grace");
  std::cout << command.toXml(true) << '\n';
  //! [build]
}

void Keep(Variables& variables) {
  const Section section("keep");
  CCmdMessage command("ON", variables);
  //! [keep]
  const boost::shared_ptr<ICmdMessage> later = command.clone();
  command.Clear();
  std::cout << '"' << command.getRawCommand() << "\" \"" << later->getRawCommand() << "\"\n";
  //! [keep]
}

}  // namespace

int main() {
  Variables variables;
  Light light;
  Receive(variables, light, setLevel);
  Refuse(variables, light);
  Ranged(variables);
  Load(variables);
  Malformed(variables);
  Conversions(variables);
  Strict(variables);
  Variable(variables);
  Build(variables);
  Keep(variables);
}
