#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/LogCapture.h>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "DescribeParams.h"
#include "ParseXml.h"
#include "SmallStack.h"

namespace {

struct LoadRow {
  std::string text;
  std::int32_t result;
  std::string contents;
};

class CmdMessageLoad : public testing::Test {
 protected:
  tavrin_testing::FakeVariables manager;
  CCmdMessage message{manager, 0};

  template <std::size_t count>
  void Check(const LoadRow (&rows)[count]) {
    for (const auto& [text, result, contents] : rows) {
      SCOPED_TRACE(text);
      CCmdMessage fresh(manager, 0);
      EXPECT_EQ(fresh.Load(text), result);
      EXPECT_EQ(Describe(fresh), contents);
    }
  }

  template <typename Exception>
  void CheckThrows(const std::string& text, const std::string& contents) {
    SCOPED_TRACE(text);
    CCmdMessage fresh(manager, 0);
    EXPECT_THROW(static_cast<void>(fresh.Load(text)), Exception);
    EXPECT_EQ(Describe(fresh), contents) << "what was read before stays";
  }
};

std::string Param(const std::string& name, const std::string& value) {
  return "<param><name>" + name + "</name><value type='t'><static>" + value + "</static></value></param>";
}

// --- format detection ---

TEST_F(CmdMessageLoad, DetectsTheFormatByTheFirstCharacter) {
  const std::string xml = "<c><command>ON</command></c>";
  const std::string json = R"({"c": {"command": "ON"}})";
  const LoadRow rows[] = {
      {xml, 0, "ON | "},
      {" \t\r\n" + xml + "\n", 0, "ON | "},
      {"\n<?xml version='1.0'?>\n" + xml, 0, "ON | "},
      {json, 0, "ON | "},
      {" \t\r\n" + json + "\n", 0, "ON | "},
      {R"([{"command": "ON"}])", 0, "ON | "},
      {R"( [{"command": "ON"}])", 0, "ON | "},
      {"", -1, " | "},
      {" \t\r\n\v\f", -1, " | "},
      {"ON", -1, " | "},
      {"\"ON\"", -1, " | "},
      {"5", -1, " | "},
      {"(\"c\")", -1, " | "},
      {"x" + xml, -1, " | "},
      {"}" + json, -1, " | "},
      {"]" + json, -1, " | "},
      {";" + json, -1, " | "},
      {"\xDB" + json, -1, " | "},
      {"\xFB" + json, -1, " | "},
      {"\xEF\xBB\xBF" + xml, -1, " | "},
      {std::string("\0", 1) + xml, -1, " | "},
      {"\xFF\xFE\x01\x80", -1, " | "},
  };
  Check(rows);
}

// --- XML ---

TEST_F(CmdMessageLoad, ReadsXml) {
  const LoadRow rows[] = {
      {"<devicecommand><command>ON</command><params>" + Param("b", "2") + Param("a", "1") +
           "<param><name>v</name><value type='t'><variable><deviceid>7</deviceid><variableid>8</variableid>"
           "</variable></value></param></params></devicecommand>",
       0, "ON | a:t=1 b:t=2 v:t=@7/8"},
      {"<c><params><param><name>a</name><type>t</type><value><valuetype><static><x/></static></valuetype></"
       "value>"
       "</param></params></c>",
       0, " | a:t=<x/>"},
      // any root element; nothing is required
      {"<anything/>", 0, " | "},
      {"<command>ON</command>", 0, " | "},
      {"<params>" + Param("a", "1") + "</params>", 0, " | "},
      {"<c command='ON'>text</c>", 0, " | "},
      {"<c><command/><params/></c>", 0, " | "},
      // the text of "command" itself; the last one is used
      {"<c><command>a&lt;<x>b</x><![CDATA[c]]></command></c>", 0, "a<c | "},
      {"<c><command>ON</command><command>OFF</command></c>", 0, "OFF | "},
      {"<c><command>ON</command><command/></c>", 0, " | "},
      {"<c><command> ON </command></c>", 0, " ON  | "},
      // names are case-sensitive; unknown elements are ignored
      {"<c><Command>ON</Command><Params>" + Param("a", "1") + "</Params></c>", 0, " | "},
      {"<c><x><command>ON</command></x><params><Param/><x>" + Param("a", "1") + "</x>" + Param("b", "2") +
           "</params></c>",
       0, " | b:t=2"},
      // all "params" elements; the first parameter of a name is kept
      {"<c><params>" + Param("a", "1") + "</params><command>ON</command><params>" + Param("a", "2") +
           Param("b", "2") + "</params></c>",
       0, "ON | a:t=1 b:t=2"},
      {"<c><params>" + Param("a", "1") + Param("a", "2") + "</params></c>", 0, " | a:t=1"},
      // each parameter is read into a new record
      {"<c><params>" + Param("a", "1") + "<param><name>b</name></param></params></c>", 0, " | a:t=1 b:="},
      {"<c><params><param/>" + Param("", "2") + "</params></c>", 0, " | :="},
      {"<c><params>" + Param("&lt;b&gt;", "&lt;x/&gt;") + "</params></c>", 0, " | <b>:t=<x/>"},
  };
  Check(rows);
}

TEST_F(CmdMessageLoad, RejectsMalformedXml) {
  const LoadRow rows[] = {
      {"<", -1, " | "},
      {"<c>", -1, " | "},
      {"<c><command>ON</command>", -1, " | "},
      {"<c><command>ON</command></c>x", -1, " | "},
      {"<c><command>ON</command></c><d/>", -1, " | "},
      {"<c><command>&undefined;</command></c>", -1, " | "},
      {"<c><command>\xFF</command></c>", -1, " | "},
      {std::string("<c>\0</c>", 8), -1, " | "},
  };
  Check(rows);
}

TEST_F(CmdMessageLoad, RejectsTruncatedXml) {
  const std::string text = "<c><command>ON</command><params>" + Param("a", "1") + "</params></c>";
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(message.Load(text.substr(0, length)), -1) << length;
    EXPECT_EQ(Describe(message), " | ") << length;
  }
}

