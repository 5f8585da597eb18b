#pragma once

#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "Collector.h"

namespace tavrin::diagnostics {

// The parts of an element that a loader of messages reads; it ignores everything else.
struct ElementShape {
  std::vector<std::string> children;    // by name
  std::vector<std::string> attributes;  // by name
  bool everyChild = false;              // whether all children of a name are read and not only the first one
  bool anyName = false;                 // whether children of other names are read, too
};

// The parts of a message's root element that a loader reads, in addition to "params". The root may have any
// name, and the children any order; the last one of a name is used.
struct MessageShape {
  std::string root;                 // the name that it should have
  std::vector<std::string> texts;   // children of which the text is read
  std::vector<std::string> markup;  // children of which the whole content is read
  std::vector<std::string> flags;   // children of which only the presence is read
  bool anyParam = false;            // whether a parameter may have another name than "param"
};

// Walks the elements that the loader of a message reads, and collects what it ignores.
class XmlMessage {
 public:
  // Parses the input. Throws a Refusal if it is not a document.
  XmlMessage(Collector& collector, const std::string& text);

  // Checks the message with its parameters. Throws a Refusal where an id is not a number.
  void Check(const MessageShape& shape);

  zq::XmlNode& Root() { return *root_; }

  // Reports something about a whole element, or about its start tag.
  void ReportElement(std::string_view rule, const zq::XmlNode& element, const std::string& text,
                     const std::string& hint = {}, bool isIgnored = false);
  void ReportTag(std::string_view rule, const zq::XmlNode& element, const std::string& text,
                 const std::string& hint = {});

 private:
  void CheckRootName(const MessageShape& shape);
  void CheckChildOfRoot(zq::XmlNode& child, const MessageShape& shape);
  void CheckLastOfName(const MessageShape& shape);
  void CheckShape(zq::XmlNode& element, const ElementShape& shape);
  void CheckAttributes(const zq::XmlNode& element, const std::vector<std::string>& known);
  void CheckIgnoredText(const zq::XmlNode& element);
  void CheckText(zq::XmlNode& element);
  void CheckParams(zq::XmlNode& params, bool anyName);
  void CheckParam(zq::XmlNode& param);
  void CheckHolder(zq::XmlNode& holder, bool attributeLayout);
  void CheckVariable(zq::XmlNode& variable);
  void CheckId(zq::XmlNode& id);
  void CheckName(const zq::XmlNode& param);
  std::size_t OffsetOf(const zq::XmlNode& element) const;

  Collector& collector_;
  zq::XmlDocument::Ptr document_;
  zq::XmlNode::Ptr root_;
  bool hasDoctype_;  // then parts of the text may be used in several places, or in none
  std::map<std::string, zq::XmlPosition> names_;
};

// Parses a string that has to be XML. Throws a Refusal of any other string.
void RequireXml(const std::string& text, const std::string& expected, const std::string& hint = {});

// Returns the reason why a string is not a document, with a hint for a mismatched tag.
Finding MalformedXml(const SourceText& source, const zq::XmlError& error);

// Calls visit(child) for each child element.
template <typename Visit>
void ForEachChild(zq::XmlNode& element, Visit visit) {
  zq::XmlNodeIterator* const children = element.GetIterator();
  for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) visit(*child);
}

// Returns the last child with the name, which is the one that is read if the name may occur once; null if
// there is none.
zq::XmlNode::Ptr LastChild(zq::XmlNode& element, const std::string& name);

}  // namespace tavrin::diagnostics
