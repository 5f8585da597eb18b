#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "ParseXml.h"

namespace {

using testing::ElementsAre;
using zq::XmlNode;

std::string ErrorOf(const std::function<void()>& read) {
  try {
    read();
  } catch (const zq::ZqError& error) {
    return error.what();
  }
  return "no error";
}

std::vector<std::string> ChildNames(XmlNode& node) {
  std::vector<std::string> names;
  zq::XmlNodeIterator* children = node.GetIterator();
  for (XmlNode::Ptr child = children->First(); child; child = children->Next())
    names.push_back(child->GetName());
  return names;
}

// --- text ---

struct TextRow {
  std::string markup;
  std::string text;
};

TEST(XmlNodeText, JoinsItsPiecesAndResolvesReferences) {
  const TextRow rows[] = {
      {"<a/>", ""},
      {"<a></a>", ""},
      {"<a>x</a>", "x"},
      {"<a>&lt;&gt;&amp;&quot;&apos;</a>", "<>&\"'"},
      {"<a>&#65;&#x42;&#8364;&#x1F600;</a>", "AB\u20AC\U0001F600"},
      {"<a><![CDATA[<b>&amp;]]></a>", "<b>&amp;"},
      {"<a>x<![CDATA[y]]>z</a>", "xyz"},
      {"<a><![CDATA[x]]]]><![CDATA[>y]]></a>", "x]]>y"},
      {"<a>x<!-- comment -->y<?target data?>z</a>", "xyz"},
      {"<a>x<b>inner</b>y</a>", "xy"},
      {"<a>caf\u00E9</a>", "caf\u00E9"},
      {"<a>x\r\ny\rz\n</a>", "x\ny\nz\n"},
      {"<a>x&#13;&#10;y</a>", "x\r\ny"},
  };
  for (const auto& [markup, text] : rows) EXPECT_EQ(ParseXml(markup)->GetData(), text) << markup;
}

TEST(XmlNodeText, LeavesOutOnlyTheWhiteSpaceThatLaysOutChildElements) {
  const TextRow rows[] = {
      {"<a> </a>", " "},
      {"<a> \t\r\n </a>", " \t\n "},
      {"<a><!-- c --> </a>", " "},
      {"<a> x </a>", " x "},
      {"<a>\n  <b/>\n  <c/>\n</a>", ""},
      {"<a> <b/>x</a>", " x"},
      {"<a> x <b/> y </a>", " x  y "},
      {"<a>\u00A0<b/></a>", "\u00A0"},
      {"<a>~<b/></a>", "~"},
      {"<a>&#13;<b/></a>", ""},
      {"<a>" + std::string(33, ' ') + "~<b/></a>", std::string(33, ' ') + "~"},
      {"<a>" + std::string(100, ' ') + "<b/></a>", ""},
  };
  for (const auto& [markup, text] : rows) EXPECT_EQ(ParseXml(markup)->GetData(), text) << markup;
}

TEST(XmlNodeText, OfAChildIsThatOfTheFirstOneOfTheName) {
  const XmlNode::Ptr root = ParseXml("<a><B>upper</B><b>first</b><b>second</b></a>");
  EXPECT_EQ(root->GetData("b"), "first");
  EXPECT_EQ(root->GetData("B"), "upper");
  EXPECT_EQ(root->GetData("c"), "");
  EXPECT_EQ(root->GetData(""), "");
}

// --- numbers ---

struct NumberRow {
  const char* text;
  std::int64_t number;
};

constexpr NumberRow numberRows[] = {
    {"", 0},
    {" \t\n", 0},
    {"0", 0},
    {"-0", 0},
    {"+0", 0},
    {"7", 7},
    {"+7", 7},
    {"-7", -7},
    {" \n\t42 \n", 42},
    {"0010", 10},
    {"-00000000000000000000000000000000002", -2},
    {"2147483647", 2147483647},
    {"-2147483647", -2147483647},
    {"-2147483648", -2147483648LL},
};

// Numbers that only elements can contain.
constexpr NumberRow unsignedNumbers[] = {
    {"2147483648", 2147483648LL},
    {"+4294967294", 4294967294LL},
    {"4294967295", 4294967295LL},
};

constexpr const char* notNumbers[] = {
    "x",
    "7x",
    "x7",
    "1.0",
    "1,0",
    "1e3",
    "0x10",
    "1 2",
    "--1",
    "+-1",
    "- 1",
    "+",
    "-",
    "1_0",
    "~1",
    "1~",
    "4294967296",
    "4294967300",
    "-2147483649",
    "-4294967295",
    "99999999999999999999",
    "18446744073709551616",
    "18446744073709551617",
    "-18446744073709551615",
    "\u00A01",
    "\u0661",
};

TEST(XmlNodeNumber, IsDecimalWithinTheRangeOfBothSigns) {
  const auto check = [](const NumberRow& row) {
    SCOPED_TRACE(row.text);
    const XmlNode::Ptr node = zq::CreateXmlNode("a", "");
    const XmlNode::Ptr child = node->AddChild("b", row.text);
    EXPECT_EQ(child->GetDataNumber(), row.number);
    EXPECT_EQ(node->GetChildDataNumber("b"), row.number);
  };
  for (const NumberRow& row : numberRows) check(row);
  for (const NumberRow& row : unsignedNumbers) check(row);
}

TEST(XmlNodeNumber, OfAnAttributeIsSigned) {
  for (const auto& [text, number] : numberRows) {
    const XmlNode::Ptr node = zq::CreateXmlNode("a", "");
    node->SetAttribute("x", text);
    EXPECT_EQ(node->GetAttributeNumber("x"), number) << text;
  }
}

TEST(XmlNodeNumber, ErrorNamesTheElementAndItsText) {
  for (const char* text : notNumbers) {
    SCOPED_TRACE(text);
    const XmlNode::Ptr node = zq::CreateXmlNode("outer", "");
    const XmlNode::Ptr child = node->AddChild("deviceid", text);
    for (const std::string& error :
         {ErrorOf([&] { child->GetDataNumber(); }), ErrorOf([&] { node->GetChildDataNumber("deviceid"); })}) {
      EXPECT_EQ(error, "element \"deviceid\" contains \"" + std::string(text) +
                           "\", which is not a number from -2147483648 to 4294967295");
    }
  }
}

TEST(XmlNodeNumber, ErrorNamesTheAttributeAndItsText) {
  const auto check = [](const char* text) {
    SCOPED_TRACE(text);
    const XmlNode::Ptr node = zq::CreateXmlNode("outer", "");
    node->SetAttribute("version", text);
    const std::string error = ErrorOf([&] { node->GetAttributeNumber("version"); });
    EXPECT_EQ(error, "attribute \"version\" contains \"" + std::string(text) +
                         "\", which is not a number from -2147483648 to 2147483647");
  };
  for (const char* text : notNumbers) check(text);
  for (const NumberRow& row : unsignedNumbers) check(row.text);
}

TEST(XmlNodeNumber, IsZeroForEmptyText) {
  const XmlNode::Ptr root = ParseXml("<a> <b/> </a>");
  EXPECT_EQ(root->GetDataNumber(), 0);
  EXPECT_EQ(root->GetChildDataNumber("b"), 0);
  EXPECT_EQ(root->GetChildDataNumber("missing"), 0);
  EXPECT_EQ(root->GetAttributeNumber("missing"), 0);
}

TEST(XmlNodeNumber, EndsAtNoNulByte) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", std::string("1\0", 2));
  EXPECT_THROW(node->GetDataNumber(), zq::ZqError);
}

