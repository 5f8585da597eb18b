#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <log4cplus/loglevel.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/ParameterExceptions.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/LogCapture.h>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "GlobalNumbers.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::int32_t minInt32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t maxInt32 = std::numeric_limits<std::int32_t>::max();

class CmdMessageRequired : public testing::Test {
 protected:
  tavrin_testing::FakeVariables manager;
  CCmdMessage message{"COMMAND", manager};

  // Returns the message with a static parameter "a" of that value.
  CCmdMessage& With(const std::string& value) {
    message.overwriteParam("a", "t", value);
    return message;
  }
};

struct Reading {
  const char* what;
  std::function<void(const ICmdMessage&, const std::string&)> read;
};

const Reading conversions[] = {
    {"text", [](const ICmdMessage& m, const std::string& name) { m.getParamRequired(name); }},
    {"int", [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredInt(name); }},
    {"bool", [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredBool(name); }},
    {"ranged", [](const ICmdMessage& m,
                  const std::string& name) { m.getParamRequiredIntRanged(name, minInt32, maxInt32); }},
    {"ulong", [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredULong(name); }},
    {"double", [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredDouble(name, 2); }},
};

const Reading idReadings[] = {
    {"device", [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredVarDeviceID(name); }},
    {"variable",
     [](const ICmdMessage& m, const std::string& name) { m.getParamRequiredVarVariableID(name); }},
};

// --- exceptions ---

TEST(ParameterExceptions, HaveFixedTexts) {
  EXPECT_STREQ(ExceptionParameterMissing().what(), "Required parameters are missing");
  EXPECT_STREQ(ExceptionParameterInvalid().what(), "Required parameters are invalid. E.g. Out of bounds");
  static_assert(std::is_convertible_v<ExceptionParameterMissing*, std::runtime_error*>);
  static_assert(std::is_convertible_v<ExceptionParameterInvalid*, std::runtime_error*>);
  static_assert(!std::is_convertible_v<ExceptionParameterInvalid*, ExceptionParameterMissing*>);
  static_assert(!std::is_constructible_v<ExceptionParameterMissing, std::string>);
}

TEST_F(CmdMessageRequired, ThrowsIfAParameterIsAbsent) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  for (const auto& [what, read] : conversions)
    EXPECT_THROW(read(message, "absent"), ExceptionParameterMissing) << what;
  for (const auto& [what, read] : idReadings)
    EXPECT_THROW(read(message, "absent"), ExceptionParameterMissing) << what;
  EXPECT_THAT(log.messages(), IsEmpty());
  EXPECT_THAT(manager.reads(), IsEmpty());
}

TEST_F(CmdMessageRequired, ThrowsIfAVariableCannotBeRead) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  message.addVarParam("v", "t", 7, 8);
  for (const auto& [what, read] : conversions)
    EXPECT_THROW(read(message, "v"), ExceptionParameterMissing) << what;
  manager.set(7, 8, "5", -1);
  for (const auto& [what, read] : conversions)
    EXPECT_THROW(read(message, "v"), ExceptionParameterMissing) << what;
  EXPECT_EQ(manager.reads().size(), 2 * std::size(conversions));
  EXPECT_THAT(log.messages(), IsEmpty());
}

// --- strings ---

TEST_F(CmdMessageRequired, ReadsTexts) {
  EXPECT_EQ(With("text").getParamRequired("a"), "text");
  EXPECT_EQ(With("").getParamRequired("a"), "");
  EXPECT_EQ(With(std::string("ab\0cd", 5)).getParamRequired("a"), "ab");
}

TEST_F(CmdMessageRequired, ReadsVariablesAtEveryCall) {
  message.addVarParam("v", "t", 7, 8);
  for (const std::string& value : {std::string("1"), std::string(), std::string("2\0 3", 4)}) {
    for (const int success : {0, 1}) {
      manager.set(7, 8, value, success);
      EXPECT_EQ(message.getParamRequired("v"), value);
    }
  }
  EXPECT_EQ(manager.reads().size(), 6U);
}

