// An XML library of plain nodes with strings and lists, on Expat: as simple as the interface allows.

#include <expat.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>

#include <algorithm>
#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdlib>
#include <deque>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Faults.h"

PlatformFaults platformFaults;

namespace {

constexpr const char* blanks = " \t\r\n";

struct Tree;
struct Node;

struct Walk : zq::XmlNodeIterator {
  explicit Walk(Node& owner) : node(owner) {}
  Node& node;
  std::size_t at = 0;
};

struct Node : zq::XmlNode {
  Node(Tree& owner, Node* within) : tree(owner), parent(within), walk(*this) {}

  Tree& tree;
  Node* parent;
  std::string name;
  std::string text;  // all pieces joined
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<Node*> children;
  Walk walk;
  zq::XmlPosition place;
  // The markup as it stood; absent once something in it has changed.
  bool hasMarkup = false;
  std::string::size_type begin = 0;
  std::string::size_type contentBegin = 0;
  std::string::size_type contentEnd = 0;
  std::string::size_type end = 0;

  const Node* Child(const std::string& childName) const {
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const Node* child) { return child->name == childName; });
    return found != children.end() ? *found : nullptr;
  }

  const std::string* Attribute(const std::string& attributeName) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const auto& attribute) { return attribute.first == attributeName; });
    return found != attributes.end() ? &found->second : nullptr;
  }

  void Changed() {
    for (Node* node = this; node != nullptr; node = node->parent) node->hasMarkup = false;
  }
};

// The owner of its nodes, which all pointers to one of them share.
struct Tree : zq::XmlDocument, boost::enable_shared_from_this<Tree> {
  explicit Tree(std::string source) : text(std::move(source)) {}

  std::string text;
  std::deque<Node> nodes;  // the root comes first

  Node& Add(Node* parent, const std::string& name, const std::string& data) {
    Node& node = nodes.emplace_back(*this, parent);
    node.name = name;
    node.text = data;
    if (parent != nullptr) parent->children.push_back(&node);
    return node;
  }

  zq::XmlNode::Ptr Share(const Node* node) {
    if (node == nullptr) return {};
    return {shared_from_this(), const_cast<Node*>(node)};
  }
};

Node& Self(zq::XmlNode& node) { return static_cast<Node&>(node); }
const Node& Self(const zq::XmlNode& node) { return static_cast<const Node&>(node); }

std::int64_t Number(const std::string& what, const std::string& text, std::int64_t max) {
  constexpr std::int64_t min = std::numeric_limits<std::int32_t>::min();
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string::npos) return 0;
  const std::string digits = text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
  const std::size_t sign = digits[0] == '-' || digits[0] == '+' ? 1 : 0;
  const long long number = std::strtoll(digits.c_str(), nullptr, 10);
  const bool isNumber =
      digits.size() > sign && digits.find_first_not_of("0123456789", sign) == std::string::npos;
  if (isNumber && number >= min && number <= max) return number;
  throw zq::ZqError(what + " holds \"" + text + "\", which is not a number from " + std::to_string(min) +
                    " to " + std::to_string(max));
}

std::int64_t DataNumber(const Node& node) {
  return Number("element \"" + node.name + '"', node.text, std::numeric_limits<std::uint32_t>::max());
}

using ExpatParser = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

ExpatParser NewExpatParser() {
  ExpatParser parser(XML_ParserCreate(nullptr), &XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  return parser;
}

// How long the character beyond ASCII is that the text begins with; 0 where it is none that XML can hold.
std::size_t CharacterLength(const std::string& text) {
  for (std::size_t length = 2; length <= std::min<std::size_t>(text.size(), 4); ++length) {
    const std::string document = "<a>" + text.substr(0, length) + "</a>";
    if (XML_Parse(NewExpatParser().get(), document.data(), static_cast<int>(document.size()), 1) ==
        XML_STATUS_OK)
      return length;
  }
  return 0;
}

std::string Escaped(const std::string& text, bool inAttribute) {
  std::string escaped;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const std::size_t length = static_cast<unsigned char>(c) < 0x80 ? 0 : CharacterLength(text.substr(at));
    if (length > 0) {
      escaped += text.substr(at, length);
      at += length - 1;
    } else if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"' && inAttribute) {
      escaped += "&quot;";
    } else if (c == '\r' || (inAttribute && (c == '\t' || c == '\n'))) {
      escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
    } else if (c == '\t' || c == '\n' || (c >= 0x20 && c < 0x7F)) {
      escaped += c;
    } else {
      escaped += "\xEF\xBF\xBD";
    }
  }
  return escaped;
}