TEST(XmlNodeNumber, JoinsItsPieces) {
  const XmlNode::Ptr root = ParseXml("<a><b>1<!-- c --><![CDATA[2]]>&#51;</b><b>x</b></a>");
  EXPECT_EQ(root->GetChildDataNumber("b"), 123);
  EXPECT_EQ(ParseXml("<a>1<b/>2</a>")->GetDataNumber(), 12);
  EXPECT_EQ(ErrorOf([] { ParseXml("<a>1<b/>x</a>")->GetDataNumber(); }),
            "element \"a\" contains \"1x\", which is not a number from -2147483648 to 4294967295");
}

// --- attributes ---

TEST(XmlNodeAttribute, IsReadByItsExactName) {
  const XmlNode::Ptr root = ParseXml("<a x='1' X=\"2\" empty='' ns:y='3'/>");
  EXPECT_EQ(root->GetAttributeCount(), 4U);
  EXPECT_EQ(root->GetAttribute("x"), "1");
  EXPECT_EQ(root->GetAttribute("X"), "2");
  EXPECT_EQ(root->GetAttribute("ns:y"), "3");
  EXPECT_EQ(root->GetAttribute("empty"), "");
  EXPECT_TRUE(root->HasAttribute("empty"));
  EXPECT_EQ(root->GetAttribute("y"), "");
  EXPECT_FALSE(root->HasAttribute("y"));
  EXPECT_FALSE(root->HasAttribute(""));
  EXPECT_EQ(root->GetAttributeNumber("X"), 2);
}

