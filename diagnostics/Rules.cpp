#include "tavrin_diagnostics/Rules.h"

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace tavrin::diagnostics {
namespace {

constexpr Severity error = Severity::error;
constexpr Severity warning = Severity::warning;
constexpr Severity note = Severity::note;

// A rule without its subject.
struct Row {
  const char* name;
  Severity severity;
  const char* reason;
  const char* wrong;
  const char* right;
};

// The rules of messages in XML. In the examples "$(" and "$)" mark the beginning and the end of a
// message that is complete but for its parameters, "$*" for what is between them, and "$[" and "$]" for all
// of a message around the value of a parameter.
constexpr Row xmlRows[] = {
    {"empty", error, "An empty text, or one that is only white space, is not a message.", " ", "$($)"},
    {"malformed-xml", error, "The loader accepts well-formed XML only and reads nothing of any other text.",
     "$(<params></param></params>$)", "$(<params></params>$)"},
    {"invalid-id", error, "The loader throws if the id of a device or variable is not a number.",
     "$[<value "
     "type=\"number\"><variable><deviceid>seven</deviceid><variableid>8</variableid></variable></value>$]",
     "$[<value "
     "type=\"number\"><variable><deviceid>7</deviceid><variableid>8</variableid></variable></value>$]"},
    {"root-name", warning,
     "The loader accepts any root element, so another kind of message may be read by mistake.",
     "<message>$*</message>", "$($)"},
    {"unknown-element", warning, "The loader ignores unknown elements, including misspelt ones.",
     "$(<Params/>$)", "$(<params/>$)"},
    {"unknown-attribute", warning, "The loader ignores unknown attributes.", "$(<params count=\"0\"/>$)",
     "$(<params/>$)"},
    {"ignored-text", warning, "The loader ignores text where it expects elements.",
     "$(<params>none</params>$)", "$(<params/>$)"},
    {"markup-for-text", warning, "Where the loader expects text, it reads elements as an empty text.",
     "$(<params><param><name><b>A</b></name><value "
     "type=\"number\"><static>1</static></value></param></params>$)",
     "$(<params><param><name>A</name><value type=\"number\"><static>1</static></value></param></params>$)"},
    {"repeated-element", warning,
     "The loader uses one of several elements with the same name and ignores the others.",
     "$[<value type=\"number\"><static>1</static></value><value type=\"number\"><static>2</static></value>$]",
     "$[<value type=\"number\"><static>1</static></value>$]"},
    {"duplicate-parameter", warning,
     "The loader uses the first of several parameters with the same name and ignores the others.",
     "$(<params><param><name>A</name><value type=\"number\"><static>1</static></value></param>"
     "<param><name>A</name><value type=\"number\"><static>2</static></value></param></params>$)",
     "$(<params><param><name>A</name><value type=\"number\"><static>1</static></value></param>"
     "<param><name>B</name><value type=\"number\"><static>2</static></value></param></params>$)"},
    {"unnamed-parameter", warning, "A parameter without a name has an empty name, which no driver requests.",
     "$(<params><param><value type=\"number\"><static>1</static></value></param></params>$)",
     "$[<value type=\"number\"><static>1</static></value>$]"},
    {"no-value", warning, "A parameter without a value reads as an empty text.", "$[$]",
     "$[<value type=\"number\"><static>1</static></value>$]"},
    {"missing-id", warning,
     "A variable is identified by its id and the id of its device; a missing id is read as 0.",
     "$[<value type=\"number\"><variable><deviceid>7</deviceid></variable></value>$]",
     "$[<value "
     "type=\"number\"><variable><deviceid>7</deviceid><variableid>8</variableid></variable></value>$]"},
    {"id-wraps", warning, "Ids have 32 bits, so a number below 0 or above 4294967295 is read as another id.",
     "$[<value "
     "type=\"number\"><variable><deviceid>-1</deviceid><variableid>8</variableid></variable></value>$]",
     "$[<value "
     "type=\"number\"><variable><deviceid>7</deviceid><variableid>8</variableid></variable></value>$]"},
};

constexpr Row commandRows[] = {
    {"wrong-format", error, "A command is XML or JSON; its first character selects the parser.",
     "SET_LEVEL 75", "<devicecommand><command>SET_LEVEL</command></devicecommand>"},
    {"no-name", warning, "A command without a name reaches the driver with an empty name.",
     "<devicecommand/>", "<devicecommand><command>ON</command></devicecommand>"},
    {"malformed-json", error, "The loader reads nothing from a text that is not valid JSON.",
     R"({"devicecommand": {"command": "ON"})", R"({"devicecommand": {"command": "ON"}})"},
    {"nested-too-deep", error,
     "The depth of JSON is limited to 1000 levels, because each level needs stack memory.", "$d",
     R"({"devicecommand": {"command": "ON"}})"},
    {"wrapper-size", error, "The loader rejects a wrapper with more than three members.",
     R"({"devicecommand": {"command": "ON"}, "e": 1, "f": 2, "g": 3})",
     R"({"devicecommand": {"command": "ON"}})"},
    {"wrapper-content", error,
     "The loader reads the first member of the wrapper, by key, which must be the command.",
     R"({"command": "ON"})", R"({"devicecommand": {"command": "ON"}})"},
    {"wrapper-extra", warning,
     "The loader reads the first member of the wrapper, by key, and ignores the others.",
     R"({"devicecommand": {"command": "ON"}, "version": 2})", R"({"devicecommand": {"command": "ON"}})"},
    {"member-type", error,
     "The loader rejects a command with members that are neither strings nor \"params\".",
     R"({"devicecommand": {"command": "ON", "priority": 1}})", R"({"devicecommand": {"command": "ON"}})"},
    {"entry-type", error, "The loader throws if an entry of \"params\" is not an object.",
     R"({"devicecommand": {"command": "ON", "params": ["LEVEL"]}})",
     R"({"devicecommand": {"command": "ON", "params": []}})"},
    {"inherited-size", error,
     "To limit memory, entries inherit at most ten times the length of the text in total, or 1 MiB if that "
     "is more.",
     R"([{"command": "X", "params": [$n]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": 1}}]}])"},
    {"value-type", error, "The loader throws if \"static\" is an array or object.",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": [1]}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": 1}}]}])"},
    {"trailing-text", warning,
     "The loader ignores any text after the JSON value, for example a second command.",
     R"([{"command": "ON"}] [{"command": "OFF"}])", R"([{"command": "ON"}])"},
    {"duplicate-key", warning,
     "The loader uses the last of several members with the same key and ignores the others.",
     R"([{"command": "ON", "command": "OFF"}])", R"([{"command": "OFF"}])"},
    {"stray-token", warning, "JsonCpp before 1.9.6 reads any token after a comment as a comma.",
     R"([{"command": "ON" /* and */ : "params": []}])", R"([{"command": "ON" /* and */ , "params": []}])"},
    {"unknown-key", warning, "The loader ignores unknown members, including misspelt ones.",
     R"([{"command": "ON", "comment": "slowly"}])", R"([{"command": "ON"}])"},
    {"ignored-value", warning, "The loader ignores a member of an unexpected type.",
     R"([{"command": "X", "params": [{"name": "A", "type": 7, "value": {"static": 1}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": 1}}]}])"},
    {"static-and-variable", warning, "If a parameter has a variable, its static value is ignored.",
     R"([{"command": "X", "params": [{"name": "A", "type": "n",
         "value": {"static": 1, "variable": {"deviceid": 7, "variableid": 8}}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n",
         "value": {"variable": {"deviceid": 7, "variableid": 8}}}]}])"},
    {"no-ids", warning, "A variable that is not an object has no ids.",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"variable": 7}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n",
         "value": {"variable": {"deviceid": 7, "variableid": 8}}}]}])"},
    {"inherited", warning, "An entry inherits the fields that it omits from the previous entry.",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": 1}},
         {"name": "B", "value": {"static": 2}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "n", "value": {"static": 1}},
         {"name": "B", "type": "n", "value": {"static": 2}}]}])"},
    {"truncated-value", warning, "Drivers read a static value up to its first NUL byte.",
     R"([{"command": "X", "params": [{"name": "A", "type": "s", "value": {"static": "a\u0000b"}}]}])",
     R"([{"command": "X", "params": [{"name": "A", "type": "s", "value": {"static": "ab"}}]}])"},
};

