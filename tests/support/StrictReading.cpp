#include "StrictReading.h"

#include <json/json.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

#include "DescribeParams.h"

namespace strict {
namespace {

using zq::XmlNode;
using ParamMap = std::map<std::string, DriverParam>;

// Thrown if an input is not strictly a message.
struct Violation : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void Demand(bool condition, const char* what) {
  if (!condition) throw Violation(what);
}

bool IsBlank(const std::string& text) { return text.find_first_not_of(" \t\r\n\v\f") == std::string::npos; }

std::vector<XmlNode::Ptr> Children(const XmlNode::Ptr& element) {
  std::vector<XmlNode::Ptr> children;
  zq::XmlNodeIterator* const walk = element->GetIterator();
  for (XmlNode::Ptr child = walk->First(); child; child = walk->Next()) children.push_back(child);
  return children;
}

// Returns the children by their names, each of which may occur once.
std::map<std::string, XmlNode::Ptr> Parts(const XmlNode::Ptr& element, const std::set<std::string>& known,
                                          std::uint32_t attributes = 0) {
  Demand(element->GetAttributeCount() == attributes, "no attributes");
  Demand(IsBlank(element->GetData()), "no text");
  std::map<std::string, XmlNode::Ptr> parts;
  for (const XmlNode::Ptr& child : Children(element)) {
    Demand(known.count(child->GetName()) != 0, "known elements");
    Demand(parts.emplace(child->GetName(), child).second, "each once");
  }
  return parts;
}

const XmlNode::Ptr& Part(const std::map<std::string, XmlNode::Ptr>& parts, const char* name) {
  const auto found = parts.find(name);
  Demand(found != parts.end(), "every part");
  return found->second;
}

std::string Text(const XmlNode::Ptr& element) {
  Demand(element->GetAttributeCount() == 0 && element->GetChildCount() == 0, "text only");
  return element->GetData();
}

std::uint32_t Id(const XmlNode::Ptr& element) {
  Demand(!IsBlank(Text(element)), "a number");
  const std::int64_t number = element->GetDataNumber();
  Demand(number >= 0, "an id");
  return static_cast<std::uint32_t>(number);
}

void AddParam(ParamMap& params, const DriverParam& param) {
  Demand(params.emplace(param.name, param).second, "each name once");
}

void ReadHolder(DriverParam& param, const XmlNode::Ptr& holder, bool isMarkup) {
  const auto parts = Parts(holder, {"static", "variable"}, !isMarkup && holder->HasAttribute("type") ? 1 : 0);
  Demand(parts.size() == 1, "one kind of value");
  if (const auto found = parts.find("static"); found != parts.end()) {
    const XmlNode::Ptr& text = found->second;
    Demand(text->GetAttributeCount() == 0, "no attributes");
    param.value = isMarkup || text->GetData().empty() ? text->InnerXml() : Text(text);
    return;
  }
  const auto ids = Parts(parts.at("variable"), {"deviceid", "variableid"});
  param.bVar = true;
  param.idDevice = Id(Part(ids, "deviceid"));
  param.idVariable = Id(Part(ids, "variableid"));
}

DriverParam ReadParam(const XmlNode::Ptr& element) {
  const auto parts = Parts(element, {"name", "type", "value"});
  DriverParam param;
  param.name = Text(Part(parts, "name"));
  const XmlNode::Ptr& value = Part(parts, "value");
  if (const auto type = parts.find("type"); type != parts.end()) {
    param.type = Text(type->second);
    ReadHolder(param, Part(Parts(value, {"valuetype"}), "valuetype"), true);
  } else {
    param.type = value->GetAttribute("type");
    ReadHolder(param, value, false);
  }
  return param;
}

// Reads the root element: the parts that occur once, and the parameters. "query" may be repeated.
struct Message {
  std::map<std::string, XmlNode::Ptr> parts;
  ParamMap params;
};

Message ReadMessage(const std::string& text, const char* root, const std::set<std::string>& known,
                    const std::string& paramName) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  Demand(document != nullptr, "a document");
  const XmlNode::Ptr element = document->GetRoot();
  Demand(element->IsName(root) && element->GetAttributeCount() == 0 && IsBlank(element->GetData()), "a root");
  Message message;
  for (const XmlNode::Ptr& child : Children(element)) {
    const std::string name = child->GetName();
    if (name == "params") {
      Demand(child->GetAttributeCount() == 0 && IsBlank(child->GetData()), "parameters only");
      for (const XmlNode::Ptr& param : Children(child)) {
        Demand(paramName.empty() || param->IsName(paramName), "parameters only");
        AddParam(message.params, ReadParam(param));
      }
    } else {
      Demand(known.count(name) != 0, "known elements");
      Demand(message.parts.emplace(name, child).second || name == "query", "each once");
      if (name == "query") Parts(child, {});
    }
  }
  return message;
}

std::string ReadXmlCommand(const std::string& text) {
  const Message message = ReadMessage(text, "devicecommand", {"command"}, "param");
  return Text(Part(message.parts, "command")) + " | " + ::Describe(message.params);
}

// --- JSON ---

Json::Value ParseStrictly(const std::string& text) {
  Json::CharReaderBuilder builder;
  builder["collectComments"] = false;
  builder["failIfExtra"] = true;
  builder["rejectDupKeys"] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  Demand(reader->parse(text.data(), text.data() + text.size(), &root, nullptr), "JSON");
  return root;
}

void DemandKeys(const Json::Value& object, const std::set<std::string>& known) {
  Demand(object.isObject(), "an object");
  for (const std::string& key : object.getMemberNames()) Demand(known.count(key) != 0, "known keys");
}

std::uint32_t Id(const Json::Value& variable, const char* key) {
  Demand(variable.isMember(key) && variable[key].isUInt(), "an id");
  return variable[key].asUInt();
}

DriverParam ReadEntry(const Json::Value& entry) {
  DemandKeys(entry, {"name", "type", "value"});
  Demand(entry["name"].isString() && (!entry.isMember("type") || entry["type"].isString()), "strings");
  DriverParam param;
  param.name = entry["name"].asString();
  param.type = entry["type"].asString();
  const Json::Value& value = entry["value"];
  DemandKeys(value, {"static", "variable"});
  Demand(value.size() == 1, "one kind of value");
  if (value.isMember("static")) {
    Demand(!value["static"].isObject() && !value["static"].isArray(), "a text");
    param.value = value["static"].asString();
    Demand(param.value.find('\0') == std::string::npos, "a text that drivers read");
    return param;
  }
  DemandKeys(value["variable"], {"deviceid", "variableid"});
  param.bVar = true;
  param.idDevice = Id(value["variable"], "deviceid");
  param.idVariable = Id(value["variable"], "variableid");
  return param;
}

std::string ReadJsonCommand(const std::string& text) {
  const Json::Value root = ParseStrictly(text);
  Demand(root.size() == 1, "a wrapper");
  const Json::Value& command = *root.begin();
  DemandKeys(command, {"command", "params"});
  Demand(command["command"].isString(), "a name");
  ParamMap params;
  Demand(!command.isMember("params") || command["params"].isArray(), "parameters");
  for (const Json::Value& entry : command["params"]) AddParam(params, ReadEntry(entry));
  return command["command"].asString() + " | " + ::Describe(params);
}

std::optional<std::string> Unless(const std::function<std::string()>& read) {
  try {
    return read();
  } catch (const Violation&) {
    return {};
  } catch (const zq::ZqError&) {
    return {};
  } catch (const Json::Exception&) {
    return {};
  }
}

}  // namespace

