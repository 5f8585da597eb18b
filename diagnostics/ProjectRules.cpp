#include "ProjectRules.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "tavrin_driver/internal/Limits.h"
#include "tavrin_driver/internal/ProjectMessages.h"

namespace tavrin::diagnostics {
namespace {

constexpr std::string_view sections =
    "the sections are properties, systemitems, bindings, networkbindings, event_mgr, variables, "
    "scan_schedule "
    "and plugins, in this order";
constexpr std::string_view leadingElements = "an item begins with id, name and type, in this order";
constexpr std::string_view optionalElements =
    "the type is followed by itemdata, state, zqi or devicedata, and subitems, each at most once and in this "
    "order";
constexpr std::string_view oneDriver = "an item has a zqi or a devicedata";
constexpr std::string_view systemItem = "systemitems contains exactly one item, the system item with id 1";

// The messages from the most to the least specific format: a message belongs to the first one that fits.
constexpr ProjectRule rules[] = {
    {"not-xml", message::notParsed, ""},
    {"not-xml", message::noRoot, ""},
    {"unreadable-number", message::unreadable, ""},
    {"wrong-name", message::wrongLeading, leadingElements},
    {"wrong-system-id", message::wrongId, "the system item has the id {systemItemId}"},
    {"wrong-system-type", message::wrongType, "the system item has the type {systemItemType}"},
    {"wrong-name", message::wrongName, ""},
    {"extra-section", message::extraSection, sections},
    {"no-system-item", message::noSystemItem, systemItem},
    {"more-system-items", message::moreSystemItems, systemItem},
    {"extra-in-system-item", message::extraInSystemItem, "the system item ends with its subitems"},
    {"old-version", message::oldVersion, "save the project with a newer version of the controller"},
    {"invalid-version", message::invalidMajor, "major versions are from 2 to {maxMajor}"},
    {"invalid-version", message::invalidMinor,
     "minor versions are 0 or greater, below a major version of at most {maxMajorForMinor}"},
    {"invalid-version", message::invalidBuild, "build numbers are from 0 to {maxBuild}"},
    {"invalid-version", message::invalidRevision, "revision numbers are 0 or greater"},
    {"extra-version-attribute", message::extraAttributes,
     "the attributes are majorversion, minorversion, buildnumber and buildrevision"},
    {"missing-element", message::noElements, leadingElements},
    {"invalid-id", message::invalidId, "ids are from {minId} to {maxId}"},
    {"duplicate-id", message::duplicateId, ""},
    {"invalid-type", message::invalidType, "types are from {minType} to {maxType}"},
    {"no-optional-elements", message::noOptional, optionalElements},
    {"missing-version", message::noVersion,
     "the attributes are majorversion, minorversion, buildnumber and buildrevision"},
    {"driver-file", message::invalidDriverFile, "the name of a driver file contains .zqi or .zqz"},
    {"misplaced-element", message::twoDrivers, oneDriver},
    {"misplaced-element", message::duplicateElement, optionalElements},
    {"unknown-element", message::unknownElement, optionalElements},
    {"attributes", message::hasAttributes, "remove the attributes"},
    {"missing-element", message::missingItem, ""},
    {"missing-element", message::missing, ""},
};

// Returns whether a message matches a format, in which each "{}" matches any string.
bool Fits(std::string_view text, std::string_view format) {
  constexpr std::string_view placeholder = "{}";
  std::size_t brace = format.find(placeholder);
  if (brace == std::string_view::npos) return text == format;
  if (text.substr(0, brace) != format.substr(0, brace)) return false;
  text.remove_prefix(brace);
  while (true) {
    format.remove_prefix(brace + placeholder.size());
    brace = format.find(placeholder);
    const std::string_view literal = format.substr(0, brace);
    if (brace == std::string_view::npos) {
      return text.size() >= literal.size() && text.substr(text.size() - literal.size()) == literal;
    }
    const std::size_t found = text.find(literal);
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + literal.size());
  }
}

}  // namespace

const ProjectRule& ProjectRuleOf(std::string_view message) {
  return *std::find_if(std::begin(rules), std::prev(std::end(rules)),
                       [message](const ProjectRule& rule) { return Fits(message, rule.format); });
}

std::string HintOf(const ProjectRule& rule) {
  using fmt::arg;
  return fmt::format(rule.hint, arg("systemItemId", limits::systemItemId),
                     arg("systemItemType", limits::systemItemType), arg("maxMajor", limits::maxMajor),
                     arg("maxMajorForMinor", limits::maxMajorForMinor), arg("maxBuild", limits::maxBuild),
                     arg("minId", limits::minId), arg("maxId", limits::maxId),
                     arg("minType", limits::minType), arg("maxType", limits::maxType));
}

}  // namespace tavrin::diagnostics
