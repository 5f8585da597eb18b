#pragma once

#include <tavrin_platform/XmlNode.h>
#include <stdexcept>
#include <string>

// Returns the root element of a string, which must be a document.
inline zq::XmlNode::Ptr ParseXml(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) throw std::invalid_argument("not a document: " + text.substr(0, 200));
  return document->GetRoot();
}
