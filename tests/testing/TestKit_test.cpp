// Tests the kit for tests of drivers.

#include <gmock/gmock.h>

#include <tavrin_driver/Required.h>
#include <tavrin_testing/Testing.h>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace tavrin_testing;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::PrintToString;

template <class T, class M>
std::string Explanation(const T& value, const M& matcher) {
  testing::StringMatchResultListener listener;
  const bool matches = testing::ExplainMatchResult(matcher, value, &listener);
  return (matches ? "matches" : "no match") + (listener.str().empty() ? "" : ": " + listener.str());
}

template <class M>
std::string DescriptionOf(const M& matcher) {
  return testing::DescribeMatcher<const ICmdMessage&>(matcher);
}

template <class M>
std::string NegationOf(const M& matcher) {
  return testing::DescribeMatcher<const ICmdMessage&>(matcher, true);
}

// --- FakeVariables ---

std::string Read(FakeVariables& variables, std::uint32_t device, std::uint32_t variable) {
  std::string value;
  const int result = variables.GetVariableValue(device, variable, value);
  return std::to_string(result) + ' ' + value;
}

TEST(FakeVariables, ReturnTheirValues) {
  FakeVariables variables{{7, 1001, "19.5"}, {7, 1002, 0.5}, {8, 1001, true}, {8, 1002, 42}};
  EXPECT_EQ(Read(variables, 7, 1001), "0 19.5");
  EXPECT_EQ(Read(variables, 7, 1002), "0 0.5");
  EXPECT_EQ(Read(variables, 8, 1001), "0 true");
  EXPECT_EQ(Read(variables, 8, 1002), "0 42");
  std::string value = "in";
  variables.GetVariableValue(7, 1001, value);
  EXPECT_EQ(value, "in19.5") << "shows that what came in was not empty";
}

TEST(FakeVariables, ChangeAndFailOnDemand) {
  FakeVariables variables{{7, 1001, 20}};
  variables.set(7, 1001, 21, 3);
  EXPECT_EQ(Read(variables, 7, 1001), "3 21");
  variables.fail(7, 1001);
  EXPECT_EQ(Read(variables, 7, 1001), "-1 left over from a failed read");
  variables.fail(7, 1001, -7);
  EXPECT_EQ(Read(variables, 7, 1001), "-7 left over from a failed read");
  variables.failWith(7, 1001, std::runtime_error("no connection"));
  EXPECT_EQ(ErrorOf<std::runtime_error>([&] { Read(variables, 7, 1001); }), "no connection");
  variables.set(7, 1001, 22);
  EXPECT_EQ(Read(variables, 7, 1001), "0 22");
  variables.remove(7, 1001);
  EXPECT_EQ(Read(variables, 7, 1001), "-1 left over from a failed read");
  variables.set(7, 1001, 22);
  variables.clear();
  EXPECT_EQ(Read(variables, 7, 1001), "-1 left over from a failed read");
}

TEST(FakeVariables, ShowTheirValuesWithoutARead) {
  FakeVariables variables{{7, 1001, 20}, {7, 1002, 21}};
  variables.fail(7, 1002);
  EXPECT_EQ(variables.value(7, 1001), "20");
  EXPECT_EQ(variables.value(7, 1002), std::nullopt);
  EXPECT_EQ(variables.value(7, 1003), std::nullopt);
  EXPECT_TRUE(variables.reads().empty());
}

TEST(FakeVariables, CountReads) {
  FakeVariables variables{{7, 1001, 20}};
  Read(variables, 7, 1001);
  Read(variables, 7, 1002);
  Read(variables, 7, 1001);
  EXPECT_EQ(variables.reads(7, 1001), 2);
  EXPECT_EQ(variables.reads(7, 1002), 1);
  EXPECT_EQ(variables.reads(8, 1001), 0);
  EXPECT_THAT(variables.reads(), ElementsAre(VariableId{7, 1001}, VariableId{7, 1002}, VariableId{7, 1001}));
  EXPECT_EQ(PrintToString(VariableId{7, 1001}), "7/1001");
}

// --- builders and printers ---

