// Numbers that are added to messages: the compiler warns about calls that would change them, and the calls
// behave as before.

#include <gmock/gmock.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/Numbers.h>
#include <tavrin_testing/FakeVariables.h>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "RunProgram.h"
#include "TextFiles.h"

namespace {

using testing::HasSubstr;
using zq::changesAsInt32;
using zq::comparesAsInt32;

// --- reported types ---

static_assert(changesAsInt32<double> && changesAsInt32<float> && changesAsInt32<long double>);
static_assert(changesAsInt32<std::uint32_t> && changesAsInt32<std::int64_t> && changesAsInt32<std::uint64_t>);
static_assert(changesAsInt32<bool> && changesAsInt32<char> && changesAsInt32<wchar_t>);
static_assert(!changesAsInt32<std::int32_t> && !changesAsInt32<std::int16_t> && !changesAsInt32<std::int8_t>);
static_assert(!changesAsInt32<std::uint16_t> && !changesAsInt32<std::uint8_t>);
static_assert(changesAsInt32<long> == (sizeof(long) > sizeof(std::int32_t)));
enum Level { low, high };
enum class State { off, on };
static_assert(!changesAsInt32<Level> && !changesAsInt32<State> && !changesAsInt32<const char*>);

static_assert(comparesAsInt32<std::uint32_t, std::int32_t> && comparesAsInt32<std::int16_t, std::int64_t>);
static_assert(!comparesAsInt32<std::uint32_t, std::uint32_t>, "is ambiguous");
static_assert(!comparesAsInt32<std::int32_t, double>, "is ambiguous");
static_assert(!comparesAsInt32<std::int32_t, char>);
static_assert(!comparesAsInt32<std::int32_t, std::nullptr_t>);

// --- warnings ---

struct Line {
  std::string code;
  std::string advice;  // must be part of the warning; empty: no warning
};

// Compiles the lines in one program, and checks the warnings for each.
void ExpectAdvice(const std::vector<Line>& lines, const std::string& flags) {
  const std::filesystem::path source =
      std::filesystem::path(testing::TempDir()) / ("numbers." + std::to_string(getpid()) + ".cpp");
  std::ofstream file(source);
  file << "#include <tavrin_driver/BindMessage.h>\n"
          "#include <tavrin_driver/CmdMessage.h>\n"
          "#include <tavrin_driver/CondMessage.h>\n"
          "enum Level { low, high }; enum Wide : unsigned { wide };\n"
          "void Use(CCmdMessage& command, ICmdMessage& anyCommand, CBindMessage& binding, IBindMessage& "
          "anyBinding,\n"
          "         CCondMessage& conditional, ICondMessage& anyConditional,\n"
          "         const LevelMeasure::LevelPoint& point) {\n";
  const int first = 8;
  for (const Line& line : lines) file << line.code << '\n';
  file << "}\n";
  file.close();
  const ProgramOutcome outcome = RunProgram(
      {{"/bin/sh", "-c",
        "exec " TAVRIN_CXX_COMPILER " " TAVRIN_CXX_FLAGS " -std=c++17 -fsyntax-only"
        " -Wall -Wextra -Wpedantic -Wno-braced-scalar-init " +
            flags +
            " -isystem /usr/include/jsoncpp -I '" TAVRIN_SOURCE_DIR "/include' -I '" TAVRIN_SOURCE_DIR "' '" +
            source.string() + "'"},
       "",
       {{"LC_ALL", "C"}},
       ".",
       false,
       ""});
  std::filesystem::remove(source);
  EXPECT_EQ(outcome.status, 0) << outcome;
  std::map<int, std::string> said;
  for (const std::string& message : LinesOf(outcome.err)) {
    const std::string start = source.string() + ':';
    if (message.rfind(start, 0) == 0 && std::isdigit(message[start.size()]) != 0)
      said[std::stoi(message.substr(start.size()))] += message;
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& warning = said[first + static_cast<int>(i)];
    if (lines[i].advice.empty()) {
      EXPECT_EQ(warning, "") << lines[i].code;
    } else {
      EXPECT_THAT(warning, HasSubstr("is deprecated: ")) << lines[i].code;
      EXPECT_THAT(warning, HasSubstr(lines[i].advice)) << lines[i].code;
    }
  }
}

TEST(Numbers, CallsThatChangeThemAreReportedWithTheRightCall) {
  const std::string data = "the data is converted to std::int32_t; use ";
  const std::string value = "the value is converted to std::int32_t; use ";
  const std::string yourself = ", or convert it yourself [";  // the compiler adds the name of the warning
  std::vector<Line> lines = {
      {"CBindMessage::Create(IBindMessage::NOTIFY, \"S\", 21.5);",
       data + "Create with zq::ToText(data)" + yourself},
      {"CBindMessage::Create(IBindMessage::NOTIFY, \"S\", true);",
       data + "Create with zq::ToText(data)" + yourself},
      {"binding.Initialize(IBindMessage::NOTIFY, \"S\", 21.5f);",
       data + "Initialize with zq::ToText(data)" + yourself},
      {"anyBinding.Initialize(IBindMessage::NOTIFY, \"S\", 5U);",
       data + "Initialize with zq::ToText(data)" + yourself},
      {"binding.addParam(\"B\", \"number\", 0.5);", value + "addParamDouble for a fraction"},
      {"binding.addParam(\"B\", \"number\", true);", "addParam with zq::ToText(value) for a truth value"},
      {"anyBinding.addParam(\"B\", \"number\", 3000000000U);",
       "zq::ToText(value) for a truth value or an unsigned"},
      {"anyBinding.addParam(\"B\", \"number\", 0.5);", value + "addParamDouble for a fraction"},
      {"command.addParam(\"B\", \"number\", 0.5);", value + "addParamDouble for a fraction"},
      {"command.addParam(\"B\", \"number\", true);", "addParamBool for a truth value"},
      {"anyCommand.addParam(\"B\", \"number\", 3000000000U);", "addParamUInt for an unsigned number"},
      {"anyCommand.addParam(\"B\", \"number\", 5LL);", yourself},
      {"command.addParam(\"B\", \"string\", 'A');", value},
      {"command.overwriteParam(\"B\", \"number\", 0.5);",
       value + "overwriteParam with zq::ToText(value)" + yourself},
      {"anyCommand.overwriteParam(\"B\", \"number\", 0.5);",
       value + "overwriteParam with zq::ToText(value)" + yourself},
      {"conditional.Test(21.5, \"VALUE\");", value + "Test(double, double) with the number of the parameter"},
      {"anyConditional.Test(21.5, nullptr);",
       value + "Test(double, double) with the number of the parameter"},
      {"anyConditional.Test(true, nullptr);", "Test(bool) for a truth value"},
      {"conditional.Test(40U, 50);", "the numbers are converted to std::int32_t; use Test(double, double)"},
      {"anyConditional.Test(40, 50LL);",
       "the numbers are converted to std::int32_t; use Test(double, double), or convert them yourself ["},
      {"conditional.Test(\"ON\");", "the value is converted to bool; use Test(value, nullptr)"},
      {"anyConditional.Test(40);",
       "the value is converted to bool; use Test(value, nullptr) to compare it with the first parameter ["},
  };
  ExpectAdvice(lines, "");
}

TEST(Numbers, CallsThatKeepThemCompileWithoutAWarning) {
  std::vector<Line> lines;
  for (const char* code : {
           "CBindMessage::Create(IBindMessage::NOTIFY, \"S\", zq::ToText(21.5));",
           "CBindMessage::Create(IBindMessage::NOTIFY, \"S\", 21);",
           "CBindMessage::Create(IBindMessage::NOTIFY, \"S\", low);",
           "CBindMessage::Create(IBindMessage::NOTIFY, \"S\", \"text\");",
           "CBindMessage::Create(IBindMessage::NOTIFY, \"S\");",
           "CBindMessage::Create(command);",
           "binding.Initialize(IBindMessage::NOTIFY, \"S\", short{5});",
           "binding.Initialize(IBindMessage::NOTIFY, \"S\", std::string());",
           "binding.Initialize(anyCommand);",
           "anyBinding.Initialize(IBindMessage::NOTIFY, \"S\", zq::ToText(5U));",
           "anyBinding.Initialize(IBindMessage::NOTIFY, \"S\", static_cast<std::int32_t>(5U));",
           "binding.addParamDouble(\"B\", \"number\", 0.5);",
           "binding.addParam(\"B\", \"bool\", zq::ToText(true));",
           "binding.addParam(\"B\", \"number\", 0);",
           "anyBinding.addParam(\"B\", \"number\", wide);",
           "command.addParamDouble(\"B\", \"number\", 0.5);",
           "command.addParamBool(\"B\", \"bool\", true);",
           "command.addParamUInt(\"B\", \"number\", 3000000000U);",
           "command.addParam(\"B\", \"number\", static_cast<unsigned char>(5));",
           "command.addParam(\"B\", \"number\", {5});",
           "anyCommand.addParam(\"B\", \"number\", low);",
           "anyCommand.addParam(\"B\", \"string\", \"text\");",
           "command.overwriteParam(\"B\", \"number\", zq::ToText(0.5));",
           "command.overwriteParam(\"B\", \"number\", -1);",
           "conditional.Test(21.5, 21.0);",
           "conditional.Test(21.5F, 21.0F);",
           "conditional.Test(40, \"VALUE\");",
           "conditional.Test(0, nullptr);",
           "conditional.Test(40, 0);",
           "conditional.Test(short{40}, 'a');",
           "conditional.Test(\"ON\", nullptr);",
           "conditional.Test(true);",
           "conditional.Test(point, nullptr);",
           "anyConditional.Test(point, \"VALUE\");",
           "anyConditional.Test(low, nullptr);",
           ("void (IBindMessage::*add)(const std::string&, const std::string&, std::int32_t) = "
            "&IBindMessage::addParam;"),
           "(anyBinding.*add)(\"B\", \"number\", 1);",
           "bool (ICondMessage::*test)(std::int32_t, const char*) const = &ICondMessage::Test;",
           "(anyConditional.*test)(1, nullptr);",
       })
    lines.push_back({code, ""});
  ExpectAdvice(lines, "-Werror");
}

// --- behaviour ---

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

TEST(Numbers, CallsThatChangeThemBehaveAsBefore) {
  EXPECT_EQ(CBindMessage::Create(IBindMessage::NOTIFY, "S", 21.5)->getData(), "21");
  EXPECT_EQ(CBindMessage::Create(IBindMessage::NOTIFY, "S", 1e300)->getData(), "-2147483648");
  CBindMessage binding;
  binding.Initialize(IBindMessage::COMMAND, "S", 3000000000U);
  EXPECT_EQ(binding.getData(), "-1294967296");
  binding.Initialize(IBindMessage::COMMAND, "S", 1e300);
  EXPECT_EQ(binding.getData(), "-2147483648");
  IBindMessage& anyBinding = binding;
  anyBinding.Initialize(IBindMessage::NOTIFY, "S", true);
  EXPECT_EQ(binding.getData(), "1");
  binding.addParam("A", "number", 0.5);
  anyBinding.addParam("B", "number", true);
  binding.addParam("C", "number", 1e300);
  EXPECT_EQ(binding.getParam("A") + ' ' + binding.getParam("B") + ' ' + binding.getParam("C"),
            "0 1 -2147483648");

  tavrin_testing::FakeVariables manager;
  CCmdMessage command("C", manager);
  ICmdMessage& anyCommand = command;
  command.addParam("A", "number", -0.5F);
  anyCommand.addParam("B", "string", 'A');
  command.overwriteParam("C", "number", 3000000000U);
  anyCommand.overwriteParam("D", "number", std::int64_t{1} << 32U);
  EXPECT_EQ(command.getParam("A") + ' ' + command.getParam("B") + ' ' + command.getParam("C") + ' ' +
                command.getParam("D"),
            "0 65 -1294967296 0");
  command.addParam("E", "number", 1e300);
  anyCommand.overwriteParam("F", "number", 1e300);
  EXPECT_EQ(command.getParam("E") + ' ' + command.getParam("F"), "-2147483648 -2147483648");

  const CCondMessage conditional("N", "EQUAL", {{"VALUE", {"VALUE", "number", "21"}}});
  const ICondMessage& anyConditional = conditional;
  EXPECT_TRUE(conditional.Test(21.5, "VALUE"));
  EXPECT_TRUE(anyConditional.Test(21.5, nullptr));
  EXPECT_FALSE(anyConditional.Test(22.5, "VALUE"));
  EXPECT_FALSE(conditional.Test(true, nullptr));
  const CCondMessage lowest("N", "EQUAL", {{"VALUE", {"VALUE", "number", "-2147483648"}}});
  EXPECT_TRUE(lowest.Test(1e300, "VALUE"));
  EXPECT_TRUE(conditional.Test(3000000000U, -1294967296));
  EXPECT_TRUE(anyConditional.Test(0, std::int64_t{1} << 32U));
  EXPECT_TRUE(conditional.Test("OFF"));
  EXPECT_TRUE(anyConditional.Test(40));
  EXPECT_FALSE(anyConditional.Test(0));
}

// Classes that implement the interfaces may override the functions; the overloads call the overrides.
TEST(Numbers, CallsThatChangeThemReachOverrides) {
  struct Doubling : CBindMessage {
    using CBindMessage::addParam;
    void addParam(const std::string& name, const std::string& type, std::int32_t value) override {
      CBindMessage::addParam(name, type, 2 * value);
    }
  } message;
  message.addParam("A", "number", 21.5);
  EXPECT_EQ(message.getParam("A"), "42");
}

#pragma GCC diagnostic pop

TEST(Numbers, BecomeTheSameIntegerEverywhere) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<double, std::int32_t>> numbers = {
      {0.5, 0},
      {-0.5, 0},
      {2147483647.5, most},
      {2147483648.0, least},
      {-2147483648.5, least},
      {-2147483649.0, least},
      {1e300, least},
      {infinity, least},
      {-infinity, least},
      {std::numeric_limits<double>::quiet_NaN(), least},
  };
  for (const auto& [number, integer] : numbers) {
    EXPECT_EQ(zq::AsInt32(number), integer) << number;
    EXPECT_EQ(zq::AsInt32(static_cast<long double>(number)), integer) << number;
  }
  static_assert(zq::AsInt32(2147483648.0F) == least && zq::AsInt32(1e300) == least);
  static_assert(zq::AsInt32(3000000000U) == -1294967296 && zq::AsInt32(true) == 1);
}

// --- string form ---

TEST(Numbers, HaveTheStringFormOfMessages) {
  EXPECT_EQ(zq::ToText(21.5), "21.5");
  EXPECT_EQ(zq::ToText(21.5F), "21.5");
  EXPECT_EQ(zq::ToText(1.0 / 3), "0.333333");
  EXPECT_EQ(zq::ToText(-40), "-40");
  EXPECT_EQ(zq::ToText(3000000000U), "3000000000");
  EXPECT_EQ(zq::ToText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(zq::ToText(std::uint8_t{65}), "65");
  EXPECT_EQ(zq::ToText(true), "true");
  EXPECT_EQ(zq::ToText(false), "false");
}

}  // namespace