TEST_F(CmdMessageLoad, PropagatesErrorsInXmlIds) {
  const std::string variable =
      "<param><name>v</name><value><variable><deviceid>x</deviceid></variable></value></param>";
  CheckThrows<zq::ZqError>(
      "<c><command>ON</command><params>" + Param("a", "1") + variable + Param("b", "2") + "</params></c>",
      "ON | a:t=1");
}

TEST_F(CmdMessageLoad, ReadsAParsedElement) {
  zq::XmlNode::Ptr root =
      ParseXml("<c><x><command>ON</command><params>" + Param("a", "1") + "</params></x></c>");
  zq::XmlNode::Ptr inner = root->GetChild("x");
  EXPECT_EQ(message.fromXml(inner), 0);
  EXPECT_EQ(Describe(message), "ON | a:t=1");
  zq::XmlNode::Ptr built = zq::CreateXmlNode("c", "");
  built->AddChild("command", "OFF");
  EXPECT_EQ(message.fromXml(built), 0);
  EXPECT_EQ(Describe(message), "OFF | a:t=1") << "added to what is there";
}

TEST_F(CmdMessageLoad, ReadsXmlThroughTheOverridableReader) {
  class Counting : public CCmdMessage {
   public:
    using CCmdMessage::CCmdMessage;
    std::int32_t fromXml(zq::XmlNode::Ptr& root) override {
      seen += root->GetName();
      return 17;
    }
    std::string seen;
  };
  Counting counting("C", manager);
  EXPECT_EQ(counting.loadXml("<root/>"), 17);
  EXPECT_EQ(counting.Load("<other/>"), 17);
  EXPECT_EQ(counting.seen, "rootother");
}

// --- JSON ---

