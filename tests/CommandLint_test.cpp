#include "tools/CommandLint.h"

#include <gmock/gmock.h>
#include <json/value.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;
using tool::LintCommand;
using tool::LintResult;

std::string Text(const tool::Finding& finding) {
  return std::to_string(finding.place.line) + ':' + std::to_string(finding.place.column) + ' ' + finding.text;
}

std::vector<std::string> NotesOn(const std::string& text) {
  const LintResult result = LintCommand(text);
  EXPECT_EQ(result.objection.text, "") << text;
  std::vector<std::string> notes;
  for (const tool::Finding& note : result.notes) notes.push_back(Text(note));
  return notes;
}

struct Row {
  std::string text;
  std::vector<std::string> notes;
};

bool Loads(const std::string& text) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  try {
    return message.Load(text) == 0;
  } catch (const zq::ZqError&) {
    return false;
  } catch (const Json::Exception&) {
    return false;
  }
}

std::vector<std::string> AllExamples() {
  std::vector<std::string> texts;
  for (const char* const directory : {"commands", "broken"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(TAVRIN_EXAMPLES_DIR) / directory)) {
      std::ifstream file(entry.path(), std::ios::binary);
      texts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
  }
  return texts;
}

void ExpectAgreement(const std::string& text) {
  EXPECT_EQ(LintCommand(text).objection.text.empty(), Loads(text)) << text;
}

TEST(CommandLint, ObjectsExactlyToWhatTheLoaderRefuses) {
  for (const std::string& text : AllExamples()) {
    ExpectAgreement(text);
    const std::size_t step = text.size() / 80 + 1;
    for (std::size_t length = 0; length < text.size(); length += step)
      ExpectAgreement(text.substr(0, length));
    for (std::size_t at = 0; at < text.size(); at += step) {
      std::string changed = text;
      for (const char byte : {'"', '{', '1'}) {
        changed[at] = byte;
        ExpectAgreement(changed);
      }
      changed.erase(at, 1);
      ExpectAgreement(changed);
    }
  }
}

TEST(CommandLint, NotesWhatAnXmlCommandHasBeyondWhatIsRead) {
  const auto command = [](const std::string& content) {
    return "<devicecommand><command>X</command>\n" + content + "</devicecommand>";
  };
  const auto param = [command](const std::string& content) {
    return command("<params>\n<param>" + content + "</param></params>");
  };
  const std::string name = "<name>A</name>";
  const std::vector<Row> rows = {
      {command(""), {}},
      {"<devicecommand/>", {"1:1 there is no \"command\": the command's name is empty"}},
      {"<devicecommand>on</devicecommand>",
       {"1:1 the text directly in \"devicecommand\" is passed over",
        "1:1 there is no \"command\": the command's name is empty"}},
      {command("<command>Y</command>"), {"2:1 \"command\" stands twice; the last one wins"}},
      {command("<command><b/></command>"),
       {"2:1 \"command\" stands twice; the last one wins",
        R"(2:10 element "b" in "command" is passed over)"}},
      {command("<Params/>"), {R"(2:1 element "Params" in "devicecommand" is passed over)"}},
      {command("<params/><params count=\"2\">none</params>"),
       {"2:10 an attribute of \"params\" is passed over",
        "2:10 the text directly in \"params\" is passed over"}},
      {command("<params><x\u00e9/></params>"), {"2:9 element \"x\u00e9\" in \"params\" is passed over"}},

      // the attribute layout
      {param(name + "<value type=\"n\"><static>1</static></value>"), {}},
      {param(name + "<value><static>1</static></value>"), {}},
      {param(name + "<value type=\"n\"><static><a>1</a> <a/></static></value>"), {}},
      {param("<value><static>1</static></value>"), {"3:1 a parameter without \"name\" has an empty name"}},
      {param(name), {R"(3:1 parameter "A" has no value: there is no "value")"}},
      {param(name + name + "<value><static/></value>"),
       {R"(3:22 "name" stands twice in "param"; the first one wins)"}},
      {param(name + "<value><static/></value><value><static>1</static></value>"),
       {R"(3:46 "value" stands twice in "param"; the first one wins)"}},
      {param(name + R"(<value unit="%" type="n"><static>1</static></value>)"),
       {"3:22 an attribute of \"value\" is passed over"}},
      {param(name + "<value>1</value>"),
       {"3:22 the text directly in \"value\" is passed over",
        R"(3:22 "value" holds neither "static" nor "variable": the value is empty)"}},
      {param(name + "<value><static>1<a/></static></value>"),
       {R"(3:38 element "a" in "static" is passed over)"}},
      {param(name + "<value><static>1</static><variable><deviceid>x</deviceid></variable></value>"),
       {R"(3:47 element "variable" in "value" is passed over)"}},
      {param(name + "<value><valuetype><static>1</static></valuetype></value>"),
       {R"(3:22 "value" holds neither "static" nor "variable": the value is empty)",
        R"(3:29 element "valuetype" in "value" is passed over)"}},
      {param(name + "<value><variable><deviceid>1</deviceid><variableid>2</variableid></variable></value>"),
       {}},
      {param(name + "<value><variable><variableid>2</variableid></variable></value>"),
       {R"(3:29 "variable" has no "deviceid": the parameter is static, with an empty value)"}},
      {param(name + "<value><variable><deviceid>-1</deviceid></variable></value>"),
       {R"(3:29 "variable" has no "variableid": the variable's id is 0)",
        "3:39 \"deviceid\" -1 is read as 4294967295"}},

      // the element layout
      {param(name + "<type>n</type><value><valuetype><static>1</static></valuetype></value>"), {}},
      {param(name + "<type>n</type><value><valuetype><static>1<a b=\"c\"/></static></valuetype></value>"),
       {}},
      {param(name + "<type>n</type>"), {R"(3:1 parameter "A" has no value: there is no "value")"}},
      {param(name + "<type>n</type><value type=\"n\"><static>1</static></value>"),
       {R"(3:1 parameter "A" has no value: there is no "valuetype" in "value")",
        "3:36 an attribute of \"value\" is passed over",
        R"(3:52 element "static" in "value" is passed over)"}},
      {param(name + "<type>n</type><value><valuetype type=\"n\"/></value>"),
       {"3:43 an attribute of \"valuetype\" is passed over",
        R"(3:43 "valuetype" holds neither "static" nor "variable": the value is empty)"}},
  };
  for (const Row& row : rows) EXPECT_THAT(NotesOn(row.text), ElementsAreArray(row.notes)) << row.text;
}