constexpr Row bindingRows[] = {
    {"wrong-format", error, "A binding message is XML.", "SET_LEVEL 75",
     "<bindmessage><command>SET_LEVEL</command></bindmessage>"},
    {"no-name", warning, "A message with neither a command nor a notification has no name.", "<bindmessage/>",
     "<bindmessage><command>ON</command></bindmessage>"},
    {"query-without-notify", warning, "Only a notification answers a query.",
     "<bindmessage><command>ON</command><query/></bindmessage>",
     "<bindmessage><notify>ON</notify><query/></bindmessage>"},
};

constexpr Row conditionalRows[] = {
    {"wrong-format", error, "Every test of a conditional that is neither XML nor a comparison is false.",
     "LESS_THAN_50",
     "<deviceconditional><name>Level</name><conditional>LESS_THAN</conditional></deviceconditional>"},
    {"bare-comparison", note,
     "A text that is not XML is read as the comparison, without a name or parameters.", "LESS_THAN",
     "<deviceconditional><name>Level</name><conditional>LESS_THAN</conditional></deviceconditional>"},
    {"no-name", warning, "A conditional without a name cannot be distinguished from others.",
     "<deviceconditional><conditional>EQUAL</conditional></deviceconditional>",
     "<deviceconditional><name>On</name><conditional>EQUAL</conditional></deviceconditional>"},
    {"no-comparison", warning, "Every test of a conditional without a comparison is false.",
     "<deviceconditional><name>On</name></deviceconditional>",
     "<deviceconditional><name>On</name><conditional>EQUAL</conditional></deviceconditional>"},
    {"unknown-comparison", warning, "Every test of a conditional with an unknown comparison is false.",
     "<deviceconditional><name>On</name><conditional>equal</conditional></deviceconditional>",
     "<deviceconditional><name>On</name><conditional>EQUAL</conditional></deviceconditional>"},
};

