// How the XML library protects and speeds up the parser, seen in the calls that it makes.

#include <dlfcn.h>
#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20U;

std::vector<unsigned long> salts;  // NOLINT(google-runtime-int): the type of Expat

struct Range {
  std::uintptr_t begin;
  std::size_t size;
};
std::vector<Range> largePages;  // that were asked for

std::string Document(std::size_t size) { return "<a>" + std::string(size, 'x') + "</a>"; }

}  // namespace

extern "C" {

TAVRIN_EXPORT int XML_SetHashSalt(XML_Parser parser, unsigned long salt) {
  salts.push_back(salt);
  const auto real = reinterpret_cast<decltype(&XML_SetHashSalt)>(dlsym(RTLD_NEXT, "XML_SetHashSalt"));
  return real(parser, salt);
}

TAVRIN_EXPORT int madvise(void* address, std::size_t length, int advice) noexcept {
  if (advice == MADV_HUGEPAGE) largePages.push_back({reinterpret_cast<std::uintptr_t>(address), length});
  return 0;
}
}

TEST(XmlParserCalls, SaltTheHashTablesOfEachThreadAtRandom) {
  salts.clear();
  constexpr std::size_t threads = 4;
  for (std::size_t i = 0; i < threads; ++i)
    std::thread([] { EXPECT_TRUE(zq::CreateXmlDocument("<a/>")); }).join();
  ASSERT_EQ(salts.size(), threads);
  EXPECT_THAT(salts, testing::Each(testing::Ne(0U))) << "with 0, the parser draws a salt for each text";
  EXPECT_GT(std::set(salts.begin(), salts.end()).size(), 1U);
}

TEST(XmlParserCalls, AskForLargePagesForALargeText) {
  largePages.clear();
  const std::string text = Document(8 * kLargePage);
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  ASSERT_TRUE(document);
  int wholeTexts = 0;
  for (const Range& range : largePages) {
    EXPECT_EQ(range.begin % kLargePage, 0U);
    EXPECT_EQ(range.size % kLargePage, 0U);
    if (range.size >= 7 * kLargePage) ++wholeTexts;
  }
  EXPECT_EQ(wholeTexts, 2) << "the parser's copy and the document's";
}

TEST(XmlParserCalls, AskForLargePagesForALargeTree) {
  largePages.clear();
  const zq::XmlNode::Ptr node = zq::CreateXmlNode("a", std::string(8 * kLargePage, 'x'));
  EXPECT_THAT(largePages, testing::Not(testing::IsEmpty()));
}

TEST(XmlParserCalls, AskForNoLargePagesForASmallText) {
  largePages.clear();
  EXPECT_TRUE(zq::CreateXmlDocument(Document(kLargePage / 2)));
  EXPECT_THAT(largePages, testing::IsEmpty());
}
