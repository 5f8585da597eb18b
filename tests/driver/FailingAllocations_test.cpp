// Tests the exception guarantees of each operation: each of its allocations fails, once alone and once
// together with all later ones, and the operation is called again.

#include <gtest/gtest.h>
#include <json/reader.h>
#include <log4cplus/logger.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_driver/discovery_info.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/IVariableManager.h>
#include <tavrin_platform/Logger.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/LogCapture.h>
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <iostream>
#include <iterator>
#include <limits>
#include <locale>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "CountedAllocations.h"
#include "DescribeParams.h"
#include "ParseXml.h"
#include "ProjectText.h"

namespace {

using zq::XmlNode;

// One call of an operation, with the objects that were constructed for it.
struct Attempt {
  std::function<void()> work;
  std::function<std::string()> state;  // of all objects that the work may change, and its result
};

// The exception guarantee of an operation that fails with std::bad_alloc.
enum class Guarantee {
  strong,           // nothing has changed
  basicRepeatable,  // basic; calling the operation again completes it
  basic,            // basic; calling the operation again adds to what it has already done
};

struct Operation {
  std::string name;
  Guarantee guarantee;
  std::function<Attempt()> prepare;
};

void PrintTo(const Operation& operation, std::ostream* os) { *os << operation.name; }

const std::string nothing = "nothing";
const std::string longText(100, 't');  // longer than the buffer inside a std::string
const std::string longName(3000, 'n');

std::string Describe(const std::string& text) { return text; }
std::string Describe(bool value) { return value ? "true" : "false"; }
std::string Describe(const boost::optional<std::string>& text) { return text.value_or("none"); }
std::string Describe(const XmlNode& node) { return node.OuterXml(); }
std::string Describe(const zq::XmlDocument& document) { return document.GetRoot()->OuterXml(); }
std::string Describe(const ZqColor& color) { return color.toString(); }
std::string Describe(const zq::discovery_info& info) {
  std::string text = info.is_brel() ? "brel" : "other";
  for (const auto& field : {info.uuid(), info.host(), info.ip(), info.type(), info.driver(),
                            info.manufacturer(), info.model(), info.primary_proxy(), info.proxies()})
    text += ' ' + field.value_or("none");
  return text;
}
std::string Describe(const zq::ProjectValidator& validator) {
  EXPECT_GE(validator.places().size(), validator.messages().size());
  std::string text;
  for (const std::string& message : validator.messages()) text += message + '\n';
  return text;
}
template <typename T>
std::string Describe(const boost::shared_ptr<T>& object) {
  return object ? Describe(*object) : "none";
}

// An operation that changes an object. A function for each type of object, not for each operation, because
// most of the compile time is that of templates.
template <typename Object>
Operation ChangesObject(std::string name, Guarantee guarantee, const std::function<Object()>& make,
                        const std::function<void(Object&)>& change) {
  return {std::move(name), guarantee, [make, change] {
            const auto object = std::make_shared<Object>(make());
            return Attempt{[=] { change(*object); }, [=] { return Describe(*object); }};
          }};
}

// An operation that changes the object that `make` returns.
template <typename Make, typename Change>
Operation Changes(std::string name, Guarantee guarantee, const Make& make, const Change& change) {
  return ChangesObject<decltype(make())>(std::move(name), guarantee, make, change);
}

template <typename Value>
Operation ReturnsValue(std::string name, const std::function<Value()>& get) {
  return {std::move(name), Guarantee::strong, [get] {
            const auto result = std::make_shared<std::optional<Value>>();
            return Attempt{[=] { result->emplace(get()); },
                           [=] { return *result ? Describe(**result) : nothing; }};
          }};
}

// An operation that returns a value and changes nothing.
template <typename Get>
Operation Returns(std::string name, const Get& get) {
  return ReturnsValue<decltype(get())>(std::move(name), get);
}

// Returns whether a record is a frame of a call stack.
bool IsFrame(const std::string& record) {
  const std::size_t digits = record.find_first_not_of("0123456789");
  return digits != 0 && digits != std::string::npos && record[digits] == '#';
}

// An operation that logs at every level. Its call stacks are not compared: if memory runs out while they are
// collected, they have fewer frames, or none.
Operation Logs(std::string name, const std::function<void()>& work) {
  return {std::move(name), Guarantee::basic, [work] {
            const auto log = std::make_shared<tavrin_testing::LogCapture>(log4cplus::TRACE_LOG_LEVEL);
            return Attempt{work, [log] {
                             std::string records;
                             for (const tavrin_testing::LogRecord& event : log->records())
                               if (!IsFrame(event.message)) records += event.message + '\n';
                             return records;
                           }};
          }};
}

// Resets logging while an object exists, and discards the standard error stream.
class QuietConsole : std::streambuf {
 public:
  QuietConsole() : before_(std::cerr.rdbuf(this)) {
    log4cplus::Logger::getRoot().removeAllAppenders();
    zq::Logger::hasBeenInitialized = false;
  }
  QuietConsole(const QuietConsole&) = delete;
  QuietConsole& operator=(const QuietConsole&) = delete;
  ~QuietConsole() override {
    log4cplus::Logger::getRoot().removeAllAppenders();
    std::cerr.rdbuf(before_);
  }

