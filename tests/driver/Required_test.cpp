#include <gmock/gmock.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/Required.h>
#include <tavrin_testing/Errors.h>
#include <tavrin_testing/FakeVariables.h>
#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using tavrin_testing::ErrorOf;
using zq::Case;
using zq::ReadableMessage;

enum class Mode { off, heat, cool };

class Required : public testing::Test {
 protected:
  // A command SET_POINT whose parameter CELSIUS has that value.
  const ICmdMessage& With(const std::string& value) {
    command.overwriteParam("CELSIUS", "number", value);
    return command;
  }

  tavrin_testing::FakeVariables manager;
  CCmdMessage command{"SET_POINT", manager};
};

// --- numbers ---

TEST_F(Required, DoubleIsDecimalWithAPointOrAComma) {
  const struct {
    const char* text;
    double number;
  } rows[] = {{"21.5", 21.5},        {"21,5", 21.5}, {"1,234", 1.234}, {"-40", -40}, {"+5", 5},
              {".5", 0.5},           {",5", 0.5},    {"5.", 5},        {"1e2", 100}, {"1,5E-1", 0.15},
              {" \t21.5\r\n", 21.5}, {"007", 7},     {"1e-999", 0},    {"0", 0},     {"-0,0", 0}};
  for (const auto& row : rows)
    EXPECT_EQ(zq::RequireDouble(With(row.text), "CELSIUS"), row.number) << row.text;
}

TEST_F(Required, DoubleRejectsEverythingElse) {
  for (const char* text :
       {"",   " ",   "many", "12 lamps", "21.5C", "1.234,5", "1,234.5", "1.2.3",  ".",   ",",   "-",    "+-1",
        "1e", "1e+", "e5",   "0x10",     "nan",   "inf",     "1e999",   "-1e999", "2 1", "--1", "1_000"})
    EXPECT_THROW(zq::RequireDouble(With(text), "CELSIUS"), ExceptionParameterInvalid) << text;
}

TEST_F(Required, IntIsDecimalAndWhole) {
  const struct {
    const char* text;
    std::int32_t number;
  } rows[] = {{"21", 21},
              {"-21", -21},
              {"+21", 21},
              {"0021", 21},
              {" 21\n", 21},
              {"2147483647", 2147483647},
              {"-2147483648", std::numeric_limits<std::int32_t>::min()}};
  for (const auto& row : rows) EXPECT_EQ(zq::RequireInt(With(row.text), "CELSIUS"), row.number) << row.text;
}

TEST_F(Required, IntRejectsEverythingElse) {
  for (const char* text : {"", "many", "12 lamps", "21.0", "21,5", "1e2", "-", "2147483648", "-2147483649",
                           "99999999999999999999999", "0x10"})
    EXPECT_THROW(zq::RequireInt(With(text), "CELSIUS"), ExceptionParameterInvalid) << text;
}

TEST_F(Required, NumbersAreWithinTheirBounds) {
  EXPECT_EQ(zq::RequireDouble(With("5"), "CELSIUS", {5, 30}), 5);
  EXPECT_EQ(zq::RequireDouble(With("30"), "CELSIUS", {5, 30}), 30);
  EXPECT_EQ(zq::RequireInt(With("5"), "CELSIUS", {5, 30}), 5);
  EXPECT_EQ(zq::RequireInt(With("30"), "CELSIUS", {5, 30}), 30);
  const std::string prefix = "command \"SET_POINT\": parameter \"CELSIUS\" is ";
  const auto readDouble = [&](const zq::Range<double>& range) {
    return [&] { zq::RequireDouble(command, "CELSIUS", range); };
  };
  With("30.1");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>(readDouble({5, 30})),
            prefix + "\"30.1\", expected a number from 5 to 30");
  With("4.9");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>(readDouble({5})),
            prefix + "\"4.9\", expected a number from 5");
  With("30.1");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>(readDouble({std::numeric_limits<double>::lowest(), 30})),
            prefix + "\"30.1\", expected a number up to 30");
  With("many");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>(readDouble({})), prefix + "\"many\", expected a number");
  With("31");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>([&] {
              zq::RequireInt(command, "CELSIUS", {5, 30});
            }),
            prefix + "\"31\", expected a whole number from 5 to 30");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>([&] { zq::RequireInt(command, "CELSIUS", {50}); }),
            prefix + "\"31\", expected a whole number from 50 to 2147483647");
}

TEST_F(Required, NumbersDoNotDependOnTheLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\1"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
  EXPECT_EQ(zq::RequireDouble(With("1234.5"), "CELSIUS"), 1234.5);
  EXPECT_EQ(zq::RequireDouble(With("1234,5"), "CELSIUS"), 1234.5);
  EXPECT_EQ(
      ErrorOf<ExceptionParameterInvalid>([&] {
        zq::RequireInt(With("x"), "CELSIUS", {1000, 2000});
      }),
      "command \"SET_POINT\": parameter \"CELSIUS\" is \"x\", expected a whole number from 1000 to 2000");
  std::locale::global(before);
}

