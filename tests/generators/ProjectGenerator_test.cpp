#include <gtest/gtest.h>

#include <tavrin_driver/ProjectValidator.h>
#include <cstddef>
#include <string>
#include <string_view>

#include "TextFiles.h"
#include "tools/generators/project_generator/HouseWriter.h"

namespace {

std::size_t Count(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

class GeneratedProject : public testing::TestWithParam<std::uint32_t> {};

TEST_P(GeneratedProject, IsValidAndHasTheNumberOfItemsAskedFor) {
  const std::string text = HouseOf(GetParam());
  EXPECT_EQ(Count(text, "<id>"), GetParam());
  zq::ProjectValidator validator(text);
  EXPECT_TRUE(validator.valid()) << validator.messages().front();
}

TEST_P(GeneratedProject, HasItsLargestIdAsTheCurrentId) {
  const std::string last = std::to_string(GetParam());
  const std::string text = HouseOf(GetParam());
  EXPECT_EQ(Count(text, "<iditemcurrent>" + last + "</iditemcurrent>"), 1U);
  EXPECT_EQ(Count(text, "<id>" + last + "</id>"), 1U);
}

INSTANTIATE_TEST_SUITE_P(, GeneratedProject, testing::Values(1U, 2U, 5U, 6U, 26U, 27U, 1000U));

TEST(HouseOf, ZeroItemsHasOneItem) { EXPECT_EQ(HouseOf(0), HouseOf(1)); }

TEST(HouseOf, HasOneElementOrTagInEachLineAndIndentsIt) {
  std::size_t depth = 0;
  for (const std::string& line : LinesOf(HouseOf(30))) {
    const std::size_t indent = line.find('<');
    const std::string_view markup = std::string_view(line).substr(indent);
    if (markup.substr(0, 2) == "</") --depth;
    EXPECT_EQ(indent, 2 * depth) << line;
    EXPECT_EQ(markup.back(), '>') << line;
    const bool isClosed = markup[1] == '?' || Count(markup, "/") > 0;
    if (!isClosed) ++depth;
  }
}

TEST(HouseOf, RepeatsIdsBeyondTheLargestOneAllowed) {
  const std::string text = HouseOf(200'002);
  EXPECT_EQ(Count(text, "<iditemcurrent>200000</iditemcurrent>"), 1U);
  EXPECT_EQ(Count(text, "<id>200000</id>"), 1U);
  EXPECT_EQ(Count(text, "<id>200001</id>"), 0U);
  EXPECT_EQ(Count(text, "<id>1</id>"), 2U);
  EXPECT_EQ(Count(text, "<id>2</id>"), 2U);
  EXPECT_EQ(Count(text, "<id>3</id>"), 1U);
}

}  // namespace
