/// @file
/// The structural check of a controller project.
#pragma once

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <boost/unordered_map.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zq {

class ZqError;

/// Checks the structure of a project document and collects one message for everything that is not as it
/// should be. It neither repairs nor loads the project.
///
///     zq::ProjectValidator validator(text);
///     if (!validator.valid())
///       for (const std::string& message : validator.messages()) std::cout << message << std::endl;
///
/// A project is the element "currentstate" around its sections, in this order: "properties", "systemitems",
/// "bindings", "networkbindings", "event_mgr", "variables", "scan_schedule" (which may be left out),
/// "plugins". "systemitems" holds one item, the system item, whose "subitems" hold the tree of all other
/// items. An item is
///
///     <item><id>7</id><name>Hall</name><type>8</type> [itemdata] [state] [zqi | devicedata]
///     [subitems]</item>
///
/// with an id from 1 to 200000 that no other item has and a type from 1 to 9. The walk over the tree needs
/// the same small stack however deep the tree is.
///
/// `valid()` is the way in; the other operations are the steps that it is made of, each usable on its own.
/// Every finding is a message: none of them throws, except zq::ZqError where an id, a type or a version is
/// not a number, which only `valid()` turns into a message, and std::bad_alloc, which leaves the messages
/// that were found until then. The steps write what they do to the log at TRACE.
///
/// Runs add up: nothing but `set()` removes messages, and nothing ever forgets the ids that were seen, so
/// that a second run reports every item as a duplicate.
///
/// A validator is used by one thread at a time. It shares the ownership of the tree that it was given or has
/// parsed, and walks it with the elements' own iterators, so nobody else may be walking that tree meanwhile.
class TAVRIN_EXPORT ProjectValidator {
 public:
  /// A validator of a parsed project. It checks nothing yet; an empty @p root counts as unparseable text.
  explicit ProjectValidator(XmlNode::Ptr root);

  /// A validator of a project text. It parses the text, but checks nothing yet.
  explicit ProjectValidator(const std::string& xml);

  ~ProjectValidator();

  /// @name Copies
  /// Copies share the document and its elements.
  /// @{
  ProjectValidator(const ProjectValidator&) = default;             ///< copies the findings so far, too
  ProjectValidator(ProjectValidator&&) = default;                  ///< leaves the other one without a project
  ProjectValidator& operator=(const ProjectValidator&) = default;  ///< copies the findings so far, too
  ProjectValidator& operator=(ProjectValidator&&) = default;       ///< leaves the other one without a project
  /// @}

  /// Goes on with another project text and forgets the messages and the root, but not the ids that were seen.
  /// A text that does not parse is reported by valid().
  void set(const std::string& xml);

  /// Checks the whole project, adding to the messages that are there. A zq::ZqError ends the check with a
  /// message that holds its text. @return whether there are no messages at all.
  bool valid();

  /// @return the messages in the order in which they were found; lives as long as the validator.
  const std::vector<std::string>& messages() const { return messages_; }

  /// @return for each message where the element begins that it is about; for a missing element, the one that
  /// should hold it. Zeros where there is none: a text that does not parse, an element that was built in
  /// code, a message that was added from outside. Lives as long as the validator.
  const std::vector<XmlPosition>& places() const { return places_; }

  /// Calls @p observer before checking each item, to show the progress of a long check. Pass an empty
  /// function to remove it. Exceptions from the observer abort the check and propagate to the caller.
  ///
  /// The observer may call any operation but valid(). One that it sets in its own place is called from the
  /// next item on. A text that it sets is checked by the next call of valid(): the check under way continues
  /// with its own project, and its further findings are added to the messages.
  void setItemObserver(std::function<void()> observer);

  /// Adds a message as it stands, without a place.
  void addMessage(const std::string& message);

  /// Reports a missing element by its name. @return whether @p node is empty.
  bool checkNodePtr(XmlNode::Ptr& node, const std::string& name);

  /// Reports a missing item by its id. @return whether @p node is empty.
  bool checkNodePtr(XmlNode::Ptr& node, std::uint32_t id);

  /// Reports an element that is missing, has another name or has attributes. @return whether @p node is
  /// empty.
  bool checkTag(XmlNode::Ptr& node, const std::string& tag);

  /// @return the number in the item's first child "id", by which messages name the item; 0 for an empty
  /// pointer and without such a child.
  /// @throws ZqError when it is not a number
  std::uint32_t getId(XmlNode::Ptr& item);

  /// Checks the root element and its sections. An empty @p root is reported as missing.
  void parseCurrentState(XmlNode::Ptr root);

  /// @name Sections whose content is not checked yet
  /// @{

  /// Only writes to the log what is still to be done, as each of this group does.
  void parseProperties(XmlNode::Ptr properties);
  void parseBindings(XmlNode::Ptr bindings);
  void parseNetworkBindings(XmlNode::Ptr networkbindings);
  void parseEventManager(XmlNode::Ptr eventManager);
  void parseVariables(XmlNode::Ptr variables);
  void parseScanSchedule(XmlNode::Ptr scanSchedule);
  void parsePlugins(XmlNode::Ptr plugins);
  /// @}

  /// Checks the section "systemitems": that it holds the system item and nothing else. An empty pointer is
  /// reported as missing.
  void parseSystemItems(XmlNode::Ptr systemitems);

  /// Checks the system item, the project's version in its attributes (from 2.1.0 on; the items of an older
  /// project are not looked at) and all items below it.
  /// @throws ZqError when a number is not one
  void parseItem1(XmlNode::Ptr item);

  /// Checks the presence and the name of the system item's "itemdata".
  void parseItem1Data(XmlNode::Ptr itemdata);

  /// Checks an item and all items below it.
  /// @throws ZqError when an id or a type is not a number
  void parseItem(XmlNode::Ptr item);

  /// Checks the leading elements of an item ("id", "name", "type") and counts its id.
  /// @param item the item's element
  /// @param id the id that the item should have, 0: any
  /// @param type the type that it should have, 0: any
  /// @return whether @p item is empty
  /// @throws ZqError when its id or type is not a number
  bool checkItemCommon(XmlNode::Ptr& item, std::uint32_t id, std::int32_t type);

  /// Checks an element "subitems" and all items in it.
  /// @throws ZqError when an id or a type is not a number
  void parseSubItems(XmlNode::Ptr subitems);

  /// Only writes to the log what is still to be done.
  void parseItemData(XmlNode::Ptr itemdata);

  /// Only writes to the log what is still to be done.
  void parseState(XmlNode::Ptr state);

 private:
  struct TAVRIN_HIDDEN OpenItem;
  struct TAVRIN_HIDDEN LeadingElements;

  TAVRIN_HIDDEN void addMessage(std::string message, const XmlPosition& place);
  TAVRIN_HIDDEN void placeLastMessage(const XmlNode& element);
  TAVRIN_HIDDEN std::shared_ptr<const std::function<void()>> itemObserver() const;
  template <typename Number, typename Read>
  TAVRIN_HIDDEN bool readNumber(Number& number, const XmlNode& element, Read read);
  TAVRIN_HIDDEN void reportUnreadable(const XmlNode& element, const ZqError& error);

  TAVRIN_HIDDEN LeadingElements checkLeadingElements(XmlNode::Ptr& item, std::uint32_t id, std::int32_t type);
  TAVRIN_HIDDEN std::uint32_t checkId(const XmlNode& element, std::uint32_t expected);
  TAVRIN_HIDDEN void checkType(const XmlNode& element, XmlNode::Ptr& item, std::int32_t expected);
  TAVRIN_HIDDEN bool checkVersion(const XmlNode& item);
  TAVRIN_HIDDEN bool checkLeading(const XmlNode::Ptr& element, const std::string& tag);
  TAVRIN_HIDDEN void checkDriverFile(const XmlNode& zqi, XmlNode::Ptr& item);
  TAVRIN_HIDDEN void checkOnlyDriver(const XmlNode& driver, XmlNode::Ptr& item, const std::string& otherTag);

  TAVRIN_HIDDEN OpenItem beginItem(XmlNode::Ptr item);
  TAVRIN_HIDDEN void endItem(XmlNode::Ptr& item, const XmlNode::Ptr& leftOver);
  TAVRIN_HIDDEN bool beginSubItems(XmlNode::Ptr& subitems);
  TAVRIN_HIDDEN void walkSubItems(OpenItem outermost);

  boost::shared_ptr<XmlDocument> document_;
  XmlNode::Ptr root_;
  std::vector<std::string> messages_;
  boost::unordered_map<std::uint32_t, std::int32_t> idCounts_;
  std::vector<XmlPosition> places_;

  [[maybe_unused]] const XmlNode* lookedAt_ = nullptr;  // unused, part of the layout of version 1

  std::function<void()> itemObserver_;
};

}  // namespace zq
