// Runs "tavrin conditional" as a user or a script does.

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "RunTool.h"

namespace {

using testing::HasSubstr;
using testing::Not;

const std::string directory = "conditionals/";

// Runs "tavrin conditional" with options on an example.
ProgramOutcome Conditional(const std::string& file, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"conditional", directory + file});
  return Tool(std::move(options));
}

TEST(ToolConditional, ShowsNameComparisonAndParameters) {
  EXPECT_EQ(Conditional("level_below.xml"),
            (ProgramOutcome{0,
                            "conditionals/level_below.xml: conditional \"Level\" LESS_THAN, 1 parameter\n"
                            "  NAME   TYPE    FROM    VALUE\n"
                            "  LEVEL  number  static  50\n",
                            ""}));
  EXPECT_EQ(Conditional("is_on.xml"),
            (ProgramOutcome{0, "conditionals/is_on.xml: conditional \"On\" EQUAL, 0 parameters\n", ""}));
}

TEST(ToolConditional, AcceptsABareComparison) {
  EXPECT_EQ(
      Conditional("bare_comparison.txt"),
      (ProgramOutcome{0, "conditionals/bare_comparison.txt: conditional \"\" NOT_EQUAL, 0 parameters\n",
                      "tavrin: conditionals/bare_comparison.txt: note: the text is not XML, and is read "
                      "as the comparison alone [conditional/bare-comparison]\n"}));
  EXPECT_EQ(Conditional("bare_comparison.txt", {"--test", "false"}).out, "\"\" false NOT_EQUAL true: true\n");
}

TEST(ToolConditional, AcceptsABareComparisonWithANewlineFromAPipe) {
  EXPECT_EQ(Tool({"conditional", "-"}, "EQUAL\n").out, "<stdin>: conditional \"\" EQUAL, 0 parameters\n");
  EXPECT_EQ(Tool({"conditional", "-"}, "EQUALS\n").status, 3);
}

TEST(ToolConditional, NamesTheComparedParameter) {
  EXPECT_EQ(
      Conditional("temperature_reaches.xml", {"--test", "19"}).out,
      "Temperature 19 GREATER_THAN_OR_EQUAL 19: true (parameter \"CELSIUS\", whose text is \"19.5\")\n");
  EXPECT_EQ(
      Conditional("follows_outdoor.xml", {"--test", "-4"}).out,
      "Freezing -4 LESS_THAN 0: true (parameter \"OUTDOOR\", variable 31:1002, reads as an empty text)\n");
}

TEST(ToolConditional, EvaluatesAndReturnsTheResultAsExitStatus) {
  const struct {
    const char* file;
    std::vector<std::string> options;
    const char* sentence;
    bool isTrue;
  } rows[] = {
      {"level_below.xml", {"--test", "40"}, "Level 40 LESS_THAN 50", true},
      {"level_below.xml", {"--test", "50"}, "Level 50 LESS_THAN 50", false},
      {"level_below.xml", {"--test", "-5"}, "Level -5 LESS_THAN 50", true},
      {"level_below.xml", {"--test=49.5"}, "Level 49.5 LESS_THAN 50", true},
      {"level_below.xml", {"--test", "3000000000"}, "Level 3000000000 LESS_THAN 50", false},
      {"level_below.xml", {"--test", "true"}, "Level true LESS_THAN true", false},
      {"is_on.xml", {"--test", "true"}, "On true EQUAL true", true},
      {"is_on.xml", {"--test", "false"}, "On false EQUAL true", false},
      {"is_on.xml", {"--test", "1"}, "On 1 EQUAL (no parameter)", false},
      {"mode_is_not.xml", {"--test", "cool"}, R"(Mode "cool" NOT_EQUAL "heat & cool")", true},
      {"mode_is_not.xml", {"--test", "heat & cool"}, R"(Mode "heat & cool" NOT_EQUAL "heat & cool")", false},
      {"mode_is_not.xml", {"--test", "true", "--as", "text"}, R"(Mode "true" NOT_EQUAL "heat & cool")", true},
      {"mode_is_not.xml", {"--test", ""}, R"(Mode "" NOT_EQUAL "heat & cool")", true},
      {"mode_is_not.xml",
       {"--test", "x", "--param", "NONE"},
       R"(Mode "x" NOT_EQUAL (no parameter "NONE"))",
       false},
      {"mode_is_not.xml", {"--test", "1.5", "--param", ""}, R"(Mode 1.5 NOT_EQUAL (no parameter ""))", false},
      {"temperature_reaches.xml", {"--test", "19"}, "Temperature 19 GREATER_THAN_OR_EQUAL 19", true},
      {"temperature_reaches.xml",
       {"--test", "19", "--as", "double"},
       "Temperature 19 GREATER_THAN_OR_EQUAL 19.5",
       false},
      {"temperature_reaches.xml",
       {"--test", "67.1", "--param", "FAHRENHEIT"},
       "Temperature 67.1 GREATER_THAN_OR_EQUAL 67.1",
       true},
      {"temperature_reaches.xml",
       {"--test", "nan", "--as", "double"},
       "Temperature nan GREATER_THAN_OR_EQUAL 19.5",
       false},
      {"temperature_reaches.xml",
       {"--test", "nan"},
       R"(Temperature "nan" GREATER_THAN_OR_EQUAL "19.5")",
       false},
      {"code_is.xml", {"--test", "4711", "--show-secrets"}, "Code 4711 EQUAL 4711", true},
      {"code_is.xml",
       {"--test", "4711", "--as", "text", "--show-secrets"},
       R"(Code "4711" EQUAL "4711")",
       true},
      {"code_is.xml", {"--test", "1"}, "Code 1 EQUAL ******", false},
      {"follows_outdoor.xml", {"--test", "-4"}, "Freezing -4 LESS_THAN 0", true},
      {"follows_outdoor.xml", {"--test", "-0.5"}, "Freezing -0.5 LESS_THAN 0", true},
      {"follows_outdoor.xml", {"--test", "x"}, R"(Freezing "x" LESS_THAN "")", false},
      {"lenient.xml", {"--test", "50"}, "Level 50 BETWEEN 50", false},
  };
  for (const auto& [file, options, sentence, isTrue] : rows) {
    const ProgramOutcome outcome = Conditional(file, options);
    EXPECT_THAT(outcome.out, testing::StartsWith(std::string(sentence) + (isTrue ? ": true" : ": false")));
    EXPECT_EQ(outcome.status, isTrue ? 0 : 1) << sentence;
  }
}