 private:
  int_type overflow(int_type c) override { return traits_type::not_eof(c); }
  std::streamsize xsputn(const char* /*text*/, std::streamsize size) override { return size; }

  std::streambuf* before_;
};

// Returns the message of the exception, which must have that type.
template <typename Exception, typename Work>
std::string Thrown(Work work) {
  try {
    work();
  } catch (const Exception& e) {
    return e.what();
  }
  return nothing;
}

// Returns the same value for all variables.
class OneValue : public zq::IVariableManager {
  int GetVariableValue(std::uint32_t /*idDevice*/, std::uint32_t /*idVariable*/,
                       std::string& value) override {
    value = longText;
    return 0;
  }
};

OneValue& Manager() {
  static OneValue manager;
  return manager;
}

using ParamMap = std::map<std::string, DriverParam>;

ParamMap Params() {
  return {{"a", {"a", longText, longText}},
          {"PASSWORD", {"PASSWORD", longText, longText}},
          {"v", {"v", longText, 7, 8}}};
}

const std::string xmlParams =
    "<params><param><name>" + longName + "</name><value type='" + longText + "'><static>" + longText +
    "&amp;</static></value></param><param><name>v</name><type>" + longText +
    "</type><value><valuetype><variable><deviceid>1</deviceid><variableid>2</variableid>"
    "</variable></valuetype></value></param></params>";
const std::string jsonParams =
    R"([{"name": "x)" + longText + R"(", "type": ")" + longText + R"(", "value": {"static": ")" + longText +
    R"("}}, {"name": "v", "value": {"variable": {"deviceid": 1, "variableid": 2}}}])";

// No parser is kept that has read a large text.
void DropParser() { zq::CreateXmlDocument(std::string(1U << 17U, 'x')); }

