#include "Text.h"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/locale/utf.hpp>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tool {
namespace {

using CodePoint = boost::locale::utf::code_point;

struct Range {
  CodePoint first;
  CodePoint last;
};

// Combining marks and variation selectors.
constexpr Range zeroWidth[] = {{0x300, 0x36f},   {0x1ab0, 0x1aff}, {0x1dc0, 0x1dff},
                               {0x20d0, 0x20ff}, {0xfe00, 0xfe0f}, {0xfe20, 0xfe2f}};

// East Asian scripts and pictographs.
constexpr Range doubleWidth[] = {{0x1100, 0x115f},   {0x2e80, 0x303e},   {0x3041, 0xa4cf},  {0xac00, 0xd7a3},
                                 {0xf900, 0xfaff},   {0xfe30, 0xfe6f},   {0xff00, 0xff60},  {0xffe0, 0xffe6},
                                 {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd}};

template <std::size_t N>
bool IsIn(const Range (&ranges)[N], CodePoint codePoint) {
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

}  // namespace

std::string PrintableLines(const std::string& text) {
  std::vector<std::string> lines;
  boost::algorithm::split(lines, text, boost::algorithm::is_any_of("\n"));
  std::transform(lines.begin(), lines.end(), lines.begin(),
                 [](const std::string& line) { return Printable(line); });
  if (lines.size() > 1 && lines.back().empty()) {
    lines.pop_back();
    lines.back() += "\\n";
  }
  return boost::algorithm::join(lines, "\\n\n");
}

std::size_t DisplayWidth(const std::string& line) {
  std::size_t width = 0;
  ForEachCharacter(line, [&width](CodePoint codePoint, std::string_view) {
    width += IsIn(zeroWidth, codePoint) ? 0U : IsIn(doubleWidth, codePoint) ? 2U : 1U;
  });
  return width;
}

}  // namespace tool
