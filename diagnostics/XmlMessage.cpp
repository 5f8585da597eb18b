#include "XmlMessage.h"

#include <fmt/format.h>

#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstdint>
#include <set>

#include "XmlTags.h"
#include "tavrin_driver/internal/Names.h"

using zq::XmlNode;

namespace tavrin::diagnostics {
namespace {

const std::string& Text(const Name& name) { return name; }

std::string NameOf(const XmlNode& element) { return Quoted(element.GetName()); }

bool Contains(const std::vector<std::string>& list, const std::string& name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

bool IsBlank(const std::string& text) { return text.find_first_not_of(WHITESPACE) == std::string::npos; }

std::string LineOf(const XmlNode& element) { return fmt::format("line {}", zq::PositionOf(element).line); }

constexpr char idsHint[] = "\"variable\" contains \"deviceid\" and \"variableid\"";

// The kinds of messages by the names of their root elements.
std::string RootHint(const std::string& root, const std::string& expected) {
  static const std::map<std::string, std::string> kinds = {{Text(names::devicecommand), "a command"},
                                                           {"bindmessage", "a binding message"},
                                                           {"deviceconditional", "a conditional"}};
  const auto other = kinds.find(root);
  if (other != kinds.end()) return fmt::format("it is the root element of {}", other->second);
  return SpellingHint(root, {expected});
}

}  // namespace

XmlMessage::XmlMessage(Collector& collector, const std::string& text)
    : collector_(collector), hasDoctype_(text.find("<!DOCTYPE") != std::string::npos) {
  zq::XmlError error;
  document_ = zq::CreateXmlDocument(std::string(text), error);
  if (!document_) throw Refusal("malformed-xml", MalformedXml(collector.Source(), error));
  root_ = document_->GetRoot();
}

void XmlMessage::Check(const MessageShape& shape) {
  CheckRootName(shape);
  ElementShape rootShape{{Text(names::params)}, {}, true, false};
  for (const auto* list : {&shape.texts, &shape.markup, &shape.flags})
    rootShape.children.insert(rootShape.children.end(), list->begin(), list->end());
  CheckShape(*root_, rootShape);
  ForEachChild(*root_, [&](XmlNode& child) { CheckChildOfRoot(child, shape); });
  CheckLastOfName(shape);
}

void XmlMessage::CheckRootName(const MessageShape& shape) {
  if (root_->IsName(shape.root)) return;
  ReportTag("root-name", *root_,
            fmt::format("the root element is {}, not \"{}\"", NameOf(*root_), shape.root),
            RootHint(root_->GetName(), shape.root));
}

void XmlMessage::CheckChildOfRoot(XmlNode& child, const MessageShape& shape) {
  const std::string name = child.GetName();
  if (name == names::params.View())
    CheckParams(child, shape.anyParam);
  else if (Contains(shape.texts, name))
    CheckText(child);
  else if (Contains(shape.markup, name))
    CheckAttributes(child, {});
  else if (Contains(shape.flags, name))
    CheckShape(child, {});
}

// Reports repeated children of which only the last one is read.
void XmlMessage::CheckLastOfName(const MessageShape& shape) {
  std::map<std::string, XmlNode::Ptr> last;
  zq::XmlNodeIterator* const children = root_->GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    const std::string name = child->GetName();
    if (!Contains(shape.texts, name) && !Contains(shape.markup, name)) continue;
    const auto [previous, isNew] = last.try_emplace(name, child);
    if (isNew) continue;
    ReportElement("repeated-element", *previous->second,
                  fmt::format("{} occurs again in {} and is ignored here; the last one is used", Quoted(name),
                              LineOf(*child)),
                  {}, true);
    previous->second = child;
  }
}

void XmlMessage::CheckShape(XmlNode& element, const ElementShape& shape) {
  CheckAttributes(element, shape.attributes);
  CheckIgnoredText(element);
  std::map<std::string, XmlNode*> first;
  ForEachChild(element, [&](XmlNode& child) {
    const std::string name = child.GetName();
    if (!shape.anyName && !Contains(shape.children, name)) {
      ReportElement("unknown-element", child,
                    fmt::format("element {} in {} is ignored", NameOf(child), NameOf(element)),
                    SpellingHint(name, shape.children), true);
    } else if (const auto [used, isNew] = first.try_emplace(name, &child); !isNew && !shape.everyChild) {
      ReportElement("repeated-element", child,
                    fmt::format("{} occurs twice in {} and is ignored here; the first one is used",
                                NameOf(child), NameOf(element)),
                    {}, true);
    }
  });
}

void XmlMessage::CheckAttributes(const XmlNode& element, const std::vector<std::string>& known) {
  const auto count = std::count_if(
      known.begin(), known.end(), [&element](const std::string& name) { return element.HasAttribute(name); });
  if (element.GetAttributeCount() <= static_cast<std::size_t>(count)) return;
  const std::optional<Tag> tag = TagAt(collector_.Text(), OffsetOf(element));
  if (!tag || hasDoctype_)
    return ReportTag("unknown-attribute", element,
                     fmt::format("an attribute of {} is ignored", NameOf(element)));
  for (const AttributeText& attribute : tag->attributes) {
    const std::string name(attribute.name);
    if (Contains(known, name)) continue;
    collector_.Add("unknown-attribute",
                   {attribute.begin, attribute.end,
                    fmt::format("attribute {} of {} is ignored", Quoted(name), NameOf(element)),
                    SpellingHint(name, known), true});
  }
}

void XmlMessage::CheckIgnoredText(const XmlNode& element) {
  if (IsBlank(element.GetData())) return;
  Finding finding{OffsetOf(element), 0, fmt::format("the text directly in {} is ignored", NameOf(element))};
  const TextRange place = hasDoctype_ ? TextRange() : FirstText(collector_.Text(), finding.begin);
  if (place.end != 0) {
    finding.begin = place.begin;
    finding.end = place.end;
    finding.isIgnored = true;
  }
  collector_.Add("ignored-text", finding);
}

// White space between child elements is layout, not text.
void XmlMessage::CheckText(XmlNode& element) {
  CheckAttributes(element, {});
  if (element.GetChildCount() == 0) return;
  if (element.GetData().empty()) {
    return ReportElement(
        "markup-for-text", element,
        fmt::format("{} contains elements and no text, and is read as empty", NameOf(element)));
  }
  ForEachChild(element, [&](const XmlNode& child) {
    ReportElement("unknown-element", child,
                  fmt::format("element {} in {} is ignored", NameOf(child), NameOf(element)), {}, true);
  });
}

void XmlMessage::CheckParams(XmlNode& params, bool anyName) {
  CheckShape(params, {{Text(names::param)}, {}, true, anyName});
  ForEachChild(params, [&](XmlNode& child) {
    if (anyName || child.IsName(names::param)) CheckParam(child);
  });
}

void XmlMessage::CheckParam(XmlNode& param) {
  const XmlNode::Ptr name = param.GetChild(names::name);
  const XmlNode::Ptr type = param.GetChild(names::type);
  const XmlNode::Ptr value = param.GetChild(names::value);
  CheckShape(param, {{Text(names::name), Text(names::type), Text(names::value)}, {}, false, false});
  if (name) CheckText(*name);
  if (type) CheckText(*type);
  if (!name) ReportTag("unnamed-parameter", param, "a parameter without \"name\" has an empty name");

  const XmlNode::Ptr holder = type && value ? value->GetChild(names::valuetype) : value;
  if (type && value) CheckShape(*value, {{Text(names::valuetype)}, {}, false, false});
  if (holder) {
    CheckHolder(*holder, !type);
  } else {
    ReportTag("no-value", param,
              fmt::format("parameter {} has no value: there is no {}", Quoted(param.GetData(names::name)),
                          value ? R"("valuetype" in "value")" : "\"value\""));
  }
  CheckName(param);
}

// In the layout with the type as an attribute, only text without markup is read as text. Otherwise the value
// is the markup, and nothing is ignored.
void XmlMessage::CheckHolder(XmlNode& holder, bool attributeLayout) {
  const XmlNode::Ptr text = holder.GetChild(names::fixed);
  const XmlNode::Ptr variable = holder.GetChild(names::variable);
  ElementShape shape{{Text(text ? names::fixed : names::variable)}, {}, false, false};
  if (!text && !variable) shape.children.push_back(names::fixed);
  if (attributeLayout) shape.attributes.push_back(names::type);
  CheckShape(holder, shape);
  if (text && attributeLayout && !text->GetData().empty()) return CheckText(*text);
  if (text) return CheckAttributes(*text, {});
  if (variable) return CheckVariable(*variable);
  ReportTag(
      "no-value", holder,
      fmt::format(R"({} contains neither "static" nor "variable": the value is empty)", NameOf(holder)));
}

void XmlMessage::CheckVariable(XmlNode& variable) {
  CheckShape(variable, {{Text(names::deviceid), Text(names::variableid)}, {}, false, false});
  const XmlNode::Ptr device = variable.GetChild(names::deviceid);
  const XmlNode::Ptr id = variable.GetChild(names::variableid);
  if (!device) {
    ReportTag("missing-id", variable,
              R"("variable" has no "deviceid": the parameter is static, with an empty value)", idsHint);
  }
  if (device) CheckId(*device);
  if (!id) {
    ReportTag("missing-id", variable, R"("variable" has no "variableid": the variable's id is 0)", idsHint);
  }
  if (id) CheckId(*id);
}

void XmlMessage::CheckId(XmlNode& id) {
  CheckText(id);
  const ElementText place = ElementAt(collector_.Text(), OffsetOf(id));
  try {
    const std::int64_t number = id.GetDataNumber();
    if (number < 0) {
      collector_.Add("id-wraps", {place.contentBegin, place.contentEnd,
                                  fmt::format("{} {} is read as {}", NameOf(id), number,
                                              static_cast<std::uint32_t>(number)),
                                  "ids are from 0 to 4294967295"});
    }
    if (IsBlank(id.GetData()) && id.GetChildCount() == 0)
      ReportElement("missing-id", id, fmt::format("{} is empty and read as 0", NameOf(id)));
  } catch (const zq::ZqError& error) {
    throw Refusal("invalid-id", {OffsetOf(id), place.end, ErrorText(error.what()),
                                 "ids are whole numbers from 0 to 4294967295"});
  }
}

// A name that occurs twice may do so in two elements "params".
void XmlMessage::CheckName(const XmlNode& param) {
  const std::string name = param.GetData(names::name);
  const auto [first, isNew] = names_.try_emplace(name, zq::PositionOf(param));
  if (isNew) return;
  ReportElement("duplicate-parameter", param,
                fmt::format("parameter {} is ignored here; the first one of that name, in line {}, is used",
                            Quoted(name), first->second.line),
                {}, true);
}

void XmlMessage::ReportElement(std::string_view rule, const XmlNode& element, const std::string& text,
                               const std::string& hint, bool isIgnored) {
  const ElementText place = ElementAt(collector_.Text(), OffsetOf(element));
  collector_.Add(rule, {OffsetOf(element), hasDoctype_ ? 0 : place.end, text, hint, isIgnored});
}

void XmlMessage::ReportTag(std::string_view rule, const XmlNode& element, const std::string& text,
                           const std::string& hint) {
  const std::optional<Tag> tag = TagAt(collector_.Text(), OffsetOf(element));
  collector_.Add(rule, {OffsetOf(element), tag ? tag->end : 0, text, hint});
}

std::size_t XmlMessage::OffsetOf(const XmlNode& element) const {
  return collector_.Source().OffsetOf(zq::PositionOf(element));
}

XmlNode::Ptr LastChild(XmlNode& element, const std::string& name) {
  XmlNode::Ptr last;
  zq::XmlNodeIterator* const children = element.GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) {
    if (child->IsName(name)) last = child;
  }
  return last;
}

