#include <boost/smart_ptr/shared_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/LogCapture.h>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <locale>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "DescribeParams.h"
#include "GlobalNumbers.h"
#include "ParseXml.h"
#include "VirtualTable.h"

class ZqTypes::BoundCallBase {};

namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;
using ParamMap = std::map<std::string, DriverParam>;
using MessagePtr = boost::shared_ptr<CBindMessage>;
using Text = const std::string&;

constexpr std::int32_t unknownKind = 3;

std::string Printed(const CBindMessage& message) {
  std::ostringstream stream;
  message.print(stream);
  return stream.str();
}

// The two flags that only the printed form contains.
bool IsDataTrue(const CBindMessage& message) {
  return Printed(message).find("\"DataBool\": true") != std::string::npos;
}
bool AnswersQuery(const CBindMessage& message) {
  return Printed(message).find("\"IsQueryNotify\": true") != std::string::npos;
}

template <typename Value>
std::string Reading(bool (CBindMessage::*read)(const std::string&, Value&) const, const CBindMessage& message,
                    const std::string& name) {
  Value value{};
  if (!(message.*read)(name, value)) return "none";
  std::ostringstream text;
  text << value;
  return text.str();
}

// Returns the results of the typed readers for a parameter: bool, int, long, both unsigned, double.
std::string Readings(const CBindMessage& message, const std::string& name) {
  return Reading(&CBindMessage::getParamBool, message, name) + ' ' +
         Reading(&CBindMessage::getParamInt, message, name) + ' ' +
         Reading(&CBindMessage::getParamLong, message, name) + ' ' +
         Reading(&CBindMessage::getParamUInt, message, name) + ' ' +
         Reading(&CBindMessage::getParamULong, message, name) + ' ' +
         Reading(&CBindMessage::getParamDouble, message, name);
}

void Read(CBindMessage& message, const std::string& xml) {
  zq::XmlNode::Ptr root = ParseXml(xml);
  EXPECT_EQ(message.fromXml(root), 0);
}

CBindMessage Read(const std::string& xml) {
  CBindMessage message;
  Read(message, xml);
  return message;
}

std::string ParamXml(const std::string& name, const std::string& value) {
  return "<param><name>" + name + "</name><value type=\"t\"><static>" + value + "</static></value></param>";
}

// --- the interface ---

TEST(IBindMessageTable, HasItsOperationsInTheirOrder) {
  using I = IBindMessage;
  using InitName = std::int32_t (I::*)(std::int32_t, Text);
  using InitText = std::int32_t (I::*)(std::int32_t, Text, Text);
  using InitInt = std::int32_t (I::*)(std::int32_t, Text, std::int32_t);
  using InitCommand = std::int32_t (I::*)(const ICmdMessage&);
  using AddText = void (I::*)(Text, Text, Text);
  using AddInt = void (I::*)(Text, Text, std::int32_t);
  const std::pair<const char*, std::size_t> operations[] = {
      {"Initialize name", VirtualTableSlot(static_cast<InitName>(&I::Initialize))},
      {"Initialize text", VirtualTableSlot(static_cast<InitText>(&I::Initialize))},
      {"Initialize int", VirtualTableSlot(static_cast<InitInt>(&I::Initialize))},
      {"Initialize command", VirtualTableSlot(static_cast<InitCommand>(&I::Initialize))},
      {"AddPath", VirtualTableSlot(&I::AddPath)},
      {"fromXml", VirtualTableSlot(&I::fromXml)},
      {"toXml", VirtualTableSlot(&I::toXml)},
      {"toJson", VirtualTableSlot(&I::toJson)},
      {"getPath", VirtualTableSlot(&I::getPath)},
      {"getData", VirtualTableSlot(&I::getData)},
      {"getDataAsInteger", VirtualTableSlot(&I::getDataAsInteger)},
      {"getCommand", VirtualTableSlot(&I::getCommand)},
      {"getNotify", VirtualTableSlot(&I::getNotify)},
      {"addParam text", VirtualTableSlot(static_cast<AddText>(&I::addParam))},
      {"addParam int", VirtualTableSlot(static_cast<AddInt>(&I::addParam))},
      {"addParamDouble", VirtualTableSlot(&I::addParamDouble)},
      {"addParams", VirtualTableSlot(&I::addParams)},
      {"hasParam", VirtualTableSlot(&I::hasParam)},
      {"getParam", VirtualTableSlot(&I::getParam)},
      {"getParamRequired", VirtualTableSlot(&I::getParamRequired)},
      {"getParamBool", VirtualTableSlot(&I::getParamBool)},
      {"getParamInt", VirtualTableSlot(&I::getParamInt)},
      {"getParamUInt", VirtualTableSlot(&I::getParamUInt)},
      {"getParamLong", VirtualTableSlot(&I::getParamLong)},
      {"getParamULong", VirtualTableSlot(&I::getParamULong)},
      {"getParamDouble", VirtualTableSlot(&I::getParamDouble)},
      {"hasData", VirtualTableSlot(&I::hasData)},
      {"GetParamMap", VirtualTableSlot(&I::GetParamMap)},
      {"getDataPtr", VirtualTableSlot(&I::getDataPtr)},
      {"setDataPtr", VirtualTableSlot(&I::setDataPtr)},
  };
  std::size_t slot = 2;  // behind the destructor
  for (const auto& [name, found] : operations) EXPECT_EQ(found, slot++) << name;
}