// --- words ---

TEST_F(Required, BoolAcceptsTheSpellingsOfAllMessages) {
  for (const char* text : {"true", "TRUE", "True", "1", " true\n"})
    EXPECT_TRUE(zq::RequireBool(With(text), "CELSIUS")) << text;
  for (const char* text : {"false", "FALSE", "False", "0"})
    EXPECT_FALSE(zq::RequireBool(With(text), "CELSIUS")) << text;
  for (const char* text : {"", "T", "Y", "N", "yes", "on", "10", "truely", "2"})
    EXPECT_THROW(zq::RequireBool(With(text), "CELSIUS"), ExceptionParameterInvalid) << text;
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>([&] { zq::RequireBool(With("yes"), "CELSIUS"); }),
            "command \"SET_POINT\": parameter \"CELSIUS\" is \"yes\", expected \"true\", \"false\", \"1\" or "
            "\"0\"");
}

TEST_F(Required, WordIsOneOfAList) {
  const std::vector<std::string> words = {"HEAT", "COOL", "OFF"};
  EXPECT_EQ(zq::RequireWord(With("COOL"), "CELSIUS", words), "COOL");
  EXPECT_EQ(zq::RequireWord(With(" OFF "), "CELSIUS", words), "OFF");
  EXPECT_EQ(zq::RequireWord(With("heat"), "CELSIUS", words, Case::ignored), "HEAT");
  const std::string list = R"(expected "HEAT", "COOL" or "OFF")";
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>([&] { zq::RequireWord(With("heat"), "CELSIUS", words); }),
              testing::EndsWith("is \"heat\", " + list));
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>(
                  [&] { zq::RequireWord(With("dry"), "CELSIUS", words, Case::ignored); }),
              testing::EndsWith("is \"dry\", " + list + " in upper or lower case"));
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>([&] { zq::RequireWord(With("dry"), "CELSIUS", {"OFF"}); }),
              testing::EndsWith("expected \"OFF\""));
}

TEST_F(Required, EnumReturnsTheMeaningOfAWord) {
  const std::vector<std::pair<std::string, Mode>> modes = {
      {"OFF", Mode::off}, {"HEAT", Mode::heat}, {"AUTO", Mode::heat}, {"COOL", Mode::cool}};
  EXPECT_EQ(zq::RequireEnum(With("AUTO"), "CELSIUS", modes), Mode::heat);
  EXPECT_EQ(zq::RequireEnum(With("cool"), "CELSIUS", modes, Case::ignored), Mode::cool);
  EXPECT_EQ(zq::RequireEnum<Mode>(With("OFF"), "CELSIUS", {{"OFF", Mode::off}}), Mode::off);
  EXPECT_THAT(ErrorOf<ExceptionParameterInvalid>([&] { zq::RequireEnum(With("cool"), "CELSIUS", modes); }),
              testing::EndsWith(R"(is "cool", expected "OFF", "HEAT", "AUTO" or "COOL")"));
}

TEST_F(Required, TextAcceptsAnything) {
  EXPECT_EQ(zq::RequireText(With(" any\t"), "CELSIUS"), " any\t");
  EXPECT_EQ(zq::RequireText(With(""), "CELSIUS"), "");
}

// --- absent parameters ---

const std::vector<std::pair<const char*, std::function<void(const ReadableMessage&)>>> reads = {
    {"", [](const auto& message) { zq::RequireText(message, "LEVEL"); }},
    {", expected a whole number from 1 to 2",
     [](const auto& message) {
       zq::RequireInt(message, "LEVEL", {1, 2});
     }},
    {", expected a number", [](const auto& message) { zq::RequireDouble(message, "LEVEL"); }},
    {R"(, expected "true", "false", "1" or "0")",
     [](const auto& message) { zq::RequireBool(message, "LEVEL"); }},
    {R"(, expected "A" or "B")",
     [](const auto& message) {
       zq::RequireWord(message, "LEVEL", {"A", "B"});
     }},
    {R"(, expected "A")",
     [](const auto& message) {
       zq::RequireEnum<Mode>(message, "LEVEL", {{"A", Mode::off}});
     }},
};

