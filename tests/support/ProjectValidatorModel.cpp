#include "ProjectValidatorModel.h"

#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <array>
#include <cctype>
#include <set>

#include "tavrin_driver/internal/Position.h"

using zq::XmlNode;

namespace {

std::vector<XmlNode::Ptr> Children(const XmlNode::Ptr& element) {
  std::vector<XmlNode::Ptr> children;
  zq::XmlNodeIterator* walk = element->GetIterator();
  for (XmlNode::Ptr child = walk->First(); child; child = walk->Next()) children.push_back(child);
  return children;
}

XmlNode::Ptr At(const std::vector<XmlNode::Ptr>& list, std::size_t index) {
  return index < list.size() ? list[index] : XmlNode::Ptr();
}

std::string Name(const XmlNode::Ptr& element) { return element ? element->GetName() : std::string(); }

std::string InLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Every substring of the list of elements of an item, so that "occurs in" is a look-up.
const std::set<std::string>& DuplicateNames() {
  static const std::set<std::string> names = [] {
    const std::string list = "id name type itemdata state zqi devicedata subitems";
    std::set<std::string> all;
    for (std::size_t from = 0; from <= list.size(); ++from) {
      for (std::size_t length = 0; from + length <= list.size(); ++length)
        all.insert(list.substr(from, length));
    }
    return all;
  }();
  return names;
}

std::int64_t Number(const XmlNode::Ptr& element) {
  try {
    return element->GetDataNumber();
  } catch (const zq::ZqError& error) {
    throw ProjectValidatorModel::Unreadable(error.what(), tavrin::FindPosition(*element));
  }
}

// The id of an item is its first child "id", at any position.
std::string IdText(const XmlNode::Ptr& item) {
  for (const XmlNode::Ptr& child : Children(item)) {
    if (Name(child) != "id") continue;
    try {
      return std::to_string(static_cast<std::uint32_t>(child->GetDataNumber()));
    } catch (const zq::ZqError& error) {
      throw ProjectValidatorModel::Unreadable(error.what(), tavrin::FindPosition(*item));
    }
  }
  return "0";
}

}  // namespace

void ProjectValidatorModel::Say(const std::string& text, const XmlNode::Ptr& about) {
  messages.push_back(text);
  places.push_back(about ? tavrin::FindPosition(*about) : zq::XmlPosition{});
}

void ProjectValidatorModel::Log(const char* operation, const char* text) {
  log.push_back({std::string("void zq::ProjectValidator::") + operation + "(zq::XmlNode::Ptr)", text});
}

void ProjectValidatorModel::Named(const XmlNode::Ptr& element, const std::string& name) {
  if (Name(element) != name) Say("expected " + name + ", got " + Name(element), element);
  if (element->GetAttributeCount() > 0) Say(name + " has attributes", element);
}

void ProjectValidatorModel::Project(const XmlNode::Ptr& root) {
  try {
    CurrentState(root);
  } catch (const Unreadable& error) {
    messages.push_back(std::string("invalid project, ") + error.what());
    places.push_back(error.place);
  }
}

void ProjectValidatorModel::CurrentState(const XmlNode::Ptr& root) {
  Log("parseCurrentState", "Parsing currentstate");
  Named(root, "currentstate");
  const std::vector<XmlNode::Ptr> sections = Children(root);

  const std::array<const char*, 6> required = {"properties",      "systemitems", "bindings",
                                               "networkbindings", "event_mgr",   "variables"};
  std::size_t next = 0;
  for (; next < required.size(); ++next) {
    const XmlNode::Ptr section = At(sections, next);
    if (!section) return Say(std::string(required[next]) + " is missing", root);
    Named(section, required[next]);
    switch (next) {
      case 0:
        Log("parseProperties", "Parsing currentstate/properties");
        Log("parseProperties", "TODO: validate <iditemcurrent>");
        Log("parseProperties", "TODO: ensure no id in the project is greater than iditemcurrent");
        break;
      case 1:
        SystemItems(section);
        break;
      case 2:
        Log("parseBindings", "TODO: validate <bindings>, <boundbinding>");
        break;
      case 3:
        Log("parseNetworkBindings", "TODO: validate <networkdbindings>");
        break;
      case 4:
        Log("parseEventManager", "TODO: validate <event_mgr>, <event>");
        break;
      default:
        Log("parseVariables", "TODO: validate <variables>");
    }
  }
  if (!At(sections, next)) return Say("scan_schedule is missing", root);
  if (Name(At(sections, next)) == "scan_schedule") {
    Log("parseScanSchedule", "TODO: validate <scan_schedule>");
    ++next;
  }
  if (!At(sections, next)) return Say("plugins is missing", root);
  if (Name(At(sections, next)) == "plugins") {
    Log("parsePlugins", "TODO: validate <plugins>");
    ++next;
  }
  if (At(sections, next)) Say("extra tags in project " + Name(At(sections, next)), At(sections, next));
}

