// The program "tavrin color" as a user or a script runs it.

#include <gmock/gmock.h>

#include <json/reader.h>
#include <tavrin_platform/XmlNode.h>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
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

// --- What it prints ---

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
                            "0.66,0.3,1\n"
                            "  xy            0.66, 0.3\n"
                            "  mode          1 (colour temperature)\n"
                            "  valid         yes\n"
                            "  sRGB          outside, nearest is 0.642661, 0.331466\n"
                            "  HSV           hue 2, saturation 104 %, value 100 %\n"
                            "  RGB           255, 0, 0  #ff0000\n"
                            "  temperature   1000 K\n",
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
  EXPECT_THAT(outcome.out, HasSubstr("  temperature   2700 K\n6500 K\n"));
  EXPECT_EQ(outcome.err, "");
}

TEST(ToolColor, NotesWhichTemperatureOfTheTableItTakes) {
  EXPECT_EQ(Color({"--cct", "2709"}).err, "tavrin: 2709 K: note: taken for the 2700 K of the table\n");
  EXPECT_EQ(Color({"--cct", "-5"}).err, "tavrin: -5 K: note: taken for the 1000 K of the table\n");
  EXPECT_EQ(Color({"--cct", "2147483647"}).err,
            "tavrin: 2147483647 K: note: taken for the 20000 K of the table\n");
}

TEST(ToolColor, NotesWhatItMakesOfAFieldThatIsMoreThanANumber) {
  const std::vector<std::pair<std::string, std::string>> rows = {{"O.3,0.4,0", "0,0.4,0"},
                                                                 {"0.3,nan,0", "0.3,0,0"},
                                                                 {"0.3,,1", "0.3,0,1"},
                                                                 {"0.3,0.4,1st", "0.3,0.4,1"},
                                                                 {"0.3,0.4,1.9", "0.3,0.4,1"}};
  for (const auto& [text, taken] : rows) {
    const ProgramOutcome outcome = Color({text});
    EXPECT_EQ(outcome.status, 0) << text;
    EXPECT_EQ(outcome.err, "tavrin: " + text + ": note: taken for " + taken + '\n');
  }
  EXPECT_EQ(Color({" 0.3 ,3e-1, 1"}).err, "");
}

TEST(ToolColor, ConvertsRGBAndHSVToEachOther) {
  const std::string orange =
      "  HSV           hue 30, saturation 100 %, value 80 %\n"
      "  RGB           204, 102, 0  #cc6600\n";
  EXPECT_EQ(Color({"--rgb", "204,102,0"}), (ProgramOutcome{0, "RGB 204,102,0\n" + orange, ""}));
  EXPECT_EQ(Color({"--rgb", "#CC6600"}), (ProgramOutcome{0, "#CC6600\n" + orange, ""}));
  EXPECT_EQ(Color({"#cc6600"}), (ProgramOutcome{0, "#cc6600\n" + orange, ""}));
  EXPECT_EQ(Color({"--hsv", "30,100,80"}), (ProgramOutcome{0, "HSV 30,100,80\n" + orange, ""}));
}

TEST(ToolColor, RoundsLevels) {
  EXPECT_THAT(Color({"--rgb", "0.5,127.4,254.6"}).out, HasSubstr("RGB           1, 127, 255  #017fff\n"));
  EXPECT_THAT(Color({"--hsv", "0,0,50"}).out, HasSubstr("RGB           128, 128, 128  #808080\n"));
}

TEST(ToolColor, ShowsTextsFirstAndThenTheOptionsKindByKind) {
  const ProgramOutcome outcome =
      Color({"--hsv", "1,2,3", "--rgb", "4,5,6", "--cct", "7000", "0.1,0.2,0", "#080808", "--cct", "8000"});
  std::vector<std::string> titles;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);)
    if (line[0] != ' ') titles.push_back(line);
  EXPECT_THAT(titles,
              testing::ElementsAre("0.1,0.2,0", "#080808", "7000 K", "8000 K", "RGB 4,5,6", "HSV 1,2,3"));
}

TEST(ToolColor, ShowsASwatchWhereColoursShow) {
  EXPECT_THAT(Color({"--color", "always", "#cc6600"}).out,
              StartsWith("\x1b[1m#cc6600\x1b[0m  \x1b[48;2;204;102;000m    \x1b[0m\n"));
  EXPECT_THAT(Color({"--color", "never", "#cc6600"}).out, Not(HasSubstr("\x1b")));
}

