// Every file below examples/ has its expectation here; one that has none fails.

#include <gmock/gmock.h>
#include <json/value.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/ZqError.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "DescribeParams.h"
#include "FakeVariableManager.h"
#include "RunProgram.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path examples = TAVRIN_EXAMPLES_DIR;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> FilesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(examples / directory))
    names.insert(entry.path().filename().string());
  return names;
}

template <typename Map>
std::set<std::string> KeysOf(const Map& map) {
  std::set<std::string> keys;
  for (const auto& [key, value] : map) keys.insert(key);
  return keys;
}

// Each as COMMAND | NAME:TYPE=VALUE ..., with @DEVICE/VARIABLE behind the value of a variable, which is empty
// unless the entry before it in JSON has left one there.
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

enum class Failure { Result, ZqError, JsonError };

struct Broken {
  Failure failure = Failure::Result;
  std::string kept = " | ";  // what was read before the failure
};

const std::map<std::string, Broken> broken = {
    {"binary.xml", {}},
    {"blank.json", {}},
    {"empty.xml", {}},
    {"entry_is_string.json", {Failure::JsonError, "SET_LEVEL | LEVEL:number=75"}},
    {"id_not_a_number.json", {Failure::JsonError, "SET_LEVEL | RAMP_SECONDS:number=2"}},
    {"id_not_a_number.xml", {Failure::ZqError, "SET_LEVEL | RAMP_SECONDS:number=2"}},
    {"nested_deep.json", {Failure::JsonError}},
    {"no_wrapper.json", {}},
    {"number_in_command.json", {Failure::Result, "ON | "}},
    {"plain_text.txt", {}},
    {"static_is_array.json", {Failure::JsonError, "SET_LEVEL | "}},
    {"truncated.json", {}},
    {"truncated.xml", {}},
    {"two_roots.xml", {}},
    {"undefined_entity.xml", {}},
    {"wrapper_of_four.json", {}},
    {"wrong_array.json", {Failure::Result, "SET_LEVEL | "}},
};

TEST(Examples, EveryCommandIsLoadedAsItSays) {
  EXPECT_EQ(FilesIn("commands"), KeysOf(commands));
  FakeVariableManager variables;
  for (const auto& [file, expected] : commands) {
    SCOPED_TRACE(file);
    CCmdMessage message(variables, 0);
    EXPECT_EQ(message.Load(ReadFile(examples / "commands" / file)), 0);
    EXPECT_EQ(Describe(message), expected);
  }
}

TEST(Examples, EveryCommandSurvivesBeingWrittenAndReadAgain) {
  FakeVariableManager variables;
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

TEST(Examples, EveryBrokenOneFailsInItsWayAndKeepsWhatWasRead) {
  EXPECT_EQ(FilesIn("broken"), KeysOf(broken));
  FakeVariableManager variables;
  for (const auto& [file, expected] : broken) {
    SCOPED_TRACE(file);
    const std::string text = ReadFile(examples / "broken" / file);
    CCmdMessage message(variables, 0);
    switch (expected.failure) {
      case Failure::Result:
        EXPECT_EQ(message.Load(text), -1);
        break;
      case Failure::ZqError:
        EXPECT_THROW(message.Load(text), zq::ZqError);
        break;
      case Failure::JsonError:
        EXPECT_THROW(message.Load(text), Json::Exception);
        break;
    }
    EXPECT_EQ(Describe(message), expected.kept);
  }
}

TEST(Examples, TheLightDriverAnswersCommands) {
  const ProgramOutcome expected = {
      1,
      "light_on.xml: from 0% to 100% in 0 s\n"
      "light_level.json: from 100% to 75% in 2.5 s\n"
      "light_follow.xml: from 75% to 40% in 0 s\n"
      "light_level.xml: from 40% to 75% in 2.5 s\n"
      "light_too_bright.xml: refused: Required parameters are invalid. E.g. Out of bounds\n"
      "lock_unlock.xml: ignored, for the light knows no UNLOCK\n"
      "../broken/truncated.xml: refused: not a command message\n"
      "../broken/id_not_a_number.xml: refused: element \"deviceid\" holds \"seven\", which is not a number "
      "from -2147483648 to 4294967295\n"
      "none.xml: refused: the file cannot be opened\n",
      ""};
  const ProgramOutcome outcome =
      RunProgram({{TAVRIN_LIGHT_DRIVER, "light_on.xml", "light_level.json", "light_follow.xml",
                   "light_level.xml", "light_too_bright.xml", "lock_unlock.xml", "../broken/truncated.xml",
                   "../broken/id_not_a_number.xml", "none.xml"},
                  "",
                  {},
                  (examples / "commands").string(),
                  false,
                  ""});
  EXPECT_EQ(outcome, expected);
}

TEST(Examples, TheFirstCommandPrintsWhatTheReadmeSays) {
  const ProgramOutcome outcome = RunProgram({{TAVRIN_FIRST_COMMAND}, "", {}, ".", false, ""});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, testing::StartsWith("SET_LEVEL 40\n<devicecommand><command>SET_LEVEL</command>"));
  EXPECT_THAT(outcome.out, HasSubstr("<static>******</static>"));
  const std::string readme = ReadFile(examples.parent_path() / "README.md");
  EXPECT_THAT(readme, HasSubstr("\n```cpp\n" + ReadFile(examples / "first_command.cpp") + "```\n"));
  EXPECT_THAT(readme, HasSubstr("\n```\n" + outcome.out + "```\n"));
}

TEST(Examples, TheShowRunsWithoutAMistake) {
  const ProgramOutcome outcome =
      RunProgram({{(examples / "show").string(), TAVRIN_TOOL, TAVRIN_LIGHT_DRIVER}, "", {}, ".", false, ""});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* const line :
       {"\n$ tavrin command commands/light_follow.xml --variable 7:1001=40 --require LEVEL:0..100\n",
        "\n  LEVEL  number  variable 7:1001  40\n", "<static>******</static>", "\n(exit status 3)\n",
        "\ncommands/light_follow.xml: from 75% to 40% in 0 s\n"})
    EXPECT_THAT(outcome.out, HasSubstr(line));
}

}  // namespace
