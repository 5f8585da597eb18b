#include "Thermostat.h"

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_driver/Required.h>
#include <tavrin_platform/XmlNode.h>

//! [driver]
void Thermostat::Execute(const ICmdMessage& command) {
  const std::string& name = command.getRawCommand();
  if (name == "SET_POINT") {
    setPoint_ = zq::RequireDouble(command, "CELSIUS", {5, 30});
    send_(*CBindMessage::Create(IBindMessage::NOTIFY, "SET_POINT_CHANGED", zq::ToText(setPoint_)));
  } else if (name == "SET_MODE") {
    mode_ =
        zq::RequireEnum<Mode>(command, "MODE", {{"OFF", Mode::off}, {"HEAT", Mode::heat}}, zq::Case::ignored);
  }
}

void Thermostat::Receive(const IBindMessage& message) {
  if (message.getNotify() == "TEMPERATURE_CHANGED") {
    temperature_ = zq::RequireDataDouble(message, {-40, 60});
  } else if (message.getCommand() == "GET_SET_POINT") {
    zq::XmlNode::Ptr element = zq::CreateXmlNode("bindmessage", "");
    element->AddChild("notify", "SET_POINT");
    element->AddChild("query", "");  // the notification is an answer
    element->AddChild("data", zq::ToText(setPoint_));
    CBindMessage answer;
    answer.fromXml(element);
    send_(answer);
  }
}

bool Thermostat::Evaluate(const ICondMessage& conditional) const {
  if (conditional.getName() == "HEATING") return conditional.Test(IsHeating());
  if (conditional.getName() == "TEMPERATURE")
    return conditional.Test(temperature_, zq::RequireDouble(conditional, "CELSIUS"));
  return false;
}
//! [driver]
