// The code of the guide to bindings; bindings.txt contains what it prints.

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/Clone.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_platform/IVariableManager.h>
#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <string>

#include "Sections.h"

namespace {

// A controller without variables.
class NoVariables : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t /*idDevice*/, std::uint32_t /*idVariable*/,
                       std::string& /*value*/) override {
    return -1;
  }
};

void Notify() {
  const Section section("notify");
  //! [notify]
  const auto message = CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL_CHANGED", 75);
  message->AddPath("house/kitchen");
  message->addParam("SOURCE", "string", "wall dimmer");
  std::cout << message->toXml();
  //! [notify]
}

void Number() {
  const Section section("number");
  //! [number]
  const auto news = CBindMessage::Create(IBindMessage::NOTIFY, "SETPOINT_CHANGED", zq::ToText(21.5));
  news->addParamDouble("HYSTERESIS", "number", 0.5);
  std::cout << news->getData() << ' ' << news->getParam("HYSTERESIS") << '\n';
  //! [number]
}

//! [receive]
// Follows a dimmer at the other end of the binding.
void Receive(const IBindMessage& message) {
  if (message.getNotify() != "LEVEL_CHANGED") {
    std::cout << "nothing to do\n";
    return;
  }
  std::int32_t seconds = 0;  // the default for messages without a duration
  message.getParamInt("RAMP_SECONDS", seconds);
  std::cout << std::clamp(message.getDataAsInteger(), 0, 100) << "% in " << seconds << " s\n";
}
//! [receive]

void ReceiveFromText() {
  const Section section("parse");
  const std::string text = "<bindmessage><notify>LEVEL_CHANGED</notify><data>40</data></bindmessage>";
  //! [parse]
  if (const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text)) {
    zq::XmlNode::Ptr root = document->GetRoot();
    CBindMessage message;
    message.fromXml(root);
    Receive(message);
  }
  //! [parse]
}

//! [answer]
// Returns the answer to a query of another device, or null if the message is not a query.
boost::shared_ptr<IBindMessage> Answer(const IBindMessage& query) {
  if (query.getCommand() != "GET_LEVEL") return {};
  zq::XmlNode::Ptr element = zq::CreateXmlNode("bindmessage", "");
  element->AddChild("notify", "LEVEL_CHANGED");
  element->AddChild("query", "");
  element->AddChild("data", 75U);
  const auto answer = CBindMessage::Create();
  answer->fromXml(element);
  return answer;
}
//! [answer]

void Query() {
  const Section section("answer");
  const auto query = CBindMessage::Create(IBindMessage::COMMAND, "GET_LEVEL");
  std::cout << Answer(*query)->toXml() << (Answer(*CBindMessage::Create()) == nullptr ? "no answer\n" : "");
}

void Copy() {
  const Section section("copy");
  const auto message = Answer(*CBindMessage::Create(IBindMessage::COMMAND, "GET_LEVEL"));
  //! [copy]
  const boost::shared_ptr<IBindMessage> kept = zq::Clone(*message);
  std::cout << std::boolalpha << kept->getData() << ' ' << zq::AnswersQuery(*kept) << '\n';
  //! [copy]
}

void News() {
  const Section section("news");
  const auto answer = Answer(*CBindMessage::Create(IBindMessage::COMMAND, "GET_LEVEL"));
  //! [news]
  answer->Initialize(IBindMessage::NOTIFY, "LEVEL_CHANGED", 60);  // a change, no longer an answer
  std::cout << answer->toXml();
  //! [news]
}

void Forward() {
  const Section section("forward");
  NoVariables variables;
  CCmdMessage command("SET_LEVEL", variables);
  command.addParam("LEVEL", "number", 75);
  //! [forward]
  const auto message = CBindMessage::Create(command);
  std::cout << message->getCommand() << ' ' << message->getParam("LEVEL") << '\n';
  //! [forward]
}

void Read() {
  const Section section("read");
  CBindMessage message;
  //! [read]
  message.addParam("HOLD", "bool", "Y");
  message.addParam("SCENE", "string", "");

  bool hold = false;
  std::int32_t scene = -1;
  std::cout << std::boolalpha << message.getParamBool("HOLD", hold) << ' ' << hold << '\n'
            << message.getParamInt("SCENE", scene) << ' ' << scene << '\n'
            << message.hasParam("SCENE") << ' ' << message.hasParam("ROOM") << '\n';
  try {
    message.getParamRequired("ROOM");
  } catch (const ExceptionParameterMissing& error) {
    std::cout << error.what() << '\n';
  }
  //! [read]
}

void Markup() {
  const Section section("markup");
  //! [markup]
  const auto scene = CBindMessage::Create(IBindMessage::NOTIFY, "SCENE", R"(<light id="7">40</light>)");
  std::cout << scene->toXml();

  // The sender escapes text as markup.
  const std::string markup = zq::CreateXmlNode("data", "Tom & Jerry")->InnerXml();
  std::cout << CBindMessage::Create(IBindMessage::NOTIFY, "TITLE", markup)->toXml();
  //! [markup]
}

}  // namespace

int main() {
  Notify();
  Number();
  ReceiveFromText();
  Query();
  News();
  Copy();
  Forward();
  Read();
  Markup();
}
