// Checks the completions of the command line in the shells that they are for.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string directory = TAVRIN_COMPLETIONS_DIR;

std::vector<std::string> OutputOf(const std::vector<std::string>& commandLine,
                                  const std::string& input = "") {
  ProgramRun run;
  run.commandLine = commandLine;
  run.input = input;
  run.environment = {{"HOME", testing::TempDir()}, {"INPUTRC", "/dev/null"}, {"COMPLETIONS", directory}};
  run.directory = TAVRIN_EXAMPLES_DIR;
  const ProgramOutcome outcome = RunProgram(run);
  EXPECT_EQ(outcome.status, 0) << outcome;
  return LinesOf(outcome.out);
}

// Returns the words that bash offers for the last of these words, or its completion options.
std::vector<std::string> Bash(std::vector<std::string> words) {
  const std::string script =
      "source \"$0\" || exit\n"
      "compopt() { COMPREPLY+=(\"compopt $*\"); }\n"
      "read -r _ _ function command < <(complete -p tavrin)\n"
      "[ \"$command\" = tavrin ] || exit\n"
      "COMP_WORDS=(tavrin \"$@\") COMP_CWORD=$#\n"
      "$function && [ ${#COMPREPLY[@]} = 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"\n";
  words.insert(words.begin(), {"/bin/bash", "-c", script, directory + "/tavrin"});
  return OutputOf(words);
}

const char* const allOptions[] = {"--version", "-h", "--help", "--color"};

TEST(BashCompletion, OffersTheSubcommands) {
  EXPECT_THAT(Bash({""}), ElementsAre("command", "binding", "conditional", "color", "validate", "make",
                                      "rules", "explain"));
  EXPECT_THAT(Bash({"co"}), ElementsAre("command", "conditional", "color"));
  EXPECT_THAT(Bash({"x"}), IsEmpty());
}

TEST(BashCompletion, OffersTheOptionsOfASubcommandAndThoseOfTheProgram) {
  EXPECT_THAT(Bash({"-"}), testing::ElementsAreArray(allOptions));
  for (const char* const subcommand : {"command", "binding", "conditional", "color", "validate"}) {
    for (const char* const option : allOptions) EXPECT_THAT(Bash({subcommand, "-"}), Contains(option));
    EXPECT_THAT(Bash({subcommand, "--js"}), ElementsAre("--json"));
  }
  EXPECT_THAT(Bash({"command", "--re"}), ElementsAre("--require"));
  EXPECT_THAT(Bash({"binding", "--re"}), IsEmpty());
  EXPECT_THAT(Bash({"validate", "a.xml", "--"}),
              ElementsAre("--help", "--format", "--json", "--quiet", "--strict", "--max-messages",
                          "--version", "--color"));
}

