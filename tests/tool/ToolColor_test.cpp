// Runs "tavrin color" as a user or a script does.

#include <gmock/gmock.h>
#include <json/reader.h>

#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

using testing::Contains;
using testing::DoubleNear;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

ProgramOutcome Color(std::vector<std::string> arguments) {
  ProgramRun run;
  run.commandLine = std::move(arguments);
  run.commandLine.insert(run.commandLine.begin(), {TAVRIN_TOOL, "color"});
  return RunProgram(run);
}

std::vector<Json::Value> Documents(const std::string& text) {
  std::vector<Json::Value> documents;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream document(line);
    documents.emplace_back();
    document >> documents.back();
  }
  return documents;
}

// --- output ---

TEST(ToolColor, ShowsChromaticities) {
  EXPECT_EQ(Color({"0.45,0.41,0", "0.66,0.3,1"}),
            (ProgramOutcome{0,
                            "0.45,0.41,0\n"
                            "  xy            0.45, 0.41\n"
                            "  mode          0 (chromaticity)\n"
                            "  valid         yes\n"
                            "  sRGB          within the triangle\n"
                            "  HSV           hue 31, saturation 62 %, value 100 %\n"
                            "  RGB           255, 179, 97  #ffb361\n"
                            "  temperature   2820 K\n"
                            "  CIE 1960      2838.8 K, Duv +0.0007, 352.3 mired\n"
                            "                The controller uses the point of the locus that is nearest in "
                            "x, y;\n"
                            "                CIE 1960 uses the one that is nearest in u, v.\n"
                            "  uv            0.25641, 0.35043 (CIE 1960)\n"
                            "  u'v'          0.25641, 0.52564 (CIE 1976)\n"
                            "  wavelength    583.3 nm dominant, purity 58.1 % (from illuminant E)\n"
                            "  IEC sRGB      #ffb260, linear 1.0000, 0.4469, 0.1179\n"
                            "0.66,0.3,1\n"
                            "  xy            0.66, 0.3\n"
                            "  mode          1 (colour temperature)\n"
                            "  valid         yes\n"
                            "  sRGB          outside, nearest is 0.642661, 0.331466\n"
                            "  HSV           hue 2, saturation 104 %, value 100 %\n"
                            "  RGB           255, 0, 0  #ff0000\n"
                            "  temperature   1000 K\n"
                            "  CIE 1960      no temperature: beyond the ends of the Planckian locus\n"
                            "  uv            0.50000, 0.34091 (CIE 1960)\n"
                            "  u'v'          0.50000, 0.51136 (CIE 1976)\n"
                            "  wavelength    627.5 nm dominant, purity 88.0 % (from illuminant E)\n"
                            "  IEC sRGB      #ff001b, linear 1.0000, -0.0453, 0.0108\n",
                            ""}));
}

TEST(ToolColor, ShowsThatBlackIsNoValidColour) {
  const ProgramOutcome outcome = Color({"0,0,0"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("  valid         no\n"));
}

TEST(ToolColor, ShowsColourTemperatures) {
  const ProgramOutcome outcome = Color({"--cct", "2700", "--cct=6500"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, StartsWith("2700 K\n  xy            0.459858, 0.410599\n"
                                      "  mode          1 (colour temperature)\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("  temperature   2700 K\n  CIE 1960      2700.0 K, Duv +0.0000, 370.4 mired\n"));
  EXPECT_EQ(outcome.err, "");
}

TEST(ToolColor, NotesWhichTemperatureOfTheTableIsUsed) {
  EXPECT_EQ(Color({"--cct", "2709"}).err,
            "tavrin: 2709 K: note: read as 2700 K, a multiple of 10 from 1000 to 20000\n");
  EXPECT_EQ(Color({"--cct", "-5"}).err,
            "tavrin: -5 K: note: read as 1000 K, a multiple of 10 from 1000 to 20000\n");
  EXPECT_EQ(Color({"--cct", "2147483647"}).err,
            "tavrin: 2147483647 K: note: read as 20000 K, a multiple of 10 from 1000 to 20000\n");
}

TEST(ToolColor, NotesHowAFieldWithMoreThanANumberIsRead) {
  const std::vector<std::pair<std::string, std::string>> rows = {{"O.3,0.4,0", "0,0.4,0"},
                                                                 {"0.3,nan,0", "0.3,0,0"},
                                                                 {"0.3,,1", "0.3,0,1"},
                                                                 {"0.3,0.4,1st", "0.3,0.4,1"},
                                                                 {"0.3,0.4,1.9", "0.3,0.4,1"}};
  for (const auto& [text, taken] : rows) {
    const ProgramOutcome outcome = Color({text});
    EXPECT_EQ(outcome.status, 0) << text;
    EXPECT_EQ(outcome.err, "tavrin: " + text + ": note: read as " + taken + '\n');
  }
  EXPECT_EQ(Color({" 0.3 ,3e-1, 1"}).err, "");
}

TEST(ToolColor, ConvertsRGBAndHSVToEachOtherAndToAChromaticity) {
  const std::string point = "  xy            0.541685, 0.408094\n";
  const std::string orange =
      "  HSV           hue 30, saturation 100 %, value 80 %\n"
      "  RGB           204, 102, 0  #cc6600\n";
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"--rgb", "204,102,0"}, "RGB 204,102,0"},
      {{"--rgb", "#CC6600"}, "#CC6600"},
      {{"#cc6600"}, "#cc6600"},
      {{"rgb(204, 102 ,0)"}, "rgb(204, 102 ,0)"},
      {{"RGB(204,102,0)"}, "RGB(204,102,0)"},
      {{"hsv(30,100,80)"}, "hsv(30,100,80)"},
      {{"--hsv", "30,100,80"}, "HSV 30,100,80"}};
  for (const auto& [arguments, title] : rows) {
    const ProgramOutcome outcome = Color(arguments);
    EXPECT_EQ(outcome.status, 0) << title;
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, StartsWith(title + '\n' + point));
    EXPECT_THAT(outcome.out, HasSubstr("  sRGB          within the triangle\n" + orange));
  }
}

TEST(ToolColor, ReadsLinearLevels) {
  EXPECT_THAT(Color({"linear(0.5,0.5,0.5)"}).out,
              testing::AllOf(HasSubstr("  xy            0.312716, 0.329001\n"), HasSubstr("#bcbcbc\n")));
  EXPECT_THAT(Color({"linear(1,0.401977,0)"}).out, HasSubstr("RGB           255, 170, 0  #ffaa00\n"));
}

TEST(ToolColor, ShowsNoChromaticityOfBlack) {
  EXPECT_EQ(Color({"#000000"}).out,
            "#000000\n"
            "  HSV           hue 0, saturation 0 %, value 0 %\n"
            "  RGB           0, 0, 0  #000000\n");
}

// Common whites, as CIE 15 and ANSI C78.377 publish them.
TEST(ToolColor, ShowsPublishedTemperatures) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"0.34567,0.35850", "5001.7 K, Duv +0.0032"},   {"0.3127,0.3290", "6504.2 K, Duv +0.0032"},
      {"0.333333,0.333333", "5455.4 K, Duv -0.0044"}, {"0.44758,0.40745", "2855.5 K, Duv +0.0000"},
      {"0.4578,0.4101", "2725.1 K, Duv +0.0000"},     {"0.4338,0.4030", "3044.7 K, Duv +0.0000"},
      {"0.4073,0.3917", "3464.6 K, Duv +0.0000"},     {"0.3818,0.3797", "3985.0 K, Duv +0.0010"},
      {"0.3611,0.3658", "4502.8 K, Duv +0.0010"},     {"0.3447,0.3553", "5027.5 K, Duv +0.0020"},
      {"0.3287,0.3417", "5666.0 K, Duv +0.0020"},     {"0.3123,0.3282", "6532.2 K, Duv +0.0030"}};
  for (const auto& [text, temperature] : rows)
    EXPECT_THAT(Color({text}).out, HasSubstr("  CIE 1960      " + temperature)) << text;
}