TEST(ToolColor, ShowsForeignCharactersAsEscapes) {
  const ProgramOutcome outcome = Color({"0.3\x1b[31m,0.4,1"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, Not(HasSubstr("\x1b")));
  EXPECT_THAT(Color({"0.3\x1b[31m"}).err, Not(HasSubstr("\x1b")));
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
  EXPECT_THAT(rgb.getMemberNames(), testing::ElementsAre("given", "hex", "hsv", "rgb"));
  EXPECT_EQ(rgb["given"], "RGB 204,102,0");
  EXPECT_EQ(rgb["hex"], "#cc6600");
  EXPECT_EQ(rgb["hsv"]["h"], 30.0);
  EXPECT_EQ(rgb["hsv"]["v"], 80.0);
  EXPECT_EQ(rgb["rgb"]["r"], 204);
  EXPECT_EQ(rgb["rgb"]["g"], 102);
  EXPECT_EQ(rgb["rgb"]["b"], 0);
}

TEST(ToolColor, WritesNumbersInJsonAsTheyAreUsuallyWritten) {
  EXPECT_EQ(
      Color({"--json", "0.66,0.3,0"}).out,
      R"({"color":"0.66,0.3,0","given":"0.66,0.3,0","hex":"#ff0000","hsv":{"h":2.0,"s":104.0,"v":100.0},)"
      R"("isSRGB":false,"kelvin":1000,"mode":0,"nearestSRGB":{"x":0.642661341853035,"y":0.331466453674121},)"
      R"("rgb":{"b":0,"g":0,"r":255},"valid":true,"x":0.66,"y":0.3})"
      "\n");
}

// --- What it refuses ---

TEST(ToolColor, SaysWhyItCannotReadATextAndShowsTheOthers) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"", R"("": expected x,y,mode, found 1 field)"},
      {"0.3,0.3", "0.3,0.3: expected x,y,mode, found 2 fields"},
      {"0.3,0.3,0,1", "0.3,0.3,0,1: expected x,y,mode, found 4 fields"},
      {",0.3,0", ",0.3,0: the x is empty"},
      {"0.3,0.3,", "0.3,0.3,: the mode is empty"},
      {"1,0.3,0", R"(1,0.3,0: the x is "1", not at least 0 and below 1)"},
      {"0.3,1.5,7", R"(0.3,1.5,7: the y is "1.5", not at least 0 and below 1)"},
      {"0.3,0.3,2",
       R"(0.3,0.3,2: the mode is "2", neither 0 for a chromaticity nor 1 for a colour temperature)"},
      {"#12345", "#12345: not #RRGGBB"},
      {"#12345g", "#12345g: not #RRGGBB"},
      {"#1234567", "#1234567: not #RRGGBB"},
  };
  for (const auto& [text, error] : rows) {
    const ProgramOutcome outcome = Color({text, "#cc6600"});
    EXPECT_EQ(outcome.status, 3) << text;
    EXPECT_EQ(outcome.err, "tavrin: " + error + '\n');
    EXPECT_THAT(outcome.out, StartsWith("#cc6600\n"));
  }
}

TEST(ToolColor, FailsWhenNoTextCanBeRead) {
  EXPECT_EQ(Color({"1,2"}), (ProgramOutcome{3, "", "tavrin: 1,2: expected x,y,mode, found 2 fields\n"}));
}

TEST(ToolColor, RefusesMalformedOptions) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"--cct", "warm"}, R"(--cct: "warm": not a whole number of kelvin)"},
      {{"--cct", "2700.5"}, R"(--cct: "2700.5": not a whole number of kelvin)"},
      {{"--cct", "2147483648"}, R"(--cct: "2147483648": not a whole number of kelvin)"},
      {{"--rgb", "1,2"}, R"(--rgb: "1,2": not R,G,B)"},
      {{"--rgb", "1,2,3,4"}, R"(--rgb: "1,2,3,4": not R,G,B)"},
      {{"--rgb", "1,2,256"}, R"(--rgb: "1,2,256": B is "256", not a number from 0 to 255)"},
      {{"--rgb", "1,-2,3"}, R"(--rgb: "1,-2,3": G is "-2", not a number from 0 to 255)"},
      {{"--rgb", "1, 2,3"}, R"(--rgb: "1, 2,3": G is " 2", not a number from 0 to 255)"},
      {{"--rgb", "#12"}, R"(--rgb: "#12": not #RRGGBB)"},
      {{"--hsv", "361,2,3"}, R"(--hsv: "361,2,3": H is "361", not a number from 0 to 360)"},
      {{"--hsv", "1,nan,3"}, R"(--hsv: "1,nan,3": S is "nan", not a number from 0 to 100)"},
      {{"--hsv", "1,2,"}, R"(--hsv: "1,2,": V is "", not a number from 0 to 100)"},
      {{}, "A colour is required"},
  };
  for (const auto& [arguments, error] : rows)
    EXPECT_EQ(Color(arguments),
              (ProgramOutcome{2, "", "tavrin: " + error + "\nTry 'tavrin color --help'.\n"}));
}

TEST(ToolColor, TellsInItsHelpWhatItCannotDo) {
  EXPECT_THAT(Color({"--help"}).out, HasSubstr("there is no way from them to a\nchromaticity"));
}

// --- The plot ---

// The drawing of some colours, taken to pieces.
class Drawing {
 public:
  explicit Drawing(std::vector<std::string> arguments)
      : path_(testing::TempDir() + "tavrin_plot_" + std::to_string(getpid())) {
    arguments.insert(arguments.end(), {"--plot", path_});
    outcome_ = Color(std::move(arguments));
    text_ = ReadFile(path_);
    std::filesystem::remove(path_);
    if (const auto document = zq::CreateXmlDocument(text_)) Collect(document->GetRoot());
  }