TEST(XmlNodeAttribute, ResolvesReferencesAndNormalisesWhiteSpace) {
  const TextRow rows[] = {
      {"<a x='&lt;&gt;&amp;&quot;&apos;'/>", "<>&\"'"},  {"<a x='\"'/>", "\""},
      {"<a x=' 1\t2\n3\r\n4 '/>", " 1 2 3 4 "},          {"<a x='&#9;&#10;&#13;'/>", "\t\n\r"},
      {"<a x='caf\u00E9&#x20AC;'/>", "caf\u00E9\u20AC"},
  };
  for (const auto& [markup, value] : rows) EXPECT_EQ(ParseXml(markup)->GetAttribute("x"), value) << markup;
}

TEST(XmlNodeAttribute, IsReplacedInPlaceAndAddedAtTheEnd) {
  const XmlNode::Ptr root = ParseXml("<a x='1' y='2'/>");
  root->SetAttribute("x", "new");
  root->SetAttribute("z", "3");
  EXPECT_EQ(root->GetAttributeCount(), 3U);
  EXPECT_EQ(root->GetAttribute("x"), "new");
  EXPECT_EQ(root->OuterXml(), R"(<a x="new" y="2" z="3"/>)");
}

// --- children ---

TEST(XmlNodeChildren, AreFoundByTheirExactName) {
  const XmlNode::Ptr root = ParseXml("<a>t<B/><b i='1'/><!-- c --><b i='2'/></a>");
  EXPECT_EQ(root->GetChildCount(), 3U);
  EXPECT_EQ(root->GetChild()->GetName(), "B");
  EXPECT_EQ(root->GetChild("b")->GetAttribute("i"), "1");
  EXPECT_FALSE(root->GetChild("c"));
  EXPECT_FALSE(root->GetChild("a"));
  EXPECT_FALSE(root->GetChild("b")->GetChild());
  EXPECT_EQ(root->GetChild("b")->GetChildCount(), 0U);
}

TEST(XmlNodeChildren, AreOnlyTheirParents) {
  const XmlNode::Ptr root = ParseXml("<a><b><deep/></b></a>");
  EXPECT_FALSE(root->GetChild("deep"));
  EXPECT_EQ(root->GetChildCount(), 1U);
}

TEST(XmlNodeName, IsComparedExactly) {
  const XmlNode::Ptr root = ParseXml("<ns:Item/>");
  EXPECT_EQ(root->GetName(), "ns:Item");
  EXPECT_TRUE(root->IsName("ns:Item"));
  EXPECT_FALSE(root->IsName("ns:item"));
  EXPECT_FALSE(root->IsName("Item"));
  EXPECT_FALSE(root->IsName("ns:Item "));
  EXPECT_FALSE(root->IsName("ns:Item2"));
  EXPECT_FALSE(root->IsName(""));
}

TEST(XmlNodeIterator, IteratesInOrderAndStaysAtTheEnd) {
  const XmlNode::Ptr root = ParseXml("<a> <b/>x<c/><!-- c --><b/></a>");
  zq::XmlNodeIterator* children = root->GetIterator();
  EXPECT_EQ(children->First()->GetName(), "b");
  EXPECT_EQ(children->Next()->GetName(), "c");
  EXPECT_EQ(children->First()->GetName(), "b") << "First restarts";
  EXPECT_EQ(children->Next()->GetName(), "c");
  EXPECT_EQ(children->Next()->GetName(), "b");
  EXPECT_FALSE(children->Next());
  EXPECT_FALSE(children->Next());
}

