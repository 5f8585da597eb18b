// Texts that are parsed, traversed, written and parsed again, compared with the events of Expat.

#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Naive.h"
#include "ReferenceTree.h"
#include "Require.h"
#include "Target.h"

using zq::XmlNode;

namespace {

using ReferenceElement = ReferenceTree::Element;

// Returns the number that a string reads as, or no value if it cannot be read.
template <typename Read>
std::optional<std::int64_t> NumberOf(Read read, const std::string& name, const std::string& text) {
  try {
    return read();
  } catch (const zq::ZqError& error) {
    const std::string message = error.what();
    Require(message.find(name) != std::string::npos && message.find(text) != std::string::npos,
            "the error names what was read and what was found");
    return {};
  }
}

void CheckNumbers(const XmlNode& node, const ReferenceElement& expected) {
  constexpr std::int64_t largest = std::numeric_limits<std::uint32_t>::max();
  Require(NumberOf([&] { return node.GetDataNumber(); }, expected.name, expected.text) ==
              naive::WholeNumber(expected.text, largest),
          "an element reads as the number that its text is");
  for (const auto& [name, value] : expected.attributes) {
    Require(NumberOf([&, &key = name] { return node.GetAttributeNumber(key); }, name, value) ==
                naive::WholeNumber(value, std::numeric_limits<std::int32_t>::max()),
            "an attribute reads as the number that its value is");
  }
}

void CheckElement(const XmlNode& node, const ReferenceElement& expected) {
  RequireEqual(node.GetName(), expected.name, "the name is that of the text");
  Require(node.IsName(expected.name) && !node.IsName(expected.name + "x"), "names are compared exactly");
  RequireEqual(node.GetData(), expected.text, "the text is that of the element in the input");
  RequireEqual(node.GetAttributeCount(), expected.attributes.size(), "there are as many attributes");
  for (const auto& [name, value] : expected.attributes) {
    Require(node.HasAttribute(name), "each attribute is there");
    RequireEqual(node.GetAttribute(name), value, "each attribute has its value");
  }
  RequireEqual(node.GetChildCount(), expected.children.size(), "there are as many children");
  CheckNumbers(node, expected);
}

void CheckChildOfName(const XmlNode& node, const XmlNode::Ptr& first) {
  const std::string name = first->GetName();
  Require(node.GetChild(name) == first, "of several children of one name the first counts");
  RequireEqual(node.GetData(name), first->GetData(), "a child's text can be asked of its parent");
}

// Compares all elements. @return them, in document order
std::vector<XmlNode::Ptr> CheckTree(const XmlNode::Ptr& root, const ReferenceTree& expected) {
  std::vector<XmlNode::Ptr> nodes(expected.elements.size());
  nodes[0] = root;
  for (std::size_t index = 0; index < nodes.size(); ++index) {
    const ReferenceElement& element = expected.elements[index];
    XmlNode& node = *nodes[index];
    CheckElement(node, element);
    zq::XmlNodeIterator* walk = node.GetIterator();
    XmlNode::Ptr child = walk->First();
    Require(child == node.GetChild(), "the walk begins with the first child");
    if (child) CheckChildOfName(node, child);
    for (const std::size_t childIndex : element.children) {
      nodes[childIndex] = child;
      child = walk->Next();
    }
    Require(!child && !walk->Next(), "the walk ends after the last child");
  }
  return nodes;
}

XmlNode::Ptr Parsed(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) std::cerr << text << '\n';
  Require(document != nullptr, "what is written parses again");
  return document->GetRoot();
}

void CheckWritten(const XmlNode& root, const ReferenceTree& expected) {
  const std::string written = root.OuterXml();
  const XmlNode::Ptr again = Parsed(written);
  CheckTree(again, expected);
  RequireEqual(again->OuterXml(), written, "reserialising changes nothing");

  ReferenceTree content = expected;
  content.elements[0].attributes.clear();
  content.elements[0].name = "content";
  CheckTree(Parsed("<content>" + root.InnerXml() + "</content>"), content);
}