TEST(ToolColor, ExplainsWhyTheControllersTemperatureDiffersOnlyWhereItDoes) {
  EXPECT_THAT(Color({"0.3127,0.329"}).out, HasSubstr("The controller uses"));
  EXPECT_THAT(Color({"6500K"}).out, Not(HasSubstr("The controller uses")));
  EXPECT_THAT(Color({"0.3,0.6"}).out, Not(HasSubstr("The controller uses")));
}

TEST(ToolColor, ReportsMeaninglessTemperatures) {
  EXPECT_THAT(Color({"0.3,0.6"}).out, HasSubstr("no temperature: Duv +0.0992, and beyond 0.05 a"));
  EXPECT_THAT(Color({"0.73,0.265"}).out, HasSubstr("no temperature: beyond the ends"));
}

TEST(ToolColor, ReadsTemperaturesWithTheirUnit) {
  const std::string warm = Color({"2500K"}).out;
  EXPECT_THAT(warm, HasSubstr("  mode          1 (colour temperature)\n"));
  EXPECT_THAT(warm, HasSubstr("  CIE 1960      2500.0 K, Duv +0.0000, 400.0 mired\n"));
  for (const char* same : {"2500k", "2500 K", "400mired", "400 Mired"})
    EXPECT_EQ(Color({same}).out, same + warm.substr(warm.find('\n')));
  EXPECT_THAT(Color({"800K"}).out, HasSubstr("valid         yes"));
  EXPECT_EQ(Color({"799.9K", "100001K", "1251mired"}).status, 3);
}

TEST(ToolColor, CallsColoursOutsideTheSpectralLocusImaginary) {
  EXPECT_THAT(Color({"0.8,0.8"}).out, HasSubstr("wavelength    none: the colour is imaginary"));
  EXPECT_THAT(Color({"0.3,0.6"}).out, Not(HasSubstr("imaginary")));
}

TEST(ToolColor, ShowsComplementaryWavelengthsOfPurples) {
  EXPECT_THAT(Color({"0.4,0.15"}).out, HasSubstr("nm complementary, purity "));
  EXPECT_THAT(Color({"0.3333333333333333,0.3333333333333333"}).out, HasSubstr("wavelength    none: white\n"));
  EXPECT_THAT(Color({"0.3333,0.3333"}).out, HasSubstr("wavelength    none: white\n"));
  EXPECT_TRUE(Documents(Color({"--json", "0.3333,0.3333"}).out).at(0)["wavelength"].isNull());
}

TEST(ToolColor, ComparesWithTheGamutOfALamp) {
  const std::vector<std::string> gamut = {"--gamut", "0.70,0.29", "0.21,0.71", "0.15,0.05"};
  const auto shown = [&gamut](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), gamut.begin(), gamut.end());
    return Color(arguments).out;
  };
  EXPECT_THAT(shown({"0.3,0.3"}), HasSubstr("  gamut         inside\n"));
  EXPECT_THAT(shown({"0.1,0.3"}), HasSubstr("  gamut         outside, nearest is 0.172"));
  const Json::Value document = Documents(shown({"--json", "0.1,0.3"})).at(0)["gamut"];
  EXPECT_EQ(document["inside"], false);
  EXPECT_NEAR(document["x"].asDouble(), 0.17213, 1e-5);
}

TEST(ToolColor, CountsMacAdamStepsFromAReference) {
  EXPECT_THAT(Color({"--reference", "white=0.3127,0.329", "0.3127,0.329", "0.3147,0.329"}).out,
              testing::AllOf(HasSubstr("0.0 MacAdam steps from white (u'v' distance 0.0000, 0.0011 a step)"),
                             HasSubstr("1.3 MacAdam steps")));
}

TEST(ToolColor, AcceptsANameBeforeAColour) {
  EXPECT_THAT(Color({"living room=2700K"}).out, StartsWith("living room: 2700K\n"));
  EXPECT_EQ(Documents(Color({"--json", "a=0.3,0.3"}).out).at(0)["name"], "a");
}

TEST(ToolColor, ShowsManyColoursInATable) {
  EXPECT_EQ(Color({"--format", "table", "bed=0.3127,0.329", "#000000", "0.3,0.6", "--gamut", "0.64,0.33",
                   "0.3,0.6", "0.15,0.06", "--reference", "0.3127,0.329"})
                .out,
            "  COLOUR   X       Y       KELVIN  DUV      CONTROLLER  GAMUT   STEPS  RGB\n"
            "  bed      0.3127  0.3290  6504    +0.0032  6360 K      inside  0.0    #ffffff\n"
            "  #000000                                                              #000000\n"
            "  0.3,0.6  0.3000  0.6000          +0.0992  6070 K      inside  108.2  #00ff00\n");
}

TEST(ToolColor, PutsASwatchBeforeEachRowOnAColourTerminal) {
  const std::string table = Color({"--format", "table", "--color", "always", "#cc6600", "#001122"}).out;
  EXPECT_THAT(LinesOf(table), testing::ElementsAre(StartsWith("    \x1b[1m  COLOUR"),
                                                   StartsWith("\x1b[48;2;204;102;000m    \x1b[0m  #cc6600"),
                                                   StartsWith("\x1b[48;2;000;017;034m    \x1b[0m  #001122")));
}

// --- files ---

ProgramOutcome ColorOf(const std::string& input,
                       std::vector<std::string> arguments = {"-", "--format", "csv"}) {
  ProgramRun run;
  run.commandLine = std::move(arguments);
  run.commandLine.insert(run.commandLine.begin(), {TAVRIN_TOOL, "color"});
  run.input = input;
  return RunProgram(run);
}

const std::string csvHeader = "label,x,y,kelvin,duv,u',v',controller_kelvin,imaginary,hex\n";

TEST(ToolColorFiles, AreLinesOfColours) {
  EXPECT_EQ(ColorOf("0.3127,0.329\n\n  warm=2700K\r\n#000000").out,
            csvHeader +
                "\"0.3127,0.329\",0.3127,0.329,6504.24,+0.003207,0.197830,0.468320,6360,no,#ffffff\n"
                "warm,0.459859027,0.4105990381,2700.00,+0.000000,0.262496,0.527350,2700,no,#ffac59\n"
                "#000000,,,,,,,,,#000000\n");
}

TEST(ToolColorFiles, AreCsvWithNamedColumnsInAnyOrder) {
  const std::string row = ",0.3,0.3,7739.03,-0.005344,0.200000,0.450000,8020,no,#eae3ff\n";
  for (const char* csv :
       {"y,Label, X \n0.3,a,0.3\n", "label;x;y\r\na;0.3;0.3\r\n", "name\tcolour\na\t0.3,0.3\n",
        "\xef\xbb\xbflabel,x,y\n\"a\",0.3,\"0.3\"", "u',v',label\n0.2,0.45,a\n", "u,v,label\n0.2,0.3,a\n",
        "label,x,y,mode\na,0.3,0.3,0\n"})
    EXPECT_EQ(ColorOf(csv).out, csvHeader + 'a' + row) << csv;
  EXPECT_EQ(Documents(ColorOf("kelvin,duv\n5000,0.01\n", {"-", "--json"}).out).at(0)["cie1960"]["duv"], 0.01);
  EXPECT_EQ(Documents(ColorOf("mired\n200\n", {"-", "--json"}).out).at(0)["cie1960"]["kelvin"], 5000.0);
  EXPECT_EQ(Documents(ColorOf("cct\n5000\n", {"-", "--json"}).out).at(0)["cie1960"]["mired"], 200.0);
  EXPECT_EQ(Documents(ColorOf("hex\n#ffaa00\n", {"-", "--json"}).out).at(0)["srgb"], "#ffaa00");
  EXPECT_EQ(Documents(ColorOf("r,g,b\n255,170,0\n", {"-", "--json"}).out).at(0)["hex"], "#ffaa00");
}

