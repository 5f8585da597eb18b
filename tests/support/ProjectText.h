#pragma once

#include <string>

// Builds projects from valid pieces. A test replaces the piece that it checks.

inline std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

inline std::string Leading(const std::string& id, const std::string& type) {
  return Element("id", id) + "<name/>" + Element("type", type);
}

// Returns an item; `optional` follows its type.
inline std::string Item(const std::string& id, const std::string& optional = "<state/>",
                        const std::string& type = "2") {
  return Element("item", Leading(id, type) + optional);
}

inline std::string Version(const std::string& major, const std::string& minor, const std::string& build = "0",
                           const std::string& revision = "0") {
  return "majorversion='" + major + "' minorversion='" + minor + "' buildnumber='" + build +
         "' buildrevision='" + revision + "'";
}

inline std::string SystemItem(const std::string& attributes, const std::string& content) {
  return "<item " + attributes + ">" + content + "</item>";
}

inline std::string SystemItemWith(const std::string& items) {
  return SystemItem(Version("2", "1"), Leading("1", "1") + "<itemdata/>" + Element("subitems", items));
}

// Returns a project with the given section "systemitems" and content after "variables".
inline std::string Project(const std::string& systemitems,
                           const std::string& last = "<scan_schedule/><plugins/>") {
  return Element("currentstate", "<properties/>" + systemitems +
                                     "<bindings/><networkbindings/><event_mgr/><variables/>" + last);
}

inline std::string ProjectWithSystemItem(const std::string& systemItem) {
  return Project(Element("systemitems", systemItem));
}

inline std::string ProjectWith(const std::string& items) {
  return ProjectWithSystemItem(SystemItemWith(items));
}
