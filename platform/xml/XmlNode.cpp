#include "tavrin_platform/XmlNode.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "Tree.h"
#include "Writer.h"

namespace zq {
namespace {

using xml::Attribute;
using xml::Element;
using xml::Self;
using xml::Tree;

std::int64_t ReadNumber(std::string_view text, std::int64_t max, const char* kind, std::string_view name) {
  constexpr std::int64_t min = std::numeric_limits<std::int32_t>::min();
  const std::size_t first = text.find_first_not_of(xml::whiteSpace);
  if (first == std::string_view::npos) return 0;
  std::string_view digits = text.substr(first, text.find_last_not_of(xml::whiteSpace) + 1 - first);
  if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);

  std::int64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, failure] = std::from_chars(digits.data(), end, number);
  if (failure == std::errc() && stop == end && number >= min && number <= max) return number;
  throw ZqError(std::string(kind) + " \"" + std::string(name) + "\" contains \"" + std::string(text) +
                "\", which is not a number from " + std::to_string(min) + " to " + std::to_string(max));
}

std::string JoinedText(const Element& element) {
  if (!element.hasChildren) return std::string(element.Text());
  std::string text;
  for (const Element* item = element.FirstItem(); item != nullptr; item = item->NextItem())
    if (item->isText) text += item->Text();
  return text;
}

std::int64_t DataNumber(const Element& element) {
  constexpr std::int64_t max = std::numeric_limits<std::uint32_t>::max();
  if (!element.hasChildren) return ReadNumber(element.Text(), max, "element", element.Name());
  return ReadNumber(JoinedText(element), max, "element", element.Name());
}

void Fill(Element& element, std::string_view name, std::string_view data) {
  const std::string_view keptName = element.tree->Keep(name);
  const std::string_view keptData = element.tree->Keep(data);
  element.SetName(keptName);
  element.SetText(keptData);
}

XmlNode::Ptr AddChildTo(Element& parent, std::string_view name, std::string_view text) {
  Tree& tree = *parent.tree;
  Element& child = tree.NewElement();
  Fill(child, name, text);
  if (!parent.hasChildren) {
    const std::string_view own = parent.Text();
    if (!xml::IsBlank(own)) parent.Append(tree.NewText(own));
  }
  parent.Append(child);
  parent.MarkChanged();
  return tree.Share(&child);
}

}  // namespace

void XmlNode::Initialize(const std::string& name, const std::string& data) {
  Element& self = Self(*this);
  Fill(self, name, data);
  self.attributes = nullptr;
  self.cursor = nullptr;
  self.MarkChanged();
  self.hasPosition = false;
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, const std::string& text) {
  return AddChildTo(Self(*this), name, text);
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, std::uint32_t number) {
  char digits[std::numeric_limits<std::uint32_t>::digits10 + 1];
  const auto [end, failure] = std::to_chars(std::begin(digits), std::end(digits), number);
  return AddChildTo(Self(*this), name, {digits, static_cast<std::size_t>(end - digits)});
}

XmlNode::Ptr XmlNode::GetChild() const {
  const Element& self = Self(*this);
  return self.tree->Share(self.FirstChild());
}

XmlNode::Ptr XmlNode::GetChild(const std::string& name) const {
  const Element& self = Self(*this);
  return self.tree->Share(self.FindChild(name));
}

std::uint32_t XmlNode::GetChildCount() const {
  std::uint32_t count = 0;
  for (const Element* child = Self(*this).FirstChild(); child != nullptr; child = child->NextSibling())
    ++count;
  return count;
}

std::int64_t XmlNode::GetChildDataNumber(const std::string& name) const {
  const Element* child = Self(*this).FindChild(name);
  return child != nullptr ? DataNumber(*child) : 0;
}

std::string XmlNode::GetData() const { return JoinedText(Self(*this)); }

std::string XmlNode::GetData(const std::string& childName) const {
  const Element* child = Self(*this).FindChild(childName);
  return child != nullptr ? JoinedText(*child) : std::string();
}

std::int64_t XmlNode::GetDataNumber() const { return DataNumber(Self(*this)); }

bool XmlNode::HasAttribute(const std::string& name) const {
  return Self(*this).FindAttribute(name) != nullptr;
}

std::string XmlNode::GetAttribute(const std::string& name) const {
  const Attribute* attribute = Self(*this).FindAttribute(name);
  if (attribute == nullptr) return {};
  return std::string(attribute->value);
}

std::uint32_t XmlNode::GetAttributeCount() const {
  std::uint32_t count = 0;
  for (const Attribute* attribute = Self(*this).attributes; attribute != nullptr; attribute = attribute->next)
    ++count;
  return count;
}

std::int32_t XmlNode::GetAttributeNumber(const std::string& name) const {
  const Attribute* attribute = Self(*this).FindAttribute(name);
  if (attribute == nullptr) return 0;
  return static_cast<std::int32_t>(
      ReadNumber(attribute->value, std::numeric_limits<std::int32_t>::max(), "attribute", name));
}

void XmlNode::SetAttribute(const std::string& name, const std::string& value) {
  Element& self = Self(*this);
  const std::string_view kept = self.tree->Keep(value);
  Attribute** link = &self.attributes;
  while (*link != nullptr && (*link)->name != name) link = &(*link)->next;
  if (*link != nullptr)
    (*link)->value = kept;
  else
    *link = &self.tree->NewAttribute(self.tree->Keep(name), kept);
  self.MarkChanged();
}

std::string XmlNode::GetName() const { return std::string(Self(*this).Name()); }

bool XmlNode::IsName(const std::string& name) const { return Self(*this).Name() == name; }

std::string XmlNode::InnerXml() const { return xml::InnerXml(Self(*this)); }

std::string XmlNode::OuterXml() const { return xml::OuterXml(Self(*this)); }

XmlNodeIterator* XmlNode::GetIterator() { return &Self(*this); }

XmlNode::Ptr XmlNodeIterator::First() {
  auto& self = static_cast<Element&>(*this);
  self.cursor = self.FirstChild();
  return self.tree->Share(self.cursor);
}

XmlNode::Ptr XmlNodeIterator::Next() {
  auto& self = static_cast<Element&>(*this);
  if (self.cursor != nullptr) self.cursor = self.cursor->NextSibling();
  return self.tree->Share(self.cursor);
}

XmlNode::Ptr CreateXmlNode() { return CreateXmlNode({}, {}); }

XmlNode::Ptr CreateXmlNode(const std::string& name, const std::string& data) {
  const auto tree = boost::make_shared<Tree>(std::string());
  tree->root = &tree->NewElement();
  Fill(*tree->root, name, data);
  return tree->Share(tree->root);
}

XmlPosition PositionOf(const XmlNode& node) {
  const Element& self = Self(node);
  return self.tree->PositionOf(self);
}

}  // namespace zq