void ProjectValidatorModel::SystemItems(const XmlNode::Ptr& section) {
  Log("parseSystemItems", "Parsing systemitems");
  const std::vector<XmlNode::Ptr> items = Children(section);
  if (items.empty()) return Say("systemitems contains no items", section);
  if (items.size() > 1) {
    Say("systemitems contains more than one item, " + std::to_string(items.size()), section);
  }
  SystemItem(items[0]);
}

void ProjectValidatorModel::SystemItem(const XmlNode::Ptr& item) {
  Log("parseItem1", "Parsing systemitems/item 1");
  Leading(item, 1, 1);

  const std::array<const char*, 4> attributes = {"majorversion", "minorversion", "buildnumber",
                                                 "buildrevision"};
  for (const char* attribute : attributes) {
    if (!item->HasAttribute(attribute)) Say(std::string("item 1 is missing ") + attribute, item);
  }
  if (item->GetAttributeCount() > attributes.size()) Say("item 1 has extra attributes", item);

  std::array<std::int32_t, 4> version{};
  for (std::size_t i = 0; i < version.size(); ++i) {
    try {
      version[i] = item->GetAttributeNumber(attributes[i]);
    } catch (const zq::ZqError& error) {
      throw Unreadable(error.what(), tavrin::FindPosition(*item));
    }
  }
  const bool checkable = version[0] > 2 || (version[0] == 2 && version[1] > 0);
  if (!checkable) return Say("the validator can only check 2.1.0 or greater", item);

  const auto bad = [&](const std::string& what, std::size_t which) {
    Say("item 1 " + what + " number " + std::to_string(version[which]), item);
  };
  if (!(version[0] >= 2 && version[0] <= 5)) bad("has an invalid major version", 0);
  if (!(version[1] >= 0 && version[0] <= 100)) bad("has an invalid minor version", 1);
  if (!(static_cast<std::uint32_t>(version[2]) <= 100)) bad("hasf a invalid build", 2);
  if (!(version[3] >= 0)) bad("has an invalid revision", 3);

  const std::vector<XmlNode::Ptr> children = Children(item);
  const XmlNode::Ptr itemdata = At(children, 3);
  Log("parseItem1Data", "Parsing item 1 itemdata");
  if (itemdata) {
    Named(itemdata, "itemdata");
  } else {
    Say("itemdata is missing", item);
  }
  Log("parseItem1Data", "TODO: check item 1 <itemdata>");

  if (const XmlNode::Ptr subitems = At(children, 4)) {
    SubItems(subitems);
  } else {
    Log("parseSubItems", "Parsing subitems");
    Say("subitems is missing", item);
  }
  if (const XmlNode::Ptr extra = At(children, 5)) Say("extra elements in item 1, " + Name(extra), extra);
}

void ProjectValidatorModel::SubItems(const XmlNode::Ptr& subitems) {
  Log("parseSubItems", "Parsing subitems");
  Named(subitems, "subitems");
  for (const XmlNode::Ptr& item : Children(subitems)) Item(item);
}