TEST(CommandLint, NotesNamesThatStandTwiceAcrossAllParamsElements) {
  const std::string param = "<param><name>A</name><value><static/></value></param>";
  EXPECT_THAT(NotesOn("<devicecommand><command/>\n<params>" + param + "</params>\n<params>" + param +
                      "</params></devicecommand>"),
              ElementsAreArray({"3:9 parameter \"A\" stands twice; the first one, in line 2, wins"}));
}

TEST(CommandLint, NotesWhatAJsonCommandHasBeyondWhatIsRead) {
  const auto params = [](const std::string& entries) {
    return "{\"c\": {\"command\": \"X\", \"params\": [\n" + entries + "]}}";
  };
  const std::vector<Row> rows = {
      {R"({"c": {"command": "X"}})", {}},
      {R"([{"command": "X"}])", {}},
      {R"({"c": {}})", {"1:7 there is no \"command\": the command's name is empty"}},
      {R"({"c": {"command": "X", "note": "n"}})", {"1:32 key \"note\" of the command is passed over"}},
      {R"({"c": {"command": "X"}, "d": 1, "e": null})",
       {R"(1:30 member "d" of the wrapper is passed over; the first by key, "c", counts)",
        R"(1:38 member "e" of the wrapper is passed over; the first by key, "c", counts)"}},
      {R"([{"command": "X"}, 1])", {"1:20 element 2 of the wrapper is passed over; the first one counts"}},
      {"[{\"command\": \"X\"}]\n[]", {"2:1 what stands behind the JSON value is passed over"}},
      {R"({"c": {"command": "X", "command": "Y"}})", {"1:24 Duplicate key: 'command'; the last one wins"}},

      {params(R"({"name": "A", "type": "n", "value": {"static": 1}})"), {}},
      {params(R"({"name": "A", "unit": "%"})"), {"2:23 key \"unit\" of a parameter is passed over"}},
      {params(R"({"name": 1, "type": null})"),
       {"2:10 \"name\" is a number, not a string, and is passed over",
        "2:21 \"type\" is null, not a string, and is passed over"}},
      {params(R"({"name": "A", "value": "1"})"),
       {R"(2:24 "value" is a string, not an object with "static" or "variable", and is passed over)"}},
      {params(R"({"name": "A", "value": {"text": "1"}})"), {"2:33 key \"text\" of a value is passed over"}},
      {params(R"({"name": "A", "value": {"static": 1, "variable": {"deviceid": 1, "variableid": 2}}})"),
       {R"(2:24 "static" stands beside "variable"; the parameter is variable)"}},
      {params(R"({"name": "A", "value": {"variable": 7}})"),
       {"2:37 \"variable\" is a number, not an object, and gives no ids"}},
      {params(R"({"name": "A", "value": {"variable": {"device": 7}}})"),
       {"2:48 key \"device\" of a variable is passed over"}},
      {params(R"({"name": "A", "value": {"variable": {"deviceid": 4294967297}}})"),
       {"2:50 \"deviceid\" 4294967297 is read as 1"}},
      {params(R"({"name": "A", "value": {"static": "a\u0000b"}})"),
       {"2:1 the value of parameter \"A\" is read up to its first NUL byte"}},
  };
  for (const Row& row : rows) EXPECT_THAT(NotesOn(row.text), ElementsAreArray(row.notes)) << row.text;
}

