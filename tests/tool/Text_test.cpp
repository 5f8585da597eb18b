#include "tools/tavrin/Text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <locale>
#include <string>

namespace {

std::string Utf8(std::uint32_t codePoint) {
  const auto byte = [](std::uint32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
  const auto next = [&](unsigned shift) { return byte(0x80U | ((codePoint >> shift) & 0x3fU)); };
  if (codePoint < 0x80) return {byte(codePoint)};
  if (codePoint < 0x800) return {byte(0xc0U | (codePoint >> 6U)), next(0)};
  if (codePoint < 0x10000) return {byte(0xe0U | (codePoint >> 12U)), next(6), next(0)};
  return {byte(0xf0U | (codePoint >> 18U)), next(12), next(6), next(0)};
}

struct WidthRange {
  std::uint32_t first;
  std::uint32_t last;
  std::size_t width;
};

constexpr WidthRange widths[] = {
    // combining marks and variation selectors
    {0x300, 0x36f, 0},
    {0x1ab0, 0x1aff, 0},
    {0x1dc0, 0x1dff, 0},
    {0x20d0, 0x20ff, 0},
    {0xfe00, 0xfe0f, 0},
    {0xfe20, 0xfe2f, 0},
    // East Asian scripts and pictographs
    {0x1100, 0x115f, 2},
    {0x2e80, 0x303e, 2},
    {0x3041, 0xa4cf, 2},
    {0xac00, 0xd7a3, 2},
    {0xf900, 0xfaff, 2},
    {0xfe30, 0xfe6f, 2},
    {0xff00, 0xff60, 2},
    {0xffe0, 0xffe6, 2},
    {0x1f300, 0x1f64f, 2},
    {0x1f900, 0x1f9ff, 2},
    {0x20000, 0x3fffd, 2},
};

class CharacterWidth : public testing::TestWithParam<WidthRange> {};

// The characters next to a range belong to an adjacent range, or are one column wide.
std::size_t ExpectedWidth(std::uint32_t codePoint) {
  for (const WidthRange& range : widths) {
    if (codePoint >= range.first && codePoint <= range.last) return range.width;
  }
  return 1;
}

TEST_P(CharacterWidth, ChangesExactlyAtTheBoundsOfItsRange) {
  for (const std::uint32_t codePoint :
       {GetParam().first - 1, GetParam().first, GetParam().last, GetParam().last + 1}) {
    EXPECT_EQ(tool::DisplayWidth(Utf8(codePoint)), ExpectedWidth(codePoint)) << "U+" << std::hex << codePoint;
  }
}

INSTANTIATE_TEST_SUITE_P(, CharacterWidth, testing::ValuesIn(widths));

TEST(DisplayWidth, IsTheSumOfTheCharacters) {
  EXPECT_EQ(tool::DisplayWidth(""), 0U);
  EXPECT_EQ(tool::DisplayWidth("a\xCC\x88" + Utf8(0x6f22) + "z"), 4U);
}

TEST(DisplayWidth, CountsAMalformedByteAsOneColumn) { EXPECT_EQ(tool::DisplayWidth("\xE6\xBC"), 2U); }

TEST(PrintableLines, EndsLinesAtNewlinesOnly) {
  EXPECT_EQ(tool::PrintableLines("a~b\nc\td"), "a~b\\n\nc\\td");
}

}  // namespace
