#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/TextConstants.h>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <vector>

namespace {

using Doubles = std::numeric_limits<double>;
using std::string_literals::operator""s;

const std::locale& classic = std::locale::classic();
const std::locale german("de_DE.UTF-8");

template <typename Number>
struct Reading {
  std::string text;
  Number number;
};

// Numbers around a power of two, and the limits of wider types that a wrong implementation would use.
constexpr const char* twoTo64 = "18446744073709551616";

}  // namespace

TEST(Conversions, ToInt32ReadsTheLeadingNumberWithin32Bits) {
  const std::vector<Reading<std::int32_t>> readings = {
      {"0", 0},
      {"75", 75},
      {"-42", -42},
      {"+5", 5},
      {"-0", 0},
      {"007", 7},
      {"12abc", 12},
      {"50.7", 50},
      {"1e3", 1},
      {"0x10", 0},
      {" \t\r\n\v\f8", 8},
      {" -8", -8},
      {"12 34", 12},
      {"12-34", 12},
      {"7\0008"s, 7},
      {"", 0},
      {" ", 0},
      {"abc", 0},
      {"-", 0},
      {"+", 0},
      {"--5", 0},
      {"+-5", 0},
      {"-+5", 0},
      {"++5", 0},
      {"- 5", 0},
      {"\0005"s, 0},
      {"2147483646", 2147483646},
      {"2147483647", 2147483647},
      {"2147483648", 2147483647},
      {"4294967296", 2147483647},
      {"4294967301", 2147483647},
      {"9223372036854775807", 2147483647},
      {"9223372036854775808", 2147483647},
      {twoTo64, 2147483647},
      {std::string(1000, '9'), 2147483647},
      {"-2147483647", -2147483647},
      {"-2147483648", std::numeric_limits<std::int32_t>::min()},
      {"-2147483649", std::numeric_limits<std::int32_t>::min()},
      {"-4294967297", std::numeric_limits<std::int32_t>::min()},
      {"-9223372036854775809", std::numeric_limits<std::int32_t>::min()},
      {"-" + std::string(1000, '9'), std::numeric_limits<std::int32_t>::min()},
      {std::string(1000, '0') + "9", 9},
  };
  for (const auto& [text, number] : readings) EXPECT_EQ(zq::ToInt32(text), number) << '"' << text << '"';
}

TEST(Conversions, ToUInt32ClampsLargeNumbersAndWrapsNegativeOnes) {
  const std::vector<Reading<std::uint32_t>> readings = {
      {"0", 0},
      {"75", 75},
      {"+5", 5},
      {" \v7x", 7},
      {"", 0},
      {"on", 0},
      {"+-5", 0},
      {"2147483648", 2147483648},
      {"4294967295", 4294967295},
      {"4294967296", 4294967295},
      {"9223372036854775808", 4294967295},
      {twoTo64, 4294967295},
      {"-0", 0},
      {"-1", 4294967295},
      {"-5", 4294967291},
      {"-2147483648", 2147483648},
      {"-4294967294", 2},
      {"-4294967295", 1},
      {"-4294967296", 4294967295},
      {"-9223372036854775809", 4294967295},
      {"-" + std::string(1000, '9'), 4294967295},
  };
  for (const auto& [text, number] : readings) EXPECT_EQ(zq::ToUInt32(text), number) << '"' << text << '"';
}

