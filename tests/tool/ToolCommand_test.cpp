// Runs "tavrin command" as a user or a script does.

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "RunTool.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// Runs "tavrin command" with options on a text from the standard input.
ProgramOutcome Command(const std::string& input, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"command", "-"});
  return Tool(std::move(options), input);
}

std::string Param(const std::string& name, const std::string& value) {
  return "<param><name>" + name + "</name><value type=\"string\"><static>" + value +
         "</static></value></param>";
}

std::string Message(const std::string& params) {
  return "<devicecommand><command>X</command><params>" + params + "</params></devicecommand>";
}

// A temporary file, removed by the destructor.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content) : path_(testing::TempDir() + "tavrin_XXXXXX") {
    close(mkstemp(path_.data()));
    std::ofstream(path_, std::ios::binary) << content;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::filesystem::remove(path_); }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

TEST(ToolCommand, ShowsTheNameAndATableOfTheParameters) {
  EXPECT_EQ(Tool({"command", "commands/light_level.xml"}),
            (ProgramOutcome{0,
                            "commands/light_level.xml: command \"SET_LEVEL\", 2 parameters\n"
                            "  NAME          TYPE    FROM    VALUE\n"
                            "  LEVEL         number  static  75\n"
                            "  RAMP_SECONDS  number  static  2,5\n",
                            ""}));
  EXPECT_EQ(Tool({"command", "commands/light_on.xml"}),
            (ProgramOutcome{0, "commands/light_on.xml: command \"ON\", 0 parameters\n", ""}));
}

TEST(ToolCommand, ReadsTheStandardInput) {
  EXPECT_EQ(Command(R"([{"command": "ON"}])"),
            (ProgramOutcome{0, "<stdin>: command \"ON\", 0 parameters\n", ""}));
}

TEST(ToolCommand, ReadsFilesWhoseNamesLookLikeOptions) {
  EXPECT_EQ(Tool({"command", "--", "--xml"}),
            (ProgramOutcome{3, "", "tavrin: --xml: No such file or directory\n"}));
}

TEST(ToolCommand, ShowsMarkupOverSeveralLinesAndAlignsWideCharacters) {
  EXPECT_EQ(Tool({"command", "commands/media_play.xml"}),
            (ProgramOutcome{0,
                            "commands/media_play.xml: command \"PLAY\", 3 parameters\n"
                            "  NAME    TYPE    FROM    VALUE\n"
                            "  QUEUE   xml     static  <queue shuffle=\"false\">\\n\n"
                            "                            <track id=\"17\">Overkill</track>\\n\n"
                            "                            <track id=\"4\">Bomber &amp; more</track>\\n\n"
                            "                          </queue>\n"
                            "  TITLE   string  static  Motörhead & friends, 日本公演\n"
                            "  VOLUME  number  static  -12\n",
                            ""}));
  EXPECT_EQ(Command(Message(Param("日本", "a") + Param("u\u0308", "b") + Param("abcde", "c"))).out,
            "<stdin>: command \"X\", 3 parameters\n"
            "  NAME   TYPE    FROM    VALUE\n"
            "  abcde  string  static  c\n"
            "  u\u0308      string  static  b\n"
            "  日本   string  static  a\n");
}

TEST(ToolCommand, ShowsVariablesWithSuppliedValues) {
  const std::string file = "commands/thermostat_setpoint.json";
  const std::string head = file +
                           ": command \"SET_SETPOINT_HEAT\", 2 parameters\n"
                           "  NAME     TYPE    FROM              VALUE\n"
                           "  CELSIUS  number  static            21.5\n"
                           "  OUTDOOR  number  variable 31:1002";
  EXPECT_EQ(Tool({"command", file}).out, head + "  (not supplied)\n");
  EXPECT_EQ(Tool({"command", file, "--variable", "31:1002=-4"}).out, head + "  -4\n");
  EXPECT_EQ(Tool({"command", file, "--variable", "31:1002=a=b"}).out, head + "  a=b\n");
  EXPECT_EQ(Tool({"command", file, "--variable", "31:1002="}).out, head + "\n");
  EXPECT_EQ(Tool({"command", "--variable=31:1002=1", "--variable", "31:1002=2", file}).out, head + "  2\n");
  EXPECT_EQ(Tool({"command", file, "--variable", "31:1003=-4", "--variable", "32:1002=-4"}).out,
            head + "  (not supplied)\n");
}