TEST(ToolColorFiles, ReportMalformedRowsByLineAndConvertTheOthers) {
  const ProgramOutcome outcome =
      ColorOf("label,x,y\n\na,0.3,0.3\n\"two\nlines\",0.3,1\n0.3,0.3\n\"open,0.3,0.3\nc,0.3,0.3\nd,,\n");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(LinesOf(outcome.out), testing::ElementsAre(testing::_, StartsWith("a,"), StartsWith("c,")));
  EXPECT_EQ(outcome.err,
            "tavrin: <stdin>:4:1: y is \"1\", expected a number at least 0 and below 1\n"
            "tavrin: <stdin>:6:1: expected 3 fields, found 2\n"
            "tavrin: <stdin>:7:1: a quoted field has no closing quote\n"
            "tavrin: <stdin>:9:1: the row contains no colour\n");
  EXPECT_EQ(ColorOf("0.3,0.3\nnothing\n").err,
            "tavrin: <stdin>:2:1: expected a colour such as 0.45,0.41, 2700K, 370mired, #ffaa00 or "
            "rgb(255,170,0)\n");
  EXPECT_EQ(ColorOf("u,v\n0.9,x\n").err, "tavrin: <stdin>:2:1: \"x\" is not a number\n");
  EXPECT_EQ(ColorOf("x;y\n0,3127;0,329\n").err,
            "tavrin: <stdin>:2:1: \"0,3127\" is not a number; the decimal separator is a point\n");
  EXPECT_EQ(ColorOf("label;mired\na;370,5\n").err, "tavrin: <stdin>:2:1: \"370,5\" is not a number\n");
  EXPECT_THAT(ColorOf("cct,duv\n2700,0.9\n").err, StartsWith("tavrin: <stdin>:2:1: outside the diagram"));
  EXPECT_THAT(ColorOf("cct,duv\n2700,nan\n").err, StartsWith("tavrin: <stdin>:2:1: "));
  EXPECT_THAT(ColorOf("u,v\n9,9\n").err, StartsWith("tavrin: <stdin>:2:1: outside the diagram"));
}

TEST(ToolColorFiles, AreConvertedInBlocksOfAThousand) {
  std::string csv = "label,x,y\n";
  std::vector<std::string> labels = {"label"};
  for (int i = 0; i < 1000; ++i) {
    const bool isBad = i == 333 || i == 777;
    csv +=
        "row " + std::to_string(i) + ',' + (isBad ? "oops" : std::to_string(0.25 + i * 0.0002)) + ",0.35\n";
    if (!isBad) labels.push_back("row " + std::to_string(i));
  }
  const ProgramOutcome outcome = ColorOf(csv);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err,
            "tavrin: <stdin>:335:1: x is \"oops\", expected a number at least 0 and below 1\n"
            "tavrin: <stdin>:779:1: x is \"oops\", expected a number at least 0 and below 1\n");
  std::vector<std::string> found;
  for (const std::string& line : LinesOf(outcome.out)) found.push_back(line.substr(0, line.find(',')));
  EXPECT_EQ(found, labels);
}

TEST(ToolColorFiles, MayContainNoColour) {
  EXPECT_EQ(ColorOf("label,x,y\n"), (ProgramOutcome{0, csvHeader, ""}));
  EXPECT_EQ(ColorOf("", {"-"}), (ProgramOutcome{0, "", ""}));
}

TEST(ToolColorFiles, AcceptTheOutputAsInput) {
  const std::string csv = ColorOf("a=0.3,0.3\n\"q\" ; b=0.45,0.41\n0.123456789,0.3\n#000000\n1000K\n").out;
  EXPECT_THAT(LinesOf(csv), SizeIs(6));
  EXPECT_EQ(ColorOf(csv).out, csv);
}

TEST(ToolColorFiles, AreShownInATableByDefault) {
  EXPECT_THAT(ColorOf("0.3,0.3\n", {"-"}).out, StartsWith("  COLOUR "));
  EXPECT_THAT(ColorOf("0.3,0.3\n", {"--input", "-"}).out, StartsWith("  COLOUR "));
  EXPECT_THAT(ColorOf("0.3,0.3\n", {"-", "--format", "text"}).out, StartsWith("0.3,0.3\n"));
  EXPECT_THAT(ColorOf("0.3,0.3\n", {"-", "--json"}).out, StartsWith("{"));
  EXPECT_EQ(ColorOf("", {"-i", "/nowhere.csv"}),
            (ProgramOutcome{3, "", "tavrin: /nowhere.csv: No such file or directory\n"}));
}

TEST(ToolColor, RoundsLevels) {
  EXPECT_THAT(Color({"--rgb", "0.5,127.4,254.6"}).out, HasSubstr("RGB           1, 127, 255  #017fff\n"));
  EXPECT_THAT(Color({"--hsv", "0,0,50"}).out, HasSubstr("RGB           128, 128, 128  #808080\n"));
}

TEST(ToolColor, ShowsArgumentsFirstAndThenOptionsByKind) {
  const ProgramOutcome outcome =
      Color({"--hsv", "1,2,3", "--rgb", "4,5,6", "--cct", "7000", "0.1,0.2,0", "#080808", "--cct", "8000"});
  std::vector<std::string> titles;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);)
    if (line[0] != ' ') titles.push_back(line);
  EXPECT_THAT(titles,
              testing::ElementsAre("0.1,0.2,0", "#080808", "7000 K", "8000 K", "RGB 4,5,6", "HSV 1,2,3"));
}

TEST(ToolColor, ShowsASwatchOnAColourTerminal) {
  EXPECT_THAT(Color({"--color", "always", "#cc6600"}).out,
              StartsWith("\x1b[1m#cc6600\x1b[0m  \x1b[48;2;204;102;000m    \x1b[0m\n"));
  EXPECT_THAT(Color({"--color", "never", "#cc6600"}).out, Not(HasSubstr("\x1b")));
}

