/// @file
/// The validator of controller projects.
#pragma once

#include <boost/unordered_map.hpp>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zq {

/// Checks the structure of a project document and collects one message for each violation. It neither repairs
/// nor loads the project.
///
/// @code
/// zq::ProjectValidator validator(text);
/// if (!validator.valid())
///   for (const std::string& message : validator.messages()) std::cout << message << std::endl;
/// @endcode
///
/// The root element of a project is "currentstate". It contains these sections in this order: "properties",
/// "systemitems", "bindings", "networkbindings", "event_mgr", "variables", "scan_schedule" (optional),
/// "plugins". "systemitems" contains one item, the system item. Its "subitems" contain the tree of all other
/// items. An item is
///
///     <item><id>7</id><name>Hall</name><type>8</type> [itemdata] [state] [zqi | devicedata]
///     [subitems]</item>
///
/// with at least one of the elements in brackets, a unique id from 1 to 200000 and a type from 1 to 9. The
/// traversal is not recursive and needs a small, constant stack.
///
/// Most callers need only `valid()`. The other operations are its steps; each can also be called separately.
/// Each adds a message for every violation that it finds. The steps throw zq::ZqError if an id, a type or a
/// version is not a number; only `valid()` turns that error into a message. All operations that allocate
/// throw std::bad_alloc if memory runs out; the messages found so far are kept. The steps write TRACE records
/// to the log.
///
/// Results accumulate. Only `set()` removes messages. No operation clears the ids that were seen, so a second
/// run reports every item as a duplicate.
///
/// The class is thread-compatible. A validator shares the ownership of the tree that it received or parsed.
/// It traverses the tree with the iterators of the elements, so no other code may traverse that tree at the
/// same time.
class TAVRIN_EXPORT ProjectValidator {
 public:
  /// Constructs a validator of a parsed project. It checks nothing yet. A null @p root is treated as a
  /// document that does not parse.
  explicit ProjectValidator(XmlNode::Ptr root);

  /// Constructs a validator of a project in XML. It parses @p xml, but checks nothing yet.
  explicit ProjectValidator(const std::string& xml);

  ~ProjectValidator();

  /// @name Copies
  /// Copies share the document and its elements.
  /// @{
  ProjectValidator(const ProjectValidator&) = default;  ///< copies the findings as well
  ProjectValidator(ProjectValidator&&) = default;       ///< the moved-from validator has no project
  ProjectValidator& operator=(const ProjectValidator&) = default;  ///< copies the findings as well
  ProjectValidator& operator=(ProjectValidator&&) = default;  ///< the moved-from validator has no project
  /// @}

  /// Replaces the project by another document and removes the messages, but not the ids that were seen. If
  /// @p xml does not parse, valid() reports it.
  void set(const std::string& xml);

  /// Checks the whole project and adds its findings to the messages. A zq::ZqError ends the check with a
  /// message that contains its text.
  /// @return whether there are no messages at all
  bool valid();

  /// Returns the messages in the order in which they were found. The reference is valid as long as the
  /// validator.
  const std::vector<std::string>& messages() const noexcept { return messages_; }

  /// Returns for each message the position of the element that it is about. If an element is missing, that is
  /// the position of the element that should contain it. Line and column are 0 if there is no position: for a
  /// document that does not parse, an element that was built in code, and a message that the caller added.
  /// The reference is valid as long as the validator.
  const std::vector<XmlPosition>& places() const noexcept { return places_; }

  /// Calls @p observer before checking each item, to show the progress of a long check. Pass an empty
  /// function to remove it. Exceptions from the observer abort the check and propagate to the caller.
  ///
  /// The observer may call any operation except valid(). If it replaces itself, the new observer is called
  /// from the next item on. If it calls set(), the next call of valid() checks the new project. The current
  /// check continues with its own project and adds its further findings to the messages.
  void setItemObserver(std::function<void()> observer);

  /// Adds a message without a position. It is stored verbatim.
  void addMessage(const std::string& message);

  /// Adds a message if @p node is null: the element @p name is missing. @return whether @p node is null
  bool checkNodePtr(XmlNode::Ptr& node, const std::string& name);

  /// Adds a message if @p node is null: the item @p id is missing. @return whether @p node is null
  bool checkNodePtr(XmlNode::Ptr& node, std::uint32_t id);

  /// Adds messages if the element is missing, its name is not @p tag, or it has attributes.
  /// @return whether @p node is null
  bool checkTag(XmlNode::Ptr& node, const std::string& tag);

  /// Returns the number in the first child "id" of an item. Messages identify the item by this number. It is
  /// 0 for a null pointer and for an item without such a child.
  /// @throws ZqError if it is not a number
  std::uint32_t getId(XmlNode::Ptr& item);

  /// Checks the root element and its sections. A null @p root is reported as missing.
  void parseCurrentState(XmlNode::Ptr root);

  /// @name Sections whose content is not checked yet
  /// @{

  /// Writes only TRACE records to the log, as each function of this group does.
  void parseProperties(XmlNode::Ptr properties);
  void parseBindings(XmlNode::Ptr bindings);
  void parseNetworkBindings(XmlNode::Ptr networkbindings);
  void parseEventManager(XmlNode::Ptr eventManager);
  void parseVariables(XmlNode::Ptr variables);
  void parseScanSchedule(XmlNode::Ptr scanSchedule);
  void parsePlugins(XmlNode::Ptr plugins);
  /// @}

  /// Checks that the section "systemitems" contains the system item and nothing else. A null pointer is
  /// reported as missing.
  void parseSystemItems(XmlNode::Ptr systemitems);

  /// Checks the system item, the project's version in its attributes, and all items below it. The version
  /// must be 2.1.0 or later; the items of an older project are not checked.
  /// @throws ZqError if an id, a type or a part of the version is not a number
  void parseItem1(XmlNode::Ptr item);

  /// Checks the presence and the name of the system item's "itemdata".
  void parseItem1Data(XmlNode::Ptr itemdata);

  /// Checks an item and all items below it.
  /// @throws ZqError if an id or a type is not a number
  void parseItem(XmlNode::Ptr item);

  /// Checks the leading elements of an item ("id", "name", "type") and counts its id.
  /// @param item the item's element
  /// @param id the expected id, 0: any
  /// @param type the expected type, 0: any
  /// @return whether @p item is null
  /// @throws ZqError if its id or type is not a number
  bool checkItemCommon(XmlNode::Ptr& item, std::uint32_t id, std::int32_t type);

  /// Checks an element "subitems" and all items in it.
  /// @throws ZqError if an id or a type is not a number
  void parseSubItems(XmlNode::Ptr subitems);

  /// Writes only a TRACE record to the log. The content is not checked yet.
  void parseItemData(XmlNode::Ptr itemdata);

  /// Writes only a TRACE record to the log. The content is not checked yet.
  void parseState(XmlNode::Ptr state);

 private:
  class TAVRIN_HIDDEN Checks;

  boost::shared_ptr<XmlDocument> document_;
  XmlNode::Ptr root_;
  std::vector<std::string> messages_;
  boost::unordered_map<std::uint32_t, std::int32_t> idCounts_;
  std::vector<XmlPosition> places_;

  [[maybe_unused]] const XmlNode* lookedAt_ = nullptr;  // unused, part of the layout of version 1

  std::function<void()> itemObserver_;
};

}  // namespace zq
