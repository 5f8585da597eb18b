/// @file
/// XML documents and elements, as the controller platform offers them.
///
/// A document is read once, strictly, from a text that is wholly in memory; nothing outside the text is ever
/// read. Elements are handed out as zq::XmlNode::Ptr: each one keeps the whole tree that it stands in alive,
/// so an element may outlive the document and the pointers that led to it. Trees are used by one thread at a
/// time; different trees may be used on different threads.
///
/// A missing child, attribute or text reads as "" or 0 and never as an error. Numbers are decimal with an
/// optional sign and may stand between white space (blank, tab, line ends); anything else throws zq::ZqError
/// with the name and the text that was found. When memory runs out, std::bad_alloc is thrown, and every
/// element is as it was before the call.
///
/// ### Bringing a platform of one's own
/// The three classes hold nothing and have no virtual operations. A platform derives a document, an element
/// and an iterator of its own from them, hands out pointers to those, and casts back in the operations, all
/// of which it defines, as well as the free functions. Its support and logger libraries define what
/// Conversions.h, TextConstants.h and Logger.h declare. The pointers' deleters are the platform's: nobody
/// else makes or destroys these objects.
///
/// The driver library needs neither PositionOf() of XmlPosition.h, without which all positions are zeros, nor
/// the CreateXmlDocument() for rvalue strings. It calls First() before Next() on each iterator, keeps the
/// iterator that it walks with and the element that owns it, and keeps no other element beyond a call but a
/// project's root.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <string>

#include "Export.h"

namespace zq {

class XmlNode;

/// A walk over the child elements of one element. It belongs to that element and lives as long as its tree.
/// Walks over different elements do not disturb each other.
class TAVRIN_EXPORT XmlNodeIterator {
 public:
  XmlNodeIterator(const XmlNodeIterator&) = delete;
  XmlNodeIterator& operator=(const XmlNodeIterator&) = delete;

  /// Starts the walk anew. @return the first child element, or empty when there is none.
  boost::shared_ptr<XmlNode> First();

  /// Goes on with the walk. @return the next child element; empty after the last one and at every later call.
  boost::shared_ptr<XmlNode> Next();

 protected:
  XmlNodeIterator() = default;
  ~XmlNodeIterator() = default;
};

/// One element: a name, attributes, and a content of text and child elements. Elements are made by
/// zq::CreateXmlNode, zq::CreateXmlDocument and AddChild only. Names are compared exactly, with case; of
/// several children of one name the first counts.
class TAVRIN_EXPORT XmlNode {
 public:
  /// Shares the ownership of the whole tree that the element stands in.
  using Ptr = boost::shared_ptr<XmlNode>;

  XmlNode(const XmlNode&) = delete;
  XmlNode& operator=(const XmlNode&) = delete;

  /// Makes this the element @p name with the text @p data, without attributes and without children.
  void Initialize(const std::string& name, const std::string& data);

  /// Appends a child element with a text. @return the new child.
  Ptr AddChild(const std::string& name, const std::string& text);

  /// Appends a child element whose text is @p number in decimal. @return the new child.
  Ptr AddChild(const std::string& name, std::uint32_t number);

  /// @return the first child element, or empty when there is none.
  Ptr GetChild() const;

  /// @return the first child element of that name, or empty when there is none.
  Ptr GetChild(const std::string& name) const;

  /// @return how many child elements there are.
  std::uint32_t GetChildCount() const;

  /// @return the number that the named child element holds, from -2147483648 to 4294967295; 0 when the child
  /// is missing or blank.
  /// @throws ZqError when its text is not such a number.
  std::int64_t GetChildDataNumber(const std::string& name) const;

  /// @return the element's own text: its pieces and CDATA sections joined, references resolved. White space
  /// that only lays out child elements is not text; all other white space is kept.
  std::string GetData() const;

  /// @return the text of the named child element, "" when it is missing.
  std::string GetData(const std::string& childName) const;

  /// @return the number that the element's text holds, from -2147483648 to 4294967295; 0 when it is blank.
  /// @throws ZqError when the text is not such a number.
  std::int64_t GetDataNumber() const;

  /// @return whether the element has the attribute, be it empty.
  bool HasAttribute(const std::string& name) const;

  /// @return the attribute's value, "" when it is missing.
  std::string GetAttribute(const std::string& name) const;

  /// @return how many attributes the element has.
  std::uint32_t GetAttributeCount() const;

  /// @return the number that the attribute holds, from -2147483648 to 2147483647; 0 when it is missing or
  /// blank.
  /// @throws ZqError when its value is not such a number.
  std::int32_t GetAttributeNumber(const std::string& name) const;

  /// Gives the attribute a value; a new attribute comes after those that are there.
  void SetAttribute(const std::string& name, const std::string& value);

  /// @return the element's name.
  std::string GetName() const;

  /// @return whether the element's name is @p name, compared exactly.
  bool IsName(const std::string& name) const;

  /// @return the element's content as markup, without its own tag.
  ///
  /// An element that came from a UTF-8 text and was not changed gives the bytes as they stood, comments,
  /// CDATA, quoting and white space included. Everything else is written anew, compactly and in UTF-8: an
  /// element that was built in code, was changed or holds a changed element, came from another encoding, or
  /// leans on declarations of its document (entities of its own, attributes with defaults). What is written
  /// always parses again: bytes that XML cannot hold become U+FFFD, and characters that a name cannot hold
  /// become "_", which also comes before what cannot begin a name.
  std::string InnerXml() const;

  /// @return the element as markup with its own tag and attributes, by the rules of InnerXml().
  std::string OuterXml() const;

  /// @return the element's one walk over its child elements; never null, owned by the element.
  XmlNodeIterator* GetIterator();

 protected:
  XmlNode() = default;
  ~XmlNode() = default;
};

/// A parsed text.
class TAVRIN_EXPORT XmlDocument {
 public:
  /// Shares the ownership of the document and its whole tree.
  using Ptr = boost::shared_ptr<XmlDocument>;

  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  /// @return the root element.
  XmlNode::Ptr GetRoot() const;

 protected:
  XmlDocument() = default;
  ~XmlDocument() = default;
};

/// Parses a text. White space before the document is skipped, also before an XML declaration.
/// @return the document, or empty when the text is not one well-formed document, when its own entities and
/// defaults make it many times as large, when hundreds of its entities refer to each other, or when it
/// declares more than 10000 attributes.
/// @throws std::bad_alloc when memory runs out; nothing else.
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(const std::string& text);

/// Parses a text that the caller no longer needs. The document takes it over, which saves a copy of the text.
/// A text of more than 4 MiB takes up to a fifth longer to parse this way, because the parser receives it in
/// pieces.
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(std::string&& text);

/// @return a new element with an empty name and no content, which Initialize() makes into something.
TAVRIN_EXPORT XmlNode::Ptr CreateXmlNode();

/// @return a new element with a name and a text, free of any document.
TAVRIN_EXPORT XmlNode::Ptr CreateXmlNode(const std::string& name, const std::string& data);

}  // namespace zq

namespace XmlHelper {

/// Appends a child element with a text to @p parent, which must not be empty. @return the new child.
TAVRIN_EXPORT zq::XmlNode::Ptr AddChild(zq::XmlNode::Ptr& parent, const std::string& name,
                                        const std::string& text);

}  // namespace XmlHelper