// In the examples "$(" and "$)" mark the beginning and the end of a project around its sections, "$i"
// for a system item, "$s" for the section that contains it, "$t" for the sections after that, and "$[" and
// "$]" for all of a project around its items.
constexpr Row projectRows[] = {
    {"not-xml", error, "A controller cannot load a project that is not well-formed XML.", "<currentstate>",
     "$[$]"},
    {"unreadable-number", error,
     "The check in a controller ends at a number that it cannot read, so it reports no later errors.",
     "$[<item><id>six</id><name>Hall</name><type>8</type><state/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
    {"wrong-name", error,
     "The controller identifies sections by their order, so a section with a wrong name is read as another.",
     "$(<property/>$s$t$)", "$(<properties/>$s$t$)"},
    {"attributes", error, "The elements that are checked, except the system item, have no attributes.",
     "$(<properties/>$s<bindings "
     "count=\"0\"/><networkbindings/><event_mgr/><variables/><scan_schedule/><plugins/>$)",
     "$[$]"},
    {"missing-element", error,
     "If a required element is missing, the rest of that part of the project is not checked.",
     "$(<properties/>$s<bindings/><networkbindings/><event_mgr/><variables/>$)", "$[$]"},
    {"extra-section", error, "The controller accepts no sections after the last one.",
     "$(<properties/>$s$t<extra/>$)", "$[$]"},
    {"no-system-item", error, "The system item contains the version and all items of a project.",
     "$(<properties/><systemitems/>$t$)", "$[$]"},
    {"more-system-items", error, "Only the first item of the section is checked.",
     "$(<properties/><systemitems>$i<item/></systemitems>$t$)", "$[$]"},
    {"extra-in-system-item", error, "The system item contains no elements after its subitems.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\" "
     "buildrevision=\"0\">"
     "<id>1</id><name>House</name><type>1</type><itemdata/><subitems/><state/></item></systemitems>$t$)",
     "$[$]"},
    {"wrong-system-id", error, "The controller finds the system item by its id.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\" "
     "buildrevision=\"0\">"
     "<id>2</id><name>House</name><type>1</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"wrong-system-type", error, "The type of the system item is 1.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\" "
     "buildrevision=\"0\">"
     "<id>1</id><name>House</name><type>2</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"missing-version", error, "The version of a project is in four attributes of the system item.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\">"
     "<id>1</id><name>House</name><type>1</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"extra-version-attribute", error, "The system item has no attributes except its version.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\" "
     "buildrevision=\"0\" "
     "x=\"1\"><id>1</id><name>House</name><type>1</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"old-version", error, "The items of a project older than 2.1.0 are not checked.",
     "$(<properties/><systemitems><item majorversion=\"2\" minorversion=\"0\" buildnumber=\"0\" "
     "buildrevision=\"0\">"
     "<id>1</id><name>House</name><type>1</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"invalid-version", error, "A controller does not load projects of unknown versions.",
     "$(<properties/><systemitems><item majorversion=\"3\" minorversion=\"0\" buildnumber=\"101\" "
     "buildrevision=\"0\">"
     "<id>1</id><name>House</name><type>1</type><itemdata/><subitems/></item></systemitems>$t$)",
     "$[$]"},
    {"invalid-id", error, "Ids of items are from 1 to 200000; other numbers do not identify items.",
     "$[<item><id>0</id><name>Hall</name><type>8</type><state/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
    {"duplicate-id", error,
     "Bindings and drivers identify an item by its id, so two items with the same id conflict.",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>"
     "<item><id>6</id><name>Bath</name><type>8</type><state/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>"
     "<item><id>7</id><name>Bath</name><type>8</type><state/></item>$]"},
    {"invalid-type", error, "The type, a number from 1 to 9, determines the kind of an item.",
     "$[<item><id>6</id><name>Hall</name><type>10</type><state/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
    {"no-optional-elements", error, "An item must contain at least one element after its id, name and type.",
     "$[<item><id>6</id><name>Hall</name><type>8</type></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
    {"driver-file", error, "A controller loads drivers only from files whose names contain .zqi or .zqz.",
     "$[<item><id>6</id><name>Lamp</name><type>7</type><zqi>lamp.xml</zqi></item>$]",
     "$[<item><id>6</id><name>Lamp</name><type>7</type><zqi>lamp.zqi</zqi></item>$]"},
    {"misplaced-element", error,
     "The controller does not read elements of an item that are repeated or out of order, or a second "
     "driver.",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/><state/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
    {"unknown-element", error, "The element is unknown to the controller.",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/><colour/></item>$]",
     "$[<item><id>6</id><name>Hall</name><type>8</type><state/></item>$]"},
};

constexpr Row requireRows[] = {
    {"missing", error, "A driver that requires the parameter rejects the command.",
     "<devicecommand><command>SET_LEVEL</command></devicecommand>",
     "<devicecommand><command>SET_LEVEL</command><params><param><name>LEVEL</name>"
     "<value type=\"number\"><static>75</static></value></param></params></devicecommand>"},
    {"out-of-range", error, "A driver that requires the parameter within bounds rejects the command.",
     "<devicecommand><command>SET_LEVEL</command><params><param><name>LEVEL</name>"
     "<value type=\"number\"><static>150</static></value></param></params></devicecommand>",
     "<devicecommand><command>SET_LEVEL</command><params><param><name>LEVEL</name>"
     "<value type=\"number\"><static>75</static></value></param></params></devicecommand>"},
};

constexpr Row fileRows[] = {
    {"unreadable", error, "A file that cannot be read is not checked.", "no_such_file.xml", "light_on.xml"},
    {"no-files", error, "A directory without files to check is probably the wrong directory.",
     "empty_directory", "."},
};

using Expansions = std::initializer_list<std::pair<const char*, std::string>>;

std::string Expanded(std::string text, const Expansions& expansions) {
  for (const auto& [mark, expansion] : expansions) boost::algorithm::replace_all(text, mark, expansion);
  return text;
}

template <typename Rows>
void AddRows(std::vector<Rule>& rules, Subject subject, const Rows& rows, const Expansions& expansions) {
  for (const Row& row : rows) {
    rules.push_back({std::string(NameOf(subject)) + '/' + row.name, subject, row.severity, row.reason,
                     Expanded(row.wrong, expansions), Expanded(row.right, expansions)});
  }
}

void AddXmlRows(std::vector<Rule>& rules, Subject subject, const std::string& root,
                const std::string& content) {
  const std::string begin = '<' + root + '>' + content;
  const std::string end = "</" + root + '>';
  AddRows(rules, subject, xmlRows,
          {{"$[", begin + "<params><param><name>LEVEL</name>"},
           {"$]", "</param></params>" + end},
           {"$(", begin},
           {"$)", end},
           {"$*", content}});
}

std::string EntriesThatInheritTooMuch() {
  std::string entries =
      R"({"name": "A", "type": ")" + std::string(4096, 'n') + R"(", "value": {"static": 1}})";
  for (int i = 0; i < 257; ++i)
    entries += R"(, {"name": "B)" + std::to_string(i) + R"(", "value": {"static": 1}})";
  return entries;
}

std::vector<Rule> MakeRules() {
  std::vector<Rule> rules;
  AddXmlRows(rules, Subject::command, "devicecommand", "<command>SET_LEVEL</command>");
  AddXmlRows(rules, Subject::binding, "bindmessage", "<command>SET_LEVEL</command>");
  AddXmlRows(rules, Subject::conditional, "deviceconditional",
             "<name>Level</name><conditional>LESS_THAN</conditional>");
  AddRows(rules, Subject::command, commandRows,
          {{"$d", std::string(1001, '[')}, {"$n", EntriesThatInheritTooMuch()}});
  AddRows(rules, Subject::binding, bindingRows, {});
  AddRows(rules, Subject::conditional, conditionalRows, {});

  const std::string itemBegin =
      "<item majorversion=\"3\" minorversion=\"0\" buildnumber=\"0\" buildrevision=\"0\">"
      "<id>1</id><name>House</name><type>1</type><itemdata/>";
  const std::string sections =
      "<bindings/><networkbindings/><event_mgr/><variables/><scan_schedule/><plugins/>";
  const std::string item = itemBegin + "<subitems/></item>";
  AddRows(rules, Subject::project, projectRows,
          {{"$[", "<currentstate><properties/><systemitems>" + itemBegin + "<subitems>"},
           {"$]", "</subitems></item></systemitems>" + sections + "</currentstate>"},
           {"$s", "<systemitems>" + item + "</systemitems>"},
           {"$i", item},
           {"$t", sections},
           {"$(", "<currentstate>"},
           {"$)", "</currentstate>"}});
  AddRows(rules, Subject::require, requireRows, {});
  AddRows(rules, Subject::file, fileRows, {});
  std::sort(rules.begin(), rules.end(),
            [](const Rule& left, const Rule& right) { return left.id < right.id; });
  return rules;
}

}  // namespace

const char* NameOf(Severity severity) {
  constexpr const char* names[] = {"error", "warning", "note"};
  return names[static_cast<std::size_t>(severity)];
}

const char* NameOf(Subject subject) {
  constexpr const char* names[] = {"command", "binding", "conditional", "project", "require", "file"};
  return names[static_cast<std::size_t>(subject)];
}

const std::vector<Rule>& Rules() {
  static const std::vector<Rule> rules = MakeRules();
  return rules;
}

const Rule* FindRule(std::string_view id) {
  const std::vector<Rule>& rules = Rules();
  const auto found =
      std::lower_bound(rules.begin(), rules.end(), id,
                       [](const Rule& rule, std::string_view wanted) { return rule.id < wanted; });
  return found != rules.end() && found->id == id ? &*found : nullptr;
}

}  // namespace tavrin::diagnostics