TEST(ToolColor, EscapesNonAsciiCharacters) {
  const ProgramOutcome outcome = Color({"0.3\x1b[31m,0.4,1"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, Not(HasSubstr("\x1b")));
  EXPECT_THAT(Color({"0.3\x1b[31m"}).err, Not(HasSubstr("\x1b")));
}

TEST(ToolColor, WritesJson) {
  const ProgramOutcome outcome = Color({"--json", "0.4,0.1,1", "--rgb", "204,102,0"});
  EXPECT_EQ(outcome.status, 0);
  const std::vector<Json::Value> documents = Documents(outcome.out);
  ASSERT_THAT(documents, SizeIs(2));
  const Json::Value& point = documents[0];
  EXPECT_EQ(point["given"], "0.4,0.1,1");
  EXPECT_EQ(point["color"], "0.4,0.1,1");
  EXPECT_EQ(point["x"], 0.4);
  EXPECT_EQ(point["y"], 0.1);
  EXPECT_EQ(point["mode"], 1);
  EXPECT_EQ(point["valid"], true);
  EXPECT_EQ(point["isSRGB"], false);
  EXPECT_THAT(point["nearestSRGB"]["x"].asDouble(), DoubleNear(0.35868, 1e-5));
  EXPECT_THAT(point["nearestSRGB"]["y"].asDouble(), DoubleNear(0.17499, 1e-5));
  EXPECT_EQ(point["kelvin"].asInt(), 13430);
  EXPECT_EQ(point["hsv"]["s"], 100.0);
  const Json::Value& rgb = documents[1];
  EXPECT_NEAR(rgb["x"].asDouble(), 0.541685, 1e-6);
  EXPECT_EQ(rgb["given"], "RGB 204,102,0");
  EXPECT_EQ(rgb["hex"], "#cc6600");
  EXPECT_EQ(rgb["hsv"]["h"], 30.0);
  EXPECT_EQ(rgb["hsv"]["v"], 80.0);
  EXPECT_EQ(rgb["rgb"]["r"], 204);
  EXPECT_EQ(rgb["rgb"]["g"], 102);
  EXPECT_EQ(rgb["rgb"]["b"], 0);
}

TEST(ToolColor, WritesShortestNumbersInJson) {
  EXPECT_EQ(
      Color({"--json", "0.66,0.3,0", "--format", "json"}).out,
      R"({"cie1960":{"duv":null,"kelvin":null,"u":0.5,"v":0.340909},"cie1976":{"u":0.5,"v":0.511364},)"
      R"("color":"0.66,0.3,0","given":"0.66,0.3,0","hex":"#ff0000","hsv":{"h":2.0,"s":104.0,"v":100.0},)"
      R"("imaginary":false,"isSRGB":false,"kelvin":1000,"mode":0,)"
      R"("nearestSRGB":{"x":0.642661341853035,"y":0.331466453674121},"rgb":{"b":0,"g":0,"r":255},)"
      R"("srgb":"#ff001b","valid":true,)"
      R"("wavelength":{"complementary":false,"nanometres":627.52,"purity":0.8802},"x":0.66,"y":0.3})"
      "\n");
}

TEST(ToolColor, WritesTheValuesOfCieInJson) {
  const Json::Value white = Documents(Color({"--json", "0.3127,0.329"}).out).at(0);
  EXPECT_EQ(white["kelvin"], 6360);
  EXPECT_EQ(white["cie1960"]["kelvin"], 6504.24);
  EXPECT_EQ(white["cie1960"]["duv"], 0.003207);
  EXPECT_EQ(white["cie1960"]["u"], 0.19783);
  EXPECT_EQ(white["cie1960"]["v"], 0.312213);
  const Json::Value green = Documents(Color({"--json", "0.3,0.6", "--reference", "0.3,0.6"}).out).at(0);
  EXPECT_TRUE(green["cie1960"]["kelvin"].isNull());
  EXPECT_EQ(green["cie1960"]["duv"].asDouble(), 0.099186);
  EXPECT_EQ(green["difference"]["macAdamSteps"], 0.0);
  EXPECT_TRUE(Documents(Color({"--json", "0.8,0.8"}).out).at(0)["imaginary"].asBool());
}

// --- rejected input ---

TEST(ToolColor, ReportsMalformedInputAndShowsTheOthers) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"", R"("": expected a colour such as 0.45,0.41, 2700K, 370mired, #ffaa00 or rgb(255,170,0))"},
      {"2700", "2700: expected a colour such as 0.45,0.41, 2700K, 370mired, #ffaa00 or rgb(255,170,0)"},
      {"0.3,0.3,0,1", "0.3,0.3,0,1: expected x,y or x,y,mode, found 4 fields"},
      {"0.3,0.3x", R"(0.3,0.3x: y is "0.3x", expected a number at least 0 and below 1)"},
      {"-0.1,0.3", R"(-0.1,0.3: x is "-0.1", expected a number at least 0 and below 1)"},
      {"xK", R"(xK: "x" is not a number)"},
      {"0mired", "0mired: expected a temperature from 800 K to 100000 K (1250 to 10 mired)"},
      {"rgb(1,2)", "rgb(1,2): expected R,G,B"},
      {"rgb(1,2,3", R"(rgb(1,2,3: y is "2", expected a number at least 0 and below 1)"},
      {"linear(0,0,2)", R"(linear(0,0,2): B is "2", expected a number from 0 to 1)"},
      {",0.3,0", ",0.3,0: x is empty"},
      {"0.3,0.3,", "0.3,0.3,: mode is empty"},
      {"1,0.3,0", R"(1,0.3,0: x is "1", expected a number at least 0 and below 1)"},
      {"0.3,1.5,7", R"(0.3,1.5,7: y is "1.5", expected a number at least 0 and below 1)"},
      {"0.3,0.3,2", R"(0.3,0.3,2: mode is "2", expected 0 for a chromaticity or 1 for a colour temperature)"},
      {"#12345", "#12345: expected #RRGGBB"},
      {"#12345g", "#12345g: expected #RRGGBB"},
      {"#1234567", "#1234567: expected #RRGGBB"},
  };
  for (const auto& [text, error] : rows) {
    const ProgramOutcome outcome = Color({text, "#cc6600"});
    EXPECT_EQ(outcome.status, 3) << text;
    EXPECT_EQ(outcome.err, "tavrin: " + error + '\n');
    EXPECT_THAT(outcome.out, StartsWith("#cc6600\n"));
  }
}

TEST(ToolColor, FailsIfNoInputCanBeRead) { EXPECT_EQ(Color({"nothing"}).status, 3); }

TEST(ToolColor, RefusesMalformedOptions) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"--cct", "warm"}, R"(--cct: "warm": expected a whole number of kelvin)"},
      {{"--cct", "2700.5"}, R"(--cct: "2700.5": expected a whole number of kelvin)"},
      {{"--cct", "2147483648"}, R"(--cct: "2147483648": expected a whole number of kelvin)"},
      {{"--rgb", "1,2"}, R"(--rgb: "1,2": expected R,G,B)"},
      {{"--rgb", "1,2,3,4"}, R"(--rgb: "1,2,3,4": expected R,G,B)"},
      {{"--rgb", "1,2,256"}, R"(--rgb: "1,2,256": B is "256", expected a number from 0 to 255)"},
      {{"--rgb", "1,-2,3"}, R"(--rgb: "1,-2,3": G is "-2", expected a number from 0 to 255)"},
      {{"--rgb", "1, 2,3"}, R"(--rgb: "1, 2,3": G is " 2", expected a number from 0 to 255)"},
      {{"--rgb", "#12"}, R"(--rgb: "#12": expected #RRGGBB)"},
      {{"--hsv", "361,2,3"}, R"(--hsv: "361,2,3": H is "361", expected a number from 0 to 360)"},
      {{"--hsv", "1,nan,3"}, R"(--hsv: "1,nan,3": S is "nan", expected a number from 0 to 100)"},
      {{"--hsv", "1,2,"}, R"(--hsv: "1,2,": V is "", expected a number from 0 to 100)"},
      {{"--gamut", "0.7,0.3", "0.2,0.7", "0.1", "0.3,0.3"}, R"(--gamut: "0.1": expected x,y)"},
      {{"--gamut", "0.1,0.1", "0.2,0.2", "0.3,0.3", "0.4,0.3"},
       "--gamut: the three primaries are on one line and span no triangle"},
      {{"--reference", "#000000"}, R"(--reference: "#000000": black has no chromaticity)"},
      {{"--plot", "plot.png", "0.3,0.3"},
       R"(--plot: "plot.png": the picture is SVG; use a name that ends with .svg, or - for the standard output)"},
      {{}, "A colour is required"},
  };
  for (const auto& [arguments, error] : rows)
    EXPECT_EQ(Color(arguments),
              (ProgramOutcome{2, "", "tavrin: " + error + "\nTry 'tavrin color --help'.\n"}));
}

// --- the plot ---

// A drawing of colours, split into its elements.
class Drawing {
 public:
  explicit Drawing(std::vector<std::string> arguments, const std::string& input = "")
      : path_(testing::TempDir() + "tavrin_plot_" + std::to_string(getpid()) + ".svg") {
    arguments.insert(arguments.end(), {"--plot", path_});
    outcome_ = ColorOf(input, std::move(arguments));
    text_ = ReadFile(path_);
    std::filesystem::remove(path_);
    if (const auto document = zq::CreateXmlDocument(text_)) Collect(document->GetRoot());
  }

  const ProgramOutcome& Outcome() const { return outcome_; }
  const std::string& Text() const { return text_; }