TEST(ToolCommand, ReadsEveryFileAndEndsWithTheWorstStatus) {
  EXPECT_EQ(
      Tool({"command", "broken/two_roots.xml", "none.xml", "commands/light_on.xml",
            "commands/light_follow.xml", "--require", "LEVEL"}),
      (ProgramOutcome{
          3,
          "commands/light_on.xml: command \"ON\", 0 parameters\n"
          "\n"
          "commands/light_follow.xml: command \"SET_LEVEL\", 1 parameter\n"
          "  NAME   TYPE    FROM             VALUE\n"
          "  LEVEL  number  variable 7:1001  (not supplied)\n",
          "tavrin: broken/two_roots.xml:2:1: junk after document element [command/malformed-xml]\n"
          "tavrin: none.xml: No such file or directory\n"
          "tavrin: commands/light_on.xml: required parameter \"LEVEL\" is missing [require/missing]\n"
          "tavrin: commands/light_follow.xml: required parameter \"LEVEL\" is variable 7:1001, which has "
          "no value; --variable 7:1001=VALUE supplies one [require/missing]\n"
          "tavrin: 4 files: 4 errors\n"}));
}

TEST(ToolCommand, ReportsReasonAndPositionOfAFailedLoad) {
  const std::string wrapped = " (wrap the command as in {\"devicecommand\": {...}}) [command/wrapper-";
  const std::string begin =
      "; a command is XML, which begins with \"<\", or JSON, which begins with \"{\" or \"[\" "
      "[command/wrong-format]\n";
  const std::string ids = " (ids are whole numbers from 0 to 4294967295) [command/invalid-id]\n";
  const auto goesOn = [](const std::string& message, const std::string& hint = "") {
    return " (a controller that ignores the failure continues with command " + message + ", 0 parameters" +
           hint + ") [command/member-type]\n";
  };
  const std::vector<std::pair<std::string, std::string>> expectations = {
      {"binary.xml", R"(1:1: the text begins with "\x7f")" + begin},
      {"blank.json", " the text is white space only [command/empty]\n"},
      {"empty.xml", " the text is empty [command/empty]\n"},
      {"entry_is_string.json",
       "3:3: an entry of \"params\" is a string, not an object [command/entry-type]\n"},
      {"id_not_a_number.json", "6:78: \"deviceid\" is a string; an id is an unsigned number" + ids},
      {"id_not_a_number.xml",
       "7:38: element \"deviceid\" contains \"seven\", which is not a number from -2147483648 to 4294967295" +
           ids},
      {"nested_deep.json",
       "2:999: the JSON is nested more than 1000 levels deep (a command needs no more than seven levels) "
       "[command/nested-too-deep]\n"},
      {"no_wrapper.json",
       "2:14: the wrapper's first member by key, \"command\", is a string, not a command object" + wrapped +
           "content]\n"},
      {"number_in_command.json",
       "1:49: \"priority\" is a number; a command object contains strings and the array \"params\"" +
           goesOn("\"ON\"")},
      {"plain_text.txt", "1:1: the text begins with \"S\"" + begin},
      {"static_is_array.json", "2:59: \"static\" is an array, which is no text [command/value-type]\n"},
      {"truncated.json", "6:14: Missing ':' after object member name [command/malformed-json]\n"},
      {"truncated.xml", "8:2: no element found [command/malformed-xml]\n"},
      {"two_roots.xml", "2:1: junk after document element [command/malformed-xml]\n"},
      {"undefined_entity.xml", "2:52: undefined entity [command/malformed-xml]\n"},
      {"wrapper_of_four.json",
       "1:1: the wrapper around the command has 4 members, and more than 3 are not accepted" + wrapped +
           "size]\n"},
      {"wrong_array.json",
       "1:58: \"parameters\" is an array; a command object contains strings and the array \"params\"" +
           goesOn("\"SET_LEVEL\"", "; did you mean \"params\"?")},
  };
  const auto directory = std::filesystem::path(TAVRIN_EXAMPLES_DIR) / "broken";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}),
            static_cast<std::ptrdiff_t>(expectations.size()));
  for (const auto& [file, problem] : expectations) {
    const std::string name = "broken/" + file;
    const ProgramOutcome outcome = Tool({"command", name});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, std::string("tavrin: ").append(name).append(":").append(problem));
  }
}