TEST(Builders, MakeCommands) {
  FakeVariables variables{{7, 1001, 75}};
  const Command command = Command("SET", variables)
                              .with("CELSIUS", 21.5)
                              .with("COUNT", 3000000000U)
                              .with("FAST", true)
                              .with("SCENE", "evening")
                              .with("CODE", "text", 7)
                              .withVariable("LEVEL", 7, 1001)
                              .ownedBy(12);
  EXPECT_EQ(
      PrintToString(command),
      "command \"SET\", owner 12 {CELSIUS = \"21.5\" (number), CODE = \"7\" (text), COUNT = \"3000000000\" "
      "(number), FAST = \"true\" (bool), LEVEL = variable 1001 of device 7 (number), SCENE = \"evening\" "
      "(string)}");
  EXPECT_EQ(command.getParam("LEVEL"), "75");
  EXPECT_EQ(PrintToString(Command("ON")), "command \"ON\"");
  EXPECT_THAT(Command("SET").with("A", 0.1234567), HasParam("A", "0.123457"));
  EXPECT_EQ(Command("ON").withVariable("LEVEL", 7, 1001).getParam("LEVEL"), "") << "knows no variables";
}

TEST(Builders, DoNotModifyTheirMessage) {
  const Command on("ON");
  const Command fast = on.with("FAST", true);
  EXPECT_THAT(on, HasNoParams());
  EXPECT_THAT(fast, HasParam("FAST", true));
  EXPECT_THAT(fast.with("FAST", false), HasParam("FAST", true)) << "the first one of a name is kept";
}

TEST(Builders, MakeBindingMessages) {
  EXPECT_EQ(PrintToString(Notification("LEVEL", 75).at("house/").at("hall").with("SOURCE", "dimmer")),
            "notification \"LEVEL\", data \"75\", path \"house/hall\" {SOURCE = \"dimmer\" (string)}");
  EXPECT_EQ(PrintToString(Answer("LEVEL", 21.5)), "notification \"LEVEL\", answers a query, data \"21.5\"");
  EXPECT_EQ(PrintToString(BindingCommand("GET")), "command \"GET\"");
  EXPECT_EQ(Notification("LEVEL", 75).getDataAsInteger(), 75);
  EXPECT_EQ(PrintToString(CBindMessage()), "message without a name");
}

TEST(Builders, MakeConditionals) {
  const std::map<std::string, DeviceConditional> conditionals = {
      {"EQUAL", DeviceConditional("T").equal("V", 21.5)},
      {"NOT_EQUAL", DeviceConditional("T").notEqual("V", 21.5)},
      {"LESS_THAN", DeviceConditional("T").lessThan("V", 21.5)},
      {"LESS_THAN_OR_EQUAL", DeviceConditional("T").lessThanOrEqual("V", 21.5)},
      {"GREATER_THAN", DeviceConditional("T").greaterThan("V", 21.5)},
      {"GREATER_THAN_OR_EQUAL", DeviceConditional("T").greaterThanOrEqual("V", 21.5)},
      {"LIKE", DeviceConditional("T", "LIKE").with("V", 21.5)},
  };
  for (const auto& [comparison, conditional] : conditionals)
    EXPECT_EQ(PrintToString(conditional), "conditional \"T\" " + comparison + " {V = \"21.5\" (number)}");
}

TEST(Printers, ShowSecrets) {
  EXPECT_EQ(PrintToString(Command("UNLOCK").with("PIN", "4711")),
            "command \"UNLOCK\" {PIN = \"4711\" (string)}");
}

TEST(Printers, ShowWhatPointersReferTo) {
  EXPECT_EQ(PrintToString(boost::shared_ptr<ICmdMessage>(new Command("ON"))), "[command \"ON\"]");
  EXPECT_EQ(PrintToString(boost::shared_ptr<const CBindMessage>()), "null");
  EXPECT_THAT(PrintToString(std::make_unique<Command>("ON")), HasSubstr("command \"ON\""));
}