TEST(IBindMessageTable, HasNoFurtherOperations) {
  struct AfterInterface : IBindMessage {
    virtual void Next() = 0;
  };
  struct AfterMessage : CBindMessage {
    virtual void Next() = 0;
  };
  EXPECT_EQ(VirtualTableSlot(&AfterInterface::Next), 32U);
  EXPECT_EQ(VirtualTableSlot(&AfterMessage::Next), 32U);
}

// --- construction and initialisation ---

TEST(BindMessage, IsEmptyAtFirst) {
  const MessagePtr message = CBindMessage::Create();
  EXPECT_EQ(Describe(*message), "/ =  (0) @  | ");
  EXPECT_FALSE(message->isCommand());
  EXPECT_FALSE(message->isNotify());
  EXPECT_FALSE(message->hasData());
  EXPECT_FALSE(message->hasPath());
  EXPECT_FALSE(message->hasParams());
  EXPECT_EQ(message->getDataPtr(), nullptr);
}

TEST(BindMessage, ConstructorInitializesLikeInitialize) {
  tavrin_testing::FakeVariables manager;
  const CCmdMessage command("ON", {{"a", {"a", "t", "1"}}}, manager);
  const struct {
    MessagePtr message;
    std::string contents;
  } cases[] = {
      {CBindMessage::Create(IBindMessage::COMMAND, "ON"), "ON/ =  (0) @  | "},
      {CBindMessage::Create(1, "ON", "7"), "ON/ = 7 (7) @  | "},
      {CBindMessage::Create(1, "ON", -42), "ON/ = -42 (-42) @  | "},
      {CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL"), "/LEVEL =  (0) @  | "},
      {CBindMessage::Create(2, "LEVEL", "75"), "/LEVEL = 75 (75) @  | "},
      {CBindMessage::Create(2, "LEVEL", 75), "/LEVEL = 75 (75) @  | "},
      {CBindMessage::Create(2, "LEVEL", std::numeric_limits<std::int32_t>::min()),
       "/LEVEL = -2147483648 (-2147483648) @  | "},
      {CBindMessage::Create(unknownKind, "LEVEL", "75"), "/ =  (0) @  | "},
      {CBindMessage::Create(0, "LEVEL"), "/ =  (0) @  | "},
      {CBindMessage::Create(-1, "LEVEL", 75), "/ =  (0) @  | "},
      {CBindMessage::Create(command), "ON/ =  (0) @  | a:t=1"},
  };
  for (const auto& [message, contents] : cases) EXPECT_EQ(Describe(*message), contents);
}

TEST(BindMessage, DistinguishesCommandsFromNotifications) {
  const MessagePtr message = CBindMessage::Create(IBindMessage::COMMAND, "ON");
  EXPECT_TRUE(message->isCommand());
  EXPECT_FALSE(message->isNotify());
  message->Initialize(IBindMessage::NOTIFY, "LEVEL");
  EXPECT_TRUE(message->isCommand()) << "the name of one kind leaves that of the other alone";
  EXPECT_TRUE(message->isNotify());
  message->Initialize(IBindMessage::COMMAND, "");
  EXPECT_FALSE(message->isCommand());
  EXPECT_TRUE(message->isNotify());
}

TEST(BindMessage, InitializeReplacesTheDataAndKeepsTheRest) {
  ZqTypes::BoundCallBase call;
  CBindMessage message;
  message.Initialize(IBindMessage::COMMAND, "ON", "7");
  message.AddPath("path");
  message.addParam("a", "t", "1");
  message.setDataPtr(&call);
  EXPECT_EQ(message.Initialize(IBindMessage::NOTIFY, "LEVEL"), 0);
  EXPECT_EQ(Describe(message), "ON/LEVEL =  (0) @ path | a:t=1");
  EXPECT_EQ(message.getDataPtr(), &call);
}

TEST(BindMessage, UnknownKindChangesOnlyTheQueryFlag) {
  const std::array<std::int32_t, 4> kinds = {unknownKind, 0, -1, 257};
  for (const std::int32_t kind : kinds) {
    CBindMessage message =
        Read("<m><command>ON</command><notify>LEVEL</notify><query/><data>7</data><path>p</path></m>");
    ASSERT_TRUE(AnswersQuery(message));
    EXPECT_EQ(message.Initialize(kind, "OTHER", "5"), 0);
    EXPECT_EQ(Describe(message), "ON/LEVEL = 7 (7) @ p | ") << kind;
    EXPECT_FALSE(AnswersQuery(message));
  }
}

TEST(BindMessage, EveryInitializeClearsTheQueryFlag) {
  tavrin_testing::FakeVariables manager;
  const CCmdMessage command("ON", manager);
  CBindMessage message;
  const auto expectTakenAway = [&message](auto initialize) {
    Read(message, "<m><notify>LEVEL</notify><query/></m>");
    ASSERT_TRUE(AnswersQuery(message));
    EXPECT_EQ(initialize(), 0);
    EXPECT_FALSE(AnswersQuery(message));
  };
  expectTakenAway([&] { return message.Initialize(2, "LEVEL"); });
  expectTakenAway([&] { return message.Initialize(2, "LEVEL", "5"); });
  expectTakenAway([&] { return message.Initialize(2, "LEVEL", 5); });
  expectTakenAway([&] { return message.Initialize(command); });
  expectTakenAway([&] {
    Read(message, "<m/>");
    return 0;
  });
}

TEST(BindMessage, InitializeAcceptsItsOwnStrings) {
  CBindMessage message;
  message.Initialize(IBindMessage::NOTIFY, "75");
  message.addParam("a", "t", "value of a parameter, too long for a short string");
  message.Initialize(IBindMessage::NOTIFY, message.GetParamMap().at("a").value, message.getNotify());
  EXPECT_EQ(message.getNotify(), "value of a parameter, too long for a short string");
  EXPECT_EQ(message.getData(), "75");
  message.Initialize(IBindMessage::COMMAND, message.getNotify(), message.getCommand());
  EXPECT_EQ(message.getCommand(), message.getNotify());
}

TEST(BindMessage, ReadsItsDataAsNumberAndBool) {
  const struct {
    std::string data;
    std::int32_t number;
  } cases[] = {
      {"", 0},
      {"0", 0},
      {"-0", 0},
      {"75", 75},
      {"true", 0},
      {"12abc", 12},
      {"0x10", 0},
      {" \t\r\n\v\f-5", -5},
      {"+5", 5},
      {"- 5", 0},
      {"1.9", 1},
      {"7\0"
       "8"s,
       7},
      {"2147483647", 2147483647},
      {"2147483648", 2147483647},
      {"4294967296", 2147483647},
      {"-2147483648", std::numeric_limits<std::int32_t>::min()},
      {"-2147483649", std::numeric_limits<std::int32_t>::min()},
      {"99999999999999999999", 2147483647},
      {"-99999999999999999999", std::numeric_limits<std::int32_t>::min()},
  };
  for (const auto& [data, number] : cases) {
    const MessagePtr message = CBindMessage::Create(IBindMessage::NOTIFY, "LEVEL", data);
    EXPECT_EQ(message->getData(), data);
    EXPECT_EQ(message->hasData(), !data.empty());
    EXPECT_EQ(message->getDataAsInteger(), number) << data;
    EXPECT_EQ(IsDataTrue(*message), number != 0) << data;
  }
}

TEST(BindMessage, ReadsItsDataAgainAfterAChange) {
  CBindMessage message = Read("<m><notify>LEVEL</notify><data>75</data></m>");
  EXPECT_TRUE(IsDataTrue(message));
  Read(message, "<m><data>off</data></m>");
  EXPECT_EQ(message.getDataAsInteger(), 0);
  EXPECT_FALSE(IsDataTrue(message));
  message.Initialize(IBindMessage::NOTIFY, "LEVEL", -1);
  EXPECT_TRUE(IsDataTrue(message));
  message.Initialize(IBindMessage::NOTIFY, "LEVEL");
  EXPECT_FALSE(IsDataTrue(message));
}

TEST(BindMessage, CopiesNameAndParametersFromAnyCommandMessage) {
  // Behaves differently from CBindMessage in everything that a test can observe.
  struct Command : CCmdMessage {
    using CCmdMessage::CCmdMessage;
    const std::string name = "OTHER";
    const ParamMap params = {{"b", {"b", "t", 7, 8}}, {"key", {"name", "t", "1"}}};
    const std::string& getRawCommand() const override { return name; }
    const ParamMap& GetParamMap() const override { return params; }
  };
  tavrin_testing::FakeVariables manager;
  const Command command("ON", {{"c", {"c", "t", "1"}}}, manager);
  CBindMessage message;
  message.Initialize(IBindMessage::NOTIFY, "LEVEL", "75");
  message.addParam("a", "t", "1");
  EXPECT_EQ(message.Initialize(command), 0);
  EXPECT_EQ(Describe(message), "OTHER/LEVEL =  (0) @  | b:t=@7/8 key->name:t=1");
  EXPECT_TRUE(manager.reads().empty());
}

TEST(BindMessage, InitializesFromACommandThroughTheVirtualTable) {
  struct Message : CBindMessage {
    using CBindMessage::Initialize;
    std::vector<std::string> calls;
    std::int32_t Initialize(std::int32_t kind, const std::string& name) override {
      calls.push_back(std::to_string(kind) + name);
      return 17;
    }
  };
  tavrin_testing::FakeVariables manager;
  const CCmdMessage command("ON", {{"a", {"a", "t", "1"}}}, manager);
  Message message;
  EXPECT_EQ(message.Initialize(command), 17);
  EXPECT_EQ(message.calls, std::vector<std::string>{"1ON"});
  EXPECT_EQ(Describe(message), "/ =  (0) @  | a:t=1");
}

TEST(BindMessage, KeepsItsParametersWhenTheCommandSharesThem) {
  // A command that is a view of the message itself.
  struct View : CCmdMessage {
    View(const CBindMessage& message, zq::IVariableManager& vm) : CCmdMessage("ON", vm), viewed(message) {}
    const CBindMessage& viewed;
    const ParamMap& GetParamMap() const override { return viewed.GetParamMap(); }
  };
  tavrin_testing::FakeVariables manager;
  CBindMessage message;
  message.addParam("a", "t", "1");
  const View view(message, manager);
  EXPECT_EQ(message.Initialize(view), 0);
  EXPECT_EQ(Describe(message), "ON/ =  (0) @  | a:t=1");
}

TEST(BindMessage, CopiesAreIndependent) {
  CBindMessage message = Read("<m><command>ON</command><data>7</data><path>p</path></m>");
  const CBindMessage copy = message;
  message.Initialize(IBindMessage::COMMAND, "OFF");
  message.AddPath("q");
  EXPECT_EQ(Describe(copy), "ON/ = 7 (7) @ p | ");
}

TEST(BindMessage, DestroyingThroughTheInterfaceIsComplete) {
  boost::shared_ptr<IBindMessage> message = CBindMessage::Create(1, std::string(1000, 'x'));
  IBindMessage* const owned = new CBindMessage;
  delete owned;
  EXPECT_TRUE(std::has_virtual_destructor_v<IBindMessage>);
  EXPECT_EQ(message->getCommand().size(), 1000U);
}

// --- path and attached call ---

TEST(BindMessage, JoinsPathsWithoutSeparator) {
  CBindMessage message;
  message.AddPath("a");
  EXPECT_TRUE(message.hasPath());
  message.AddPath("b");
  message.AddPath("");
  EXPECT_EQ(message.getPath(), "ab");
}

TEST(BindMessage, StoresTheAddressOfACall) {
  ZqTypes::BoundCallBase first;
  ZqTypes::BoundCallBase second;
  CBindMessage message;
  message.setDataPtr(&first);
  message.setDataPtr(&second);
  EXPECT_EQ(message.getDataPtr(), &second);
  message.setDataPtr(nullptr);
  EXPECT_EQ(message.getDataPtr(), nullptr);
}

// --- parameters ---

TEST(BindMessage, AddsTypedValuesAsText) {
  CBindMessage message;
  message.addParam("text", "t", "a & b");
  message.addParam("int", "t", std::numeric_limits<std::int32_t>::min());
  message.addParamDouble("double", "t", -2.50);
  message.addParamDouble("rounded", "t", 1.0 / 3);
  EXPECT_EQ(Describe(message.GetParamMap()),
            "double:t=-2.5 int:t=-2147483648 rounded:t=0.333333 text:t=a & b");
  EXPECT_TRUE(message.hasParams());
}

TEST(BindMessage, AddsTypedValuesThroughTheTextForm) {
  struct Message : CBindMessage {
    using CBindMessage::addParam;
    std::vector<std::string> seen;
    void addParam(const std::string& name, const std::string& type, const std::string& value) override {
      seen.push_back(name + type + value);
    }
  };
  Message message;
  message.addParam("a", "t", -7);
  message.addParamDouble("b", "u", 0.5);
  EXPECT_EQ(message.seen, (std::vector<std::string>{"at-7", "bu0.5"}));
  EXPECT_FALSE(message.hasParams());
}

TEST(BindMessage, KeepsTheFirstParameterOfAName) {
  CBindMessage message;
  message.addParam("a", "t", "1");
  message.addParam("a", "u", "2");
  message.addParam("a", "u", 3);
  message.addParamDouble("a", "u", 4);
  message.addParams({{"a", {"a", "u", "5"}}, {"A", {"other", "u", 7, 8}}});
  EXPECT_EQ(Describe(message.GetParamMap()), "A->other:u=@7/8 a:t=1");
}

TEST(BindMessage, ParameterNamesAreCaseSensitive) {
  CBindMessage message;
  message.addParam("a", "t", "");
  EXPECT_TRUE(message.hasParam("a"));
  EXPECT_FALSE(message.hasParam("A"));
  EXPECT_FALSE(message.hasParam(""));
  EXPECT_EQ(message.getParam("A"), "");
}

TEST(BindMessage, ReadsParameterValuesVerbatim) {
  CBindMessage message;
  message.addParam("a", "t",
                   "1\0"
                   "2"s);
  DriverParam variable("v", "t", 7, 8);
  variable.value = "held";
  message.addParams({{"v", variable}});
  EXPECT_EQ(message.getParam("a"),
            "1\0"
            "2"s);
  EXPECT_EQ(message.getParam("v"), "held") << "nobody is asked for the variable's value";
  EXPECT_EQ(message.getParamRequired("v"), "held");
}

TEST(BindMessage, RequiredParameterThatIsMissingIsNamed) {
  CBindMessage message;
  message.addParam("empty", "t", "");
  EXPECT_EQ(message.getParamRequired("empty"), "");
  try {
    message.getParamRequired("LEVEL");
    FAIL() << "nothing was thrown";
  } catch (const ExceptionParameterMissing& e) {
    EXPECT_STREQ(e.what(), "Error: Required Parameter Missing: LEVEL");
  }
}

TEST(BindMessage, TypedReadersLeaveTheArgumentUnchangedForAnEmptyValue) {
  CBindMessage message;
  message.addParam("empty", "t", "");
  for (const std::string name : {"empty", "absent"}) {
    bool truth = true;
    std::int32_t number = -5;
    std::uint32_t natural = 5;
    double real = 0.5;
    EXPECT_FALSE(message.getParamBool(name, truth));
    EXPECT_FALSE(message.getParamInt(name, number));
    EXPECT_FALSE(message.getParamLong(name, number));
    EXPECT_FALSE(message.getParamUInt(name, natural));
    EXPECT_FALSE(message.getParamULong(name, natural));
    EXPECT_FALSE(message.getParamDouble(name, real));
    EXPECT_TRUE(truth);
    EXPECT_EQ(number, -5);
    EXPECT_EQ(natural, 5U);
    EXPECT_EQ(real, 0.5);
  }
}

TEST(BindMessage, TypedReadersConvertMalformedValues) {
  const struct {
    const char* text;
    std::int32_t number;
    std::uint32_t natural;
    double real;
  } cases[] = {
      {"75", 75, 75, 75},
      {"-1", -1, 4294967295, -1},
      {"2.5", 2, 2, 2.5},
      {"2,5", 2, 2, 2},
      {"1e3", 1, 1, 1000},
      {" 8", 8, 8, 8},
      {"on", 0, 0, 0},
      {" ", 0, 0, 0},
      {"nan", 0, 0, 0},
      {"3000000000", 2147483647, 3000000000, 3e9},
      {"5000000000", 2147483647, 4294967295, 5e9},
  };
  for (const auto& [text, number, natural, real] : cases) {
    CBindMessage message;
    message.addParam("p", "t", text);
    std::int32_t asInt = 99;
    std::int32_t asLong = 99;
    std::uint32_t asUInt = 99;
    std::uint32_t asULong = 99;
    double asDouble = 99;
    EXPECT_TRUE(message.getParamInt("p", asInt));
    EXPECT_TRUE(message.getParamLong("p", asLong));
    EXPECT_TRUE(message.getParamUInt("p", asUInt));
    EXPECT_TRUE(message.getParamULong("p", asULong));
    EXPECT_TRUE(message.getParamDouble("p", asDouble));
    EXPECT_EQ(asInt, number) << text;
    EXPECT_EQ(asLong, number) << text;
    EXPECT_EQ(asUInt, natural) << text;
    EXPECT_EQ(asULong, natural) << text;
    EXPECT_EQ(asDouble, real) << text;
  }
}

TEST(BindMessage, RealNumbersHaveAPointUnderAnyGlobalLocale) {
  CBindMessage message;
  double real = 0;
  const std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
  message.addParamDouble("p", "t", 1234.5);
  const bool isRead = message.getParamDouble("p", real);
  std::locale::global(before);
  EXPECT_EQ(message.getParam("p"), "1234.5");
  EXPECT_TRUE(isRead);
  EXPECT_EQ(real, 1234.5);
}

TEST(BindMessage, WholeNumbersArePlainDecimalsUnderAnyGlobalLocale) {
  const GlobalNumbers grouping;
  CBindMessage message;
  message.Initialize(IBindMessage::NOTIFY, "LEVEL", -1234567);
  message.addParam("p", "t", 1234567);
  EXPECT_EQ(Describe(message), "/LEVEL = -1234567 (-1234567) @  | p:t=1234567");
  EXPECT_EQ(CBindMessage::Create(IBindMessage::COMMAND, "ON", 7654321)->getData(), "7654321");
}

TEST(BindMessage, ParametersAreFoundByTheKeysOfAMap) {
  CBindMessage message;
  message.addParams({{"key", {"name", "t", "1"}}, {"variable", {"v", "t", 7, 8}}});
  EXPECT_TRUE(message.hasParam("key"));
  EXPECT_FALSE(message.hasParam("name"));
  EXPECT_EQ(message.getParam("key"), "1");
  EXPECT_EQ(message.getParam("name"), "");
  EXPECT_EQ(message.getParamRequired("key"), "1");
  EXPECT_THROW(message.getParamRequired("name"), ExceptionParameterMissing);
  std::int32_t number = 0;
  EXPECT_TRUE(message.getParamInt("key", number));
  EXPECT_EQ(number, 1);
  EXPECT_FALSE(message.getParamInt("name", number));
}

TEST(BindMessage, DerivedClassesMayInitialize) {
  struct Derived : CBindMessage {
    void Begin(std::int32_t kind) { _init(kind, "NAME", "12"); }
  };
  Derived message;
  message.Begin(IBindMessage::NOTIFY);
  EXPECT_EQ(Describe(message), "/NAME = 12 (12) @  | ");
  message.Begin(3);
  message.Begin(IBindMessage::COMMAND);
  EXPECT_EQ(Describe(message), "NAME/NAME = 12 (12) @  | ");
}

TEST(BindMessage, DoesNotLog) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  CBindMessage message;
  bool truth = false;
  std::int32_t number = 0;
  message.Initialize(3, "NAME", "data");
  zq::XmlNode::Ptr unreadable = ParseXml(
      "<b><data>x</data><params><param><value><variable><deviceid>x</deviceid></variable></value></param></"
      "params>"
      "</b>");
  EXPECT_THROW(message.fromXml(unreadable), zq::ZqError);
  message.addParam("p", "t", "no number");
  EXPECT_TRUE(message.getParamInt("p", number));
  EXPECT_TRUE(message.getParamBool("p", truth));
  EXPECT_THROW(message.getParamRequired("absent"), ExceptionParameterMissing);
  message.toXml();
  message.toJson();
  EXPECT_THAT(log.messages(), testing::IsEmpty());
}