TEST(BashCompletion, OffersTheValuesOfAnOption) {
  EXPECT_THAT(Bash({"--color", ""}), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(Bash({"command", "--color", "a"}), ElementsAre("auto", "always"));
  EXPECT_THAT(Bash({"conditional", "--as", ""}), ElementsAre("bool", "int", "double", "text"));
}

TEST(BashCompletion, CompletesAfterAnEqualsSignWhichIsASeparateWordInBash) {
  EXPECT_THAT(Bash({"--color", "="}), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(Bash({"--color", "=", "n"}), ElementsAre("never"));
  EXPECT_THAT(Bash({"--color", "=", "never", "val"}), ElementsAre("validate"));
  EXPECT_THAT(Bash({"conditional", "a.xml", "--as", "=", "d"}), ElementsAre("double"));
}

TEST(BashCompletion, DoesNotTreatTheArgumentOfAnOptionAsASubcommand) {
  EXPECT_THAT(Bash({"--color", "always", "val"}), ElementsAre("validate"));
  EXPECT_THAT(Bash({"--color", "always", "validate", "--q"}), ElementsAre("--quiet"));
}

TEST(BashCompletion, LeavesFilesToBash) {
  for (const char* const subcommand : {"command", "binding", "conditional", "validate"}) {
    EXPECT_THAT(Bash({subcommand, ""}), ElementsAre("compopt -o default"));
    EXPECT_THAT(Bash({subcommand, "one", "--color", "never", "tw"}), ElementsAre("compopt -o default"));
  }
  EXPECT_THAT(Bash({"color", "--plot", "x"}), ElementsAre("compopt -o default"));
  EXPECT_THAT(Bash({"color", "--plot", "=", "x"}), ElementsAre("compopt -o default"));
}

TEST(BashCompletion, OffersNothingForArbitraryText) {
  EXPECT_THAT(Bash({"color", ""}), IsEmpty());
  EXPECT_THAT(Bash({"conditional", "--test", ""}), IsEmpty());
  EXPECT_THAT(Bash({"validate", "--max-messages", "1"}), IsEmpty());
  EXPECT_THAT(Bash({"command", "--variable", "7"}), IsEmpty());
  EXPECT_THAT(Bash({"command", "--variable", "7", ":"}), IsEmpty());
  EXPECT_THAT(Bash({"command", "--variable", "7", ":", "1001", "=", "4"}), IsEmpty());
  EXPECT_THAT(Bash({"command", "--variable", "7", ":", "1001", "=", "40", ""}),
              ElementsAre("compopt -o default"));
}

TEST(BashCompletion, CompletesWhatIsTypedAtAPrompt) {
  const std::string typed =
      "source \"$COMPLETIONS/tavrin\"\n"
      "tavrin() { printf '<%s>' \"$@\"; echo; }\n"
      "tavrin --color=al\tcomm\t--xm\tcommands/light_o\t\n"
      "tavrin --color nev\tcol\t--plot=commands/media_play.x\t--rg\t\n"
      "tavrin command --variable 7:1001=com\t\n"
      "exit\n";
  EXPECT_THAT(OutputOf({"/bin/bash", "--norc", "--noprofile", "-i"}, typed),
              ElementsAre("<--color=always><command><--xml><commands/light_on.xml>",
                          "<--color><never><color><--plot=commands/media_play.xml><--rgb>",
                          "<command><--variable><7:1001=com>"));
}

// Returns the words that fish offers at the end of a line, each with a tab and its description.
std::vector<std::string> Fish(const std::string& line) {
  return OutputOf({"/usr/bin/fish", "--no-config", "-c", "source $argv[1]; complete -C $argv[2]",
                   directory + "/tavrin.fish", line});
}

TEST(FishCompletion, OffersTheSubcommands) {
  EXPECT_THAT(Fish("tavrin "), ElementsAre(StartsWith("binding\tShow "), StartsWith("color\tShow "),
                                           StartsWith("command\tShow "), StartsWith("conditional\tShow "),
                                           StartsWith("explain\tExplain "), StartsWith("make\tWrite "),
                                           StartsWith("rules\tList "), StartsWith("validate\tCheck ")));
  EXPECT_THAT(Fish("tavrin --color always v"), ElementsAre(StartsWith("validate\t")));
}

TEST(FishCompletion, OffersOptionsAndTheirValues) {
  EXPECT_THAT(Fish("tavrin command --re"), Contains(StartsWith("--require\tRead a parameter as ")));
  // fish 4 also offers words that contain the typed letters elsewhere.
  EXPECT_THAT(Fish("tavrin binding --re"), Each(Not(StartsWith("--re"))));
  EXPECT_THAT(Fish("tavrin binding -"), Contains(StartsWith("-h\tPrint ")));
  EXPECT_THAT(Fish("tavrin validate --color "),
              ElementsAre(StartsWith("always\t"), StartsWith("auto\t"), StartsWith("never\t")));
  EXPECT_THAT(Fish("tavrin conditional --test "), IsEmpty());
}

TEST(FishCompletion, OffersFilesWhereOneIsTaken) {
  EXPECT_THAT(Fish("tavrin validate projects/ho"), ElementsAre("projects/house.xml"));
  EXPECT_THAT(Fish("tavrin color --plot projects/ho"), ElementsAre("projects/house.xml"));
  EXPECT_THAT(Fish("tavrin color projects/ho"), IsEmpty());
}

TEST(ZshCompletion, CompletesWhatIsTypedAtAPrompt) {
  const std::string typed =
      "PS1=; fpath=($COMPLETIONS $fpath); autoload -U compinit; compinit -u -D\n"
      "tavrin() { print -r -- \"<${(j:><:)@}>\" }\n"
      "tavrin comm\t--xm\tcommands/light_o\t\n"
      "tavrin --color nev\tval\t--max\t4\n"
      "tavrin cond\t--as do\t--test=val\t\n"
      "exit\n";
  // zsh edits lines only on a terminal, and writes its edits there.
  std::vector<std::string> shown;
  for (const std::string& line : OutputOf({"/usr/bin/script", "-qec", "zsh -f -i", "/dev/null"}, typed)) {
    if (line[0] == '<') shown.push_back(line);
  }
  EXPECT_THAT(shown, ElementsAre("<command><--xml><commands/light_on.xml>\r",
                                 "<--color><never><validate><--max-messages=4>\r",
                                 "<conditional><--as><double><--test=val>\r"));
}

TEST(ZshCompletion, OffersNothingAfterAnOptionThatEndsTheProgram) {
  const std::string script = ReadFile(directory + "/_tavrin");
  for (const char* const option : {"--version", "--help", "-h"})
    EXPECT_THAT(script, testing::HasSubstr("'(- *)" + std::string(option) + "["));
  EXPECT_THAT(script, testing::Not(testing::HasSubstr("(- *)--color")));
}

}  // namespace
