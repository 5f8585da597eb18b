#include "tavrin_diagnostics/PrintableText.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/locale/utf.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace tavrin::diagnostics {
namespace {

using CodePoint = boost::locale::utf::code_point;

struct Range {
  CodePoint first;
  CodePoint last;
};

// Characters that a terminal obeys or does not show: controls, direction marks, zero-width characters, line
// separators, byte order marks and tags.
constexpr Range unsafe[] = {{0x00, 0x1f},     {0x7f, 0x9f},     {0xad, 0xad},      {0x61c, 0x61c},
                            {0x180e, 0x180e}, {0x200b, 0x200f}, {0x2028, 0x202e},  {0x2060, 0x206f},
                            {0xfeff, 0xfeff}, {0xfff9, 0xfffb}, {0xe0000, 0xe0fff}};

// Combining marks and variation selectors.
constexpr Range zeroWidth[] = {{0x300, 0x36f},   {0x1ab0, 0x1aff}, {0x1dc0, 0x1dff},
                               {0x20d0, 0x20ff}, {0xfe00, 0xfe0f}, {0xfe20, 0xfe2f}};

// East Asian scripts and pictographs.
constexpr Range doubleWidth[] = {{0x1100, 0x115f},   {0x2e80, 0x303e},   {0x3041, 0xa4cf},  {0xac00, 0xd7a3},
                                 {0xf900, 0xfaff},   {0xfe30, 0xfe6f},   {0xff00, 0xff60},  {0xffe0, 0xffe6},
                                 {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd}};

template <std::size_t count>
bool IsIn(const Range (&ranges)[count], CodePoint codePoint) {
  return std::any_of(std::begin(ranges), std::end(ranges), [codePoint](const Range& range) {
    return codePoint >= range.first && codePoint <= range.last;
  });
}

// Calls visit(code point, its bytes) for each character, and with each byte that belongs to none.
template <typename Visit>
void ForEachCharacter(std::string_view text, Visit visit) {
  using Utf8 = boost::locale::utf::utf_traits<char>;
  for (const char* at = text.data(); at != text.data() + text.size();) {
    const char* const start = at;
    const CodePoint codePoint = Utf8::decode(at, text.data() + text.size());
    if (!boost::locale::utf::is_valid_codepoint(codePoint)) at = start + 1;
    visit(codePoint, std::string_view(start, static_cast<std::size_t>(at - start)));
  }
}

std::string Escaped(CodePoint codePoint, std::string_view bytes) {
  switch (codePoint) {
    case '\t':
      return "\\t";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\\':
      return "\\\\";
    default:
      return bytes.size() == 1 ? fmt::format("\\x{:02x}", static_cast<unsigned char>(bytes.front()))
                               : fmt::format("\\u{{{:x}}}", codePoint);
  }
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string result;
  ForEachCharacter(text, [&result](CodePoint codePoint, std::string_view bytes) {
    const bool escape =
        codePoint == '\\' || !boost::locale::utf::is_valid_codepoint(codePoint) || IsIn(unsafe, codePoint);
    result += escape ? Escaped(codePoint, bytes) : std::string(bytes);
  });
  return result;
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t most = 100;
  return '"' + boost::algorithm::replace_all_copy(Printable(Shortened(text, most)), "\"", "\\\"") + '"';
}

std::string ErrorText(std::string_view text) {
  constexpr std::size_t most = 200;
  return Printable(Shortened(text, most));
}

std::string Shortened(std::string_view text, std::size_t most) {
  if (text.size() <= most) return std::string(text);
  const auto continues = [&text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xc0U) == 0x80U;
  };
  std::size_t end = most;
  while (end > 0 && most - end < 3 && continues(end)) --end;
  return fmt::format("{}... ({} bytes in all)", text.substr(0, end), text.size());
}

std::size_t DisplayWidth(std::string_view line) {
  std::size_t width = 0;
  ForEachCharacter(line, [&width](CodePoint codePoint, std::string_view) {
    width += IsIn(zeroWidth, codePoint) ? 0U : IsIn(doubleWidth, codePoint) ? 2U : 1U;
  });
  return width;
}

}  // namespace tavrin::diagnostics