TEST(ToolCommand, WarnsAboutIgnoredParts) {
  const std::string json = "tavrin: commands/scene_lenient.json:";
  EXPECT_EQ(
      Tool({"command", "commands/scene_lenient.json"}),
      (ProgramOutcome{
          0,
          "commands/scene_lenient.json: command \"RECALL_SCENE\", 3 parameters\n"
          "  NAME   TYPE    FROM    VALUE\n"
          "  FADE   number  static  10\n"
          "  ROOM   string  static  4\n"
          "  SCENE  number  static  3\n",
          json +
              "4:5: warning: key \"comment\" of the command is ignored (did you mean \"command\"?) "
              "[command/unknown-key]\n" +
              json +
              "7:7: warning: the entry inherits from the one before it: type \"number\" (give every "
              "entry its own name, type and value) [command/inherited]\n" +
              json +
              "8:7: warning: parameter \"SCENE\" occurs again; the first one of that name, in line 6, "
              "is used, and later entries inherit from this one [command/duplicate-parameter]\n" +
              json +
              "9:7: warning: the entry inherits from the one before it: value (give every entry its "
              "own name, type and value) [command/inherited]\n" +
              json + "9:42: warning: key \"room\" of a parameter is ignored [command/unknown-key]\n" + json +
              "12:3: warning: member \"version\" of the wrapper is ignored; the first one by key, "
              "\"devicecommand\", is used [command/wrapper-extra]\n"}));
  const std::string xml = "tavrin: commands/scene_lenient.xml:";
  EXPECT_EQ(
      Tool({"command", "commands/scene_lenient.xml"}).err,
      xml + "1:1: warning: the root element is \"message\", not \"devicecommand\" [command/root-name]\n" +
          xml + "1:10: warning: attribute \"id\" of \"message\" is ignored [command/unknown-attribute]\n" +
          xml +
          "3:3: warning: element \"comment\" in \"message\" is ignored (did you mean \"command\"?) "
          "[command/unknown-element]\n" +
          xml +
          "6:29: warning: \"value\" contains neither \"static\" nor \"variable\": the value is empty "
          "[command/no-value]\n" +
          xml + "6:50: warning: the text directly in \"value\" is ignored [command/ignored-text]\n" + xml +
          "7:5: warning: parameter \"SCENE\" is ignored here; the first one of that name, in line 5, is used "
          "[command/duplicate-parameter]\n" +
          xml +
          "8:5: warning: element \"parameter\" in \"params\" is ignored (did you mean \"param\"?) "
          "[command/unknown-element]\n");
}

TEST(ToolCommand, ReportsNothingForTheOtherExamples) {
  for (const char* const file :
       {"camera_login.json", "light_follow.xml", "light_level.json", "light_level.xml", "light_on.xml",
        "light_too_bright.xml", "lock_unlock.xml", "media_play.json", "media_play.xml",
        "thermostat_setpoint.json", "thermostat_setpoint.xml"}) {
    const ProgramOutcome outcome = Tool({"command", std::string("commands/") + file});
    EXPECT_EQ(outcome.status, 0) << file;
    EXPECT_EQ(outcome.err, "") << file;
  }
}

TEST(ToolCommand, PrintsTheXmlForm) {
  EXPECT_EQ(Tool({"command", "--xml", "commands/light_follow.xml", "commands/light_on.xml"}),
            (ProgramOutcome{
                0,
                "<devicecommand><command>SET_LEVEL</command><params><param><name>LEVEL</name><value "
                "type=\"number\"><variable><deviceid>7</deviceid><variableid>1001</variableid></variable>"
                "</value></param></params></devicecommand>\n"
                "<devicecommand><command>ON</command><params/></devicecommand>\n",
                "tavrin: 2 files: nothing to report\n"}));
}

TEST(ToolCommand, CountsTheMessagesOfLinesAndTheirDiagnostics) {
  const std::string lines =
      "<devicecommand><command>ON</command><params/></devicecommand>\n"
      "<devicecommand><command>OFF</command><params/></devicecommand>\n";
  EXPECT_EQ(Tool({"command", "--lines", "--xml", "-"}, lines),
            (ProgramOutcome{0, lines, "tavrin: 2 messages: nothing to report\n"}));

  const std::string faulty =
      "<devicecommand><command>ON</command><params><param><name>A</name></param></params></devicecommand>\n"
      "<devicecommand>\n";
  EXPECT_THAT(Tool({"command", "--lines", "-"}, faulty).err,
              testing::EndsWith("\ntavrin: 2 messages: 1 error, 1 warning\n"));
}

