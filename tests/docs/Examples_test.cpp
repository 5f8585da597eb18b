// Checks every file below examples/; a file without an expectation fails a test.

#include <gmock/gmock.h>
#include <json/value.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "DescribeParams.h"
#include "ParseXml.h"
#include "RunProgram.h"
#include "TextFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path examples = TAVRIN_EXAMPLES_DIR;

std::set<std::string> FilesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(examples / directory)) {
    if (entry.is_regular_file()) names.insert(entry.path().filename().string());
  }
  return names;
}

template <typename Map>
std::set<std::string> KeysOf(const Map& map) {
  std::set<std::string> keys;
  for (const auto& [key, value] : map) keys.insert(key);
  return keys;
}

// Each as COMMAND | NAME:TYPE=VALUE ..., with @DEVICE/VARIABLE after the value of a variable, which is empty
// unless the previous entry in JSON has one.
const std::map<std::string, std::string> commands = {
    {"camera_login.json", "LOGIN | USER:string=viewer USER_PASSWORD:string=s3cret \"quoted\""},
    {"light_follow.xml", "SET_LEVEL | LEVEL:number=@7/1001"},
    {"light_level.json", "SET_LEVEL | LEVEL:number=75 RAMP_SECONDS:number=2.5"},
    {"light_level.xml", "SET_LEVEL | LEVEL:number=75 RAMP_SECONDS:number=2,5"},
    {"light_on.xml", "ON | "},
    {"light_too_bright.xml", "SET_LEVEL | LEVEL:number=150"},
    {"lock_unlock.xml", "UNLOCK | PIN:string=4711 PIN_LENGTH:number=4 USER:string=Ada"},
    {"media_play.json",
     "PLAY | MUTE:bool=false QUEUE:xml=<queue><track id=\"17\">Overkill</track></queue> "
     "TITLE:string=Motörhead & friends VOLUME:number=-12"},
    {"media_play.xml",
     "PLAY | QUEUE:xml=<queue shuffle=\"false\">\n  <track id=\"17\">Overkill</track>\n"
     "  <track id=\"4\">Bomber &amp; more</track>\n</queue> "
     "TITLE:string=Motörhead & friends, 日本公演 VOLUME:number=-12"},
    {"scene_lenient.json", "RECALL_SCENE | FADE:number=10 ROOM:string=4 SCENE:number=3"},
    {"scene_lenient.xml", "RECALL_SCENE | FADE:number= SCENE:number=3"},
    {"thermostat_setpoint.json", "SET_SETPOINT_HEAT | CELSIUS:number=21.5 OUTDOOR:number=21.5@31/1002"},
    {"thermostat_setpoint.xml",
     "SET_SETPOINT_HEAT | CELSIUS:number=21.5 HOLD:bool=true OUTDOOR:number=@31/1002"},
};

enum class Failure { result, zqError, jsonError };

struct Broken {
  Failure failure = Failure::result;
  std::string kept = " | ";  // what was read before the failure
};

const std::map<std::string, Broken> broken = {
    {"binary.xml", {}},
    {"blank.json", {}},
    {"empty.xml", {}},
    {"entry_is_string.json", {Failure::jsonError, "SET_LEVEL | LEVEL:number=75"}},
    {"id_not_a_number.json", {Failure::jsonError, "SET_LEVEL | RAMP_SECONDS:number=2"}},
    {"id_not_a_number.xml", {Failure::zqError, "SET_LEVEL | RAMP_SECONDS:number=2"}},
    {"nested_deep.json", {Failure::jsonError}},
    {"no_wrapper.json", {}},
    {"number_in_command.json", {Failure::result, "ON | "}},
    {"plain_text.txt", {}},
    {"static_is_array.json", {Failure::jsonError, "SET_LEVEL | "}},
    {"truncated.json", {}},
    {"truncated.xml", {}},
    {"two_roots.xml", {}},
    {"undefined_entity.xml", {}},
    {"wrapper_of_four.json", {}},
    {"wrong_array.json", {Failure::result, "SET_LEVEL | "}},
};

