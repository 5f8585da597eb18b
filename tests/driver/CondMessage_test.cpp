#include <boost/smart_ptr/shared_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/LogCapture.h>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "DescribeParams.h"
#include "ParseXml.h"
#include "VirtualTable.h"

class IDriverX {};

namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using ParamMap = std::map<std::string, DriverParam>;
using MessagePtr = boost::shared_ptr<CCondMessage>;
using Text = const std::string&;

const std::vector<std::string> comparisons = {
    "EQUAL", "NOT_EQUAL", "LESS_THAN", "LESS_THAN_OR_EQUAL", "GREATER_THAN", "GREATER_THAN_OR_EQUAL"};

std::string Printed(const CCondMessage& message) {
  std::ostringstream stream;
  message.print(stream);
  return stream.str();
}

std::string ParamXml(const std::string& name, const std::string& value) {
  return "<param><name>" + name + "</name><value type=\"t\"><static>" + value + "</static></value></param>";
}

CCondMessage Conditional(const std::string& comparison, const ParamMap& params = {}) {
  return {"Level", comparison, params};
}

ParamMap Value(const std::string& value) { return {{"p", {"p", "t", value}}}; }

// Returns the results of the six comparisons as digits, in the order of `comparisons`.
template <typename Ask>
std::string Truths(const ParamMap& params, Ask ask) {
  std::string truths;
  for (const std::string& comparison : comparisons)
    truths += ask(Conditional(comparison, params)) ? '1' : '0';
  return truths;
}

// The expected result of Truths() for two values, by their order.
constexpr const char* below = "011100";
constexpr const char* same = "100101";
constexpr const char* above = "010011";
constexpr const char* equalUnordered = "100000";
constexpr const char* unequalUnordered = "010000";
constexpr const char* none = "000000";

// --- the interfaces ---

TEST(ICondMessageTable, HasItsOperationsInTheirOrder) {
  using I = ICondMessage;
  using FromNode = std::int32_t (I::*)(zq::XmlNode::Ptr&);
  using FromText = std::int32_t (I::*)(IDriverX*, const char*);
  using TestText = bool (I::*)(const char*, const char*) const;
  using TestInt = bool (I::*)(std::int32_t, const char*) const;
  using TestBool = bool (I::*)(bool) const;
  using TestLevel = bool (I::*)(const LevelMeasure::LevelPoint&, const char*) const;
  using TestInts = bool (I::*)(std::int32_t, std::int32_t) const;
  using TestDoubles = bool (I::*)(double, double) const;
  const std::pair<const char*, std::size_t> operations[] = {
      {"Initialize", VirtualTableSlot(&I::Initialize)},
      {"fromXml element", VirtualTableSlot(static_cast<FromNode>(&I::fromXml))},
      {"fromXml text", VirtualTableSlot(static_cast<FromText>(&I::fromXml))},
      {"Test text", VirtualTableSlot(static_cast<TestText>(&I::Test))},
      {"Test int", VirtualTableSlot(static_cast<TestInt>(&I::Test))},
      {"Test bool", VirtualTableSlot(static_cast<TestBool>(&I::Test))},
      {"Test level", VirtualTableSlot(static_cast<TestLevel>(&I::Test))},
      {"Test two ints", VirtualTableSlot(static_cast<TestInts>(&I::Test))},
      {"Test two doubles", VirtualTableSlot(static_cast<TestDoubles>(&I::Test))},
      {"getRawCondition", VirtualTableSlot(&I::getRawCondition)},
      {"getName", VirtualTableSlot(&I::getName)},
      {"getParam", VirtualTableSlot(&I::getParam)},
      {"hasParam", VirtualTableSlot(&I::hasParam)},
      {"getParamMap", VirtualTableSlot(&I::getParamMap)},
      {"addParam", VirtualTableSlot(&I::addParam)},
      {"addParams", VirtualTableSlot(&I::addParams)},
      {"toXml", VirtualTableSlot(&I::toXml)},
      {"getOwnerId", VirtualTableSlot(&I::getOwnerId)},
  };
  std::size_t slot = 2;  // behind the destructor
  for (const auto& [name, found] : operations) EXPECT_EQ(found, slot++) << name;
}

TEST(ICondMessageTable, HasNoFurtherOperations) {
  struct AfterInterface : ICondMessage {
    virtual void Next() = 0;
  };
  struct AfterMessage : CCondMessage {
    virtual void Next() = 0;
  };
  EXPECT_EQ(VirtualTableSlot(&AfterInterface::Next), 20U);
  EXPECT_EQ(VirtualTableSlot(&AfterMessage::Next), 20U);
}

