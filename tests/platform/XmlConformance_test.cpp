// Runs the parser on a public collection of well-formed and malformed documents, which includes the canonical
// form of each well-formed one. XmlConformanceSuite.cmake installs the collection.

#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ParseXml.h"
#include "ReferenceTree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zq::XmlNode;
namespace fs = std::filesystem;

// An attribute that no document of the collection has.
constexpr char mark[] = "written-again";

// --- the collection ---

std::string Contents(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

// Returns the documents of a directory by their names.
std::map<std::string, std::string> Documents(const std::string& directory) {
  std::map<std::string, std::string> documents;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(TAVRIN_XML_SUITE) / directory)) {
    if (entry.path().extension() == ".xml")
      documents.emplace(entry.path().filename().string(), Contents(entry.path()));
  }
  return documents;
}

std::vector<std::string> Accepted(const std::map<std::string, std::string>& documents) {
  std::vector<std::string> accepted;
  for (const auto& [name, text] : documents) {
    if (zq::CreateXmlDocument(text)) accepted.push_back(name);
  }
  return accepted;
}

// --- the canonical form ---

std::string Escaped(std::string_view text) {
  static const std::map<char, std::string> escapes = {{'&', "&amp;"},  {'<', "&lt;"},  {'>', "&gt;"},
                                                      {'"', "&quot;"}, {'\t', "&#9;"}, {'\n', "&#10;"},
                                                      {'\r', "&#13;"}};
  std::string escaped;
  for (const char c : text) {
    const auto escape = escapes.find(c);
    escape == escapes.end() ? escaped.push_back(c) : void(escaped += escape->second);
  }
  return escaped;
}

// Writes a document in a canonical form: attributes are sorted, everything else is resolved. Instructions and
// white space that only lays out child elements are left out, because the library does not keep them.
class CanonicalForm {
 public:
  explicit CanonicalForm(const std::string& text) {
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), XML_ParserFree);
    XML_SetUserData(parser.get(), this);
    XML_SetElementHandler(
        parser.get(),
        [](void* self, const char* name, const char** attributes) { Of(self).Start(name, attributes); },
        [](void* self, const char* name) { Of(self).End(name); });
    XML_SetCharacterDataHandler(parser.get(), [](void* self, const char* data, int length) {
      Of(self).Text({data, static_cast<std::size_t>(length)});
    });
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) != XML_STATUS_OK)
      throw std::invalid_argument("not a document: " + text);
  }

  const std::string& Result() const { return open_.front().children; }

 private:
  struct Element {
    std::string begin;     // the start tag
    std::string content;   // all of the content
    std::string children;  // the content without text
    bool blank = true;     // whether the text is white space only
  };

  static CanonicalForm& Of(void* self) { return *static_cast<CanonicalForm*>(self); }

  void Start(const char* name, const char** attributes) {
    std::map<std::string, std::string> sorted;
    for (; *attributes != nullptr; attributes += 2) sorted.emplace(attributes[0], attributes[1]);
    sorted.erase(mark);
    Element element{std::string("<") + name, {}, {}};
    for (const auto& [attribute, value] : sorted)
      element.begin += ' ' + attribute + "=\"" + Escaped(value) + '"';
    open_.push_back(std::move(element));
  }

  void End(const char* name) {
    const Element element = std::move(open_.back());
    open_.pop_back();
    const bool laidOut = element.blank && !element.children.empty();
    const std::string markup =
        element.begin + '>' + (laidOut ? element.children : element.content) + "</" + name + '>';
    open_.back().content += markup;
    open_.back().children += markup;
  }

  void Text(std::string_view data) {
    open_.back().content += Escaped(data);
    open_.back().blank = open_.back().blank && data.find_first_not_of(" \t\r\n") == std::string_view::npos;
  }

  std::vector<Element> open_ = std::vector<Element>(1);  // the document itself at the front
};

std::string Canonical(const std::string& text) { return CanonicalForm(text).Result(); }

// --- the tree that the library reads ---

void ExpectElement(const XmlNode& node, const ReferenceTree::Element& expected) {
  EXPECT_EQ(node.GetName(), expected.name);
  EXPECT_EQ(node.GetData(), expected.text);
  EXPECT_EQ(node.GetAttributeCount(), expected.attributes.size());
  for (const auto& [name, value] : expected.attributes) {
    EXPECT_TRUE(node.HasAttribute(name)) << name;
    EXPECT_EQ(node.GetAttribute(name), value) << name;
  }
  EXPECT_EQ(node.GetChildCount(), expected.children.size());
}

