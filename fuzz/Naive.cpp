#include "Naive.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>

namespace {

constexpr std::int64_t beyondAll = 1'000'000'000'000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsXmlBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Reads a string from its beginning.
class Cursor {
 public:
  explicit Cursor(const std::string& text) : text_(text) {}

  bool Skip(char c) {
    if (at_ == text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  void SkipSpace() {
    while (at_ != text_.size() && IsSpace(text_[at_])) ++at_;
  }

  std::string Sign() { return Skip('-') ? "-" : Skip('+') ? "+" : ""; }

  std::string Digits() {
    std::string digits;
    while (at_ != text_.size() && IsDigit(text_[at_])) digits += text_[at_++];
    return digits;
  }

 private:
  const std::string& text_;
  std::size_t at_ = 0;
};

std::int64_t Magnitude(const std::string& digits) {
  std::int64_t number = 0;
  for (const char digit : digits) number = std::min(number * 10 + (digit - '0'), beyondAll);
  return number;
}

struct Integer {
  bool isNegative;
  std::int64_t magnitude;
};

Integer LeadingInteger(const std::string& text) {
  Cursor cursor(text);
  cursor.SkipSpace();
  const bool isNegative = cursor.Sign() == "-";
  return {isNegative, Magnitude(cursor.Digits())};
}

// Returns the character at a position of a string, or "" if none that XML allows begins there.
std::string CharacterAt(const std::string& text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::uint32_t code = length == 1 ? lead : lead - (length == 2 ? 0xC0U : length == 3 ? 0xE0U : 0xF0U);
  for (std::size_t i = 1; i < length; ++i) {
    if (at + i == text.size()) return "";
    const auto next = static_cast<unsigned char>(text[at + i]);
    if (next < 0x80 || next > 0xBF) return "";
    code = code * 64 + (next - 0x80U);
  }
  const std::uint32_t shortest = length == 1 ? 0 : length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
  const bool isXml = code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
                     (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
  const bool isLead = lead < 0x80 || (lead >= 0xC0 && lead < 0xF8);
  return isLead && isXml && code >= shortest ? text.substr(at, length) : "";
}

}  // namespace

std::int32_t naive::Int32(const std::string& text) {
  const Integer number = LeadingInteger(text);
  if (number.isNegative) return static_cast<std::int32_t>(-std::min(number.magnitude, INT64_C(2147483648)));
  return static_cast<std::int32_t>(std::min(number.magnitude, INT64_C(2147483647)));
}

std::uint32_t naive::UInt32(const std::string& text) {
  const Integer number = LeadingInteger(text);
  if (number.magnitude > INT64_C(4294967295)) return UINT32_MAX;
  return static_cast<std::uint32_t>(number.isNegative ? -number.magnitude : number.magnitude);
}

double naive::Double(const std::string& text, char point) {
  Cursor cursor(text);
  cursor.SkipSpace();
  const std::string sign = cursor.Sign();
  const std::string whole = cursor.Digits();
  const std::string fraction = cursor.Skip(point) ? cursor.Digits() : "";
  if (whole.empty() && fraction.empty()) return 0;
  std::string number = sign + whole + "." + fraction;
  if (cursor.Skip('e') || cursor.Skip('E')) {
    const std::string exponentSign = cursor.Sign();
    const std::string exponent = cursor.Digits();
    if (!exponent.empty()) number += "e" + exponentSign + exponent;
  }
  const double value = std::strtod(number.c_str(), nullptr);
  return std::isinf(value) ? std::copysign(DBL_MAX, value) : value;
}

std::optional<std::int64_t> naive::WholeNumber(const std::string& text, std::int64_t max) {
  const auto isNoBlank = [](char c) { return !IsXmlBlank(c); };
  const auto first = std::find_if(text.begin(), text.end(), isNoBlank);
  if (first == text.end()) return 0;
  const auto last = std::find_if(text.rbegin(), text.rend(), isNoBlank).base();

  const bool isSigned = *first == '+' || *first == '-';
  const std::string digits(first + (isSigned ? 1 : 0), last);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), IsDigit)) return {};
  const std::int64_t number = *first == '-' ? -Magnitude(digits) : Magnitude(digits);
  if (number < INT64_C(-2147483648) || number > max) return {};
  return number;
}

std::string naive::Writable(const std::string& text) {
  std::string written;
  for (std::size_t at = 0; at < text.size();) {
    const std::string character = CharacterAt(text, at);
    written += character.empty() ? "\xEF\xBF\xBD" : character;
    at += character.empty() ? 1 : character.size();
  }
  return written;
}

bool naive::IsBlank(const std::string& text) { return std::all_of(text.begin(), text.end(), IsXmlBlank); }

bool naive::IsSecret(const std::string& name) {
  std::string lower;
  for (const char c : name) lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return lower == "pin" || lower.find("password") != std::string::npos;
}

std::vector<std::string> naive::Parts(const std::string& input, std::size_t count) {
  constexpr char separator = '\x1F';
  std::vector<std::string> parts(1);
  for (const char c : input) {
    if (c == separator && parts.size() < count)
      parts.emplace_back();
    else
      parts.back() += c;
  }
  parts.resize(count);
  return parts;
}