  // Returns the elements of a class.
  std::vector<zq::XmlNode::Ptr> OfClass(const std::string& name) const {
    std::vector<zq::XmlNode::Ptr> found;
    for (const zq::XmlNode::Ptr& node : nodes_) {
      std::istringstream classes(node->GetAttribute("class"));
      for (std::string one; classes >> one;)
        if (one == name) found.push_back(node);
    }
    return found;
  }

  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const zq::XmlNode::Ptr& node : nodes_)
      if (node->IsName("text")) texts.push_back(node->GetData());
    return texts;
  }

 private:
  void Collect(const zq::XmlNode::Ptr& node) {
    nodes_.push_back(node);
    zq::XmlNodeIterator* children = node->GetIterator();
    for (zq::XmlNode::Ptr child = children->First(); child; child = children->Next()) Collect(child);
  }

  std::string path_;
  ProgramOutcome outcome_;
  std::string text_;
  std::vector<zq::XmlNode::Ptr> nodes_;
};

double Attribute(const zq::XmlNode::Ptr& node, const std::string& name) {
  return std::stod(node->GetAttribute(name));
}

TEST(ToolColorPlot, IsAStandaloneDocument) {
  const Drawing drawing({});
  EXPECT_EQ(drawing.Outcome(), (ProgramOutcome{0, "", ""}));
  EXPECT_THAT(
      drawing.Text(),
      StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\""));
  EXPECT_TRUE(zq::CreateXmlDocument(drawing.Text()));
  EXPECT_THAT(drawing.Text(), Not(HasSubstr("href")));
}

TEST(ToolColorPlot, HasAxesOfOneScaleWithAGridOfTenths) {
  const Drawing drawing({});
  EXPECT_THAT(drawing.Texts(), Contains("CIE x"));
  EXPECT_THAT(drawing.Texts(), Contains("CIE y"));
  std::vector<double> upright;
  std::vector<double> level;
  for (const zq::XmlNode::Ptr& line : drawing.OfClass("grid")) {
    if (Attribute(line, "x1") == Attribute(line, "x2"))
      upright.push_back(Attribute(line, "x1"));
    else
      level.push_back(Attribute(line, "y1"));
  }
  ASSERT_THAT(upright, SizeIs(9));
  ASSERT_THAT(level, SizeIs(10));
  for (std::size_t i = 1; i < upright.size(); ++i) EXPECT_NEAR(upright[i] - upright[i - 1], 80, 0.11);
  for (std::size_t i = 1; i < level.size(); ++i) EXPECT_NEAR(level[i - 1] - level[i], 80, 0.11);
  for (const char* number : {"0.0", "0.1", "0.5", "0.8", "0.9"})
    EXPECT_THAT(drawing.Texts(), Contains(number));
}

// The width is always 680. The positions are those of the first upright and of the last level line of the
// grid.
TEST(ToolColorPlot, HasAFrameThatFitsItsDiagram) {
  const struct {
    std::vector<std::string> arguments;
    double height, leftLine, topLine;
  } rows[] = {
      {{"--diagram", "xy"}, 760, 104, 36},
      {{"--diagram", "uv"}, 485.7, 112.6, 84.6},
      {{"--diagram", "u'v'"}, 680, 112.6, 84.6},
      {{"--diagram", "xy", "--zoom"}, 521.3, 86.7, 81.3},
      {{"--diagram", "uv", "--zoom"}, 552.5, 64, 78.5},
      {{"--diagram", "u'v'", "--zoom"}, 765, 64, 36},
  };
  for (const auto& [arguments, height, leftLine, topLine] : rows) {
    SCOPED_TRACE(arguments[1] + (arguments.size() > 2 ? " zoomed" : ""));
    const Drawing drawing(arguments);
    const zq::XmlNode::Ptr frame = drawing.OfClass("frame").at(0);
    EXPECT_EQ(Attribute(frame, "width"), 680);
    EXPECT_EQ(Attribute(frame, "height"), height);
    const std::vector<zq::XmlNode::Ptr> grid = drawing.OfClass("grid");
    EXPECT_EQ(Attribute(grid.front(), "x1"), leftLine);
    EXPECT_EQ(Attribute(grid.back(), "y1"), topLine);
  }
}

// Returns the position of a chromaticity in the drawing; x = 0 and y = 0 are lines of the grid.
std::pair<double, double> PlaceOf(const Drawing& drawing, double x, double y) {
  double left = 1e9;
  double bottom = 0;
  for (const zq::XmlNode::Ptr& line : drawing.OfClass("grid")) {
    if (Attribute(line, "x1") == Attribute(line, "x2"))
      left = std::min(left, Attribute(line, "x1"));
    else
      bottom = std::max(bottom, Attribute(line, "y1"));
  }
  return {left + 800 * x, bottom - 800 * y};
}

void ExpectCircleAt(const Drawing& drawing, const zq::XmlNode::Ptr& circle, double x, double y) {
  const auto [cx, cy] = PlaceOf(drawing, x, y);
  EXPECT_NEAR(Attribute(circle, "cx"), cx, 0.11);
  EXPECT_NEAR(Attribute(circle, "cy"), cy, 0.11);
}

TEST(ToolColorPlot, ShowsTheLociAndTheTriangle) {
  const Drawing drawing({});
  for (const char* text : {"380", "480", "520", "560", "600", "700", "R", "G", "B", "D65", "1000 K", "2000 K",
                           "5000 K", "10000 K", "20000 K"})
    EXPECT_THAT(drawing.Texts(), Contains(text));
  ASSERT_THAT(drawing.OfClass("white"), SizeIs(1));
  ExpectCircleAt(drawing, drawing.OfClass("white")[0], 0.3127, 0.329);
  ASSERT_THAT(drawing.OfClass("triangle"), SizeIs(1));
  std::istringstream corners(drawing.OfClass("triangle")[0]->GetAttribute("points"));
  for (const auto& [x, y] : {std::pair(0.64, 0.33), std::pair(0.3, 0.6), std::pair(0.15, 0.06)}) {
    double cornerX = 0;
    double cornerY = 0;
    char comma = 0;
    corners >> cornerX >> comma >> cornerY;
    EXPECT_NEAR(cornerX, PlaceOf(drawing, x, y).first, 0.11);
    EXPECT_NEAR(cornerY, PlaceOf(drawing, x, y).second, 0.11);
  }
  EXPECT_THAT(drawing.OfClass("kelvin"), SizeIs(8));
  EXPECT_THAT(drawing.OfClass("foot"), IsEmpty());
}

TEST(ToolColorPlot, ShowsColoursAndTheirProjections) {
  const Drawing drawing({"0.45,0.41,0", "0.4,0.1,0", "--cct", "2700", "--rgb", "0,0,0"});
  EXPECT_EQ(drawing.Outcome().status, 0);
  // Each colour has a marker, and a line in the list below; black has neither.
  const std::vector<zq::XmlNode::Ptr> rings = drawing.OfClass("ring");
  ASSERT_THAT(rings, SizeIs(6));
  ExpectCircleAt(drawing, rings[0], 0.45, 0.41);
  ExpectCircleAt(drawing, rings[1], 0.4, 0.1);
  ExpectCircleAt(drawing, rings[2], 0.459858, 0.410599);
  EXPECT_THAT(drawing.Texts(), Contains("0.4,0.1,0"));
  EXPECT_THAT(drawing.Texts(), Contains("2700 K"));
  EXPECT_THAT(drawing.Texts(), Not(Contains("RGB 0,0,0")));
  ASSERT_THAT(drawing.OfClass("foot"), SizeIs(1));
  ExpectCircleAt(drawing, drawing.OfClass("foot")[0], 0.35868, 0.17499);
  const std::vector<zq::XmlNode::Ptr> ways = drawing.OfClass("casing");
  ASSERT_THAT(ways, SizeIs(1));
  EXPECT_NEAR(Attribute(ways[0], "x1"), PlaceOf(drawing, 0.4, 0.1).first, 0.11);
  EXPECT_NEAR(Attribute(ways[0], "y2"), PlaceOf(drawing, 0.35868, 0.17499).second, 0.11);
}

