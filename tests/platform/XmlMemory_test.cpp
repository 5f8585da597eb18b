// How much memory documents use, and what happens without memory.

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <new>
#include <string>
#include <utility>

#include "Repeat.h"

namespace {

using zq::XmlDocument;

constexpr std::size_t mebibyte = 1024UL * 1024;

std::size_t AllocatedBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// A thread keeps its parser, but releases the memory that a huge or deep text needed.
TEST(XmlMemory, RetainsLittleMemory) {
  const std::string huge = "<a><![CDATA[" + Repeat("x\r\n", 4 * mebibyte) + "]]>";
  for (const std::string& text : {huge + "</a>", huge + "</b>", Repeat("<a>", mebibyte / 4)}) {
    zq::CreateXmlDocument("<a/>");
    const std::size_t before = AllocatedBytes();
    zq::CreateXmlDocument(text);
    EXPECT_LT(AllocatedBytes(), before + 4 * mebibyte) << text.size();
  }
}

TEST(XmlMemory, RetainsNothingOfManyMalformedTexts) {
  const std::string text = "<a>" + Repeat("x&lt;", 1000) + "</b>";
  EXPECT_FALSE(zq::CreateXmlDocument(text));
  const std::size_t before = AllocatedBytes();
  for (int round = 0; round < 1000; ++round) zq::CreateXmlDocument(text);
  EXPECT_LT(AllocatedBytes(), before + mebibyte);
}

// Each of the five kinds of pieces makes up a fifth of the text, which fills the parser's buffer.
TEST(XmlMemory, CopiesNothingThatOccursVerbatimInItsText) {
  const std::string longName(10'000, 'n');
  const std::string longText(20'000, 't');
  const std::string lines = Repeat(std::string(99, 't') + '\n', 200);
  const std::string element = "<b" + longName + " x" + longName + "='" + longText + "' e='' y" + longName +
                              " = \"" + longText + "\">" + lines + "</b" + longName + ">";
  const std::string text = "<a>" + Repeat(element, 8 * mebibyte / element.size()) + "</a>";
  ASSERT_LT(text.size(), 8 * mebibyte);
  zq::CreateXmlDocument(text);
  const std::size_t before = AllocatedBytes();
  const XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  EXPECT_LT(AllocatedBytes() - before, 8 * mebibyte + mebibyte / 2);
}

// The tree of a large text keeps the parser, and with it the memory that the parser needs for each level.
TEST(XmlMemory, KeepsABoundedMultipleOfADeepText) {
  const std::string deep = Repeat("<a>", mebibyte / 4) + Repeat("</a>", mebibyte / 4);
  const std::size_t before = AllocatedBytes();
  const XmlDocument::Ptr document = zq::CreateXmlDocument(deep);
  ASSERT_TRUE(document);
  EXPECT_LT(AllocatedBytes() - before, 40 * deep.size());
}

// The memory of the parser is not allocated by C++.
TEST(XmlMemoryDeathTest, ThrowsWhenTheParserRunsOutOfMemory) {
  enum Outcome : int { throws, returns };
  constexpr std::size_t huge = 64 * mebibyte;
  std::string text = "<a x='" + std::string(huge, 'x') + "'/>";
  const auto parseInLittleMemory = [&text] {
    const rlimit limit = {3 * huge, RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &limit);
    try {
      zq::CreateXmlDocument(std::move(text));
    } catch (const std::bad_alloc&) {
      _exit(throws);
    }
    _exit(returns);
  };
  EXPECT_EXIT(parseInLittleMemory(), testing::ExitedWithCode(throws), "");
}

}  // namespace
