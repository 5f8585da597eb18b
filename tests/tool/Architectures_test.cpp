// Compares the programs of this build with those of a build for another architecture or by another compiler:
// output and exit status are identical.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

using Arguments = std::vector<std::string>;

const std::string tavrin = "/tools/tavrin/tavrin";

ProgramOutcome RunOf(const std::string& build, const std::string& program, const Arguments& arguments,
                     const std::string& input) {
  ProgramRun run;
  run.commandLine = {build + program};
  run.commandLine.insert(run.commandLine.end(), arguments.begin(), arguments.end());
  run.input = input;
  run.directory = TAVRIN_EXAMPLES_DIR;
  return RunProgram(run);
}

// Runs a program of both builds and returns its outcome in this one.
ProgramOutcome RunBoth(const std::string& program, const Arguments& arguments,
                       const std::string& input = "") {
  ProgramOutcome outcome = RunOf(TAVRIN_BUILD, program, arguments, input);
  EXPECT_EQ(outcome, RunOf(TAVRIN_OTHER_BUILD, program, arguments, input))
      << testing::PrintToString(arguments);
  return outcome;
}

// Runs a program of both builds with valid arguments, which must produce output.
std::string OutputOfBoth(const std::string& program, const Arguments& arguments,
                         const std::string& input = "") {
  const ProgramOutcome outcome = RunBoth(program, arguments, input);
  EXPECT_THAT(outcome.out + outcome.err, Not(IsEmpty())) << testing::PrintToString(arguments);
  EXPECT_NE(outcome.status, 2) << outcome.err;
  EXPECT_LT(outcome.status, 126) << outcome.err;
  return outcome.out;
}

