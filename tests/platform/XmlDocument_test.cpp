#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "ParseXml.h"
#include "Repeat.h"
#include "SmallStack.h"

namespace zq {

void PrintTo(const XmlPosition& position, std::ostream* os) {
  *os << "line " << position.line << ", column " << position.column;
}

}  // namespace zq

namespace {

using testing::HasSubstr;
using testing::Not;
using zq::XmlDocument;
using zq::XmlNode;
using zq::XmlPosition;

constexpr std::size_t mebibyte = 1024UL * 1024;

std::string Bytes(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

// --- documents ---

TEST(XmlDocument, AcceptsWellFormedText) {
  const std::string texts[] = {
      "<a/>",
      "<a></a>",
      "\t\r\n <a/>\t\r\n ",
      "<?xml version='1.0'?><a/>",
      "\n  <?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<a/>",
      "\xEF\xBB\xBF<a/>",
      "\xEF\xBB\xBF<?xml version='1.0'?><a/>",
      "\xEF\xBB\xBF \n<?xml version='1.0'?><a/>",
      "\n \xEF\xBB\xBF<?xml version='1.0'?><a/>",
      "<!-- before --><?before?><a/><!-- after --><?after?>",
      "<!DOCTYPE a><a/>",
      "<!DOCTYPE a [<!ELEMENT a (#PCDATA)><!ENTITY e 'x'>]><a>&e;</a>",
      "<!DOCTYPE a SYSTEM 'a.dtd'><a>&lt;</a>",
      "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e 'x'>]><a x='&e;&amp;&#38;'>&e;</a>",
      "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'>%p;]><a/>",
      "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'>%p;%undeclared;]><a/>",
      "<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]><a x='&e;'>&e;</a>",
      "<a>]] > ]]</a>",
      "<a x='>'/>",
      "<a><![CDATA[]]]]></a>",
      "<a>\x7F</a>",
  };
  for (const std::string& text : texts) {
    const XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    ASSERT_TRUE(document) << text;
    EXPECT_EQ(document->GetRoot()->GetName(), "a") << text;
  }
}

const std::string malformed[] = {
    // empty texts
    "",
    " ",
    "~<a/>",
    "\r\n\t",
    "\xEF\xBB\xBF",
    "x",
    "<!-- c -->",
    "<?xml version='1.0'?>",
    "<!DOCTYPE a>",
    // more than one document
    "<a/>x",
    "<a/><b/>",
    "<a/><a/>",
    "<a/>&amp;",
    "<a/>&#32;",
    "<a/><![CDATA[]]>",
    "<a/></a>",
    "<a/><!DOCTYPE a>",
    "<a/><?xml version='1.0'?>",
    "x<a/>",
    "<?xml version='1.0'?><?xml version='1.0'?><a/>",
    "<!-- c --><?xml version='1.0'?><a/>",
    // tags
    "<",
    "<a",
    "<a/",
    "<a>",
    "<a><b></a>",
    "<a></b>",
    "<a><b></a></b>",
    "<a></A>",
    "</a>",
    "< a/>",
    "<1/>",
    "<a/ >",
    "<a></ a>",
    "<a></a x='1'>",
    "<a><</a>",
    "<>",
    // attributes
    "<a x='1' x='2'/>",
    "<a x='1' y='2' x=\"1\"/>",
    "<a x/>",
    "<a x=/>",
    "<a x=1/>",
    "<a x='1/>",
    "<a x='<'/>",
    "<a x='&'/>",
    "<a x='1'y='2'/>",
    "<a 'x'='1'/>",
    // references
    "<a>&undefined;</a>",
    "<a x='&undefined;'/>",
    "<a>&</a>",
    "<a>&amp</a>",
    "<a>&AMP;</a>",
    "<a>& amp;</a>",
    "<a>&#;</a>",
    "<a>&#x;</a>",
    "<a>&#0;</a>",
    "<a>&#8;</a>",
    "<a>&#x1F;</a>",
    "<a>&#xD800;</a>",
    "<a>&#xFFFE;</a>",
    "<a>&#xFFFF;</a>",
    "<a>&#x110000;</a>",
    "<a>&#99999999999999999999;</a>",
    "<a x='&#0;'/>",
    // entities
    "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a x='&e;'/>",
    "<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '</a><a>'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '&undefined;'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '&#60;'>]><a x='&e;'/>",
    "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a x='&e;'/>",
    "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>",
    "<!DOCTYPE a SYSTEM 'a.dtd'><a>&undefined;</a>",
    "<!DOCTYPE a SYSTEM 'a.dtd'><a x='&undefined;'/>",
    "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'>%p;]><a>&undefined;</a>",
    "<!DOCTYPE a [<!ENTITY % p ''>%p;]><a>&undefined;</a>",
    "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY % p ''>]><a x='&p;'/>",
    "<!DOCTYPE a [<!ENTITY e 'x'>",
    "<!DOCTYPE a [<!ENTITY e 'x'>]",
    "<!DOCTYPE a [x]><a/>",
    // sections, comments, instructions
    "<a>]]></a>",
    "<a><![CDATA[</a>",
    "<a><![CDATA[]]</a>",
    "<a><![cdata[]]></a>",
    "<a><!-- </a>",
    "<a><!-- -- --></a>",
    "<a><!-- ---></a>",
    "<a><? ?></a>",
    "<a><?xml version='1.0'?></a>",
    "<a><?p ></a>",
    "<a><!x></a>",
    // declarations
    "<?xml?><a/>",
    "<?xml encoding='UTF-8'?><a/>",
    "<?xml version='1.0' standalone='maybe'?><a/>",
    "<?xml version='1.0' encoding='no-such-encoding'?><a/>",
    "<?xml version='1.0' encoding='UTF-16'?><a/>",
    "<?xml version='1.0' encoding='UTF-8' ?x><a/>",
    // characters
    "<a>\x01</a>",
    "<a>\x1F</a>",
    "<a x='\x01'/>",
    "<a><!-- \x01 --></a>",
    "<a>\x80</a>",
    "<a>\xFF</a>",
    "<a>\xC3</a>",
    "<a>\xC3(</a>",
    "<a>\xE2\x82</a>",
    "<a>\xC0\x80</a>",
    "<a>\xE0\x9F\xBF</a>",
    "<a>\xED\xA0\x80</a>",
    "<a>\xEF\xBF\xBE</a>",
    "<a>\xEF\xBF\xBF</a>",
    "<a>\xF4\x90\x80\x80</a>",
    "<a x='\xFF'/>",
    "<a\xFF/>",
    "<a><!-- \xFF --></a>",
    "<a><![CDATA[\xFF]]></a>",
    "<a><?p \xFF?></a>",
    "<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA9</a>",
    // NUL bytes
    std::string("\0", 1),
    std::string("\0<a/>", 5),
    std::string(" \0<a/>", 6),
    std::string("<a/>\0", 5),
    std::string("<a/> \0x", 7),
    std::string("<a\0/>", 5),
    std::string("<a>\0</a>", 8),
    std::string("<a x='\0'/>", 10),
    std::string("<!--\0--><a/>", 12),
    // UTF-16
    std::string("\xFF\xFE", 2),
    std::string("\xFF\xFE<\0a\0/\0>", 9),
    std::string("\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0", 18),
};

// The parser of a new thread has no buffer yet.
TEST(XmlDocument, RejectsAnEmptyTextOnANewThread) {
  std::thread([] { EXPECT_FALSE(zq::CreateXmlDocument("")); }).join();
}

TEST(XmlDocument, RejectsMalformedText) {
  for (const std::string& text : malformed) {
    EXPECT_FALSE(zq::CreateXmlDocument(text)) << text;
    std::string given = text;
    EXPECT_FALSE(zq::CreateXmlDocument(std::move(given))) << text;
  }
}

TEST(XmlDocument, RejectsTruncatedText) {
  const std::string utf8 =
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE r [\n<!ENTITY e \"x &#38;#38; y\">\n"
      "<!ATTLIST r a CDATA 'd'>\n]>\n<!-- c -->\n<r x='1' caf\u00E9=\"&lt;\">\n  "
      "<b/>t&e;&#65;\u20AC\U0001F600<![CDATA[<]]>"
      "<?p q?><b >t</b >\n</r >";
  const std::string utf16 = Bytes(u"\uFEFF<r x='1'>\u20AC\U0001F600<b/></r>", true);
  for (const std::string& whole : {utf8, utf16}) {
    ASSERT_TRUE(zq::CreateXmlDocument(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
      EXPECT_FALSE(zq::CreateXmlDocument(whole.substr(0, length))) << "cut at " << length;
  }
}

TEST(XmlDocument, IsIndependentOfAShortMovedInText) {
  std::string text = "<a x='1'>t</a>";
  const XmlNode::Ptr root = zq::CreateXmlDocument(std::move(text))->GetRoot();
  text = "<other>text, longer than the one before it</other>";
  EXPECT_EQ(root->OuterXml(), "<a x='1'>t</a>");
  EXPECT_EQ(root->GetName() + root->GetAttribute("x") + root->GetData(), "a1t");
}

TEST(XmlDocument, FreesALargeMovedInText) {
  for (const char* end : {"</a>", "</b>"}) {
    std::string text = "<a>" + std::string(mebibyte, 't') + end;
    zq::CreateXmlDocument(std::move(text));
    // NOLINTNEXTLINE(bugprone-use-after-move): the test checks that it was freed
    EXPECT_LT(text.capacity(), 100U) << end;
  }
}

TEST(XmlDocument, KeepsWhatItNeedsOfALargeText) {
  const std::string markup = "<a x='1'>" + std::string(mebibyte, 't') + "<b>&lt;</b></a>";
  const std::u16string data(mebibyte, u'\u20AC');
  const XmlNode::Ptr root = zq::CreateXmlDocument(std::string(markup))->GetRoot();
  const XmlNode::Ptr wide = zq::CreateXmlDocument(Bytes(u"\uFEFF<a>" + data + u"</a>", true))->GetRoot();
  zq::CreateXmlDocument("<other>" + std::string(mebibyte, 'u') + "</other>");
  EXPECT_TRUE(root->OuterXml() == markup);
  EXPECT_EQ(root->GetAttribute("x") + root->GetData("b"), "1<");
  EXPECT_EQ(zq::PositionOf(*root->GetChild()), (zq::XmlPosition{1, 10 + mebibyte}));
  EXPECT_TRUE(wide->GetData() == Repeat("\u20AC", mebibyte));
}

TEST(XmlDocument, CopiesATextThatIsNotMovedIn) {
  for (const std::string before : {"", "\xEF\xBB\xBF", " ", "\n "}) {
    for (const std::size_t size : {std::size_t{1}, mebibyte}) {
      SCOPED_TRACE(before + std::to_string(size));
      const std::string markup = "<a x='1'>" + std::string(size, 't') + "<b  y=''>&lt;</b></a>";
      std::string text = before + markup;
      const XmlNode::Ptr b = zq::CreateXmlDocument(text)->GetRoot()->GetChild("b");
      const XmlNode::Ptr root = zq::CreateXmlDocument(std::string(text))->GetRoot();
      text.replace(0, text.size(), text.size(), '#');
      zq::CreateXmlDocument("<other>" + std::string(size, 'u') + "</other>");
      EXPECT_TRUE(root->OuterXml() == markup);
      EXPECT_EQ(root->GetName() + root->GetAttribute("x"), "a1");
      EXPECT_TRUE(root->GetData() == std::string(size, 't'));
      EXPECT_EQ(b->OuterXml(), "<b  y=''>&lt;</b>");
      const std::uint32_t lines = before == "\n " ? 1 : 0;
      EXPECT_EQ(zq::PositionOf(*root).line, 1 + lines);
      EXPECT_EQ(zq::PositionOf(*b).column - zq::PositionOf(*root).column, 9 + size);
    }
  }
}

TEST(XmlDocument, IsKeptAliveByAnyOfItsElements) {
  XmlDocument::Ptr document =
      zq::CreateXmlDocument("<r><a>one</a><b x='2'><c>deep text, long enough to be on the heap</c></b></r>");
  XmlNode::Ptr root = document->GetRoot();
  XmlNode::Ptr b = root->GetChild("b");
  const XmlNode::Ptr c = b->GetChild("c");
  document.reset();
  root.reset();
  EXPECT_EQ(b->GetAttribute("x"), "2");
  b.reset();
  EXPECT_EQ(c->GetData(), "deep text, long enough to be on the heap");
  EXPECT_EQ(c->OuterXml(), "<c>deep text, long enough to be on the heap</c>");
  c->AddChild("d", "1");
  EXPECT_EQ(c->GetData("d"), "1");
}

TEST(XmlDocument, ReturnsTheSameRootEachTime) {
  const XmlDocument::Ptr document = zq::CreateXmlDocument("<a><b/></a>");
  EXPECT_EQ(document->GetRoot(), document->GetRoot());
  EXPECT_EQ(document->GetRoot()->GetChild(), document->GetRoot()->GetChild("b"));
}

// --- encodings ---

TEST(XmlDocument, ReadsOtherEncodings) {
  const std::u16string utf16 = u"<?xml version='1.0'?>\n<r  x='\u00E9'>\u20AC\U0001F600<b ></b >&amp;</r>";
  const std::string latin1 =
      "<?xml version='1.0' encoding='ISO-8859-1'?><r  x='\xE9'>\xFF<b ></b >&#8364;</r>";
  const struct {
    std::string text;
    std::string outer;
  } rows[] = {
      {Bytes(u"\uFEFF" + utf16, false), "<r x=\"\u00E9\">\u20AC\U0001F600<b/>&amp;</r>"},
      {Bytes(utf16, false), "<r x=\"\u00E9\">\u20AC\U0001F600<b/>&amp;</r>"},
      {Bytes(utf16, true), "<r x=\"\u00E9\">\u20AC\U0001F600<b/>&amp;</r>"},
      {Bytes(u"\uFEFF" + utf16, true), "<r x=\"\u00E9\">\u20AC\U0001F600<b/>&amp;</r>"},
      {latin1, "<r x=\"\u00E9\">\u00FF<b/>\u20AC</r>"},
  };
  for (const auto& [text, outer] : rows) {
    SCOPED_TRACE(outer);
    const XmlNode::Ptr root = ParseXml(text);
    EXPECT_EQ(root->GetAttribute("x"), "\u00E9");
    EXPECT_EQ(root->GetChild()->OuterXml(), "<b/>");
    EXPECT_EQ(root->OuterXml(), outer);
    EXPECT_EQ(ParseXml(root->OuterXml())->GetData(), root->GetData());
  }
}

TEST(XmlDocument, ReadsAscii) {
  const XmlNode::Ptr root =
      ParseXml("<?xml version='1.0' encoding='US-ASCII'?><r x='&#233;'>plain &#8364;</r>");
  EXPECT_EQ(root->GetAttribute("x"), "\u00E9");
  EXPECT_EQ(root->GetData(), "plain \u20AC");
  EXPECT_EQ(root->OuterXml(), "<r x='&#233;'>plain &#8364;</r>");
}

// --- internal declarations ---

TEST(XmlDocument, ResolvesItsOwnEntities) {
  const XmlNode::Ptr root = ParseXml(
      "<!DOCTYPE r [<!ENTITY e 'x&#38;amp;y'><!ENTITY f '&e;!'><!ENTITY n '<in  ><deep/>t</in>'>]>"
      "<r><plain  /><t>1&f;2</t><v x='&f;' /><h>&n;</h></r>");
  EXPECT_EQ(root->GetData("t"), "1x&y!2");
  EXPECT_EQ(root->GetChild("v")->GetAttribute("x"), "x&y!");
  EXPECT_EQ(root->GetChild("h")->GetData("in"), "t");
  EXPECT_EQ(root->GetChild("plain")->OuterXml(), "<plain  />") << "other elements are unchanged";
  EXPECT_EQ(root->GetChild("t")->OuterXml(), "<t>1x&amp;y!2</t>");
  EXPECT_EQ(root->GetChild("t")->InnerXml(), "1x&amp;y!2");
  EXPECT_EQ(root->GetChild("v")->OuterXml(), R"(<v x="x&amp;y!"/>)");
  EXPECT_EQ(root->GetChild("h")->OuterXml(), "<h><in><deep/>t</in></h>");
  EXPECT_EQ(root->GetChild("h")->GetChild()->InnerXml(), "<deep/>t");
  EXPECT_EQ(root->OuterXml(),
            "<r><plain  /><t>1x&amp;y!2</t><v x=\"x&amp;y!\"/><h><in><deep/>t</in></h></r>");
}

TEST(XmlDocument, WritesNothingThatDependsOnItsDeclarations) {
  const XmlNode::Ptr root = ParseXml(
      "<!DOCTYPE r [<!ENTITY e ''><!ENTITY c '<!-- c -->'><!ENTITY s '<![CDATA[<]]>'><!ENTITY p '<?p?>'>]>"
      "<r><e >&e;</e ><c >&c;</c ><s >&s;</s ><p >&p;</p ><m ><!-- c -->&e;<![CDATA[t]]></m ></r>");
  EXPECT_EQ(root->OuterXml(), "<r><e/><c/><s>&lt;</s><p/><m>t</m></r>");
}

TEST(XmlDocument, DependsOnItsEntitiesOnlyInReferences) {
  const struct {
    std::string outer;
    std::string again;
  } rows[] = {
      {"<b><!-- &e; --><![CDATA[&e;]]><?p &e;?>&lt;</b >",
       "<b><!-- &e; --><![CDATA[&e;]]><?p &e;?>&lt;</b >"},
      {"<b>&amp;&lt;&gt;&quot;&apos;&#65;</b >", "<b>&amp;&lt;&gt;&quot;&apos;&#65;</b >"},
      {"<b>&#38;&e;</b >", "<b>&amp;</b>"},
      {"<b><!-- c -->&e;</b >", "<b/>"},
      {"<b><![CDATA[]]>&e;</b >", "<b/>"},
      {"<b><?p?>&e;</b >", "<b/>"},
      {"<b>&e;<c /></b >", "<b><c /></b>"},
      {"<b><c />&e;</b >", "<b><c /></b>"},
      {"<b x='&lt;&e;'></b >", R"(<b x="&lt;"/>)"},
      {"<b x='\"&e;'></b >", R"(<b x="&quot;"/>)"},
  };
  for (const auto& [outer, again] : rows)
    EXPECT_EQ(ParseXml("<!DOCTYPE b [<!ENTITY e ''>]>" + outer)->OuterXml(), again);
}

TEST(XmlDocument, AddsItsOwnDefaultAttributes) {
  const XmlNode::Ptr root = ParseXml(
      "<!DOCTYPE r [<!ATTLIST b x CDATA 'd&lt;' y CDATA #IMPLIED z NMTOKEN ' n '>]>"
      "<r><a  /><b  y='1'/><b  x='own' z='own'/></r>");
  const XmlNode::Ptr b = root->GetChild("b");
  EXPECT_EQ(b->GetAttributeCount(), 3U);
  EXPECT_EQ(b->GetAttribute("x"), "d<");
  EXPECT_EQ(b->GetAttribute("z"), "n");
  EXPECT_EQ(b->OuterXml(), R"(<b y="1" x="d&lt;" z="n"/>)");
  EXPECT_EQ(root->OuterXml(), R"(<r><a  /><b y="1" x="d&lt;" z="n"/><b  x='own' z='own'/></r>)");
}

// Other white space is part of the text.
TEST(XmlDocument, WritesAttributesOfWordsAsTheyAreRead) {
  const std::string declarations = "<!DOCTYPE r [<!ATTLIST b w NMTOKENS #IMPLIED t CDATA #IMPLIED>]>";
  const XmlNode::Ptr root =
      ParseXml(declarations + "<r><b  w=' 1  2 '/><b  w='1 2' t=' 1  2 '/><b  w='1 '/></r>");
  EXPECT_EQ(root->GetChild()->GetAttribute("w"), "1 2");
  EXPECT_EQ(root->OuterXml(), R"(<r><b w="1 2"/><b  w='1 2' t=' 1  2 '/><b w="1"/></r>)");
}

TEST(XmlDocument, DistinguishesAnElementFromTheEntityThatContainsIt) {
  const XmlNode::Ptr root = ParseXml("<!DOCTYPE r [<!ENTITY b '<b  x=\"1\"/>'>]><r>&b;</r>");
  EXPECT_EQ(root->OuterXml(), R"(<r><b x="1"/></r>)");
  EXPECT_EQ(root->GetChild("b")->InnerXml(), "");
}

TEST(XmlDocument, RejectsUndeclaredEntities) {
  const std::string declarations = "<!DOCTYPE a SYSTEM 's' [<!ENTITY e ''>]>";
  EXPECT_TRUE(zq::CreateXmlDocument(declarations + "<a x='&e;&e;&amp;&lt;&gt;&quot;&apos;&#65;'/>"));
  for (const char* value : {"&u;", "&e;&u;", "&e; &e; &u;", "&amp;&u;"}) {
    zq::XmlError error;
    EXPECT_FALSE(zq::CreateXmlDocument(declarations + "<a x='" + value + "'/>", error)) << value;
    EXPECT_EQ(error.text, "undefined entity");
  }
}

TEST(XmlDocument, WritesAttributesVerbatim) {
  const std::string markup = "<a x='&lt;\n' ></a >";
  EXPECT_EQ(ParseXml("<!DOCTYPE a [<!ATTLIST a x CDATA 'd'>]>" + markup)->OuterXml(), markup);
}

// Expat passes each newline in a separate call.
TEST(XmlDocument, KeepsTextNextToChildrenThatBeginsOrEndsWithNewlines) {
  for (const char* text : {"\n x", "x\n", "\n\n x \n\n", "&#10;x", "x&#10;"}) {
    EXPECT_NE(ParseXml("<a>" + std::string(text) + "<b/></a>")->GetData(), "") << text;
    EXPECT_NE(ParseXml("<a><b/>" + std::string(text) + "</a>")->GetData(), "") << text;
  }
}

// --- external references and limits ---

TEST(XmlDocument, ReadsNothingOutsideTheText) {
  const std::string path = testing::TempDir() + "tavrin_outside_" + std::to_string(getpid());
  std::ofstream(path) << "<!ENTITY declared 'outside'><!ATTLIST r x CDATA 'outside'>outside";
  const std::string texts[] = {
      "<!DOCTYPE r [<!ENTITY e SYSTEM '" + path + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + path + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e PUBLIC 'p' '" + path + "'>]><r>&e;</r>",
      "<!DOCTYPE r [<!ENTITY e SYSTEM '" + path + "'>]><r x='&e;'/>",
      "<!DOCTYPE r SYSTEM '" + path + "'><r/>",
      "<!DOCTYPE r SYSTEM '" + path + "'><r>&declared;</r>",
      "<!DOCTYPE r SYSTEM 'file://" + path + "' []><r>&declared;</r>",
      "<!DOCTYPE r [<!ENTITY % p SYSTEM '" + path + "'>%p;]><r/>",
      "<!DOCTYPE r [<!ENTITY % p SYSTEM '" + path + "'>%p;]><r>&declared;</r>",
  };
  for (const std::string& text : texts) {
    const XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    if (!document) continue;
    const XmlNode::Ptr root = document->GetRoot();
    EXPECT_EQ(root->GetData(), "") << text;
    EXPECT_EQ(root->GetAttribute("x"), "") << text;
    EXPECT_THAT(root->OuterXml(), Not(HasSubstr("outside"))) << text;
  }
  unlink(path.c_str());
}

TEST(XmlDocument, AllowsEntitiesAndDefaultsThatAreUsedModestly) {
  const std::pair<std::size_t, std::size_t> rows[] = {{100, 100}, {400000, 5}};
  for (const auto& [size, uses] : rows) {
    const std::string value(size, 'x');
    const std::string text = "<!DOCTYPE r [<!ENTITY e '" + value + "'>]><r>" + Repeat("&e;", uses) + "</r>";
    EXPECT_TRUE(ParseXml(text)->GetData() == Repeat(value, uses)) << size;
  }
  const std::size_t count = 10000;
  const std::string b = "<b>" + Repeat("<c/>", 10) + "</b>";
  EXPECT_EQ(ParseXml("<!DOCTYPE r [<!ENTITY b '" + b + "'><!ATTLIST a x CDATA 'd'>]><r>" +
                     Repeat("<a/>", count) + Repeat("&b;", 100) + "</r>")
                ->GetChildCount(),
            count + 100);
}

// The limit is the same on every machine, whatever the size of a node is.
TEST(XmlDocument, AllowsAnyTextSomeThousandsOfEntitiesAndDefaults) {
  std::string defaults;
  for (int number = 0; number < 128; ++number) defaults += " x" + std::to_string(number) + " CDATA ''";
  const auto uses = [&defaults](std::size_t count) {
    return "<!DOCTYPE r [<!ATTLIST b" + defaults + ">]><r>" + Repeat("<b/>", count) + "</r>";
  };
  EXPECT_TRUE(zq::CreateXmlDocument(uses(128)));
  EXPECT_FALSE(zq::CreateXmlDocument(uses(129)));
}

// A default attribute needs no bytes in the text, an element without attributes four.
TEST(XmlDocument, AllowsADefaultAttributeInEveryElement) {
  const XmlNode::Ptr root =
      ParseXml("<!DOCTYPE r [<!ATTLIST b x CDATA 'd'>]><r>" + Repeat("<b/>", 50'000) + "</r>");
  EXPECT_EQ(root->GetChildCount(), 50'000U);
  EXPECT_EQ(root->GetChild()->GetAttribute("x"), "d");
}

// Expat implements both limits, and counts the bytes that it has read.
TEST(XmlDocument, AllowsEntitiesToMakeATextTenTimesAsLongOrAMebibyte) {
  const auto uses = [](std::size_t count, std::size_t padding) {
    return "<!DOCTYPE r [<!ENTITY e '" + std::string(1000, 'x') + "'>]><r><!--" + std::string(padding, '.') +
           "-->" + Repeat("&e;", count) + "</r>";
  };
  EXPECT_TRUE(zq::CreateXmlDocument(uses(1000, 0)));
  EXPECT_FALSE(zq::CreateXmlDocument(uses(1100, 0)));
  EXPECT_TRUE(zq::CreateXmlDocument(uses(20'000, 2'300'000)));   // 9.5 times
  EXPECT_FALSE(zq::CreateXmlDocument(uses(20'000, 2'030'000)));  // 10.6 times
}

// --- depth ---

TEST(XmlDocument, RefusesLongChainsOfEntities) {
  const struct {
    const char* what;
    std::string sigil, reference;
    std::string before, after;  // around the use of the last entity
  } rows[] = {
      {"text", "", "&", "]><r>&", "</r>"},
      {"attribute", "", "&", "]><r x='&", "'/>"},
      {"declarations", "% ", "&#37;", "%", "]><r/>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const auto chain = [&row](std::size_t links) {
      std::string text = "<!DOCTYPE r [<!ENTITY " + row.sigil + "e0 ' '>";
      for (std::size_t link = 1; link <= links; ++link) {
        text += "<!ENTITY " + row.sigil + "e" + std::to_string(link) + " '" + row.reference + "e" +
                std::to_string(link - 1) + ";'>";
      }
      return text + row.before + "e" + std::to_string(links) + ";" + row.after;
    };
    RunOnSmallStack([&chain] {
      EXPECT_TRUE(zq::CreateXmlDocument(chain(256)));
      EXPECT_FALSE(zq::CreateXmlDocument(chain(100000)));
      zq::XmlError error;
      EXPECT_FALSE(zq::CreateXmlDocument(chain(257), error));
      EXPECT_EQ(error.text, "too many entities refer to others");
    });
  }
}

TEST(XmlDocument, RefusesMoreThanTenThousandAttributeDeclarations) {
  const auto declaring = [](std::size_t count) {
    std::string text = "<!DOCTYPE a [";
    for (std::size_t i = 0; i < count; ++i) text += "<!ATTLIST a b" + std::to_string(i) + " CDATA ''>";
    return text + "]><c/>";
  };
  EXPECT_TRUE(zq::CreateXmlDocument(declaring(10000)));
  zq::XmlError error;
  EXPECT_FALSE(zq::CreateXmlDocument(declaring(10001), error));
  EXPECT_EQ(error.text, "too many attributes are declared");
  EXPECT_EQ(error.position.line, 1U);
}

TEST(XmlDocument, AllowsAnyNumberOfEntitiesThatReferToNoOthers) {
  std::string text = "<!DOCTYPE r [";
  for (int number = 0; number < 1000; ++number)
    text += "<!ENTITY e" + std::to_string(number) + " '&#38;lt;&#38;#38;'>";
  EXPECT_EQ(ParseXml(text + "]><r>&e999;</r>")->GetData(), "<&");
}

// --- one parser for many documents ---

TEST(XmlDocument, IsNotHarmedByAFailureBeforeIt) {
  const std::string good = "<a x='1'>t<b/></a>";
  for (const std::string& text : malformed) {
    zq::CreateXmlDocument(text);
    EXPECT_EQ(ParseXml(good)->OuterXml(), good) << "after " << text;
  }
}

TEST(XmlDocument, InheritsNoDeclarationsFromTheTextBefore) {
  const std::string declarations = "<!DOCTYPE a [<!ENTITY e 'leak'><!ATTLIST a x CDATA 'leak'>]>";
  for (const std::string& before :
       {declarations + "<a>&e;</a>", declarations + "<a>&e;", declarations + "<"}) {
    zq::CreateXmlDocument(before);
    EXPECT_FALSE(zq::CreateXmlDocument("<a>&e;</a>")) << before;
    zq::CreateXmlDocument(before);
    EXPECT_EQ(ParseXml("<a/>")->GetAttributeCount(), 0U) << before;
  }
}

TEST(XmlDocument, InheritsNoEncodingFromTheTextBefore) {
  const std::string utf8 = "<a>\u00E9</a>";
  for (const std::string& before : {Bytes(u"\uFEFF<a>\u00E9</a>", true), Bytes(u"\uFEFF<a>\u00E9</b>", false),
                                    std::string("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"),
                                    std::string("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</b>")}) {
    zq::CreateXmlDocument(before);
    EXPECT_EQ(ParseXml(utf8)->OuterXml(), utf8);
  }
}

TEST(XmlDocument, KeepsEarlierDocumentsWhole) {
  std::vector<XmlNode::Ptr> roots;
  for (int number = 0; number < 100; ++number) {
    const std::string n = std::to_string(number);
    roots.push_back(ParseXml("<a x='" + n + "'>t" + n + "&amp;<b>" + n + "</b></a>"));
  }
  for (int number = 0; number < 100; ++number) {
    const std::string n = std::to_string(number);
    const XmlNode& root = *roots[static_cast<std::size_t>(number)];
    EXPECT_EQ(root.GetAttribute("x"), n);
    EXPECT_EQ(root.GetData(), "t" + n + "&");
    EXPECT_EQ(root.GetData("b"), n);
  }
}

TEST(XmlDocument, IsParsedOnManyThreadsAtOnce) {
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([thread, &failures] {
      for (int round = 0; round < 300; ++round) {
        const std::string n = std::to_string(thread * 1000 + round);
        const std::string good = "<a x='" + n + "'>" + Repeat("<b>" + n + "</b>", 20) + "</a>";
        if (zq::CreateXmlDocument("<a>" + n + "</b>")) ++failures;
        const XmlDocument::Ptr document = zq::CreateXmlDocument(good);
        if (!document || document->GetRoot()->OuterXml() != good || document->GetRoot()->GetData("b") != n)
          ++failures;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

TEST(XmlDocument, OutlivesTheThreadThatParsedIt) {
  XmlNode::Ptr root;
  std::thread([&root] { root = ParseXml("<a x='1'>&lt;<b/></a>"); }).join();
  EXPECT_EQ(root->OuterXml(), "<a x='1'>&lt;<b/></a>");
  EXPECT_EQ(root->GetData(), "<");
}

// --- positions ---

TEST(XmlPosition, IsWhereTheStartTagBegins) {
  const std::u16string utf16 = u"<a>\u0A41\u410A\u0D41\u410D\n\u800D\r\n\r\u800Ay<b/></a>";
  const struct {
    const char* what;
    std::string text;
    XmlPosition root, child;
  } rows[] = {
      {"one line", "<a><b/></a>", {1, 1}, {1, 4}},
      {"line ends", "<a>\n  <b\n/>\n</a>", {1, 1}, {2, 3}},
      {"CRLF", "\r\n<a>\r\n\t<b/></a>", {2, 1}, {3, 2}},
      {"lone CR", "<a>\r\r<b/></a>", {1, 1}, {3, 1}},
      {"leading white space", "\n\n   <a><b/></a>", {3, 4}, {3, 7}},
      {"declaration", " <?xml version='1.0'?>\n<a>\n<b/></a>", {2, 1}, {3, 1}},
      {"bytes", "<a>\u00E9\u20AC<b/></a>", {1, 1}, {1, 9}},
      {"comment", "<a><!--\n--> <b/></a>", {1, 1}, {2, 5}},
      {"attribute", "<a x='\n\n'><b/></a>", {1, 1}, {3, 3}},
      {"section", "<a><![CDATA[\n<b/>]]><b/></a>", {1, 1}, {2, 8}},
      {"document type", "<!DOCTYPE a [\n\n]><a><b/></a>", {3, 3}, {3, 6}},
      {"UTF-16", Bytes(utf16, false), {1, 1}, {4, 5}},
      {"UTF-16, big end first", Bytes(utf16, true), {1, 1}, {4, 5}},
      {"UTF-16 with its mark", Bytes(u"\uFEFF" + utf16, false), {1, 3}, {4, 5}},
      {"UTF-16 with its mark, big end first", Bytes(u"\uFEFF" + utf16, true), {1, 3}, {4, 5}},
  };
  for (const auto& [what, text, rootPlace, childPlace] : rows) {
    SCOPED_TRACE(what);
    const XmlNode::Ptr root = ParseXml(text);
    const XmlNode::Ptr child = root->GetChild("b");
    EXPECT_EQ(zq::PositionOf(*child), childPlace);
    EXPECT_EQ(zq::PositionOf(*root), rootPlace);
  }
}

TEST(XmlPosition, IsRightForEveryElementOfALongText) {
  const std::size_t count = 20000;
  const XmlNode::Ptr oneLine = ParseXml("<a>" + Repeat("<b/>", count) + "</a>");
  const XmlNode::Ptr manyLines = ParseXml("<a>" + Repeat("\r\n <b/>", count) + "</a>");
  std::u16string utf16 = u"<a>";
  for (std::size_t index = 0; index < count; ++index) utf16 += u"\n <b/>";
  const XmlNode::Ptr wide = ParseXml(Bytes(utf16 + u"</a>", false));
  XmlNode::Ptr b = oneLine->GetIterator()->First();
  XmlNode::Ptr c = manyLines->GetIterator()->First();
  XmlNode::Ptr d = wide->GetIterator()->First();
  for (std::uint32_t index = 0; index < count; ++index) {
    ASSERT_EQ(zq::PositionOf(*b), (XmlPosition{1, 4 + 4 * index}));
    ASSERT_EQ(zq::PositionOf(*c), (XmlPosition{index + 2, 2}));
    ASSERT_EQ(zq::PositionOf(*d), (XmlPosition{index + 2, 3}));
    b = oneLine->GetIterator()->Next();
    c = manyLines->GetIterator()->Next();
    d = wide->GetIterator()->Next();
  }
}

TEST(XmlPosition, StaysWhenElementsChange) {
  const XmlNode::Ptr root = ParseXml("<a>\n<b/>\n<c/></a>");
  root->GetChild("b")->SetAttribute("x", "1\n2");
  root->GetChild("b")->AddChild("d", "text\n");
  root->AddChild("e", "");
  EXPECT_EQ(zq::PositionOf(*root), (XmlPosition{1, 1}));
  EXPECT_EQ(zq::PositionOf(*root->GetChild("b")), (XmlPosition{2, 1}));
  EXPECT_EQ(zq::PositionOf(*root->GetChild("c")), (XmlPosition{3, 1}));
}

TEST(XmlPosition, OfElementsBuiltInCodeIsNone) {
  const XmlNode::Ptr built = zq::CreateXmlNode("a", "");
  EXPECT_EQ(zq::PositionOf(*built), (XmlPosition{0, 0}));
  EXPECT_EQ(zq::PositionOf(*built->AddChild("b", "")), (XmlPosition{0, 0}));
  EXPECT_EQ(zq::PositionOf(*ParseXml("\n<a/>")->AddChild("b", "")), (XmlPosition{0, 0}));
  const XmlNode::Ptr parsed = ParseXml("<a><b/></a>");
  parsed->GetChild()->Initialize("c", "");
  EXPECT_EQ(zq::PositionOf(*parsed->GetChild()), (XmlPosition{0, 0}));
}

TEST(XmlPosition, IsComparedByLineAndColumn) {
  EXPECT_TRUE((XmlPosition{1, 2} == XmlPosition{1, 2}));
  EXPECT_TRUE((XmlPosition{1, 2} != XmlPosition{1, 3}));
  EXPECT_TRUE((XmlPosition{1, 2} != XmlPosition{2, 2}));
}

// --- diagnostics ---

TEST(XmlDiagnostics, ReportsErrorAndPosition) {
  const struct {
    std::string text;
    XmlPosition place;
    const char* words;
  } rows[] = {
      {"", {1, 1}, "no element found"},
      {"x", {1, 1}, "syntax error"},
      {" \n ", {2, 2}, "no element found"},
      {"\n", {2, 1}, "no element found"},
      {"<a>\n", {2, 1}, "no element found"},
      {std::string("\n\0", 2), {2, 1}, "unclosed token"},
      {"<a>", {1, 4}, "no element found"},
      {"<a>\n  </b>", {2, 5}, "mismatched tag"},
      {"<a>\r\n\u00E9</b>", {2, 5}, "mismatched tag"},
      {"\n\n <a></b>", {3, 7}, "mismatched tag"},
      {"\n <?xml version='1.0'?>\n<a></b>", {3, 6}, "mismatched tag"},
      {"<a>\n&undefined;</a>", {2, 1}, "undefined entity"},
      {"<a/>\nx", {2, 1}, "junk after document element"},
      {"<a x='1'\n x='2'/>", {2, 2}, "duplicate attribute"},
      {"<a>&\n</a>", {1, 5}, "not well-formed (invalid token)"},
      {"<a>\xFF</a>", {1, 4}, "not well-formed (invalid token)"},
      {"<a>\n<![CDATA[", {2, 10}, "unclosed CDATA section"},
  };
  for (const auto& [text, place, words] : rows) {
    SCOPED_TRACE(text);
    zq::XmlError error;
    EXPECT_FALSE(zq::CreateXmlDocument(std::string(text), error));
    EXPECT_EQ(error.position, place);
    EXPECT_EQ(error.text, words);
  }
}

TEST(XmlDiagnostics, DescribesEveryMalformedText) {
  for (const std::string& text : malformed) {
    SCOPED_TRACE(text);
    zq::XmlError error;
    EXPECT_FALSE(zq::CreateXmlDocument(std::string(text), error));
    EXPECT_NE(error.text, "");
    EXPECT_GE(error.position.line, 1U);
    EXPECT_GE(error.position.column, 1U);
  }
}

// The tree uses the parser's copy of these texts, because the argument is freed after parsing.
TEST(XmlDiagnostics, FindsThePositionInALargeMovedInText) {
  const std::string before = "<a>\n" + std::string(100'000, 'x') + '\n';
  zq::XmlError error;
  EXPECT_FALSE(zq::CreateXmlDocument(before + "  </b>", error));
  EXPECT_EQ(error.position, (XmlPosition{3, 5}));
  EXPECT_EQ(error.text, "mismatched tag");
  EXPECT_FALSE(zq::CreateXmlDocument(before + "</b>"));

  const XmlDocument::Ptr document = zq::CreateXmlDocument(before + "</a>", error);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->GetRoot()->OuterXml(), before + "</a>");
}

TEST(XmlDiagnostics, LeavesTheErrorUnchangedOnSuccess) {
  zq::XmlError error{{3, 4}, "before"};
  EXPECT_TRUE(zq::CreateXmlDocument("<a/>", error));
  EXPECT_EQ(error.text, "before");
  EXPECT_EQ(error.position, (XmlPosition{3, 4}));
}

TEST(XmlDiagnostics, DoesNotMoveFromMalformedText) {
  for (const std::string& text : {std::string("<a>"), "<a>" + Repeat("<b>text</b>\n", mebibyte)}) {
    for (const zq::XmlProgress& progress : {zq::XmlProgress(), zq::XmlProgress([](std::size_t) {})}) {
      std::string given = text;
      zq::XmlError error;
      EXPECT_FALSE(zq::CreateXmlDocument(std::move(given), error, progress));
      EXPECT_TRUE(given == text);  // NOLINT(bugprone-use-after-move): the documented behaviour
    }
  }
}

TEST(XmlDiagnostics, SourceOfReturnsTheTextOfTheDocument) {
  for (const std::string& text : {std::string(" <a>b</a>\n"), "<a>" + Repeat("<b/>", mebibyte) + "</a>"})
    EXPECT_TRUE(zq::SourceOf(*zq::CreateXmlDocument(text)) == text);
}

TEST(XmlDiagnostics, ExceptionsOfTheProgressEndTheParse) {
  const std::string text = "<a>" + Repeat("<b>text</b>\n", mebibyte) + "</a>";
  zq::XmlError error{{3, 4}, "before"};
  const auto giveUp = [](std::size_t) { throw std::runtime_error("enough"); };
  EXPECT_THROW(zq::CreateXmlDocument(std::string(text), error, giveUp), std::runtime_error);
  EXPECT_EQ(ParseXml("<a>next</a>")->GetData(), "next");
  EXPECT_TRUE(zq::CreateXmlDocument(std::string(text), error));
}

// --- size ---

TEST(XmlDocument, ParsesManyAttributes) {
  std::string text = "<a";
  for (int index = 0; index < 10000; ++index)
    text += " x" + std::to_string(index) + "='" + std::to_string(index) + "'";
  text += "/>";
  const XmlNode::Ptr root = ParseXml(text);
  EXPECT_EQ(root->GetAttributeCount(), 10000U);
  EXPECT_EQ(root->GetAttribute("x9999"), "9999");
}

}  // namespace
