#pragma once

#include <tavrin_platform/XmlNode.h>
#include <map>
#include <string>
#include <vector>

#include "Lint.h"

namespace tool {

// What a loader of messages reads of an element; it passes over everything else.
struct ElementShape {
  std::vector<std::string> children;  // by name
  bool repeated = false;              // whether every child of a name is read and not only the first one
  bool text = false;                  // whether the text is read
  std::vector<std::string> attributes;
};

// Parses as the loaders do. Throws Objection where the text is not a document.
zq::XmlDocument::Ptr ParseXml(const std::string& text);

// Walks the elements that the loaders of messages read, and notes what they pass over.
class XmlLint {
 public:
  explicit XmlLint(Findings& notes) : notes_(notes) {}

  // Notes what an element has beyond its shape.
  void CheckShape(zq::XmlNode& element, const ElementShape& shape);

  // Checks all "param" children of an element, in both layouts. A name that an earlier call has seen counts
  // as standing twice, too. Throws Objection where an id cannot be read.
  void CheckParams(zq::XmlNode& params);

 private:
  void CheckParam(zq::XmlNode& param);
  void CheckHolder(zq::XmlNode& holder, bool attributeLayout);
  void CheckVariable(zq::XmlNode& variable);
  void CheckId(zq::XmlNode& id);
  void CheckName(const std::string& name, const Place& place);
  void Note(const zq::XmlNode& element, const std::string& text);

  Findings& notes_;
  std::map<std::string, Place> names_;
};

}  // namespace tool