TEST(BindMessage, BoolReaderAcceptsItsSpellings) {
  const std::pair<const char*, bool> cases[] = {
      {"true", true},   {"True", true},   {"TRUE", true},   {"tRuE", true}, {"1", true},
      {"Y", true},      {"y", false},     {"N", false},     {"n", false},   {"0", false},
      {"false", false}, {"FALSE", false}, {"yes", false},   {"on", false},  {"10", false},
      {" true", false}, {"t", false},     {"true ", false}, {"2", false},   {"Yes", false},
  };
  for (const auto& [text, truth] : cases) {
    CBindMessage message;
    message.addParam("p", "t", text);
    bool out = !truth;
    EXPECT_TRUE(message.getParamBool("p", out)) << text;
    EXPECT_EQ(out, truth) << text;
  }
}

TEST(BindMessage, BoolReaderUsesTheLowerCaseOfTheGlobalLocale) {
  class Unchanging : public std::ctype<char> {
    char do_tolower(char c) const override { return c; }
  };
  CBindMessage message;
  message.addParam("p", "t", "TRUE");
  bool truth = true;
  const std::locale before = std::locale::global(std::locale(std::locale(), new Unchanging));
  const bool isRead = message.getParamBool("p", truth);
  std::locale::global(before);
  EXPECT_TRUE(isRead);
  EXPECT_FALSE(truth);
}

