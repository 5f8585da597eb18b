// A small driver for a dimmable light. It reads messages from the files of its command line and prints what
// the light does: it executes commands, follows the level of a dimmer over a binding, and evaluates
// conditionals.

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/IVariableManager.h>
#include <algorithm>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <locale>
#include <stdexcept>
#include <string>

namespace {

//! [driver]
class LightDriver {
 public:
  // Executes a command. Throws an exception of the message if a parameter is absent or out of range; the
  // state of the light is then unchanged.
  std::string Execute(const ICmdMessage& command) {
    const std::string& name = command.getRawCommand();
    if (name == "ON") return DimTo(100, 0);
    if (name == "OFF") return DimTo(0, 0);
    if (name == "SET_LEVEL") return SetLevel(command);
    return "ignored: unknown command " + name;
  }

  // Handles a message from a bound device.
  std::string Receive(const IBindMessage& message) {
    const std::string& notification = message.getNotify();
    if (notification.empty()) return "ignored: commands over a binding are not supported";
    if (notification != "LEVEL_CHANGED") return "ignored: unknown notification " + notification;
    return DimTo(std::clamp(message.getDataAsInteger(), 0, 100), 0);
  }

  // Evaluates a conditional for the current state.
  std::string Evaluate(const ICondMessage& conditional) const {
    const std::string& name = conditional.getName();
    if (name != "Level" && name != "On") return "ignored: unknown state " + name;
    const bool isTrue = name == "Level" ? conditional.Test(level_, nullptr) : conditional.Test(level_ > 0);
    return name + ' ' + conditional.getRawCondition() + " is " + (isTrue ? "true" : "false");
  }

 private:
  std::string SetLevel(const ICmdMessage& command) {
    const std::int32_t level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
    const double seconds =
        command.hasParam("RAMP_SECONDS") ? command.getParamRequiredDouble("RAMP_SECONDS", 1) : 0;
    return DimTo(level, seconds);
  }

  std::string DimTo(std::int32_t level, double seconds) {
    const std::string from = std::to_string(level_);
    level_ = level;
    return "from " + from + "% to " + std::to_string(level_) + "% in " +
           zq::ToString(seconds, 1, std::locale::classic()) + " s";
  }

  std::int32_t level_ = 0;
};
//! [driver]

// Simulates the controller: the brightness is variable 1001 of device 7.
class Controller : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override {
    if (idDevice != 7 || idVariable != 1001) return -1;
    value = "40";
    return 0;
  }
};

std::string ReadFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) throw std::runtime_error("the file cannot be opened");
  return {std::istreambuf_iterator<char>(file), {}};
}

// A controller calls the operation of the driver for each kind of message. Here the root element selects it.
std::string Answer(LightDriver& light, Controller& controller, const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  zq::XmlNode::Ptr root = document ? document->GetRoot() : zq::CreateXmlNode();
  if (root->IsName("bindmessage")) {
    CBindMessage message;
    message.fromXml(root);
    return light.Receive(message);
  }
  if (root->IsName("deviceconditional")) {
    CCondMessage conditional;
    conditional.fromXml(root);
    return light.Evaluate(conditional);
  }
  CCmdMessage command(controller, 0);
  if (command.Load(text) != 0) throw std::runtime_error("not a command message");
  return light.Execute(command);
}

}  // namespace

int main(int argc, char** argv) {
  Controller controller;
  LightDriver light;
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    const std::string file = argv[i];
    try {
      const std::string action = Answer(light, controller, ReadFile(file));
      std::cout << file << ": " << action << '\n';
    } catch (const std::exception& error) {
      std::cout << file << ": refused: " << error.what() << '\n';
      status = 1;
    }
  }
  return status;
}