TEST(CommandLint, NotesWhatJsonEntriesInherit) {
  const auto second = [](const std::string& first, const std::string& entry) {
    return R"([{"command": "X", "params": [)" + first + ",\n" + entry + "]}]";
  };
  const std::string text = R"({"name": "A", "type": "n", "value": {"static": 1}})";
  const std::string variable =
      R"({"name": "A", "type": "n", "value": {"variable": {"deviceid": 7, "variableid": 8}}})";
  const std::string inherits = "2:1 the entry inherits from the one before it: ";
  const std::string twice = "2:1 parameter \"A\" stands twice; the first one, in line 1, wins";
  const std::vector<Row> rows = {
      {second(text, R"({"name": "B", "type": "n", "value": {"static": 1}})"), {}},
      {second(text, R"({"name": "B", "type": "", "value": {"static": ""}})"), {}},
      {second(text, R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 7, "variableid": 8}}})"),
       {}},
      {second(text, R"({"name": "B", "value": {"static": 1}})"), {inherits + "type \"n\""}},
      {second(text, R"({"name": "B", "type": "n"})"), {inherits + "value"}},
      {second(text, "null"), {inherits + R"(name "A", type "n", value)", twice}},
      {second(text, "{}"), {inherits + R"(name "A", type "n", value)", twice}},
      {second(R"({"name": "A"})", R"({"name": "B"})"), {}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"static": 1}})"),
       {inherits + "variable 7:8"}},
      {second(variable, R"({"name": "B", "type": "n"})"), {inherits + "variable 7:8"}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 1}}})"),
       {inherits + "variable id 8"}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"variable": {"variableid": 1}}})"),
       {inherits + "device id 7"}},
      {second(variable,
              R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 1, "variableid": 1}}})"),
       {}},
  };
  for (const Row& row : rows) EXPECT_THAT(NotesOn(row.text), ElementsAreArray(row.notes)) << row.text;
}

TEST(CommandLint, ObjectsToParametersThatInheritMoreThanTheyMay) {
  const auto inheriting = [](int entries) {
    std::string text = R"([{"params": [{"name": "a", "type": ")" + std::string(65536, 't') + R"("}, null)";
    for (int entry = 0; entry < entries; ++entry) text += ",\n{\"name\": \"p" + std::to_string(entry) + "\"}";
    return text + R"(, {"name": "b", "type": "own"}]}])";
  };
  ExpectAgreement(inheriting(16));
  ExpectAgreement(inheriting(17));
  EXPECT_EQ(Text(LintCommand(inheriting(16)).objection), "0:0 ");
  EXPECT_EQ(
      Text(LintCommand(inheriting(17)).objection),
      "18:1 up to this entry the parameters inherit 1114112 bytes from each other, and more than 1048576 are "
      "not accepted: ten times the length of the text, or 1 MiB");
}

TEST(CommandLint, SaysWhatTheLoaderObjectsTo) {
  const std::string wrapped = "; a command stands in a wrapper like {\"devicecommand\": {...}}";
  const auto variable = [](const std::string& id) {
    return R"([{"params": [{"value": {"variable": {"variableid": )" + id + "}}}]}]";
  };
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"", "0:0 the text is empty"},
      {" \t\r\n\v\f", "0:0 the text is blank"},
      {"\xef\xbb\xbf<x/>", "1:1 the text begins with a byte order mark, which is not accepted"},
      {"{}", "1:1 the wrapper is empty" + wrapped},
      {"\n []", "2:2 the wrapper is empty" + wrapped},
      {"[1]", "1:2 the wrapper's first element is a number, not a command object" + wrapped},
      {"[[]]", "1:2 the wrapper's first element is an array, not a command object" + wrapped},
      {"[{}, 1, 2, 3]",
       "1:1 the wrapper around the command has 4 elements, and more than 3 are not accepted" + wrapped},
      {R"({"b": {}, "a": true})",
       "1:16 the wrapper's first member by key, \"a\", is a boolean, not a command object" + wrapped},
      {R"([{"command": null}])",
       R"(1:14 "command" is null; a command object holds strings and the array "params")"},
      {R"([{"params": {}}])",
       R"(1:13 "params" is an object; a command object holds strings and the array "params")"},
      {R"([{"params": [[]]}])", "1:14 an entry of \"params\" is an array, not an object"},
      {R"([{"params": [{"value": {"static": {}}}]}])", "1:35 \"static\" is an object, which is no text"},
      {variable("-1"), "1:52 \"variableid\" is -1; an id is an unsigned number"},
      {variable("[]"), "1:52 \"variableid\" is an array; an id is an unsigned number"},
      {variable("1e30"), "1:52 \"variableid\" is 1e+30; an id is an unsigned number"},
      {"{\"a\":\n 1 2}", "2:4 Missing ',' or '}' in object declaration"},
  };
  for (const auto& [text, objection] : rows) {
    EXPECT_EQ(Text(LintCommand(text).objection), objection) << text;
    EXPECT_FALSE(Loads(text)) << text;
  }
}

}  // namespace