TEST(LevelPointTable, HasItsOperatorsInTheirOrder) {
  using LevelMeasure::LevelPoint;
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator==), 0U);
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator!=), 1U);
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator<), 2U);
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator>), 3U);
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator<=), 4U);
  EXPECT_EQ(VirtualTableSlot(&LevelPoint::operator>=), 5U);
}

// --- construction ---

TEST(CondMessage, ConstructorStoresItsArguments) {
  const CCondMessage empty;
  EXPECT_EQ(Describe(empty), "  | ");
  EXPECT_EQ(empty.getOwnerId(), 0U);

  const MessagePtr owned = CCondMessage::Create(4294967295U);
  EXPECT_EQ(Describe(*owned), "  | ");
  EXPECT_EQ(owned->getOwnerId(), 4294967295U);

  const MessagePtr whole = CCondMessage::Create("Level", "EQUAL", {{"key", {"name", "t", 7, 8}}});
  EXPECT_EQ(Describe(*whole), "Level EQUAL | key->name:t=@7/8");
  EXPECT_EQ(whole->getOwnerId(), 0U);
}

TEST(CondMessage, IsCreatedFromText) {
  const MessagePtr message = CCondMessage::Create(
      "<deviceconditional><name>Level</name><conditional>GREATER_THAN</conditional><params>" +
      ParamXml("LEVEL", "50") + "</params></deviceconditional>");
  EXPECT_EQ(Describe(*message), "Level GREATER_THAN | LEVEL:t=50");
  EXPECT_EQ(message->getOwnerId(), 0U);
  EXPECT_EQ(Describe(*CCondMessage::Create("NOT_EQUAL")), " NOT_EQUAL | ");
  EXPECT_EQ(Describe(*CCondMessage::Create("")), "  | ");
}

TEST(CondMessage, DestroyingThroughTheInterfaceIsComplete) {
  const ICondMessage* const message = new CCondMessage(std::string(1000, 'x'), "EQUAL", Value("1"));
  EXPECT_EQ(message->getName().size(), 1000U);
  delete message;
}

// --- reading ---

TEST(CondMessage, ReadsARootAndParametersOfAnyNameInAnyOrder) {
  CCondMessage message(7);
  zq::XmlNode::Ptr root =
      ParseXml("<any a='1'> <params><p1><name>b</name></p1>" + ParamXml("a", "1") +
               "</params><other><name>NO</name></other><Name>NO</Name><conditional>a &amp; b</conditional>"
               "<name><![CDATA[<c>]]></name></any>");
  EXPECT_EQ(message.fromXml(root), 0);
  EXPECT_EQ(Describe(message), "<c> a & b | a:t=1 b:=");
  EXPECT_EQ(message.getOwnerId(), 7U);
}

TEST(CondMessage, KeepsTheLastElementAndTheFirstParameterOfAName) {
  CCondMessage message;
  message.addParam("c", "u", "0");
  EXPECT_EQ(message.fromXml("<m><name>A</name><conditional>EQUAL</conditional><params>" + ParamXml("a", "1") +
                            ParamXml("a", "2") + ParamXml("c", "3") +
                            "</params><name>B</name><conditional>LESS_THAN</conditional><params>" +
                            ParamXml("a", "4") + ParamXml("d", "5") + "</params></m>"),
            0);
  EXPECT_EQ(Describe(message), "B LESS_THAN | a:t=1 c:u=0 d:t=5");
}

TEST(CondMessage, LoadKeepsFieldsThatTheDocumentLacks) {
  CCondMessage message = Conditional("EQUAL", Value("1"));
  EXPECT_EQ(message.fromXml("<m/>"s), 0);
  EXPECT_EQ(Describe(message), "Level EQUAL | p:t=1");
}

TEST(CondMessage, InitializingEmptiesTheParametersFirst) {
  CCondMessage message = Conditional("EQUAL", Value("1"));
  EXPECT_EQ(message.Initialize("<m><params>" + ParamXml("p", "2") + "</params></m>"), 0);
  EXPECT_EQ(Describe(message), "Level EQUAL | p:t=2");
  EXPECT_EQ(message.Initialize("<m/>"), 0);
  EXPECT_EQ(Describe(message), "Level EQUAL | ");
}