// A bool is compared as a whole; a number ends at the first NUL byte.
TEST(BindMessage, NumberReadersStopAtANulByteAndTheBoolReaderDoesNot) {
  CBindMessage message;
  message.addParam("truth", "t", "true\0"s);
  message.addParam("number", "t",
                   "1\0"
                   "2"s);
  message.addParam("nothing", "t", "\0"s);
  EXPECT_EQ(Readings(message, "truth"), "0 0 0 0 0 0");
  EXPECT_EQ(Readings(message, "number"), "0 1 1 1 1 1");
  EXPECT_EQ(Readings(message, "nothing"), "0 0 0 0 0 0");
}

TEST(BindMessage, TypedReadersReadTheStoredValueOfAVariable) {
  CBindMessage message;
  DriverParam variable("v", "t", 7, 8);
  variable.value = "1";
  message.addParams({{"v", variable}, {"w", {"w", "t", 1, 1}}});
  EXPECT_EQ(Readings(message, "v"), "1 1 1 1 1 1");
  EXPECT_EQ(Readings(message, "w"), "none none none none none none");
}

TEST(BindMessage, TypedReadersCallTheVirtualReader) {
  struct Message : CBindMessage {
    std::string getParam(const std::string& name) const override { return name; }
  } message;
  for (const char* name : {"Y", "1", "2", "3", "4", "5"}) message.addParam(name, "t", "9");
  bool truth = false;
  std::int32_t number = 0;
  std::uint32_t natural = 0;
  double real = 0;
  EXPECT_TRUE(message.getParamBool("Y", truth) && truth);
  EXPECT_TRUE(message.getParamInt("1", number) && number == 1);
  EXPECT_TRUE(message.getParamLong("2", number) && number == 2);
  EXPECT_TRUE(message.getParamUInt("3", natural) && natural == 3);
  EXPECT_TRUE(message.getParamULong("4", natural) && natural == 4);
  EXPECT_TRUE(message.getParamDouble("5", real) && real == 5);
}

