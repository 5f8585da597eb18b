#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <string>
#include <string_view>
#include <utility>

#include "Parser.h"
#include "Tree.h"

namespace zq {

XmlNode::Ptr XmlDocument::GetRoot() const {
  // Every document is a complete, shared, non-constant tree.
  auto& tree = const_cast<xml::Tree&>(static_cast<const xml::Tree&>(*this));
  return tree.Share(tree.root);
}

XmlDocument::Ptr CreateXmlDocument(const std::string& text) { return xml::Parse(text); }

XmlDocument::Ptr CreateXmlDocument(std::string&& text) { return xml::Parse(std::move(text), nullptr, {}); }

XmlDocument::Ptr CreateXmlDocument(std::string&& text, XmlError& error, const XmlProgress& progress) {
  return xml::Parse(std::move(text), &error, progress);
}

std::string_view SourceOf(const XmlDocument& document) {
  return static_cast<const xml::Tree&>(document).text;
}

}  // namespace zq