std::vector<Operation> OfTheXmlLibrary() {
  const std::string encoded(3000, '\xE9');
  const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?>";
  const std::string documents[] = {
      "<a/>",
      "<a x='1' y='&lt;'>text<b/>&amp;<![CDATA[<]]>\r\n<" + longName + "/>&#8364;</a>",
      "<!DOCTYPE a [<!ENTITY e '<c x=\"&#38;lt;\">t</c>'><!ATTLIST b x CDATA 'd'>]><a>&e;<b/>&e;</a>",
      latin + "<\xE9 \xE9='\xE9'>" + encoded + "</\xE9>",
      latin + "<" + encoded + "/>",
      "<a><b>" + std::string(3000, '\r') + "</a>",
      "<a><b/>" + std::string(100'000, 'x') + "</a>",
      "<a><b/>" + std::string(100'000, 'x') + "</b>",
  };
  std::vector<Operation> operations;
  for (const std::string& text : documents)
    operations.push_back(
        Returns("parse " + text.substr(0, 60), [text] { return zq::CreateXmlDocument(text); }));

  // The parser's copy of a large text is the tree's, too.
  const std::string large = "<a>\n<b/>" + std::string(100'000, 'x');
  for (const std::string& text : {large + "</a>", large + "</b>"}) {
    const std::string end = text.substr(large.size());
    operations.push_back(Returns("parse a moved-in large text with " + end,
                                 [text] { return zq::CreateXmlDocument(std::string(text)); }));
    operations.push_back(Returns("parse and diagnose a large text with " + end, [text] {
      zq::XmlError error;
      const auto document = zq::CreateXmlDocument(std::string(text), error);
      return std::to_string(error.position.line) + error.text + Describe(document);
    }));
  }

  const auto mixed = [] { return ParseXml("<a  x='1'>text<b/>12<c n='x'>" + longText + "</c ></a >"); };
  const auto leaf = [] { return ParseXml("<a  x='1'>" + longText + "</a >"); };
  const auto built = [] {
    XmlNode::Ptr node = zq::CreateXmlNode("a", longText);
    node->SetAttribute(longName + '&', "&<\x01");
    node->SetAttribute(longName + '<', "v");
    node->AddChild("\xC3\xA9" + longName, longText);
    node->AddChild(" ", "&");
    return node;
  };
  const Guarantee strong = Guarantee::strong;
  const std::vector<Operation> others = {
      {"parse where no parser is kept", strong,
       [] {
         DropParser();
         return Returns("", [] { return zq::CreateXmlDocument("<a>&lt;" + longText + "</a>"); }).prepare();
       }},
      Returns("parse a moved-in text",
              [] { return zq::CreateXmlDocument("<a>" + std::string(3000, ' ') + "</a>"); }),
      Returns("diagnose a malformed text",
              [] {
                zq::XmlError error;
                const auto document = zq::CreateXmlDocument("<a>" + longText + "</b>", error);
                return std::to_string(error.position.column) + error.text + Describe(document);
              }),
      Returns("parse and report progress",
              [] {
                zq::XmlError error;
                return zq::CreateXmlDocument("<a><!--" + std::string(200000, 'x') + "--></a>", error,
                                             [](std::size_t) {});
              }),
      Returns("make an element", [] { return zq::CreateXmlNode(longName, longText); }),
      Returns("make an element without a name", [] { return zq::CreateXmlNode(); }),
      Changes("initialize an element", strong, leaf,
              [](auto& node) { node->Initialize(longName, longText); }),
      Changes("add a first child", strong, leaf, [](auto& node) { node->AddChild(longName, longText); }),
      Changes("add a child", strong, mixed, [](auto& node) { node->AddChild(longName, longText); }),
      Changes("add a child by the helper", strong, mixed,
              [](auto& node) { XmlHelper::AddChild(node, longName, longText); }),
      Changes("add a number", strong, mixed, [](auto& node) { node->AddChild(longName, 4294967295U); }),
      Changes("set a new attribute", strong, leaf,
              [](auto& node) { node->SetAttribute(longName, longName); }),
      Changes("set an attribute", strong, leaf, [](auto& node) { node->SetAttribute("x", longName); }),
      Returns("write an element", [built] { return built()->OuterXml(); }),
      Returns("write the content of an element", [built] { return built()->InnerXml(); }),
      Returns("write an unchanged element", [mixed] { return mixed()->OuterXml(); }),
      Returns("read a name and a text", [mixed] { return mixed()->GetName() + mixed()->GetData(); }),
      Returns("read a child's text and an attribute",
              [mixed] { return mixed()->GetData("c") + mixed()->GetAttribute("x"); }),
      Returns("read a number from pieces",
              [] {
                return std::to_string(ParseXml("<a>" + std::string(60, ' ') + "4<b/>2</a>")->GetDataNumber());
              }),
      Returns("refuse a number", [leaf] { return Thrown<zq::ZqError>([&] { leaf()->GetDataNumber(); }); }),
      Returns("return the position of an element",
              [] {
                const XmlNode::Ptr root = ParseXml(std::string(5000, '\n') + "<a/>");
                return std::to_string(zq::PositionOf(*root).line);
              }),
  };
  operations.insert(operations.end(), others.begin(), others.end());
  return operations;
}

std::vector<Operation> OfCommands() {
  const auto whole = [] { return CCmdMessage(longText, Params(), Manager()); };
  const auto empty = [] { return CCmdMessage(Manager(), 0); };
  const auto withoutId = [] { return CCmdMessage(longText, {{"v", {"v", longText, 7, 0}}}, Manager()); };
  const std::string xml = "<c><command>" + longText + "</command>" + xmlParams + "</c>";
  const std::string json = R"({"c": {"command": ")" + longText + R"(", "params": )" + jsonParams + "}}";
  const Guarantee strong = Guarantee::strong;
  const Guarantee repeatable = Guarantee::basicRepeatable;
  return {
      Returns("make a command", whole),
      Returns("make a shared command", [] { return CCmdMessage::Create(longText, Params(), Manager()); }),
      Returns("make a command with an owner", [] { return CCmdMessage::Create(Manager(), 7); }),
      Returns("make a command from a name", [] { return CCmdMessage::CreateFromName(longText, Manager()); }),
      Returns("make a command from XML", [=] { return CCmdMessage::CreateFromString(xml, Manager()); }),
      Returns("copy a command", [=] { return CCmdMessage(whole()); }),
      Returns("copy any command",
              [=] {
                const CCmdMessage command = whole();
                const ICmdMessage& any = command;
                return CCmdMessage(any, Manager());
              }),
      Returns("clone a command", [=] { return whole().clone(); }),
      Changes("initialize a command", strong, whole, [](auto& c) { c.Initialize(longName); }),
      Changes("set an owner's type", strong, whole, [](auto& c) { c.setOwnerType(longName); }),
      Changes("add a text", strong, whole, [](auto& c) { c.addParam(longName, longText, longText); }),
      Changes("add a number", strong, whole, [](auto& c) { c.addParam(longName, longText, 1); }),
      Changes("add a number of another type", strong, whole,
              [](auto& c) { c.addParamULong(longName, longText, 1); }),
      Changes("add a truth", strong, whole, [](auto& c) { c.addParamBool(longName, longText, true); }),
      Changes("add a double", strong, whole, [](auto& c) { c.addParamDouble(longName, longText, 1e300); }),
      Changes("add a variable", strong, whole, [](auto& c) { c.addVarParam(longName, longText, 1, 2); }),
      Changes("add parameters", repeatable, empty, [](auto& c) { c.addParams(Params()); }),
      Changes("overwrite a parameter", strong, whole,
              [](auto& c) { c.overwriteParam("a", longName, longName); }),
      Changes("overwrite a variable", strong, whole, [](auto& c) { c.overwriteParam("v", longName, 1); }),
      Changes("overwrite what is not there", strong, whole,
              [](auto& c) { c.overwriteParam(longName, "", 1); }),
      Changes("load a command from XML", repeatable, empty, [=](auto& c) { static_cast<void>(c.Load(xml)); }),
      Changes("load a command from JSON", repeatable, empty,
              [=](auto& c) { static_cast<void>(c.Load(json)); }),
      Changes("load more from XML", repeatable, whole, [=](auto& c) { static_cast<void>(c.Load(xml)); }),
      Changes("load more from JSON", repeatable, whole, [=](auto& c) { static_cast<void>(c.Load(json)); }),
      Changes("refuse JSON", repeatable, empty,
              [=](auto& c) { static_cast<void>(c.Load(json.substr(0, json.size() - 1))); }),
      Changes("refuse an id in XML", repeatable, empty,
              [](auto& c) {
                const std::string id = "<value><variable><deviceid>x</deviceid></variable></value>";
                EXPECT_EQ(Thrown<zq::ZqError>([&] {
                            static_cast<void>(c.Load("<c><command>" + longText +
                                                     "</command><params><param/><param>" + id +
                                                     "</param></params></c>"));
                          }),
                          "element \"deviceid\" contains \"x\", which is not a number from -2147483648 to "
                          "4294967295");
              }),
      Changes("refuse an id in JSON", repeatable, empty,
              [](auto& c) {
                // The library's own text of it may be cut short.
                EXPECT_NE(Thrown<Json::LogicError>([&] {
                            static_cast<void>(
                                c.Load(R"({"c": {"params": [{"value": {"variable": {"deviceid": ""}}}]}})"));
                          }),
                          nothing);
              }),
      Returns("write a command", [=] { return whole().toXml(false); }),
      Returns("write a command without its secrets", [=] { return whole().toXml(true); }),
      Returns("make an element of a command", [=] { return whole().toAutoNode(true); }),
      {"print a command", Guarantee::basic,
       [=] {
         const auto os = std::make_shared<std::ostringstream>();
         os->exceptions(std::ios::badbit);
         return Attempt{[=] { whole().print(*os); }, [=] { return os->str(); }};
       }},
      Returns("read parameters",
              [=] { return whole().getParam("a") + whole().getParam("v") + whole().getParamRequired("a"); }),
      Returns("read a double",
              [] {
                CCmdMessage command(Manager(), 0);
                command.addParam("d", "", std::string(100, '0') + "1,55");
                return std::to_string(command.getParamRequiredDouble("d", 1));
              }),
      Returns("miss a parameter",
              [=] { return Thrown<ExceptionParameterMissing>([&] { whole().getParamRequired(longName); }); }),
      Returns("refuse a number out of range",
              [=] {
                return Thrown<ExceptionParameterInvalid>(
                    [&] { whole().getParamRequiredIntRanged("a", 1, 2); });
              }),
      Logs("warn of the device of what is no variable",
           [=] { EXPECT_EQ(whole().getParamRequiredVarDeviceID("a"), 0); }),
      Logs("warn of a variable without an id",
           [=] { EXPECT_EQ(withoutId().getParamRequiredVarVariableID("v"), 0); }),
      Logs("warn of a range",
           [=] {
             EXPECT_NE(
                 Thrown<ExceptionParameterInvalid>([&] { whole().getParamRequiredIntRanged("a", 2, 1); }),
                 nothing);
           }),
      {"warn on the console", strong,
       [=] {
         const auto console = std::make_shared<QuietConsole>();
         const auto id = std::make_shared<std::optional<int>>();
         return Attempt{[=] { *id = withoutId().getParamRequiredVarVariableID("v"); },
                        [id, console] { return *id ? std::to_string(**id) : nothing; }};
       }},
  };
}

std::vector<Operation> OfBindings() {
  const auto whole = [] {
    CBindMessage binding;
    binding.Initialize(IBindMessage::NOTIFY, longText, "1" + longText);
    binding.AddPath(longText);
    binding.addParams(Params());
    return binding;
  };
  const std::string xml = "<b><notify>" + longText + "</notify><query/><data>1" + longText + "</data><path>" +
                          longText + "</path><command>" + longText + "</command>" + xmlParams + "</b>";
  const Guarantee strong = Guarantee::strong;
  const Guarantee repeatable = Guarantee::basicRepeatable;
  return {
      Returns("make a binding",
              [] { return CBindMessage::Create(IBindMessage::NOTIFY, longText, longText); }),
      Returns("make a binding of a command",
              [] { return CBindMessage::Create(CCmdMessage(longText, Params(), Manager())); }),
      Returns("copy a binding", [=] { return CBindMessage(whole()); }),
      Changes("assign a binding", repeatable, whole,
              [](auto& b) {
                b = *CBindMessage::Create(CCmdMessage(longName, {{longName, {}}}, Manager()));
              }),
      Changes("initialize a binding", repeatable, whole,
              [](auto& b) { b.Initialize(1, longName, longName); }),
      Changes("initialize a binding with a command", repeatable, whole,
              [](auto& b) { b.Initialize(CCmdMessage(longName, Params(), Manager())); }),
      Changes("lengthen a path", strong, whole, [](auto& b) { b.AddPath(longName); }),
      Changes("read a binding", repeatable, whole,
              [=](auto& b) {
                XmlNode::Ptr root = ParseXml(xml);
                b.fromXml(root);
              }),
      Changes("add a text", strong, whole, [](auto& b) { b.addParam(longName, longText, longText); }),
      Changes("add a number", strong, whole, [](auto& b) { b.addParam(longName, longText, 1); }),
      Changes("add a double", strong, whole, [](auto& b) { b.addParamDouble(longName, longText, 1e300); }),
      Changes(
          "add parameters", repeatable, [] { return CBindMessage(); },
          [](auto& b) { b.addParams(Params()); }),
      Returns("write a binding", [=] { return whole().toXml(); }),
      Returns("write a binding as JSON", [=] { return whole().toJson(); }),
      Returns("read texts", [=] { return whole().getPath() + whole().getData() + whole().getParam("a"); }),
      Returns("read values of a derived binding",
              [] {
                class Derived : public CBindMessage {};
                Derived binding;
                binding.addParam("a", "", std::string(100, '0') + "1.5");
                bool truth = true;
                std::int32_t number = 0;
                double real = 0;
                EXPECT_TRUE(binding.getParamBool("a", truth));
                EXPECT_TRUE(binding.getParamInt("a", number));
                EXPECT_TRUE(binding.getParamDouble("a", real));
                return Describe(truth) + ' ' + std::to_string(number) + ' ' + std::to_string(real);
              }),
      Returns("miss a parameter",
              [=] { return Thrown<ExceptionParameterMissing>([&] { whole().getParamRequired(longName); }); }),
  };
}

std::vector<Operation> OfConditionals() {
  const auto whole = [] { return CCondMessage(longText, "EQUAL", Params()); };
  const std::string xml =
      "<c><name>" + longText + "</name><conditional>" + longName + "</conditional>" + xmlParams + "</c>";
  const Guarantee strong = Guarantee::strong;
  const Guarantee repeatable = Guarantee::basicRepeatable;
  return {
      Returns("make a conditional", [] { return CCondMessage::Create(longText, longText, Params()); }),
      Returns("make a conditional from XML", [=] { return CCondMessage::Create(xml); }),
      Returns("copy a conditional", [=] { return CCondMessage(whole()); }),
      Changes("assign a conditional", repeatable, whole,
              [](auto& c) { c = CCondMessage(longName, longName, {}); }),
      Changes("initialize a conditional", repeatable, whole, [=](auto& c) { c.Initialize(xml); }),
      Changes("initialize a conditional with a comparison", repeatable, whole,
              [](auto& c) { c.Initialize(longName); }),
      Changes("read a conditional", repeatable, whole,
              [=](auto& c) { static_cast<void>(c.fromXml(nullptr, xml.c_str())); }),
      Changes("add a text", strong, whole, [](auto& c) { c.addParam(longName, longText, longText); }),
      Changes(
          "add parameters", repeatable, [] { return CCondMessage(); },
          [](auto& c) { c.addParams(Params()); }),
      Returns("write a conditional", [=] { return whole().toXml(); }),
      Returns("read texts", [=] { return whole().getRawCondition() + whole().getParam("a"); }),
      Returns("test a text", [=] { return whole().Test(longText.c_str(), "a"); }),
      Returns("test a text of a long name",
              [] {
                const ParamMap params = {{longName, {longName, "", longText}}};
                return CCondMessage("", "EQUAL", params).Test(longText.c_str(), longName.c_str());
              }),
      {"print a conditional", Guarantee::basic,
       [=] {
         const auto os = std::make_shared<std::ostringstream>();
         os->exceptions(std::ios::badbit);
         return Attempt{[=] { whole().print(*os); }, [=] { return os->str(); }};
       }},
  };
}

std::vector<Operation> OfParameters() {
  const auto whole = [] { return DriverParam(longText, longText, longText); };
  const auto object = std::make_shared<Json::Value>(Json::objectValue);
  (*object)["name"] = longName;
  (*object)["value"]["static"] = longName;
  const Guarantee repeatable = Guarantee::basicRepeatable;
  return {
      Returns("make a parameter", whole),
      Changes("assign a parameter", repeatable, whole,
              [](auto& p) { p = DriverParam(longName, longName, longName); }),
      Changes("read a parameter", repeatable, whole,
              [](auto& p) { p.fromXml(ParseXml(xmlParams)->GetChild("param")); }),
      Changes("read a parameter from JSON", repeatable, whole, [object](auto& p) { p.fromJson(*object); }),
      Returns("write a parameter", [=] { return whole().toXml(); }),
      Returns("lower a text", [] { return ToLower(longText); }),
      Returns("quote a text", [] { return zq::jsonQuoteValue(longText); }),
  };
}

class CommaPoint : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

std::vector<Operation> OfValues() {
  const std::locale comma(std::locale::classic(), new CommaPoint);
  const auto info = [](const std::string& text) {
    return zq::discovery_info(text, text, text, text, text, text, text, text, text);
  };
  const Guarantee repeatable = Guarantee::basicRepeatable;
  return {
      Returns("read a double with a comma",
              [=] { return std::to_string(zq::ToDouble(std::string(100, '0') + "1,5", comma)); }),
      Returns("write a double with a comma", [=] { return zq::ToString(-1e300, 300, comma); }),
      Changes(
          "read a colour", Guarantee::strong, [] { return ZqColor(); },
          [](auto& color) {
            static_cast<void>(color.fromString("0.3" + std::string(100, '0') + ",0.4" +
                                               std::string(100, '0') + ",1" + std::string(100, ' ')));
          }),
      Returns("write a colour", [] { return ZqColor(-1e300, 1e300, ZqColor::XY).toString(); }),
      {"start logging", Guarantee::strong,
       [] {
         const auto console = std::make_shared<QuietConsole>();
         return Attempt{[console] { zq::Logger::initialize(); },
                        [] { return Describe(zq::Logger::hasBeenInitialized); }};
       }},
      Returns("collect a call stack",
              [] {
                const std::vector<std::string> frames = zq::Logger::getStackFrames();
                return std::none_of(frames.begin(), frames.end(), [](const auto& f) { return f.empty(); });
              }),
      Returns("make a discovered device", [=] { return info(longText); }),
      Returns("copy a discovered device", [=] { return zq::discovery_info(info(longText)); }),
      Changes(
          "assign a discovered device", repeatable, [=] { return info(longText); },
          [=](auto& i) { i = info(longName); }),
      Returns("read of a discovered device", [=] { return info(longText).proxies(); }),
  };
}

std::vector<Operation> OfTheValidator() {
  const std::string project =
      ProjectWith(Item("2", "<zqi>" + longText + "</zqi><devicedata/>" +
                                Element("subitems", Item("2") + Item("300000"))) +
                  Element("item", "<id x='1'>3</id><" + longName + "/>") + Item("4", "", "55"));
  const auto validator = [=] { return zq::ProjectValidator(project); };
  const auto used = [=] {
    zq::ProjectValidator made(project);
    made.addMessage(longText);
    return made;
  };
  const Guarantee strong = Guarantee::strong;
  const auto validate = [](auto& v) { v.valid(); };
  return {
      Returns("make a validator", validator),
      Changes("set another text of a validator", strong, used,
              [](auto& v) { v.set("<a>" + longText + "</a>"); }),
      Changes("add a message", strong, used, [](auto& v) { v.addMessage(longName); }),
      Changes("validate a project", Guarantee::basic, validator, validate),
      Changes(
          "validate what is no project", Guarantee::basic, [] { return zq::ProjectValidator(longText); },
          validate),
      Changes(
          "validate a number that is none", Guarantee::basic,
          [] { return zq::ProjectValidator(ProjectWith(Item(longText))); }, validate),
      Logs("validate a project step by step", [=] { EXPECT_FALSE(validator().valid()); }),
      Changes("observe the items", strong, used,
              [](auto& v) { v.setItemObserver([text = longText, name = longName] { return text + name; }); }),
  };
}

void FailFrom(std::size_t call, bool lasting) {
  allocated.failFrom = allocated.calls + call;
  allocated.failTo = lasting ? std::numeric_limits<std::size_t>::max() : allocated.failFrom + 1;
}

// @return whether any call has failed
bool StopFailing() {
  const bool failed = allocated.calls > allocated.failFrom;
  allocated.failFrom = allocated.failTo = 0;
  return failed;
}

// The outcome of an attempt whose calls of malloc fail.
struct Outcome {
  bool failed = false;  // a call
  bool thrown = false;  // std::bad_alloc
};

Outcome Try(const Attempt& attempt, std::size_t call, bool lasting) {
  Outcome outcome;
  FailFrom(call, lasting);
  try {
    attempt.work();
  } catch (const std::bad_alloc&) {
    outcome.thrown = true;
  }
  outcome.failed = StopFailing();
  return outcome;
}

// Returns the state after the operation if nothing fails.
std::string Result(const Operation& operation) {
  const Attempt attempt = operation.prepare();
  attempt.work();
  return attempt.state();
}

void CheckFailed(const Operation& operation, const Attempt& attempt, const std::string& before,
                 const std::string& after) {
  const std::string left = attempt.state();
  switch (operation.guarantee) {
    case Guarantee::strong:
      EXPECT_EQ(left, before);
      break;
    case Guarantee::basicRepeatable:
      break;
    case Guarantee::basic:
      EXPECT_EQ(left, after.substr(0, left.size()));
      return;
  }
  attempt.work();
  EXPECT_EQ(attempt.state(), after);
}

// Runs before all other tests, because names, parsers and readers are constructed on first use: this process
// uses none of them, and its forked children use each of them for the first time.
class FirstUse : public testing::TestWithParam<Operation> {};

TEST_P(FirstUse, LeavesWhatItCouldNotMakeToTheNext) {
  const Operation& operation = GetParam();
  for (std::size_t call = 0;; ++call) {
    const pid_t child = fork();
    if (child == 0) {
      int result = 1;
      try {
        const Attempt attempt = operation.prepare();
        const Outcome outcome = Try(attempt, call, false);
        const std::string after = Result(operation);
        const bool good = Result(operation) == after && (outcome.thrown || attempt.state() == after);
        if (good) result = outcome.failed ? 2 : 0;
      } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
      }
      _exit(result);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "call " << call;
    ASSERT_NE(WEXITSTATUS(status), 1) << "call " << call;
    if (WEXITSTATUS(status) == 0) break;
  }
}

class FailingAllocations : public testing::TestWithParam<Operation> {
 public:
  static void TearDownTestSuite() {
    std::cout << operationCount << " operations, " << failureCount << " failures\n";
  }

 protected:
  static inline std::size_t operationCount = 0;
  static inline std::size_t failureCount = 0;

  // @return whether a call has failed
  bool Fail(std::size_t call, bool lasting) {
    const Attempt attempt = GetParam().prepare();
    const Outcome outcome = Try(attempt, call, lasting);
    if (outcome.thrown)
      CheckFailed(GetParam(), attempt, before, after);
    else
      EXPECT_EQ(attempt.state(), after);
    return outcome.failed;
  }

  const std::string before = GetParam().prepare().state();
  const std::string after = Result(GetParam());
};

TEST_P(FailingAllocations, LeaveNothingBehindAndNothingBroken) {
  std::size_t failures = 0;
  for (const bool lasting : {false, true}) {
    for (std::size_t call = 0; Fail(call, lasting); ++call) {
      ++failures;
      EXPECT_EQ(Result(GetParam()), after);
      // The first failure may change what a thread keeps, later ones must not.
      const std::size_t blocks = allocated.blocks;
      Fail(call, lasting);
      EXPECT_EQ(Result(GetParam()), after);
      EXPECT_EQ(allocated.blocks, blocks);
      ASSERT_FALSE(HasFailure()) << "call " << call << (lasting ? " and all that followed" : "") << " failed";
    }
  }
  std::cout << failures << " failures\n";
  ++operationCount;
  failureCount += failures;
  EXPECT_GE(failures, 2U);
}

std::string NameOf(const testing::TestParamInfo<Operation>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return c >= 0x80 || std::isalnum(c) == 0; }, '_');
  return std::to_string(info.index) + '_' + name;
}

std::vector<Operation> AllOperations() {
  std::vector<Operation> all;
  for (const auto& some : {OfTheXmlLibrary(), OfCommands(), OfBindings(), OfConditionals(), OfParameters(),
                           OfValues(), OfTheValidator()})
    all.insert(all.end(), some.begin(), some.end());
  return all;
}

INSTANTIATE_TEST_SUITE_P(All, FirstUse, testing::ValuesIn(AllOperations()), NameOf);
INSTANTIATE_TEST_SUITE_P(All, FailingAllocations, testing::ValuesIn(AllOperations()), NameOf);

}  // namespace