TEST(BindMessage, TypedReadersReadADerivedMessageThatOverridesNothing) {
  struct Message : CBindMessage {
  } message;
  message.addParam("p", "t", "1");
  message.addParam("empty", "t", "");
  EXPECT_EQ(Readings(message, "p"), "1 1 1 1 1 1");
  EXPECT_EQ(Readings(message, "empty"), "none none none none none none");
  EXPECT_EQ(Readings(message, "absent"), "none none none none none none");
}

// --- writing XML ---

TEST(BindMessage, WritesOnlyNonEmptyParts) {
  const std::string begin = "<bindmessage>\n";
  const std::string end = "</bindmessage>\n";
  const std::string command = " <command>ON</command>\n";
  const std::string notify = " <notify>LEVEL</notify>\n";
  const std::string query = " <query></query>\n";
  const std::string data = " <data>1</data>\n";
  const std::string params = "<params>" + ParamXml("a", "1") + ParamXml("b", "2") + "</params>";
  const std::string path = " <path>p</path>\n";
  const std::string texts[] = {
      begin + end,
      begin + command + data + end,
      begin + command + params + end,
      begin + notify + query + params + path + end,
      begin + command + notify + end,
      begin + command + notify + query + data + params + path + end,
      begin + data + path + end,
  };
  for (const std::string& text : texts) EXPECT_EQ(Read(text).toXml(), text);
}

