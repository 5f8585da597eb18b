// The tree behind documents and elements.
//
// Names, texts and attribute values are views: into the text of the document if they are verbatim there, into
// the tree's memory otherwise. Nodes are in that memory too and have no destructors, so a tree is destroyed
// as a whole, independent of its depth.
#pragma once

#include <boost/smart_ptr/enable_shared_from_this.hpp>

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <memory_resource>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "LargePages.h"
#include "LineIndex.h"

namespace zq::xml {

class Tree;

struct Attribute {
  Attribute* next = nullptr;
  std::string_view name;
  std::string_view value;
};

// An element, or a piece of text between the child elements of one. The content of an element is either one
// text or a list of nodes. White space between child elements is not stored.
struct Element final : XmlNode, XmlNodeIterator {
  explicit Element(Tree& owner) : tree(&owner), text(nullptr) {}

  Tree* tree;
  Element* parent = nullptr;
  Element* next = nullptr;    // the siblings form a ring: the first follows the last
  Element* cursor = nullptr;  // the position of the iterator over the children
  Attribute* attributes = nullptr;
  const char* name = nullptr;
  union {
    const char* text;
    Element* lastChild;
  };

  // Lengths and positions have 32 bits to save memory.
  std::uint32_t textLength = 0;
  std::uint32_t begin = 0;  // the position of the start tag in the tree's text, if hasPosition
  std::uint32_t end = 0;    // the end of the element there, if verbatim
  std::uint32_t nameLength : 28;
  std::uint32_t isText : 1;
  std::uint32_t hasChildren : 1;
  std::uint32_t hasPosition : 1;
  std::uint32_t verbatim : 1;  // the tree's text contains the markup of this element and its descendants

  static constexpr std::size_t maxNameLength = (1U << 28U) - 1;

  std::string_view Name() const { return {name, nameLength}; }
  std::string_view Text() const { return {hasChildren ? nullptr : text, hasChildren ? 0 : textLength}; }
  void SetName(std::string_view view);
  void SetText(std::string_view view);

  Element* FirstItem() const { return hasChildren ? lastChild->next : nullptr; }
  Element* NextItem() const { return parent != nullptr && parent->lastChild != this ? next : nullptr; }
  Element* FirstChild() const { return SkipText(FirstItem()); }
  Element* NextSibling() const { return SkipText(NextItem()); }
  Element* FindChild(std::string_view childName) const;
  Attribute* FindAttribute(std::string_view attributeName) const;

  // Inserts `item` after `previous`, which is one of this element's items, or at the front if `previous` is
  // null.
  void Insert(Element& item, Element* previous);
  void Append(Element& item) { Insert(item, hasChildren ? lastChild : nullptr); }

  // Marks the markup of this element and its ancestors as changed, so that it is serialised again.
  void MarkChanged();

 private:
  static Element* SkipText(Element* item);
};

class Tree final : public XmlDocument, public boost::enable_shared_from_this<Tree> {
 public:
  explicit Tree(std::string&& source) : ownText_(std::move(source)) { text = ownText_; }

  // Returns the text that the tree was constructed with. The tree must not be used afterwards.
  std::string ReleaseText() { return std::move(ownText_); }

  // Constructs a tree with memory for the document, which FillText() writes after the tree is built.
  explicit Tree(std::size_t textSize);
  void FillText(std::string_view source) { std::memcpy(reserved_.get(), source.data(), source.size()); }

  XmlNode::Ptr Share(Element* element);

  Element& NewElement();
  Element& NewText(std::string_view kept);
  Attribute& NewAttribute(std::string_view keptName, std::string_view keptValue);

  // Copies a string into the tree's memory.
  std::string_view Keep(std::string_view view);

  XmlPosition PositionOf(const Element& element);

  std::string_view text;  // the text that the tree was parsed from
  Element* root = nullptr;

 private:
  // Enough for a message of a few parameters, which then needs one allocation.
  static constexpr std::size_t initialMemory = 2048;

  template <typename T, typename... Args>
  T& New(Args&&... args);

  std::string ownText_;
  const std::unique_ptr<char[]> reserved_;
  std::unique_ptr<LineIndex> lines_;
  alignas(std::max_align_t) std::byte initial_[initialMemory];
  std::pmr::monotonic_buffer_resource memory_{initial_, sizeof initial_, LargePageResource()};
};

// These functions are inline because calls would add 6 % to the instructions of writing a message, and 1 % to
// those of parsing.

inline void Element::SetName(std::string_view view) {
  // GCOVR_EXCL_START: tests cannot allocate such a name.
  if (view.size() > maxNameLength) throw std::length_error("XML name of more than 256 MiB");
  // GCOVR_EXCL_STOP
  name = view.data();
  nameLength = static_cast<std::uint32_t>(view.size()) & maxNameLength;
}

inline void Element::SetText(std::string_view view) {
  hasChildren = false;
  text = view.data();
  textLength = static_cast<std::uint32_t>(view.size());
}

inline void Element::Insert(Element& item, Element* previous) {
  item.parent = this;
  if (!hasChildren) {
    hasChildren = true;
    item.next = lastChild = &item;
    return;
  }
  Element* before = previous != nullptr ? previous : lastChild;
  item.next = before->next;
  before->next = &item;
  if (previous == lastChild) lastChild = &item;
}

template <typename T, typename... Args>
T& Tree::New(Args&&... args) {
  static_assert(std::is_trivially_destructible_v<T>,
                "nodes are released with their memory, without destructors");
  return *::new (memory_.allocate(sizeof(T), alignof(T))) T(std::forward<Args>(args)...);
}

inline Element& Tree::NewElement() {
  auto& element = New<Element>(*this);
  element.nameLength = 0;
  element.isText = element.hasChildren = element.hasPosition = element.verbatim = false;
  return element;
}

inline Attribute& Tree::NewAttribute(std::string_view keptName, std::string_view keptValue) {
  auto& attribute = New<Attribute>();
  attribute.name = keptName;
  attribute.value = keptValue;
  return attribute;
}

inline std::string_view Tree::Keep(std::string_view view) {
  if (view.empty()) return {};
  // GCOVR_EXCL_START: tests cannot allocate such a string.
  if (std::uint64_t{view.size()} > std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("XML text of 4 GiB");
  // GCOVR_EXCL_STOP
  void* copy = memory_.allocate(view.size(), 1);
  std::memcpy(copy, view.data(), view.size());
  return {static_cast<const char*>(copy), view.size()};
}

// White space of XML: space, tab, CR and LF.
inline constexpr std::string_view whiteSpace = " \t\r\n";

constexpr bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

inline bool IsBlank(std::string_view text) {
  // Most arguments are newlines and indentation; others seldom begin with white space. Comparing with
  // indentation saves 4 % of the instructions of parsing an indented project.
  if (text.empty()) return true;
  if (!IsBlank(text.front())) return false;
  text.remove_prefix(1);
  constexpr std::string_view indentation = "                                ";
  if (text.size() <= indentation.size() && text == std::string_view(indentation.data(), text.size()))
    return true;
  return std::all_of(text.begin(), text.end(), [](char c) { return IsBlank(c); });
}

inline Element& Self(XmlNode& node) { return static_cast<Element&>(node); }
inline const Element& Self(const XmlNode& node) { return static_cast<const Element&>(node); }

}  // namespace zq::xml
