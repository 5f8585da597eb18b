// Checks the calls by which the XML library protects and accelerates Expat.

#include <dlfcn.h>
#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "UnwrittenText.h"

namespace {

constexpr std::size_t largePage = std::size_t{2} << 20U;

std::vector<unsigned long> salts;  // NOLINT(google-runtime-int): the type of Expat

struct Range {
  std::uintptr_t begin;
  std::size_t size;
};
std::vector<Range> largePages;  // that were requested

std::vector<std::size_t> pieces;  // the sizes of the pieces passed to the parser

int createdParsers = 0;

std::string Document(std::size_t size) { return "<a>" + std::string(size, 'x') + "</a>"; }

}  // namespace

extern "C" {

TAVRIN_EXPORT XML_Parser XML_ParserCreate_MM(const XML_Char* encoding,
                                             const XML_Memory_Handling_Suite* memory,
                                             const XML_Char* separator) {
  ++createdParsers;
  const auto real = reinterpret_cast<decltype(&XML_ParserCreate_MM)>(dlsym(RTLD_NEXT, "XML_ParserCreate_MM"));
  return real(encoding, memory, separator);
}

TAVRIN_EXPORT int XML_SetHashSalt(XML_Parser parser, unsigned long salt) {
  salts.push_back(salt);
  const auto real = reinterpret_cast<decltype(&XML_SetHashSalt)>(dlsym(RTLD_NEXT, "XML_SetHashSalt"));
  return real(parser, salt);
}

TAVRIN_EXPORT XML_Status XML_ParseBuffer(XML_Parser parser, int length, int isFinal) {
  pieces.push_back(static_cast<std::size_t>(length));
  const auto real = reinterpret_cast<decltype(&XML_ParseBuffer)>(dlsym(RTLD_NEXT, "XML_ParseBuffer"));
  return real(parser, length, isFinal);
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

// Creating a parser costs more than parsing a message. A parser keeps memory in proportion to its longest
// text.
TEST(XmlParserCalls, CreateOneParserPerThreadForTextsOfUpTo64Kibibytes) {
  const std::string largest = Document(65536 - Document(0).size());
  std::thread([&largest] {
    createdParsers = 0;
    EXPECT_TRUE(zq::CreateXmlDocument("<a/>"));
    EXPECT_TRUE(zq::CreateXmlDocument(largest));
    EXPECT_TRUE(zq::CreateXmlDocument(std::string(largest)));
    EXPECT_TRUE(zq::CreateXmlDocument("<a/>"));
    EXPECT_EQ(createdParsers, 1);
    EXPECT_TRUE(zq::CreateXmlDocument(largest + "\n"));
    EXPECT_TRUE(zq::CreateXmlDocument("<a/>"));
    EXPECT_EQ(createdParsers, 2);
  }).join();
}

TEST(XmlParserCalls, RequestLargePagesForALargeText) {
  largePages.clear();
  const std::string text = Document(8 * largePage);
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  ASSERT_TRUE(document);
  int wholeTexts = 0;
  for (const Range& range : largePages) {
    EXPECT_EQ(range.begin % largePage, 0U);
    EXPECT_EQ(range.size % largePage, 0U);
    EXPECT_LE(range.size, 2 * text.size());
    if (range.size >= 7 * largePage) ++wholeTexts;
  }
  EXPECT_EQ(wholeTexts, 2) << "the parser's copy and the document's";
}

TEST(XmlParserCalls, RequestLargePagesForALargeTree) {
  largePages.clear();
  const zq::XmlNode::Ptr node = zq::CreateXmlNode("a", std::string(8 * largePage, 'x'));
  EXPECT_THAT(largePages, testing::Not(testing::IsEmpty()));
}

TEST(XmlParserCalls, RequestNoLargePagesForASmallText) {
  largePages.clear();
  EXPECT_TRUE(zq::CreateXmlDocument(Document(largePage / 2)));
  EXPECT_THAT(largePages, testing::IsEmpty());
}

// Small pieces save memory. The parser counts the lines of all but the last one.
TEST(XmlParserCalls, FeedALargeMovedInTextInSmallPiecesExceptItsLastQuarter) {
  constexpr std::size_t smallPiece = 1U << 16U;
  constexpr std::size_t mebibyte = 1U << 20U;
  struct Row {
    std::size_t size;
    std::size_t largestLast;
  };
  for (const auto& [size, largestLast] :
       {Row{4 * mebibyte, 4 * mebibyte}, Row{4 * mebibyte + 1, 4 * mebibyte},
        Row{16 * mebibyte, 4 * mebibyte}, Row{24 * mebibyte, 6 * mebibyte}}) {
    SCOPED_TRACE(size);
    std::string text = "<a>";
    while (text.size() < size - 2000) text += "<b>" + std::string(1000, 'x') + "</b>";
    text += std::string(size - 4 - text.size(), ' ') + "</a>";
    pieces.clear();
    ASSERT_TRUE(zq::CreateXmlDocument(std::move(text)));
    EXPECT_LE(pieces.back(), largestLast);
    EXPECT_GT(pieces.back(), largestLast - smallPiece);
    pieces.pop_back();
    EXPECT_THAT(pieces, testing::Each(smallPiece));
  }
}

TEST(XmlParserCalls, FeedEachTextInSmallPiecesThatReportsItsProgress) {
  pieces.clear();
  std::string text = "<a>";
  for (int i = 0; i < 100'000; ++i) text += "<b/>";
  zq::XmlError error;
  ASSERT_TRUE(zq::CreateXmlDocument(text + "</a>", error, [](std::size_t /*parsed*/) {}));
  EXPECT_THAT(pieces, testing::SizeIs(7));
  EXPECT_THAT(pieces, testing::Each(testing::Le(1U << 16U)));
}

TEST(XmlParserCalls, FeedATextThatTheCallerKeepsInOnePiece) {
  pieces.clear();
  const std::string text = Document(8 * largePage);
  ASSERT_TRUE(zq::CreateXmlDocument(text));
  EXPECT_THAT(pieces, testing::ElementsAre(text.size()));
}

// Sanitizers mark each byte of such texts, and emulators may lack the address space.
#if SIZE_MAX > UINT32_MAX && !defined(TAVRIN_SANITIZED) && !defined(TAVRIN_EMULATED)
TEST(XmlParserCalls, DoNotFeedMoreThanHalfAGibibyteAtOnce) {
  pieces.clear();
  const std::string text = UnwrittenText("</>", (std::size_t{1} << 29U) + 1);
  EXPECT_FALSE(zq::CreateXmlDocument(text));
  EXPECT_THAT(pieces, testing::ElementsAre(1U << 16U)) << "the first piece is not XML";
}

TEST(XmlParserCalls, DoNotFeedATextOfFourGibibytes) {
  pieces.clear();
  zq::XmlError error;
  std::string text = UnwrittenText("</>", std::size_t{1} << 32U);
  EXPECT_FALSE(zq::CreateXmlDocument(text));
  EXPECT_FALSE(zq::CreateXmlDocument(std::move(text), error));
  EXPECT_EQ(error.text, "a document of more than 4 GiB");
  EXPECT_THAT(pieces, testing::IsEmpty());

  // NOLINTNEXTLINE(bugprone-use-after-move): the documented behaviour
  text.pop_back();
  EXPECT_FALSE(zq::CreateXmlDocument(std::move(text)));
  EXPECT_THAT(pieces, testing::SizeIs(1)) << "the first piece is not XML";
}
#endif