TEST(BindMessage, WritesParametersInTheOrderOfTheirNames) {
  CBindMessage message;
  message.addParam("b", "t", "2");
  message.addParam("a", "t", "<1>");
  message.addParams({{"c", {"c", "u", 7, 8}}});
  EXPECT_EQ(message.toXml(), "<bindmessage>\n<params>" + ParamXml("a", "&lt;1&gt;") + ParamXml("b", "2") +
                                 "<param><name>c</name><value type=\"u\"><variable><deviceid>7</deviceid>"
                                 "<variableid>8</variableid></variable></value></param></params>"
                                 "</bindmessage>\n");
}

TEST(BindMessage, WritesTheQueryFlagOfANotificationOnly) {
  const CBindMessage command = Read("<m><command>ON</command><query/></m>");
  EXPECT_TRUE(AnswersQuery(command));
  EXPECT_EQ(command.toXml(), "<bindmessage>\n <command>ON</command>\n</bindmessage>\n");
}

TEST(BindMessage, WritesNamesDataAndPathVerbatim) {
  CBindMessage message;
  message.Initialize(IBindMessage::COMMAND, "a & b", "1 < 2");
  message.AddPath("a&b");
  EXPECT_EQ(message.toXml(),
            "<bindmessage>\n <command>a & b</command>\n <data>1 < 2</data>\n <path>a&b</path>\n"
            "</bindmessage>\n");
}

