// Conversions between numbers and strings, compared with naive ones and with each other.

#include <tavrin_platform/Conversions.h>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include "Naive.h"
#include "Require.h"
#include "Target.h"

namespace {

class DecimalComma : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

const std::locale& CommaLocale() {
  static const std::locale locale(std::locale::classic(), new DecimalComma);
  return locale;
}

bool AreSame(double left, double right) { return left == right && std::signbit(left) == std::signbit(right); }

void CheckReading(const std::string& text) {
  RequireEqual(zq::ToInt32(text), naive::Int32(text), "an integer is the leading number, clamped");
  RequireEqual(zq::ToUInt32(text), naive::UInt32(text), "an unsigned integer is clamped and wraps");

  const double number = zq::ToDouble(text, std::locale::classic());
  RequireEqual(number, naive::Double(text), "a number is the leading one");
  Require(std::isfinite(number), "a number is finite");
  Require(AreSame(zq::ToDouble(text.c_str(), std::locale::classic()), number), "both overloads agree");
  RequireEqual(zq::ToDouble(text, CommaLocale()), naive::Double(text, ','),
               "the decimal point is that of the locale");
}

// With all digits, and without trailing zeros.
std::string Written(double value, unsigned int precision) {
  if (std::isnan(value)) return "nan";
  const int length = std::snprintf(nullptr, 0, "%.*f", static_cast<int>(precision), value);
  std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
  Require(std::snprintf(buffer.data(), buffer.size(), "%.*f", static_cast<int>(precision), value) == length,
          "a number is as long as it was said to be");
  std::string text = buffer.data();
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

void CheckWriting(double value, unsigned int precision) {
  const std::string text = zq::ToString(value, precision, std::locale::classic());
  RequireEqual(text, Written(value, precision), "a number is written with the given number of digits");
  std::string withComma = text;
  std::replace(withComma.begin(), withComma.end(), '.', ',');
  RequireEqual(zq::ToString(value, precision, CommaLocale()), withComma, "the point is that of the locale");
  if (!std::isfinite(value)) return;

  const double again = zq::ToDouble(text, std::locale::classic());
  RequireEqual(zq::ToString(again, precision, std::locale::classic()), text,
               "what was written reads as itself");
  constexpr unsigned int all =
      std::numeric_limits<double>::digits - std::numeric_limits<double>::min_exponent;
  for (const std::locale& locale : {std::locale::classic(), CommaLocale()})
    RequireEqual(zq::ToDouble(zq::ToString(value, all, locale), locale), value,
                 "with all digits nothing is lost");
}

void CheckInteger(std::int32_t number) {
  RequireEqual(zq::ToInt32(std::to_string(number)), number, "an integer survives its text");
  const auto unsignedNumber = static_cast<std::uint32_t>(number);
  RequireEqual(zq::ToUInt32(std::to_string(unsignedNumber)), unsignedNumber, "so does an unsigned one");
  RequireEqual(zq::ToString(static_cast<double>(number), 6, std::locale::classic()), std::to_string(number),
               "an integer is written the same as a double");
}

}  // namespace

void UseInput(const std::string& input) {
  zq::ToInt32(input);
  zq::ToUInt32(input);
  zq::ToDouble(input, std::locale::classic());
}

void CheckInput(const std::string& input) {
  CheckReading(input);

  // The same bytes, interpreted as numbers.
  double value = 0;
  std::memcpy(&value, input.data(), std::min(input.size(), sizeof value));
  const unsigned int precision =
      input.size() > sizeof value ? static_cast<unsigned char>(input[sizeof value]) : 6;
  CheckWriting(value, precision);
  std::int32_t number = 0;
  std::memcpy(&number, input.data(), std::min(input.size(), sizeof number));
  CheckInteger(number);
}
