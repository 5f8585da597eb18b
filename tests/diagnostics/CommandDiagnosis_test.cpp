#include <gmock/gmock.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <string>
#include <utility>
#include <vector>

#ifndef TAVRIN_SANITIZED
#include "CountedAllocations.h"  // replaces operators that sanitizers define
#endif
#include "DescribeDiagnostics.h"

namespace tavrin::diagnostics {
namespace {

using testing::ElementsAreArray;

std::string Text(const Diagnostic& diagnostic) {
  return std::to_string(diagnostic.begin.line) + ':' + std::to_string(diagnostic.begin.column) + ' ' +
         diagnostic.text;
}

// Returns the warnings about a command, which must load.
std::vector<std::string> WarningsOf(const std::string& text) {
  const Diagnostics diagnostics = DiagnoseCommand(text);
  EXPECT_FALSE(HasError(diagnostics)) << text;
  std::vector<std::string> warnings;
  for (const Diagnostic& diagnostic : diagnostics) warnings.push_back(Text(diagnostic));
  return warnings;
}

struct Row {
  std::string text;
  std::vector<std::string> warnings;
};

TEST(CommandDiagnosis, ReportsWhatTheLoaderIgnoresOfAnXmlCommand) {
  const auto command = [](const std::string& content) {
    return "<devicecommand><command>X</command>\n" + content + "</devicecommand>";
  };
  const auto param = [command](const std::string& content) {
    return command("<params>\n<param>" + content + "</param></params>");
  };
  const std::string name = "<name>A</name>";
  const std::vector<Row> rows = {
      {command(""), {}},
      {"<devicecommand/>", {R"(1:1 there is no "command": the command's name is empty)"}},
      {"<devicecommand>on</devicecommand>",
       {R"(1:1 there is no "command": the command's name is empty)",
        R"(1:16 the text directly in "devicecommand" is ignored)"}},
      {command("<command>Y</command>"),
       {R"(1:16 "command" occurs again in line 2 and is ignored here; the last one is used)"}},
      {command("<command><b/></command>"),
       {R"(1:16 "command" occurs again in line 2 and is ignored here; the last one is used)",
        R"(2:1 "command" contains elements and no text, and is read as empty)"}},
      {command("<Params/>"), {R"(2:1 element "Params" in "devicecommand" is ignored)"}},
      {command("<params/><params count=\"2\">none</params>"),
       {R"(2:18 attribute "count" of "params" is ignored)",
        R"(2:28 the text directly in "params" is ignored)"}},
      {command("<params><x\u00e9/></params>"), {R"(2:9 element "xé" in "params" is ignored)"}},

      // the attribute layout
      {param(name + "<value type=\"n\"><static>1</static></value>"), {}},
      {param(name + "<value><static>1</static></value>"), {}},
      {param(name + "<value type=\"n\"><static><a>1</a> <a/></static></value>"), {}},
      {param("<value><static>1</static></value>"), {R"(3:1 a parameter without "name" has an empty name)"}},
      {param(name), {R"(3:1 parameter "A" has no value: there is no "value")"}},
      {param(name + name + "<value><static/></value>"),
       {R"(3:22 "name" occurs twice in "param" and is ignored here; the first one is used)"}},
      {param(name + "<value><static/></value><value><static>1</static></value>"),
       {R"(3:46 "value" occurs twice in "param" and is ignored here; the first one is used)"}},
      {param(name + R"(<value unit="%" type="n"><static>1</static></value>)"),
       {R"(3:29 attribute "unit" of "value" is ignored)"}},
      {param(name + "<value>1</value>"),
       {R"(3:22 "value" contains neither "static" nor "variable": the value is empty)",
        R"(3:29 the text directly in "value" is ignored)"}},
      {param(name + "<value><static>1<a/></static></value>"), {R"(3:38 element "a" in "static" is ignored)"}},
      {param(name + "<value><static>1</static><variable><deviceid>x</deviceid></variable></value>"),
       {R"(3:47 element "variable" in "value" is ignored)"}},
      {param(name + "<value><valuetype><static>1</static></valuetype></value>"),
       {R"(3:22 "value" contains neither "static" nor "variable": the value is empty)",
        R"(3:29 element "valuetype" in "value" is ignored)"}},
      {param(name + "<value><variable><deviceid>1</deviceid><variableid>2</variableid></variable></value>"),
       {}},
      {param(name + "<value><variable><variableid>2</variableid></variable></value>"),
       {R"(3:29 "variable" has no "deviceid": the parameter is static, with an empty value)"}},
      {param(name + "<value><variable><deviceid>-1</deviceid></variable></value>"),
       {R"(3:29 "variable" has no "variableid": the variable's id is 0)",
        R"(3:49 "deviceid" -1 is read as 4294967295)"}},

      // the element layout
      {param(name + "<type>n</type><value><valuetype><static>1</static></valuetype></value>"), {}},
      {param(name + "<type>n</type><value><valuetype><static>1<a b=\"c\"/></static></valuetype></value>"),
       {}},
      {param(name + "<type>n</type>"), {R"(3:1 parameter "A" has no value: there is no "value")"}},
      {param(name + "<type>n</type><value type=\"n\"><static>1</static></value>"),
       {R"(3:1 parameter "A" has no value: there is no "valuetype" in "value")",
        R"(3:43 attribute "type" of "value" is ignored)", R"(3:52 element "static" in "value" is ignored)"}},
      {param(name + "<type>n</type><value><valuetype type=\"n\"/></value>"),
       {R"(3:43 "valuetype" contains neither "static" nor "variable": the value is empty)",
        R"(3:54 attribute "type" of "valuetype" is ignored)"}},
  };
  for (const Row& row : rows) EXPECT_THAT(WarningsOf(row.text), ElementsAreArray(row.warnings)) << row.text;
}

TEST(CommandDiagnosis, ReportsDuplicateNamesInAllParamsElements) {
  const std::string param = "<param><name>A</name><value><static/></value></param>";
  EXPECT_THAT(WarningsOf("<devicecommand><command/>\n<params>" + param + "</params>\n<params>" + param +
                         "</params></devicecommand>"),
              ElementsAreArray(
                  {"3:9 parameter \"A\" is ignored here; the first one of that name, in line 2, is used"}));
}

TEST(CommandDiagnosis, ReportsWhatTheLoaderIgnoresOfAJsonCommand) {
  const auto params = [](const std::string& entries) {
    return "{\"c\": {\"command\": \"X\", \"params\": [\n" + entries + "]}}";
  };
  const std::vector<Row> rows = {
      {R"({"c": {"command": "X"}})", {}},
      {R"([{"command": "X"}])", {}},
      {R"({"c": {}})", {R"(1:7 there is no "command": the command's name is empty)"}},
      {R"({"c": {"command": "X", "note": "n"}})", {R"(1:24 key "note" of the command is ignored)"}},
      {R"({"c": {"command": "X"}, "d": 1, "e": null})",
       {R"(1:25 member "d" of the wrapper is ignored; the first one by key, "c", is used)",
        R"(1:33 member "e" of the wrapper is ignored; the first one by key, "c", is used)"}},
      {R"([{"command": "X"}, 1])", {"1:20 element 2 of the wrapper is ignored; the first one is used"}},
      {"[{\"command\": \"X\"}]\n[]", {"2:1 the text after the JSON value is ignored"}},
      {"[{\"command\": \"X\"}]\n/* Y */ /* Z", {"2:9 the text after the JSON value is ignored"}},
      {"[{\"command\": \"X\"}]/*/", {"1:19 the text after the JSON value is ignored"}},
      {R"({"c": {"c\u006fmmand": "X", "command": "Y"}})",
       {R"(1:8 key "command" occurs again and is ignored here; the last one is used)"}},
      {R"({"c": {"command": "X", "command": "Y"}})",
       {R"(1:8 key "command" occurs again and is ignored here; the last one is used)"}},

      {params(R"({"name": "A", "type": "n", "value": {"static": 1}})"), {}},
      {params(R"({"name": "A", "unit": "%"})"),
       {"2:1 the entry has no value", R"(2:15 key "unit" of a parameter is ignored)"}},
      {params(R"({"name": 1, "type": null})"),
       {"2:1 the entry has no value", R"(2:2 "name" is a number, not a string, and is ignored)",
        R"(2:13 "type" is null, not a string, and is ignored)"}},
      {params(R"({"name": "A", "value": "1"})"),
       {R"(2:15 "value" is a string, not an object with "static" or "variable", and is ignored)"}},
      {params(R"({"name": "A", "value": {"text": "1"}})"), {R"(2:25 key "text" of a value is ignored)"}},
      {params(R"({"name": "A", "value": {"static": 1, "variable": {"deviceid": 1, "variableid": 2}}})"),
       {R"(2:24 "value" contains "static" and "variable"; the parameter is variable)"}},
      {params(R"({"name": "A", "value": {"variable": 7}})"),
       {R"(2:37 "variable" is a number, not an object, and contains no ids)"}},
      {params(R"({"name": "A", "value": {"variable": {"device": 7}}})"),
       {R"(2:37 "variable" has no "deviceid": it is 0)", R"(2:37 "variable" has no "variableid": it is 0)",
        R"(2:38 key "device" of a variable is ignored)"}},
      {params(R"({"name": "A", "value": {"variable": {"deviceid": 4294967297}}})"),
       {R"(2:37 "variable" has no "variableid": it is 0)", R"(2:50 "deviceid" 4294967297 is read as 1)"}},
      {params(R"({"name": "A", "value": {"static": "a\u0000b"}})"),
       {R"(2:1 the value of parameter "A" is read up to its first NUL byte)"}},
  };
  for (const Row& row : rows) EXPECT_THAT(WarningsOf(row.text), ElementsAreArray(row.warnings)) << row.text;
}

TEST(CommandDiagnosis, ReportsWhatJsonEntriesInherit) {
  const auto second = [](const std::string& first, const std::string& entry) {
    return R"([{"command": "X", "params": [)" + first + ",\n" + entry + "]}]";
  };
  const std::string text = R"({"name": "A", "type": "n", "value": {"static": 1}})";
  const std::string variable =
      R"({"name": "A", "type": "n", "value": {"variable": {"deviceid": 7, "variableid": 8}}})";
  const std::string inherits = "2:1 the entry inherits from the one before it: ";
  const std::vector<Row> rows = {
      {second(text, R"({"name": "B", "type": "n", "value": {"static": 1}})"), {}},
      {second(text, R"({"name": "B", "type": "", "value": {"static": ""}})"), {}},
      {second(text, R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 7, "variableid": 8}}})"),
       {}},
      {second(text, R"({"name": "B", "value": {"static": 1}})"),
       {R"(2:1 the entry inherits from the one before it: type "n")"}},
      {second(text, R"({"name": "B", "type": "n"})"),
       {"2:1 the entry inherits from the one before it: value"}},
      {second(text, "null"),
       {R"(2:1 the entry inherits from the one before it: name "A", type "n", value)",
        R"(2:1 parameter "A" is ignored here; the first one of that name, in line 1, is used)"}},
      {second(text, "{}"),
       {R"(2:1 the entry inherits from the one before it: name "A", type "n", value)",
        R"(2:1 parameter "A" is ignored here; the first one of that name, in line 1, is used)"}},
      {second(R"({"name": "A"})", R"({"name": "B"})"),
       {"1:30 the entry has no value", "2:1 the entry has no value"}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"static": 1}})"),
       {"2:1 the entry inherits from the one before it: variable 7:8"}},
      {second(variable, R"({"name": "B", "type": "n"})"),
       {"2:1 the entry inherits from the one before it: variable 7:8"}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 1}}})"),
       {"2:1 the entry inherits from the one before it: variable id 8"}},
      {second(variable, R"({"name": "B", "type": "n", "value": {"variable": {"variableid": 1}}})"),
       {"2:1 the entry inherits from the one before it: device id 7"}},
      {second(variable,
              R"({"name": "B", "type": "n", "value": {"variable": {"deviceid": 1, "variableid": 1}}})"),
       {}},
  };
  for (const Row& row : rows) EXPECT_THAT(WarningsOf(row.text), ElementsAreArray(row.warnings)) << row.text;
}

