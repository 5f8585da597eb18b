#include "diagnostics/SourceText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using tavrin::diagnostics::SourceText;
using zq::XmlPosition;

std::vector<std::string> LinesOf(std::string_view text, std::uint32_t count) {
  const SourceText source(text);
  std::vector<std::string> lines;
  for (std::uint32_t number = 1; number <= count; ++number) {
    const auto [begin, end] = source.Line(number);
    lines.emplace_back(text.substr(begin, end - begin));
  }
  return lines;
}

TEST(SourceText, LinesEndAtLfCrLfAndCr) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(LinesOf("a\nbc\r\nd\re", 4), (Lines{"a", "bc", "d", "e"}));
  EXPECT_EQ(LinesOf("a\n\r\n\r\r", 5), (Lines{"a", "", "", "", ""}));
  EXPECT_EQ(LinesOf("", 1), Lines{""});
}

TEST(SourceText, LinesBeyondTheTextAreEmptyAtItsEnd) {
  const auto [begin, end] = SourceText("a\nb").Line(3);
  EXPECT_EQ(begin, 3U);
  EXPECT_EQ(end, 3U);
}

TEST(SourceText, ConvertsPositionsToBytesAndBack) {
  const SourceText source("a\nbc\r\nd");
  const struct {
    std::size_t offset;
    XmlPosition position;
  } rows[] = {{0, {1, 1}}, {1, {1, 2}}, {2, {2, 1}}, {5, {2, 4}}, {6, {3, 1}}, {7, {3, 2}}};
  for (const auto& [offset, position] : rows) {
    EXPECT_EQ(source.PositionAt(offset), position) << offset;
    EXPECT_EQ(source.OffsetOf(position), offset);
  }
}

TEST(SourceText, ColumnsBeyondTheTextAreItsEnd) { EXPECT_EQ(SourceText("a\nbc").OffsetOf({2, 4}), 4U); }

}  // namespace