TEST(Printers, ShowValues) {
  EXPECT_EQ(PrintToString(DriverParam("A", "t", "1")), "A = \"1\" (t)");
  DriverParam both("A", "t", 7, 8);
  both.value = "1";
  EXPECT_EQ(PrintToString(both), "A = variable 8 of device 7 with the text \"1\" (t)");
  EXPECT_EQ(PrintToString(ZqColor(0.1, 1.0 / 3, ZqColor::CCT)), "x 0.1, y 0.3333333333333333, mode CCT");
  EXPECT_EQ(PrintToString(ZqColor(0.1, 0.2, static_cast<ZqColor::Mode>(7))), "x 0.1, y 0.2, mode 7");
  EXPECT_EQ(PrintToString(zq::discovery_info()), "device found by no protocol");
  EXPECT_EQ(PrintToString(zq::discovery_info("u", "1.2.3.4", "", "make", "", "")),
            "device found by KIMO {uuid \"u\", ip \"1.2.3.4\", make \"make\"}");
  EXPECT_EQ(PrintToString(zq::XmlPosition{3, 5}), "line 3, column 5");
  EXPECT_EQ(PrintToString(FindingView{"", "duplicate id", 3}), "line 3: duplicate id");
  EXPECT_EQ(PrintToString(FindingView{"project/duplicate-id", "duplicate id", 3}),
            "line 3: duplicate id [project/duplicate-id]");
}

// --- matchers ---

TEST(Matchers, AcceptEveryFormOfAMessage) {
  const Command command = Command("ON").with("A", 1);
  const ICmdMessage& interface = command;
  const CCmdMessage& implementation = command;
  const auto matcher = IsCommand("ON", HasParam("A", 1));
  EXPECT_THAT(command, matcher);
  EXPECT_THAT(interface, matcher);
  EXPECT_THAT(implementation, matcher);
  EXPECT_THAT(&interface, matcher);
  EXPECT_THAT(command.clone(), matcher);
  EXPECT_THAT(std::make_shared<Command>(command), matcher);
  EXPECT_THAT(std::make_unique<const Command>(command), matcher);
  EXPECT_THAT(BindingCommand("ON").with("A", 1), matcher);
  EXPECT_EQ(Explanation(static_cast<const ICmdMessage*>(nullptr), matcher), "no match: which is null");
  EXPECT_EQ(Explanation(boost::shared_ptr<IBindMessage>(), Not(matcher)), "matches: which is null");
}

TEST(Matchers, DescribeThemselves) {
  EXPECT_EQ(DescriptionOf(IsCommand("ON", HasParam("A", 21.5), HasVariable("B", 7, 8))),
            "is a command whose name is equal to \"ON\" and has a parameter \"A\" that is equal to \"21.5\" "
            "and has a "
            "parameter \"B\" that is variable 8 of device 7");
  EXPECT_EQ(NegationOf(IsNotification(HasSubstr("ON"))),
            "is not a notification whose name has substring \"ON\"");
  EXPECT_EQ(DescriptionOf(AllOf(HasParam("A"), HasNoParams())),
            "(has a parameter \"A\") and (has no parameters)");
  EXPECT_EQ(NegationOf(HasParam("A")), "has no parameter \"A\"");
  EXPECT_EQ(NegationOf(HasData(5)), "has data that isn't equal to \"5\"");
  EXPECT_EQ(NegationOf(AnswersAQuery()), "answers no query");
  EXPECT_EQ(DescriptionOf(EqualTo(Command("ON"))), "is equal to command \"ON\"");
}

TEST(Matchers, ExplainMismatches) {
  const Command command = Command("SET").with("A", 21).withVariable("B", 7, 8);
  EXPECT_EQ(Explanation(command, IsCommand("ON")), "no match: whose name is \"SET\"");
  EXPECT_EQ(Explanation(command, IsNotification("SET")), "no match: which is no notification");
  EXPECT_EQ(Explanation(command, IsConditional("SET")), "no match: which is no conditional");
  EXPECT_EQ(Explanation(command, IsCommand("SET", HasParam("A", 21.5))),
            "no match: whose parameter \"A\" is \"21\" (number)");
  EXPECT_EQ(Explanation(command, HasParam("A", HasSubstr("2"))), "matches");
  EXPECT_EQ(Explanation(command, HasParam("C", 1)), "no match: which has no parameter \"C\"");
  EXPECT_EQ(Explanation(command, HasParam("C")), "no match: which has no parameter \"C\"");
  EXPECT_EQ(Explanation(command, HasParam("B", "")),
            "no match: whose parameter \"B\" is variable 8 of device 7 (number)");
  EXPECT_EQ(Explanation(command, HasVariable("B", 7, 8)), "matches");
  EXPECT_EQ(Explanation(command, HasVariable("B", 7, 9)),
            "no match: whose parameter \"B\" is variable 8 of device 7 (number)");
  EXPECT_EQ(Explanation(command, HasVariable("A", 7, 8)),
            "no match: whose parameter \"A\" is \"21\" (number)");
  EXPECT_EQ(Explanation(command, HasVariable("C", 7, 8)), "no match: which has no parameter \"C\"");
  EXPECT_EQ(Explanation(Command("ON").with("A", 1), HasNoParams()),
            "no match: which has the parameters {A = \"1\" (number)}");
  const BindingMessage news = Notification("L", 21.5).at("hall");
  EXPECT_EQ(Explanation(news, IsNotification("L", HasData(21.5), HasPath("hall"))), "matches");
  EXPECT_EQ(Explanation(news, HasData(21)), "no match: whose data is \"21.5\"");
  EXPECT_EQ(Explanation(news, HasPath("")), "no match: whose path is \"hall\"");
  EXPECT_EQ(Explanation(news, AnswersAQuery()), "no match: which answers no query");
  EXPECT_EQ(
      Explanation(&news, IsNotification("N")),
      "no match: which points to notification \"L\", data \"21.5\", path \"hall\", whose name is \"L\"");
  EXPECT_EQ(Explanation(DeviceConditional("T").lessThan("V", 1), IsConditional("T", HasComparison("EQUAL"))),
            "no match: whose comparison is \"LESS_THAN\"");
}

