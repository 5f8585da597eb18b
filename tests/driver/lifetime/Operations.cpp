#include "Operations.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_driver/discovery_info.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <algorithm>
#include <exception>
#include <iterator>
#include <locale>
#include <memory>
#include <sstream>
#include <utility>

#include "ProjectText.h"

namespace {

constexpr char xmlCommand[] =
    "<devicecommand><command>SET_LEVEL</command><params>"
    "<param><name>LEVEL</name><value type='number'><static>40</static></value></param>"
    "<param><name>PASSWORD</name><value type='text'><static>secret</static></value></param>"
    "<param><name>ROOM</name><value "
    "type='number'><variable><deviceid>7</deviceid><variableid>1001</variableid>"
    "</variable></value></param></params></devicecommand>";
constexpr char jsonCommand[] =
    R"({"command": {"command": "SET_LEVEL", "params": [{"name": "LEVEL", "value": {"static": "40"}}]}})";

std::string Printed(const CCmdMessage& message) {
  std::ostringstream os;
  message.print(os);
  return os.str();
}

std::string LoadCommand(const std::string& text) {
  tavrin_testing::FakeVariables manager;
  manager.set(7, 1001, "3");
  CCmdMessage message(manager, 1);
  const int result = message.Load(text);
  return std::to_string(result) + Printed(message) + message.getParam("ROOM") +
         message.clone()->getParam("LEVEL");
}

std::string LoadXml() { return LoadCommand(xmlCommand); }

std::string LoadJson() { return LoadCommand(jsonCommand); }

std::string RefuseXml() { return LoadCommand("<devicecommand><command>"); }

std::string RefuseJson() {
  std::string texts = LoadCommand(R"({"command": )");
  try {
    texts += LoadCommand(std::string(2000, '['));
  } catch (const std::exception& error) {
    texts += error.what();
  }
  return texts;
}

std::string WriteMasked() {
  tavrin_testing::FakeVariables manager;
  CCmdMessage message(manager, 1);
  if (message.Load(xmlCommand) != 0) return "not a command";
  return message.toXml(true) + message.toXml(false);
}

std::string ReadRequired() {
  tavrin_testing::FakeVariables manager;
  CCmdMessage message(manager, 1);
  if (message.Load(xmlCommand) != 0) return "not a command";
  try {
    message.getParamRequiredInt("NONE");
  } catch (const ExceptionParameterMissing& error) {
    return error.what() + std::to_string(message.getParamRequiredDouble("LEVEL", 2));
  }
  return "nothing thrown";
}

// Logs a warning and the call stack.
std::string Warn() {
  tavrin_testing::FakeVariables manager;
  CCmdMessage message(manager, 1);
  if (message.Load(xmlCommand) != 0) return "not a command";
  try {
    message.getParamRequiredIntRanged("LEVEL", 100, 0);
  } catch (const ExceptionParameterInvalid& error) {
    return error.what() + std::to_string(message.getParamRequiredVarDeviceID("LEVEL"));
  }
  return "nothing thrown";
}

std::string GetStackFrames() {
  zq::Logger::initialize();
  return zq::Logger::getStackFrames().empty() ? "no frames" : "frames";
}

std::string NameBeyondAscii() {
  const zq::XmlNode::Ptr node = zq::CreateXmlNode("Größe", TRUE_STRING);
  node->SetAttribute("Maß", "1 < 2");
  node->AddChild("1 name", 7)->AddChild("text", VAR_TRUE_STRING + EMPTY_STRING);
  return node->OuterXml();
}

std::string LargeXml() {
  std::string items;
  for (int i = 0; i < 2000; ++i) items += "<item a='&lt;" + std::to_string(i) + "'>text &amp; more</item>\n";
  return Element("root", items);
}

std::string LargeText() {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(LargeXml());
  const zq::XmlNode::Ptr root = document->GetRoot();
  root->AddChild("added", FALSE_STRING);
  const std::string text = root->OuterXml();
  return std::to_string(root->GetChildCount()) + root->GetChild("item")->OuterXml() + root->GetData("added") +
         std::to_string(text.size());
}

std::string CheckProject() {
  zq::ProjectValidator validator(ProjectWith(Item("2") + Item("2", "<zqi>a.exe</zqi>")));
  std::string texts = zq::ToString(validator.valid());
  for (const std::string& message : validator.messages()) texts += message + '\n';
  validator.set("<no project");
  texts += zq::ToString(validator.valid());
  return texts + validator.messages().back();
}

std::string Bind() {
  const auto message = CBindMessage::Create(CBindMessage::COMMAND, "SET_LEVEL", 40);
  message->addParamDouble("LEVEL", "number", 0.5);
  double level = 0;
  message->getParamDouble("LEVEL", level);
  return message->toXml() + message->toJson() + std::to_string(level);
}

std::string Cond() {
  const auto message = CCondMessage::Create(
      "<deviceconditional><name>IS</name><conditional>EQUAL</conditional><params><param><name>LEVEL</name>"
      "<value type='number'><static>40</static></value></param></params></deviceconditional>");
  return message->toXml() + zq::ToString(message->Test(40, "LEVEL")) +
         zq::ToString(message->Test(41, "LEVEL"));
}

std::string Color() {
  ZqColor color;
  if (!color.fromString("0.9,0.05,1")) return "not a colour";
  double h = 0;
  double s = 0;
  double v = 0;
  color.toHSV(h, s, v);
  return color.nearestSRGB().toString() + ' ' + std::to_string(h) + ' ' + std::to_string(s) + ' ' +
         std::to_string(color.toCCTTable()) + ZqColor::SRGBRed.toString();
}

std::string Discover() {
  const zq::discovery_info device("uuid", "10.0.0.7", "light", "make", "model", "sdk");
  zq::discovery_info copy;
  copy = device;
  return *copy.uuid() + *copy.model() + zq::ToString(copy == device);
}

std::string Convert() {
  return ToLower("TEXT") + zq::ToString(true) + zq::ToString(0.25, 6, std::locale::classic()) +
         std::to_string(zq::ToDouble("0.5", std::locale::classic())) +
         std::to_string(zq::ToInt32(WHITESPACE)) + TRUE_STRING + FALSE_STRING + VAR_TRUE_STRING +
         VAR_FALSE_STRING + EMPTY_STRING;
}

}  // namespace

