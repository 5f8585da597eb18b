#include "tavrin_driver/ProjectValidator.h"

#include <fmt/format.h>
#include <log4cplus/loglevel.h>

#include <tavrin_driver/DriverParam.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <stack>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin_driver/internal/Limits.h"
#include "tavrin_driver/internal/LogWithStack.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/Position.h"
#include "tavrin_driver/internal/ProjectMessages.h"
#include "tavrin_driver/internal/ProjectObserver.h"

namespace message = tavrin::message;

namespace zq {
namespace {

namespace limits = tavrin::limits;
namespace names = tavrin::names;
using tavrin::FindPosition;

constexpr char sourceFile[] = "tavrin_driver/ProjectValidator";

// Log records contain the signature of the operation of each step, as GCC prints it from the definition. The
// loop over the items logs in the name of these two.
constexpr char parseItemSignature[] = "void zq::ProjectValidator::parseItem(zq::XmlNode::Ptr)";
constexpr char parseSubItemsSignature[] = "void zq::ProjectValidator::parseSubItems(zq::XmlNode::Ptr)";

#define TRACE_AS(operation, text) \
  tavrin::Log(log4cplus::TRACE_LOG_LEVEL, text, {sourceFile, __LINE__, operation})
#define TRACE(text) TRACE_AS(__PRETTY_FUNCTION__, text)

constexpr tavrin::Name versionAttributes[] = {names::majorversion, names::minorversion, names::buildnumber,
                                              names::buildrevision};

// The allowed elements of an item. A left-over element is a duplicate if its name occurs anywhere in this
// string.
constexpr std::string_view itemElements = "id name type itemdata state zqi devicedata subitems";

struct Section {
  tavrin::Name name;
  void (ProjectValidator::*parse)(XmlNode::Ptr);
};

constexpr Section requiredSections[] = {
    {names::properties, &ProjectValidator::parseProperties},
    {names::systemitems, &ProjectValidator::parseSystemItems},
    {names::bindings, &ProjectValidator::parseBindings},
    {names::networkbindings, &ProjectValidator::parseNetworkBindings},
    {names::event_mgr, &ProjectValidator::parseEventManager},
    {names::variables, &ProjectValidator::parseVariables},
};

constexpr Section lastSections[] = {
    {names::scan_schedule, &ProjectValidator::parseScanSchedule},
    {names::plugins, &ProjectValidator::parsePlugins},
};

// The stored form of an item observer. Each call shares the ownership, because the observer may replace
// itself.
struct SharedObserver {
  std::shared_ptr<const std::function<void()>> observer;
  void operator()() const { (*observer)(); }
};

// An item whose subitems are being traversed, with the iterators over the children of both. `item` is null if
// the traversal began with the subitems. `subitems` is null if there are none.
struct OpenItem {
  XmlNode::Ptr item;
  XmlNodeIterator* itemChildren = nullptr;
  XmlNode::Ptr subitems;
  XmlNodeIterator* subitemsChildren = nullptr;
};

// The leading elements of an item, up to the first absent one, and the iterator that is positioned behind
// them.
struct LeadingElements {
  XmlNodeIterator* children = nullptr;
  XmlNode::Ptr id;
  XmlNode::Ptr name;
  XmlNode::Ptr type;
  std::uint32_t idNumber = 0;
};

}  // namespace

// The steps of the operations. They add their findings to one validator.
class ProjectValidator::Checks {
 public:
  explicit Checks(ProjectValidator& validator) : validator_(validator) {}

  void addFinding(std::string message, const XmlPosition& place);
  void placeLastMessage(const XmlNode& element);
  void reportUnreadable(const XmlNode& element, const ZqError& error);

  LeadingElements checkLeadingElements(XmlNode::Ptr& item, std::uint32_t id, std::int32_t type);
  bool checkVersion(const XmlNode& item);

  OpenItem beginItem(XmlNode::Ptr item);
  bool beginSubItems(XmlNode::Ptr& subitems);
  void walkSubItems(OpenItem outermost);

 private:
  std::shared_ptr<const std::function<void()>> itemObserver() const;
  template <typename Number, typename Read>
  bool readNumber(Number& number, const XmlNode& element, Read read);

  std::uint32_t checkId(const XmlNode& element, std::uint32_t expected);
  void checkType(const XmlNode& element, XmlNode::Ptr& item, std::int32_t expected);
  bool checkLeading(const XmlNode::Ptr& element, const std::string& tag);
  void checkDriverFile(const XmlNode& zqi, XmlNode::Ptr& item);
  void checkOnlyDriver(const XmlNode& driver, XmlNode::Ptr& item, const std::string& otherTag);
  void endItem(XmlNode::Ptr& item, const XmlNode::Ptr& leftOver);

