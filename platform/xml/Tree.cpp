#include "Tree.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace zq::xml {

void Element::SetName(std::string_view view) {
  if (view.size() > kMaxNameLength) throw std::length_error("XML name of more than 256 MiB");
  name = view.data();
  nameLength = static_cast<std::uint32_t>(view.size()) & kMaxNameLength;
}

void Element::SetText(std::string_view view) {
  hasChildren = false;
  text = view.data();
  textLength = static_cast<std::uint32_t>(view.size());
}

Element* Element::FindChild(std::string_view childName) const {
  Element* child = FirstChild();
  while (child != nullptr && child->Name() != childName) child = child->NextSibling();
  return child;
}

Attribute* Element::FindAttribute(std::string_view attributeName) const {
  Attribute* attribute = attributes;
  while (attribute != nullptr && attribute->name != attributeName) attribute = attribute->next;
  return attribute;
}

void Element::Insert(Element& item, Element* previous) {
  item.parent = this;
  if (!hasChildren) {
    hasChildren = true;
    item.next = lastChild = &item;
    return;
  }
  Element* before = previous != nullptr ? previous : lastChild;
  item.next = before->next;
  before->next = &item;
  if (previous == lastChild) lastChild = &item;
}

void Element::MarkChanged() {
  for (Element* element = this; element != nullptr && element->verbatim; element = element->parent)
    element->verbatim = false;
}

Element* Element::SkipText(Element* item) {
  while (item != nullptr && item->isText) item = item->NextItem();
  return item;
}

XmlNode::Ptr Tree::Share(Element* element) {
  if (element == nullptr) return {};
  return {shared_from_this(), element};
}

template <typename T, typename... Args>
T& Tree::New(Args&&... args) {
  static_assert(std::is_trivially_destructible_v<T>, "nodes go with the memory that they live in");
  return *::new (memory_.allocate(sizeof(T), alignof(T))) T(std::forward<Args>(args)...);
}

Element& Tree::NewElement() {
  auto& element = New<Element>(*this);
  element.nameLength = 0;
  element.isText = element.hasChildren = element.hasPlace = element.verbatim = false;
  return element;
}

Element& Tree::NewText(std::string_view kept) {
  Element& element = NewElement();
  element.isText = true;
  element.SetText(kept);
  return element;
}

Attribute& Tree::NewAttribute(std::string_view keptName, std::string_view keptValue) {
  auto& attribute = New<Attribute>();
  attribute.name = keptName;
  attribute.value = keptValue;
  return attribute;
}

std::string_view Tree::Keep(std::string_view view) {
  if (view.empty()) return {};
  if (std::uint64_t{view.size()} > std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("XML text of 4 GiB");
  void* copy = memory_.allocate(view.size(), 1);
  std::memcpy(copy, view.data(), view.size());
  return {static_cast<const char*>(copy), view.size()};
}

XmlPosition Tree::PositionOf(const Element& element) {
  if (!element.hasPlace) return {};
  if (!lines_) lines_ = std::make_unique<LineIndex>(text);
  return lines_->At(element.begin);
}

}  // namespace zq::xml