TEST_F(CmdMessageRequired, ConvertsVariablesToo) {
  message.addVarParam("v", "t", 7, 8);
  manager.set(7, 8, "1,25");
  EXPECT_EQ(message.getParamRequiredInt("v"), 1);
  EXPECT_EQ(message.getParamRequiredULong("v"), 1U);
  EXPECT_EQ(message.getParamRequiredIntRanged("v", 1, 1), 1);
  EXPECT_EQ(message.getParamRequiredBool("v"), true);
  EXPECT_EQ(message.getParamRequiredDouble("v", 1), 1.3);
}

// --- numbers ---

TEST_F(CmdMessageRequired, ReadsTheLeadingNumber) {
  const struct {
    std::string text;
    std::int32_t number;
    std::uint32_t asUnsigned;
  } rows[] = {
      {"0", 0, 0},
      {"50", 50, 50},
      {"+50", 50, 50},
      {"-1", -1, 4294967295U},
      {" -12", -12, 4294967284U},
      {" \t\n\v\f\r7", 7, 7},
      {"12abc", 12, 12},
      {"12.9", 12, 12},
      {"1e3", 1, 1},
      {"0x10", 0, 0},
      {"010", 10, 10},
      {"abc", 0, 0},
      {"", 0, 0},
      {"-", 0, 0},
      {"+-1", 0, 0},
      {"- 1", 0, 0},
      {"true", 0, 0},
      {"2147483647", maxInt32, 2147483647U},
      {"2147483648", maxInt32, 2147483647U},
      {"4294967295", maxInt32, 2147483647U},
      {"4294967296", maxInt32, 2147483647U},
      {"9223372036854775808", maxInt32, 2147483647U},
      {"99999999999999999999999", maxInt32, 2147483647U},
      {"-2147483648", minInt32, 2147483648U},
      {"-2147483649", minInt32, 2147483648U},
      {"-4294967297", minInt32, 2147483648U},
      {"-99999999999999999999999", minInt32, 2147483648U},
      {std::string("1\0002", 3), 1, 1},
  };
  for (const auto& [text, number, asUnsigned] : rows) {
    EXPECT_EQ(With(text).getParamRequiredInt("a"), number) << text;
    EXPECT_EQ(With(text).getParamRequiredULong("a"), asUnsigned) << text;
    EXPECT_EQ(With(text).getParamRequiredIntRanged("a", minInt32, maxInt32), number) << text;
  }
}

TEST_F(CmdMessageRequired, ReadsBooleansByTheirFirstCharacter) {
  for (const char* text : {"TRUE", "true", "True", "t", "T", "1", "10", "12345", "tango", "1 is not 2"})
    EXPECT_TRUE(With(text).getParamRequiredBool("a")) << text;
  for (const char* text :
       {"", "0", "01", "2", "yes", "Y", "on", "false", " true", " 1", "-1", "+1", "\xC5\xA4"})
    EXPECT_FALSE(With(text).getParamRequiredBool("a")) << text;
}

TEST_F(CmdMessageRequired, ReturnsNanForMoreThan308Decimals) {
  EXPECT_EQ(With("0.25").getParamRequiredDouble("a", 308), 0.25);
  EXPECT_TRUE(std::isnan(With("0.25").getParamRequiredDouble("a", 309)));
}