TEST(CondMessage, InitializeAcceptsItsOwnValue) {
  CCondMessage message =
      Conditional("EQUAL", Value("<m><name>a name, too long for a short string</name></m>"));
  message.Initialize(message.getParamMap().at("p").value);
  EXPECT_EQ(Describe(message), "a name, too long for a short string EQUAL | ");
}

TEST(CondMessage, MalformedTextFailsInThreeWays) {
  for (const std::string text : {"NOT_EQUAL", "", " ", "<m>", "<m/><m/>", "{\"a\": 1}", "\xFF\xFE"}) {
    CCondMessage initialized = Conditional("EQUAL", Value("1"));
    EXPECT_EQ(initialized.Initialize(text), 0);
    EXPECT_EQ(Describe(initialized), "Level " + text + " | ");

    CCondMessage read = Conditional("EQUAL", Value("1"));
    EXPECT_EQ(read.fromXml(text), -1);
    EXPECT_EQ(Describe(read), "Level " + text + " | p:t=1");

    CCondMessage readForDriver = Conditional("EQUAL", Value("1"));
    EXPECT_EQ(readForDriver.fromXml(nullptr, text.c_str()), -1);
    EXPECT_EQ(Describe(readForDriver), "Level EQUAL | p:t=1");
  }
}

TEST(CondMessage, ReadsTextForADriverThatItDoesNotUse) {
  IDriverX driver;
  CCondMessage message;
  EXPECT_EQ(message.fromXml(&driver, "<m><conditional>EQUAL</conditional></m>"), 0);
  EXPECT_EQ(Describe(message), " EQUAL | ");
}

TEST(CondMessage, ReadsEveryTextThroughTheVirtualElementReader) {
  struct Message : CCondMessage {
    std::vector<std::string> roots;
    using CCondMessage::fromXml;
    std::int32_t fromXml(zq::XmlNode::Ptr& node) override {
      roots.push_back(node->GetName());
      return 17;
    }
  } message;
  EXPECT_EQ(message.fromXml("<a/>"s), 17);
  EXPECT_EQ(message.fromXml(nullptr, "<b/>"), 17);
  EXPECT_EQ(message.Initialize("<c/>"), 0);
  EXPECT_THAT(message.roots, ElementsAre("a", "b", "c"));
}

TEST(CondMessage, KeepsWhatWasReadBeforeAMalformedId) {
  CCondMessage message;
  EXPECT_THROW(static_cast<void>(message.fromXml(
                   "<m><name>A</name><params>" + ParamXml("a", "1") +
                   "<param><name>b</name><value><variable><deviceid>x</deviceid></variable></value>"
                   "</param></params><conditional>EQUAL</conditional></m>")),
               zq::ZqError);
  EXPECT_EQ(Describe(message), "A  | a:t=1");
}

// --- parameters ---

TEST(CondMessage, KeepsTheFirstParameterOfAName) {
  CCondMessage message;
  message.addParam("a", "t", "1");
  message.addParam("a", "u", "2");
  message.addParams({{"a", {"a", "u", "3"}}, {"A", {"other", "u", 7, 8}}});
  EXPECT_EQ(Describe(message.getParamMap()), "A->other:u=@7/8 a:t=1");
}

TEST(CondMessage, AbsentParameterReadsAsZero) {
  CCondMessage message;
  message.addParam("a", "t", "");
  message.addParam("b", "t",
                   "1\0"
                   "2"s);
  EXPECT_EQ(message.getParam("a"), "");
  EXPECT_EQ(message.getParam("b"),
            "1\0"
            "2"s);
  EXPECT_EQ(message.getParam("A"), "0");
  EXPECT_TRUE(message.hasParam("a"));
  EXPECT_FALSE(message.hasParam("A"));
}

// --- writing ---

TEST(CondMessage, WritesOneLineOfXml) {
  CCondMessage message;
  EXPECT_EQ(
      message.toXml(),
      "<deviceconditional><name></name><conditional></conditional><params></params></deviceconditional>");
  message = CCondMessage("Level", "LESS_THAN", {{"b", {"b", "t", "2"}}, {"a", {"a", "t", "<1>"}}});
  const std::string xml =
      "<deviceconditional><name>Level</name><conditional>LESS_THAN</conditional><params>" +
      ParamXml("a", "&lt;1&gt;") + ParamXml("b", "2") + "</params></deviceconditional>";
  EXPECT_EQ(message.toXml(), xml);
  EXPECT_EQ(CCondMessage::Create(xml)->toXml(), xml);
}