TEST(Matchers, EqualityExplainsDifferences) {
  EXPECT_THAT(Answer("L", 5).at("p").with("A", 1), EqualTo(Answer("L", 5).at("p").with("A", 1)));
  EXPECT_EQ(
      Explanation(Answer("L", 5).at("p").with("A", 1).with("B", 2),
                  EqualTo(Notification("M", 6).with("A", 2).with("C", 3))),
      "no match: where the notification is \"L\" instead of \"M\", the data is \"5\" instead of \"6\", the "
      "path "
      "is \"p\" instead of \"\", the query flag is set instead of not set, the parameter A is \"1\" (number) "
      "instead of \"2\" (number), the parameter C is absent instead of \"3\" (number), the parameter B is "
      "\"2\" "
      "(number) instead of absent");
  EXPECT_EQ(
      Explanation(DeviceConditional("T", "EQUAL"), EqualTo(DeviceConditional("U", "LIKE"))),
      "no match: where the conditional is \"T\" instead of \"U\", the comparison is \"EQUAL\" instead of "
      "\"LIKE\"");
  EXPECT_EQ(Explanation(Command("ON").ownedBy(1), EqualTo(Command("OFF"))),
            "no match: where the command is \"ON\" instead of \"OFF\", the owner is 1 instead of 0");
  DriverParam ids("A", "t", "1");
  ids.idDevice = 7;
  EXPECT_EQ(
      Explanation(DriverParam("A", "t", "1"), EqualTo(ids)),
      "no match: where the parameter A is \"1\" (t) with the ids 0/0 instead of \"1\" (t) with the ids 7/0");
  EXPECT_EQ(Explanation(DriverParam("B", "t", "1"), EqualTo(DriverParam("A", "t", "1"))),
            "no match: where the name is \"B\" instead of \"A\"");
  const std::map<std::string, DriverParam> params = {{"A", DriverParam("A", "t", "1")}};
  EXPECT_THAT(params, EqualTo(params));
  EXPECT_EQ(Explanation(params, EqualTo(std::map<std::string, DriverParam>())),
            "no match: where the parameter A is \"1\" (t) instead of absent");
  EXPECT_EQ(
      Explanation(ZqColor(0.1, 0.2, ZqColor::XY), EqualTo(ZqColor(0.1, 0.20000000000000004, ZqColor::CCT))),
      "no match: where y is 0.2 instead of 0.20000000000000004, the mode is XY instead of CCT");
  EXPECT_EQ(Explanation(zq::discovery_info("u", "i", "t", "make", "", "s"), EqualTo(zq::discovery_info())),
            "no match: where the protocol is \"KIMO\" instead of \"\", the field uuid is \"u\" instead of "
            "absent, the "
            "field ip is \"i\" instead of absent, the field type is \"t\" instead of absent, the field make "
            "is \"make\" "
            "instead of absent, the field sdk_class is \"s\" instead of absent");
}

