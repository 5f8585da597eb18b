// A support library that uses the C library's number readers and C++ streams.

#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <limits>
#include <sstream>

const std::string TRUE_STRING("true");
const std::string FALSE_STRING("false");
const std::string VAR_TRUE_STRING("1");
const std::string VAR_FALSE_STRING("0");
const std::string EMPTY_STRING;
const char WHITESPACE[] = {' ', '\t', '\r', '\n', '\v', '\f', '\0'};

namespace {

long long ReadInteger(const std::string& text) {
  return std::strtoll(text.c_str() + std::strspn(text.c_str(), WHITESPACE), nullptr, 10);
}

char PointOf(const std::locale& locale) {
  return std::use_facet<std::numpunct<char>>(locale).decimal_point();
}

}  // namespace

namespace zq {

std::int32_t ToInt32(const std::string& text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<long long>(ReadInteger(text), Limits::min(), Limits::max()));
}

std::uint32_t ToUInt32(const std::string& text) {
  constexpr long long max = std::numeric_limits<std::uint32_t>::max();
  const long long number = ReadInteger(text);
  return static_cast<std::uint32_t>(number > max || number < -max ? max : number);
}

double ToDouble(const std::string& text, const std::locale& locale) { return ToDouble(text.c_str(), locale); }

double ToDouble(const char* text, const std::locale& locale) {
  const char point = PointOf(locale);
  text += std::strspn(text, WHITESPACE);
  // Truncated to the characters that can be part of a decimal number.
  std::string number(text, std::strspn(text, (std::string("+-0123456789Ee") + point).c_str()));
  std::replace(number.begin(), number.end(), point, '.');

  static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
  constexpr double max = std::numeric_limits<double>::max();
  return std::clamp(strtod_l(number.c_str(), nullptr, classic), -max, max);
}

std::string ToString(bool value) { return value ? "true" : "false"; }

std::string ToString(double value, unsigned int precision, const std::locale& locale) {
  if (std::isnan(value)) return "nan";
  constexpr unsigned int most = 1100;  // a double has fewer digits
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << std::fixed << std::setprecision(static_cast<int>(std::min(precision, most))) << value;
  std::string text = stream.str();

  const std::size_t point = text.find('.');
  if (point != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
      text.pop_back();
    else
      text[point] = PointOf(locale);
  }
  return text == "-0" ? "0" : text;
}

}  // namespace zq

zq::XmlNode::Ptr XmlHelper::AddChild(zq::XmlNode::Ptr& parent, const std::string& name,
                                     const std::string& text) {
  return parent->AddChild(name, text);
}