const Operation operations[] = {
    {"LoadXml", LoadXml},
    {"LoadJson", LoadJson},
    {"RefuseXml", RefuseXml},
    {"RefuseJson", RefuseJson},
    {"WriteMasked", WriteMasked},
    {"ReadRequired", ReadRequired},
    {"Warn", Warn},
    {"GetStackFrames", GetStackFrames},
    {"NameBeyondAscii", NameBeyondAscii},
    {"LargeText", LargeText},
    {"CheckProject", CheckProject},
    {"Bind", Bind},
    {"Cond", Cond},
    {"Color", Color},
    {"Discover", Discover},
    {"Convert", Convert},
};

const std::size_t operationCount = std::size(operations);

std::string RunOperation(std::string_view name) {
  const auto* const found = std::find_if(std::begin(operations), std::end(operations),
                                         [&](const Operation& operation) { return operation.name == name; });
  return found->run();
}

std::vector<std::shared_ptr<void>> NewObjects() {
  static tavrin_testing::FakeVariables& manager =
      *new tavrin_testing::FakeVariables;  // outlives the commands
  const auto command = std::make_shared<CCmdMessage>(manager, 1U);
  static_cast<void>(command->Load(xmlCommand));
  const auto binding = std::make_shared<CBindMessage>();
  binding->Initialize(*command);
  const auto keep = [](auto pointer) { return std::make_shared<decltype(pointer)>(std::move(pointer)); };
  return {command,
          binding,
          keep(CCondMessage::Create("<deviceconditional><name>IS</name></deviceconditional>")),
          keep(zq::CreateXmlDocument(xmlCommand)),
          keep(zq::CreateXmlDocument(LargeXml())->GetRoot()),
          keep(zq::CreateXmlNode("name", std::string(100000, 'x'))),
          std::make_shared<zq::ProjectValidator>(ProjectWith(Item("2"))),
          std::make_shared<zq::discovery_info>("uuid", "10.0.0.7", "light", "make", "model", "sdk")};
}