// Each as COMMAND/NOTIFY = DATA (NUMBER) @ PATH | NAME:TYPE=VALUE ...
const std::map<std::string, std::string> bindings = {
    {"lenient.xml", "RECALL_SCENE/ = 4 (4) @  | FADE:number=10"},
    {"level_answer.xml", "/LEVEL_CHANGED = 40 (40) @  | "},
    {"level_changed.xml", "/LEVEL_CHANGED = 40 (40) @  | "},
    {"light_level.xml", "SET_LEVEL/ = 75 (75) @ house/kitchen/ceiling | RAMP_SECONDS:number=2.5"},
    {"light_on.xml", "ON/ =  (0) @  | "},
    {"lock_code.xml", "ADD_USER/ =  (0) @  | PIN:string=4711 USER:string=Ada"},
    {"scene_stored.xml",
     "/SCENE_STORED = <scene  id='3'><!-- evening --><light id=\"7\">40</light>\n"
     "    <light id=\"8\">off &amp; locked</light></scene> (0) @ house/living room | "},
    {"thermostat_state.xml",
     "/STATE_CHANGED = heating (0) @  | CELSIUS:number=20.5 HOLD:bool=Y OUTDOOR:number=@31/1002"},
};

// Each as NAME COMPARISON | NAME:TYPE=VALUE ...
const std::map<std::string, std::string> conditionals = {
    {"bare_comparison.txt", " NOT_EQUAL | "},
    {"code_is.xml", "Code EQUAL | PIN:string=4711"},
    {"follows_outdoor.xml", "Freezing LESS_THAN | OUTDOOR:number=@31/1002"},
    {"is_on.xml", "On EQUAL | "},
    {"lenient.xml", "Level BETWEEN | LEVEL:number=50"},
    {"level_below.xml", "Level LESS_THAN | LEVEL:number=50"},
    {"mode_is_not.xml", "Mode NOT_EQUAL | MODE:string=heat & cool"},
    {"temperature_reaches.xml",
     "Temperature GREATER_THAN_OR_EQUAL | CELSIUS:number=19.5 FAHRENHEIT:number=67.1"},
};

// These are not documents, except "id_not_a_number.xml", which cannot be read to its end.
const std::set<std::string> brokenBindings = {"bare_ampersand.xml", "binary.xml",         "blank.xml",
                                              "empty.xml",          "mismatched_tag.xml", "not_xml.json",
                                              "truncated.xml",      "two_roots.xml"};
const std::set<std::string> brokenConditionals = {
    "bare_ampersand.xml", "binary.xml",        "blank.xml",    "comparison_and_line_end.txt",
    "empty.xml",          "no_comparison.txt", "not_xml.json", "truncated.xml",
    "two_roots.xml"};
const std::string badId = "id_not_a_number.xml";

std::set<std::string> With(std::set<std::string> names, const std::string& name) {
  names.insert(name);
  return names;
}

TEST(Examples, EveryCommandLoadsAsExpected) {
  EXPECT_EQ(FilesIn("commands"), KeysOf(commands));
  tavrin_testing::FakeVariables variables;
  for (const auto& [file, expected] : commands) {
    SCOPED_TRACE(file);
    CCmdMessage message(variables, 0);
    EXPECT_EQ(message.Load(ReadFile(examples / "commands" / file)), 0);
    EXPECT_EQ(Describe(message), expected);
  }
}

TEST(Examples, EveryCommandIsWrittenAndReadUnchanged) {
  tavrin_testing::FakeVariables variables;
  for (const auto& [file, expected] : commands) {
    SCOPED_TRACE(file);
    const auto message = CCmdMessage::CreateFromString(ReadFile(examples / "commands" / file), variables);
    const std::string written = message->toXml(false);
    CCmdMessage again(variables, 0);
    EXPECT_EQ(again.Load(written), 0);
    EXPECT_EQ(again.toXml(false), written);
    EXPECT_EQ(again.getRawCommand(), message->getRawCommand());
    EXPECT_EQ(again.GetParamMap().size(), message->GetParamMap().size());
  }
}

TEST(Examples, EveryBrokenCommandFailsAsExpectedAndKeepsWhatWasRead) {
  EXPECT_EQ(FilesIn("broken"), KeysOf(broken));
  tavrin_testing::FakeVariables variables;
  for (const auto& [file, expected] : broken) {
    SCOPED_TRACE(file);
    const std::string text = ReadFile(examples / "broken" / file);
    CCmdMessage message(variables, 0);
    switch (expected.failure) {
      case Failure::result:
        EXPECT_EQ(message.Load(text), -1);
        break;
      case Failure::zqError:
        EXPECT_THROW(static_cast<void>(message.Load(text)), zq::ZqError);
        break;
      case Failure::jsonError:
        EXPECT_THROW(static_cast<void>(message.Load(text)), Json::Exception);
        break;
    }
    EXPECT_EQ(Describe(message), expected.kept);
  }
}

