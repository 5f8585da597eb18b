/// @file
/// XML documents and elements of the controller platform.
///
/// A document is parsed strictly from a string in memory. The parser reads no other files. Iterate over the
/// child elements of an element with its iterator:
///
/// @code
/// const zq::XmlDocument::Ptr document = zq::CreateXmlDocument("<room><lamp>7</lamp><lamp>8</lamp></room>");
/// if (!document) return;  // not well-formed
/// const zq::XmlNode::Ptr root = document->GetRoot();
/// zq::XmlNodeIterator* const children = root->GetIterator();
/// for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next())
///   std::cout << child->GetName() << ": " << child->GetDataNumber() << std::endl;
/// @endcode
///
/// **Ownership.** A zq::XmlNode::Ptr shares the ownership of the whole tree that contains the element. An
/// element may outlive the document and the pointers through which it was found.
///
/// **Threads.** The classes are thread-compatible: a tree is used by one thread at a time; different trees
/// may be used on different threads.
///
/// **Absent values.** An absent child, attribute or text reads as "" or 0 and is not an error. A number is
/// decimal with an optional sign, and may be surrounded by white space (space, tab, CR, LF). For any other
/// text, functions that read a number throw zq::ZqError. It names the element or attribute and contains the
/// text.
///
/// **Exceptions.** All operations that allocate throw std::bad_alloc if memory runs out. They give the strong
/// exception guarantee.
///
/// ### For authors of platforms
/// A controller may replace the bundled XML library. XmlDocument, XmlNode and XmlNodeIterator have no data
/// members and no virtual operations. A platform derives its document, element and iterator from them and
/// returns pointers to the derived objects. It defines all free functions and all member functions. A member
/// function casts `this` to the derived class. The support and logger libraries define what Conversions.h,
/// TextConstants.h and Logger.h declare. Only the platform constructs and destroys its objects, so the
/// pointers that it returns contain its deleters.
///
/// The driver library does not call CreateXmlDocument() with an rvalue string, so a platform may omit that
/// overload. PositionOf() of XmlPosition.h is optional, too; without it all positions are zeros. The library
/// calls First() before Next() on each iterator. During an iteration it keeps the iterator and the element
/// that owns it. After a call returns, it keeps no element except the root of a project.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <string>

namespace zq {

class XmlNode;

/// An iterator over the child elements of one element. The element owns it, and it is valid as long as the
/// tree. Iterators of different elements are independent.
///
/// @code
/// zq::XmlNodeIterator* const children = node->GetIterator();
/// for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) Read(*child);
/// @endcode
class TAVRIN_EXPORT XmlNodeIterator {
 public:
  XmlNodeIterator(const XmlNodeIterator&) = delete;
  XmlNodeIterator& operator=(const XmlNodeIterator&) = delete;

  /// Moves to the first child element. @return the first child element, or null if there is none
  boost::shared_ptr<XmlNode> First();

  /// Moves to the next child element.
  /// @return the next child element; null after the last one and at every later call
  boost::shared_ptr<XmlNode> Next();

 protected:
  XmlNodeIterator() = default;
  ~XmlNodeIterator() = default;
};

/// An element: a name, attributes, and a content of text and child elements. Names are case-sensitive. If
/// several children have the same name, functions that take a name use the first one.
///
/// @code
/// const zq::XmlNode::Ptr item = zq::CreateXmlNode("item", "");
/// item->AddChild("id", 7);
/// item->SetAttribute("kind", "lamp");
/// std::string xml = item->OuterXml();  // <item kind="lamp"><id>7</id></item>
/// @endcode
///
/// Only zq::CreateXmlNode, zq::CreateXmlDocument and AddChild create elements.
class TAVRIN_EXPORT XmlNode {
 public:
  /// Shares the ownership of the whole tree that contains the element.
  using Ptr = boost::shared_ptr<XmlNode>;

  XmlNode(const XmlNode&) = delete;
  XmlNode& operator=(const XmlNode&) = delete;

  /// Sets name and text, and removes all attributes and children.
  void Initialize(const std::string& name, const std::string& data);

  /// Appends a child element with the given text. @return the new child
  Ptr AddChild(const std::string& name, const std::string& text);

  /// Appends a child element whose text is @p number in decimal. @return the new child
  Ptr AddChild(const std::string& name, std::uint32_t number);

  /// Returns the first child element, or null if there is none.
  Ptr GetChild() const;

  /// Returns the first child element of that name, or null if there is none.
  Ptr GetChild(const std::string& name) const;

