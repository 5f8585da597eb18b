#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_testing/FakeVariables.h>
#include <locale>
#include <map>
#include <sstream>
#include <string>

#include "DescribeParams.h"
#include "GlobalCharacters.h"

namespace {

using testing::HasSubstr;

class CmdMessageOutput : public testing::Test {
 protected:
  tavrin_testing::FakeVariables manager;
  CCmdMessage message{"", manager};

  std::string Printed() const {
    std::ostringstream stream;
    message.print(stream);
    return stream.str();
  }
};

std::string ParamXml(const std::string& name, const std::string& value) {
  return "<param><name>" + name + "</name><value type=\"t\"><static>" + value + "</static></value></param>";
}

// --- XML ---

TEST_F(CmdMessageOutput, IsADeviceCommandWithItsParameters) {
  EXPECT_EQ(message.toXml(false), "<devicecommand><command/><params/></devicecommand>");
  message.Initialize("SET <LEVEL>");
  message.addParam("b", "t", "a & b");
  message.addVarParam("a", "u", 7, 4294967295U);
  const std::string xml =
      "<devicecommand><command>SET &lt;LEVEL&gt;</command><params><param><name>a</name><value type=\"u\">"
      "<variable><deviceid>7</deviceid><variableid>4294967295</variableid></variable></value></param>" +
      ParamXml("b", "a &amp; b") + "</params></devicecommand>";
  EXPECT_EQ(message.toXml(false), xml);
  EXPECT_EQ(message.toXml(true), xml);
  EXPECT_EQ(message.toAutoNode(false)->OuterXml(), xml);
  EXPECT_TRUE(manager.reads().empty()) << "a variable is written as a variable";
}

TEST_F(CmdMessageOutput, IsANewTreeEachTime) {
  message.Initialize("ON");
  const zq::XmlNode::Ptr first = message.toAutoNode(false);
  first->AddChild("more", "");
  EXPECT_EQ(first->OuterXml(), "<devicecommand><command>ON</command><params/><more/></devicecommand>");
  EXPECT_EQ(message.toXml(false), "<devicecommand><command>ON</command><params/></devicecommand>");
}

TEST_F(CmdMessageOutput, AppendsItsParametersToAnyElement) {
  zq::XmlNode::Ptr node = zq::CreateXmlNode("any", "");
  message.InsertParamsIntoNode(node, false);
  EXPECT_EQ(node->OuterXml(), "<any><params/></any>");
  message.addParam("pin", "t", "1");
  message.InsertParamsIntoNode(node, true);
  EXPECT_EQ(node->OuterXml(), "<any><params/><params>" + ParamXml("pin", "******") + "</params></any>");
}

TEST_F(CmdMessageOutput, MasksTheValuesOfSecrets) {
  for (const char* name : {"password", "Password", "PASSWORD", "ADMIN_PASSWORD", "userpassword2", "paSSwoRd",
                           "pin", "PIN", "Pin", "pIn"}) {
    CCmdMessage secret("C", manager);
    secret.addParam(name, "t", "1234");
    const std::string begin = "<devicecommand><command>C</command><params>";
    const std::string end = "</params></devicecommand>";
    EXPECT_EQ(secret.toXml(true), begin + ParamXml(name, "******") + end);
    EXPECT_EQ(secret.toAutoNode(true)->OuterXml(), begin + ParamXml(name, "******") + end);
    EXPECT_EQ(secret.toXml(false), begin + ParamXml(name, "1234") + end);
    EXPECT_EQ(secret.getParam(name), "1234") << "the message itself keeps the value";
    EXPECT_TRUE(zq::isSecretParameter(name));
  }
}

// "password" matches any part of a name, "pin" only a whole name.
TEST_F(CmdMessageOutput, WritesOtherValuesUnmasked) {
  for (const char* name :
       {"PIN_CODE", "pincode", "spin", "pin ", "pi", "", "pass", "passwor", "pass word", "passwd"}) {
    CCmdMessage open("C", manager);
    open.addParam(name, "password", "1234");
    EXPECT_EQ(open.toXml(true), open.toXml(false)) << name;
    EXPECT_THAT(open.toXml(true), HasSubstr("<static>1234</static>")) << name;
    EXPECT_FALSE(zq::isSecretParameter(name));
  }
}

TEST_F(CmdMessageOutput, MasksAnEmptySecretToo) {
  message.addParam("pin", "t", "");
  EXPECT_THAT(message.toXml(true), HasSubstr("<static>******</static>"));
}

TEST_F(CmdMessageOutput, MasksByTheNameInTheRecord) {
  message.addParams({{"pin", {"level", "t", "open"}}, {"level", {"pin", "t", "closed"}}});
  EXPECT_EQ(message.toXml(true), "<devicecommand><command/><params>" + ParamXml("pin", "******") +
                                     ParamXml("level", "open") + "</params></devicecommand>");
}

TEST_F(CmdMessageOutput, WritesTheIdsOfASecretVariable) {
  message.addVarParam("password", "t", 7, 8);
  EXPECT_EQ(message.toXml(true), message.toXml(false));
  EXPECT_THAT(message.toXml(true),
              HasSubstr("<variable><deviceid>7</deviceid><variableid>8</variableid></variable>"));
}

TEST_F(CmdMessageOutput, MasksUnderAnyGlobalLocale) {
  const GlobalCharacters characters;
  message.addParam("\xE4 Password", "t", "1234");
  EXPECT_THAT(message.toXml(true), HasSubstr("<static>******</static>"));
}

TEST_F(CmdMessageOutput, MasksByTheCurrentGlobalLocale) {
  class QForP : public std::ctype<char> {
    char do_toupper(char c) const override { return c == 'q' ? 'P' : std::ctype<char>::do_toupper(c); }
  };
  message.addParam("qin", "t", "1234");
  EXPECT_EQ(message.toXml(true), message.toXml(false));
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new QForP));
  EXPECT_THAT(message.toXml(true), HasSubstr("<static>******</static>"));
  std::locale::global(before);
  EXPECT_EQ(message.toXml(true), message.toXml(false));
}