TEST(ToolConditional, SentenceDescribesEveryComparison) {
  EXPECT_EQ(Tool({"conditional", "-", "--test", "true"}, "<m><name>A\nB</name><conditional/></m>").out,
            "A\\nB true \"\" true: false\n");
}

TEST(ToolConditional, NamesSeveralFilesAndFailsIfAnyIsFalse) {
  EXPECT_EQ(
      Tool({"conditional", directory + "level_below.xml", directory + "code_is.xml", "--test", "40"}),
      (ProgramOutcome{
          1,
          "conditionals/level_below.xml: Level 40 LESS_THAN 50: true (parameter \"LEVEL\", whose text is "
          "\"50\")\n"
          "conditionals/code_is.xml: Code 40 EQUAL ******: false (parameter \"PIN\")\n",
          "tavrin: 2 files: nothing to report\n"}));
}

TEST(ToolConditional, ReportsAnUnknownComparison) {
  EXPECT_THAT(
      Conditional("lenient.xml").err,
      HasSubstr("tavrin: conditionals/lenient.xml:4:3: warning: \"BETWEEN\" is none of EQUAL, NOT_EQUAL, "
                "LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL: every test is "
                "false [conditional/unknown-comparison]\n"));
}

TEST(ToolConditional, PrintsTheOtherForms) {
  EXPECT_EQ(Conditional("is_on.xml", {"--xml"}).out,
            "<deviceconditional><name>On</name><conditional>EQUAL</conditional><params></params>"
            "</deviceconditional>\n");
  EXPECT_EQ(Conditional("is_on.xml", {"--dump", "--show-secrets"}).out,
            "{, \"name_\": \"On\", \"condition_\": \"EQUAL\", \"params_\": []}\n");
  EXPECT_EQ(
      Conditional("is_on.xml", {"--json"}).out,
      R"({"comparison":"EQUAL","diagnostics":[],"file":"conditionals/is_on.xml","name":"On","parameters":[],"version":1})"
      "\n");
  EXPECT_EQ(
      Conditional("level_below.xml", {"--json", "--test", "60"}),
      (ProgramOutcome{
          1,
          R"({"comparison":"LESS_THAN","diagnostics":[],"file":"conditionals/level_below.xml","name":"Level",)"
          R"("parameters":[{"name":"LEVEL","type":"number","value":"50"}],)"
          R"("test":{"left":"60","parameter":"LEVEL","result":false,"right":"50","text":"50","type":"int"},"version":1})"
          "\n",
          ""}));
  EXPECT_THAT(Conditional("is_on.xml", {"--json", "--test", "ON"}).out,
              HasSubstr(R"("test":{"left":"ON","result":false,"type":"text"})"));
}