TEST(CondMessage, WritesNameAndComparisonVerbatim) {
  EXPECT_EQ(CCondMessage("a & b", "1 < 2", {}).toXml(),
            "<deviceconditional><name>a & b</name><conditional>1 < 2</conditional><params></params>"
            "</deviceconditional>");
}

// Only commands mask secrets.
TEST(CondMessage, DoesNotMaskSecretsInAnyForm) {
  const CCondMessage message("Code", "EQUAL", {{"PIN", {"PIN", "t", "4711"}}});
  for (const std::string& form : {Printed(message), message.toXml()})
    EXPECT_THAT(form, testing::HasSubstr("4711"));
}

TEST(CondMessage, PrintsEverythingInOneLine) {
  EXPECT_EQ(Printed(CCondMessage()), "{, \"name_\": \"\", \"condition_\": \"\", \"params_\": []}");
  EXPECT_EQ(Printed(CCondMessage("a \"b\"", "EQUAL", Value("v"))),
            "{, \"name_\": \"a \"b\"\", \"condition_\": \"EQUAL\", "
            "\"params_\": [{\"first\": \"p\", \"second\": {\"type\": \"t\", \"bVar\": false, "
            "\"value\": \"v\", \"name\": \"p\", \"var\": {\"idDevice\": 0, \"idVariable\": 0}}}]}");
  std::ostringstream stream;
  EXPECT_EQ(&CCondMessage().print(stream), &stream);
}

// --- testing ---

TEST(CondMessage, ComparesWholeNumbers) {
  constexpr std::int32_t min = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t max = std::numeric_limits<std::int32_t>::max();
  const struct {
    std::int32_t left;
    std::int32_t right;
    std::string truths;
  } cases[] = {{5, 5, same}, {4, 5, below},     {6, 5, above},     {-1, 0, below},
               {0, 0, same}, {min, max, below}, {max, min, above}, {min, min, same}};
  for (const auto& [left, right, truths] : cases) {
    EXPECT_EQ(Truths({}, [l = left, r = right](const ICondMessage& c) { return c.Test(l, r); }), truths)
        << left << ' ' << right;
  }
}

TEST(CondMessage, ComparesFloatingPointNumbersExactly) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    double left;
    double right;
    std::string truths;
  } cases[] = {{0.5, 0.5, same},
               {0.1 + 0.2, 0.3, above},
               {0.25, 0.5, below},
               {-0.0, 0.0, same},
               {-infinity, infinity, below},
               {infinity, infinity, same},
               {nan, 0.5, unequalUnordered},
               {0.5, nan, unequalUnordered},
               {nan, nan, unequalUnordered}};
  for (const auto& [left, right, truths] : cases) {
    EXPECT_EQ(Truths({}, [l = left, r = right](const ICondMessage& c) { return c.Test(l, r); }), truths)
        << left << ' ' << right;
  }
}

TEST(CondMessage, ComparesABoolWithTrue) {
  EXPECT_EQ(Truths({}, [](const ICondMessage& c) { return c.Test(true); }), equalUnordered);
  EXPECT_EQ(Truths({}, [](const ICondMessage& c) { return c.Test(false); }), unequalUnordered);
  EXPECT_EQ(Truths(Value("0"), [](const ICondMessage& c) { return c.Test(true); }), equalUnordered)
      << "parameters do not matter";
}

TEST(CondMessage, ComparesStringsByteByByte) {
  const struct {
    std::string param;
    const char* value;
    std::string truths;
  } cases[] = {{"ON", "ON", equalUnordered},
               {"ON", "on", unequalUnordered},
               {"ON", "ON ", unequalUnordered},
               {"ON", "O", unequalUnordered},
               {"", "", equalUnordered},
               {"", "0", unequalUnordered},
               {"5", "5.0", unequalUnordered},
               {"ON\0"s, "ON", unequalUnordered},
               {"\xC3\xA4", "\xC3\xA4", equalUnordered}};
  for (const auto& [param, value, truths] : cases) {
    EXPECT_EQ(Truths(Value(param), [v = value](const ICondMessage& c) { return c.Test(v, "p"); }), truths)
        << param << ' ' << value;
  }
}