  ProjectValidator& validator_;
};

ProjectValidator::ProjectValidator(XmlNode::Ptr root) : root_(std::move(root)) {}

ProjectValidator::ProjectValidator(const std::string& xml) { set(xml); }

ProjectValidator::~ProjectValidator() = default;

void ProjectValidator::set(const std::string& xml) {
  document_ = CreateXmlDocument(xml);
  root_.reset();
  messages_.clear();
  places_.clear();
}

bool ProjectValidator::valid() {
  if (!root_ && !document_) {
    addMessage(message::notParsed);
    return false;
  }
  places_.resize(messages_.size());  // without the position of an error that another operation threw
  const XmlDocument::Ptr document = document_;  // the item observer may call set()
  try {
    if (!root_) root_ = document->GetRoot();
    if (!root_) {
      addMessage(message::noRoot);
      return false;
    }
    parseCurrentState(root_);
  } catch (const ZqError& error) {
    const bool isPlaced = places_.size() > messages_.size();
    Checks(*this).addFinding(fmt::format(message::unreadable, error.what()),
                             isPlaced ? places_.back() : XmlPosition());
  }
  return messages_.empty();
}

void ProjectValidator::setItemObserver(std::function<void()> observer) {
  itemObserver_ = nullptr;
  if (!observer) return;
  itemObserver_ = SharedObserver{std::make_shared<const std::function<void()>>(std::move(observer))};
}

std::shared_ptr<const std::function<void()>> ProjectValidator::Checks::itemObserver() const {
  const auto* const shared = validator_.itemObserver_.target<SharedObserver>();
  return shared != nullptr ? shared->observer : nullptr;
}

void ProjectValidator::addMessage(const std::string& message) {
  Checks(*this).addFinding(message, XmlPosition());
}

void ProjectValidator::Checks::addFinding(std::string message, const XmlPosition& place) {
  // Positions first: if memory runs out in between, every message still has one.
  validator_.places_.resize(validator_.messages_.size() + 1);
  validator_.places_.back() = place;
  validator_.messages_.push_back(std::move(message));
}

// Only the callers of the operations that report a missing element know the element that should contain it.
void ProjectValidator::Checks::placeLastMessage(const XmlNode& element) {
  validator_.places_.back() = FindPosition(element);
}

bool ProjectValidator::checkNodePtr(XmlNode::Ptr& node, const std::string& name) {
  if (node) return false;
  addMessage(fmt::format(message::missing, name));
  return true;
}

bool ProjectValidator::checkNodePtr(XmlNode::Ptr& node, std::uint32_t id) {
  if (node) return false;
  addMessage(fmt::format(message::missingItem, id));
  return true;
}

bool ProjectValidator::checkTag(XmlNode::Ptr& node, const std::string& tag) {
  if (checkNodePtr(node, tag)) return true;
  if (!node->IsName(tag))
    Checks(*this).addFinding(fmt::format(message::wrongName, tag, node->GetName()), FindPosition(*node));
  if (node->GetAttributeCount() != 0)
    Checks(*this).addFinding(fmt::format(message::hasAttributes, tag), FindPosition(*node));
  return false;
}

std::uint32_t ProjectValidator::getId(XmlNode::Ptr& item) {
  if (!item) return 0;
  try {
    return static_cast<std::uint32_t>(item->GetChildDataNumber(names::id));
  } catch (const ZqError& error) {
    Checks(*this).reportUnreadable(*item, error);
    return 0;
  }
}

// Reads a number into `number`. If the check continues without it, `number` is unchanged. Returns whether it
// was read.
template <typename Number, typename Read>
bool ProjectValidator::Checks::readNumber(Number& number, const XmlNode& element, Read read) {
  try {
    number = static_cast<Number>(read());
    return true;
  } catch (const ZqError& error) {
    reportUnreadable(element, error);
    return false;
  }
}

// Rethrows the current error, unless the observer lets the check continue. The position is stored ahead of
// the messages, where valid() finds it, because the element may be released before the error is caught.
void ProjectValidator::Checks::reportUnreadable(const XmlNode& element, const ZqError& error) {
  const auto shared = itemObserver();
  const auto* const observer = shared ? shared->target<tavrin::ProjectObserver>() : nullptr;
  if (observer == nullptr) {
    validator_.places_.resize(validator_.messages_.size());
    validator_.places_.push_back(FindPosition(element));
    throw;
  }
  if (observer->onUnreadable(element, error))
    addFinding(fmt::format(message::unreadable, error.what()), FindPosition(element));
}

// ---- the top level

void ProjectValidator::parseCurrentState(zq::XmlNode::Ptr root) {
  TRACE("Parsing currentstate");
  if (checkTag(root, names::currentstate)) return;

  XmlNodeIterator* children = root->GetIterator();
  XmlNode::Ptr current = children->First();
  for (const Section& section : requiredSections) {
    if (checkTag(current, section.name)) return Checks(*this).placeLastMessage(*root);
    std::invoke(section.parse, *this, std::move(current));
    current = children->Next();
  }
  for (const Section& section : lastSections) {
    if (checkNodePtr(current, section.name)) return Checks(*this).placeLastMessage(*root);
    if (!current->IsName(section.name)) continue;
    std::invoke(section.parse, *this, std::move(current));
    current = children->Next();
  }
  if (current)
    Checks(*this).addFinding(fmt::format(message::extraSection, current->GetName()), FindPosition(*current));
}

// ---- sections that are not checked yet
// NOLINTBEGIN(readability-convert-member-functions-to-static): they will need the validator.

void ProjectValidator::parseProperties(zq::XmlNode::Ptr /*properties*/) {
  TRACE("Parsing currentstate/properties");
  TRACE("TODO: validate <iditemcurrent>");
  TRACE("TODO: ensure no id in the project is greater than iditemcurrent");
}

void ProjectValidator::parseBindings(zq::XmlNode::Ptr /*bindings*/) {
  TRACE("TODO: validate <bindings>, <boundbinding>");
}

void ProjectValidator::parseNetworkBindings(zq::XmlNode::Ptr /*networkbindings*/) {
  TRACE("TODO: validate <networkdbindings>");
}

void ProjectValidator::parseEventManager(zq::XmlNode::Ptr /*eventManager*/) {
  TRACE("TODO: validate <event_mgr>, <event>");
}

void ProjectValidator::parseVariables(zq::XmlNode::Ptr /*variables*/) { TRACE("TODO: validate <variables>"); }

void ProjectValidator::parseScanSchedule(zq::XmlNode::Ptr /*scanSchedule*/) {
  TRACE("TODO: validate <scan_schedule>");
}

void ProjectValidator::parsePlugins(zq::XmlNode::Ptr /*plugins*/) { TRACE("TODO: validate <plugins>"); }

void ProjectValidator::parseItemData(zq::XmlNode::Ptr /*itemdata*/) { TRACE("TODO: validate <itemdata>"); }

void ProjectValidator::parseState(zq::XmlNode::Ptr /*state*/) { TRACE("TODO: validate <state> data parses"); }

// NOLINTEND(readability-convert-member-functions-to-static)
// ---- the system item

void ProjectValidator::parseSystemItems(zq::XmlNode::Ptr systemitems) {
  TRACE("Parsing systemitems");
  if (checkNodePtr(systemitems, names::systemitems)) return;

  const std::uint32_t count = systemitems->GetChildCount();
  if (count == 0) return Checks(*this).addFinding(message::noSystemItem, FindPosition(*systemitems));
  if (count > 1) {
    Checks(*this).addFinding(fmt::format(message::moreSystemItems, count), FindPosition(*systemitems));
  }
  parseItem1(systemitems->GetChild());
}

void ProjectValidator::parseItem1(zq::XmlNode::Ptr item) {
  TRACE("Parsing systemitems/item 1");
  if (checkItemCommon(item, limits::systemItemId, limits::systemItemType)) return;
  if (!Checks(*this).checkVersion(*item)) return;

  XmlNodeIterator* children = item->GetIterator();
  children->First();
  children->Next();
  children->Next();

  const XmlNode::Ptr itemdata = children->Next();
  parseItem1Data(itemdata);
  if (!itemdata) Checks(*this).placeLastMessage(*item);

  const XmlNode::Ptr subitems = children->Next();
  parseSubItems(subitems);
  if (!subitems) Checks(*this).placeLastMessage(*item);

  const XmlNode::Ptr extra = children->Next();
  if (extra)
    Checks(*this).addFinding(fmt::format(message::extraInSystemItem, extra->GetName()), FindPosition(*extra));
}

// Returns whether the version of the project is supported, so that its items can be checked.
bool ProjectValidator::Checks::checkVersion(const XmlNode& item) {
  const auto report = [&](std::string message) { addFinding(std::move(message), FindPosition(item)); };

  for (const tavrin::Name& attribute : versionAttributes) {
    if (!item.HasAttribute(attribute)) report(fmt::format(message::noVersion, attribute.View()));
  }
  if (item.GetAttributeCount() > std::size(versionAttributes)) report(message::extraAttributes);

  std::int32_t numbers[] = {limits::maxMajor, 0, 0, 0};  // valid defaults for numbers that cannot be read
  std::int32_t* number = std::begin(numbers);
  for (const tavrin::Name& attribute : versionAttributes)
    readNumber(*number++, item, [&] { return item.GetAttributeNumber(attribute); });
  const auto [major, minor, build, revision] = numbers;

  if (major <= 1 || (major == 2 && minor <= 0)) {
    report(message::oldVersion);
    return false;
  }
  if (major > limits::maxMajor) report(fmt::format(message::invalidMajor, major));
  // The upper bound intentionally checks the major number.
  if (minor < 0 || major > limits::maxMajorForMinor) report(fmt::format(message::invalidMinor, minor));
  if (build < 0 || build > limits::maxBuild) report(fmt::format(message::invalidBuild, build));
  if (revision < 0) report(fmt::format(message::invalidRevision, revision));
  return true;
}

void ProjectValidator::parseItem1Data(zq::XmlNode::Ptr itemdata) {
  TRACE("Parsing item 1 itemdata");
  checkTag(itemdata, names::itemdata);
  TRACE("TODO: check item 1 <itemdata>");
}

// ---- the item tree

void ProjectValidator::parseItem(zq::XmlNode::Ptr item) {
  OpenItem begun = Checks(*this).beginItem(std::move(item));
  if (begun.subitems) Checks(*this).walkSubItems(std::move(begun));
}

void ProjectValidator::parseSubItems(zq::XmlNode::Ptr subitems) {
  if (!Checks(*this).beginSubItems(subitems)) return;
  OpenItem outermost;
  outermost.subitems = std::move(subitems);
  Checks(*this).walkSubItems(std::move(outermost));
}

// Traverses the items depth first, without recursion.
void ProjectValidator::Checks::walkSubItems(OpenItem outermost) {
  std::stack<OpenItem, std::vector<OpenItem>> open;
  const auto enter = [&open](OpenItem&& item) {
    item.subitemsChildren = item.subitems->GetIterator();
    open.push(std::move(item));
    return open.top().subitemsChildren->First();
  };

  XmlNode::Ptr item = enter(std::move(outermost));
  while (true) {
    if (item) {
      OpenItem begun = beginItem(std::move(item));
      if (begun.subitems) {
        item = enter(std::move(begun));
        continue;
      }
    } else {
      OpenItem done = std::move(open.top());
      open.pop();
      if (done.item) endItem(done.item, done.itemChildren->Next());
      if (open.empty()) return;
    }
    item = open.top().subitemsChildren->Next();
  }
}

// Returns whether the element exists.
bool ProjectValidator::Checks::beginSubItems(XmlNode::Ptr& subitems) {
  TRACE_AS(parseSubItemsSignature, "Parsing subitems");
  return !validator_.checkTag(subitems, names::subitems);
}

// Checks an item up to its subitems. If it has subitems, they are returned with it; the caller then traverses
// them and calls endItem(). Otherwise the check of the item is complete.
OpenItem ProjectValidator::Checks::beginItem(XmlNode::Ptr item) {
  if (validator_.checkTag(item, names::item)) return {};
  const LeadingElements leading = checkLeadingElements(item, 0, 0);
  const bool beginsWithId = leading.id && leading.id->IsName(names::id);
  const std::uint32_t id = beginsWithId ? leading.idNumber : validator_.getId(item);
  TRACE_AS(parseItemSignature, "Parsing item ");

  if (!checkLeading(leading.id, names::id)) return {};
  if (!checkLeading(leading.name, names::name)) return {};
  if (!checkLeading(leading.type, names::type)) return {};

  XmlNodeIterator* const children = leading.children;
  XmlNode::Ptr current = children->Next();
  if (!current) {
    addFinding(fmt::format(message::noOptional, id), FindPosition(*item));
    return {};
  }
  const auto at = [&](const std::string& tag) { return current && current->IsName(tag); };
  if (at(names::itemdata)) {
    validator_.parseItemData(std::move(current));
    current = children->Next();
  }
  if (at(names::state)) {
    validator_.parseState(std::move(current));
    current = children->Next();
  }
  if (at(names::zqi)) {
    checkDriverFile(*current, item);
    checkOnlyDriver(*current, item, names::devicedata);
    current = children->Next();
  } else if (at(names::devicedata)) {
    TRACE_AS(parseItemSignature, "TODO: parse devicedata");
    checkOnlyDriver(*current, item, names::zqi);
    current = children->Next();
  }
  if (!at(names::subitems)) {
    endItem(item, current);
    return {};
  }
  beginSubItems(current);
  return {std::move(item), children, std::move(current)};
}

void ProjectValidator::Checks::endItem(XmlNode::Ptr& item, const XmlNode::Ptr& leftOver) {
  if (leftOver) {
    const std::string name = leftOver->GetName();
    const bool known = itemElements.find(name) != std::string_view::npos;
    addFinding(fmt::format(known ? message::duplicateElement : message::unknownElement,
                           validator_.getId(item), name),
               FindPosition(*leftOver));
  }
  TRACE_AS(parseItemSignature, "TODO: verify that site contains only buildings");
  TRACE_AS(parseItemSignature, "TODO: verify that building contains only floors");
  TRACE_AS(parseItemSignature, "TODO: verify that floors contains only rooms");
}

bool ProjectValidator::checkItemCommon(XmlNode::Ptr& item, std::uint32_t id, std::int32_t type) {
  if (checkNodePtr(item, id)) return true;
  Checks(*this).checkLeadingElements(item, id, type);
  return false;
}

LeadingElements ProjectValidator::Checks::checkLeadingElements(XmlNode::Ptr& item, std::uint32_t id,
                                                               std::int32_t type) {
  if (const auto observer = itemObserver()) (*observer)();
  LeadingElements leading;
  if (!item->IsName(names::item))
    addFinding(fmt::format(message::wrongName, names::item.View(), item->GetName()), FindPosition(*item));

  XmlNodeIterator* const children = leading.children = item->GetIterator();
  if (children == nullptr) {  // never with the bundled platform
    addFinding(message::noElements, FindPosition(*item));
    return leading;
  }
  const auto isMissing = [&](XmlNode::Ptr& element, const std::string& tag) {
    const bool missing = validator_.checkTag(element, tag);
    if (missing) placeLastMessage(*item);
    return missing;
  };
  leading.id = children->First();
  if (isMissing(leading.id, names::id)) return leading;
  leading.idNumber = checkId(*leading.id, id);

  leading.name = children->Next();
  if (isMissing(leading.name, names::name)) return leading;

  leading.type = children->Next();
  if (isMissing(leading.type, names::type)) return leading;
  checkType(*leading.type, item, type);
  return leading;
}

std::uint32_t ProjectValidator::Checks::checkId(const XmlNode& element, std::uint32_t expected) {
  std::uint32_t id = 0;
  if (!readNumber(id, element, [&] { return element.GetDataNumber(); })) return id;
  if (id < limits::minId || id > limits::maxId)
    addFinding(fmt::format(message::invalidId, id), FindPosition(element));
  if (expected != 0 && id != expected)
    addFinding(fmt::format(message::wrongId, expected, id), FindPosition(element));
  std::int32_t& count = validator_.idCounts_[id];
  if (count != 0) addFinding(fmt::format(message::duplicateId, id, count), FindPosition(element));
  ++count;
  return id;
}

void ProjectValidator::Checks::checkType(const XmlNode& element, XmlNode::Ptr& item, std::int32_t expected) {
  std::int32_t type = 0;
  if (!readNumber(type, element, [&] { return element.GetDataNumber(); })) return;
  if (type < limits::minType || type > limits::maxType)
    addFinding(fmt::format(message::invalidType, validator_.getId(item), type), FindPosition(element));
  if (expected != 0 && type != expected)
    addFinding(fmt::format(message::wrongType, expected, type), FindPosition(element));
}

// Returns whether the check of the item continues. An item without a leading element was already reported.
bool ProjectValidator::Checks::checkLeading(const XmlNode::Ptr& element, const std::string& tag) {
  if (!element) return false;
  if (!element->IsName(tag))
    addFinding(fmt::format(message::wrongLeading, tag, element->GetName()), FindPosition(*element));
  return true;
}

void ProjectValidator::Checks::checkDriverFile(const XmlNode& zqi, XmlNode::Ptr& item) {
  const std::string file = zqi.GetData();
  const std::string lower = ToLower(file);
  const auto contains = [&](const char* suffix) { return lower.find(suffix) != std::string::npos; };
  if (lower.empty() || contains(".zqi") || contains(".zqz")) return;
  addFinding(fmt::format(message::invalidDriverFile, validator_.getId(item), file), FindPosition(zqi));
}

// An item has one driver: a file ("zqi") or its data ("devicedata").
void ProjectValidator::Checks::checkOnlyDriver(const XmlNode& driver, XmlNode::Ptr& item,
                                               const std::string& otherTag) {
  if (!item->GetChild(otherTag)) return;
  addFinding(fmt::format(message::twoDrivers, validator_.getId(item)), FindPosition(driver));
}

}  // namespace zq