  const ProgramOutcome& Outcome() const { return outcome_; }
  const std::string& Text() const { return text_; }

  // The elements of one class.
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

// Where a chromaticity is drawn; x = 0 and y = 0 are lines of the grid.
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
  const Drawing drawing({"0.45,0.41,0", "0.4,0.1,0", "--cct", "2700", "--rgb", "1,2,3"});
  EXPECT_EQ(drawing.Outcome().status, 0);
  // Each colour has its place and a line in the list below; RGB has neither.
  const std::vector<zq::XmlNode::Ptr> rings = drawing.OfClass("ring");
  ASSERT_THAT(rings, SizeIs(6));
  ExpectCircleAt(drawing, rings[0], 0.45, 0.41);
  ExpectCircleAt(drawing, rings[2], 0.4, 0.1);
  ExpectCircleAt(drawing, rings[4], 0.459858, 0.410599);
  EXPECT_THAT(drawing.Texts(), Contains("0.4,0.1,0"));
  EXPECT_THAT(drawing.Texts(), Contains("2700 K"));
  EXPECT_THAT(drawing.Texts(), Not(Contains("RGB 1,2,3")));
  ASSERT_THAT(drawing.OfClass("foot"), SizeIs(1));
  ExpectCircleAt(drawing, drawing.OfClass("foot")[0], 0.35868, 0.17499);
  const std::vector<zq::XmlNode::Ptr> ways = drawing.OfClass("casing");
  ASSERT_THAT(ways, SizeIs(1));
  EXPECT_NEAR(Attribute(ways[0], "x1"), PlaceOf(drawing, 0.4, 0.1).first, 0.11);
  EXPECT_NEAR(Attribute(ways[0], "y2"), PlaceOf(drawing, 0.35868, 0.17499).second, 0.11);
}

TEST(ToolColorPlot, GrowsToHoldEveryColour) {
  const Drawing drawing({"0.99,0.98,0"});
  const std::vector<zq::XmlNode::Ptr> frames = drawing.OfClass("frame");
  ASSERT_THAT(frames, SizeIs(1));
  const zq::XmlNode::Ptr ring = drawing.OfClass("ring").at(0);
  ExpectCircleAt(drawing, ring, 0.99, 0.98);
  EXPECT_LT(Attribute(ring, "cx"), Attribute(frames[0], "x") + Attribute(frames[0], "width"));
  EXPECT_GT(Attribute(ring, "cy"), Attribute(frames[0], "y"));
  EXPECT_THAT(drawing.OfClass("grid"), SizeIs(11 + 11));
}

TEST(ToolColorPlot, KeepsNumbersApart) {
  const std::vector<std::string> colors(8, "0.31,0.33,0");
  const Drawing drawing(colors);
  std::map<std::pair<double, double>, std::string> places;
  for (const zq::XmlNode::Ptr& text : drawing.OfClass("halo"))
    places[{Attribute(text, "x"), Attribute(text, "y")}] = text->GetData();
  EXPECT_THAT(places, SizeIs(drawing.OfClass("halo").size()));
}

TEST(ToolColorPlot, StaysWellFormedWhateverTheTexts) {
  const Drawing drawing({"0.3<&>\"'\xff\x01,0.4,1" + std::string(1000, 'x')});
  EXPECT_EQ(drawing.Outcome().status, 0);
  EXPECT_TRUE(zq::CreateXmlDocument(drawing.Text()));
  for (const std::string& text : drawing.Texts()) EXPECT_LT(text.size(), 200U);
}

TEST(ToolColorPlot, LeavesOutWhatCannotBeRead) {
  const Drawing drawing({"0.45,0.41,0", "nothing"});
  EXPECT_EQ(drawing.Outcome().status, 3);
  EXPECT_THAT(drawing.OfClass("ring"), SizeIs(2));
}

TEST(ToolColorPlot, SaysThatItsFileCannotBeWritten) {
  const std::string path = testing::TempDir() + "no such directory/plot.svg";
  EXPECT_EQ(Color({"--plot", path}),
            (ProgramOutcome{3, "", "tavrin: " + path + ": cannot be written: No such file or directory\n"}));
  EXPECT_EQ(Color({"--plot", "/dev/full"}),
            (ProgramOutcome{3, "", "tavrin: /dev/full: cannot be written: No space left on device\n"}));
}

TEST(ToolColorPlot, IsThePictureOfTheReadme) {
  const std::filesystem::path root = std::filesystem::path(TAVRIN_EXAMPLES_DIR).parent_path();
  const Drawing drawing(
      {"0.35,0.45,0", "0.2,0.7,0", "0.2,0.4,0", "0.5,0.2,0", "0.66,0.3,0", "--cct", "2700"});
  EXPECT_EQ(drawing.Text(), ReadFile(root / "docs/chromaticity.svg"));
}

}  // namespace
