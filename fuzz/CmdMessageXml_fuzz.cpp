// Commands as XML: whatever loads is written and loads again as the same command.

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <optional>
#include <string>

#include "Commands.h"
#include "DescribeParams.h"
#include "FakeVariableManager.h"
#include "Require.h"
#include "Target.h"

namespace {

// The result, nothing where an id is not a number.
std::optional<std::int32_t> Load(CCmdMessage& message, const std::string& text) {
  try {
    return message.Load(text);
  } catch (const zq::ZqError&) {
    return {};
  }
}

// The rules for parameters once more, told from the outside in.
DriverParam ReadParam(const zq::XmlNode& node) {
  DriverParam param;
  param.name = node.GetData("name");
  zq::XmlNode::Ptr holder = node.GetChild("value");
  const bool hasTypeElement = node.GetChild("type") != nullptr;
  if (hasTypeElement) {
    param.type = node.GetData("type");
    if (holder) holder = holder->GetChild("valuetype");
  } else if (holder) {
    param.type = holder->GetAttribute("type");
  }
  if (!holder) return param;
  if (const zq::XmlNode::Ptr text = holder->GetChild("static")) {
    param.value = hasTypeElement || text->GetData().empty() ? text->InnerXml() : text->GetData();
  } else if (const zq::XmlNode::Ptr variable = holder->GetChild("variable")) {
    param.bVar = variable->GetChild("deviceid") != nullptr;
    param.idDevice = static_cast<std::uint32_t>(variable->GetChildDataNumber("deviceid"));
    param.idVariable = static_cast<std::uint32_t>(variable->GetChildDataNumber("variableid"));
  }
  return param;
}

ParamMap ReadParams(const zq::XmlNode::Ptr& root) {
  ParamMap params;
  zq::XmlNodeIterator* sections = root->GetIterator();
  for (zq::XmlNode::Ptr section = sections->First(); section; section = sections->Next()) {
    if (!section->IsName("params")) continue;
    zq::XmlNodeIterator* entries = section->GetIterator();
    for (zq::XmlNode::Ptr entry = entries->First(); entry; entry = entries->Next()) {
      if (!entry->IsName("param")) continue;
      const DriverParam param = ReadParam(*entry);
      params.try_emplace(param.name, param);
    }
  }
  return params;
}

void CheckTwice(const CCmdMessage& message, FakeVariableManager& variables, const std::string& text) {
  CCmdMessage twice(message);
  Require(Load(twice, text) == 0, "what loaded once loads again");
  RequireEqual(Describe(twice), Describe(message), "and adds nothing, because the first of a name wins");
  CCmdMessage created(message.getRawCommand(), message.GetParamMap(), variables);
  RequireEqual(created.toXml(false), message.toXml(false), "the written form depends on the fields only");
}

}  // namespace

void CheckInput(const std::string& input) {
  const std::size_t first = input.find_first_not_of(" \t\r\n\v\f");
  if (first == std::string::npos || input[first] != '<') return;

  FakeVariableManager variables;
  CCmdMessage message(variables, 0);
  const std::optional<std::int32_t> result = Load(message, input);
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input);
  Require((result == -1) == !document, "exactly what is no document fails");
  if (result != 0) {
    Require(document || Describe(message) == " | ", "a text that is no document changes nothing");
    return;
  }
  const ParamMap expected = ReadParams(document->GetRoot());
  if (!AreSame(message.GetParamMap(), expected))
    RequireEqual(Describe(message.GetParamMap()), Describe(expected),
                 "the parameters are those of the document");
  CheckCommand(message, variables);
  CheckTwice(message, variables, input);
}