TEST(Examples, EveryBindingIsReadAndWrittenUnchanged) {
  EXPECT_EQ(FilesIn("bindings"), KeysOf(bindings));
  for (const auto& [file, expected] : bindings) {
    SCOPED_TRACE(file);
    CBindMessage message;
    zq::XmlNode::Ptr root = ParseXml(ReadFile(examples / "bindings" / file));
    EXPECT_EQ(message.fromXml(root), 0);
    EXPECT_EQ(Describe(message), expected);
    CBindMessage again;
    zq::XmlNode::Ptr rootAgain = ParseXml(message.toXml());
    EXPECT_EQ(again.fromXml(rootAgain), 0);
    EXPECT_EQ(Describe(again), expected);
    EXPECT_EQ(again.toXml(), message.toXml());
  }
}

TEST(Examples, OneBindingAnswersAQuery) {
  for (const auto& [file, expected] : bindings) {
    CBindMessage message;
    zq::XmlNode::Ptr root = ParseXml(ReadFile(examples / "bindings" / file));
    message.fromXml(root);
    EXPECT_EQ(message.toXml().find(" <query></query>\n") != std::string::npos, file == "level_answer.xml")
        << file;
  }
}

TEST(Examples, NoBrokenBindingIsReadToItsEnd) {
  EXPECT_EQ(FilesIn("bindings/broken"), With(brokenBindings, badId));
  for (const std::string& file : brokenBindings)
    EXPECT_FALSE(zq::CreateXmlDocument(ReadFile(examples / "bindings/broken" / file))) << file;
  CBindMessage message;
  zq::XmlNode::Ptr root = ParseXml(ReadFile(examples / "bindings/broken" / badId));
  EXPECT_THROW(message.fromXml(root), zq::ZqError);
  EXPECT_EQ(Describe(message), "/LEVEL_CHANGED = 40 (40) @  | AREA:number=4");
}

TEST(Examples, EveryConditionalIsReadAndWrittenUnchanged) {
  EXPECT_EQ(FilesIn("conditionals"), KeysOf(conditionals));
  for (const auto& [file, expected] : conditionals) {
    SCOPED_TRACE(file);
    const auto message = CCondMessage::Create(ReadFile(examples / "conditionals" / file));
    EXPECT_EQ(Describe(*message), expected);
    EXPECT_EQ(Describe(*CCondMessage::Create(message->toXml())), expected);
  }
}

TEST(Examples, BrokenConditionalsAreReadAsComparisonsThatAreNeverTrue) {
  EXPECT_EQ(FilesIn("conditionals/broken"), With(brokenConditionals, badId));
  for (const std::string& file : brokenConditionals) {
    SCOPED_TRACE(file);
    const std::string text = ReadFile(examples / "conditionals/broken" / file);
    CCondMessage message;
    EXPECT_EQ(message.fromXml(text), -1);
    EXPECT_EQ(message.getRawCondition(), text);
    EXPECT_FALSE(message.Test(1, 1));
    EXPECT_FALSE(message.Test(1, 2));
  }
  CCondMessage message;
  EXPECT_THROW(static_cast<void>(message.fromXml(ReadFile(examples / "conditionals/broken" / badId))),
               zq::ZqError);
  EXPECT_EQ(Describe(message), "Level  | AREA:number=4");
}