TEST(ToolCommand, PrintsTheFormForLogsOnlyWithItsSecrets) {
  EXPECT_EQ(Tool({"command", "--dump", "commands/camera_login.json"}),
            (ProgramOutcome{2, "",
                            "tavrin: --dump: this form does not mask secrets, so it requires "
                            "--show-secrets\nTry 'tavrin command --help'.\n"}));
  EXPECT_EQ(
      Tool({"command", "--dump", "--show-secrets", "commands/camera_login.json"}),
      (ProgramOutcome{
          0,
          "{, \"command_\": \"LOGIN\", \"params_\": [{\"first\": \"USER\", \"second\": {\"type\": "
          "\"string\", "
          "\"bVar\": false, \"value\": \"viewer\", \"name\": \"USER\", \"var\": {\"idDevice\": 0, "
          "\"idVariable\": 0}}}{\"first\": \"USER_PASSWORD\", \"second\": {\"type\": \"string\", \"bVar\": "
          "false, \"value\": \"s3cret \"quoted\"\", \"name\": \"USER_PASSWORD\", \"var\": {\"idDevice\": 0, "
          "\"idVariable\": 0}}}, ]}\n",
          ""}));
}

TEST(ToolCommand, PrintsOneJsonDocumentALine) {
  EXPECT_EQ(
      Tool({"command", "--json", "commands/thermostat_setpoint.json", "broken/two_roots.xml", "none.xml",
            "commands/lock_unlock.xml"}),
      (ProgramOutcome{
          3,
          R"({"command":"SET_SETPOINT_HEAT","diagnostics":[],"file":"commands/thermostat_setpoint.json","parameters":[)"
          R"({"name":"CELSIUS","type":"number","value":"21.5"},)"
          R"({"device":31,"name":"OUTDOOR","type":"number","variable":1002}],"version":1})"
          "\n"
          R"({"diagnostics":[{"column":1,"line":2,"message":"junk after document element",)"
          R"("rule":"command/malformed-xml","severity":"error"}],"file":"broken/two_roots.xml","version":1})"
          "\n"
          R"({"diagnostics":[{"message":"No such file or directory","rule":"file/unreadable","severity":"error"}],)"
          R"("file":"none.xml","version":1})"
          "\n"
          R"({"command":"UNLOCK","diagnostics":[],"file":"commands/lock_unlock.xml","parameters":[)"
          R"({"masked":true,"name":"PIN","type":"string","value":"******"},)"
          R"({"name":"PIN_LENGTH","type":"number","value":"4"},{"name":"USER","type":"string","value":"Ada"}],)"
          R"("version":1})"
          "\n",
          ""}));
  EXPECT_EQ(
      Tool({"command", "--json", "commands/light_follow.xml", "--variable", "7:1001=40", "--require",
            "LEVEL:0..100", "--require", "LEVEL:bool", "--require", "LEVEL:double,1", "--require", "LEVEL",
            "--require", "RAMP"})
          .out,
      R"({"command":"SET_LEVEL","diagnostics":[{"message":"required parameter \"RAMP\" is missing",)"
      R"("rule":"require/missing","severity":"error"}],"file":"commands/light_follow.xml","parameters":[)"
      R"({"device":7,"name":"LEVEL","type":"number","value":"40","variable":1001}],"required":[)"
      R"({"name":"LEVEL","requirement":"LEVEL:0..100","value":40},)"
      R"({"name":"LEVEL","requirement":"LEVEL:bool","value":false},)"
      R"({"name":"LEVEL","requirement":"LEVEL:double,1","value":40.0},)"
      R"({"name":"LEVEL","requirement":"LEVEL","value":"40"},)"
      R"({"name":"RAMP","problem":"is missing","requirement":"RAMP"}],"version":1})"
      "\n");
}

