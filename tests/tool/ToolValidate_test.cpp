// Runs "tavrin validate" as a user or a script does.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ProjectText.h"
#include "RunProgram.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// Runs "tavrin validate" in the directory of the example projects.
ProgramRun ValidateRun(std::vector<std::string> arguments, const std::string& input = "") {
  ProgramRun run;
  run.commandLine = std::move(arguments);
  run.commandLine.insert(run.commandLine.begin(), {TAVRIN_TOOL, "validate"});
  run.input = input;
  run.directory = TAVRIN_EXAMPLES_DIR "/projects";
  return run;
}

ProgramOutcome Validate(std::vector<std::string> arguments, const std::string& input = "") {
  return RunProgram(ValidateRun(std::move(arguments), input));
}

TEST(ToolValidate, SumsUpAValidProjectInOneLine) {
  EXPECT_EQ(Validate({"house.xml"}), (ProgramOutcome{0, "", "tavrin: house.xml: valid, 16 items\n"}));
  EXPECT_EQ(Validate({"no_schedule.xml"}),
            (ProgramOutcome{0, "", "tavrin: no_schedule.xml: valid, 1 item\n"}));
}

TEST(ToolValidate, PrintsEachFindingWithItsPositionAndTheirNumber) {
  EXPECT_EQ(
      Validate({"broken/drivers.xml"}),
      (ProgramOutcome{1,
                      "broken/drivers.xml:8:56: item 5 has invalid zqi file name lamp.xml (the name of a "
                      "driver file contains .zqi or .zqz; in \"House\" / \"Lamp\") [project/driver-file]\n"
                      "broken/drivers.xml:11:11: item 6 contains both devicedata and zqi (an item has a zqi "
                      "or a devicedata; in \"House\" / \"Fan\") [project/misplaced-element]\n"
                      "broken/drivers.xml:12:11: item 6 contains duplicate devicedata (the type is followed "
                      "by itemdata, state, zqi or devicedata, and subitems, each at most once and in this "
                      "order; in \"House\" / \"Fan\") [project/misplaced-element]\n"
                      "broken/drivers.xml:14:70: item 7 contains duplicate devicedata (the type is followed "
                      "by itemdata, state, zqi or devicedata, and subitems, each at most once and in this "
                      "order; in \"House\" / \"Blind\") [project/misplaced-element]\n",
                      "tavrin: broken/drivers.xml: 4 findings\n"}));
  EXPECT_EQ(Validate({"broken/old_version.xml"}),
            (ProgramOutcome{
                1,
                "broken/old_version.xml:5:5: the validator can only check 2.1.0 or greater (save the project "
                "with a newer version of the controller; in \"Old house\") [project/old-version]\n",
                "tavrin: broken/old_version.xml: 1 finding\n"}));
}

TEST(ToolValidate, ReportsThePositionAndTheParserErrorOfMalformedXml) {
  EXPECT_EQ(Validate({"broken/mismatched_tags.xml"}),
            (ProgramOutcome{1,
                            "broken/mismatched_tags.xml:4:3: invalid project, could not parse project "
                            "(mismatched tag: \"currentstate\" closes here, but the innermost open element "
                            "is \"properties\", from line 2, column 3) [project/not-xml]\n",
                            "tavrin: broken/mismatched_tags.xml: 1 finding\n"}));
}

TEST(ToolValidate, ReadsTheStandardInput) {
  EXPECT_EQ(Validate({"-"}, ProjectWith(Item("2"))),
            (ProgramOutcome{0, "", "tavrin: <stdin>: valid, 2 items\n"}));
  EXPECT_EQ(
      Validate({"-"}, ""),
      (ProgramOutcome{
          1, "<stdin>:1:1: invalid project, could not parse project (no element found) [project/not-xml]\n",
          "tavrin: <stdin>: 1 finding\n"}));
}

TEST(ToolValidate, ChecksAllFilesAndEndsWithTheWorstStatus) {
  EXPECT_EQ(Validate({"house.xml", "no_schedule.xml"}).status, 0);
  EXPECT_EQ(Validate({"broken/old_version.xml", "house.xml"}),
            (ProgramOutcome{
                1,
                "broken/old_version.xml:5:5: the validator can only check 2.1.0 or greater (save the project "
                "with a newer version of the controller; in \"Old house\") [project/old-version]\n",
                "tavrin: broken/old_version.xml: 1 finding\ntavrin: house.xml: valid, 16 items\ntavrin: 2 "
                "files: 1 error\n"}));
  EXPECT_EQ(Validate({"nowhere.xml", "broken/old_version.xml", "house.xml"}),
            (ProgramOutcome{
                3,
                "broken/old_version.xml:5:5: the validator can only check 2.1.0 or greater (save the project "
                "with a newer version of the controller; in \"Old house\") [project/old-version]\n",
                "tavrin: nowhere.xml: No such file or directory\n"
                "tavrin: broken/old_version.xml: 1 finding\ntavrin: house.xml: valid, 16 items\n"
                "tavrin: 3 files: 2 errors\n"}));
}