TEST(Examples, LightDriverHandlesMessagesOfAllKinds) {
  const ProgramOutcome expected = {
      1,
      "light_on.xml: from 0% to 100% in 0 s\n"
      "light_level.json: from 100% to 75% in 2.5 s\n"
      "light_follow.xml: from 75% to 40% in 0 s\n"
      "light_level.xml: from 40% to 75% in 2.5 s\n"
      "light_too_bright.xml: refused: Required parameters are invalid. E.g. Out of bounds\n"
      "lock_unlock.xml: ignored: unknown command UNLOCK\n"
      "../bindings/level_changed.xml: from 75% to 40% in 0 s\n"
      "../bindings/scene_stored.xml: ignored: unknown notification SCENE_STORED\n"
      "../bindings/light_on.xml: ignored: commands over a binding are not supported\n"
      "../conditionals/level_below.xml: Level LESS_THAN is true\n"
      "../conditionals/is_on.xml: On EQUAL is true\n"
      "../conditionals/mode_is_not.xml: ignored: unknown state Mode\n"
      "../broken/truncated.xml: refused: not a command message\n"
      "../broken/id_not_a_number.xml: refused: element \"deviceid\" contains \"seven\", which is not a "
      "number "
      "from -2147483648 to 4294967295\n"
      "none.xml: refused: the file cannot be opened\n",
      ""};
  const ProgramOutcome outcome = RunProgram(
      {{TAVRIN_LIGHT_DRIVER, "light_on.xml", "light_level.json", "light_follow.xml", "light_level.xml",
        "light_too_bright.xml", "lock_unlock.xml", "../bindings/level_changed.xml",
        "../bindings/scene_stored.xml", "../bindings/light_on.xml", "../conditionals/level_below.xml",
        "../conditionals/is_on.xml", "../conditionals/mode_is_not.xml", "../broken/truncated.xml",
        "../broken/id_not_a_number.xml", "none.xml"},
       "",
       {},
       (examples / "commands").string(),
       false,
       ""});
  EXPECT_EQ(outcome, expected);
}

TEST(Examples, FirstCommandPrintsTheOutputInTheReadme) {
  const ProgramOutcome outcome = RunProgram({{TAVRIN_FIRST_COMMAND}, "", {}, ".", false, ""});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "SET_LEVEL 40\n"
            "command \"SET_LEVEL\": parameter \"RAMP_SECONDS\" is missing, expected a number from 0 to 60\n");
  const std::string readme = ReadFile(examples.parent_path() / "README.md");
  EXPECT_THAT(readme, HasSubstr("\n```text\n" + outcome.out + "```\n"));
}

TEST(Examples, ShowRunsWithoutErrors) {
  const ProgramOutcome outcome =
      RunProgram({{(examples / "show").string(), TAVRIN_TOOL, TAVRIN_LIGHT_DRIVER}, "", {}, ".", false, ""});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* const line :
       {"\n$ tavrin command commands/light_follow.xml --variable 7:1001=40 --require LEVEL:0..100\n",
        "\n  LEVEL  number  variable 7:1001  40\n", "<static>******</static>", "\n(exit status 3)\n",
        "\ntavrin: projects/house.xml: valid, 16 items\n",
        "\ncommands/light_follow.xml: from 75% to 40% in 0 s\n"})
    EXPECT_THAT(outcome.out, HasSubstr(line));
}

TEST(Examples, LampColorPrintsChromaticitiesInsideTheGamut) {
  EXPECT_EQ(
      RunProgram(
          {{TAVRIN_LAMP_COLOR, "#ffaa00", "2700", "#0000ff", "#000000", "red"}, "", {}, ".", false, ""}),
      (ProgramOutcome{1,
                      "#ffaa00: x 0.4950, y 0.4451\n"
                      "2700: x 0.4599, y 0.4106\n"
                      "#0000ff: x 0.1509, y 0.0599\n"
                      "#000000: no colour\n"
                      "red: no colour\n",
                      ""}));
}

TEST(Examples, ShowFindsToolAndDriverWithoutArguments) {
  const std::string show = examples / "show";
  const auto outcomeWithPath = [&](const fs::path& directory) {
    return RunProgram({{show}, "", {{"PATH", directory.string() + ":/usr/bin:/bin"}}, ".", false, ""});
  };
  EXPECT_EQ(outcomeWithPath(fs::path(TAVRIN_TOOL).parent_path()),
            RunProgram({{show, TAVRIN_TOOL, TAVRIN_LIGHT_DRIVER}, "", {}, ".", false, ""}));

  // An installed tool has no driver next to it.
  const fs::path installed = fs::path(testing::TempDir()) / ("show." + std::to_string(getpid()));
  fs::create_directory(installed);
  fs::copy_file(TAVRIN_TOOL, installed / "tavrin");
  const ProgramOutcome outcome = outcomeWithPath(installed);
  fs::remove_all(installed);
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_THAT(outcome.out, HasSubstr("\ntavrin: projects/house.xml: valid, 16 items\n"));
  EXPECT_THAT(outcome.out, testing::Not(HasSubstr("light_driver")));

  EXPECT_EQ(RunProgram({{show, "/nowhere/tavrin"}, "", {}, ".", false, ""}),
            (ProgramOutcome{1, "", "show: there is no tool /nowhere/tavrin\n"}));
}

}  // namespace
