#include "Tree.h"

namespace zq::xml {

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

void Element::MarkChanged() {
  for (Element* element = this; element != nullptr && element->verbatim; element = element->parent)
    element->verbatim = false;
}

Element* Element::SkipText(Element* item) {
  while (item != nullptr && item->isText) item = item->NextItem();
  return item;
}

Tree::Tree(std::size_t textSize) : reserved_(new char[textSize]) {
  text = {reserved_.get(), textSize};
  PreferLargePages(reserved_.get(), textSize);
}

XmlNode::Ptr Tree::Share(Element* element) {
  if (element == nullptr) return {};
  return {shared_from_this(), element};
}

Element& Tree::NewText(std::string_view kept) {
  Element& element = NewElement();
  element.isText = true;
  element.SetText(kept);
  return element;
}

XmlPosition Tree::PositionOf(const Element& element) {
  if (!element.hasPosition) return {};
  if (!lines_) lines_ = std::make_unique<LineIndex>(text);
  return lines_->At(element.begin);
}

}  // namespace zq::xml