#ifdef TAVRIN_BUNDLED_PLATFORM  // stores positions
TEST(Matchers, FindFindingsByTextAndLine) {
  zq::ProjectValidator validator("<currentstate>\n  <property/>\n</currentstate>");
  EXPECT_FALSE(validator.valid());
  EXPECT_THAT(validator, HasFinding("expected properties"));
  EXPECT_THAT(validator, HasFinding("expected properties", 2));
  EXPECT_THAT(validator, Not(HasFinding("expected properties", 1)));
  EXPECT_EQ(Explanation(validator, HasFinding("expected properties", 1)),
            "no match: which has such a finding in line 2");
  EXPECT_EQ(Explanation(validator, HasFinding("duplicate")), "no match: which has no such finding");
  EXPECT_EQ(testing::DescribeMatcher<const zq::ProjectValidator&>(HasFinding("duplicate", 7)),
            "has a finding \"duplicate\" in line 7");
  EXPECT_THAT(PrintToString(validator), HasSubstr("\n    line 2: expected properties, got property"));
}
#endif

// --- recorder, log capture, errors ---

TEST(Recorder, KeepsCopies) {
  Recorder<IBindMessage> sent;
  EXPECT_EQ(sent.last(), nullptr);
  {
    BindingMessage message = Answer("LEVEL", 75);
    const auto send = sent.sink();
    send(message);
    message.Initialize(IBindMessage::NOTIFY, "LEVEL", "80");
    send(message);
  }
  EXPECT_THAT(sent.messages(), ElementsAre(EqualTo(Answer("LEVEL", 75)), EqualTo(Notification("LEVEL", 80))));
  EXPECT_THAT(sent.last(), IsNotification("LEVEL", HasData(80)));
  EXPECT_EQ(sent.size(), 2U);
  sent.clear();
  EXPECT_EQ(sent.size(), 0U);
  Recorder<ICmdMessage> commands;
  commands(Command("ON"));
  Recorder<ICondMessage> conditionals;
  conditionals(DeviceConditional("T"));
  EXPECT_THAT(commands.last(), IsCommand("ON"));
  EXPECT_THAT(conditionals.last(), IsConditional("T"));
}

TEST(LogCapture, CollectsWarningsWithoutTheirStacks) {
  const Command command = Command("SET").with("A", 5);
  LogCapture outer;
  {
    LogCapture log;
    EXPECT_THROW(command.getParamRequiredIntRanged("A", 9, 1), ExceptionParameterInvalid);
    EXPECT_THAT(log.warnings(), ElementsAre("Incorrect range - minimum (9) is greater than maximum (1)"));
    EXPECT_GT(log.messages().size(), 1U);
    ASSERT_FALSE(log.records().empty());
    EXPECT_EQ(PrintToString(log.records().front()),
              "WARN tavrin_driver/CmdMessage: Incorrect range - minimum (9) is greater than maximum (1)");
  }
  EXPECT_THAT(outer.messages(), testing::IsEmpty());
  command.getParamRequiredVarDeviceID("A");
  EXPECT_THAT(outer.warnings(),
              ElementsAre("Not a variable parameter", "Variable parameter has invalid device ID"));
}

TEST(ErrorOf, ReturnsTheMessageOfTheException) {
  EXPECT_EQ(ErrorOf([] { throw std::runtime_error("broken"); }), "broken");
  EXPECT_EQ(ErrorOf([] {}), "(nothing was thrown)");
  EXPECT_THROW(ErrorOf<std::logic_error>([] { throw std::runtime_error("broken"); }), std::runtime_error);
}

TEST(FakeLevel, ComparesAsItsNumber) {
  EXPECT_TRUE(DeviceConditional("L").lessThan("V", 50).Test(FakeLevel(49), "V"));
  EXPECT_FALSE(DeviceConditional("L").lessThan("V", 50).Test(FakeLevel(50), "V"));
  EXPECT_TRUE(DeviceConditional("L").greaterThanOrEqual("V", 50).Test(FakeLevel(50), nullptr));
  EXPECT_TRUE(DeviceConditional("L").equal("V", 50).Test(FakeLevel(50), "V"));
  EXPECT_FALSE(DeviceConditional("L").notEqual("V", 50).Test(FakeLevel(50), "V"));
  EXPECT_TRUE(DeviceConditional("L").lessThanOrEqual("V", 50).Test(FakeLevel(50), "V"));
  EXPECT_FALSE(DeviceConditional("L").greaterThan("V", 50).Test(FakeLevel(50), "V"));
}

}  // namespace
