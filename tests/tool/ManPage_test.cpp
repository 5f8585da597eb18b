// Checks that the manual page of the tool agrees with its help.

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <string>

#include "RunTool.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsSupersetOf;

const std::string page = TAVRIN_MAN_PAGE;

std::string OutputOf(const std::vector<std::string>& commandLine) {
  ProgramRun run;
  run.commandLine = commandLine;
  run.environment = {{"LC_ALL", "C.UTF-8"}, {"MANROFFSEQ", ""}, {"MANWIDTH", "80"}};
  const ProgramOutcome outcome = RunProgram(run);
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

// Returns the formatted page, without the codes for bold and underlined characters.
std::string Rendered() {
  return std::regex_replace(OutputOf({"/usr/bin/mandoc", "-Tascii", page}), std::regex(".\b"), "");
}

std::string HelpOf(const std::string& subcommand) {
  return subcommand.empty() ? Tool({"--help"}).out : Tool({subcommand, "--help"}).out;
}

std::set<std::string> Matches(const std::string& text, const std::string& pattern) {
  const std::regex regex(pattern);
  std::set<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    found.insert((*match)[1]);
  return found;
}

const std::string optionName = "--?[a-z][a-z-]*";
// With the name of its value, for example "--format FORMAT". The help continues with ":{" and the possible
// values.
const std::string optionWithValue = optionName + R"((?: [A-Z](?![a-z])(?:[^\s{]*[^\s{:,])?)?)";

// Returns the options of the program or of a subcommand according to its help, with one or two dashes.
std::set<std::string> OptionsOf(const std::string& subcommand, const std::string& pattern = optionWithValue) {
  return Matches(HelpOf(subcommand), R"((?:\n  |,)()" + pattern + ")");
}

std::set<std::string> OptionsIn(const std::string& text, const std::string& pattern = optionWithValue) {
  return Matches(text, R"((?:^|[\s,\[])()" + pattern + ")");
}

std::set<std::string> Subcommands() {
  const std::string help = HelpOf("");
  return Matches(help.substr(help.find("\nSubcommands:")), R"(\n  ([a-z]+) )");
}

// Returns the operands of a subcommand according to its help, as the page writes them, for example " FILE
// ...".
std::string OperandsOf(const std::string& subcommand) {
  const std::set<std::string> usages = Matches(HelpOf(subcommand), R"(Usage: \w+ \w+ \[OPTIONS\](.*))");
  EXPECT_EQ(usages.size(), 1U);
  if (usages.empty()) return "";
  return std::regex_replace(*usages.begin(), std::regex(R"(\.\.\.)"), " ...");
}

// Returns the part of the page between two headings.
std::string Section(const std::string& heading, const std::string& text) {
  const std::size_t begin = text.find("\n" + heading + "\n");
  EXPECT_NE(begin, std::string::npos) << heading;
  if (begin == std::string::npos) return "";
  const std::regex nextHeading(R"(\n(?:[A-Z]|   [a-z]))");
  std::smatch next;
  const std::string rest = text.substr(begin + 1 + heading.size());
  return std::regex_search(rest, next, nextHeading) ? next.prefix().str() : rest;
}

TEST(ManPage, HasTheSectionsOfACommand) {
  const std::string text = Rendered();
  for (const char* const heading :
       {"NAME", "SYNOPSIS", "DESCRIPTION", "ENVIRONMENT", "FILES", "EXIT STATUS", "EXAMPLES"})
    EXPECT_GT(Section(heading, text).size(), 40U) << heading;
}

TEST(ManPage, DocumentsEverySubcommandAndItsOptionsWithTheirValues) {
  const std::string text = Rendered();
  const std::set<std::string> global = OptionsOf("");
  EXPECT_THAT(OptionsIn(Section("DESCRIPTION", text)), IsSupersetOf(global));
  const std::set<std::string> subcommands = Subcommands();
  EXPECT_GE(subcommands.size(), 5U);
  for (const std::string& subcommand : subcommands) {
    SCOPED_TRACE(subcommand);
    std::set<std::string> expected = OptionsOf(subcommand);
    EXPECT_EQ(expected.count("--json"), 1U);
    for (const std::string& option : global) expected.erase(option);
    EXPECT_THAT(OptionsIn(Section("   tavrin " + subcommand, text)), IsSupersetOf(expected));
    EXPECT_THAT(Section("SYNOPSIS", text), testing::ContainsRegex(" " + subcommand + "[ \n]"));
  }
}

TEST(ManPage, ShowsTheOperandsOfEverySubcommand) {
  const std::string synopsis = std::regex_replace(Section("SYNOPSIS", Rendered()), std::regex(R"(\s+)"), " ");
  for (const std::string& subcommand : Subcommands())
    EXPECT_THAT(Matches(synopsis, " " + subcommand + "(.*?) tavrin "),
                ElementsAre(EndsWith(OperandsOf(subcommand))))
        << subcommand;
}

TEST(ManPage, DocumentsNoUnknownOption) {
  std::set<std::string> known = OptionsOf("", optionName);
  for (const std::string& subcommand : Subcommands()) known.merge(OptionsOf(subcommand, optionName));
  EXPECT_THAT(known, IsSupersetOf(OptionsIn(Rendered(), optionName)));
}

TEST(ManPage, DocumentsEveryExitStatus) {
  const std::set<std::string> expected = Matches(HelpOf(""), R"(\n  ([0-9])  )");
  EXPECT_EQ(expected.size(), 4U);
  EXPECT_EQ(Matches(Section("EXIT STATUS", Rendered()), R"(\n +([0-9])  )"), expected);
}

TEST(ManPage, HasExamplesThatRun) {
  const std::string examples = Section("EXAMPLES", Rendered());
  EXPECT_GE(Matches(examples, R"(\n +tavrin ([a-z]+) )").size(), 4U);
  const std::regex line(R"(\n +(tavrin (command|conditional) .*))");
  for (std::sregex_iterator match(examples.begin(), examples.end(), line), end; match != end; ++match) {
    ProgramRun run;
    run.commandLine = {"/bin/sh", "-c", "tavrin() { \"$0\" \"$@\"; }\n" + (*match)[1].str(), TAVRIN_TOOL};
    run.directory = std::string(TAVRIN_EXAMPLES_DIR "/") + (*match)[2].str() + "s";
    const ProgramOutcome outcome = RunProgram(run);
    EXPECT_EQ(outcome.status, 0) << (*match)[1] << '\n' << outcome;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(ManPage, IsWellFormed) {
  EXPECT_EQ(OutputOf({"/usr/bin/mandoc", "-Tlint", page}), "");
  EXPECT_THAT(OutputOf({"/usr/bin/man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", page}),
              HasSubstr("General Commands Manual"));
}

}  // namespace