TEST(XmlNodeIterator, IsOneForEachElementAndNeverNull) {
  const XmlNode::Ptr root = ParseXml("<a><b/></a>");
  EXPECT_EQ(root->GetIterator(), root->GetIterator());
  const XmlNode::Ptr leaf = root->GetChild();
  ASSERT_NE(leaf->GetIterator(), nullptr);
  EXPECT_NE(leaf->GetIterator(), root->GetIterator());
  EXPECT_FALSE(leaf->GetIterator()->First());
  EXPECT_FALSE(leaf->GetIterator()->Next());
  ASSERT_NE(zq::CreateXmlNode()->GetIterator(), nullptr);
}

TEST(XmlNodeIterator, OfDifferentElementsDoNotDisturbEachOther) {
  const XmlNode::Ptr root = ParseXml("<a><b><d/><e/></b><c><f/><g/></c></a>");
  std::vector<std::string> names;
  zq::XmlNodeIterator* outer = root->GetIterator();
  for (XmlNode::Ptr child = outer->First(); child; child = outer->Next()) {
    names.push_back(child->GetName());
    zq::XmlNodeIterator* inner = child->GetIterator();
    for (XmlNode::Ptr grandchild = inner->First(); grandchild; grandchild = inner->Next()) {
      names.push_back(grandchild->GetName());
      EXPECT_EQ(root->GetChild("c")->GetName(), "c");
    }
  }
  EXPECT_THAT(names, ElementsAre("b", "d", "e", "c", "f", "g"));
}

TEST(XmlNodeIterator, ReachesChildrenThatAreAddedDuringTheWalk) {
  const XmlNode::Ptr root = ParseXml("<a><b/><c/></a>");
  zq::XmlNodeIterator* children = root->GetIterator();
  children->First();
  children->Next();
  root->AddChild("d", "");
  EXPECT_EQ(children->Next()->GetName(), "d");
  EXPECT_FALSE(children->Next());
}

TEST(XmlNodeIterator, LivesAsLongAsTheTree) {
  XmlNode::Ptr root = ParseXml("<a><b/><c/></a>");
  const XmlNode::Ptr child = root->GetChild("b");
  zq::XmlNodeIterator* children = root->GetIterator();
  children->First();
  root.reset();
  EXPECT_EQ(children->Next()->GetName(), "c");
}

// --- building ---

TEST(XmlNodeBuilding, WritesCompactly) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", "");
  EXPECT_EQ(node->OuterXml(), "<a/>");
  EXPECT_EQ(node->InnerXml(), "");
  node->SetAttribute("x", "1");
  EXPECT_EQ(node->OuterXml(), R"(<a x="1"/>)");
  const XmlNode::Ptr child = node->AddChild("b", "text");
  EXPECT_EQ(child->OuterXml(), "<b>text</b>");
  node->AddChild("c", "");
  node->AddChild("d", " ");
  EXPECT_EQ(node->InnerXml(), "<b>text</b><c/><d> </d>");
  EXPECT_EQ(node->OuterXml(), R"(<a x="1"><b>text</b><c/><d> </d></a>)");
  EXPECT_EQ(node->GetChildCount(), 3U);
}

TEST(XmlNodeBuilding, NewNodeIsEmpty) {
  const XmlNode::Ptr node = zq::CreateXmlNode();
  EXPECT_EQ(node->GetName(), "");
  EXPECT_EQ(node->GetData(), "");
  EXPECT_EQ(node->InnerXml(), "");
  EXPECT_EQ(node->GetAttributeCount(), 0U);
  EXPECT_EQ(node->GetChildCount(), 0U);
  EXPECT_FALSE(node->GetChild());
  node->Initialize("a", "text");
  EXPECT_EQ(node->OuterXml(), "<a>text</a>");
}