TEST_F(CmdMessageRequired, ReadsAndRoundsDoubles) {
  const struct {
    std::string text;
    std::int32_t precision;
    double number;
  } rows[] = {
      {"2,5", 0, 3},
      {"2,5", -1, 2.5},
      {"2.5", 0, 3},
      {"-2.5", 0, -3},
      {"3.5", 0, 4},
      {"2.4999", 0, 2},
      {"2.25", 1, 2.3},
      {"-2.25", 1, -2.3},
      {"2.2", 1, 2.2},
      {"1.23456789", 4, 1.2346},
      {"1.23456789", -1, 1.23456789},
      {"1.23456789", minInt32, 1.23456789},
      {"1,234,5", 2, 1.23},
      {"1,234,5", -1, 1.234},
      {"1.5,5", -1, 1.5},
      {"1,5.5", -1, 1.5},
      {" 21,5 C", 1, 21.5},
      {"1e3", 0, 1000},
      {"-0,05", 1, -0.1},
      {"", 2, 0},
      {"abc", 2, 0},
      {",5", 1, 0.5},
      {"nan", -1, 0},
      {"0x10", -1, 0},
      {"123456789012", 0, 123456789012.0},
      // powers of ten that some maths libraries compute incorrectly
      {"0.003", 23, 0.003},
      {"0.003", 126, 0x1.89374bc6a7efbp-9},
      {"0.015", 210, 0x1.eb851eb851eb7p-7},
  };
  for (const auto& [text, precision, number] : rows)
    EXPECT_EQ(With(text).getParamRequiredDouble("a", precision), number) << text << " to " << precision;
  EXPECT_EQ(message.GetParamMap().at("a").value, rows[std::size(rows) - 1].text)
      << "the message stays as it is";
}

// --- ranges ---

TEST_F(CmdMessageRequired, AcceptsTheBoundsOfARange) {
  const struct {
    const char* text;
    std::int32_t min, max;
    bool isInside;
  } rows[] = {
      {"5", 5, 5, true},
      {"5", 0, 100, true},
      {"0", 0, 100, true},
      {"100", 0, 100, true},
      {"-1", 0, 100, false},
      {"101", 0, 100, false},
      {"5", 6, 6, false},
      {"5", 4, 4, false},
      {"-5", -5, -5, true},
      {"-6", -5, 5, false},
      {"abc", 0, 0, true},
      {"abc", 1, 2, false},
      {"99999999999", maxInt32, maxInt32, true},
      {"99999999999", minInt32, maxInt32 - 1, false},
      {"-99999999999", minInt32, minInt32, true},
  };
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  for (const auto& [text, min, max, isInside] : rows) {
    SCOPED_TRACE(testing::Message() << text << " in " << min << ".." << max);
    With(text);
    if (isInside)
      EXPECT_EQ(message.getParamRequiredIntRanged("a", min, max), message.getParamRequiredInt("a"));
    else
      EXPECT_THROW(message.getParamRequiredIntRanged("a", min, max), ExceptionParameterInvalid);
  }
  EXPECT_THAT(log.messages(), IsEmpty());
}

// The first record is the warning; the others are the frames of the call stack.
void ExpectWarningsWithStack(const std::vector<tavrin_testing::LogRecord>& events,
                             const std::vector<std::string>& warnings, const std::string& function) {
  std::vector<std::string> found;
  std::size_t frame = 0;
  int line = 0;
  for (const tavrin_testing::LogRecord& event : events) {
    EXPECT_EQ(event.level, log4cplus::WARN_LOG_LEVEL);
    EXPECT_EQ(event.file, "tavrin_driver/CmdMessage");
    EXPECT_THAT(event.function, HasSubstr("CCmdMessage::" + function + "("));
    const std::string number = std::to_string(frame) + "# ";
    if (!found.empty() && event.message.compare(0, number.size(), number) == 0) {
      EXPECT_EQ(event.line, line) << "a frame comes from the same place as its warning";
      EXPECT_GT(event.message.size(), number.size());
      ++frame;
      continue;
    }
    EXPECT_TRUE(found.empty() || frame > 0) << "no stack behind: " << found.back();
    found.push_back(event.message);
    frame = 0;
    line = event.line;
    EXPECT_GT(line, 0);
  }
  EXPECT_EQ(found, warnings);
  EXPECT_TRUE(found.empty() || frame > 0) << "no stack behind: " << found.back();
}

TEST_F(CmdMessageRequired, WarnsOfAnEmptyRange) {
  With("5");
  {
    const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
    EXPECT_THROW(message.getParamRequiredIntRanged("a", 10, 1), ExceptionParameterInvalid);
    ExpectWarningsWithStack(log.records(), {"Incorrect range - minimum (10) is greater than maximum (1)"},
                            "getParamRequiredIntRanged");
  }
  {
    const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
    EXPECT_THROW(message.getParamRequiredIntRanged("a", 1, minInt32), ExceptionParameterInvalid);
    ExpectWarningsWithStack(log.records(),
                            {"Incorrect range - minimum (1) is greater than maximum (-2147483648)"},
                            "getParamRequiredIntRanged");
  }
  {
    const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
    EXPECT_THROW(message.getParamRequiredIntRanged("absent", 10, 1), ExceptionParameterMissing);
    ExpectWarningsWithStack(log.records(), {"Incorrect range - minimum (10) is greater than maximum (1)"},
                            "getParamRequiredIntRanged");
  }
}

