// Checks the arguments that the completion script for zsh passes to _arguments and _describe, which interpret
// some characters.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"
#include "tools/generators/completions/Shells.h"

namespace {

using completions::Argument;
using testing::Contains;

constexpr char oddText[] = R"(It's [odd]: 50% \ "done" ~ $HOME `id`)";

completions::Grammar OddGrammar() {
  const Argument word = {Argument::Kind::word, "N:M [~]", {}};
  completions::Grammar grammar;
  grammar.program = {"demo", "", {{{"--flag"}, oddText, {}, false}, {{"--word"}, "", word, false}}, {}};
  grammar.subcommands = {{"sub", oddText, {{{"--inner"}, oddText, {}, false}}, word}};
  return grammar;
}

// Returns the arguments of _arguments and _describe if the word to complete is in that state.
std::vector<std::string> PassedToZsh(const std::string& state) {
  const std::string script = "_arguments() { print -rl -- \"$@\"; state=" + state +
                             " line=(sub) }\n"
                             "_describe() { print -rl -- \"${(P)2[@]}\" }\n" +
                             completions::ForZsh(OddGrammar());
  const ProgramOutcome outcome = RunProgram({{"/usr/bin/zsh", "-f", "-c", script}, ""});
  EXPECT_EQ(outcome.status, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  return LinesOf(outcome.out);
}

TEST(ZshCompletionScript, QuotesWhatEndsTheDescriptionOfAnOption) {
  const std::string escaped = R"(It's \[odd\]: 50% \\ "done" ~ $HOME `id`)";
  EXPECT_THAT(PassedToZsh("none"), Contains("--flag[" + escaped + "]"));
  EXPECT_THAT(PassedToZsh("argument"), Contains("--inner[" + escaped + "]"));
}

TEST(ZshCompletionScript, QuotesOnlyTheColonInTheNameOfAnArgument) {
  EXPECT_THAT(PassedToZsh("none"), Contains(R"(*--word=[]:N\:M [~]: )"));
  EXPECT_THAT(PassedToZsh("argument"), Contains(R"(*:N\:M [~]: )"));
}

TEST(ZshCompletionScript, KeepsTheDescriptionOfASubcommand) {
  EXPECT_THAT(PassedToZsh("subcommand"), Contains(std::string("sub:") + oddText));
}

}  // namespace