TEST_F(CmdMessageLoad, ReadsJson) {
  const LoadRow rows[] = {
      {R"({"devicecommand": {"command": "ON", "params": [
           {"name": "b", "type": "t", "value": {"static": "2"}},
           {"name": "a", "type": "u", "value": {"static": 1}}]}})",
       0, "ON | a:u=1 b:t=2"},
      {R"({"c": {"params": [{"name": "v", "type": "t", "value": {"variable": {"deviceid": 7, "variableid": 8}}}]}})",
       0, " | v:t=@7/8"},
      {R"({"c": {}})", 0, " | "},
      {R"({"c": {"command": "", "params": []}})", 0, " | "},
      {R"({"c": {"command": "ON", "other": "text", "Command": "OFF", "paramS": "x"}})", 0, "ON | "},
      {R"({"c": {"command": "a\u0000b"}})", 0, std::string("a\0b | ", 6)},
      {R"({"c": {"command\u0000": "ON"}})", 0, " | "},
      // the first parameter of a name is kept
      {R"({"c": {"params": [{"name": "a", "value": {"static": "1"}}, {"name": "a", "value": {"static": "2"}}]}})",
       0, " | a:=1"},
      // extensions that the JSON reader accepts by default
      {R"(/* c */ {"c": {"command": "ON"}} // d)", -1, " | "},
      {R"({"c": {"command": "ON"}} // d)", 0, "ON | "},
      {R"({"c": {"command": "ON",},})", 0, "ON | "},
      {R"({"c": {"command": "ON", "command": "OFF"}})", 0, "OFF | "},
      {R"({"c": {"command": "ON"}} and more)", 0, "ON | "},
  };
  Check(rows);
}

TEST_F(CmdMessageLoad, ReadsTheFirstMemberOfAJsonWrapperByKey) {
  const LoadRow rows[] = {
      {R"({"b": {"command": "B"}, "a": {"command": "A"}})", 0, "A | "},
      {R"({"c": {"command": "C"}, "b": 5, "B": {"command": "capital"}})", 0, "capital | "},
      {R"({"a": {"command": "A"}, "b": 5, "c": null})", 0, "A | "},
      {R"({"b": {"command": "B"}, "a": 5})", -1, " | "},
      {R"({"b": {"command": "B"}, "a": []})", -1, " | "},
      {R"({"command": "ON"})", -1, " | "},
      {R"({"a": {"command": "A"}, "b": {}, "c": {}, "d": {}})", -1, " | "},
      {R"([{"command": "A"}, {"command": "B"}])", 0, "A | "},
      {R"([{"command": "A"}, 2, 3])", 0, "A | "},
      {R"([{"command": "A"}, 2, 3, 4])", -1, " | "},
      {R"([5, {"command": "A"}])", -1, " | "},
      {R"([[{"command": "A"}]])", -1, " | "},
      {"{}", -1, " | "},
      {"[]", -1, " | "},
  };
  Check(rows);
}

TEST_F(CmdMessageLoad, RejectsMalformedJson) {
  const LoadRow rows[] = {
      {"{", -1, " | "},
      {"[", -1, " | "},
      {"{]", -1, " | "},
      {R"({"c": {"command": "ON"})", -1, " | "},
      {R"({"c": {"command": ON}})", -1, " | "},
      {R"({'c': {'command': 'ON'}})", -1, " | "},
      {R"({"c": {"command": NaN}})", -1, " | "},
      {std::string("{\0}", 3), -1, " | "},
  };
  Check(rows);
  for (const char* text : {"", " ", "5", "null", "true", "\"text\"", "x"})
    EXPECT_EQ(message.loadJson(text), -1) << text;
}

TEST_F(CmdMessageLoad, RejectsTruncatedJson) {
  const std::string text = R"({"c": {"command": "ON", "params": [{"name": "a", "value": {"static": "1"}}]}})";
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(message.Load(text.substr(0, length)), -1) << length;
    EXPECT_EQ(Describe(message), " | ") << length;
  }
}

