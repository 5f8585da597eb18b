// Runs "tavrin binding" as a user or a script does.

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "RunTool.h"

namespace {

using testing::HasSubstr;
using testing::Not;

// Runs "tavrin binding" with options on a text from the standard input.
ProgramOutcome Binding(const std::string& input, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"binding", "-"});
  return Tool(std::move(options), input);
}

TEST(ToolBinding, ShowsKindDataPathAndParameters) {
  EXPECT_EQ(Tool({"binding", "bindings/light_level.xml"}),
            (ProgramOutcome{0,
                            "bindings/light_level.xml: command \"SET_LEVEL\", 1 parameter\n"
                            "  FIELD         VALUE\n"
                            "  data          75\n"
                            "  as a number   75\n"
                            "  as a boolean  true\n"
                            "  path          house/kitchen/ceiling\n"
                            "  NAME          TYPE    FROM    VALUE\n"
                            "  RAMP_SECONDS  number  static  2.5\n",
                            ""}));
  EXPECT_EQ(Tool({"binding", "bindings/light_on.xml"}),
            (ProgramOutcome{0, "bindings/light_on.xml: command \"ON\", 0 parameters\n", ""}));
}

TEST(ToolBinding, DistinguishesTheKinds) {
  const std::pair<const char*, const char*> rows[] = {
      {"<command>ON</command>", "command \"ON\""},
      {"<notify>LEVEL</notify>", "notification \"LEVEL\""},
      {"<notify>LEVEL</notify><query/>", "query answer \"LEVEL\""},
      {"<command>ON</command><query/>", "command \"ON\""},
      {"<command>ON</command><notify>LEVEL</notify>", R"(command "ON" and notification "LEVEL")"},
      {"<command>ON</command><notify>L</notify><query/>", R"(command "ON" and query answer "L")"},
      {"", "message without a name"},
  };
  for (const auto& [content, kind] : rows) {
    const ProgramOutcome outcome = Binding("<bindmessage>" + std::string(content) + "</bindmessage>");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "<stdin>: " + std::string(kind) + ", 0 parameters\n");
  }
}

TEST(ToolBinding, ShowsTheDataAsNumberAndBool) {
  const struct {
    const char* data;
    const char* number;
    const char* boolean;
  } rows[] = {{"0", "0", "false"},       {"12abc", "12", "true"}, {"true", "0", "false"},
              {"-5", "-5", "true"},      {"0x10", "0", "false"},  {"9999999999", "2147483647", "true"},
              {"<a>7</a>", "0", "false"}};
  for (const auto& [data, number, boolean] : rows) {
    EXPECT_EQ(
        Binding("<bindmessage><notify>N</notify><data>" + std::string(data) + "</data></bindmessage>").out,
        "<stdin>: notification \"N\", 0 parameters\n"
        "  FIELD         VALUE\n"
        "  data          " +
            std::string(data) + "\n  as a number   " + number + "\n  as a boolean  " + boolean + "\n");
  }
}

TEST(ToolBinding, ShowsMarkupDataOverSeveralLines) {
  EXPECT_THAT(Tool({"binding", "bindings/scene_stored.xml"}).out,
              HasSubstr("  data          <scene  id='3'><!-- evening --><light id=\"7\">40</light>\\n\n"
                        "                    <light id=\"8\">off &amp; locked</light></scene>\n"));
}

TEST(ToolBinding, MasksSecretsInTheTableInXmlAndInJson) {
  const std::string file = "bindings/lock_code.xml";
  EXPECT_THAT(Tool({"binding", file}).out, HasSubstr("\n  PIN   string  static  ******\n"));
  EXPECT_THAT(Tool({"binding", file, "--json"}).out, HasSubstr(R"("type":"string","value":"******")"));
  EXPECT_THAT(Tool({"binding", file, "--xml"}).out, HasSubstr("<static>******</static>"));
  for (const char* const form : {"--xml", "--json"}) {
    EXPECT_THAT(Tool({"binding", file, form}).out, Not(HasSubstr("4711"))) << form;
    EXPECT_THAT(Tool({"binding", file, form, "--show-secrets"}).out, HasSubstr("4711")) << form;
  }
}