void ExpectTree(const XmlNode::Ptr& root, const std::string& canonical) {
  const ReferenceTree expected = ReferenceTree::Of(canonical).value();
  std::vector<XmlNode::Ptr> nodes(expected.elements.size());
  nodes[0] = root;
  for (std::size_t index = 0; index < nodes.size(); ++index) {
    ASSERT_TRUE(nodes[index]) << expected.elements[index].name;
    ExpectElement(*nodes[index], expected.elements[index]);
    zq::XmlNodeIterator* walk = nodes[index]->GetIterator();
    XmlNode::Ptr child = walk->First();
    for (const std::size_t childIndex : expected.elements[index].children) {
      nodes[childIndex] = child;
      child = walk->Next();
    }
  }
}

// Changes every element, so that none is written verbatim.
void MarkAll(const XmlNode::Ptr& node) {
  node->SetAttribute(mark, "");
  zq::XmlNodeIterator* walk = node->GetIterator();
  for (XmlNode::Ptr child = walk->First(); child; child = walk->Next()) MarkAll(child);
}

}  // namespace

TEST(XmlConformance, RejectsEveryMalformedStandaloneDocument) {
  const std::map<std::string, std::string> documents = Documents("not-wf/sa");
  ASSERT_FALSE(documents.empty());
  const std::vector<std::string> accepted = Accepted(documents);
  std::cout << documents.size() << " malformed documents, " << documents.size() - accepted.size()
            << " refused\n";

  // White space before the XML declaration is accepted, because messages contain it.
  EXPECT_THAT(accepted, ElementsAre("147.xml"));
  EXPECT_EQ(documents.at("147.xml").substr(0, 7), "\r\n<?xml");
}

TEST(XmlConformance, ReadsEveryValidStandaloneDocumentAndWritesItsTree) {
  const std::map<std::string, std::string> documents = Documents("valid/sa");
  const std::map<std::string, std::string> canonical = Documents("valid/sa/out");
  ASSERT_FALSE(documents.empty());
  for (const auto& [name, text] : documents) {
    SCOPED_TRACE(name);
    const std::string& expected = canonical.at(name);
    const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    ASSERT_TRUE(document);
    ExpectTree(document->GetRoot(), expected);

    const std::string written = document->GetRoot()->OuterXml();
    EXPECT_EQ(Canonical(written), Canonical(expected));
    ExpectTree(ParseXml(written), expected);

    MarkAll(document->GetRoot());
    const std::string writtenAnew = document->GetRoot()->OuterXml();
    EXPECT_EQ(Canonical(writtenAnew), Canonical(expected));
  }
  std::cout << documents.size() << " valid documents read and written\n";
}

// If a document refers to another file, that file exists next to it and could be read.
TEST(XmlConformance, RejectsEveryDocumentThatRefersToExternalText) {
  for (const std::string directory : {"valid/ext-sa", "not-wf/ext-sa"}) {
    const std::map<std::string, std::string> documents = Documents(directory);
    ASSERT_FALSE(documents.empty());
    std::cout << documents.size() << " documents of " << directory << " refused\n";
    EXPECT_THAT(Accepted(documents), IsEmpty()) << directory;
  }
}

// The parser ignores external declarations, so it cannot decide whether these documents are well-formed. It
// rejects those that are malformed without them, and those that refer to an entity that only they could
// declare.
TEST(XmlConformance, OmitsExternalDeclarations) {
  const std::map<std::string, std::vector<std::string>> refused = {{"valid/not-sa", {"031.xml"}},
                                                                   {"not-wf/not-sa", {"002.xml"}}};
  for (const auto& [directory, names] : refused) {
    std::map<std::string, std::string> documents = Documents(directory);
    ASSERT_FALSE(documents.empty());
    const std::vector<std::string> accepted = Accepted(documents);
    std::cout << documents.size() << " documents of " << directory << " need external declarations, "
              << accepted.size() << " are accepted without them\n";
    for (const std::string& name : accepted) documents.erase(name);
    std::vector<std::string> left;
    for (const auto& [name, text] : documents) left.push_back(name);
    EXPECT_EQ(left, names) << directory;
  }
}