std::string Outer(const Node& node);

std::string Inner(const Node& node) {
  if (node.hasMarkup) return node.tree.text.substr(node.contentBegin, node.contentEnd - node.contentBegin);
  std::string markup = Escaped(node.text, false);
  for (const Node* child : node.children) markup += Outer(*child);
  return markup;
}

std::string Outer(const Node& node) {
  if (node.hasMarkup) return node.tree.text.substr(node.begin, node.end - node.begin);
  std::string markup = "<" + node.name;
  for (const auto& [name, value] : node.attributes)
    markup.append(" ").append(name).append("=\"").append(Escaped(value, true)).append("\"");
  const std::string inner = Inner(node);
  return inner.empty() ? markup + "/>" : markup + ">" + inner + "</" + node.name + ">";
}

class Parser {
 public:
  explicit Parser(Tree& tree) : tree_(tree) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(),
        [](void* self, const char* name, const char** attributes) {
          Run(self, [=](Parser& parser) { parser.Start(name, attributes); });
        },
        [](void* self, const char* /*name*/) { Run(self, [](Parser& parser) { parser.End(); }); });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* data, int length) {
      Run(self, [=](Parser& parser) { parser.open_->text.append(data, static_cast<std::size_t>(length)); });
    });
    XML_SetXmlDeclHandler(
        parser_.get(), [](void* self, const char* /*version*/, const char* encoding, int /*standalone*/) {
          static_cast<Parser*>(self)->keepsMarkup_ = encoding == nullptr || std::string(encoding) == "UTF-8";
        });
    XML_SetStartDoctypeDeclHandler(
        parser_.get(), [](void* self, const char* /*name*/, const char* /*system*/, const char* /*public*/,
                          int /*hasSubset*/) { static_cast<Parser*>(self)->keepsMarkup_ = false; });
  }

  bool Parse() {
    start_ = std::min(tree_.text.find_first_not_of(blanks), tree_.text.size());
    const bool isDocument = XML_Parse(parser_.get(), tree_.text.data() + start_,
                                      static_cast<int>(tree_.text.size() - start_), 1) == XML_STATUS_OK;
    if (failure_) std::rethrow_exception(failure_);
    return isDocument;
  }

 private:
  // Nothing may be thrown through Expat.
  template <typename Work>
  static void Run(void* self, Work work) {
    Parser& parser = *static_cast<Parser*>(self);
    if (parser.failure_) return;
    try {
      work(parser);
    } catch (...) {
      parser.failure_ = std::current_exception();
      XML_StopParser(parser.parser_.get(), XML_FALSE);
    }
  }

  std::size_t At() const { return start_ + static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get())); }
  std::size_t AfterTag() const {
    return At() + static_cast<std::size_t>(XML_GetCurrentByteCount(parser_.get()));
  }

  zq::XmlPosition Place() {
    for (; read_ < At(); ++read_) {
      if (tree_.text[read_] != '\n') continue;
      ++line_;
      lineBegin_ = read_ + 1;
    }
    return {line_, static_cast<std::uint32_t>(At() - lineBegin_ + 1)};
  }

  void Start(const char* name, const char** attributes) {
    Node& node = tree_.Add(open_, name, "");
    for (; *attributes != nullptr; attributes += 2)
      node.attributes.emplace_back(attributes[0], attributes[1]);
    node.place = Place();
    node.hasMarkup = keepsMarkup_;
    node.begin = At();
    node.contentBegin = AfterTag();
    open_ = &node;
  }

  void End() {
    Node& node = *open_;
    node.contentEnd = At();  // behind an empty-element tag, too
    node.end = AfterTag();
    const bool isLayout = node.text.find_first_not_of(blanks) == std::string::npos;
    if (!node.children.empty() && isLayout) node.text.clear();
    open_ = node.parent;
  }

  ExpatParser parser_ = NewExpatParser();
  Tree& tree_;
  Node* open_ = nullptr;
  bool keepsMarkup_ = true;
  std::size_t start_ = 0;
  std::size_t read_ = 0;
  std::uint32_t line_ = 1;
  std::size_t lineBegin_ = 0;
  std::exception_ptr failure_;
};

}  // namespace