TEST_F(CmdMessageLoad, StopsAtAMemberOfTheWrongType) {
  const LoadRow rows[] = {
      {R"({"c": {"command": "ON", "params": [{"name": "a"}], "z": 1}})", -1, "ON | a:="},
      {R"({"c": {"command": "ON", "params": [{"name": "a"}], "z": true}})", -1, "ON | a:="},
      {R"({"c": {"command": "ON", "params": [{"name": "a"}], "z": null}})", -1, "ON | a:="},
      {R"({"c": {"command": "ON", "params": [{"name": "a"}], "z": {}}})", -1, "ON | a:="},
      {R"({"c": {"command": "ON", "params": [{"name": "a"}], "z": []}})", -1, "ON | a:="},
      {R"({"c": {"command": "ON", "d": 1, "params": [{"name": "a"}]}})", -1, "ON | "},
      {R"({"c": {"a": 1, "command": "ON"}})", -1, " | "},
      {R"({"c": {"a": [], "command": "ON"}})", -1, " | "},
      {R"({"c": {"command": 5, "params": [{"name": "a"}]}})", -1, " | "},
      {R"({"c": {"command": ["ON"]}})", -1, " | "},
      {R"({"c": {"command": "ON", "params": {}}})", -1, "ON | "},
      {R"({"c": {"command": "ON", "params": null}})", -1, "ON | "},
      {R"({"c": {"command": "ON", "params": "text"}})", 0, "ON | "},
  };
  Check(rows);
}

// Senders depend on this: a list may contain a type once.
TEST_F(CmdMessageLoad, JsonParametersInheritFromThePreviousOne) {
  const LoadRow rows[] = {
      {R"({"c": {"params": [{"name": "a", "type": "t", "value": {"static": "1"}}, {"name": "b"}]}})", 0,
       " | a:t=1 b:t=1"},
      {R"({"c": {"params": [{"name": "a", "type": "t", "value": {"static": "1"}},
                            {"name": "b", "value": {"static": "2"}}, {"name": "c", "type": "u"}]}})",
       0, " | a:t=1 b:t=2 c:u=2"},
      {R"({"c": {"params": [{"name": "a", "value": {"variable": {"deviceid": 7, "variableid": 8}}},
                            {"name": "b", "value": {"variable": {"variableid": 9}}},
                            {"name": "c", "value": {"static": "3"}}]}})",
       0, " | a:=@7/8 b:=@7/9 c:=3@7/9"},
      // without a name: the previous name, which already exists
      {R"({"c": {"params": [{"name": "a", "value": {"static": "1"}}, {"type": "u", "value": {"static": "2"}},
                            {"name": "b"}]}})",
       0, " | a:=1 b:u=2"},
      {R"({"c": {"params": [{"value": {"static": "1"}}, {"value": {"static": "2"}}, {"name": "a"}]}})", 0,
       " | :=1 a:=2"},
      {R"({"c": {"params": [{}]}})", 0, " | :="},
      {R"({"c": {"params": [null, {"name": "a"}]}})", 0, " | := a:="},
      {R"({"c": {"params": [{"name": 5, "type": "t"}, {"name": "a"}]}})", 0, " | :t= a:t="},
  };
  Check(rows);
}

// Returns a command with a first parameter, and others that inherit the members in `first`.
std::string JsonInheriting(const std::string& first, std::size_t others) {
  std::string text = R"({"c": {"command": "ON", "params": [{"name": "a", )" + first + "}";
  for (std::size_t i = 0; i < others; ++i) text += R"(,{"name":"p)" + std::to_string(i) + "\"}";
  return text + "]}}";
}

std::string JsonType(std::size_t length) { return R"("type": ")" + std::string(length, 't') + '"'; }
std::string JsonValue(std::size_t length) {
  return R"("value": {"static": ")" + std::string(length, 'v') + "\"}";
}

// Returns a command whose parameters inherit the given number of bytes in total: values of `block` bytes, and
// a longer one at the end.
std::string JsonInheritingBytes(std::size_t bytes, std::size_t block) {
  const std::size_t others = bytes / block - 1;
  std::string text = JsonInheriting(JsonValue(block), others);
  text.insert(text.size() - 3,
              R"(, {"name": "rest", )" + JsonValue(bytes - others * block) + R"(}, {"name": "last"})");
  return text;
}

Json::Value ParseJson(const std::string& text) {
  Json::Value root;
  std::istringstream(text) >> root;
  return root;
}

constexpr std::size_t kibibyte = 1024;