TEST(CondMessage, ComparesANumberWithTheParametersNumber) {
  const struct {
    std::string param;
    std::int32_t value;
    std::string truths;
  } cases[] = {{"50", 50, same},
               {"50", 40, below},
               {"50", 60, above},
               {"50.7", 50, same},
               {"12abc", 12, same},
               {" \t-5", -5, same},
               {"abc", 0, same},
               {"", 0, same},
               {"0x10", 0, same},
               {"7\0"
                "8"s,
                7, same},
               {"4294967296", 2147483647, same},
               {"-99999999999999999999", std::numeric_limits<std::int32_t>::min(), same}};
  for (const auto& [param, value, truths] : cases) {
    EXPECT_EQ(Truths(Value(param), [v = value](const ICondMessage& c) { return c.Test(v, "p"); }), truths)
        << param << ' ' << value;
  }
}

// A level that records which comparison was called, and with which argument.
class RecordingLevel : public LevelMeasure::LevelPoint {
 public:
  mutable std::string asked;
  bool answer = true;

  bool operator==(std::int32_t value) const override { return Record("==", value); }
  bool operator!=(std::int32_t value) const override { return Record("!=", value); }
  bool operator<(std::int32_t value) const override { return Record("<", value); }
  bool operator>(std::int32_t value) const override { return Record(">", value); }
  bool operator<=(std::int32_t value) const override { return Record("<=", value); }
  bool operator>=(std::int32_t value) const override { return Record(">=", value); }

 private:
  bool Record(const char* comparison, std::int32_t value) const {
    asked += comparison + std::to_string(value) + ' ';
    return answer;
  }
};

TEST(CondMessage, CallsTheComparisonOfTheLevel) {
  RecordingLevel level;
  const auto ask = [&level](const ICondMessage& c) { return c.Test(level, "p"); };
  EXPECT_EQ(Truths(Value("50.7"), ask), "111111");
  EXPECT_EQ(level.asked, "==50 !=50 <50 <=50 >50 >=50 ");
  level.answer = false;
  EXPECT_EQ(Truths(Value("50"), ask), none);
  level.asked.clear();
  EXPECT_FALSE(Conditional("equal", Value("50")).Test(level, "p"));
  EXPECT_FALSE(Conditional("EQUAL", Value("50")).Test(level, "q"));
  EXPECT_EQ(level.asked, "");
}

TEST(CondMessage, UnknownComparisonsAreAlwaysFalse) {
  RecordingLevel level;
  const std::vector<std::string> texts = {"",
                                          "equal",
                                          " EQUAL",
                                          "EQUAL ",
                                          "EQUALS",
                                          "EQUA",
                                          "==",
                                          "NOT EQUAL",
                                          "LESS_THAN_OR",
                                          "GREATER",
                                          "EQUAL\0"s,
                                          "LESS_THAN_OR_EQUAL_TO",
                                          "NOT_EQUAL\n",
                                          "1"};
  for (const std::string& text : texts) {
    const CCondMessage conditional = Conditional(text, Value("5"));
    EXPECT_FALSE(conditional.Test(true)) << text;
    EXPECT_FALSE(conditional.Test(false)) << text;
    for (const std::int32_t value : {4, 5, 6}) {
      EXPECT_FALSE(conditional.Test(value, 5)) << text;
      EXPECT_FALSE(conditional.Test(value, "p")) << text;
      EXPECT_FALSE(conditional.Test(static_cast<double>(value), 5.0)) << text;
      EXPECT_FALSE(conditional.Test(std::to_string(value).c_str(), "p")) << text;
    }
    EXPECT_FALSE(conditional.Test(level, "p")) << text;
  }
}

TEST(CondMessage, NullNameSelectsTheFirstParameter) {
  RecordingLevel level;
  const ParamMap params = {{"B", {"B", "t", "2"}}, {"a", {"a", "t", "1"}}, {"b", {"b", "t", "3"}}};
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test(2, nullptr); }), same);
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test("2", nullptr); }), equalUnordered);
  Truths(params, [&level](const ICondMessage& c) { return c.Test(level, nullptr); });
  EXPECT_EQ(level.asked, "==2 !=2 <2 <=2 >2 >=2 ");
}

