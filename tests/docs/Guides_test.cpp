// Tests that the code of the guides and of the README is compiled, and that it prints the output that they
// show.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

namespace fs = std::filesystem;

const fs::path project = fs::path(TAVRIN_EXAMPLES_DIR).parent_path();
const fs::path snippets = project / "docs/snippets";

std::string Trimmed(const std::string& line) {
  const std::size_t begin = line.find_first_not_of(' ');
  return begin == std::string::npos ? "" : line.substr(begin, line.find_last_not_of(' ') + 1 - begin);
}

bool StartsWith(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

std::vector<fs::path> FilesBelow(const fs::path& directory, const std::string& extension) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.path().extension() == extension) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<fs::path> FilesBelow(const std::vector<fs::path>& directories, const std::string& extension) {
  std::vector<fs::path> files;
  for (const fs::path& directory : directories) {
    const std::vector<fs::path> more = FilesBelow(directory, extension);
    files.insert(files.end(), more.begin(), more.end());
  }
  return files;
}

// A temporary directory, removed by the destructor.
class ScratchDirectory {
 public:
  ScratchDirectory() : path_(fs::path(testing::TempDir()) / ("guides." + std::to_string(getpid()))) {
    fs::create_directory(path_);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory() { fs::remove_all(path_); }

  const fs::path& Path() const { return path_; }

 private:
  fs::path path_;
};

TEST(Guides, ShowWhatTheirProgramsAndTheToolPrint) {
  const ScratchDirectory scratch;
  const ProgramOutcome done = {0, "", ""};
  EXPECT_EQ(RunProgram({{(snippets / "record").string(), TAVRIN_BUILD_DIR, scratch.Path().string()},
                        "",
                        {},
                        ".",
                        false,
                        ""}),
            done);
  const std::vector<fs::path> shown = FilesBelow(snippets, ".txt");
  EXPECT_EQ(FilesBelow(scratch.Path(), ".txt").size(), shown.size() - 1);  // except CMakeLists.txt
  for (const fs::path& text : shown) {
    if (text.filename() == "CMakeLists.txt") continue;
    EXPECT_EQ(ReadFile(scratch.Path() / text.filename()), ReadFile(text)) << text;
  }
}

TEST(Readme, CommandLinesWork) {
  // A copy of the examples where commands may write files; the tool is found in PATH.
  const ScratchDirectory scratch;
  for (const auto& entry : fs::directory_iterator(TAVRIN_EXAMPLES_DIR))
    fs::create_symlink(entry.path(), scratch.Path() / entry.path().filename());
  const std::string path = fs::path(TAVRIN_TOOL).parent_path().string() + ":/usr/bin:/bin";

  int count = 0;
  for (const std::string& line : LinesOf(ReadFile(project / "README.md"))) {
    if (!StartsWith(line, "    tavrin ")) continue;
    ++count;
    const ProgramOutcome outcome =
        RunProgram({{"/bin/sh", "-c", line}, "", {{"PATH", path}}, scratch.Path().string(), false, ""});
    EXPECT_LE(outcome.status, 1) << line << '\n' << outcome;  // 1: a check failed
    EXPECT_NE(outcome.out, "") << line << '\n' << outcome;
  }
  EXPECT_GT(count, 0);
}

ProgramOutcome Embed(const std::vector<std::string>& arguments) {
  std::vector<std::string> commandLine = {(project / "docs/embed.py").string()};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  return RunProgram({commandLine, "", {}, ".", false, ""});
}

TEST(Guides, MatchTheSourcesOfTheirBlocks) { EXPECT_EQ(Embed({"--check"}), (ProgramOutcome{0, "", ""})); }

TEST(Guides, AreRefilledWhereABlockDiffersFromItsSource) {
  const ScratchDirectory scratch;
  const fs::path page = scratch.Path() / "page.md";
  const std::string begin = "# Colours\n\n<!-- docs/snippets/colours.txt: text -->\n```text\n";
  const std::string end = "```\n\nText.\n\n```text\nnot embedded\n```\n";
  std::ofstream(page) << begin << "old\n" << end;

  EXPECT_EQ(Embed({"--check", page.string()}),
            (ProgramOutcome{1, "", page.string() + ": out of date; build the target update_docs\n"}));
  EXPECT_EQ(ReadFile(page), begin + "old\n" + end);

  EXPECT_EQ(Embed({page.string()}), (ProgramOutcome{0, "", ""}));
  EXPECT_EQ(ReadFile(page), begin + "0.45,0.41,1 is 2820 K\n" + end);
  EXPECT_EQ(Embed({"--check", page.string()}), (ProgramOutcome{0, "", ""}));
}

TEST(Guides, NameNoMissingRegion) {
  const ScratchDirectory scratch;
  const fs::path page = scratch.Path() / "page.md";
  std::ofstream(page) << "<!-- docs/snippets/colours.txt: missing -->\n```text\n```\n";
  const ProgramOutcome outcome = Embed({"--check", page.string()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, testing::HasSubstr("colours.txt: expected two lines with [missing], found 0"));
}

// Returns whether a line is C++ code, whatever the language of its block is.
bool IsCode(const std::string& line) {
  const std::string text = Trimmed(line);
  return !text.empty() && (text.back() == ';' || StartsWith(text, "#include"));
}

// Returns the lines of C++ code on a page that docs/embed.py does not write: no comment before their block
// names a source.
std::vector<std::string> CodeWithoutSource(const std::string& page) {
  std::vector<std::string> code;
  bool fenced = false;
  std::string language;
  std::string previous;
  for (const std::string& line : LinesOf(page)) {
    const std::string text = Trimmed(line);
    if (StartsWith(text, "```") || StartsWith(text, "~~~")) {
      fenced = !fenced;
      language = !fenced ? "" : StartsWith(previous, "<!-- ") ? "embedded" : Trimmed(text.substr(3));
    } else if (fenced ? StartsWith(language, "c++") || StartsWith(language, "cpp") ||
                            (language.empty() && IsCode(line))
                      : StartsWith(line, "    ") && IsCode(line)) {
      code.push_back(line);
    }
    previous = line;
  }
  return code;
}

TEST(Guides, ContainOnlyCodeThatIsCompiled) {
  EXPECT_EQ(CodeWithoutSource(
                "\n```cpp\nf()\n```\n\n    int x;\n\n```\ny = 1;\n```\n\n  ```sh\n    exit;\n  ```\nz;\n"
                "<!-- examples/a.cpp -->\n```cpp\na;\n```\n"),
            (std::vector<std::string>{"f()", "    int x;", "y = 1;"}));
  std::vector<fs::path> pages = FilesBelow(project / "docs", ".md");
  for (const char* const page : {"README.md", "CONTRIBUTING.md", "CHANGELOG.md"})
    pages.push_back(project / page);
  for (const fs::path& page : pages)
    EXPECT_EQ(CodeWithoutSource(ReadFile(page)), std::vector<std::string>())
        << page << ": move the code to docs/snippets and name its source in a comment (docs/embed.py)";
}

TEST(Headers, ShowOnlyCodeThatIsCompiled) {
  std::set<std::string> compiled;
  for (const fs::path& source : FilesBelow({snippets, TAVRIN_EXAMPLES_DIR}, ".cpp")) {
    for (const std::string& line : LinesOf(ReadFile(source))) compiled.insert(Trimmed(line));
  }
  int count = 0;
  for (const fs::path& header : FilesBelow({project / "include", project / "tavrin_driver"}, ".h")) {
    bool isExample = false;
    for (const std::string& line : LinesOf(ReadFile(header))) {
      const std::string comment = Trimmed(line);
      if (comment == "/// @code" || comment == "/// @endcode") {
        isExample = comment == "/// @code";
        continue;
      }
      const bool isIndented = StartsWith(comment, "///     ") && IsCode(comment);
      if (!isExample && !isIndented) continue;
      ++count;
      EXPECT_EQ(compiled.count(Trimmed(comment.substr(3))), 1U) << header << ": " << line;
    }
    EXPECT_FALSE(isExample) << header << ": @code without @endcode";
  }
  EXPECT_GT(count, 50);
}

}  // namespace