TEST_F(CmdMessageLoad, ShortJsonMayInheritOneMebibyteAndNotOneByteMore) {
  for (const std::string& field :
       {JsonType(kibibyte), JsonValue(kibibyte), JsonType(kibibyte / 2) + ", " + JsonValue(kibibyte / 2)}) {
    SCOPED_TRACE(field.substr(0, 10));
    CCmdMessage most(manager, 0);
    EXPECT_EQ(most.Load(JsonInheriting(field, kibibyte)), 0);
    EXPECT_EQ(most.GetParamMap().size(), kibibyte + 1);

    CCmdMessage tooMuch(manager, 0);
    EXPECT_EQ(tooMuch.Load(JsonInheriting(field, kibibyte + 1)), -1);
    EXPECT_EQ(tooMuch.GetParamMap().size(), kibibyte + 1) << "what was read before stays";
    EXPECT_EQ(tooMuch.getRawCommand(), "ON");
  }
  EXPECT_EQ(message.Load(JsonInheritingBytes(kibibyte * kibibyte, kibibyte)), 0);
  CCmdMessage withOneByteMore(manager, 0);
  EXPECT_EQ(withOneByteMore.Load(JsonInheritingBytes(kibibyte * kibibyte + 1, kibibyte)), -1);
  EXPECT_EQ(withOneByteMore.GetParamMap().size() + 1, message.GetParamMap().size());
}