TEST(ToolValidate, ChecksIdsSeparatelyForEachProject) {
  EXPECT_EQ(Validate({"house.xml", "house.xml"}).status, 0);
}

TEST(ToolValidate, QuietPrintsNothing) {
  EXPECT_EQ(Validate({"--quiet", "house.xml"}), (ProgramOutcome{0, "", ""}));
  EXPECT_EQ(Validate({"-q", "broken/drivers.xml"}), (ProgramOutcome{1, "", ""}));
  EXPECT_EQ(Validate({"-q", "broken/truncated.xml"}), (ProgramOutcome{1, "", ""}));
  EXPECT_EQ(Validate({"-q", "nowhere.xml"}),
            (ProgramOutcome{3, "", "tavrin: nowhere.xml: No such file or directory\n"}));
}

TEST(ToolValidate, ShowsAtMostTheGivenNumberOfFindings) {
  EXPECT_EQ(
      Validate({"--max-messages", "1", "broken/drivers.xml"}),
      (ProgramOutcome{1,
                      "broken/drivers.xml:8:56: item 5 has invalid zqi file name lamp.xml (the name of a "
                      "driver file contains .zqi or .zqz; in \"House\" / \"Lamp\") [project/driver-file]\n",
                      "tavrin: broken/drivers.xml: 4 findings, 1 shown\n"}));
  EXPECT_EQ(Validate({"--max-messages", "0", "broken/drivers.xml"}),
            (ProgramOutcome{1, "", "tavrin: broken/drivers.xml: 4 findings, 0 shown\n"}));
  for (const char* const plenty : {"4", "18446744073709551615"})
    EXPECT_EQ(Validate({"--max-messages", plenty, "broken/drivers.xml"}).err,
              "tavrin: broken/drivers.xml: 4 findings\n");
}

TEST(ToolValidate, CountsFindingsThatItDoesNotListInTheTotal) {
  std::string items;
  for (int i = 0; i < 5'001; ++i) items += Item("0");  // an invalid id that is repeated
  EXPECT_THAT(Validate({"--max-messages", "0", "-", "house.xml"}, ProjectWith(items)).err,
              EndsWith("\ntavrin: 2 files: 10001 errors\n"));
}

TEST(ToolValidate, PrintsJsonForScripts) {
  EXPECT_EQ(
      Validate({"--json", "house.xml", "broken/id_not_a_number.xml", "broken/truncated.xml", "nowhere.xml"}),
      (ProgramOutcome{
          3,
          R"({"diagnostics":[],"file":"house.xml","findings":0,"items":16,"valid":true,"version":1})"
          "\n"
          R"({"diagnostics":[{"column":42,"endColumn":56,"endLine":9,"hint":"types are from 1 to 9; in \"House\" / )"
          R"(\"Hall\"","line":9,"message":"item 5 has an invalid type 0","rule":"project/invalid-type",)"
          R"("severity":"error"},{"column":15,"endColumn":27,"endLine":10,"endsCheck":true,"hint":"ids are from 1 )"
          R"(to 200000; in \"House\" / \"Kitchen\"","line":10,"message":"invalid project, element \"id\" contains )"
          R"(\"six\", which is not a number from -2147483648 to 4294967295","rule":"project/unreadable-number",)"
          R"("severity":"error"},{"column":15,"endColumn":25,"endLine":11,"hint":"ids are from 1 to 200000; in )"
          R"(\"House\" / \"Bath\"","line":11,"message":"item has an invalid id 0","rule":"project/invalid-id",)"
          R"("severity":"error"}],"file":"broken/id_not_a_number.xml","findings":3,"items":4,"valid":false,)"
          R"("version":1})"
          "\n"
          R"({"diagnostics":[{"column":5,"hint":"unclosed token","line":4,"message":"invalid project, could not )"
          R"(parse project","rule":"project/not-xml","severity":"error"}],"file":"broken/truncated.xml",)"
          R"("findings":1,"items":0,"parser":{"column":5,"line":4,"message":"unclosed token"},"valid":false,)"
          R"("version":1})"
          "\n"
          R"({"diagnostics":[{"message":"No such file or directory","rule":"file/unreadable","severity":"error"}],)"
          R"("file":"nowhere.xml","version":1})"
          "\n",
          ""}));
  EXPECT_THAT(Validate({"--json", "--max-messages=1", "broken/drivers.xml"}).out,
              AllOf(HasSubstr("project/driver-file"), Not(HasSubstr("project/misplaced-element")),
                    HasSubstr("\"findings\":4,")));
}