TEST(XmlNodeBuilding, WritesNumbersInDecimal) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", "");
  EXPECT_EQ(node->AddChild("b", std::uint32_t{0})->GetData(), "0");
  node->AddChild("c", std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(node->InnerXml(), "<b>0</b><c>4294967295</c>");
}

TEST(XmlNodeBuilding, KeepsTheTextOfAnElementThatGetsChildren) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", "text");
  node->AddChild("b", "1");
  EXPECT_EQ(node->GetData(), "text");
  EXPECT_EQ(node->OuterXml(), "<a>text<b>1</b></a>");
}

TEST(XmlNodeBuilding, WhiteSpaceBecomesLayoutWhenChildrenAreAdded) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", " \n");
  node->AddChild("b", "1");
  EXPECT_EQ(node->GetData(), "");
  EXPECT_EQ(node->OuterXml(), "<a><b>1</b></a>");
}

TEST(XmlNodeBuilding, InitializeRemovesEverything) {
  const XmlNode::Ptr built = zq::CreateXmlNode("a", "text");
  const XmlNode::Ptr parsed = ParseXml("<a x='1'>text<b/></a>");
  for (const XmlNode::Ptr& node : {built, parsed}) {
    node->SetAttribute("y", "2");
    const XmlNode::Ptr child = node->AddChild("c", "kept");
    zq::XmlNodeIterator* children = node->GetIterator();
    children->First();
    node->Initialize("n", "new");
    EXPECT_EQ(node->OuterXml(), "<n>new</n>");
    EXPECT_FALSE(children->Next());
    EXPECT_EQ(node->GetAttributeCount(), 0U);
    EXPECT_EQ(node->GetChildCount(), 0U);
    EXPECT_FALSE(node->GetChild());
    EXPECT_FALSE(children->First());
    child->AddChild("d", "");
    EXPECT_EQ(child->OuterXml(), "<c>kept<d/></c>") << "a removed element remains valid for its owners";
    EXPECT_EQ(node->OuterXml(), "<n>new</n>");
    node->AddChild("e", "");
    EXPECT_EQ(node->OuterXml(), "<n>new<e/></n>");
  }
}

TEST(XmlNodeBuilding, HelperAppendsAChild) {
  XmlNode::Ptr node = zq::CreateXmlNode("a", "");
  const XmlNode::Ptr child = XmlHelper::AddChild(node, "b", "text");
  child->SetAttribute("x", "1");
  EXPECT_EQ(node->OuterXml(), R"(<a><b x="1">text</b></a>)");
}

// --- writing of parsed elements ---

struct MarkupRow {
  std::string outer;
  std::string inner;
};

