#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <tavrin_driver/DriverParam.h>
#include <tavrin_platform/ZqError.h>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "DescribeParams.h"
#include "GlobalCharacters.h"
#include "ParseXml.h"

namespace {

using ParamMap = std::map<std::string, DriverParam>;

Json::Value ParseJson(const std::string& text) {
  std::istringstream stream(text);
  Json::Value value;
  std::string errors;
  if (!Json::parseFromStream(Json::CharReaderBuilder(), stream, &value, &errors))
    throw std::invalid_argument(errors);
  return value;
}

// Returns a record with a value in every field, to detect fields that a reader leaves unchanged.
DriverParam Filled() {
  DriverParam param("old name", "old type", 11, 12);
  param.value = "old value";
  return param;
}

std::string Dump(const DriverParam& param) {
  std::ostringstream stream;
  param.print(stream);
  return stream.str();
}

std::string Dump(const ParamMap& params) {
  std::ostringstream stream;
  zq::print(stream, params);
  return stream.str();
}

// --- the record ---

TEST(DriverParam, ConstructorSelectsStaticOrVariable) {
  EXPECT_EQ(Describe(DriverParam()), ":=");
  EXPECT_FALSE(DriverParam().bVar);
  const DriverParam fixed("LEVEL", "number", "50");
  EXPECT_FALSE(fixed.bVar);
  EXPECT_EQ(Describe(fixed), "LEVEL:number=50");
  const DriverParam variable("LEVEL", "number", 7, 1001);
  EXPECT_TRUE(variable.bVar);
  EXPECT_EQ(Describe(variable), "LEVEL:number=@7/1001");
}

TEST(DriverParam, CopyHasEveryField) {
  const DriverParam copy(Filled());
  EXPECT_EQ(Fields(copy), Fields(Filled()));
  DriverParam assigned("x", "y", "z");
  assigned = copy;
  EXPECT_EQ(Fields(assigned), Fields(Filled()));
  static_assert(!std::is_polymorphic_v<DriverParam>);
}

// --- printed forms ---

TEST(DriverParamPrint, HasItsKeysInAFixedOrder) {
  EXPECT_EQ(
      Dump(DriverParam()),
      R"({"type": "", "bVar": false, "value": "", "name": "", "var": {"idDevice": 0, "idVariable": 0}})");
  EXPECT_EQ(Dump(DriverParam("LEVEL", "number", "50")),
            R"({"type": "number", "bVar": false, "value": "50", "name": "LEVEL", )"
            R"("var": {"idDevice": 0, "idVariable": 0}})");
  EXPECT_EQ(Dump(DriverParam("LEVEL", "number", 7, 4294967295U)),
            R"({"type": "number", "bVar": true, "value": "", "name": "LEVEL", )"
            R"("var": {"idDevice": 7, "idVariable": 4294967295}})");
}

TEST(DriverParamPrint, EscapesNothing) {
  EXPECT_EQ(Dump(DriverParam("\"n\"", "t\\", "a\"b\n<c/>")),
            "{\"type\": \"t\\\", \"bVar\": false, \"value\": \"a\"b\n<c/>\", \"name\": \"\"n\"\", "
            "\"var\": {\"idDevice\": 0, \"idVariable\": 0}}");
}

TEST(DriverParamPrint, WritesNumbersInTheFormatOfTheStream) {
  std::ostringstream stream;
  stream << std::hex << std::boolalpha;
  EXPECT_EQ(&DriverParam("n", "t", 255, 16).print(stream), &stream);
  EXPECT_EQ(
      stream.str(),
      R"({"type": "t", "bVar": true, "value": "", "name": "n", "var": {"idDevice": ff, "idVariable": 10}})");
}

TEST(ParamMapPrint, PutsTheSeparatorAfterTheSecondAndEveryLaterEntry) {
  const auto entry = [](const std::string& name) {
    return R"({"first": ")" + name + R"(", "second": )" + Dump(DriverParam(name, "t", name)) + "}";
  };
  const struct {
    std::string names;
    std::string dump;
  } rows[] = {
      {"", "[]"},
      {"a", "[" + entry("a") + "]"},
      {"ba", "[" + entry("a") + entry("b") + ", ]"},
      {"cab", "[" + entry("a") + entry("b") + ", " + entry("c") + ", ]"},
      {"dcba", "[" + entry("a") + entry("b") + ", " + entry("c") + ", " + entry("d") + ", ]"},
  };
  for (const auto& [names, dump] : rows) {
    ParamMap params;
    for (const char c : names)
      params[std::string(1, c)] = DriverParam(std::string(1, c), "t", std::string(1, c));
    EXPECT_EQ(Dump(params), dump);
  }
}

TEST(ParamMapPrint, QuotesTheKeyVerbatim) {
  std::ostringstream stream;
  EXPECT_EQ(&zq::print(stream, {{"the \"key\"", DriverParam("name", "t", "v")}}), &stream);
  EXPECT_EQ(stream.str(),
            "[{\"first\": \"the \"key\"\", \"second\": " + Dump(DriverParam("name", "t", "v")) + "}]");
}

TEST(JsonQuoteValue, AddsQuotesOnly) {
  EXPECT_EQ(zq::jsonQuoteValue(""), R"("")");
  EXPECT_EQ(zq::jsonQuoteValue("a\"b\\c\n"), "\"a\"b\\c\n\"");
  EXPECT_EQ(zq::jsonQuoteValue(std::string("a\0b", 3)), std::string("\"a\0b\"", 5));
}

// --- writing XML ---

TEST(DriverParamToXml, WritesTheAttributeLayout) {
  const struct {
    DriverParam param;
    const char* xml;
  } rows[] = {
      {{"LEVEL", "number", "50"},
       R"(<param><name>LEVEL</name><value type="number"><static>50</static></value></param>)"},
      {{"LEVEL", "number", 7, 4294967295U},
       "<param><name>LEVEL</name><value type=\"number\"><variable><deviceid>7</deviceid>"
       "<variableid>4294967295</variableid></variable></value></param>"},
      {{}, R"(<param><name/><value type=""><static/></value></param>)"},
      {{"<n>", "\"t\"", "a & <b/>"},
       "<param><name>&lt;n&gt;</name><value type=\"&quot;t&quot;\"><static>a &amp; "
       "&lt;b/&gt;</static></value></param>"},
  };
  for (const auto& [param, xml] : rows) EXPECT_EQ(param.toXml(), xml);
}

TEST(DriverParamToXml, WritesEitherTheValueOrTheVariable) {
  DriverParam variable = Filled();
  EXPECT_EQ(variable.toXml(),
            "<param><name>old name</name><value type=\"old type\"><variable><deviceid>11</deviceid>"
            "<variableid>12</variableid></variable></value></param>");
  variable.bVar = false;
  EXPECT_EQ(
      variable.toXml(),
      R"(<param><name>old name</name><value type="old type"><static>old value</static></value></param>)");
}

TEST(DriverParamToXml, AppendsToAParentUnderAnyName) {
  zq::XmlNode::Ptr parent = zq::CreateXmlNode("parent", "");
  toXml(DriverParam("a", "t", "1"), parent, "param");
  toXml(DriverParam("b", "t", 2, 3), parent, "other");
  EXPECT_EQ(
      parent->OuterXml(),
      "<parent><param><name>a</name><value type=\"t\"><static>1</static></value></param>"
      "<other><name>b</name><value type=\"t\"><variable><deviceid>2</deviceid><variableid>3</variableid>"
      "</variable></value></other></parent>");
}

TEST(DriverParamToXml, IsReadBack) {
  for (const DriverParam& param :
       {DriverParam("n", "t", "text"), DriverParam("n", "", ""), DriverParam("", "t", " \t\n "),
        DriverParam("n", "t", "<b>&amp;</b>"), DriverParam("n", "t", 1, 2), DriverParam("n", "t", 0, 0)}) {
    DriverParam again;
    again.fromXml(ParseXml(param.toXml()));
    EXPECT_EQ(Fields(again), Fields(param));
  }
}

// --- reading XML ---

struct ReadRow {
  std::string markup;
  std::string fresh;   // read into an empty record
  std::string filled;  // read into Filled()
};

// Reads the row's parameter into an empty record and into a filled one.
void ExpectReading(const ReadRow& row) {
  SCOPED_TRACE(row.markup);
  const zq::XmlNode::Ptr node = ParseXml("<param>" + row.markup + "</param>");
  DriverParam param;
  param.fromXml(node);
  EXPECT_EQ(Describe(param), row.fresh);
  param = Filled();
  param.fromXml(node);
  EXPECT_EQ(Describe(param), row.filled);
}

TEST(DriverParamFromXml, ReadsTheAttributeLayout) {
  const ReadRow rows[] = {
      {"<name>N</name><value type='T'><static>V</static></value>", "N:T=V", "N:T=V@11/12"},
      {"<name>N</name><value type=''><static/></value>", "N:=", "N:=@11/12"},
      {"<name>N</name><value><static>V</static></value>", "N:=V", "N:old type=V@11/12"},
      {"<name>N</name><value type='T'/>", "N:T=", "N:T=old value@11/12"},
      {"<name>N</name>", "N:=", "N:old type=old value@11/12"},
      {"", ":=", ":old type=old value@11/12"},
      {"<value type='T'><static>V</static></value>", ":T=V", ":T=V@11/12"},
      // the text of "static", or its markup if it has no text
      {"<value type='T'><static>a&lt;<b/>c</static></value>", ":T=a<c", ":T=a<c@11/12"},
      {"<value type='T'><static><b x='1' >t</b ></static></value>", ":T=<b x='1' >t</b >",
       ":T=<b x='1' >t</b >@11/12"},
      {"<value type='T'><static> <b/> </static></value>", ":T= <b/> ", ":T= <b/> @11/12"},
      {"<value type='T'><static> </static></value>", ":T= ", ":T= @11/12"},
      {"<value type='T'><static><![CDATA[<b/>]]></static></value>", ":T=<b/>", ":T=<b/>@11/12"},
      {"<value type='T'><static><!-- c --></static></value>", ":T=<!-- c -->", ":T=<!-- c -->@11/12"},
      // variables
      {"<value type='T'><variable><deviceid>7</deviceid><variableid>8</variableid></variable></value>",
       ":T=@7/8", ":T=old value@7/8"},
      {"<value type='T'><variable><deviceid>0</deviceid></variable></value>", ":T=@0/0", ":T=old value@0/12"},
      {"<value type='T'><variable><deviceid/></variable></value>", ":T=@0/0", ":T=old value@0/12"},
      {"<value type='T'><variable><variableid>8</variableid></variable></value>", ":T=(0/8)",
       ":T=old value@11/8"},
      {"<value type='T'><variable/></value>", ":T=", ":T=old value@11/12"},
      {"<value type='T'><static>V</static><variable><deviceid>7</deviceid></variable></value>", ":T=V",
       ":T=V@11/12"},
      {"<value type='T'><variable><deviceid>7</deviceid></variable><static>V</static></value>", ":T=V",
       ":T=V@11/12"},
      // the elements of the older layout are ignored here
      {"<value type='T'><valuetype><static>V</static></valuetype></value>", ":T=", ":T=old value@11/12"},
      // the first element of a name is read, names are case-sensitive, the rest is ignored
      {"<name>N</name><name>M</name><value type='T'/><value type='U'><static>V</static></value>",
       "N:T=", "N:T=old value@11/12"},
      {"<Name>N</Name><Value type='T'><static>V</static></Value>", ":=", ":old type=old value@11/12"},
      {"<name>N</name><value Type='T'><Static>V</Static></value>", "N:=", "N:old type=old value@11/12"},
      {"<other>x</other><name y='1'>N<b/></name><value type='T' z='2'><other/><static>V</static></value>",
       "N:T=V", "N:T=V@11/12"},
  };
  for (const ReadRow& row : rows) ExpectReading(row);
}

TEST(DriverParamFromXml, ReadsTheElementLayout) {
  const ReadRow rows[] = {
      {"<name>N</name><type>T</type><value><valuetype><static>V</static></valuetype></value>", "N:T=V",
       "N:T=V@11/12"},
      {"<name>N</name><type>T</type>", "N:T=", "N:T=old value@11/12"},
      {"<name>N</name><type/>", "N:=", "N:=old value@11/12"},
      {"<type>T</type><value/>", ":T=", ":T=old value@11/12"},
      {"<type>T</type><value><valuetype/></value>", ":T=", ":T=old value@11/12"},
      // always the markup of "static"
      {"<type>T</type><value><valuetype><static>a&lt;<b/>c</static></valuetype></value>", ":T=a&lt;<b/>c",
       ":T=a&lt;<b/>c@11/12"},
      {"<type>T</type><value><valuetype><static><![CDATA[<b/>]]></static></valuetype></value>",
       ":T=<![CDATA[<b/>]]>", ":T=<![CDATA[<b/>]]>@11/12"},
      {"<type>T</type><value><valuetype><static/></valuetype></value>", ":T=", ":T=@11/12"},
      // variables
      {"<type>T</type><value><valuetype><variable><deviceid>7</deviceid><variableid>8</variableid></variable>"
       "</valuetype></value>",
       ":T=@7/8", ":T=old value@7/8"},
      {"<type>T</type><value><valuetype><variable><deviceid>0</deviceid></variable></valuetype></value>",
       ":T=@0/0", ":T=old value@0/12"},
      {"<type>T</type><value><valuetype><variable><variableid>8</variableid></variable></valuetype></value>",
       ":T=(0/8)", ":T=old value@11/8"},
      {"<type>T</type><value><valuetype><variable><deviceid>7</deviceid></variable><static>V</static></"
       "valuetype></value>",
       ":T=V", ":T=V@11/12"},
      // the elements and the attribute of the newer layout are ignored here
      {"<type>T</type><value type='U'><static>V</static></value>", ":T=", ":T=old value@11/12"},
      {"<value type='U'><static>V</static></value><type>T</type>", ":T=", ":T=old value@11/12"},
  };
  for (const ReadRow& row : rows) ExpectReading(row);
}

TEST(DriverParamFromXml, KeepsTheLow32BitsOfAnId) {
  DriverParam param;
  param.fromXml(
      ParseXml("<p><value><variable><deviceid>-1</deviceid><variableid>-2147483648</variableid>"
               "</variable></value></p>"));
  EXPECT_EQ(Describe(param), ":=@4294967295/2147483648");
}

TEST(DriverParamFromXml, KeepsWhatWasReadBeforeAMalformedId) {
  const struct {
    const char* variable;
    const char* kept;
  } rows[] = {
      {"<deviceid>x</deviceid><variableid>8</variableid>", "N:T=@0/0"},
      {"<deviceid>4294967296</deviceid>", "N:T=@0/0"},
      {"<deviceid>7</deviceid><variableid>x</variableid>", "N:T=@7/0"},
      {"<variableid>1.5</variableid>", "N:T="},
  };
  for (const auto& [variable, kept] : rows) {
    for (const bool elementLayout : {false, true}) {
      const std::string inner = "<variable>" + std::string(variable) + "</variable>";
      const zq::XmlNode::Ptr node =
          ParseXml(elementLayout ? "<p><name>N</name><type>T</type><value><valuetype>" + inner +
                                       "</valuetype></value></p>"
                                 : "<p><name>N</name><value type='T'>" + inner + "</value></p>");
      DriverParam param;
      EXPECT_THROW(param.fromXml(node), zq::ZqError) << variable;
      EXPECT_EQ(Describe(param), kept) << variable;
    }
  }
}

// --- reading JSON ---

TEST(DriverParamFromJson, ReadsKnownMembersAndIgnoresOthers) {
  const ReadRow rows[] = {
      {R"({"name": "N", "type": "T", "value": {"static": "V"}})", "N:T=V", "N:T=V@11/12"},
      {R"({"name": "N", "type": "T", "value": {"variable": {"deviceid": 7, "variableid": 8}}})", "N:T=@7/8",
       "N:T=old value@7/8"},
      {"{}", ":=", "old name:old type=old value@11/12"},
      {"null", ":=", "old name:old type=old value@11/12"},
      {R"({"name": "", "type": ""})", ":=", ":=old value@11/12"},
      {R"({"name": "N"})", "N:=", "N:old type=old value@11/12"},
      {R"({"name": 5, "type": true})", ":=", "old name:old type=old value@11/12"},
      {R"({"name": {"static": "x"}, "type": ["x"], "value": null})",
       ":=", "old name:old type=old value@11/12"},
      {R"({"value": "V"})", ":=", "old name:old type=old value@11/12"},
      {R"({"value": ["static", "V"]})", ":=", "old name:old type=old value@11/12"},
      {R"({"Name": "N", "other": "x", "other2": {"static": "V"}, "values": {"static": "V"}})",
       ":=", "old name:old type=old value@11/12"},
      {R"({"name\u0000": "N", "value": {"static\u0000": "V"}})", ":=", "old name:old type=old value@11/12"},
      {R"({"value": {"other": "x", "Static": "V", "valuetype": {"static": "V"}}})",
       ":=", "old name:old type=old value@11/12"},
      // static values of any simple type
      {R"({"value": {"static": 5}})", ":=5", "old name:old type=5@11/12"},
      {R"({"value": {"static": -5}})", ":=-5", "old name:old type=-5@11/12"},
      {R"({"value": {"static": 2.5}})", ":=2.5", "old name:old type=2.5@11/12"},
      {R"({"value": {"static": true}})", ":=true", "old name:old type=true@11/12"},
      {R"({"value": {"static": null}})", ":=", "old name:old type=@11/12"},
      // variables
      {R"({"value": {"static": "V", "variable": {"deviceid": 7, "variableid": 8}}})", ":=V@7/8",
       "old name:old type=V@7/8"},
      {R"({"value": {"variable": {}}})", ":=@0/0", "old name:old type=old value@11/12"},
      {R"({"value": {"variable": 5}})", ":=@0/0", "old name:old type=old value@11/12"},
      {R"({"value": {"variable": "7"}})", ":=@0/0", "old name:old type=old value@11/12"},
      {R"({"value": {"variable": [7, 8]}})", ":=@0/0", "old name:old type=old value@11/12"},
      {R"({"value": {"variable": null}})", ":=@0/0", "old name:old type=old value@11/12"},
      {R"({"value": {"variable": {"variableid": 8, "other": "x"}}})", ":=@0/8",
       "old name:old type=old value@11/8"},
      {R"({"value": {"variable": {"deviceid": 0}}})", ":=@0/0", "old name:old type=old value@0/12"},
      {R"({"value": {"variable": {"deviceid": 4294967303, "variableid": 18446744073709551615}}})",
       ":=@7/4294967295", "old name:old type=old value@7/4294967295"},
      // the result of converting 2^64 depends on the processor
      {R"({"value": {"variable": {"deviceid": 18446744073709551616, "variableid": 1.8446744073709552e19}}})",
       ":=@0/0", "old name:old type=old value@0/0"},
      {R"({"value": {"variable": {"deviceid": 7.9, "variableid": true}}})", ":=@7/1",
       "old name:old type=old value@7/1"},
  };
  for (const auto& [markup, fresh, filled] : rows) {
    SCOPED_TRACE(markup);
    Json::Value object = ParseJson(markup);
    DriverParam param;
    param.fromJson(object);
    EXPECT_EQ(Describe(param), fresh);
    param = Filled();
    param.fromJson(object);
    EXPECT_EQ(Describe(param), filled);
    EXPECT_EQ(object, ParseJson(markup)) << "the object stays as it is";
  }
}

TEST(DriverParamFromJson, ConvertsAStaticRecordToAVariable) {
  Json::Value object = ParseJson(R"({"value": {"variable": null}})");
  DriverParam param("N", "T", "V");
  param.fromJson(object);
  EXPECT_TRUE(param.bVar);
  EXPECT_EQ(param.value, "V");
}

TEST(DriverParamFromJson, KeepsWhatWasReadBeforeAMalformedValue) {
  const struct {
    const char* value;
    const char* kept;
  } rows[] = {
      {R"({"static": []})", "N:T="},
      {R"({"static": {}, "variable": {"deviceid": 7}})", "N:T="},
      {R"({"static": "V", "variable": {"deviceid": -1, "variableid": 8}})", "N:T=V@0/0"},
      {R"({"variable": {"deviceid": 7, "variableid": "8"}})", "N:T=@7/0"},
      {R"({"variable": {"deviceid": 7, "variableid": []}})", "N:T=@7/0"},
      {R"({"variable": {"deviceid": 7, "variableid": 1e30}})", "N:T=@7/0"},
      {R"({"variable": {"deviceid": 7, "variableid": -0.5e10}})", "N:T=@7/0"},
  };
  for (const auto& [value, kept] : rows) {
    SCOPED_TRACE(value);
    Json::Value object = ParseJson(std::string(R"({"name": "N", "type": "T", "value": )") + value + "}");
    DriverParam param;
    EXPECT_THROW(param.fromJson(object), Json::Exception);
    EXPECT_EQ(Describe(param), kept);
  }
}

// --- lower case ---

TEST(ToLower, DoesNotModifyItsInput) {
  const std::string text = "MiXed 123 \xC4";
  EXPECT_EQ(ToLower(text), "mixed 123 \xC4");
  EXPECT_EQ(text, "MiXed 123 \xC4");
  EXPECT_EQ(ToLower("already lower"), "already lower");
  EXPECT_EQ(ToLower(""), "");
  EXPECT_EQ(ToLower(std::string("A\0B", 3)), std::string("a\0b", 3));
}

TEST(ToLower, UsesTheGlobalLocale) {
  const GlobalCharacters characters;
  EXPECT_EQ(ToLower("A\xC4"), "a\xE4");
}

}  // namespace