TEST(ToolValidate, EscapesControlCharacters) {
  EXPECT_EQ(Validate({"-"}, ProjectWith(Item("2", "<zqi>&#x9b;31m\n</zqi>"))).out,
            "<stdin>:1:204: item 2 has invalid zqi file name \\u{9b}31m\\n (the name of a driver file "
            "contains .zqi or .zqz; in "
            "\"\" / \"\") [project/driver-file]\n");
}

TEST(ToolValidate, RejectsInvalidCommandLines) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"--quiet", "--json", "house.xml"},
                                                    {"--max-messages", "-1", "house.xml"},
                                                    {"--max-messages", "many", "house.xml"},
                                                    {"--unknown", "house.xml"}}) {
    const ProgramOutcome outcome = Validate(arguments);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, EndsWith("Try 'tavrin validate --help'.\n"));
  }
}

TEST(ToolValidate, ReportsMalformedNumbers) {
  EXPECT_EQ(Validate({"--max-messages", "-1", "house.xml"}).err,
            "tavrin: --max-messages: \"-1\" is not a whole number\nTry 'tavrin validate --help'.\n");
}

TEST(ToolValidate, ExplainsItself) {
  const ProgramOutcome outcome = Validate({"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, AllOf(StartsWith("Check the structure of projects"), HasSubstr("--max-messages N"),
                                 HasSubstr("Exit status")));
}

// A project that takes longer than half a second to arrive. Readers of `path` receive nothing before.
class SlowProject {
 public:
  explicit SlowProject(const std::string& text)
      : path_(testing::TempDir() + "tavrin_slow_project_\x1b[31m_" + std::to_string(getpid())),
        made_(mkfifo(path_.c_str(), 0600) == 0),
        writer_([this, text] {
          const int pipe = open(path_.c_str(), O_WRONLY);  // waits for the reader
          std::this_thread::sleep_for(std::chrono::milliseconds(700));
          EXPECT_EQ(write(pipe, text.data(), text.size()), static_cast<ssize_t>(text.size()));
          close(pipe);
        }) {
    EXPECT_TRUE(made_);
  }
  SlowProject(const SlowProject&) = delete;
  SlowProject& operator=(const SlowProject&) = delete;
  ~SlowProject() {
    writer_.join();
    std::filesystem::remove(path_);
  }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  bool made_;
  std::thread writer_;
};

ProgramOutcome ValidateSlowly(bool terminal, std::vector<std::string> options = {}) {
  const SlowProject project(ProjectWith(Item("2")));
  options.push_back(project.Path());
  ProgramRun run = ValidateRun(std::move(options));
  run.errorTerminal = terminal;
  return RunProgram(run);
}

TEST(ToolValidate, ShowsTheProgressOfALongCheckOnATerminal) {
  const ProgramOutcome outcome = ValidateSlowly(true);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, HasSubstr(" of 0.0 MB parsed\r"));
  // The last 30 characters of a long name, without control characters of terminals.
  const std::string name = "tavrin_slow_project_\\x1b[31m_" + std::to_string(getpid());
  EXPECT_THAT(outcome.err, StartsWith("tavrin: ..." + name.substr(name.size() - 30) + ": "));
  EXPECT_THAT(outcome.err, Not(HasSubstr("\x1b")));
  // The progress line is removed before the summary.
  const std::string last = outcome.err.substr(outcome.err.rfind('\r') + 1);
  EXPECT_THAT(last, AllOf(StartsWith("tavrin: "), EndsWith(": valid, 2 items\n")));
}

TEST(ToolValidate, ShowsProgressOnlyOnATerminal) {
  EXPECT_THAT(ValidateSlowly(false).err, Not(HasSubstr("parsed")));
  EXPECT_THAT(ValidateSlowly(true, {"--quiet"}).err, IsEmpty());
}

}  // namespace