TEST_F(CmdMessageRequired, WarningsContainNoValue) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  With("4711");
  message.addVarParam("variable", "t", 7, 8);
  manager.set(7, 8, "4711");
  for (const char* name : {"a", "variable"}) {
    for (const Reading& reading : conversions) reading.read(message, name);
    for (const Reading& reading : idReadings) reading.read(message, name);
    EXPECT_THROW(message.getParamRequiredIntRanged(name, 10, 1), ExceptionParameterInvalid);
  }
  ASSERT_FALSE(log.messages().empty());
  EXPECT_THAT(log.messages(), testing::Each(testing::Not(HasSubstr("4711"))));
}

TEST_F(CmdMessageRequired, NumbersInAWarningArePlainDecimals) {
  const GlobalNumbers grouping;
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  EXPECT_THROW(With("5").getParamRequiredIntRanged("a", 1234567, -7654321), ExceptionParameterInvalid);
  ASSERT_FALSE(log.records().empty());
  EXPECT_EQ(log.messages().front(), "Incorrect range - minimum (1234567) is greater than maximum (-7654321)");
}

TEST_F(CmdMessageRequired, ReadsDoublesUnderAnyGlobalLocale) {
  const GlobalNumbers commas;
  EXPECT_EQ(With("2.5").getParamRequiredDouble("a", -1), 2.5);
  EXPECT_EQ(With("2,5").getParamRequiredDouble("a", -1), 2.5);
  EXPECT_EQ(With("1.234,5").getParamRequiredDouble("a", -1), 1.234);
}

TEST_F(CmdMessageRequired, WarningsContainTheWholeSignature) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  With("5");
  EXPECT_THROW(message.getParamRequiredIntRanged("a", 10, 1), ExceptionParameterInvalid);
  ASSERT_FALSE(log.records().empty());
  const std::string function = log.records().front().function;
  for (const char* part : {"virtual ", "std::", "string", "&, ", "int", ") const"})
    EXPECT_THAT(function, HasSubstr(part));
}

// Other platforms may describe frames differently.
#ifdef TAVRIN_BUNDLED_PLATFORM
TEST_F(CmdMessageRequired, CallStacksBeginWithTheFunctionThatWarns) {
  const struct {
    const char* function;
    void (*call)(const CCmdMessage& message);
  } rows[] = {
      {"getParamRequiredIntRanged",
       [](const CCmdMessage& m) {
         EXPECT_THROW(m.getParamRequiredIntRanged("a", 10, 1), ExceptionParameterInvalid);
       }},
      {"getParamRequiredVarDeviceID", [](const CCmdMessage& m) { m.getParamRequiredVarDeviceID("a"); }},
      {"getParamRequiredVarVariableID", [](const CCmdMessage& m) { m.getParamRequiredVarVariableID("a"); }},
  };
  With("5");
  for (const auto& [function, call] : rows) {
    const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
    call(message);
    std::vector<std::string> innermost;
    for (const std::string& text : log.messages())
      if (text.compare(0, 3, "0# ") == 0) innermost.push_back(text);
    EXPECT_THAT(innermost, testing::Not(IsEmpty())) << function;
    EXPECT_THAT(innermost, testing::Each(HasSubstr(std::string("CCmdMessage::") + function + "(")));
  }
}
#endif

TEST_F(CmdMessageRequired, WarnsOnlyIfWarningsAreLogged) {
  const tavrin_testing::LogCapture log(log4cplus::ERROR_LOG_LEVEL);
  With("5");
  EXPECT_THROW(message.getParamRequiredIntRanged("a", 10, 1), ExceptionParameterInvalid);
  EXPECT_EQ(message.getParamRequiredVarDeviceID("a"), 0);
  EXPECT_THAT(log.messages(), IsEmpty());
}