// Returns whether all three leading elements are present.
bool ProjectValidatorModel::Leading(const XmlNode::Ptr& item, std::uint32_t wantedId,
                                    std::int32_t wantedType) {
  const std::vector<XmlNode::Ptr> children = Children(item);
  if (Name(item) != "item") Say("expected item, got " + Name(item), item);

  const XmlNode::Ptr idElement = At(children, 0);
  if (!idElement) return Say("id is missing", item), false;
  Named(idElement, "id");
  const auto id = static_cast<std::uint32_t>(Number(idElement));
  const std::string idText = std::to_string(id);
  if (!(id >= 1 && id <= 200000)) Say("item has an invalid id " + idText, idElement);
  if (wantedId != 0 && wantedId != id) {
    Say("expected item " + std::to_string(wantedId) + ", got item " + idText, idElement);
  }
  if (const int before = seen_[id]++) {
    Say("id " + idText + " is a duplicate, " + std::to_string(before) + " of them seen so far", idElement);
  }

  const XmlNode::Ptr nameElement = At(children, 1);
  if (!nameElement) return Say("name is missing", item), false;
  Named(nameElement, "name");

  const XmlNode::Ptr typeElement = At(children, 2);
  if (!typeElement) return Say("type is missing", item), false;
  Named(typeElement, "type");
  const auto type = static_cast<std::int32_t>(Number(typeElement));
  if (!(type >= 1 && type <= 9)) {
    Say("item " + IdText(item) + " has an invalid type " + std::to_string(type), typeElement);
  }
  if (wantedType != 0 && wantedType != type) {
    Say("expected type " + std::to_string(wantedType) + ", got " + std::to_string(type), typeElement);
  }
  return true;
}

void ProjectValidatorModel::Item(const XmlNode::Ptr& item) {
  Named(item, "item");
  const bool complete = Leading(item, 0, 0);
  const std::string id = IdText(item);
  Log("parseItem", "Parsing item ");

  const std::vector<XmlNode::Ptr> children = Children(item);
  const std::array<const char*, 3> leading = {"id", "name", "type"};
  for (std::size_t i = 0; i < leading.size() && i < children.size(); ++i) {
    if (Name(children[i]) == leading[i]) continue;
    Say(std::string("cannot happen, expected ") + leading[i] + ", got " + Name(children[i]), children[i]);
  }
  if (!complete) return;
  if (children.size() == leading.size()) return Say("item " + id + " is missing all optional elements", item);

  OptionalElements(item, children);
  Log("parseItem", "TODO: verify that site contains only buildings");
  Log("parseItem", "TODO: verify that building contains only floors");
  Log("parseItem", "TODO: verify that floors contains only rooms");
}

void ProjectValidatorModel::OptionalElements(const XmlNode::Ptr& item,
                                             const std::vector<XmlNode::Ptr>& children) {
  std::size_t next = 3;
  if (Name(At(children, next)) == "itemdata") {
    Log("parseItemData", "TODO: validate <itemdata>");
    ++next;
  }
  if (Name(At(children, next)) == "state") {
    Log("parseState", "TODO: validate <state> data parses");
    ++next;
  }
  if (Name(At(children, next)) == "zqi" || Name(At(children, next)) == "devicedata") {
    Driver(item, children[next]);
    ++next;
  }
  if (Name(At(children, next)) == "subitems") {
    SubItems(children[next]);
    ++next;
  }
  if (const XmlNode::Ptr rest = At(children, next)) {
    const char* kind = DuplicateNames().count(Name(rest)) != 0 ? "duplicate " : "an invalid ";
    Say("item " + IdText(item) + " contains " + kind + Name(rest), rest);
  }
}

void ProjectValidatorModel::Driver(const XmlNode::Ptr& item, const XmlNode::Ptr& driver) {
  const bool isFile = Name(driver) == "zqi";
  if (isFile) {
    const std::string file = InLowerCase(driver->GetData());
    const bool known = file.find(".zqi") != std::string::npos || file.find(".zqz") != std::string::npos;
    if (!file.empty() && !known) {
      Say("item " + IdText(item) + " has invalid zqi file name " + driver->GetData(), driver);
    }
  } else {
    Log("parseItem", "TODO: parse devicedata");
  }
  for (const XmlNode::Ptr& child : Children(item)) {
    if (Name(child) != (isFile ? "devicedata" : "zqi")) continue;
    return Say("item " + IdText(item) + " contains both devicedata and zqi", driver);
  }
}
