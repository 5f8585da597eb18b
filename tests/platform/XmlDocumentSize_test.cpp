// Documents and trees that are deep, huge or both.

#include <gtest/gtest.h>

#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "ParseXml.h"
#include "Repeat.h"
#include "Scale.h"
#include "SmallStack.h"

namespace {

using zq::XmlDocument;
using zq::XmlNode;
using zq::XmlPosition;

constexpr std::size_t mebibyte = 1024UL * 1024;
constexpr std::size_t hugeSize = 64 * mebibyte;
constexpr std::size_t deepCount = largeCount;

TEST(XmlDocumentSize, IsSafeAtAnyDepth) {
  RunOnSmallStack([] {
    const std::string text = Repeat("<a>", deepCount) + "x" + Repeat("</a>", deepCount);
    XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    ASSERT_TRUE(document);
    XmlNode::Ptr root = document->GetRoot();
    document.reset();
    XmlNode::Ptr node = root;
    std::size_t depth = 1;
    while (const XmlNode::Ptr child = node->GetIterator()->First()) {
      node = child;
      ++depth;
    }
    EXPECT_EQ(depth, deepCount);
    EXPECT_EQ(node->GetData(), "x");
    EXPECT_EQ(zq::PositionOf(*node), (XmlPosition{1, 3 * (deepCount - 1) + 1}));
    EXPECT_TRUE(root->OuterXml() == text);
    node->AddChild("b", "");
    EXPECT_TRUE(root->OuterXml() == Repeat("<a>", deepCount) + "x<b/>" + Repeat("</a>", deepCount));
    root.reset();
    EXPECT_EQ(node->OuterXml(), "<a>x<b/></a>");
    node.reset();
  });
}

TEST(XmlDocumentSize, RejectsMalformedTextOfAnyDepth) {
  RunOnSmallStack([] {
    EXPECT_FALSE(zq::CreateXmlDocument(Repeat("<a>", deepCount)));
    EXPECT_FALSE(zq::CreateXmlDocument(Repeat("<a>", deepCount) + Repeat("</a>", deepCount - 1) + "</b>"));
  });
}

TEST(XmlNodeBuildingSize, IsSafeAtAnyDepth) {
  RunOnSmallStack([] {
    XmlNode::Ptr root = zq::CreateXmlNode("a", "");
    XmlNode::Ptr node = root;
    for (std::size_t depth = 1; depth < deepCount; ++depth) node = node->AddChild("a", "");
    node->AddChild("b", "x");
    EXPECT_TRUE(root->OuterXml() == Repeat("<a>", deepCount) + "<b>x</b>" + Repeat("</a>", deepCount));
    root->Initialize("r", "");
    EXPECT_EQ(root->OuterXml(), "<r/>");
    EXPECT_EQ(node->OuterXml(), "<a><b>x</b></a>");
    root.reset();
    node.reset();
  });
}

TEST(XmlDocumentSize, ParsesHugeTextsAndValues) {
  const std::string huge(hugeSize, 'x');
  const struct {
    const char* what;
    std::string before, after;
    bool isText, isAttribute;
  } rows[] = {
      {"text", "<a>", "</a>", true, false},
      {"attribute", "<a x='", "'/>", false, true},
      {"comment", "<a><!--", "--></a>", false, false},
      {"section", "<a><![CDATA[", "]]></a>", true, false},
      {"instruction", "<a><?p ", "?></a>", false, false},
      {"white space", "<a" + std::string(hugeSize, ' ') + "/><!-- ", "-->", false, false},
  };
  for (const auto& [what, before, after, isText, isAttribute] : rows) {
    SCOPED_TRACE(what);
    std::size_t calls = 0;
    zq::XmlError error;
    const XmlDocument::Ptr document =
        zq::CreateXmlDocument(before + huge + after, error, [&](std::size_t) { ++calls; });
    ASSERT_TRUE(document) << error.text;
    const XmlNode::Ptr root = document->GetRoot();
    EXPECT_TRUE(root->GetData() == (isText ? huge : ""));
    EXPECT_TRUE(root->GetAttribute("x") == (isAttribute ? huge : ""));
    EXPECT_GE(calls, 1U);
    if (!isText) {
      EXPECT_LE(calls, 20U) << "what is not finished is read again with every piece";
    }
  }
}

TEST(XmlDocumentSize, ParsesHugeTextsInManyPieces) {
  const std::string pieces = Repeat("x&amp;\r\n", hugeSize / 8);
  const XmlNode::Ptr root = ParseXml("<a x='" + pieces + "'>" + pieces + "</a>");
  EXPECT_TRUE(root->GetData() == Repeat("x&\n", hugeSize / 8));
  EXPECT_TRUE(root->GetAttribute("x") == Repeat("x& ", hugeSize / 8));
  EXPECT_TRUE(root->InnerXml() == pieces);
}

TEST(XmlDocumentSize, ParsesManyChildren) {
  const std::size_t count = 1000000;
  const std::string text = "<a>" + Repeat("<b/>", count) + "<last/></a>";
  const XmlNode::Ptr root = ParseXml(text);
  EXPECT_EQ(root->GetChildCount(), count + 1);
  EXPECT_TRUE(root->GetChild("last"));
  std::size_t walked = 0;
  zq::XmlNodeIterator* children = root->GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next()) ++walked;
  EXPECT_EQ(walked, count + 1);
  EXPECT_TRUE(root->OuterXml() == text);
}

TEST(XmlNodeBuildingSize, AcceptsManyChildrenAndHugeTexts) {
  const std::size_t count = 1000000;
  const XmlNode::Ptr root = zq::CreateXmlNode("a", "");
  for (std::size_t index = 0; index < count; ++index) root->AddChild("b", "");
  EXPECT_EQ(root->GetChildCount(), count);
  EXPECT_TRUE(root->OuterXml() == "<a>" + Repeat("<b/>", count) + "</a>");

  const std::string huge = Repeat("<&\x01", hugeSize / 3);
  const XmlNode::Ptr node = zq::CreateXmlNode("a", huge);
  node->SetAttribute("x", huge);
  EXPECT_TRUE(node->InnerXml() == Repeat("&lt;&amp;\uFFFD", hugeSize / 3));
}

TEST(XmlDiagnosticsSize, ReportsProgress) {
  const std::string text = "<a>" + Repeat("<b>text</b>\n", mebibyte) + "</a>";
  std::vector<std::size_t> calls;
  zq::XmlError error;
  const XmlDocument::Ptr document =
      zq::CreateXmlDocument(std::string(text), error, [&](std::size_t bytes) { calls.push_back(bytes); });
  ASSERT_TRUE(document);
  EXPECT_TRUE(document->GetRoot()->OuterXml() == text);
  ASSERT_GE(calls.size(), 4U);
  EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end()));
  EXPECT_LE(calls.back(), text.size());
  EXPECT_GE(calls.back(), text.size() / 2);
}

TEST(XmlDiagnosticsSize, ProgressCallbackMayParse) {
  const std::string text = "<a>" + Repeat("<b>text</b>\n", mebibyte) + "</a>";
  std::size_t calls = 0;
  zq::XmlError error;
  const XmlDocument::Ptr document = zq::CreateXmlDocument(std::string(text), error, [&](std::size_t) {
    ++calls;
    EXPECT_EQ(ParseXml("<inner>text</inner>")->GetData(), "text");
    EXPECT_FALSE(zq::CreateXmlDocument("<inner>"));
  });
  ASSERT_TRUE(document) << error.text;
  EXPECT_TRUE(document->GetRoot()->OuterXml() == text);
  EXPECT_GE(calls, 1U);
}

}  // namespace
