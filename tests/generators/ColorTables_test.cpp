// The generator of colour data rejects functions from which it would compute wrong tables.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "RunProgram.h"

namespace {

// A temporary file, removed by the destructor.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& text)
      : path_(testing::TempDir() + "color_tables." + std::to_string(getpid()) + ".csv") {
    std::ofstream(path_) << text;
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() { std::filesystem::remove(path_); }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

std::string Rows(int first, int last) {
  std::string text = "wavelength,x,y,z\n";
  for (int wavelength = first; wavelength <= last; ++wavelength)
    text += std::to_string(wavelength) + ",0.1,0.2,0.3\n";
  return text;
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  return text.replace(text.find(what), what.size(), with);
}

struct Refusal {
  const char* name;
  std::string text;
  std::string complaint;  // after the name of the file
};

void PrintTo(const Refusal& refusal, std::ostream* os) { *os << refusal.name; }

const Refusal refusals[] = {
    {"Empty", "", "expected the wavelengths 360 nm to 830 nm, found 0 rows"},
    {"LastWavelengthMissing", Rows(360, 829), "expected the wavelengths 360 nm to 830 nm, found 470 rows"},
    {"OneWavelengthTooMany", Rows(360, 831), "expected the wavelengths 360 nm to 830 nm, found 472 rows"},
    {"OtherFirstWavelength", Rows(361, 831), R"(expected "360,x,y,z", found "361,0.1,0.2,0.3")"},
    {"GapInTheMiddle", Replaced(Rows(360, 830), "500,0.1,0.2,0.3\n", ""),
     R"(expected "500,x,y,z", found "501,0.1,0.2,0.3")"},
    {"MissingValue", Replaced(Rows(360, 830), "500,0.1,0.2,0.3\n", "500,0.1,0.2\n"),
     R"(expected "500,x,y,z", found "500,0.1,0.2")"},
    {"NotANumber", Replaced(Rows(360, 830), "500,0.1,0.2,0.3\n", "500,0.1,y,0.3\n"),
     R"(expected "500,x,y,z", found "500,0.1,y,0.3")"},
};

class ColorTables : public testing::TestWithParam<Refusal> {};

TEST_P(ColorTables, RefusesIncompleteFunctions) {
  const ScratchFile file(GetParam().text);
  const ProgramOutcome refused = {1, "", "color_tables: " + file.Path() + ": " + GetParam().complaint + '\n'};
  EXPECT_EQ(RunProgram({{TAVRIN_COLOR_TABLES, file.Path()}, ""}), refused);
}

INSTANTIATE_TEST_SUITE_P(, ColorTables, testing::ValuesIn(refusals),
                         [](const auto& row) -> std::string { return row.param.name; });

TEST(ColorTablesProgram, RefusesAFileThatCannotBeRead) {
  const ProgramOutcome refused = {1, "", "color_tables: /nowhere.csv: cannot be read\n"};
  EXPECT_EQ(RunProgram({{TAVRIN_COLOR_TABLES, "/nowhere.csv"}, ""}), refused);
}

TEST(ColorTablesProgram, ReportsAnOutputThatCannotBeWritten) {
  const ScratchFile file(Rows(360, 830));
  ProgramRun run;
  run.commandLine = {TAVRIN_COLOR_TABLES, file.Path()};
  run.outputFile = "/dev/full";
  const ProgramOutcome refused = {1, "", "color_tables: standard output cannot be written\n"};
  EXPECT_EQ(RunProgram(run), refused);
}

}  // namespace