TEST(Conversions, ToDoubleReadsDecimalAndExponentNotation) {
  const std::string manyZeros(400, '0');
  const std::vector<Reading<double>> readings = {
      {"0", 0},
      {"2.5", 2.5},
      {"-2.5", -2.5},
      {"+2.5", 2.5},
      {".5", 0.5},
      {"-.5", -0.5},
      {"5.", 5},
      {"5.e1", 50},
      {"1e3", 1000},
      {"1E3", 1000},
      {"1e+3", 1000},
      {"25e-1", 2.5},
      {"1e", 1},
      {"1e+", 1},
      {"1ex", 1},
      {"1.5.5", 1.5},
      {"1-2", 1},
      {"21.5C", 21.5},
      {" \t\r\n\v\f21.5", 21.5},
      {"2,5", 2},
      {"1,000.5", 1},
      {"1\0005"s, 1},
      {"0.1", 0.1},
      {"0.30000000000000004", 0.1 + 0.2},
      {"1.7976931348623157e308", Doubles::max()},
      {"2.2250738585072014e-308", Doubles::min()},
      {"5e-324", Doubles::denorm_min()},
      {"1" + manyZeros + "e-400", 1},
      {"0." + manyZeros + "1e401", 1},
  };
  for (const auto& [text, number] : readings) {
    EXPECT_EQ(zq::ToDouble(text, classic), number) << '"' << text << '"';
    EXPECT_EQ(zq::ToDouble(text.c_str(), classic), number) << '"' << text << '"';
  }
}

TEST(Conversions, ToDoubleOfWhatIsNotANumberIsZero) {
  const std::vector<std::string> texts = {"",
                                          " ",
                                          "-",
                                          "+",
                                          ".",
                                          "-.",
                                          "e5",
                                          ".e5",
                                          "--5",
                                          "+-5",
                                          "-+5",
                                          "++5",
                                          "- 5",
                                          "nan",
                                          "NAN",
                                          "inf",
                                          "-inf",
                                          "+Inf",
                                          "infinity",
                                          "nan(1)",
                                          "x",
                                          "T",
                                          ",5",
                                          "\0005"s,
                                          "E",
                                          "- .5",
                                          "\xC2\xA0"s
                                          "5"};
  for (const std::string& text : texts) EXPECT_EQ(zq::ToDouble(text, classic), 0) << '"' << text << '"';
}

TEST(Conversions, ToDoubleReadsNoHexadecimalNotation) {
  EXPECT_EQ(zq::ToDouble("0x10", classic), 0);
  EXPECT_EQ(zq::ToDouble("0x1p4", classic), 0);
}

TEST(Conversions, ToDoubleClampsToTheLargestNumberAndToZero) {
  const std::string zeros(400, '0');
  const std::vector<Reading<double>> readings = {
      {"1.7976931348623159e308", Doubles::max()},
      {"1e309", Doubles::max()},
      {"-1e309", Doubles::lowest()},
      {"1e99999999999999999999", Doubles::max()},
      {"-1e99999999999999999999", Doubles::lowest()},
      {"0.00001e9999", Doubles::max()},
      {"1" + zeros, Doubles::max()},
      {"9" + zeros, Doubles::max()},
      {"-1" + zeros + ".5", Doubles::lowest()},
      {"1" + zeros + "e-10", Doubles::max()},
      {"000" + zeros + "1E310", Doubles::max()},
      {"2e-324", 0},
      {"-1e-400", 0},
      {"1E-400", 0},
      {"1e-99999999999999999999", 0},
      {"123456e-9999", 0},
      {"0." + zeros + "1", 0},
      {"0." + zeros + "1e10", 0},
      {"0e99999", 0},
      {"0.0e-99999", 0},
  };
  for (const auto& [text, number] : readings) EXPECT_EQ(zq::ToDouble(text, classic), number) << text;
}

TEST(Conversions, ToDoubleUsesTheDecimalPointOfTheLocale) {
  const std::vector<Reading<double>> readings = {
      {"2,5", 2.5},
      {"-,5e1", -5},
      {"2.5", 2},
      {"1.000,5", 1},
      {"2,5.5", 2.5},
      {"2,5,5", 2.5},
      {"1,5e999", Doubles::max()},
      {"0,5e-999", 0},
  };
  for (const auto& [text, number] : readings) {
    EXPECT_EQ(zq::ToDouble(text, german), number) << text;
    EXPECT_EQ(zq::ToDouble(text.c_str(), german), number) << text;
  }
}