TEST(ToolCommand, MasksSecretsEverywhereByDefault) {
  const std::string message = Message(
      Param("pin", "4711") + Param("WifiPassword2", "4711") + Param("PINCODE", "open") +
      "<param><name>PIN</name><value type=\"n\"><variable><deviceid>1</deviceid><variableid>2</variableid>"
      "</variable></value></param>");
  const std::vector<std::string> asked = {"--variable", "1:2=4711", "--require", "pin",
                                          "--require",  "PIN:int",  "--require", "WifiPassword2:1..2",
                                          "--require",  "PINCODE"};
  for (const char* const form : {"", "--xml", "--json"}) {
    SCOPED_TRACE(form);
    std::vector<std::string> options = asked;
    if (*form != '\0') options.emplace_back(form);
    const ProgramOutcome hidden = Command(message, options);
    EXPECT_EQ(hidden.status, 1);
    EXPECT_THAT(hidden.out + hidden.err, Not(HasSubstr("4711")));
    EXPECT_THAT(hidden.out, HasSubstr("******"));
    EXPECT_THAT(hidden.out, HasSubstr("open"));
    EXPECT_THAT(hidden.out + hidden.err, HasSubstr("is outside 1..2"));

    options.emplace_back("--show-secrets");
    const ProgramOutcome shown = Command(message, options);
    EXPECT_THAT(shown.out, HasSubstr("4711"));
    EXPECT_THAT(shown.out, Not(HasSubstr("******")));
    EXPECT_THAT(shown.out + shown.err, testing::ContainsRegex("is outside 1..2: .*4711"));
  }
}

TEST(ToolCommand, WarningsContainNoSecrets) {
  const ProgramOutcome outcome = Command(
      R"([{"command": "X", "params": [{"name": "PIN", "value": {"static": "4711"}}, {"name": "PASSWORD2"},)"
      R"({"name": "PIN", "value": "4711"}]}])");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, HasSubstr("inherits from the one before it: value ("));
  EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr("4711")));
}

TEST(ToolCommand, ReadsRequiredParametersLikeADriver) {
  struct Row {
    const char* value;
    const char* kind;
    const char* result;
  };
  const std::vector<Row> rows = {
      {"75", "", "75"},
      {"75", ":text", "75"},
      {"75%", ":int", "75"},
      {"many", ":int", "0"},
      {"99999999999", ":int", "2147483647"},
      {"-1", ":uint", "4294967295"},
      {"3000000000", ":uint", "2147483647"},
      {"True", ":bool", "true"},
      {"10", ":bool", "true"},
      {"yes", ":bool", "false"},
      {"2,5", ":double", "2.5"},
      {"2.5", ":double,0", "3"},
      {"-0.125", ":double,2", "-0.13"},
      {"1e300", ":double", "1e+300"},
      {"-10", ":-10..10", "-10"},
      {"10", ":-10..10", "10"},
      {"2,5", ":2.5..2.5", "2.5"},
      {"3", ":0.5..10", "3"},
      {"-2147483648", ":-2147483648..2147483647", "-2147483648"},
  };
  for (const Row& row : rows) {
    const std::string requirement = std::string("P") + row.kind;
    SCOPED_TRACE(requirement + " of " + row.value);
    const ProgramOutcome outcome = Command(Message(Param("P", row.value)), {"--require", requirement});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const auto table = outcome.out.substr(outcome.out.find("  REQUIRED"));
    const auto cells = table.substr(table.find('\n') + 1);
    EXPECT_THAT(cells, StartsWith("  " + requirement + ' '));
    EXPECT_THAT(cells, HasSubstr(std::string("  ") + row.result + ' '));
    EXPECT_THAT(cells, EndsWith(std::string("  ") + row.value + '\n'));
  }
}

TEST(ToolCommand, ShowsTheResultsOfRequiredParametersInATable) {
  EXPECT_EQ(Tool({"command", "commands/light_level.xml", "--require", "LEVEL:0..100", "--require",
                  "RAMP_SECONDS:double,0", "--require", "LEVEL:-5..5"}),
            (ProgramOutcome{
                1,
                "commands/light_level.xml: command \"SET_LEVEL\", 2 parameters\n"
                "  NAME          TYPE    FROM    VALUE\n"
                "  LEVEL         number  static  75\n"
                "  RAMP_SECONDS  number  static  2,5\n"
                "  REQUIRED               READS AS  TEXT\n"
                "  LEVEL:0..100           75        75\n"
                "  RAMP_SECONDS:double,0  3         2,5\n",
                "tavrin: commands/light_level.xml: required parameter \"LEVEL\" is outside -5..5: \"75\" "
                "[require/out-of-range]\n"}));
}

TEST(ToolCommand, ReadsTheKindAfterTheLastColonOfARequirement) {
  EXPECT_EQ(Command(Message(Param("a:b", "7")), {"--require", "a:b:int", "--require", "a:b:text"}).status, 0);
}