  /// Returns the number of child elements.
  std::uint32_t GetChildCount() const;

  /// Returns the number in the named child element, from -2147483648 to 4294967295; 0 if the child is absent
  /// or its text is only white space.
  /// @throws ZqError if its text is not such a number
  std::int64_t GetChildDataNumber(const std::string& name) const;

  /// Returns the text of the element without the text of its child elements. All its text and CDATA sections
  /// are joined, and references are resolved. White space that only separates child elements is omitted; all
  /// other white space is kept.
  std::string GetData() const;

  /// Returns the text of the named child element, "" if it is absent.
  std::string GetData(const std::string& childName) const;

  /// Returns the number in the text of the element, from -2147483648 to 4294967295; 0 if the text is only
  /// white space.
  /// @throws ZqError if the text is not such a number
  std::int64_t GetDataNumber() const;

  /// Returns whether the element has the attribute, even an empty one.
  bool HasAttribute(const std::string& name) const;

  /// Returns the value of the attribute, "" if it is absent.
  std::string GetAttribute(const std::string& name) const;

  /// Returns the number of attributes.
  std::uint32_t GetAttributeCount() const;

  /// Returns the number in the attribute, from -2147483648 to 2147483647; 0 if the attribute is absent or its
  /// value is only white space.
  /// @throws ZqError if its value is not such a number
  std::int32_t GetAttributeNumber(const std::string& name) const;

  /// Sets the value of the attribute. A new attribute is appended to the existing ones.
  void SetAttribute(const std::string& name, const std::string& value);

  /// Returns the element's name.
  std::string GetName() const;

  /// Returns whether the element's name is @p name, case-sensitively.
  bool IsName(const std::string& name) const;

  /// Returns the content of the element as markup, without its own tags.
  ///
  /// For an unchanged element of a UTF-8 document the result is the source verbatim, including comments,
  /// CDATA, quoting and white space. An element is serialised again, compactly and in UTF-8, in these cases:
  ///
  /// - It was built in code, it was changed, or it contains a changed element.
  /// - Its document is in another encoding.
  /// - It depends on declarations of its document (internal entities or default attributes).
  ///
  /// Serialised markup is always well-formed. Bytes that XML cannot represent are replaced by U+FFFD.
  /// Characters that are not allowed in a name are replaced by "_", and a name that begins with a character
  /// that is not allowed there is prefixed with "_".
  std::string InnerXml() const;

  /// Returns the element as markup, including its own tags and attributes, by the rules of InnerXml().
  std::string OuterXml() const;

  /// Returns the iterator over the child elements. Each element has one iterator and owns it. The result is
  /// never null. Call First() to start a new iteration.
  XmlNodeIterator* GetIterator();

 protected:
  XmlNode() = default;
  ~XmlNode() = default;
};

/// A parsed document.
///
/// @code
/// const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
/// if (document) Read(*document->GetRoot());
/// @endcode
class TAVRIN_EXPORT XmlDocument {
 public:
  /// Shares the ownership of the document and its whole tree.
  using Ptr = boost::shared_ptr<XmlDocument>;

  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  /// Returns the root element.
  XmlNode::Ptr GetRoot() const;

 protected:
  XmlDocument() = default;
  ~XmlDocument() = default;
};

/// Parses a document. White space before the document is ignored, also before an XML declaration.
/// @return the document, or null if @p text is not one well-formed document or exceeds a limit. The bundled
/// platform limits what internal entities and default attributes add to the document, the number of entities
/// that refer to others (256) and the number of declared attributes (10000)
/// @throws std::bad_alloc if memory runs out; nothing else
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(const std::string& text);

/// Parses a document from an rvalue string. The document moves from @p text, which avoids a copy. Parsing a
/// string of more than 4 MiB takes up to a fifth longer this way, because the parser receives it in pieces.
TAVRIN_EXPORT XmlDocument::Ptr CreateXmlDocument(std::string&& text);

/// Returns a new element with an empty name and no content. Set both with XmlNode::Initialize().
TAVRIN_EXPORT XmlNode::Ptr CreateXmlNode();

/// Returns a new element with the given name and text. It belongs to no document.
TAVRIN_EXPORT XmlNode::Ptr CreateXmlNode(const std::string& name, const std::string& data);

}  // namespace zq

namespace XmlHelper {

/// Appends a child element with the given text to @p parent, which must not be null. @return the new child
TAVRIN_EXPORT zq::XmlNode::Ptr AddChild(zq::XmlNode::Ptr& parent, const std::string& name,
                                        const std::string& text);

}  // namespace XmlHelper