// Returns a command with a type of 64 KiB, a parameter without that type, and others that inherit it.
std::string Inheriting(int others) {
  std::string text = R"([{"params": [{"name": "a", "type": ")" + std::string(65536, 't') + R"("}, null)";
  for (int i = 0; i < others; ++i) text += ",\n{\"name\": \"p" + std::to_string(i) + "\"}";
  return text + R"(, {"name": "b", "type": "own"}]}])";
}

TEST(CommandDiagnosis, AcceptsParametersThatInheritOneMebibyte) {
  for (const Diagnostic& diagnostic : DiagnoseCommand(Inheriting(16)))
    EXPECT_NE(diagnostic.severity, Severity::error) << diagnostic.text;
}

TEST(CommandDiagnosis, ReportsWhyTheLoaderRejectsACommand) {
  const auto variable = [](const std::string& id) {
    return R"([{"params": [{"value": {"variable": {"variableid": )" + id + "}}}]}]";
  };
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"", "0:0 the text is empty"},
      {" \t\r\n\v\f", "0:0 the text is white space only"},
      {"\xef\xbb\xbf<x/>", "1:1 the text begins with a byte order mark, which is not accepted"},
      {"{}", "1:1 the wrapper is empty"},
      {"\n []", "2:2 the wrapper is empty"},
      {"[1]", "1:2 the wrapper's first element is a number, not a command object"},
      {"[[]]", "1:2 the wrapper's first element is an array, not a command object"},
      {"[{}, 1, 2, 3]",
       "1:1 the wrapper around the command has 4 elements, and more than 3 are not accepted"},
      {R"({"b": {}, "a": true})",
       "1:16 the wrapper's first member by key, \"a\", is a boolean, not a command object"},
      {R"([{"command": null}])",
       R"(1:14 "command" is null; a command object contains strings and the array "params")"},
      {R"([{"params": {}}])",
       R"(1:13 "params" is an object; a command object contains strings and the array "params")"},
      {R"([{"params": [[]]}])", "1:14 an entry of \"params\" is an array, not an object"},
      {R"([{"params": [{"value": {"static": {}}}]}])", "1:35 \"static\" is an object, which is no text"},
      {variable("-1"), "1:52 \"variableid\" is -1; an id is an unsigned number"},
      {variable("[]"), "1:52 \"variableid\" is an array; an id is an unsigned number"},
      {variable("1e30"), "1:52 \"variableid\" is 1e+30; an id is an unsigned number"},
      {"{\"a\":\n 1 2}", "2:4 Missing ',' or '}' in object declaration"},
      {Inheriting(17),
       "18:1 up to this entry the parameters inherit 1114112 bytes from each other, and more than 1048576 "
       "are "
       "not accepted"},
      {R"([{"params": [1, )" + Inheriting(17).substr(13),
       "1:14 an entry of \"params\" is a number, not an object"},
      {R"([{"params": [{"value": {"static": []}}, )" + Inheriting(17).substr(13),
       "1:35 \"static\" is an array, which is no text"},
  };
  for (const auto& [text, objection] : rows) {
    const Diagnostics diagnostics = DiagnoseCommand(text);
    ASSERT_FALSE(diagnostics.empty()) << text;
    EXPECT_EQ(Text(diagnostics.back()), objection) << text;
    EXPECT_EQ(diagnostics.back().severity, Severity::error) << text;
  }
}

#ifndef TAVRIN_SANITIZED
TEST(CommandDiagnosis, EntriesDoNotCopyTheValueThatTheyInherit) {
  const auto bytesFor = [](int entries, const char* entry) {
    std::string text =
        R"([{"params": [{"name": "A", "value": {"static": ")" + std::string(1000000, 'x') + "\"}}";
    for (int i = 0; i < entries; ++i) text += entry;
    text += "]}]";
    const std::size_t before = allocated.total;
    DiagnoseCommand(text);
    return allocated.total - before;
  };
  for (const char* const entry : {", null", R"(, {"name": "A"})", R"(, {"type": "t"})"})
    EXPECT_LT(bytesFor(101, entry) - bytesFor(1, entry), 1000000U) << entry;
}
#endif

}  // namespace
}  // namespace tavrin::diagnostics