TEST_F(CmdMessageLoad, LongJsonMayInheritTenTimesItsLengthAndNotOneByteMore) {
  const auto load = [](CCmdMessage& command, std::size_t inherited) {
    std::string text = JsonInheritingBytes(inherited, 50'000);
    text.append(200'000 - text.size(), ' ');
    return command.Load(text);
  };
  EXPECT_EQ(load(message, 2'000'000), 0);
  CCmdMessage withOneByteMore(manager, 0);
  EXPECT_EQ(load(withOneByteMore, 2'000'001), -1);
  EXPECT_EQ(withOneByteMore.GetParamMap().size() + 1, message.GetParamMap().size());
}

TEST_F(CmdMessageLoad, OnlyWhatBecomesAParameterCountsAsInherited) {
  std::string again = JsonInheriting(JsonValue(kibibyte), kibibyte);
  again.insert(again.size() - 3, R"(, {"name": "a"}, {"name": "p7"}, {}, null)");
  EXPECT_EQ(message.Load(again), 0);

  // On a second load, every name but the last one exists. The last one is rejected although nothing was
  // inherited before it.
  const std::size_t count = message.GetParamMap().size();
  again.insert(again.size() - 3, R"(, {"name": "new"})");
  EXPECT_EQ(message.Load(again), 0);
  EXPECT_EQ(message.GetParamMap().size(), count + 1);
}

TEST_F(CmdMessageLoad, FieldsOfAnEntryItselfAreNotInherited) {
  std::string text = R"({"c": {"params": [{"name": "a")";
  for (std::size_t i = 0; i < 200; ++i) {
    text += R"(}, {"name": "p)" + std::to_string(i) + R"(", )" + JsonType(5'000) + ", " + JsonValue(5'000);
  }
  text += "}]}}";
  EXPECT_EQ(message.Load(text), 0);
  EXPECT_EQ(message.GetParamMap().size(), 201U);

  // Each entry contains one of the two members and inherits the other one.
  CCmdMessage halves(manager, 0);
  std::string half = JsonInheriting(JsonType(kibibyte) + ", " + JsonValue(kibibyte), 0);
  std::string entries;
  for (std::size_t i = 0; i < 2 * kibibyte; ++i)
    entries +=
        R"(, {"name": "q)" + std::to_string(i) + R"(", )" + (i % 2 == 0 ? JsonType(1) : JsonValue(1)) + "}";
  half.insert(half.size() - 3, entries);
  EXPECT_EQ(halves.Load(half), 0);
  EXPECT_EQ(halves.getParam("q2047"), "v");
}

TEST_F(CmdMessageLoad, ParsedJsonObjectMayInheritByItsLengthInTheText) {
  const std::string text = JsonInheriting(JsonValue(50'000), 30);
  Json::Value root = ParseJson(text);
  EXPECT_EQ(message.parseJsonObject(root["c"]), -1);
  EXPECT_EQ(message.GetParamMap().size(), 21U) << "1 MiB";

  // White space in the object counts towards the length, white space after it does not.
  std::string longer = text;
  longer.insert(longer.size() - 2, 150'007 - text.size(), ' ');
  CCmdMessage most(manager, 0);
  root = ParseJson(longer);
  EXPECT_EQ(most.parseJsonObject(root["c"]), 0);

  longer.erase(longer.size() - 3, 1).push_back(' ');
  CCmdMessage tooMuch(manager, 0);
  root = ParseJson(longer);
  EXPECT_EQ(tooMuch.parseJsonObject(root["c"]), -1);
  EXPECT_EQ(tooMuch.GetParamMap().size(), 30U);
}

TEST_F(CmdMessageLoad, JsonObjectBuiltInCodeMayInheritOneMebibyte) {
  Json::Value object(Json::objectValue);
  Json::Value& params = object["params"];
  params[0]["name"] = "a";
  params[0]["type"] = std::string(kibibyte, 't');
  for (Json::ArrayIndex i = 1; i <= kibibyte; ++i) params[i]["name"] = std::to_string(i);
  CCmdMessage most(manager, 0);
  EXPECT_EQ(most.parseJsonObject(object), 0);
  params.append(Json::objectValue)["name"] = "b";
  CCmdMessage tooMuch(manager, 0);
  EXPECT_EQ(tooMuch.parseJsonObject(object), -1);
  EXPECT_FALSE(tooMuch.hasParam("b"));
}

TEST_F(CmdMessageLoad, ReadsTheEntriesOfASparseJsonArrayByIndex) {
  Json::Value object(Json::objectValue);
  object["params"][2]["name"] = "b";
  object["params"][2]["type"] = "t";
  object["params"][7]["name"] = "a";
  ASSERT_EQ(object["params"].size(), 8U);
  EXPECT_EQ(message.parseJsonObject(object), 0);
  EXPECT_EQ(Describe(message), " | := a:t= b:t=") << "the first entry reads as null";

  CCmdMessage dense(manager, 0);
  object["params"][0]["name"] = "c";
  EXPECT_EQ(dense.parseJsonObject(object), 0);
  EXPECT_EQ(Describe(dense), " | a:t= b:t= c:=");
  EXPECT_FALSE(object["params"].isValidIndex(8)) << "nothing is added to the object";
  EXPECT_EQ(object["params"].size(), 8U);
}

TEST_F(CmdMessageLoad, ReportsTheLookupErrorForAnEntryThatIsNoObject) {
  for (const char* entry : {"5", "\"text\"", "true", "2.5", "[]", "[1]"}) {
    const std::string text = R"({"c": {"params": [)" + std::string(entry) + "]}}";
    Json::Value value = ParseJson(text);
    std::string expected;
    try {
      value["c"]["params"][0]["name"];
    } catch (const Json::Exception& error) {
      expected = error.what();
    }
    try {
      static_cast<void>(message.Load(text));
      ADD_FAILURE() << entry;
    } catch (const Json::Exception& error) {
      EXPECT_EQ(error.what(), expected) << entry;
      EXPECT_NE(expected, "");
    }
  }
}

TEST_F(CmdMessageLoad, PropagatesErrorsInJson) {
  const std::string begin = R"({"c": {"command": "ON", "params": [{"name": "a"}, )";
  const std::string end = R"(, {"name": "z"}]}})";
  for (const char* entry :
       {"5", "\"text\"", "true", "2.5", "[]", "[1]", R"({"name": "b", "value": {"static": []}})",
        R"({"name": "b", "value": {"variable": {"deviceid": -1}}})",
        R"({"name": "b", "value": {"variable": {"deviceid": "7"}}})"})
    CheckThrows<Json::Exception>(begin + entry + end, "ON | a:=");
}

// The wrapper is level 1, a parameter level 4, and the elements of an array are one level deeper than the
// array.
TEST_F(CmdMessageLoad, ReadsJsonOfOneThousandLevelsAndNotOneMore) {
  const auto withArrays = [](std::size_t count, const std::string& innermost) {
    return R"({"c": {"command": "ON", "params": [{"name": "a", "x": )" + std::string(count, '[') + innermost +
           std::string(count, ']') + "}]}}";
  };
  const LoadRow rows[] = {
      {withArrays(996, ""), 0, "ON | a:="},
      {withArrays(995, "1"), 0, "ON | a:="},
  };
  Check(rows);
  for (const std::string& deeper : {withArrays(997, ""), withArrays(996, "1"), withArrays(100'000, "")}) {
    CheckThrows<Json::Exception>(deeper, " | ");
    EXPECT_THROW(CCmdMessage::CreateFromString(deeper, manager), Json::Exception);
  }
}

// The limit that docs/security.md documents.
TEST_F(CmdMessageLoad, DeepestJsonNeedsAStackOfOneMebibyte) {
  const std::string arrays = std::string(996, '[') + std::string(996, ']');
  std::string objects;
  for (int i = 0; i < 995; ++i) objects += R"({"a":)";
  objects += "1" + std::string(995, '}');
  RunOnSmallStack(
      [&] {
        for (const std::string& nested : {arrays, objects}) {
          CCmdMessage deep(manager, 0);
          EXPECT_EQ(deep.Load(R"({"c": {"command": "ON", "params": [{"name": "a", "x": )" + nested + "}]}}"),
                    0);
          EXPECT_EQ(Describe(deep), "ON | a:=");
        }
        EXPECT_THROW(static_cast<void>(message.Load(std::string(100'000, '['))), Json::Exception);
      },
      std::size_t{1024} * 1024);
}

TEST_F(CmdMessageLoad, ReadsAParsedJsonObjectWithoutModifyingIt) {
  Json::Value object(Json::objectValue);
  object["command"] = "ON";
  object["params"][0]["type"] = "t";
  object["params"][1]["name"] = "a";
  const Json::Value before = object;
  EXPECT_EQ(message.parseJsonObject(object), 0);
  EXPECT_EQ(Describe(message), "ON | :t= a:t=");
  EXPECT_EQ(object, before);
}

// --- both formats ---

TEST_F(CmdMessageLoad, AddsToExistingParameters) {
  message.addParam("a", "own", "0");
  message.setOwnerId(5);
  EXPECT_EQ(
      message.Load("<c><command>XML</command><params>" + Param("a", "1") + Param("b", "1") + "</params></c>"),
      0);
  EXPECT_EQ(Describe(message), "XML | a:own=0 b:t=1");
  EXPECT_EQ(message.Load(R"({"c": {"params": [{"name": "b", "type": "u"}, {"name": "c", "type": "u"}]}})"),
            0);
  EXPECT_EQ(Describe(message), "XML | a:own=0 b:t=1 c:u=") << "a text without a command leaves the command";
  EXPECT_EQ(message.Load("<c>"), -1);
  EXPECT_EQ(message.Load("{"), -1);
  EXPECT_EQ(message.Load(""), -1);
  EXPECT_EQ(Describe(message), "XML | a:own=0 b:t=1 c:u=");
  EXPECT_EQ(message.getOwnerId(), 5U);
}

TEST_F(CmdMessageLoad, FailuresAreNotLogged) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  for (const char* text : {"", "ON", "<c>", "{", "[]", R"({"c": {"z": 1}})"})
    EXPECT_EQ(message.Load(text), -1);
  EXPECT_EQ(message.Load(JsonInheriting(JsonType(kibibyte), kibibyte + 1)), -1);
  EXPECT_THROW(static_cast<void>(message.Load(R"({"c": {"params": [1]}})")), Json::Exception);
  EXPECT_THROW(static_cast<void>(message.Load(
                   "<c><params><param><value><variable><deviceid>x</deviceid></variable></value></param>"
                   "</params></c>")),
               zq::ZqError);
  message.getParam("absent");
  message.toXml(true);
  EXPECT_THAT(log.messages(), testing::IsEmpty());
}

}  // namespace