TEST(ToolColorPlot, GrowsToContainEveryColour) {
  const Drawing drawing({"0.99,0.98,0"});
  const std::vector<zq::XmlNode::Ptr> frames = drawing.OfClass("frame");
  ASSERT_THAT(frames, SizeIs(1));
  const zq::XmlNode::Ptr ring = drawing.OfClass("ring").at(0);
  ExpectCircleAt(drawing, ring, 0.99, 0.98);
  EXPECT_LT(Attribute(ring, "cx"), Attribute(frames[0], "x") + Attribute(frames[0], "width"));
  EXPECT_GT(Attribute(ring, "cy"), Attribute(frames[0], "y"));
  EXPECT_THAT(drawing.OfClass("grid"), SizeIs(11 + 11));
}

// --- the geometry of labels ---

struct Rectangle {
  double left;
  double top;
  double right;
  double bottom;
};

Rectangle RectangleOf(const zq::XmlNode::Ptr& rect) {
  const double left = Attribute(rect, "x");
  const double top = Attribute(rect, "y");
  return {left, top, left + Attribute(rect, "width"), top + Attribute(rect, "height")};
}

bool Overlap(const Rectangle& one, const Rectangle& other) {
  return one.left < other.right && other.left < one.right && one.top < other.bottom && other.top < one.bottom;
}

struct Point {
  double x;
  double y;
};

bool Covers(const Rectangle& box, const Point& point) {
  return box.left < point.x && point.x < box.right && box.top < point.y && point.y < box.bottom;
}

// Returns whether a rectangle covers a part of a line, by testing points along the line. Numbers have one
// decimal, so a line that only touches the rectangle may seem to enter it.
bool Covers(Rectangle box, const Point& from, const Point& to) {
  constexpr double rounding = 0.15;
  box = {box.left + rounding, box.top + rounding, box.right - rounding, box.bottom - rounding};
  const int steps = static_cast<int>(std::hypot(to.x - from.x, to.y - from.y) * 2) + 1;
  for (int i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    if (Covers(box, {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)})) return true;
  }
  return false;
}

// Returns the points of a path of curves.
std::vector<Point> PointsOf(const zq::XmlNode::Ptr& path) {
  std::string text = path->GetAttribute("d");
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == 'M' || c == 'C' || c == ','; }, ' ');
  std::istringstream numbers(text);
  std::vector<Point> points(1);
  numbers >> points[0].x >> points[0].y;
  double skipped = 0;
  Point point{};
  while (numbers >> skipped >> skipped >> skipped >> skipped >> point.x >> point.y) points.push_back(point);
  return points;
}

Point CenterOf(const zq::XmlNode::Ptr& circle) { return {Attribute(circle, "cx"), Attribute(circle, "cy")}; }

// No label covers a marker, a foot, the loci, a leader or another label, and none leaves the frame.
void ExpectNoLabelCoversAnything(const Drawing& drawing, std::size_t labels) {
  const Rectangle frame = RectangleOf(drawing.OfClass("frame").at(0));
  const std::vector<zq::XmlNode::Ptr> tags = drawing.OfClass("tag");
  EXPECT_THAT(tags, SizeIs(labels));
  for (const zq::XmlNode::Ptr& tag : tags) {
    const Rectangle box = RectangleOf(tag);
    EXPECT_TRUE(frame.left <= box.left && frame.top <= box.top && box.right <= frame.right &&
                box.bottom <= frame.bottom);
    for (const zq::XmlNode::Ptr& other : tags) EXPECT_TRUE(tag == other || !Overlap(box, RectangleOf(other)));
    for (const char* markers : {"ring", "foot", "white"}) {
      for (const zq::XmlNode::Ptr& circle : drawing.OfClass(markers)) {
        const auto [x, y] = CenterOf(circle);
        const double distance =
            std::hypot(x - std::clamp(x, box.left, box.right), y - std::clamp(y, box.top, box.bottom));
        EXPECT_GE(distance, Attribute(circle, "r")) << markers;
      }
    }
    for (const char* loci : {"locus", "blackbody"}) {
      const zq::XmlNode::Ptr path = drawing.OfClass(loci).at(0);
      const std::vector<Point> points = PointsOf(path);
      for (std::size_t i = 1; i < points.size(); ++i)
        EXPECT_FALSE(Covers(box, points[i - 1], points[i])) << loci;
    }
    for (const char* lines : {"purples", "leader"}) {
      for (const zq::XmlNode::Ptr& line : drawing.OfClass(lines))
        EXPECT_FALSE(Covers(box, {Attribute(line, "x1"), Attribute(line, "y1")},
                            {Attribute(line, "x2"), Attribute(line, "y2")}))
            << lines;
    }
    for (const zq::XmlNode::Ptr& text : drawing.OfClass("halo"))
      EXPECT_FALSE(Covers(box, {Attribute(text, "x"), Attribute(text, "y") - 5})) << text->GetData();
  }
}

struct Crowd {
  const char* name;
  std::string colors;  // one per line
  std::size_t count;
};

void PrintTo(const Crowd& crowd, std::ostream* os) { *os << crowd.name; }

std::string Scattered(int count, double spread, const std::string& name) {
  std::mt19937 random(5);
  std::string colors;
  for (int i = 0; i < count; ++i) {
    const auto offset = [&] { return spread * (static_cast<double>(random()) / 4294967295.0 - 0.5); };
    colors += name.empty() ? "" : name + ' ' + std::to_string(i + 1) + '=';
    const double y = 0.37 + offset();
    const double x = 0.38 + offset();
    colors += std::to_string(x) + ',' + std::to_string(y) + '\n';
  }
  return colors;
}

std::string Whites(int count) {
  std::string colors;
  for (int i = 0; i < count; ++i) colors += std::to_string(2200 + 200 * i) + "K\n";
  return colors;
}

std::string Repeated(const std::string& line, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += line;
  return text;
}

const Crowd crowds[] = {
    {"FiveApart", "0.35,0.45\n0.2,0.7\n0.2,0.4\n0.5,0.2\n0.66,0.3\n", 5},
    {"TwentyOneWhites", Whites(21), 21},
    {"ThirtyWhites", Whites(30), 30},
    {"ThirtyScattered", Scattered(30, 0.3, ""), 30},
    {"ThirtyClose", Scattered(30, 0.08, ""), 30},
    {"ThirtyNamed", Scattered(30, 0.15, "lamp"), 30},
    {"ThirtyInOnePlace", Repeated("0.31,0.33\n", 30), 30},
};

class ToolColorLabels : public testing::TestWithParam<Crowd> {};