TEST(CondMessage, ParametersAreFoundByTheKeysOfAMap) {
  RecordingLevel level;
  const ParamMap params = {{"a", {"z", "t", "1"}}, {"b", {"a", "t", "2"}}};
  const CCondMessage equal = Conditional("EQUAL", params);
  EXPECT_EQ(equal.getParam("a"), "1");
  EXPECT_EQ(equal.getParam("z"), "0");
  EXPECT_TRUE(equal.hasParam("b"));
  EXPECT_FALSE(equal.hasParam("z"));
  for (const char* const name : {"a", static_cast<const char*>(nullptr)}) {
    EXPECT_TRUE(equal.Test(1, name));
    EXPECT_TRUE(equal.Test("1", name));
    equal.Test(level, name);
  }
  EXPECT_EQ(level.asked, "==1 ==1 ");
  EXPECT_FALSE(equal.Test(1, "z"));
  EXPECT_FALSE(equal.Test("1", "z"));
  EXPECT_FALSE(equal.Test(level, "z"));
  EXPECT_TRUE(equal.Test(2, "b"));
}

TEST(CondMessage, VariableParameterReadsAsTheTextOfItsRecord) {
  DriverParam variable("p", "t", 7, 8);
  variable.value = "5";
  EXPECT_EQ(Conditional("EQUAL", {{"p", variable}}).getParam("p"), "5");
  EXPECT_EQ(Conditional("EQUAL", {{"p", {"p", "t", 7, 8}}}).getParam("p"), "");
}

TEST(CondMessage, DoesNotLog) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  CCondMessage message;
  EXPECT_EQ(message.Initialize("no document"), 0);
  EXPECT_EQ(message.fromXml(static_cast<IDriverX*>(nullptr), "no document"), -1);
  EXPECT_THROW(
      static_cast<void>(message.fromXml("<c><params><p><value><variable><deviceid>x</deviceid></variable>"
                                        "</value></p></params></c>")),
      zq::ZqError);
  message.getParam("absent");
  message.Test(1, "absent");
  message.toXml();
  EXPECT_THAT(log.messages(), testing::IsEmpty());
}

TEST(CondMessage, WithoutTheParameterEveryTestIsFalse) {
  RecordingLevel level;
  for (const char* const name : {static_cast<const char*>(nullptr), "p", ""}) {
    EXPECT_EQ(Truths({}, [name](const ICondMessage& c) { return c.Test(0, name); }), none);
    EXPECT_EQ(Truths({}, [name](const ICondMessage& c) { return c.Test("", name); }), none);
    EXPECT_EQ(Truths({}, [&level, name](const ICondMessage& c) { return c.Test(level, name); }), none);
  }
  EXPECT_EQ(Truths(Value("0"), [](const ICondMessage& c) { return c.Test(1, "P"); }), none)
      << "names have case";
  EXPECT_EQ(level.asked, "");
}

TEST(CondMessage, VariableParameterComparesAsEmptyTextAndZero) {
  RecordingLevel level;
  DriverParam variable("p", "t", 7, 8);
  variable.value = "5";
  const ParamMap params = {{"p", variable}};
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test(0, "p"); }), same);
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test(5, nullptr); }), above);
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test("", "p"); }), equalUnordered);
  EXPECT_EQ(Truths(params, [](const ICondMessage& c) { return c.Test("5", "p"); }), unequalUnordered);
  EXPECT_TRUE(Conditional("EQUAL", params).Test(level, "p"));
  EXPECT_EQ(level.asked, "==0 ");
}

// The table of calls in the documentation of the interface, and the calls that the compiler reports.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
TEST(CondMessage, LiteralsSelectTheDocumentedOverloads) {
  const CCondMessage equal =
      Conditional("EQUAL", {{"LEVEL", {"LEVEL", "t", "0"}}, {"STATE", {"STATE", "t", "ON"}}});
  EXPECT_TRUE(equal.Test(0, nullptr)) << "a number, not a null text";
  EXPECT_TRUE(equal.Test(0, "LEVEL"));
  EXPECT_TRUE(equal.Test("0", nullptr));
  EXPECT_TRUE(equal.Test("ON", "STATE"));
  EXPECT_TRUE(equal.Test(false, nullptr)) << "the number 0";
  EXPECT_FALSE(equal.Test(true, nullptr)) << "the number 1";
  const char* const text = "OFF";
  EXPECT_TRUE(equal.Test(text)) << "a pointer is true";
  EXPECT_TRUE(equal.Test(40)) << "a number other than 0 is true";
  EXPECT_FALSE(equal.Test(40, 0)) << "two numbers";
  EXPECT_TRUE(equal.Test(40.0, 40.0));
}
#pragma GCC diagnostic pop

}  // namespace