TEST_F(CmdMessageOutput, CallsTheOverridableTreeWriter) {
  class Overriding : public CCmdMessage {
   public:
    using CCmdMessage::CCmdMessage;
    zq::XmlNode::Ptr toAutoNode(bool maskSecrets) const override {
      return zq::CreateXmlNode(maskSecrets ? "masked" : "open", "");
    }
  };
  const Overriding overriding("C", manager);
  EXPECT_EQ(overriding.toXml(true), "<masked/>");
  EXPECT_EQ(overriding.toXml(false), "<open/>");
}

TEST_F(CmdMessageOutput, IsReadBack) {
  message.Initialize(" a <command> & \"more\" ");
  message.addParam("<n>", "<t>", " <v>&amp;]]>\t\n\r ");
  message.addParam("empty", "", "");
  message.addParam("", "t", " ");
  message.addParam("\u20AC", "t", "\U0001F600");
  message.addVarParam("v", "t", 4294967295U, 2147483648U);
  message.addVarParam("zero", "t", 0, 0);
  const auto again = CCmdMessage::CreateFromString(message.toXml(false), manager);
  EXPECT_EQ(Describe(*again), Describe(message));
  EXPECT_EQ(again->toXml(false), message.toXml(false));
}

TEST_F(CmdMessageOutput, AcceptsArbitraryBytes) {
  message.Initialize("\xFF\x01");
  message.addParam("\x80", "\xC3", std::string("a\0b", 3));
  const auto again = CCmdMessage::CreateFromString(message.toXml(false), manager);
  EXPECT_EQ(Describe(*again),
            "\uFFFD\uFFFD | \uFFFD:\uFFFD=a\uFFFD"
            "b");
}

// --- the printed form ---

// Programs that read the logs expect the comma after the opening brace.
TEST_F(CmdMessageOutput, PrintsACommaAfterTheBrace) {
  EXPECT_EQ(Printed(), R"({, "command_": "", "params_": []})");
  message.Initialize("ON");
  EXPECT_EQ(Printed(), R"({, "command_": "ON", "params_": []})");
}

TEST_F(CmdMessageOutput, PrintsEverythingUnmasked) {
  message.Initialize("a \"b\"\n\\");
  message.addParam("pin", "t", "12\"34");
  message.addVarParam("a", "t", 7, 8);
  message.setOwnerId(5);
  message.setOwnerType("type");
  const std::string a = R"({"first": "a", "second": {"type": "t", "bVar": true, "value": "", "name": "a", )"
                        R"("var": {"idDevice": 7, "idVariable": 8}}})";
  const std::string pin =
      R"({"first": "pin", "second": {"type": "t", "bVar": false, "value": "12"34", "name": "pin", )"
      R"("var": {"idDevice": 0, "idVariable": 0}}})";
  EXPECT_EQ(Printed(), "{, \"command_\": \"a \"b\"\n\\\", \"params_\": [" + a + pin + ", ]}");
}

TEST_F(CmdMessageOutput, PrintReturnsItsStream) {
  std::ostringstream stream;
  EXPECT_EQ(&message.print(stream), &stream);
}

}  // namespace