TEST_P(ToolColorLabels, DoNotOverlap) {
  for (const char* diagram : {"xy", "uv", "u'v'"})
    ExpectNoLabelCoversAnything(Drawing({"--diagram", diagram, "-"}, GetParam().colors), GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(, ToolColorLabels, testing::ValuesIn(crowds),
                         [](const auto& row) -> std::string { return row.param.name; });

// The second byte of the first name is 0x80.
TEST(ToolColorPlot, MeasuresLabelsInCharacters) {
  const zq::XmlNode::Ptr one = Drawing({"\u00C0=0.3,0.3"}).OfClass("tag").at(0);
  const zq::XmlNode::Ptr other = Drawing({"\u00C1=0.3,0.3"}).OfClass("tag").at(0);
  EXPECT_EQ(Attribute(one, "width"), Attribute(other, "width"));
}

TEST(ToolColorPlot, DrawsShortLeaders) {
  for (const std::string& colors : {Whites(21), Repeated("0.31,0.33\n", 21)}) {
    const std::vector<zq::XmlNode::Ptr> leaders = Drawing({"-"}, colors).OfClass("leader");
    ASSERT_THAT(leaders, SizeIs(21));
    double length = 0;
    for (const zq::XmlNode::Ptr& leader : leaders)
      length += std::hypot(Attribute(leader, "x2") - Attribute(leader, "x1"),
                           Attribute(leader, "y2") - Attribute(leader, "y1"));
    EXPECT_LT(length / 21, 105) << colors;
  }
}

TEST(ToolColorPlot, KeepsTheLabelsOfACrowdFiveUnitsApart) {
  const Drawing drawing({"-"}, Repeated("0.31,0.33\n", 30));
  const std::vector<zq::XmlNode::Ptr> tags = drawing.OfClass("tag");
  ASSERT_THAT(tags, SizeIs(30));
  // Returns whether two labels are closer than a distance.
  const auto areWithin = [&tags](double distance) {
    const auto isCloser = [distance](const zq::XmlNode::Ptr& one, const zq::XmlNode::Ptr& other) {
      const Rectangle box = RectangleOf(one);
      const Rectangle room = {box.left - distance, box.top - distance, box.right + distance,
                              box.bottom + distance};
      return one != other && Overlap(room, RectangleOf(other));
    };
    return std::any_of(tags.begin(), tags.end(), [&](const zq::XmlNode::Ptr& one) {
      return std::any_of(tags.begin(), tags.end(),
                         [&](const zq::XmlNode::Ptr& other) { return isCloser(one, other); });
    });
  };
  EXPECT_FALSE(areWithin(4.9));  // numbers have one decimal
  EXPECT_TRUE(areWithin(5.1));
}

TEST(ToolColorPlot, DoesNotOverlapLabelsWhenZoomed) {
  for (const char* diagram : {"xy", "uv", "u'v'"}) {
    const Drawing drawing({"--zoom", "--diagram", diagram, "-"}, Whites(21));
    ExpectNoLabelCoversAnything(drawing, 21);
    EXPECT_THAT(drawing.OfClass("isotherm"), SizeIs(12));
    EXPECT_THAT(drawing.OfClass("duv"), SizeIs(4));
    EXPECT_THAT(drawing.OfClass("nominal"), SizeIs(8));
    EXPECT_THAT(drawing.Texts(), Contains("nominal whites (ANSI C78.377)"));
    EXPECT_THAT(drawing.Texts(), Contains("isotherms; dashed: equal Duv"));
  }
  EXPECT_THAT(Drawing({}).OfClass("isotherm"), IsEmpty());
}

TEST(ToolColorPlot, CentresTheOutlinesOfTheLegendOnTheirLines) {
  const Drawing drawing({"--zoom", "--gamut", "0.70,0.29", "0.21,0.71", "0.15,0.05"});
  std::vector<double> lines;
  for (const zq::XmlNode::Ptr& text : drawing.OfClass("legend")) lines.push_back(Attribute(text, "y") - 5);
  std::size_t outlines = 0;
  for (const zq::XmlNode::Ptr& symbol : drawing.OfClass("key")) {
    if (!symbol->IsName("polygon")) continue;
    ++outlines;
    std::istringstream points(symbol->GetAttribute("points"));
    std::vector<double> heights;
    char comma = 0;
    for (Point point{}; points >> point.x >> comma >> point.y;) heights.push_back(point.y);
    const auto [top, bottom] = std::minmax_element(heights.begin(), heights.end());
    EXPECT_THAT(lines, Contains(DoubleNear((*top + *bottom) / 2, 0.1))) << symbol->GetAttribute("points");
    for (const double height : heights) EXPECT_TRUE(height == *top || height == *bottom) << height;
  }
  EXPECT_EQ(outlines, 3U);
}

// D65 and E touch each other; a label between them could be read as that of the other one.
TEST(ToolColorPlot, PutsLabelsWithoutALeaderClearlyClosestToTheirOwnMarker) {
  const Drawing drawing({"D50=0.3457,0.3585", "D65=0.3127,0.329", "E=0.33333,0.33333", "A=0.44758,0.40745"});
  EXPECT_THAT(drawing.OfClass("leader"), IsEmpty());
  const std::vector<zq::XmlNode::Ptr> tags = drawing.OfClass("tag");
  const std::vector<zq::XmlNode::Ptr> rings = drawing.OfClass("ring");  // in the diagram, then in the key
  ASSERT_THAT(tags, SizeIs(4));
  for (std::size_t i = 0; i < tags.size(); ++i) {
    const Rectangle box = RectangleOf(tags[i]);
    const auto distance = [&](std::size_t ring) {
      const auto [x, y] = CenterOf(rings.at(ring));
      return std::hypot(x - std::clamp(x, box.left, box.right), y - std::clamp(y, box.top, box.bottom));
    };
    for (std::size_t other = 0; other < tags.size(); ++other)
      EXPECT_TRUE(other == i || distance(other) > 1.4 * distance(i)) << i << ' ' << other;
  }
}

TEST(ToolColorPlot, LabelsIsothermsAndLinesOfDuvBesideThem) {
  for (const char* diagram : {"xy", "uv", "u'v'"}) {
    const Drawing drawing({"--zoom", "--diagram", diagram});
    int labels = 0;
    for (const zq::XmlNode::Ptr& text : drawing.OfClass("halo")) {
      const std::string label = text->GetData();
      if (label.find(" K") == std::string::npos && label.find("Duv") == std::string::npos) continue;
      ++labels;
      const double halfWidth = 2.5 * static_cast<double>(label.size());  // less than that of any font
      const double middle = Attribute(text, "y") - 4;
      const Rectangle box = {Attribute(text, "x") - halfWidth, middle - 3, Attribute(text, "x") + halfWidth,
                             middle + 3};
      for (const zq::XmlNode::Ptr& line : drawing.OfClass("isotherm"))
        EXPECT_FALSE(Covers(box, {Attribute(line, "x1"), Attribute(line, "y1")},
                            {Attribute(line, "x2"), Attribute(line, "y2")}))
            << label;
      for (const zq::XmlNode::Ptr& line : drawing.OfClass("duv")) {
        const std::vector<Point> points = PointsOf(line);
        for (std::size_t i = 1; i < points.size(); ++i)
          EXPECT_FALSE(Covers(box, points[i - 1], points[i])) << label;
      }
    }
    EXPECT_GE(labels, 12) << diagram;
  }
}

// In dark mode the style "wavelength" is light, and the horseshoe is not dark.
TEST(ToolColorPlot, ShowsWavelengthsWithinTheHorseshoeInTheStyleOfItsLabels) {
  const Drawing drawing({"--diagram", "uv", "--gamut", "0.70,0.29", "0.21,0.71", "0.15,0.05",
                         "lamp red=0.7,0.29", "amber=0.57,0.42", "deep red=0.72,0.27"});
  const std::vector<Point> locus = PointsOf(drawing.OfClass("locus").at(0));
  const auto isWithin = [&locus](const zq::XmlNode::Ptr& text) {
    const Point point = {Attribute(text, "x"), Attribute(text, "y") - 5};
    bool isInside = false;
    for (std::size_t i = 0; i < locus.size(); ++i) {
      const Point& from = locus[i == 0 ? locus.size() - 1 : i - 1];
      const Point& to = locus[i];
      if ((from.y > point.y) == (to.y > point.y)) continue;
      if (point.x < from.x + (point.y - from.y) * (to.x - from.x) / (to.y - from.y)) isInside = !isInside;
    }
    return isInside;
  };
  for (const zq::XmlNode::Ptr& text : drawing.OfClass("wavelength"))
    EXPECT_FALSE(isWithin(text)) << text->GetData();
  const std::vector<zq::XmlNode::Ptr> labels = drawing.OfClass("halo");
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const zq::XmlNode::Ptr& text) {
    return text->GetData() == "620" && isWithin(text);
  }));
}

