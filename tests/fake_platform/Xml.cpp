// An XML library on Expat that implements only what the interface requires. Pointers are handles that end
// with their last owner, an element keeps neither its parent nor its document alive, every GetIterator()
// resets the previous iteration, and there are none of the additions of the bundled platform.

#include <boost/smart_ptr/make_shared.hpp>
#include <expat.h>

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Faults.h"
#include "LiveObjects.h"

PlatformFaults platformFaults;
LiveObjects liveObjects;

namespace {

constexpr const char* whiteSpace = " \t\r\n";

// An element of a tree, owned by its parent and by all its handles.
struct Element {
  std::weak_ptr<Element> parent;
  std::string name;
  std::string text;  // all pieces joined
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<std::shared_ptr<Element>> children;
  // The markup of the element in the parsed text; empty after a change.
  std::shared_ptr<const std::string> source;
  std::string::size_type begin = 0;
  std::string::size_type contentBegin = 0;
  std::string::size_type contentEnd = 0;
  std::string::size_type end = 0;

  const std::shared_ptr<Element>* Child(const std::string& childName) const {
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const auto& child) { return child->name == childName; });
    return found != children.end() ? &*found : nullptr;
  }

  const std::string* Attribute(const std::string& attributeName) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const auto& attribute) { return attribute.first == attributeName; });
    return found != attributes.end() ? &found->second : nullptr;
  }

  void Changed() {
    source.reset();
    for (auto above = parent.lock(); above; above = above->parent.lock()) above->source.reset();
  }
};

std::shared_ptr<Element> Add(const std::shared_ptr<Element>& parent, const std::string& name,
                             const std::string& data) {
  auto element = std::make_shared<Element>();
  element->parent = parent;
  element->name = name;
  element->text = data;
  if (parent) parent->children.push_back(element);
  return element;
}

[[noreturn]] void Misuse(const char* what) {
  std::cerr << "misuse of the XML library: " << what << std::endl;
  std::abort();
}

struct Handle;

struct Walk : zq::XmlNodeIterator {
  explicit Walk(const Handle& owner) : handle(owner) {}
  const Handle& handle;
  bool hasBegun = false;
  std::size_t at = 0;
};

// The object that XmlNode::Ptr points to: constructed for each returned pointer, and shared by its copies.
struct Handle : zq::XmlNode {
  explicit Handle(std::shared_ptr<Element> of) : element(std::move(of)), walk(*this) { ++liveObjects.nodes; }
  ~Handle() = default;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  std::shared_ptr<Element> element;  // null after the last owner is destroyed
  Walk walk;
};

// Handles without an owner stay in memory for a while, so that a later use is detected instead of undefined
// behaviour.
void Release(Handle* handle) {
  static std::mutex mutex;
  static auto& released = *new std::array<std::unique_ptr<Handle>, 4096>;
  static std::size_t next = 0;

  --liveObjects.nodes;
  handle->element.reset();
  const std::lock_guard<std::mutex> lock(mutex);
  released[next++ % released.size()].reset(handle);
}

zq::XmlNode::Ptr Share(const std::shared_ptr<Element>& element) { return {new Handle(element), &Release}; }

zq::XmlNode::Ptr Share(const std::shared_ptr<Element>* element) {
  return element != nullptr ? Share(*element) : zq::XmlNode::Ptr();
}

struct Document : zq::XmlDocument {
  Document() { ++liveObjects.documents; }
  ~Document() { --liveObjects.documents; }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  std::shared_ptr<Element> root;
};

const std::shared_ptr<Element>& Shared(const zq::XmlNode& node) {
  const auto& handle = static_cast<const Handle&>(node);
  if (!handle.element) Misuse("an element is used after its last pointer is gone");
  return handle.element;
}

Element& Self(zq::XmlNode& node) { return *Shared(node); }
const Element& Self(const zq::XmlNode& node) { return *Shared(node); }

std::int64_t Number(const std::string& what, const std::string& text, std::int64_t max) {
  constexpr std::int64_t min = std::numeric_limits<std::int32_t>::min();
  const std::size_t begin = text.find_first_not_of(whiteSpace);
  if (begin == std::string::npos) return 0;
  const std::string digits = text.substr(begin, text.find_last_not_of(whiteSpace) + 1 - begin);
  const std::size_t sign = digits[0] == '-' || digits[0] == '+' ? 1 : 0;
  const long long number = std::strtoll(digits.c_str(), nullptr, 10);
  const bool isNumber =
      digits.size() > sign && digits.find_first_not_of("0123456789", sign) == std::string::npos;
  if (isNumber && number >= min && number <= max) return number;
  throw zq::ZqError(what + " contains \"" + text + "\", which is not a number from " + std::to_string(min) +
                    " to " + std::to_string(max));
}

std::int64_t DataNumber(const Element& element) {
  return Number("element \"" + element.name + '"', element.text, std::numeric_limits<std::uint32_t>::max());
}

using ExpatParser = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

ExpatParser NewExpatParser() {
  ExpatParser parser(XML_ParserCreate(nullptr), &XML_ParserFree);
  if (!parser) throw std::bad_alloc();
  return parser;
}

// Returns the length of the non-ASCII character at the beginning, or 0 if XML does not allow it.
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

std::string Outer(const Element& element);