// --- ids ---

TEST_F(CmdMessageRequired, ReturnsTheIdsOfAVariableWithoutReadingIt) {
  const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
  message.addVarParam("v", "t", 7, 8);
  message.addVarParam("high", "t", 4294967295U, 2147483648U);
  EXPECT_EQ(message.getParamRequiredVarDeviceID("v"), 7);
  EXPECT_EQ(message.getParamRequiredVarVariableID("v"), 8);
  EXPECT_EQ(message.getParamRequiredVarDeviceID("high"), -1);
  EXPECT_EQ(message.getParamRequiredVarVariableID("high"), minInt32);
  EXPECT_THAT(log.messages(), IsEmpty());
  EXPECT_THAT(manager.reads(), IsEmpty());
}

// The ids of a static parameter are returned, too, with a warning.
TEST_F(CmdMessageRequired, ReturnsTheIdsOfAnyParameterWithWarnings) {
  DriverParam withIds("", "t", 7, 8);
  withIds.bVar = false;
  message.addParams({{"static", {"static", "t", "5"}},
                     {"static with ids", withIds},
                     {"no device", {"", "t", 0, 8}},
                     {"no variable", {"", "t", 7, 0}}});
  const std::string notVariable = "Not a variable parameter";
  const std::string noDevice = "Variable parameter has invalid device ID";
  const std::string noVariable = "Variable parameter has invalid variable ID";
  const struct {
    const char* name;
    std::int32_t device;
    std::vector<std::string> deviceWarnings;
    std::int32_t variable;
    std::vector<std::string> variableWarnings;
  } rows[] = {
      {"static", 0, {notVariable, noDevice}, 0, {notVariable, noVariable}},
      {"static with ids", 7, {notVariable}, 8, {notVariable}},
      {"no device", 0, {noDevice}, 8, {}},
      {"no variable", 7, {}, 0, {noVariable}},
  };
  for (const auto& [name, device, deviceWarnings, variable, variableWarnings] : rows) {
    SCOPED_TRACE(name);
    {
      const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
      EXPECT_EQ(message.getParamRequiredVarDeviceID(name), device);
      ExpectWarningsWithStack(log.records(), deviceWarnings, "getParamRequiredVarDeviceID");
    }
    {
      const tavrin_testing::LogCapture log(log4cplus::TRACE_LOG_LEVEL);
      EXPECT_EQ(message.getParamRequiredVarVariableID(name), variable);
      ExpectWarningsWithStack(log.records(), variableWarnings, "getParamRequiredVarVariableID");
    }
  }
}

// --- overriding ---

TEST_F(CmdMessageRequired, ConvertsOverriddenValues) {
  class Overriding : public CCmdMessage {
   public:
    using CCmdMessage::CCmdMessage;
    std::string getParamRequired(const std::string& name) const override { return name; }
  };
  const Overriding overriding("C", manager);
  EXPECT_EQ(overriding.getParamRequiredInt("17"), 17);
  EXPECT_EQ(overriding.getParamRequiredULong("18"), 18U);
  EXPECT_EQ(overriding.getParamRequiredBool("true"), true);
  EXPECT_EQ(overriding.getParamRequiredDouble("2,5", 1), 2.5);
  EXPECT_EQ(overriding.getParamRequiredIntRanged("19", 19, 19), 19);
}

TEST_F(CmdMessageRequired, ChecksTheRangeOfOverriddenValues) {
  class Overriding : public CCmdMessage {
   public:
    using CCmdMessage::CCmdMessage;
    std::int32_t getParamRequiredInt(const std::string& /*name*/) const override { return 17; }
  };
  const Overriding overriding("C", manager);
  EXPECT_EQ(overriding.getParamRequiredIntRanged("absent", 17, 17), 17);
  EXPECT_THROW(overriding.getParamRequiredIntRanged("absent", 0, 16), ExceptionParameterInvalid);
}

}  // namespace