const MarkupRow markupRows[] = {
    {"<b/>", ""},
    {"<b />", ""},
    {"<b\n/>", ""},
    {"<b></b>", ""},
    {"<b ></b >", ""},
    {"<b>t</b\r\n>", "t"},
    {"<b  x = '1'\n\ty=\"2\"  />", ""},
    {"<b x='/>'>t</b>", "t"},
    {"<b x=\">\" y='a\tb\r\nc'>t</b>", "t"},
    {R"(<b x="&quot;&#x41;">&lt;&#65;&#x42;&apos;"'></b>)", R"(&lt;&#65;&#x42;&apos;"'>)"},
    {"<b><!-- <c> --></b>", "<!-- <c> -->"},
    {"<b><![CDATA[<c>]]></b>", "<![CDATA[<c>]]>"},
    {"<b><![CDATA[]]></b>", "<![CDATA[]]>"},
    {"<b>t<!-- &e; -->t<![CDATA[&e;]]>t<?target &e;?></b>", "t<!-- &e; -->t<![CDATA[&e;]]>t<?target &e;?>"},
    {"<b><?target a > b?></b>", "<?target a > b?>"},
    {"<b>\r\n  <c/>\r\n</b>", "\r\n  <c/>\r\n"},
    {"<b>x\ry\r\nz</b>", "x\ry\r\nz"},
    {"<b> <b> </b> </b>", " <b> </b> "},
    {"<b>/x</b>", "/x"},
    {"<b x='/'>t</b>", "t"},
    {"<b><b/></b>", "<b/>"},
    {"<b><b/><c/>t</b>", "<b/><c/>t"},
    {"<b>caf\u00E9 \U0001F600</b>", "caf\u00E9 \U0001F600"},
    {"<\u00E9l\u00E9ment \u00E0='1'>x</\u00E9l\u00E9ment>", "x"},
};

TEST(XmlNodeMarkup, OfAnUnchangedElementIsVerbatim) {
  const MarkupRow around[] = {
      {"", ""},
      {"\n <r>", "</r>\n"},
      {"<r y='1'> text <x/>", "<!-- c --><x/></r>"},
      {"<?xml version='1.0' encoding='UTF-8'?>\r\n<!-- c --><r>", "</r><?target?>"},
      {"<?xml version='1.0' encoding='utf-8'?><r>", "</r>"},
      {"\xEF\xBB\xBF<r>", "</r>"},
      {"<!DOCTYPE r [<!ENTITY e 'unused'><!-- ]> -->]><r>", "</r>"},
      {"<!DOCTYPE r SYSTEM 'r.dtd'><r>", "</r>"},
  };
  for (const auto& [outer, inner] : markupRows) {
    for (const auto& [before, after] : around) {
      SCOPED_TRACE(before + outer + after);
      const XmlNode::Ptr root = ParseXml(before + outer + after);
      XmlNode::Ptr node = root;
      if (root->IsName("r")) {
        zq::XmlNodeIterator* children = root->GetIterator();
        node = children->First();
        if (node->IsName("x")) node = children->Next();
      }
      EXPECT_EQ(node->OuterXml(), outer);
      EXPECT_EQ(node->InnerXml(), inner);
      EXPECT_EQ(node->OuterXml(), outer) << "the second time";
    }
  }
}

TEST(XmlNodeMarkup, OfTheRootOmitsTheRestOfTheDocument) {
  EXPECT_EQ(ParseXml(" <?xml version='1.0'?>\n<!-- a -->\n<r ><b/></r >\n<!-- z -->\n")->OuterXml(),
            "<r ><b/></r >");
}

TEST(XmlNodeMarkup, ShowsAChangeInEveryElementAround) {
  using Change = std::function<void(XmlNode&)>;
  const struct {
    const char* what;
    Change change;
    std::string c;
  } rows[] = {
      {"AddChild", [](XmlNode& c) { c.AddChild("d", "<"); }, R"(<c x="1">t<d>&lt;</d></c>)"},
      {"AddChild number", [](XmlNode& c) { c.AddChild("d", 5U); }, R"(<c x="1">t<d>5</d></c>)"},
      {"SetAttribute", [](XmlNode& c) { c.SetAttribute("x", "2"); }, R"(<c x="2">t</c>)"},
      {"Initialize", [](XmlNode& c) { c.Initialize("e", "u"); }, "<e>u</e>"},
  };
  for (const auto& [what, change, c] : rows) {
    SCOPED_TRACE(what);
    const XmlNode::Ptr a = ParseXml("<a><b ><c  x='1' >t</c ></b ><s  /></a >");
    const XmlNode::Ptr b = a->GetChild("b");
    const XmlNode::Ptr inner = b->GetChild("c");
    change(*inner);
    EXPECT_EQ(inner->OuterXml(), c);
    EXPECT_EQ(b->InnerXml(), c);
    EXPECT_EQ(b->OuterXml(), "<b>" + c + "</b>");
    EXPECT_EQ(a->OuterXml(), "<a><b>" + c + "</b><s  /></a>") << "unchanged elements are written verbatim";
    EXPECT_EQ(a->GetChild("s")->OuterXml(), "<s  />");
  }
}

TEST(XmlNodeMarkup, OfAChangedElementKeepsAllText) {
  const XmlNode::Ptr root = ParseXml("<a>one<b/>two<![CDATA[<3>]]><c/>&amp;</a>");
  root->AddChild("d", "");
  EXPECT_EQ(root->GetData(), "onetwo<3>&");
  EXPECT_EQ(root->OuterXml(), "<a>one<b/>two&lt;3&gt;<c/>&amp;<d/></a>");
  EXPECT_EQ(ParseXml(root->OuterXml())->GetData(), "onetwo<3>&");
}

TEST(XmlNodeMarkup, OfAChangedElementNeedsNoLayout) {
  const XmlNode::Ptr root = ParseXml("<a>\n  <b/>\n</a>");
  root->AddChild("c", "");
  const XmlNode::Ptr again = ParseXml(root->OuterXml());
  EXPECT_THAT(ChildNames(*again), ElementsAre("b", "c"));
  EXPECT_EQ(again->GetData(), "");
}

// --- escaping ---

TEST(XmlNodeEscaping, OfTextsAndAttributesReadsBack) {
  const struct {
    std::string raw;
    std::string text;
    std::string attribute;
  } rows[] = {
      {"&amp;", "&amp;amp;", "&amp;amp;"},
      {"<a>", "&lt;a&gt;", "&lt;a&gt;"},
      {"]]>", "]]&gt;", "]]&gt;"},
      {"\"quoted\"", "\"quoted\"", "&quot;quoted&quot;"},
      {"it's", "it's", "it's"},
      {"1\t2", "1\t2", "1&#9;2"},
      {"1\n2", "1\n2", "1&#10;2"},
      {"1\r2", "1&#13;2", "1&#13;2"},
      {"1\r\n2", "1&#13;\n2", "1&#13;&#10;2"},
      {"\x7F\u0080\u0085\u2028", "\x7F\u0080\u0085\u2028", "\x7F\u0080\u0085\u2028"},
      {"\u07FF\u0800\uFFFC", "\u07FF\u0800\uFFFC", "\u07FF\u0800\uFFFC"},
      {"\u00E9\u20AC\uD7FF\uE000\uFFFD\U00010000\U0010FFFF",
       "\u00E9\u20AC\uD7FF\uE000\uFFFD\U00010000\U0010FFFF",
       "\u00E9\u20AC\uD7FF\uE000\uFFFD\U00010000\U0010FFFF"},
  };
  for (const auto& [raw, text, attribute] : rows) {
    SCOPED_TRACE(text);
    const XmlNode::Ptr node = zq::CreateXmlNode("a", raw);
    node->SetAttribute("x", raw);
    EXPECT_EQ(node->InnerXml(), text);
    EXPECT_EQ(node->OuterXml(), "<a x=\"" + attribute + "\">" + text + "</a>");
    const XmlNode::Ptr again = ParseXml(node->OuterXml());
    EXPECT_EQ(again->GetData(), raw);
    EXPECT_EQ(again->GetAttribute("x"), raw);
    node->AddChild("b", "");
    EXPECT_EQ(node->InnerXml(), text + "<b/>");
  }
}

TEST(XmlNodeEscaping, ReplacesCharactersThatXmlCannotContain) {
  const std::string mark = "\uFFFD";
  const TextRow rows[] = {
      {std::string("a\0b", 3), "a" + mark + "b"},
      {"\x01\x08\x0B\x0C\x0E\x1F", mark + mark + mark + mark + mark + mark},
      {"\x80", mark},
      {"a\xBFz", "a" + mark + "z"},
      {"\xC3", mark},
      {"\xC3(", mark + "("},
      {"\xC3<", mark + "&lt;"},
      {"\xE2(\xA1", mark + "(" + mark},
      {"\xFE\xFF", mark + mark},
      {"\xC3\xA9\xC3", "\u00E9" + mark},
  };
  for (const auto& [raw, written] : rows) {
    const XmlNode::Ptr node = zq::CreateXmlNode("a", raw);
    node->SetAttribute("x", raw);
    EXPECT_EQ(node->OuterXml(), "<a x=\"" + written + "\">" + written + "</a>");
    EXPECT_EQ(node->GetData(), raw) << "only what is written is replaced";
    EXPECT_EQ(node->GetAttribute("x"), raw);
  }
}

TEST(XmlNodeEscaping, ReplacesEverySequenceThatIsNoCharacterOfXml) {
  const std::string rows[] = {
      "\xC0\x80",          // overlong
      "\xC1\xBF",          // overlong
      "\xE0\x9F\xBF",      // overlong
      "\xF0\x8F\xBF\xBF",  // overlong
      "\xED\xA0\x80",      // a surrogate
      "\xED\xBF\xBF",      // a surrogate
      "\xEF\xBF\xBE",      // U+FFFE
      "\xEF\xBF\xBF",      // U+FFFF
      "\xF4\x90\x80\x80",  // beyond U+10FFFF
      "\xF5\x80\x80\x80",  // beyond U+10FFFF
      "\xE2\x82",          // cut off
      "\xF0\x9F\x98",      // cut off
      "\xF8\x88\x80\x80\x80",
      "\xF8\x90\x80\x80",  // an invalid first byte
      "\xFF\xBF\xBF\xBF",
  };
  for (const std::string& raw : rows) {
    const XmlNode::Ptr node = zq::CreateXmlNode("a", "<" + raw + ">");
    std::string read = ParseXml(node->OuterXml())->GetData();
    std::size_t marks = 0;
    for (std::size_t at = 0; (at = read.find("\uFFFD")) != std::string::npos; ++marks) read.erase(at, 3);
    EXPECT_EQ(read, "<>");
    EXPECT_GE(marks, 1U);
    EXPECT_LE(marks, raw.size());
  }
}

TEST(XmlNodeEscaping, ReplacesCharactersThatNamesCannotContain) {
  const TextRow rows[] = {
      {"", "_"},
      {"a b", "a_b"},
      {"a ", "a_"},
      {"a x='1'", "a_x__1_"},
      {"a<b>&\"'/=", "a_b______"},
      {"1a", "_1a"},
      {"-a", "_-a"},
      {".a", "_.a"},
      {"a-1.b:c_d", "a-1.b:c_d"},
      {"\u00E9l\u00E9ment", "\u00E9l\u00E9ment"},
      {"a\xFFz", "a_z"},
      {std::string("a\0z", 3), "a_z"},
  };
  for (const auto& [name, written] : rows) {
    SCOPED_TRACE(written);
    const XmlNode::Ptr node = zq::CreateXmlNode(name, "t");
    EXPECT_EQ(node->OuterXml(), "<" + written + ">t</" + written + ">");
    EXPECT_EQ(node->GetName(), name);
    EXPECT_TRUE(zq::CreateXmlDocument(node->OuterXml()));
    const XmlNode::Ptr holder = zq::CreateXmlNode("a", "");
    holder->SetAttribute(name, "v");
    EXPECT_EQ(holder->OuterXml(), "<a " + written + "=\"v\"/>");
    EXPECT_EQ(holder->GetAttribute(name), "v");
    EXPECT_TRUE(zq::CreateXmlDocument(holder->OuterXml()));
  }
}

TEST(XmlNodeEscaping, ReplacesNothingInTheNamesNextToABadOne) {
  const XmlNode::Ptr root = zq::CreateXmlNode("1", "");
  root->AddChild("\u00E9", "t");
  EXPECT_EQ(root->OuterXml(), "<_1><\u00E9>t</\u00E9></_1>");
}

TEST(XmlNodeEscaping, ReadsBackWhateverTheBytesOfNamesAndTexts) {
  for (int first = 0; first < 256; ++first) {
    for (const int second : {0x00, 0x20, 0x41, 0x80, 0xBF, 0xC3, 0xFF}) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
      const XmlNode::Ptr node = zq::CreateXmlNode(bytes, bytes);
      node->SetAttribute(bytes, bytes);
      node->AddChild(bytes, bytes);
      EXPECT_TRUE(zq::CreateXmlDocument(node->OuterXml())) << node->OuterXml();
    }
  }
}

TEST(XmlNodeEscaping, ReadsBackAttributesWhoseNamesBecomeTheSame) {
  const XmlNode::Ptr node = zq::CreateXmlNode("a", "");
  node->SetAttribute("x y", "1");
  node->SetAttribute("x_y", "2");
  node->SetAttribute("x=y", "3");
  EXPECT_EQ(node->GetAttributeCount(), 3U);
  EXPECT_TRUE(zq::CreateXmlDocument(node->OuterXml())) << node->OuterXml();
}

}  // namespace