namespace zq {

void XmlNode::Initialize(const std::string& name, const std::string& data) {
  Node& self = Self(*this);
  self.Changed();
  self.name = name;
  self.text = data;
  self.attributes.clear();
  self.children.clear();
  self.place = {};
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, const std::string& text) {
  Node& self = Self(*this);
  self.Changed();
  return self.tree.Share(&self.tree.Add(&self, name, text));
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, std::uint32_t number) {
  return AddChild(name, std::to_string(number));
}

XmlNode::Ptr XmlNode::GetChild() const {
  const Node& self = Self(*this);
  return self.tree.Share(self.children.empty() ? nullptr : self.children.front());
}

XmlNode::Ptr XmlNode::GetChild(const std::string& name) const {
  const Node& self = Self(*this);
  return self.tree.Share(self.Child(name));
}

std::uint32_t XmlNode::GetChildCount() const {
  return static_cast<std::uint32_t>(Self(*this).children.size());
}

std::int64_t XmlNode::GetChildDataNumber(const std::string& name) const {
  const Node* child = Self(*this).Child(name);
  return child != nullptr ? DataNumber(*child) : 0;
}

std::string XmlNode::GetData() const { return Self(*this).text; }

std::string XmlNode::GetData(const std::string& childName) const {
  const Node* child = Self(*this).Child(childName);
  return child != nullptr ? child->text : "";
}

std::int64_t XmlNode::GetDataNumber() const { return DataNumber(Self(*this)); }

bool XmlNode::HasAttribute(const std::string& name) const { return Self(*this).Attribute(name) != nullptr; }

std::string XmlNode::GetAttribute(const std::string& name) const {
  const std::string* value = Self(*this).Attribute(name);
  return value != nullptr ? *value : "";
}

std::uint32_t XmlNode::GetAttributeCount() const {
  return static_cast<std::uint32_t>(Self(*this).attributes.size());
}

std::int32_t XmlNode::GetAttributeNumber(const std::string& name) const {
  return static_cast<std::int32_t>(
      Number("attribute \"" + name + '"', GetAttribute(name), std::numeric_limits<std::int32_t>::max()));
}

void XmlNode::SetAttribute(const std::string& name, const std::string& value) {
  Node& self = Self(*this);
  self.Changed();
  if (const std::string* old = self.Attribute(name))
    const_cast<std::string&>(*old) = value;
  else
    self.attributes.emplace_back(name, value);
}

std::string XmlNode::GetName() const { return Self(*this).name; }

bool XmlNode::IsName(const std::string& name) const {
  if (!platformFaults.nameError.empty()) throw ZqError(platformFaults.nameError);
  return Self(*this).name == name;
}

std::string XmlNode::InnerXml() const { return Inner(Self(*this)); }

std::string XmlNode::OuterXml() const { return Outer(Self(*this)); }

XmlNodeIterator* XmlNode::GetIterator() { return platformFaults.noIterator ? nullptr : &Self(*this).walk; }

XmlNode::Ptr XmlNodeIterator::First() {
  static_cast<Walk&>(*this).at = 0;
  return Next();
}

XmlNode::Ptr XmlNodeIterator::Next() {
  auto& self = static_cast<Walk&>(*this);
  const std::vector<Node*>& children = self.node.children;
  return self.node.tree.Share(self.at < children.size() ? children[self.at++] : nullptr);
}

XmlNode::Ptr XmlDocument::GetRoot() const {
  if (!platformFaults.rootError.empty()) throw ZqError(platformFaults.rootError);
  auto& tree = const_cast<Tree&>(static_cast<const Tree&>(*this));
  return tree.Share(platformFaults.noRoot ? nullptr : &tree.nodes.front());
}

XmlDocument::Ptr CreateXmlDocument(const std::string& text) {
  if (!platformFaults.documentError.empty()) throw std::length_error(platformFaults.documentError);
  auto tree = boost::make_shared<Tree>(text);
  if (!Parser(*tree).Parse()) tree.reset();
  return tree;
}

XmlDocument::Ptr CreateXmlDocument(std::string&& text) {
  return CreateXmlDocument(static_cast<const std::string&>(text));
}

XmlNode::Ptr CreateXmlNode() { return CreateXmlNode("", ""); }

XmlNode::Ptr CreateXmlNode(const std::string& name, const std::string& data) {
  const auto tree = boost::make_shared<Tree>("");
  return tree->Share(&tree->Add(nullptr, name, data));
}

XmlPosition PositionOf(const XmlNode& node) {
  return platformFaults.noPlaces ? XmlPosition() : Self(node).place;
}

}  // namespace zq