// Line endings are LF, CR LF and CR.
void CheckPositions(const std::string& text, const std::vector<XmlNode::Ptr>& nodes,
                    const ReferenceTree& expected) {
  zq::XmlPosition place{1, 1};
  std::size_t at = 0;
  for (std::size_t index = 0; index < nodes.size(); ++index) {
    for (; at < expected.elements[index].begin; ++at) {
      const bool endsLine = text[at] == '\n' || (text[at] == '\r' && text[at + 1] != '\n');
      place = endsLine ? zq::XmlPosition{place.line + 1, 1} : zq::XmlPosition{place.line, place.column + 1};
    }
    Require(zq::PositionOf(*nodes[index]) == place, "the position of an element is that of its tag");
  }
}

void CheckVerbatim(const std::string& text, const std::vector<XmlNode::Ptr>& nodes,
                   const ReferenceTree& expected) {
  for (std::size_t index : {std::size_t{0}, nodes.size() - 1}) {
    const std::string markup = nodes[index]->OuterXml();
    Require(text.compare(expected.elements[index].begin, markup.size(), markup) == 0,
            "markup is returned verbatim");
  }
}

// The same tree, built in code.
XmlNode::Ptr Built(const ReferenceTree& tree) {
  std::vector<XmlNode::Ptr> nodes(tree.elements.size());
  nodes[0] = zq::CreateXmlNode(tree.elements[0].name, tree.elements[0].text);
  for (std::size_t index = 0; index < nodes.size(); ++index) {
    const ReferenceElement& element = tree.elements[index];
    for (const auto& [name, value] : element.attributes) nodes[index]->SetAttribute(name, value);
    for (const std::size_t child : element.children)
      nodes[child] = nodes[index]->AddChild(tree.elements[child].name, tree.elements[child].text);
  }
  return nodes[0];
}

// Sets an attribute of the innermost last element to the whole input. That element and its ancestors are
// serialised again, the others are written verbatim.
void CheckChange(const std::string& text, const std::vector<XmlNode::Ptr>& nodes, ReferenceTree& expected) {
  constexpr char name[] = "changed";
  auto& attributes = expected.elements.back().attributes;
  nodes.back()->SetAttribute(name, text);
  RequireEqual(nodes.back()->GetAttribute(name), text, "an attribute has the value that it was given");

  const auto present = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const auto& pair) { return pair.first == name; });
  if (present == attributes.end())
    attributes.emplace_back(name, naive::Writable(text));
  else
    present->second = naive::Writable(text);
  CheckWritten(*nodes[0], expected);
}

void CheckDocument(const std::string& text, const zq::XmlDocument& document, ReferenceTree& expected) {
  const std::vector<XmlNode::Ptr> nodes = CheckTree(document.GetRoot(), expected);
  CheckWritten(*nodes[0], expected);
  CheckWritten(*Built(expected), expected);
  const bool isUtf8 = text.find('\0') == std::string::npos;
  if (isUtf8) CheckPositions(text, nodes, expected);
  if (isUtf8 && !expected.hasDoctype && !expected.namesEncoding) CheckVerbatim(text, nodes, expected);
  CheckChange(text, nodes, expected);
}

// The overload that reports errors agrees with the other one.
void CheckDiagnostics(const std::string& text, bool isDocument) {
  zq::XmlError error;
  std::size_t parsed = 0;
  const zq::XmlDocument::Ptr document =
      zq::CreateXmlDocument(std::string(text), error, [&](std::size_t bytes) {
        Require(bytes >= parsed && bytes <= text.size(), "progress increases up to the end of the text");
        parsed = bytes;
      });
  RequireEqual(document != nullptr, isDocument, "both ways to parse accept the same texts");
  Require(error.text.empty() == isDocument, "exactly malformed texts have an error");
  Require((error.position.line == 0) == isDocument, "exactly errors have a position");
}

