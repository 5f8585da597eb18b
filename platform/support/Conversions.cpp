#include "tavrin_platform/Conversions.h"

#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>

namespace {

// Skips white space and a plus sign. std::from_chars accepts only a minus sign.
const char* SkipToNumber(const char* text) {
  text += std::strspn(text, WHITESPACE);
  return *text == '+' && text[1] != '-' ? text + 1 : text;
}

std::int64_t ReadInteger(const char* text) {
  using Limits = std::numeric_limits<std::int64_t>;
  const char* const begin = SkipToNumber(text);
  const char* const end = begin + std::strspn(begin, "-0123456789");
  std::int64_t number = 0;
  if (std::from_chars(begin, end, number).ec == std::errc::result_out_of_range)
    return *begin == '-' ? Limits::min() : Limits::max();
  return number;
}

// Returns whether a number out of range, [begin, end), is too large rather than too close to zero. The
// position of its first significant digit relative to the decimal point, and the exponent, decide.
bool IsTooLarge(const char* begin, const char* end) {
  const char* const exponent = std::find_if(begin, end, [](char c) { return c == 'e' || c == 'E'; });
  const char* const digit = std::find_if(begin, exponent, [](char c) { return c >= '1' && c <= '9'; });
  const std::ptrdiff_t places = std::find(begin, exponent, '.') - digit;
  return (exponent == end ? 0 : ReadInteger(exponent + 1)) > -places;
}

// `characters` are the characters of a number, which excludes "inf" and "nan".
double ReadDouble(const char* text, const char* characters) {
  const char* const begin = SkipToNumber(text);
  double number = 0;
  const auto [end, error] = std::from_chars(begin, begin + std::strspn(begin, characters), number);
  if (error != std::errc::result_out_of_range) return number;
  const double limit = IsTooLarge(begin, end) ? std::numeric_limits<double>::max() : 0;
  return *begin == '-' ? -limit : limit;
}

char DecimalPoint(const std::locale& locale) {
  return std::use_facet<std::numpunct<char>>(locale).decimal_point();
}

}  // namespace

std::int32_t zq::ToInt32(const std::string& text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(ReadInteger(text.c_str()), Limits::min(), Limits::max()));
}

std::uint32_t zq::ToUInt32(const std::string& text) {
  constexpr std::int64_t max = std::numeric_limits<std::uint32_t>::max();
  const std::int64_t number = ReadInteger(text.c_str());
  return static_cast<std::uint32_t>(number < -max ? max : std::min(number, max));
}

double zq::ToDouble(const char* text, const std::locale& locale) {
  constexpr const char* characters = "+-.0123456789Ee";
  const char point = DecimalPoint(locale);
  if (point == '.') return ReadDouble(text, characters);

  std::string number(text, std::strcspn(text, "."));
  std::replace(number.begin(), number.end(), point, '.');
  return ReadDouble(number.c_str(), characters);
}

double zq::ToDouble(const std::string& text, const std::locale& locale) {
  return ToDouble(text.c_str(), locale);
}

std::string zq::ToString(bool value) { return value ? TRUE_STRING : FALSE_STRING; }

std::string zq::ToString(double value, unsigned int precision, const std::locale& locale) {
  if (std::isnan(value)) return "nan";

  // The maximum number of digits of a double on either side of the point.
  using Limits = std::numeric_limits<double>;
  constexpr int wholeDigits = Limits::max_exponent10 + 1;
  constexpr int fractionDigits = Limits::digits - Limits::min_exponent;
  std::array<char, 1 + wholeDigits + 1 + fractionDigits> buffer;

  const auto digits = static_cast<int>(std::min<unsigned int>(precision, fractionDigits));
  char* const begin = buffer.data();
  char* end = std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, digits).ptr;

  char* const point = std::find(begin, end, '.');
  if (point != end) {
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    *point = DecimalPoint(locale);
  }
  std::string text(begin, end);
  if (text == "-0") return "0";
  return text;
}
