// The examples in the comments of the public headers. They are compiled but not run.
// tests/docs/Guides_test.cpp checks that every example of a header is here or in a program that is run.

#include <boost/smart_ptr/shared_ptr.hpp>
#include <gtest/gtest.h>

#include <tavrin_colorimetry/Colorimetry.h>
#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_diagnostics/Rules.h>
#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/Clone.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_driver/Version.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/IVariableManager.h>
#include <tavrin_platform/LevelMeasure.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeLevel.h>
#include <tavrin_testing/ParamValue.h>
#include <cstdint>
#include <iostream>
#include <locale>
#include <stdexcept>
#include <string>
#include <utility>

namespace header_examples {

// Marks the results of an example as used.
template <class... Results>
void Use(const Results&... /*results*/) {}

void Read(const zq::XmlNode& /*node*/) {}

void Versions() {
  static_assert(TAVRIN_DRIVER_VERSION >= 10000, "needs the headers of 1.0.0");
  if (zq::LibraryVersion() < 10000) throw std::runtime_error("needs the library of 1.0.0");
}

void Parameters() {
  DriverParam level("LEVEL", "number", "50");
  DriverParam follow("LEVEL", "number", 7, 1001);  // variable 1001 of device 7
  std::string xml = level.toXml();
  Use(follow, xml);
}

void Commands(zq::IVariableManager& variables, std::uint32_t ownerId, const std::string& text) {
  CCmdMessage command(variables, ownerId);
  if (command.Load(text) == 0) std::cout << command.toXml(true) << std::endl;  // true: secrets are masked
}

void CommandParameters(const ICmdMessage& command, double& ramp) {
  std::int32_t level = command.getParamRequiredIntRanged("LEVEL", 0, 100);
  if (command.hasParam("RAMP_SECONDS")) ramp = command.getParamRequiredDouble("RAMP_SECONDS", 1);
  try {
    level = command.getParamRequiredInt("LEVEL");
  } catch (const ExceptionParameterMissing& error) {
    std::cerr << "LEVEL: " << error.what() << std::endl;
  }
  Use(level);
}

void Bindings() {
  auto message = CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL_CHANGED", 75);
  message->AddPath("house/kitchen");
  message->addParam("SOURCE", "string", "dimmer");
  std::string xml = message->toXml();
  Use(xml);
}

void Copies(const IBindMessage& message) {
  const boost::shared_ptr<CBindMessage> copy = zq::Clone(message);  // message: const IBindMessage&
  Use(copy);
}

void Conditionals() {
  const auto conditional = CCondMessage::Create(R"(<deviceconditional><name>LEVEL_IS</name>
    <conditional>LESS_THAN</conditional></deviceconditional>)");
  conditional->addParam("LEVEL", "number", "50");
  bool isTrue = conditional->Test(40, nullptr);
  Use(isTrue);
}

void Levels(const ICondMessage& conditional, std::int32_t currentLevel) {
  {
    bool isTrue = conditional.Test(currentLevel, nullptr);
    Use(isTrue);
  }
  EXPECT_TRUE(conditional.Test(tavrin_testing::FakeLevel(40), nullptr));
}

void Levels(const ICondMessage& conditional, const LevelMeasure::LevelPoint& level) {
  bool isTrue = conditional.Test(level, nullptr);  // level: const LevelMeasure::LevelPoint&
  Use(isTrue);
}

void Projects(const std::string& text) {
  zq::ProjectValidator validator(text);
  if (!validator.valid())
    for (const std::string& message : validator.messages()) std::cout << message << std::endl;
}

void Colours() {
  const auto white = tavrin::colorimetry::CorrelatedColorTemperature({0.4578, 0.4101});
  if (white && white->IsMeaningful()) std::cout << white->kelvin << " K, Duv " << white->duv << std::endl;
}

void Numbers() {
  std::int32_t level = zq::ToInt32(" 75 %");                                   // 75
  double celsius = zq::ToDouble(std::string("21.5"), std::locale::classic());  // 21.5
  std::string text = zq::ToString(21.50, 6, std::locale::classic());           // "21.5"
  Use(level, celsius, text);
}

void Constants(const std::string& value) {
  const bool isOn = value == VAR_TRUE_STRING;  // the value of a variable
  const std::string& shown = isOn ? TRUE_STRING : FALSE_STRING;
  const bool isBlank = value.find_first_not_of(WHITESPACE) == std::string::npos;
  Use(shown, isBlank);
}

void Values() {
  tavrin_testing::ParamValue room = "hall";   // a string
  tavrin_testing::ParamValue celsius = 21.5;  // a number, "21.5"
  tavrin_testing::ParamValue isOn = true;     // a bool, "true"
  Use(room, celsius, isOn);
}

// Simulates the controller.
class Controller : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t device, std::uint32_t variable, std::string& value) override {
    if (device != 7 || variable != 1001) return -1;
    value = "40";
    return 0;
  }
};

void Logging() {
  if (!zq::Logger::hasBeenInitialized) zq::Logger::initialize();
}

void XmlDocuments() {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument("<room><lamp>7</lamp><lamp>8</lamp></room>");
  if (!document) return;  // not well-formed
  const zq::XmlNode::Ptr root = document->GetRoot();
  zq::XmlNodeIterator* const children = root->GetIterator();
  for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next())
    std::cout << child->GetName() << ": " << child->GetDataNumber() << std::endl;
}

void XmlRoot(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (document) Read(*document->GetRoot());
}

void XmlChildren(const zq::XmlNode::Ptr& node) {
  zq::XmlNodeIterator* const children = node->GetIterator();
  for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) Read(*child);
}

void XmlElements() {
  const zq::XmlNode::Ptr item = zq::CreateXmlNode("item", "");
  item->AddChild("id", 7);
  item->SetAttribute("kind", "lamp");
  std::string xml = item->OuterXml();  // <item kind="lamp"><id>7</id></item>
  Use(xml);
}

void XmlPositions(const zq::XmlNode::Ptr& node, const std::string& file) {
  const zq::XmlPosition at = zq::PositionOf(*node);
  std::cerr << file << ':' << at.line << ':' << at.column << std::endl;
}

void XmlNumbers(const zq::XmlNode::Ptr& node, std::int64_t& id) {
  try {
    id = node->GetChildDataNumber("id");
  } catch (const zq::ZqError& error) {
    std::cerr << error.what() << std::endl;
  }
}

void XmlErrors(std::string text) {
  zq::XmlError error;
  if (!zq::CreateXmlDocument(std::move(text), error))
    std::cerr << error.position.line << ':' << error.position.column << ": " << error.text << std::endl;
}

void Diagnostics(const std::string& text, const std::string& name) {
  for (const tavrin::diagnostics::Diagnostic& found : tavrin::diagnostics::DiagnoseCommand(text))
    std::cerr << found.begin.line << ": " << found.text << " (" << found.rule << ")" << std::endl;
  std::cerr << tavrin::diagnostics::Printable(name) << std::endl;
  if (const auto* rule = tavrin::diagnostics::FindRule("project/duplicate-id")) std::cout << rule->reason;
}

}  // namespace header_examples