Arguments operator+(Arguments left, const Arguments& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

// Returns every example, whether it is for the subcommand or not.
Arguments Examples() {
  Arguments files;
  for (const auto& entry : fs::recursive_directory_iterator(TAVRIN_EXAMPLES_DIR)) {
    if (entry.is_regular_file()) files.push_back(entry.path().lexically_relative(TAVRIN_EXAMPLES_DIR));
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Returns what distinguishes the builds of the tool: the architecture, and whether Clang compiled it.
std::pair<std::string, bool> Origin(const std::string& build) {
  const std::string file = build + tavrin;
  return {run_program::ElfMachine(file), ReadFile(file).find("clang version") != std::string::npos};
}

TEST(Architectures, AreDifferent) {
  const auto other = Origin(TAVRIN_OTHER_BUILD);
  EXPECT_THAT(other.first, Not(IsEmpty())) << "no program in " TAVRIN_OTHER_BUILD;
  EXPECT_NE(Origin(TAVRIN_BUILD), other);
}

TEST(Architectures, PrintTheSameForEveryExampleInEveryForm) {
  const std::vector<Arguments> forms = {
      {"command"},
      {"command", "--show-secrets"},
      {"command", "--xml"},
      {"command", "--xml", "--show-secrets"},
      {"command", "--dump", "--show-secrets"},
      {"command", "--json"},
      {"command", "--json", "--show-secrets"},
      {"command", "--variable=7:1001=40", "--require=LEVEL:0..100", "--require=LEVEL:double,3",
       "--require=PIN:int", "--require=RAMP_SECONDS:double", "--require=RAMP_SECONDS:uint",
       "--require=USER:bool", "--require=ABSENT:text"},
      {"command", "--json", "--variable=7:1001=4294967295", "--require=LEVEL:int", "--require=LEVEL:uint",
       "--require=LEVEL:double,9"},
      {"binding"},
      {"binding", "--show-secrets"},
      {"binding", "--xml", "--show-secrets"},
      {"binding", "--dump", "--show-secrets"},
      {"binding", "--json", "--show-secrets"},
      {"conditional"},
      {"conditional", "--show-secrets"},
      {"conditional", "--xml", "--show-secrets"},
      {"conditional", "--dump", "--show-secrets"},
      {"conditional", "--json", "--show-secrets"},
      {"conditional", "--test=40"},
      {"conditional", "--test=21.5", "--as=double"},
      {"conditional", "--test=true", "--as=bool"},
      {"conditional", "--test=away", "--as=text"},
      {"conditional", "--test=-2147483648", "--json"},
      {"validate"},
      {"validate", "--json"},
      {"validate", "--format=sarif"},
      {"validate", "--format=github"},
      {"validate", "--max-messages=5000000000"},
  };
  for (const Arguments& form : forms) OutputOfBoth(tavrin, form + Examples());
}

TEST(Architectures, ReturnTheSameStatusForEveryExample) {
  std::set<int> statuses;
  for (const char* const subcommand : {"command", "binding", "conditional", "validate"}) {
    for (const std::string& file : Examples())
      statuses.insert(RunBoth(tavrin, {subcommand, "--json", file}).status);
  }
  EXPECT_THAT(statuses, IsSupersetOf({0, 1, 3}));
}

TEST(Architectures, PrintTheSameForColours) {
  Arguments chromaticities;
  for (int x = 0; x < 100; ++x) {
    for (int y = 0; y < 100; ++y)
      chromaticities.push_back(fmt::format("{},{},{}", x / 100.0, y / 100.0, (x + y) % 2));
  }
  Arguments others;
  for (int kelvin = 995; kelvin < 20020; kelvin += 5) others.push_back(fmt::format("--cct={}", kelvin));
  for (int levels = 0; levels < 1000; ++levels) {
    const int first = levels / 100;
    const int second = levels / 10 % 10;
    const int third = levels % 10;
    others.push_back(fmt::format("--rgb={},{},{}", first * 28.3, second * 28.3, third * 28.3));
    others.push_back(fmt::format("--hsv={},{},{}", first * 39.9, second * 11.1, third * 11.1));
  }
  const Arguments context = {"--reference", "0.3127,0.329", "--gamut", "0.70,0.29", "0.21,0.71", "0.15,0.05"};
  for (const Arguments& colors : {chromaticities, others}) {
    OutputOfBoth(tavrin, Arguments{"color", "--format", "csv"} + context + colors);
    Arguments some;
    for (std::size_t i = 0; i < colors.size(); i += 37) some.push_back(colors[i]);
    for (const char* const format : {"text", "table", "json"})
      OutputOfBoth(tavrin, Arguments{"color", "--format", format} + context + some);
  }
  std::string notations;
  for (int i = 0; i < 500; ++i)
    notations += fmt::format("{}K\n{}mired\n#{:06x}\nlinear({},{},0.5)\n", 800 + 41.3 * i, 10.1 + 2.3 * i,
                             33553 * i, i / 500.0, i / 1000.0);
  OutputOfBoth(tavrin, {"color", "-", "--format", "csv"}, notations);
  for (const char* const diagram : {"xy", "uv", "u'v'"}) {
    const Arguments plot = {"color",    "0.3,0.3,0", "0.66,0.3,1", "--cct=2700",
                            "--plot=-", "--diagram", diagram};
    OutputOfBoth(tavrin, plot);
    OutputOfBoth(tavrin, plot + Arguments{"--zoom"});
    OutputOfBoth(tavrin, plot + Arguments(30, "0.31,0.33"));
  }
}

// Processors convert numbers that do not fit an integer in different ways.
TEST(Architectures, ReadNumbersOutOfRangeAlike) {
  for (const std::string number :
       {"18446744073709551615", "18446744073709551616", "18446744073709551617", "9223372036854775808",
        "-9223372036854775809", "4294967296", "4294967295.5", "2147483648", "-2147483649", "-0.0", "1e19",
        "1.9e19", "1e300", "-1e300", "1e400", "4.9e-324"}) {
    RunBoth(tavrin, {"command", "--json", "--require=V:int", "--require=V:uint", "--require=V:double,9", "-"},
            R"({"command": "C", "params": [{"name": "V", "value": {"static": )" + number + "}}]}");
    RunBoth(tavrin, {"command", "--json", "-"},
            R"({"command": "C", "params": [{"name": "V", "value": {"variable": {"deviceid": )" + number +
                R"(, "variableid": )" + number + "}}}]}");
    RunBoth(tavrin, {"command", "--json", "--require=V:int", "--require=V:uint", "--require=V:double,9", "-"},
            "<devicecommand><command>C</command><params><param><name>V</name><value><static>" + number +
                "</static></value></param></params></devicecommand>");
  }
}

// On ARM, char is unsigned.
TEST(Architectures, ReadTextBeyondAsciiAlike) {
  for (const std::string text :
       {"\xc3\x84\xe2\x82\xac", "\xf0\x9f\x92\xa1 \xcc\x88", "\x80\xff", "\xc2\x9b"}) {
    const std::string json = R"({"command": ")" + text + R"(", "params": [{"name": "PIN)" + text +
                             R"(", "type": ")" + text + R"(", "value": {"static": ")" + text + R"("}}]})";
    const std::string xml = "<devicecommand><command>" + text + "</command><params><param><name>" + text +
                            "</name><value type='" + text + "'><static>" + text +
                            "</static></value></param></params></devicecommand>";
    for (const std::string& command : {json, xml}) {
      for (const char* const form : {"--dump", "--xml", "--json", "--require=PIN:text"})
        OutputOfBoth(tavrin, {"command", "--show-secrets", form, "-"}, command);
      OutputOfBoth(tavrin, {"command", "--json", "-"}, command);
    }
  }
}

TEST(Architectures, PrintTheSameForRulesAndWrittenMessages) {
  OutputOfBoth(tavrin, {"rules"});
  OutputOfBoth(tavrin, {"rules", "--json"});
  OutputOfBoth(tavrin, {"explain", "project/duplicate-id"});
  for (const char* const kind : {"command", "binding"})
    OutputOfBoth(tavrin, {"make", kind, "N\xc3\x84ME", "--param", "A=1.5", "--param", "B=x<y"});
}

TEST(Architectures, PrintTheSameForTheLightDriver) {
  OutputOfBoth("/examples/first_command", {});
  OutputOfBoth("/examples/lamp_color", {"#ffaa00", "2700", "#0000ff", "black"});
  OutputOfBoth("/examples/light_driver", Examples());
}

TEST(Architectures, WriteAndValidateALargeProjectEqually) {
  const std::string project = OutputOfBoth("/tools/generators/project_generator/project_generator", {"5000"});
  OutputOfBoth(tavrin, {"validate", "--json", "-"}, project);
  OutputOfBoth(tavrin, {"validate", "--json", "-"}, project.substr(0, project.size() / 2));
}

}  // namespace