// A document begins with no other character of ASCII. Everything else is for the parser to judge.
void RequireXml(const std::string& text, const std::string& expected, const std::string& hint) {
  const std::size_t begin = BeginningOf(text);
  const char first = text[begin];
  if (first != '<' && first >= ' ' && first <= '~') RefuseBeginning(text, begin, expected, hint);
}

Finding MalformedXml(const SourceText& source, const zq::XmlError& error) {
  const std::size_t at = source.OffsetOf(error.position);
  Finding finding{at, 0, ErrorText(error.text)};
  if (error.text != "mismatched tag") return finding;
  std::vector<Tag> open;
  std::optional<Tag> tag = NextTag(source.Text(), 0);
  for (; tag && tag->end <= at; tag = NextTag(source.Text(), tag->end)) {
    if (!tag->isEnd && !tag->isEmpty) open.push_back(*tag);
    if (tag->isEnd && !open.empty()) open.pop_back();
  }
  if (!tag || open.empty()) return finding;
  const zq::XmlPosition begin = source.PositionAt(open.back().begin);
  finding.end = tag->end;
  finding.hint = fmt::format("{} closes here, but the innermost open element is {}, from line {}, column {}",
                             Quoted(tag->name), Quoted(open.back().name), begin.line, begin.column);
  return finding;
}

}  // namespace tavrin::diagnostics
