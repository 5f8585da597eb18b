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
  bool anyChild = false;  // whether children of other names are read, too
};

// What a loader reads of a message's root element, besides "params". It may have any name, and the children
// any order; the last one of a name wins.
struct MessageShape {
  std::string root;                 // the name that it should have
  std::vector<std::string> texts;   // children of which the text is read
  std::vector<std::string> markup;  // children of which the whole content is read
  std::vector<std::string> flags;   // children that only have to be there
  bool anyParam = false;            // whether a parameter may have another name than "param"
};

// Parses as the loaders do. Throws Objection where the text is not a document.
zq::XmlDocument::Ptr ParseXml(const std::string& text);

// Walks the elements that the loaders of messages read, and notes what they pass over.
class XmlLint {
 public:
  explicit XmlLint(Findings& notes) : notes_(notes) {}

  // Checks a message with its parameters. Throws Objection where an id cannot be read.
  void CheckMessage(zq::XmlNode& root, const MessageShape& shape);

 private:
  void CheckShape(zq::XmlNode& element, const ElementShape& shape);
  void CheckAttributes(const zq::XmlNode& element, const std::vector<std::string>& known);
  void CheckMessageChild(zq::XmlNode& child, const MessageShape& shape);
  void CheckParams(zq::XmlNode& params, bool anyName);
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
