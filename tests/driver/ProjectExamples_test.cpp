// The example projects have the findings that the files next to them list.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "TextFiles.h"
#include "tavrin_driver/internal/Position.h"

namespace {

namespace fs = std::filesystem;

const fs::path projects = fs::path(TAVRIN_EXAMPLES_DIR) / "projects";

std::vector<fs::path> XmlFilesIn(const fs::path& directory) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory))
    if (entry.path().extension() == ".xml") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

// Returns the findings as lines "LINE:COLUMN: message", without a position if there is none.
std::string FindingsIn(const fs::path& path) {
  zq::ProjectValidator validator(ReadFile(path));
  validator.valid();
  std::ostringstream lines;
  for (std::size_t i = 0; i < validator.messages().size(); ++i) {
    const zq::XmlPosition& place = validator.places()[i];
    if (place != zq::XmlPosition{}) lines << place.line << ':' << place.column << ": ";
    lines << validator.messages()[i] << '\n';
  }
  return lines.str();
}

std::string WithoutPositions(const std::string& findings) {
  std::istringstream lines(findings);
  std::string texts;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t end = line.find_first_not_of("0123456789:");
    texts += (end == 0 ? line : line.substr(end + 1)) + '\n';
  }
  return texts;
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) { return info.param.stem(); }

class ValidProject : public testing::TestWithParam<fs::path> {};

TEST_P(ValidProject, HasNoFindings) { EXPECT_EQ(FindingsIn(GetParam()), ""); }

INSTANTIATE_TEST_SUITE_P(, ValidProject, testing::ValuesIn(XmlFilesIn(projects)), NameOf);

class BrokenProject : public testing::TestWithParam<fs::path> {};

TEST_P(BrokenProject, HasTheExpectedFindings) {
  std::string expected = ReadFile(fs::path(GetParam()).replace_extension(".txt"));
  if (!tavrin::KeepsPositions()) expected = WithoutPositions(expected);
  EXPECT_THAT(expected, testing::Not(testing::IsEmpty()));
  EXPECT_EQ(FindingsIn(GetParam()), expected);
}

INSTANTIATE_TEST_SUITE_P(, BrokenProject, testing::ValuesIn(XmlFilesIn(projects / "broken")), NameOf);

}  // namespace