std::string Inner(const Element& element) {
  if (element.source)
    return element.source->substr(element.contentBegin, element.contentEnd - element.contentBegin);
  std::string markup = Escaped(element.text, false);
  for (const auto& child : element.children) markup += Outer(*child);
  return markup;
}

std::string Outer(const Element& element) {
  if (element.source) return element.source->substr(element.begin, element.end - element.begin);
  std::string markup = "<" + element.name;
  for (const auto& [name, value] : element.attributes)
    markup.append(" ").append(name).append("=\"").append(Escaped(value, true)).append("\"");
  const std::string inner = Inner(element);
  return inner.empty() ? markup + "/>" : markup + ">" + inner + "</" + element.name + ">";
}

class Parser {
 public:
  explicit Parser(const std::string& text) : source_(std::make_shared<std::string>(text)) {
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

  // @return the root element, or null if the text is not a document
  std::shared_ptr<Element> Parse() {
    start_ = std::min(source_->find_first_not_of(whiteSpace), source_->size());
    const bool isDocument = XML_Parse(parser_.get(), source_->data() + start_,
                                      static_cast<int>(source_->size() - start_), 1) == XML_STATUS_OK;
    if (failure_) std::rethrow_exception(failure_);
    return isDocument ? root_ : nullptr;
  }

 private:
  // No exception may propagate through Expat.
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

  void Start(const char* name, const char** attributes) {
    const std::shared_ptr<Element> element = Add(open_, name, "");
    for (; *attributes != nullptr; attributes += 2)
      element->attributes.emplace_back(attributes[0], attributes[1]);
    if (keepsMarkup_) element->source = source_;
    element->begin = At();
    element->contentBegin = AfterTag();
    if (!open_) root_ = element;
    open_ = element;
  }

  void End() {
    open_->contentEnd = At();  // also after an empty-element tag
    open_->end = AfterTag();
    const bool isLayout = open_->text.find_first_not_of(whiteSpace) == std::string::npos;
    if (!open_->children.empty() && isLayout) open_->text.clear();
    open_ = open_->parent.lock();
  }

  ExpatParser parser_ = NewExpatParser();
  std::shared_ptr<const std::string> source_;
  std::shared_ptr<Element> root_;
  std::shared_ptr<Element> open_;
  bool keepsMarkup_ = true;
  std::size_t start_ = 0;
  std::exception_ptr failure_;
};

}  // namespace

namespace zq {

void XmlNode::Initialize(const std::string& name, const std::string& data) {
  Element& self = Self(*this);
  self.Changed();
  self.name = name;
  self.text = data;
  self.attributes.clear();
  self.children.clear();
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, const std::string& text) {
  Self(*this).Changed();
  return Share(Add(Shared(*this), name, text));
}

XmlNode::Ptr XmlNode::AddChild(const std::string& name, std::uint32_t number) {
  return AddChild(name, std::to_string(number));
}

XmlNode::Ptr XmlNode::GetChild() const {
  const Element& self = Self(*this);
  return Share(self.children.empty() ? nullptr : &self.children.front());
}

XmlNode::Ptr XmlNode::GetChild(const std::string& name) const { return Share(Self(*this).Child(name)); }

std::uint32_t XmlNode::GetChildCount() const {
  return static_cast<std::uint32_t>(Self(*this).children.size());
}

std::int64_t XmlNode::GetChildDataNumber(const std::string& name) const {
  const auto* child = Self(*this).Child(name);
  return child != nullptr ? DataNumber(**child) : 0;
}

std::string XmlNode::GetData() const { return Self(*this).text; }

std::string XmlNode::GetData(const std::string& childName) const {
  const auto* child = Self(*this).Child(childName);
  return child != nullptr ? (*child)->text : "";
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
  Element& self = Self(*this);
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

XmlNodeIterator* XmlNode::GetIterator() {
  if (platformFaults.noIterator) return nullptr;
  Self(*this);
  Walk& walk = static_cast<Handle&>(*this).walk;
  walk.hasBegun = false;
  return &walk;
}

XmlNode::Ptr XmlNodeIterator::First() {
  auto& self = static_cast<Walk&>(*this);
  self.hasBegun = true;
  self.at = 0;
  return Next();
}

XmlNode::Ptr XmlNodeIterator::Next() {
  auto& self = static_cast<Walk&>(*this);
  const std::vector<std::shared_ptr<Element>>& children = Self(self.handle).children;
  if (!self.hasBegun) Misuse("Next() is called before First()");
  return Share(self.at < children.size() ? &children[self.at++] : nullptr);
}

XmlNode::Ptr XmlDocument::GetRoot() const {
  if (!platformFaults.rootError.empty()) throw ZqError(platformFaults.rootError);
  return Share(platformFaults.noRoot ? nullptr : &static_cast<const Document&>(*this).root);
}

XmlDocument::Ptr CreateXmlDocument(const std::string& text) {
  if (!platformFaults.documentError.empty()) throw std::length_error(platformFaults.documentError);
  const std::shared_ptr<Element> root = Parser(text).Parse();
  if (!root) return {};
  auto document = boost::make_shared<Document>();
  document->root = root;
  return document;
}

XmlNode::Ptr CreateXmlNode() { return CreateXmlNode("", ""); }

XmlNode::Ptr CreateXmlNode(const std::string& name, const std::string& data) {
  return Share(Add(nullptr, name, data));
}

}  // namespace zq
