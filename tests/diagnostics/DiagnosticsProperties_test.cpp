// Checks properties of diagnostics for the examples and for many broken variants of them.

#include "DiagnosticsProperties.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "TextFiles.h"

namespace {

using BrokenProperty = std::string (*)(const std::string&);

std::vector<std::string> ExamplesIn(const std::string& directory) {
  std::vector<std::string> texts;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(TAVRIN_EXAMPLES_DIR) / directory)) {
    const std::string extension = entry.path().extension();
    if (extension == ".xml" || extension == ".json" || directory != "projects/broken")
      if (entry.is_regular_file()) texts.push_back(ReadFile(entry.path()));
  }
  EXPECT_FALSE(texts.empty()) << directory;
  return texts;
}

// Returns a text, and variants that are truncated, changed or shortened at many of its bytes.
std::vector<std::string> VariantsOf(const std::string& text, std::size_t count) {
  std::vector<std::string> variants = {text};
  const std::size_t step = text.size() / count + 1;
  for (std::size_t at = 0; at < text.size(); at += step) {
    variants.push_back(text.substr(0, at));
    for (const char byte : {'"', '{', '<', 'x', '1', ' '}) {
      variants.push_back(text);
      variants.back()[at] = byte;
    }
    variants.push_back(text);
    variants.back().erase(at, 1);
  }
  return variants;
}

// Swaps, repeats and removes whole lines, which breaks the structure but not the syntax.
std::vector<std::string> LineVariantsOf(const std::string& text) {
  std::vector<std::string> variants;
  const std::vector<std::string> lines = LinesOf(text);
  const auto join = [&variants](const std::vector<std::string>& changed) {
    std::string joined;
    for (const std::string& line : changed) joined += line + '\n';
    variants.push_back(joined);
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::vector<std::string> changed = lines;
    changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(i));
    join(changed);
    changed = lines;
    changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(i), lines[i]);
    join(changed);
    if (i == 0) continue;
    changed = lines;
    std::swap(changed[i - 1], changed[i]);
    join(changed);
  }
  return variants;
}

void ExpectProperties(BrokenProperty broken, const std::vector<std::string>& directories, std::size_t count) {
  for (const std::string& directory : directories) {
    for (const std::string& text : ExamplesIn(directory)) {
      for (const std::string& variant : VariantsOf(text, count)) EXPECT_EQ(broken(variant), "") << variant;
      if (text.size() > 100000) continue;
      for (const std::string& variant : LineVariantsOf(text)) EXPECT_EQ(broken(variant), "") << variant;
    }
  }
}

TEST(DiagnosticsProperties, AreTrueForCommands) {
  ExpectProperties(BrokenPropertyOfCommand, {"commands", "broken", "bindings"}, 40);
}

TEST(DiagnosticsProperties, AreTrueForBindings) {
  ExpectProperties(BrokenPropertyOfBinding, {"bindings", "bindings/broken", "conditionals"}, 80);
}

TEST(DiagnosticsProperties, AreTrueForConditionals) {
  ExpectProperties(BrokenPropertyOfConditional, {"conditionals", "conditionals/broken", "commands"}, 80);
}

TEST(DiagnosticsProperties, AreTrueForProjects) {
  ExpectProperties(BrokenPropertyOfProject, {"projects", "projects/broken"}, 60);
}

}  // namespace