TEST_F(Required, AbsentParametersAreNamed) {
  const CBindMessage notification = *CBindMessage::Create(IBindMessage::NOTIFY, "CHANGED");
  const CBindMessage binding = *CBindMessage::Create(IBindMessage::COMMAND, "GET");
  const CCondMessage conditional("IS", "EQUAL", {});
  for (const auto& [expected, read] : reads) {
    const auto text = [&require = read](const ReadableMessage& message) {
      return ErrorOf<ExceptionParameterMissing>([&] { require(message); });
    };
    EXPECT_EQ(text(command), std::string("command \"SET_POINT\": parameter \"LEVEL\" is missing") + expected);
    EXPECT_EQ(text(notification),
              std::string("notification \"CHANGED\": parameter \"LEVEL\" is missing") + expected);
    EXPECT_EQ(text(binding),
              std::string("binding command \"GET\": parameter \"LEVEL\" is missing") + expected);
    EXPECT_EQ(text(conditional),
              std::string("conditional \"IS\": parameter \"LEVEL\" is missing") + expected);
  }
}

TEST_F(Required, VariablesAreReadOnceAndNamedWhereTheyCannotBe) {
  command.addVarParam("LEVEL", "number", 7, 1001);
  manager.set(7, 1001, "2");
  EXPECT_EQ(zq::RequireInt(command, "LEVEL", {1, 2}), 2);
  EXPECT_EQ(manager.reads().size(), 1U);
  manager.clear();
  for (const auto& [expected, read] : reads) {
    EXPECT_EQ(
        ErrorOf<ExceptionParameterMissing>([&, &require = read] { require(command); }),
        std::string(
            "command \"SET_POINT\": parameter \"LEVEL\" cannot be read from variable 1001 of device 7") +
            expected);
  }
}

TEST_F(Required, VariablesOfOtherMessagesCannotBeRead) {
  const std::map<std::string, DriverParam> params = {{"LEVEL", {"LEVEL", "number", 7, 1001}}};
  CBindMessage binding;
  binding.Initialize(IBindMessage::NOTIFY, "CHANGED");
  binding.addParams(params);
  EXPECT_EQ(ErrorOf<ExceptionParameterMissing>([&] { zq::RequireText(binding, "LEVEL"); }),
            "notification \"CHANGED\": parameter \"LEVEL\" cannot be read from variable 1001 of device 7");
  EXPECT_EQ(
      ErrorOf<ExceptionParameterMissing>([&] { zq::RequireInt(CCondMessage("IS", "", params), "LEVEL"); }),
      "conditional \"IS\": parameter \"LEVEL\" cannot be read from variable 1001 of device 7, expected a "
      "whole "
      "number from -2147483648 to 2147483647");
}

// A message whose operations are overridden is read through them.
TEST_F(Required, OverridesAreCalled) {
  struct Odd : CCmdMessage {
    using CCmdMessage::CCmdMessage;
    bool hasParam(const std::string& name) const override { return name == "LEVEL"; }
    std::string getParamRequired(const std::string& /*name*/) const override {
      if (value.empty()) throw ExceptionParameterMissing();
      return value;
    }
    std::string value;
  } odd("ODD", manager);
  EXPECT_EQ(ErrorOf<ExceptionParameterMissing>([&] { zq::RequireText(odd, "LEVEL"); }),
            "command \"ODD\": parameter \"LEVEL\" cannot be read");
  odd.value = "5";
  EXPECT_EQ(zq::RequireInt(odd, "LEVEL"), 5);
}

TEST_F(Required, ExceptionsOfTheVariableManagerPropagate) {
  manager.failWith(7, 1001, std::logic_error("no connection"));
  command.addVarParam("LEVEL", "number", 7, 1001);
  EXPECT_EQ(ErrorOf<std::logic_error>([&] { zq::RequireInt(command, "LEVEL"); }), "no connection");
}

// --- defaults ---

TEST_F(Required, DefaultsCountForAbsentParametersOnly) {
  EXPECT_EQ(zq::OptionalText(command, "CELSIUS", "none"), "none");
  EXPECT_EQ(zq::OptionalInt(command, "CELSIUS", -1, {0, 100}), -1);
  EXPECT_EQ(zq::OptionalDouble(command, "CELSIUS", 0.5, {5, 30}), 0.5);
  EXPECT_TRUE(zq::OptionalBool(command, "CELSIUS", true));
  EXPECT_EQ(zq::OptionalWord(command, "CELSIUS", "AUTO", {"HEAT"}), "AUTO");
  EXPECT_EQ(zq::OptionalEnum(command, "CELSIUS", Mode::cool, {{"HEAT", Mode::heat}}), Mode::cool);

  EXPECT_EQ(zq::OptionalText(With("21"), "CELSIUS", "none"), "21");
  EXPECT_EQ(zq::OptionalInt(command, "CELSIUS", -1, {0, 100}), 21);
  EXPECT_EQ(zq::OptionalDouble(command, "CELSIUS", 0.5, {5, 30}), 21);
  EXPECT_FALSE(zq::OptionalBool(With("0"), "CELSIUS", true));
  EXPECT_EQ(zq::OptionalWord(With("heat"), "CELSIUS", "AUTO", {"HEAT"}, Case::ignored), "HEAT");
  EXPECT_EQ(zq::OptionalEnum(command, "CELSIUS", Mode::cool, {{"HEAT", Mode::heat}}, Case::ignored),
            Mode::heat);

  With("");
  EXPECT_EQ(zq::OptionalText(command, "CELSIUS", "none"), "");
  EXPECT_THROW(zq::OptionalInt(command, "CELSIUS", -1), zq::RequiredParameterInvalid);
  EXPECT_THROW(zq::OptionalDouble(command, "CELSIUS", 0.5), zq::RequiredParameterInvalid);
  EXPECT_THROW(zq::OptionalBool(command, "CELSIUS", true), zq::RequiredParameterInvalid);
  EXPECT_THROW(zq::OptionalWord(command, "CELSIUS", "AUTO", {"HEAT"}), zq::RequiredParameterInvalid);
  EXPECT_THROW(zq::OptionalEnum(command, "CELSIUS", Mode::cool, {{"HEAT", Mode::heat}}),
               zq::RequiredParameterInvalid);
  command.addVarParam("RAMP", "number", 7, 1001);
  EXPECT_THROW(zq::OptionalInt(command, "RAMP", 0), zq::RequiredParameterMissing);
}