// Parses the same input after a comment that is long enough for two code paths: with progress reports the
// parser receives two pieces, and without them the tree uses the parser's copy of the input. Only one input
// in four, because this takes longer than all other checks.
void CheckPieces(const std::string& text, const zq::XmlDocument::Ptr& document,
                 const std::optional<ReferenceTree>& expected) {
  constexpr std::size_t piece = 1U << 16U;
  constexpr std::string_view commentBegin = "<!--";
  constexpr std::string_view commentEnd = "-->";
  const bool isUtf8 = text.find('\0') == std::string::npos;
  const bool canFollowComment = text.compare(0, 1, "<") == 0 && text.compare(0, 5, "<?xml") != 0;
  const std::size_t checksum = std::accumulate(text.begin(), text.end(), std::size_t{0});
  if (!isUtf8 || !canFollowComment || text.size() > piece / 2 || checksum % 4 != 0) return;
  const std::size_t commentSize = piece - checksum % text.size();
  std::string padded(commentBegin);
  padded.append(commentSize - commentBegin.size() - commentEnd.size(), '.').append(commentEnd).append(text);

  zq::XmlError error;
  zq::XmlError errorOfPadded;
  zq::CreateXmlDocument(std::string(text), error);
  const auto inPieces = zq::CreateXmlDocument(std::string(padded), errorOfPadded, [](std::size_t) {});
  const auto given = zq::CreateXmlDocument(std::string(padded), errorOfPadded);
  const auto whole = zq::CreateXmlDocument(padded);
  Require((inPieces != nullptr) == (given != nullptr), "an input is a document in pieces, too");
  Require((whole != nullptr) == (given != nullptr), "and when it is not moved");
  if (document) {
    for (const zq::XmlDocument::Ptr& other : {inPieces, given, whole}) {
      Require(other != nullptr, "a document is one after a comment, too");
      CheckTree(other->GetRoot(), *expected);
      RequireEqual(other->GetRoot()->OuterXml(), document->GetRoot()->OuterXml(), "it is written the same");
    }
  } else if (!given) {
    RequireEqual(errorOfPadded.text, error.text, "the reason is the same after a comment");
    if (error.position.line == 1) error.position.column += static_cast<std::uint32_t>(commentSize);
    Require(errorOfPadded.position == error.position, "and the position is the same, except for the comment");
  }
}

// Elements of arbitrary bytes.
void CheckAnyTexts(const std::string& input) {
  const std::vector<std::string> part = naive::Parts(input, 8);
  const XmlNode::Ptr node = zq::CreateXmlNode(part[0], part[1]);
  node->SetAttribute(part[2], part[3]);
  node->SetAttribute(part[4], part[5]);
  const XmlNode::Ptr child = node->AddChild(part[6], part[7]);
  RequireEqual(node->GetData(), naive::IsBlank(part[1]) ? "" : part[1], "text is kept next to children");

  const XmlNode::Ptr again = Parsed(node->OuterXml());
  RequireEqual(again->GetData(), naive::Writable(node->GetData()),
               "text survives except for characters that XML cannot represent");
  RequireEqual(again->GetAttributeCount(), node->GetAttributeCount(), "no attribute is lost");
  Require(again->GetChildCount() == 1, "the child survives");
  RequireEqual(again->GetChild()->GetData(), naive::Writable(part[7]), "and so does its text");
  RequireEqual(again->OuterXml(), node->OuterXml(), "reserialising changes nothing");

  const std::optional<ReferenceTree> named = ReferenceTree::Of("<" + part[0] + "/>");
  if (named && named->elements[0].name == part[0])
    RequireEqual(again->GetName(), part[0], "a name that XML can represent survives");
}

// If an input has declarations, the library rejects more than the parser does: external and undefined
// references, and unbounded expansion.
bool MayBeRefused(const std::string& text, const ReferenceTree& tree) {
  if (!tree.hasDoctype) return false;
  constexpr std::size_t tooShortToGrow = 512;
  const auto holds = [&](const std::string& piece) { return text.find(piece) != std::string::npos; };
  const bool isUtf16 = holds(std::string(1, '\0'));
  return isUtf16 || holds("&") || holds("%") || holds("SYSTEM") || holds("PUBLIC") ||
         (holds("<!ATTLIST") && text.size() > tooShortToGrow);
}

}  // namespace

void UseInput(const std::string& input) {
  if (const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input)) document->GetRoot()->OuterXml();
}

void CheckInput(const std::string& input) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(input);
  std::optional<ReferenceTree> expected = ReferenceTree::Of(input);
  Require(!document || expected, "every document is well-formed");
  Require(document || !expected || MayBeRefused(input, *expected), "every well-formed text is a document");

  CheckDiagnostics(input, document != nullptr);
  CheckPieces(input, document, expected);
  if (document) CheckDocument(input, *document, *expected);
  CheckAnyTexts(input);
}