TEST(ToolCommand, RejectsInvalidCommandLines) {
  const std::string kinds = "expected int, uint, bool, double[,PRECISION], MIN..MAX or text after the colon";
  const std::string bounds =
      "expected whole numbers from -2147483648 to 2147483647, or numbers with a decimal point";
  const std::string digits = "expected a precision of 0 to 15 digits";
  const std::string variable = "expected DEVICE:VARIABLE=VALUE, with ids from 0 to 4294967295";
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{}, "A subcommand is required"},
      {{"frobnicate"}, "there is no subcommand or option \"frobnicate\""},
      {{"--frobnicate", "command.xml"}, "there is no subcommand or option \"--frobnicate\""},
      {{"command"}, "FILE is required"},
      {{"command", "-", "--frobnicate"}, "there is no option \"--frobnicate\""},
      {{"command", "-", "--xml", "--json"}, "--json excludes --xml"},
      {{"command", "-", "--dump", "--json", "--show-secrets"}, "--json excludes --dump"},
      {{"command", "-", "--color", "blue"}, "--color: \"blue\" is not one of auto, always, never"},
      {{"command", "-", "--color", "alwys"},
       "--color: \"alwys\" is not one of auto, always, never; did you mean always?"},
      {{"command", "-", "--format", "jsn"},
       "--format: \"jsn\" is not one of text, json, github, sarif; did you mean json?"},
      {{"conditional", "-", "--test", "1", "--as", "duoble"},
       "--as: \"duoble\" is not one of bool, int, double, text; did you mean double?"},
      {{"color", "0.3,0.3", "--diagram", "xyz"},
       "--diagram: \"xyz\" is not one of xy, uv, u'v'; did you mean xy?"},
      {{"make", "comand", "X"},
       "KIND: \"comand\" is not one of command, binding, conditional; did you mean command?"},
      {{"validate", "--fromat", "json"}, "there is no option \"--fromat\"; did you mean --format?"},
      {{"--", "valdate", "-"}, "there is no subcommand or option \"valdate\"; did you mean validate?"},
      {{"command", "-", "--variable"}, "--variable: 1 required DEVICE:VARIABLE=VALUE missing"},
      {{"command", "-", "--variable", "7:1"}, "--variable 7:1: " + variable},
      {{"command", "-", "--variable", ""}, "--variable : " + variable},
      {{"command", "-", "--variable", "=1"}, "--variable =1: " + variable},
      {{"command", "-", "--variable", "7=1"}, "--variable 7=1: " + variable},
      {{"command", "-", "--variable", ":1=1"}, "--variable :1=1: " + variable},
      {{"command", "-", "--variable", "7:=1"}, "--variable 7:=1: " + variable},
      {{"command", "-", "--variable", "7: 1=1"}, "--variable 7: 1=1: " + variable},
      {{"command", "-", "--variable", "7:-1=1"}, "--variable 7:-1=1: " + variable},
      {{"command", "-", "--variable", "4294967296:1=1"}, "--variable 4294967296:1=1: " + variable},
      {{"command", "-", "--require", ""}, "--require : expected the name of a parameter"},
      {{"command", "-", "--require", ":int"}, "--require :int: expected the name of a parameter"},
      {{"command", "-", "--require", "A:"}, "--require A:: " + kinds},
      {{"command", "-", "--require", "A:integer"}, "--require A:integer: " + kinds},
      {{"command", "-", "--require", "A:double,"}, "--require A:double,: " + digits},
      {{"command", "-", "--require", "A:double,-1"}, "--require A:double,-1: " + digits},
      {{"command", "-", "--require", "A:double,16"}, "--require A:double,16: " + digits},
      {{"command", "-", "--require", "A:1.."}, "--require A:1..: " + bounds},
      {{"command", "-", "--require", "A:..1"}, "--require A:..1: " + bounds},
      {{"command", "-", "--require", "A:1..2..3"}, "--require A:1..2..3: the bounds are not numbers"},
      {{"command", "-", "--require", "A:0..2147483648"}, "--require A:0..2147483648: " + bounds},
      {{"command", "-", "--require", "A:1.5..x"}, "--require A:1.5..x: the bounds are not numbers"},
      {{"command", "-", "--require", "A:1.5..1"}, "--require A:1.5..1: the minimum is above the maximum"},
      {{"valdate"}, "there is no subcommand or option \"valdate\"; did you mean validate?"},
      {{"command", "-", "--requir", "A"}, "there is no option \"--requir\"; did you mean --require?"},
      {{"command", "-", "--require", "A:1..0"}, "--require A:1..0: the minimum is above the maximum"},
  };
  for (const auto& [arguments, problem] : rows) {
    const ProgramOutcome outcome = Tool(arguments, "<x/>");
    EXPECT_EQ(outcome.status, 2) << problem;
    EXPECT_EQ(outcome.out, "") << problem;
    EXPECT_THAT(outcome.err, StartsWith("tavrin: " + problem + "\nTry 'tavrin"));
  }
}