TEST(Conversions, ProcessLocaleDoesNotMatter) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
  const std::locale previous = std::locale::global(german);

  EXPECT_EQ(zq::ToDouble("2.5", classic), 2.5);
  EXPECT_EQ(zq::ToDouble("2,5", classic), 2);
  EXPECT_EQ(zq::ToString(1234567.5, 6, classic), "1234567.5");
  EXPECT_EQ(zq::ToInt32("1234567"), 1234567);

  std::locale::global(previous);
  EXPECT_NE(std::setlocale(LC_ALL, before.c_str()), nullptr);
}

TEST(Conversions, BooleansAreWords) {
  EXPECT_EQ(zq::ToString(true), "true");
  EXPECT_EQ(zq::ToString(false), "false");
}

TEST(Conversions, ToStringRoundsAndDropsTrailingZeros) {
  struct Writing {
    double value;
    unsigned int precision;
    std::string text;
  };
  const std::vector<Writing> writings = {
      {0, 6, "0"},
      {-0.0, 6, "0"},
      {1, 6, "1"},
      {-1, 6, "-1"},
      {100, 6, "100"},
      {100, 0, "100"},
      {2.5, 6, "2.5"},
      {-2.5, 6, "-2.5"},
      {21.50, 2, "21.5"},
      {0.1, 6, "0.1"},
      {1.0 / 3, 6, "0.333333"},
      {2.0 / 3, 6, "0.666667"},
      {0.999, 2, "1"},
      {9.999, 1, "10"},
      {0.125, 2, "0.12"},
      {0.375, 2, "0.38"},
      {2.5, 0, "2"},
      {3.5, 0, "4"},
      {0.0000004, 6, "0"},
      {-0.0000004, 6, "0"},
      {-0.0000006, 6, "-0.000001"},
      {-0.4, 0, "0"},
      {1e6, 6, "1000000"},
      {1e15, 0, "1000000000000000"},
      {123456789.125, 6, "123456789.125"},
      {0.1, 17, "0.10000000000000001"},
      {0.1, 20, "0.10000000000000000555"},
      {0.1, 60, "0.1000000000000000055511151231257827021181583404541015625"},
      {Doubles::quiet_NaN(), 6, "nan"},
      {-Doubles::quiet_NaN(), 6, "nan"},
      {Doubles::infinity(), 6, "inf"},
      {-Doubles::infinity(), 0, "-inf"},
  };
  for (const auto& [value, precision, text] : writings)
    EXPECT_EQ(zq::ToString(value, precision, classic), text) << value << " with " << precision;
}

TEST(Conversions, ToStringWritesEveryDigitOfADouble) {
  constexpr unsigned int all = std::numeric_limits<unsigned int>::max();
  EXPECT_EQ(zq::ToString(0.1, all, classic), zq::ToString(0.1, 60, classic));
  EXPECT_EQ(zq::ToString(Doubles::max(), all, classic).size(), 309U);
  EXPECT_EQ(zq::ToString(-Doubles::denorm_min(), all, classic).size(), 1U + 2U + 1074U);
  for (const double value : {Doubles::lowest(), Doubles::min(), Doubles::denorm_min(), -0.1, 1e22 / 3})
    EXPECT_EQ(zq::ToDouble(zq::ToString(value, all, classic), classic), value);
}

TEST(Conversions, ToStringWritesTheDecimalPointOfTheLocaleAndNoGrouping) {
  EXPECT_EQ(zq::ToString(1234567.5, 6, german), "1234567,5");
  EXPECT_EQ(zq::ToString(1234567, 6, german), "1234567");
  EXPECT_EQ(zq::ToString(-0.0, 6, german), "0");
}

TEST(TextConstants, HaveTheDocumentedValues) {
  EXPECT_EQ(TRUE_STRING, "true");
  EXPECT_EQ(FALSE_STRING, "false");
  EXPECT_EQ(VAR_TRUE_STRING, "1");
  EXPECT_EQ(VAR_FALSE_STRING, "0");
  EXPECT_EQ(EMPTY_STRING, "");
  EXPECT_STREQ(WHITESPACE, " \t\r\n\v\f");
}