TEST(BindMessage, CallsTheVirtualHasData) {
  struct Message : CBindMessage {
    bool hasData() const override { return false; }
  } message;
  message.Initialize(IBindMessage::COMMAND, "ON", "1");
  EXPECT_EQ(message.toXml(), "<bindmessage>\n <command>ON</command>\n</bindmessage>\n");
}

// --- reading XML ---

TEST(BindMessage, ReadsARootOfAnyNameAndElementsInAnyOrder) {
  const CBindMessage message = Read(
      "<any a='1'> text <path>p</path><other><command>NO</command></other><params>" + ParamXml("a", "1") +
      "</params><data>12abc</data><query>no</query><Command>NO</Command><notify>LEVEL</notify></any>");
  EXPECT_EQ(Describe(message), "/LEVEL = 12abc (12) @ p | a:t=1");
  EXPECT_TRUE(AnswersQuery(message));
  EXPECT_TRUE(IsDataTrue(message));
}

TEST(BindMessage, ReadsNamesAsTextAndDataAndPathAsMarkup) {
  const CBindMessage message = Read(
      "<m><command>a &amp; b</command><notify><![CDATA[<c>]]></notify>"
      "<data> <x a='1'>&amp;</x><!-- c --></data><path>a&amp;b<y/></path></m>");
  EXPECT_EQ(message.getCommand(), "a & b");
  EXPECT_EQ(message.getNotify(), "<c>");
  EXPECT_EQ(message.getData(), " <x a='1'>&amp;</x><!-- c -->");
  EXPECT_EQ(message.getPath(), "a&amp;b<y/>");
}

TEST(BindMessage, DataThatIsMarkupSurvivesByteForByte) {
  const std::string data = "<scene  id = '7'><!-- dim --><level>40</level>\n\t<![CDATA[<]]>&#65;</scene>";
  const std::string text =
      "<bindmessage>\n <notify>SCENE</notify>\n <data>" + data + "</data>\n</bindmessage>\n";
  EXPECT_EQ(Read(text).getData(), data);
  EXPECT_EQ(Read(text).toXml(), text);
}

TEST(BindMessage, KeepsTheLastElementAndTheFirstParameterOfAName) {
  const CBindMessage message =
      Read("<m><command>A</command><data>1</data><path>p</path><params>" + ParamXml("a", "1") +
           ParamXml("a", "2") + "</params><command>B</command><data></data><path>q</path><params>" +
           ParamXml("a", "3") + ParamXml("b", "4") + "</params></m>");
  EXPECT_EQ(Describe(message), "B/ =  (0) @ q | a:t=1 b:t=4");
}