// --- the data of a binding message ---

TEST_F(Required, DataIsANumber) {
  const auto data = [](const char* text) {
    return CBindMessage::Create(IBindMessage::NOTIFY, "SETPOINT", text);
  };
  EXPECT_EQ(zq::RequireDataDouble(*data("21,5")), 21.5);
  EXPECT_EQ(zq::RequireDataDouble(*data(" 5 "), {5, 30}), 5);
  EXPECT_EQ(zq::OptionalDataDouble(*data("21.5"), 0), 21.5);
  EXPECT_EQ(zq::OptionalDataDouble(*data(""), -1, {5, 30}), -1);
  EXPECT_EQ(ErrorOf<ExceptionParameterMissing>([&] { zq::RequireDataDouble(*data("")); }),
            "notification \"SETPOINT\": the data is missing, expected a number");
  EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>([&] {
              zq::RequireDataDouble(*data("21.5 C"), {5, 30});
            }),
            "notification \"SETPOINT\": the data is \"21.5 C\", expected a number from 5 to 30");
  EXPECT_THROW(zq::OptionalDataDouble(*data("4"), 5, {5, 30}), zq::RequiredParameterInvalid);
}

// --- error messages ---

TEST_F(Required, SecretsAreMasked) {
  for (const char* name : {"PIN", "pin", "ADMIN_PASSWORD"}) {
    command.overwriteParam(name, "string", "47 11");
    EXPECT_EQ(ErrorOf<ExceptionParameterInvalid>([&] {
                zq::RequireInt(command, name, {0, 9999});
              }),
              std::string("command \"SET_POINT\": parameter \"") + name +
                  "\" is \"******\", expected a whole number from 0 to 9999");
  }
}

TEST_F(Required, ValuesInMessagesFitIntoOneLine) {
  const auto shown = [&](const std::string& value) {
    const std::string text = ErrorOf<ExceptionParameterInvalid>([&] {
      zq::RequireInt(With(value), "CELSIUS", {0, 9});
    });
    const std::string start = "command \"SET_POINT\": parameter \"CELSIUS\" is ";
    const std::string end = ", expected a whole number from 0 to 9";
    EXPECT_THAT(text, testing::AllOf(testing::StartsWith(start), testing::EndsWith(end)));
    return text.substr(start.size(), text.size() - start.size() - end.size());
  };
  EXPECT_EQ(shown("a\nb\x1B\x7F"), "\"a\\x0ab\\x1b\\x7f\"");
  EXPECT_EQ(shown(std::string(64, 'a')), '"' + std::string(64, 'a') + '"');
  EXPECT_EQ(shown(std::string(65, 'a')), '"' + std::string(64, 'a') + "\"...");
  EXPECT_EQ(shown(std::string(63, 'a') + "\xC3\xA4 more"), '"' + std::string(63, 'a') + "\"...");
  EXPECT_EQ(shown(std::string(80, '\x80')).size(), 60U + 5U) << "not UTF-8: cut all the same";
}

TEST_F(Required, ExceptionsDeriveFromThePublishedTypes) {
  EXPECT_THROW(zq::RequireInt(command, "LEVEL"), zq::RequiredParameterMissing);
  EXPECT_THROW(zq::RequireInt(With("x"), "CELSIUS"), zq::RequiredParameterInvalid);
  static_assert(std::is_base_of_v<ExceptionParameterMissing, zq::RequiredParameterMissing>);
  static_assert(std::is_base_of_v<ExceptionParameterInvalid, zq::RequiredParameterInvalid>);
  static_assert(std::is_nothrow_copy_constructible_v<zq::RequiredParameterInvalid>);
}

}  // namespace