TEST(ToolCommand, LimitsTheLengthOfErrors) {
  const std::string huge(1000000, 'x');
  const std::string id = "<deviceid>" + huge + "</deviceid>";
  for (const std::string& text :
       {Message("<param><name>A</name><value><variable>" + id + "</variable></value></param>"),
        "[{\"command\": " + huge + "}]", huge}) {
    const ProgramOutcome outcome = Command(text);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err, "");
    EXPECT_LT(outcome.err.size(), 500U);
  }
}

TEST(ToolCommand, HelpStatesTheExitStatus) {
  for (const auto& arguments : {std::vector<std::string>{"--help"}, {"command", "--help"}, {"-h"}}) {
    const ProgramOutcome outcome = Tool(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("Exit status (of several files, the highest one):\n  0  success\n"));
  }
  EXPECT_THAT(Tool({"command", "--help"}).out, HasSubstr("not escaped or masked: requires --show-secrets\n"));
}

TEST(ToolCommand, HelpOfTheProgramBeginsWithItsDescription) {
  EXPECT_THAT(Tool({"--help"}).out, StartsWith("Shows and checks the messages"));
}

TEST(ToolCommand, PrintsTheVersion) {
  EXPECT_EQ(Tool({"--version"}), (ProgramOutcome{0, "tavrin " TAVRIN_VERSION "\n", ""}));
}

TEST(ToolCommand, EscapesControlCharactersOfMessages) {
  const std::string nasty = R"(\u001b[2J\u0007\u0000\b\r\u007f\u0085\u202e\u200b\ufeff\\\ttab)";
  const ProgramOutcome outcome =
      Command(R"([{"command": ")" + nasty + R"(", "params": [{"name": ")" + nasty + R"(", "type": ")" +
              nasty + R"(", "value": {"static": ")" + nasty + "\xff\xc3(\"}, \"" + nasty + R"(": 1}]}])");
  const std::string shown = R"(\x1b[2J\x07\x00\x08\r\x7f\u{85}\u{202e}\u{200b}\u{feff}\\\ttab)";
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "<stdin>: command \"" + shown + "\", 1 parameter\n  NAME" +
                             std::string(shown.size() - 2, ' ') + "TYPE" +
                             std::string(shown.size() - 2, ' ') + "FROM    VALUE\n  " + shown + "  " + shown +
                             "  static  " + shown + "\\xff\\xc3(\n");
  EXPECT_THAT(outcome.err,
              HasSubstr("warning: key \"" + shown + "\" of a parameter is ignored [command/unknown-key]\n"));
  EXPECT_THAT(outcome.err, HasSubstr("is read up to its first NUL byte "));
}

TEST(ToolCommand, LineBreaksCannotForgeRows) {
  EXPECT_EQ(
      Command(
          R"([{"command": "X\nY", "params": [{"name": "A\nB", "value": {"static": "1\nC  static\n"}}]}])"),
      (ProgramOutcome{0,
                      "<stdin>: command \"X\\nY\", 1 parameter\n"
                      "  NAME  TYPE  FROM    VALUE\n"
                      "  A\\nB        static  1\\n\n"
                      "                      C  static\\n\n",
                      ""}));
}

TEST(ToolCommand, MarkupInNamesIsTextLikeAnyOther) {
  const ProgramOutcome outcome = Command(
      R"([{"command": "<b>", "params": [{"name": "</name>&\"", "type": "\"><x>", "value": {"static": "<a/>"}}]}])",
      {"--xml"});
  EXPECT_EQ(outcome.err, "");
  const ProgramOutcome again = Command(outcome.out);
  EXPECT_EQ(again, (ProgramOutcome{0,
                                   "<stdin>: command \"<b>\", 1 parameter\n"
                                   "  NAME       TYPE   FROM    VALUE\n"
                                   "  </name>&\"  \"><x>  static  <a/>\n",
                                   ""}));
}