TEST(ToolBinding, PrintsTheXmlFormOfTheWholeMessage) {
  const std::string text =
      "<bindmessage>\n <command>ON</command>\n <notify>LEVEL</notify>\n <query></query>\n "
      "<data><a>1</a></data>\n"
      "<params><param><name>A</name><value type=\"n\"><variable><deviceid>7</deviceid><variableid>8"
      "</variableid></variable></value></param></params> <path>p</path>\n</bindmessage>\n";
  EXPECT_EQ(Binding(text, {"--xml"}), (ProgramOutcome{0, text, ""}));
  EXPECT_EQ(
      Tool({"binding", "--xml", "bindings/level_answer.xml"}).out,
      "<bindmessage>\n <notify>LEVEL_CHANGED</notify>\n <query></query>\n <data>40</data>\n</bindmessage>\n");
  EXPECT_EQ(Tool({"binding", "--xml", "bindings/level_changed.xml"}).out,
            "<bindmessage>\n <notify>LEVEL_CHANGED</notify>\n <data>40</data>\n</bindmessage>\n");
}

TEST(ToolBinding, PrintsTheFormForLogsOnlyWithSecrets) {
  EXPECT_EQ(Tool({"binding", "bindings/light_on.xml", "--dump", "--show-secrets"}).out,
            "{, \"Command\": \"ON\", \"Notify\": \"\", \"Data\": \"\", \"Path\": \"\", \"DataInt\": 0, "
            "\"DataBool\": false, \"IsQueryNotify\": false, \"m_mapParams\": [], \"m_pvDataPointer\": 0}\n");
  const ProgramOutcome refused = Tool({"binding", "bindings/lock_code.xml", "--dump"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.out, "");
  EXPECT_THAT(refused.err, HasSubstr("--show-secrets"));
}

TEST(ToolBinding, WritesJsonForScripts) {
  EXPECT_EQ(
      Tool({"binding", "--json", "bindings/level_answer.xml", "bindings/light_level.xml"}).out,
      R"({"answersQuery":true,"boolean":true,"data":"40","diagnostics":[],"file":"bindings/level_answer.xml",)"
      R"("notification":"LEVEL_CHANGED","number":40,"parameters":[],"version":1})"
      "\n"
      R"({"boolean":true,"command":"SET_LEVEL","data":"75","diagnostics":[],"file":"bindings/light_level.xml",)"
      R"("number":75,"parameters":[{"name":"RAMP_SECONDS","type":"number","value":"2.5"}],)"
      R"("path":"house/kitchen/ceiling","version":1})"
      "\n");
}

TEST(ToolBinding, OmitsAbsentFieldsFromJson) {
  EXPECT_EQ(Binding("<bindmessage><command>ON</command></bindmessage>", {"--json"}).out,
            R"({"command":"ON","diagnostics":[],"file":"<stdin>","parameters":[],"version":1})"
            "\n");
  EXPECT_EQ(
      Binding("<bindmessage><notify>N</notify><data>0</data></bindmessage>", {"--json"}).out,
      R"({"answersQuery":false,"boolean":false,"data":"0","diagnostics":[],"file":"<stdin>","notification":"N",)"
      R"("number":0,"parameters":[],"version":1})"
      "\n");
}

TEST(ToolBinding, WarnsAboutIgnoredParts) {
  const std::string file = "tavrin: bindings/lenient.xml:";
  EXPECT_EQ(
      Tool({"binding", "bindings/lenient.xml"}).err,
      file + "1:1: warning: the root element is \"message\", not \"bindmessage\" [binding/root-name]\n" +
          file + "1:10: warning: attribute \"id\" of \"message\" is ignored [binding/unknown-attribute]\n" +
          file +
          "3:3: warning: \"query\" marks an answer, but this message is no notification "
          "[binding/query-without-notify]\n" +
          file +
          "4:3: warning: element \"comment\" in \"message\" is ignored (did you mean \"command\"?) "
          "[binding/unknown-element]\n" +
          file +
          "5:3: warning: \"data\" occurs again in line 6 and is ignored here; the last one is used "
          "[binding/repeated-element]\n" +
          file +
          "9:5: warning: parameter \"FADE\" is ignored here; the first one of that name, in line 8, is used "
          "[binding/duplicate-parameter]\n" +
          file +
          "10:5: warning: element \"parameter\" in \"params\" is ignored (did you mean \"param\"?) "
          "[binding/unknown-element]\n");
}

TEST(ToolBinding, ReadsEveryFileAndReportsErrorPositions) {
  EXPECT_EQ(
      Tool({"binding", "bindings/broken/bare_ampersand.xml", "bindings/broken/binary.xml",
            "bindings/broken/blank.xml", "bindings/broken/empty.xml", "bindings/broken/id_not_a_number.xml",
            "bindings/broken/mismatched_tag.xml", "bindings/broken/not_xml.json",
            "bindings/broken/truncated.xml", "bindings/broken/two_roots.xml", "bindings/none.xml",
            "bindings/light_on.xml"}),
      (ProgramOutcome{
          3, "bindings/light_on.xml: command \"ON\", 0 parameters\n",
          "tavrin: bindings/broken/bare_ampersand.xml:2:15: not well-formed (invalid token) "
          "[binding/malformed-xml]\n"
          "tavrin: bindings/broken/binary.xml:1:1: not well-formed (invalid token) [binding/malformed-xml]\n"
          "tavrin: bindings/broken/blank.xml: the text is white space only [binding/empty]\n"
          "tavrin: bindings/broken/empty.xml: the text is empty [binding/empty]\n"
          "tavrin: bindings/broken/id_not_a_number.xml:9:19: element \"deviceid\" contains \"seven\", which "
          "is "
          "not a number from -2147483648 to 4294967295 (ids are whole numbers from 0 to 4294967295) "
          "[binding/invalid-id]\n"
          "tavrin: bindings/broken/mismatched_tag.xml:2:26: mismatched tag (\"notfy\" closes here, but the "
          "innermost open element is \"notify\", from line 2, column 3) [binding/malformed-xml]\n"
          "tavrin: bindings/broken/not_xml.json:1:1: the text begins with \"{\"; a binding message is XML, "
          "which begins with \"<\" [binding/wrong-format]\n"
          "tavrin: bindings/broken/truncated.xml:3:10: no element found [binding/malformed-xml]\n"
          "tavrin: bindings/broken/two_roots.xml:2:1: junk after document element [binding/malformed-xml]\n"
          "tavrin: bindings/none.xml: No such file or directory\n"
          "tavrin: 11 files: 10 errors\n"}));
}

TEST(ToolBinding, OneBrokenMessageIsAFailure) {
  const ProgramOutcome outcome = Binding("<bindmessage>");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, "");
}

TEST(ToolBinding, RejectsInvalidCommandLines) {
  const std::vector<std::vector<std::string>> commandLines = {
      {"binding"},
      {"binding", "bindings/light_on.xml", "--xml", "--json"},
      {"binding", "bindings/light_on.xml", "--json", "--dump", "--show-secrets"},
      {"binding", "bindings/light_on.xml", "--require", "A"}};
  for (const auto& commandLine : commandLines) {
    const ProgramOutcome outcome = Tool(commandLine);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("Try 'tavrin binding --help'.\n"));
  }
}

TEST(ToolBinding, HelpStatesTheExitStatus) {
  EXPECT_THAT(Tool({"binding", "--help"}).out,
              HasSubstr("\n  3  a file cannot be read, a message or a colour is malformed"));
}

}  // namespace