TEST(BindMessage, IgnoresParametersOfOtherNames) {
  const CBindMessage message = Read(
      "<m><params><other><name>a</name></other><Param><name>b</name></Param><param/>"
      "<x>" +
      ParamXml("c", "1") + "</x></params></m>");
  EXPECT_EQ(Describe(message.GetParamMap()), ":=");
}

TEST(BindMessage, LoadAddsToExistingParameters) {
  ZqTypes::BoundCallBase call;
  CBindMessage message;
  message.Initialize(IBindMessage::COMMAND, "ON", "7");
  message.AddPath("p");
  message.addParam("a", "t", "1");
  message.setDataPtr(&call);
  Read(message,
       "<m><notify>LEVEL</notify><params>" + ParamXml("a", "2") + ParamXml("b", "2") + "</params></m>");
  EXPECT_EQ(Describe(message), "ON/LEVEL = 7 (7) @ p | a:t=1 b:t=2");
  EXPECT_EQ(message.getDataPtr(), &call);
  Read(message, "<m><path>q</path></m>");
  EXPECT_EQ(message.getPath(), "q");
}

TEST(BindMessage, KeepsWhatWasReadBeforeAMalformedId) {
  CBindMessage message;
  zq::XmlNode::Ptr root =
      ParseXml("<m><command>ON</command><params>" + ParamXml("a", "1") +
               "<param><name>b</name><value><variable><deviceid>x</deviceid></variable></value></param>" +
               ParamXml("c", "1") + "</params></m>");
  EXPECT_THROW(message.fromXml(root), zq::ZqError);
  EXPECT_EQ(Describe(message), "ON/ =  (0) @  | a:t=1");
}

// --- the printed form ---

// Only commands mask secrets.
TEST(BindMessage, DoesNotMaskSecretsInAnyForm) {
  CBindMessage message;
  message.addParam("PIN", "t", "4711");
  for (const std::string& form : {Printed(message), message.toJson(), message.toXml()})
    EXPECT_THAT(form, HasSubstr("4711"));
}

TEST(BindMessage, PrintsEverythingInOneLine) {
  CBindMessage message;
  EXPECT_EQ(Printed(message),
            "{, \"Command\": \"\", \"Notify\": \"\", \"Data\": \"\", \"Path\": \"\", \"DataInt\": 0, "
            "\"DataBool\": false, \"IsQueryNotify\": false, \"m_mapParams\": [], \"m_pvDataPointer\": 0}");
  Read(message, "<m><command>a \"b\"</command><notify>n</notify><query/><data>-7</data><path>p</path></m>");
  message.addParam("k", "t", "v");
  ZqTypes::BoundCallBase call;
  message.setDataPtr(&call);
  std::ostringstream address;
  address << "0x" << std::hex << reinterpret_cast<std::uintptr_t>(&call);
  EXPECT_EQ(Printed(message),
            "{, \"Command\": \"a \"b\"\", \"Notify\": \"n\", \"Data\": \"-7\", \"Path\": \"p\", "
            "\"DataInt\": -7, \"DataBool\": true, \"IsQueryNotify\": true, "
            "\"m_mapParams\": [{\"first\": \"k\", \"second\": {\"type\": \"t\", \"bVar\": false, "
            "\"value\": \"v\", \"name\": \"k\", \"var\": {\"idDevice\": 0, \"idVariable\": 0}}}], "
            "\"m_pvDataPointer\": " +
                address.str() + '}');
}

TEST(BindMessage, PrintsItsNumberInDecimalAndReturnsTheStream) {
  std::ostringstream stream;
  stream << std::hex << std::showbase;
  EXPECT_EQ(&CBindMessage::Create(1, "ON", 255)->print(stream), &stream);
  EXPECT_THAT(stream.str(), HasSubstr("\"DataInt\": 255,"));
}

TEST(BindMessage, JsonIsThePrintedForm) {
  CBindMessage message = Read("<m><notify>LEVEL</notify><query/><data>75</data><path>p</path></m>");
  message.addParams({{"v", {"v", "t", 1234567, 7654321}}});
  EXPECT_EQ(message.toJson(), Printed(message));
}

// The function constructs a stream, which has the program's global locale.
TEST(BindMessage, JsonIsThePrintedFormUnderAnyGlobalLocale) {
  CBindMessage message;
  message.Initialize(IBindMessage::NOTIFY, "LEVEL", 1234567);
  message.addParams({{"v", {"v", "t", 1234567, 7654321}}});
  const std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
  const std::string json = message.toJson();
  const std::string printed = Printed(message);
  std::locale::global(before);
  EXPECT_EQ(json, printed);
  EXPECT_THAT(json, HasSubstr("\"idVariable\": 7.654.321"));
  EXPECT_THAT(json, HasSubstr("\"DataInt\": 1234567,"));
}

}  // namespace