TEST(ToolConditional, MasksSecretsInEveryForm) {
  const std::vector<std::vector<std::string>> forms = {
      {}, {"--xml"}, {"--json"}, {"--test", "1"}, {"--test", "1", "--json"}};
  for (auto options : forms) {
    EXPECT_THAT(Conditional("code_is.xml", options).out, HasSubstr("******"));
    EXPECT_THAT(Conditional("code_is.xml", options).out, Not(HasSubstr("4711")));
    options.emplace_back("--show-secrets");
    EXPECT_THAT(Conditional("code_is.xml", options).out, HasSubstr("4711"));
  }
}

TEST(ToolConditional, ReportsErrorPositions) {
  const auto names = [](const std::string& hint) {
    return "EQUAL, NOT_EQUAL, LESS_THAN, LESS_THAN_OR_EQUAL, GREATER_THAN, GREATER_THAN_OR_EQUAL (" + hint +
           ") [conditional/wrong-format]\n";
  };
  const std::pair<const char*, std::string> rows[] = {
      {"bare_ampersand.xml", ":3:25: not well-formed (invalid token) [conditional/malformed-xml]\n"},
      {"binary.xml", ":1:1: not well-formed (invalid token) [conditional/malformed-xml]\n"},
      {"blank.xml", ": the text is white space only [conditional/empty]\n"},
      {"comparison_and_line_end.txt",
       ":1:1: the text begins with \"E\"; a conditional is XML, which begins with \"<\", or a comparison "
       "alone, "
       "and \"EQUAL\\n\" is none of " +
           names("remove the white space")},
      {"empty.xml", ": the text is empty [conditional/empty]\n"},
      {"id_not_a_number.xml",
       ":8:41: element \"variableid\" contains \"0x10\", which is not a number from -2147483648 to "
       "4294967295 (ids are whole numbers from 0 to 4294967295) [conditional/invalid-id]\n"},
      {"no_comparison.txt",
       ":1:1: the text begins with \"L\"; a conditional is XML, which begins with \"<\", or a comparison "
       "alone, "
       "and \"LESS_THAN_50\" is none of " +
           names("did you mean \"LESS_THAN\"?")},
      {"truncated.xml", ":3:25: unclosed token [conditional/malformed-xml]\n"},
      {"two_roots.xml", ":2:1: junk after document element [conditional/malformed-xml]\n"},
  };
  for (const auto& [file, error] : rows) {
    const std::string path = std::string("broken/") + file;
    const ProgramOutcome outcome = Conditional(path);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, std::string("tavrin: conditionals/").append(path).append(error));
    EXPECT_EQ(Conditional(path, {"--test", "1"}).status, 3);
  }
}

TEST(ToolConditional, RejectsInvalidCommandLines) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"--test", "x", "--as", "int"},
       "--test x: not int, expected a whole number from -2147483648 to 2147483647\n"},
      {{"--test", "true", "--as", "int"},
       "--test true: not int, expected a whole number from -2147483648 to 2147483647\n"},
      {{"--test", "2.5", "--as", "int"},
       "--test 2.5: not int, expected a whole number from -2147483648 to 2147483647\n"},
      {{"--test", "2147483648", "--as", "int"},
       "--test 2147483648: not int, expected a whole number from -2147483648 to 2147483647\n"},
      {{"--test", "TRUE", "--as", "bool"}, "--test TRUE: not bool, expected true or false\n"},
      {{"--test", "1e", "--as", "double"},
       "--test 1e: not double, expected a number, with a decimal point if it has a fraction\n"},
      {{"--test", "1", "--as", "level"}, "--as"},
      {{"--as", "int"}, "--test"},
      {{"--test", "true", "--param", "LEVEL"},
       "--param LEVEL: a bool is compared with true; to compare with a parameter, add --as text\n"},
      {{"--param", "LEVEL"}, "--test"},
      {{"--test", "1", "--xml"}, "--xml"},
      {{"--test", "1", "--dump", "--show-secrets"}, "--dump"},
      {{"--dump"}, "--show-secrets"},
      {{"--test"}, "--test"},
  };
  for (const auto& [options, error] : rows) {
    const ProgramOutcome outcome = Conditional("level_below.xml", options);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(error));
    EXPECT_THAT(outcome.err, HasSubstr("Try 'tavrin conditional --help'.\n"));
  }
}

}  // namespace