TEST(ToolCommand, TruncatesLongValuesOnlyInTheTable) {
  constexpr std::size_t size = 1U << 20U;
  const TemporaryFile file(
      R"({"devicecommand": {"command": "X", "params": [{"name": "BIG", "value": {"static": ")" +
      std::string(size, '7') + "\"}}]}}");
  const ProgramOutcome table = Tool({"command", file.Path()});
  EXPECT_EQ(table.status, 0);
  EXPECT_EQ(table.err, "");
  EXPECT_THAT(table.out, EndsWith("  static  " + std::string(2000, '7') + "... (1048576 bytes in all)\n"));
  const ProgramOutcome json = Tool({"command", "--json", file.Path()});
  EXPECT_EQ(json.status, 0);
  EXPECT_TRUE(json.out.find("\"value\":\"" + std::string(size, '7') + "\"}],\"version\":1}\n") !=
              std::string::npos);
}

TEST(ToolCommand, AnOutputThatCannotBeWrittenIsAFailure) {
  ProgramRun run;
  run.commandLine = {TAVRIN_TOOL, "command", "commands/light_on.xml"};
  run.directory = TAVRIN_EXAMPLES_DIR;
  run.outputFile = "/dev/full";
  EXPECT_EQ(RunProgram(run),
            (ProgramOutcome{3, "", "tavrin: the output cannot be written: No space left on device\n"}));
}

// Returns the tool's output to the standard error stream, if one of the streams is a terminal.
std::string ErrorsOf(std::vector<std::string> arguments, bool outputIsTerminal, bool errorIsTerminal) {
  ProgramRun run;
  run.commandLine = std::move(arguments);
  run.commandLine.insert(run.commandLine.begin(), TAVRIN_TOOL);
  run.directory = TAVRIN_EXAMPLES_DIR;
  run.terminal = outputIsTerminal;
  run.errorTerminal = errorIsTerminal;
  run.environment = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
  return RunProgram(run).err;
}

TEST(ToolCommand, ColoursWarningsAndNotesOnlyOnATerminal) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"command", "commands/scene_lenient.xml"}, {"color", "--cct", "2704"}}) {
    EXPECT_THAT(ErrorsOf(arguments, true, false), AllOf(Not(IsEmpty()), Not(HasSubstr("\x1b["))));
    EXPECT_THAT(ErrorsOf(arguments, false, true), HasSubstr("\x1b["));
  }
}

// Returns the tool's output for a command without parameters, with the given --color option.
std::string Title(const std::vector<std::string>& options, bool terminal,
                  const std::map<std::string, std::string>& environment) {
  ProgramRun run;
  run.commandLine = {TAVRIN_TOOL, "command", "commands/light_on.xml"};
  run.commandLine.insert(run.commandLine.end(), options.begin(), options.end());
  run.directory = TAVRIN_EXAMPLES_DIR;
  run.terminal = terminal;
  run.environment = environment;
  return RunProgram(run).out;
}

TEST(ToolCommand, ColoursTerminalsByDefault) {
  const std::string plain = "commands/light_on.xml: command \"ON\", 0 parameters\n";
  const std::string coloured = "commands/light_on.xml: \x1b[1mcommand \"ON\", 0 parameters\x1b[0m\n";
  const std::map<std::string, std::string> xterm = {{"TERM", "xterm"}, {"NO_COLOR", ""}};
  const std::map<std::string, std::string> dumb = {{"TERM", "dumb"}, {"NO_COLOR", ""}};
  const std::map<std::string, std::string> noColor = {{"TERM", "xterm"}, {"NO_COLOR", "1"}};

  EXPECT_EQ(Title({}, true, xterm), coloured);
  EXPECT_EQ(Title({}, false, xterm), plain);
  EXPECT_EQ(Title({}, true, dumb), plain);
  EXPECT_EQ(Title({}, true, noColor), plain);
  EXPECT_EQ(Title({"--color", "auto"}, true, noColor), plain);
  EXPECT_EQ(Title({"--color=always"}, false, noColor), coloured);
  EXPECT_EQ(Title({"--color=always"}, true, dumb), coloured);
  EXPECT_EQ(Title({"--color", "never"}, true, xterm), plain);
  EXPECT_EQ(Title({"--color", "never", "--color", "always"}, false, xterm), coloured)
      << "the last one counts";
}

}  // namespace