TEST(ToolColorPlot, LeadsFromMarkersToLabelsThatAreNotCloseBy) {
  const Drawing drawing({"-"}, Repeated("0.31,0.33\n", 30));
  const Point marker = CenterOf(drawing.OfClass("ring").at(0));
  const std::vector<zq::XmlNode::Ptr> leaders = drawing.OfClass("leader");
  EXPECT_GT(leaders.size(), 20U);
  for (const zq::XmlNode::Ptr& leader : leaders) {
    const double distance =
        std::hypot(Attribute(leader, "x1") - marker.x, Attribute(leader, "y1") - marker.y);
    EXPECT_NEAR(distance, Attribute(drawing.OfClass("ring").at(0), "r"), 0.2);
    const auto ends = [&leader](const zq::XmlNode::Ptr& tag) {
      const Rectangle box = RectangleOf(tag);
      return Covers({box.left - 0.2, box.top - 0.2, box.right + 0.2, box.bottom + 0.2},
                    {Attribute(leader, "x2"), Attribute(leader, "y2")});
    };
    const std::vector<zq::XmlNode::Ptr> tags = drawing.OfClass("tag");
    EXPECT_EQ(std::count_if(tags.begin(), tags.end(), ends), 1);
  }
  EXPECT_THAT(Drawing({"0.31,0.33"}).OfClass("leader"), IsEmpty());
}

TEST(ToolColorPlot, LeadsPastOtherMarkers) {
  std::string grid;
  for (const char* const x : {"0.33", "0.35", "0.37", "0.39"})
    for (const char* const y : {"0.33", "0.35", "0.37", "0.39"})
      grid.append(x).append(",").append(y).append("\n");
  const Drawing drawing({"-"}, grid);
  const std::vector<zq::XmlNode::Ptr> leaders = drawing.OfClass("leader");
  EXPECT_THAT(leaders, SizeIs(16));
  for (const zq::XmlNode::Ptr& ring : drawing.OfClass("ring")) {
    const auto [x, y] = CenterOf(ring);
    const double half = 0.7 * Attribute(ring, "r");  // of the square in the circle
    for (const zq::XmlNode::Ptr& leader : leaders)
      EXPECT_FALSE(Covers({x - half, y - half, x + half, y + half},
                          {Attribute(leader, "x1"), Attribute(leader, "y1")},
                          {Attribute(leader, "x2"), Attribute(leader, "y2")}));
  }
}

TEST(ToolColorPlot, ShowsNamesInsteadOfNumbers) {
  const Drawing drawing({"kitchen=0.31,0.33", "0.4,0.4"});
  std::vector<std::string> labels;
  for (const zq::XmlNode::Ptr& text : drawing.OfClass("number")) labels.push_back(text->GetData());
  EXPECT_THAT(labels, testing::ElementsAre("kitchen", "2"));
  EXPECT_THAT(drawing.Texts(), Contains("kitchen: 0.31,0.33"));
}

TEST(ToolColorPlot, ListsColoursInColumns) {
  const Drawing drawing({"-"}, Whites(21));
  std::set<double> columns;
  std::set<double> rows;
  const double bottom = RectangleOf(drawing.OfClass("frame").at(0)).bottom;
  for (const zq::XmlNode::Ptr& ring : drawing.OfClass("ring")) {
    if (Attribute(ring, "cy") < bottom) continue;
    columns.insert(Attribute(ring, "cx"));
    rows.insert(Attribute(ring, "cy"));
  }
  EXPECT_THAT(columns, SizeIs(7));
  EXPECT_THAT(rows, SizeIs(3));
}

TEST(ToolColorPlot, DrawsTheGamutOfTheLampAndWhatIsNearestInIt) {
  const Drawing drawing({"--gamut", "0.70,0.29", "0.21,0.71", "0.15,0.05", "0.1,0.3", "0.3,0.6"});
  ASSERT_THAT(drawing.OfClass("triangle"), SizeIs(1));
  ASSERT_THAT(drawing.OfClass("foot"), SizeIs(1));
  ExpectCircleAt(drawing, drawing.OfClass("foot")[0], 0.172131, 0.293443);
  EXPECT_THAT(drawing.Texts(), Contains("gamut of the lamp"));
  EXPECT_THAT(drawing.Texts(), Contains("a colour and the nearest of the lamp"));
}

TEST(ToolColorPlot, DrawsTheOtherDiagramsOfTheCie) {
  for (const auto& [option, title, v] :
       {std::tuple("uv", "CIE 1960 v", 0.3122), {"u'v'", "CIE 1976 v'", 0.4683}}) {
    const Drawing drawing({"--diagram", option, "0.3127,0.329"});
    EXPECT_THAT(drawing.Texts(), Contains(title));
    double zero = 0;
    double tenth = 0;
    for (const zq::XmlNode::Ptr& text : drawing.OfClass("axis")) {
      if (text->GetAttribute("text-anchor") != "end") continue;
      if (text->GetData() == "0.0") zero = Attribute(text, "y") - 5;
      if (text->GetData() == "0.1") tenth = Attribute(text, "y") - 5;
    }
    EXPECT_NEAR(Attribute(drawing.OfClass("ring").at(0), "cy"), zero + (tenth - zero) * v * 10, 0.3);
  }
  EXPECT_EQ(Color({"--diagram", "Lab"}).err,
            "tavrin: --diagram: \"Lab\" is not one of xy, uv, u'v'\nTry 'tavrin color --help'.\n");
}

TEST(ToolColorPlot, ListsColoursOutsideAZoomedPicture) {
  const Drawing drawing({"--zoom", "0.1,0.3", "0.31,0.33"});
  EXPECT_THAT(drawing.Texts(), Contains("0.1,0.3 (outside)"));
  EXPECT_THAT(drawing.OfClass("tag"), SizeIs(1));
}

TEST(ToolColorPlot, IsWrittenToTheStandardOutputAlone) {
  const ProgramOutcome outcome = Color({"--plot", "-", "0.31,0.33"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, StartsWith("<?xml"));
  EXPECT_TRUE(zq::CreateXmlDocument(outcome.out));
  EXPECT_EQ(Drawing({"0.31,0.33"}).Text(), outcome.out);
}

TEST(ToolColorPlot, IsWellFormedForAnyInput) {
  const Drawing drawing({"0.3<&>\"'\xff\x01,0.4,1" + std::string(1000, 'x')});
  EXPECT_EQ(drawing.Outcome().status, 0);
  EXPECT_TRUE(zq::CreateXmlDocument(drawing.Text()));
  for (const std::string& text : drawing.Texts()) EXPECT_LT(text.size(), 200U);
}

TEST(ToolColorPlot, OmitsMalformedInput) {
  const Drawing drawing({"0.45,0.41,0", "nothing"});
  EXPECT_EQ(drawing.Outcome().status, 3);
  EXPECT_THAT(drawing.OfClass("ring"), SizeIs(2));
}

TEST(ToolColorPlot, ReportsAFileThatCannotBeWritten) {
  const std::string path = testing::TempDir() + "no such directory/plot.svg";
  EXPECT_EQ(Color({"--plot", path}),
            (ProgramOutcome{3, "", "tavrin: " + path + ": cannot be written: No such file or directory\n"}));
  ProgramRun full;
  full.commandLine = {TAVRIN_TOOL, "color", "--plot", "-"};
  full.outputFile = "/dev/full";
  EXPECT_EQ(RunProgram(full), (ProgramOutcome{3, "", "tavrin: the output cannot be written\n"}));
}

// A file that accepts writes until it is flushed.
TEST(ToolColorPlot, ReportsAFullDevice) {
  const std::string path = testing::TempDir() + "full." + std::to_string(getpid()) + ".svg";
  std::filesystem::create_symlink("/dev/full", path);
  EXPECT_EQ(Color({"--plot", path}),
            (ProgramOutcome{3, "", "tavrin: " + path + ": cannot be written: No space left on device\n"}));
  std::filesystem::remove(path);
}

TEST(ToolColorPlot, IsThePictureOfTheReadme) {
  const std::filesystem::path root = std::filesystem::path(TAVRIN_EXAMPLES_DIR).parent_path();
  const Drawing drawing(
      {"0.35,0.45,0", "0.2,0.7,0", "0.2,0.4,0", "0.5,0.2,0", "0.66,0.3,0", "--cct", "2700"});
  EXPECT_EQ(drawing.Text(), ReadFile(root / "docs/chromaticity.svg"));
}

}  // namespace
