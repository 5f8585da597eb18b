#include "XmlLint.h"

#include <fmt/format.h>

#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstdint>
#include <set>

#include "Text.h"

using zq::XmlNode;

namespace tool {
namespace {

const ElementShape textOnly = {{}, false, true, {}};

std::string NameOf(const XmlNode& element) { return Quoted(element.GetName()); }

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

template <typename Visit>
void ForEachChild(XmlNode& element, Visit visit) {
  zq::XmlNodeIterator* const children = element.GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) visit(*child);
}

}  // namespace

zq::XmlDocument::Ptr ParseXml(const std::string& text) {
  zq::XmlError error;
  auto document = zq::CreateXmlDocument(std::string(text), error);
  if (!document) throw Objection(error.position, ErrorText(error.text));
  return document;
}

void XmlLint::CheckMessage(XmlNode& root, const MessageShape& shape) {
  if (!root.IsName(shape.root))
    Note(root, fmt::format("the root element is {}, not \"{}\"", NameOf(root), shape.root));
  std::vector<std::string> children = {"params"};
  for (const auto* names : {&shape.texts, &shape.markup, &shape.flags})
    children.insert(children.end(), names->begin(), names->end());
  CheckShape(root, {children, true, false, {}});

  std::set<std::string> seen;
  ForEachChild(root, [&](XmlNode& child) {
    CheckMessageChild(child, shape);
    const std::string name = child.GetName();
    if ((Contains(shape.texts, name) || Contains(shape.markup, name)) && !seen.insert(name).second)
      Note(child, fmt::format("{} stands twice; the last one wins", Quoted(name)));
  });
}

void XmlLint::CheckMessageChild(XmlNode& child, const MessageShape& shape) {
  const std::string name = child.GetName();
  if (name == "params")
    CheckParams(child, shape.anyParam);
  else if (Contains(shape.texts, name))
    CheckShape(child, textOnly);
  else if (Contains(shape.markup, name))
    CheckAttributes(child, {});
  else if (Contains(shape.flags, name))
    CheckShape(child, {});
}

void XmlLint::CheckAttributes(const XmlNode& element, const std::vector<std::string>& known) {
  const auto count = std::count_if(
      known.begin(), known.end(), [&element](const std::string& name) { return element.HasAttribute(name); });
  if (element.GetAttributeCount() > static_cast<std::size_t>(count))
    Note(element, fmt::format("an attribute of {} is passed over", NameOf(element)));
}

void XmlLint::CheckShape(XmlNode& element, const ElementShape& shape) {
  CheckAttributes(element, shape.attributes);
  if (!shape.text && element.GetData().find_first_not_of(WHITESPACE) != std::string::npos)
    Note(element, fmt::format("the text directly in {} is passed over", NameOf(element)));

  std::set<std::string> seen;
  ForEachChild(element, [&](const XmlNode& child) {
    const std::string name = child.GetName();
    if (!shape.anyChild && !Contains(shape.children, name))
      Note(child, fmt::format("element {} in {} is passed over", NameOf(child), NameOf(element)));
    else if (!seen.insert(name).second && !shape.repeated)
      Note(child, fmt::format("{} stands twice in {}; the first one wins", NameOf(child), NameOf(element)));
  });
}

// A name that stands twice may stand in two elements "params".
void XmlLint::CheckParams(XmlNode& params, bool anyName) {
  CheckShape(params, {{"param"}, true, false, {}, anyName});
  ForEachChild(params, [&](XmlNode& child) {
    if (anyName || child.IsName("param")) CheckParam(child);
  });
}

void XmlLint::CheckParam(XmlNode& param) {
  const XmlNode::Ptr name = param.GetChild("name");
  const XmlNode::Ptr type = param.GetChild("type");
  const XmlNode::Ptr value = param.GetChild("value");
  CheckShape(param, {type ? std::vector<std::string>{"name", "type", "value"}
                          : std::vector<std::string>{"name", "value"},
                     false,
                     false,
                     {}});
  if (name) CheckShape(*name, textOnly);
  if (type) CheckShape(*type, textOnly);
  if (!name) Note(param, "a parameter without \"name\" has an empty name");

  const XmlNode::Ptr holder = type && value ? value->GetChild("valuetype") : value;
  if (type && value) CheckShape(*value, {{"valuetype"}, false, false, {}});
  if (holder)
    CheckHolder(*holder, !type);
  else
    Note(param, fmt::format("parameter {} has no value: there is no {}", Quoted(param.GetData("name")),
                            value ? R"("valuetype" in "value")" : "\"value\""));
  CheckName(param.GetData("name"), zq::PositionOf(param));
}

void XmlLint::CheckHolder(XmlNode& holder, bool attributeLayout) {
  const XmlNode::Ptr text = holder.GetChild("static");
  const XmlNode::Ptr variable = holder.GetChild("variable");
  CheckShape(holder, {{text ? "static" : "variable"},
                      false,
                      false,
                      attributeLayout ? std::vector<std::string>{"type"} : std::vector<std::string>{}});
  if (text) {
    // Everywhere else a value is markup, and nothing of it is lost.
    if (attributeLayout && !text->GetData().empty()) CheckShape(*text, textOnly);
  } else if (variable) {
    CheckVariable(*variable);
  } else {
    Note(holder,
         fmt::format(R"({} holds neither "static" nor "variable": the value is empty)", NameOf(holder)));
  }
}

void XmlLint::CheckVariable(XmlNode& variable) {
  CheckShape(variable, {{"deviceid", "variableid"}, false, false, {}});
  const XmlNode::Ptr device = variable.GetChild("deviceid");
  const XmlNode::Ptr id = variable.GetChild("variableid");
  if (!device)
    Note(variable, R"("variable" has no "deviceid": the parameter is static, with an empty value)");
  if (device) CheckId(*device);
  if (!id) Note(variable, R"("variable" has no "variableid": the variable's id is 0)");
  if (id) CheckId(*id);
}

void XmlLint::CheckId(XmlNode& id) {
  CheckShape(id, textOnly);
  try {
    const std::int64_t number = id.GetDataNumber();
    if (number < 0)
      Note(id, fmt::format("{} {} is read as {}", NameOf(id), number, static_cast<std::uint32_t>(number)));
  } catch (const zq::ZqError& error) {
    throw Objection(zq::PositionOf(id), ErrorText(error.what()));
  }
}

void XmlLint::CheckName(const std::string& name, const Place& place) {
  const auto [first, isNew] = names_.try_emplace(name, place);
  if (!isNew) {
    notes_.push_back({place, fmt::format("parameter {} stands twice; the first one, in line {}, wins",
                                         Quoted(name), first->second.line)});
  }
}

void XmlLint::Note(const XmlNode& element, const std::string& text) {
  notes_.push_back({zq::PositionOf(element), text});
}

}  // namespace tool
