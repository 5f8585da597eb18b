#include "tavrin_driver/DriverParam.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_platform/TextConstants.h>
#include <locale>
#include <string_view>
#include <utility>

#include "tavrin_driver/internal/JsonId.h"
#include "tavrin_driver/internal/JsonKey.h"
#include "tavrin_driver/internal/JsonParam.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/PrintedForm.h"
#include "tavrin_driver/internal/Secrets.h"

using zq::XmlNode;
namespace names = tavrin::names;

namespace {

void WriteNode(const DriverParam& param, XmlNode::Ptr& node) {
  node->AddChild(names::name, param.name);
  XmlNode::Ptr value = XmlHelper::AddChild(node, names::value, EMPTY_STRING);
  value->SetAttribute(names::type, param.type);
  if (param.bVar) {
    const XmlNode::Ptr variable = XmlHelper::AddChild(value, names::variable, EMPTY_STRING);
    variable->AddChild(names::deviceid, param.idDevice);
    variable->AddChild(names::variableid, param.idVariable);
  } else {
    value->AddChild(names::fixed, param.value);
  }
}

// Ids keep the low 32 bits of the number.
std::uint32_t IdOf(const XmlNode& node) { return static_cast<std::uint32_t>(node.GetDataNumber()); }

// Only the device id determines that a parameter is variable.
void ReadVariable(DriverParam& param, const XmlNode& holder) {
  const XmlNode::Ptr variable = holder.GetChild(names::variable);
  if (!variable) return;
  if (const XmlNode::Ptr device = variable->GetChild(names::deviceid)) {
    param.bVar = true;
    param.idDevice = IdOf(*device);
  }
  if (const XmlNode::Ptr id = variable->GetChild(names::variableid)) param.idVariable = IdOf(*id);
}

// Reads the older layout: <type>, and <value> with <valuetype> around the value, which is always read as
// markup.
void ReadElementLayout(DriverParam& param, const XmlNode& node, const XmlNode& type) {
  param.type = type.GetData();
  const XmlNode::Ptr value = node.GetChild(names::value);
  if (!value) return;
  const XmlNode::Ptr holder = value->GetChild(names::valuetype);
  if (!holder) return;
  if (const XmlNode::Ptr text = holder->GetChild(names::fixed))
    param.value = text->InnerXml();
  else
    ReadVariable(param, *holder);
}

// Reads <value type="..."> around the value, which is read as text, or as markup if it contains no text.
void ReadAttributeLayout(DriverParam& param, const XmlNode& node) {
  const XmlNode::Ptr value = node.GetChild(names::value);
  if (!value) return;
  if (value->HasAttribute(names::type)) param.type = value->GetAttribute(names::type);
  if (std::string text = value->GetData(names::fixed); !text.empty())
    param.value = std::move(text);
  else if (const XmlNode::Ptr markup = value->GetChild(names::fixed))
    param.value = markup->InnerXml();
  else
    ReadVariable(param, *value);
}

template <typename Visit>
void ForEachMember(Json::Value& object, Visit visit) {
  const auto end = object.end();
  for (auto member = object.begin(); member != end; ++member) visit(tavrin::KeyOf(member), *member);
}

void ReadVariable(DriverParam& param, Json::Value& variable) {
  param.bVar = true;
  ForEachMember(variable, [&](std::string_view key, const Json::Value& member) {
    if (key == names::deviceid)
      param.idDevice = tavrin::IdOf(member);
    else if (key == names::variableid)
      param.idVariable = tavrin::IdOf(member);
  });
}

void ReadValue(DriverParam& param, Json::Value& value, tavrin::OwnFields& own) {
  ForEachMember(value, [&](std::string_view key, Json::Value& member) {
    if (key == names::fixed) {
      param.value = member.asString();
      own.bytes += param.value.size();
    } else if (key == names::variable) {
      ReadVariable(param, member);
    }
  });
}

}  // namespace

DriverParam::DriverParam(const std::string& paramName, const std::string& paramType,
                         const std::string& paramValue)
    : name(paramName), type(paramType), value(paramValue) {}

DriverParam::DriverParam(const std::string& paramName, const std::string& paramType, std::uint32_t device,
                         std::uint32_t variable)
    : name(paramName), type(paramType), bVar(true), idDevice(device), idVariable(variable) {}

void DriverParam::fromXml(boost::shared_ptr<XmlNode> node) {
  name = node->GetData(names::name);
  if (const XmlNode::Ptr typeNode = node->GetChild(names::type))
    ReadElementLayout(*this, *node, *typeNode);
  else
    ReadAttributeLayout(*this, *node);
}

tavrin::OwnFields tavrin::ReadJson(DriverParam& param, Json::Value& object) {
  OwnFields own;
  ForEachMember(object, [&](std::string_view key, Json::Value& member) {
    if (member.isString() && key == names::name) {
      param.name = member.asString();
      own.hasName = true;
    } else if (member.isString() && key == names::type) {
      param.type = member.asString();
      own.bytes += param.type.size();
    } else if (member.isObject() && key == names::value) {
      ReadValue(param, member, own);
    }
  });
  return own;
}

void DriverParam::fromJson(Json::Value& object) { tavrin::ReadJson(*this, object); }

std::string DriverParam::toXml() const {
  XmlNode::Ptr node = zq::CreateXmlNode(names::param, EMPTY_STRING);
  WriteNode(*this, node);
  return node->OuterXml();
}

std::ostream& DriverParam::print(std::ostream& os) const {
  using tavrin::Key;
  using tavrin::separator;
  return os << '{' << Key{"type"} << zq::jsonQuoteValue(type)                 //
            << separator << Key{"bVar"} << tavrin::TrueOrFalse(bVar)          //
            << separator << Key{"value"} << zq::jsonQuoteValue(value)         //
            << separator << Key{"name"} << zq::jsonQuoteValue(name)           //
            << separator << Key{"var"} << '{' << Key{"idDevice"} << idDevice  //
            << separator << Key{"idVariable"} << idVariable << "}}";
}

void toXml(const DriverParam& param, XmlNode::Ptr& parent, const char* elementName) {
  XmlNode::Ptr node = XmlHelper::AddChild(parent, elementName, EMPTY_STRING);
  WriteNode(param, node);
}

// Obtains the facet once. Boost's to_lower_copy obtains it for each character, which is several times slower.
// The facet's operation for ranges is not used, because a locale may override only the one for single
// characters.
std::string ToLower(const std::string& s) {
  const std::locale locale;
  const auto& characters = std::use_facet<std::ctype<char>>(locale);
  std::string lower = s;
  for (char& c : lower) c = characters.tolower(c);
  return lower;
}

namespace zq {

bool isSecretParameter(const std::string& name) { return tavrin::IsSecret(name); }

std::string jsonQuoteValue(const std::string& s) {
  std::string quoted;
  quoted.reserve(s.size() + 2);
  return quoted.append(1, '"').append(s).append(1, '"');
}

std::ostream& print(std::ostream& os, const std::map<std::string, DriverParam>& params) {
  using tavrin::Key;
  using tavrin::separator;
  os << '[';
  const char* behindEntry = "";
  for (const auto& [name, param] : params) {
    os << '{' << Key{"first"} << jsonQuoteValue(name) << separator << Key{"second"};
    param.print(os) << '}' << behindEntry;
    behindEntry = separator;
  }
  return os << ']';
}

}  // namespace zq