std::optional<std::string> ReadCommand(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n\v\f");
  if (first == std::string::npos) return {};
  return Unless([&] { return text[first] == '<' ? ReadXmlCommand(text) : ReadJsonCommand(text); });
}

std::optional<std::string> ReadBinding(const std::string& text) {
  return Unless([&] {
    const Message message =
        ReadMessage(text, "bindmessage", {"command", "notify", "query", "data", "path"}, "param");
    const auto textOf = [&](const char* name) {
      const auto found = message.parts.find(name);
      return found == message.parts.end() ? std::string() : Text(found->second);
    };
    const auto markupOf = [&](const char* name) {
      const auto found = message.parts.find(name);
      if (found == message.parts.end()) return std::string();
      Demand(found->second->GetAttributeCount() == 0, "no attributes");
      return found->second->InnerXml();
    };
    const std::string command = textOf("command");
    const std::string notify = textOf("notify");
    Demand(!command.empty() || !notify.empty(), "a name");
    Demand(!notify.empty() || message.parts.count("query") == 0, "answers are notifications");
    CBindMessage number;
    number.Initialize(IBindMessage::COMMAND, "", markupOf("data"));
    return command + '/' + notify + " = " + markupOf("data") + " (" +
           std::to_string(number.getDataAsInteger()) + ") @ " + markupOf("path") + " | " +
           ::Describe(message.params);
  });
}

std::optional<std::string> ReadConditional(const std::string& text) {
  static const std::set<std::string> comparisons = {
      "EQUAL", "NOT_EQUAL", "LESS_THAN", "LESS_THAN_OR_EQUAL", "GREATER_THAN", "GREATER_THAN_OR_EQUAL"};
  if (comparisons.count(text) != 0) return ' ' + text + " | ";
  return Unless([&] {
    const Message message = ReadMessage(text, "deviceconditional", {"name", "conditional"}, "");
    const std::string comparison = Text(Part(message.parts, "conditional"));
    Demand(comparisons.count(comparison) != 0, "a comparison");
    return Text(Part(message.parts, "name")) + ' ' + comparison + " | " + ::Describe(message.params);
  });
}

}  // namespace strict
