#include "SourceLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "Text.h"

namespace tool {
namespace {

using tavrin::diagnostics::Diagnostic;
using tavrin::diagnostics::TextRange;

// The columns of a line that fit a common terminal after the line number.
constexpr std::size_t mostColumns = 72;
constexpr std::size_t tabWidth = 4;

// The bytes before and after a position that are shown at most.
constexpr std::size_t mostBytes = 1000;

// A part of a line in its shown form, and its width in columns.
struct Piece {
  std::string text;
  std::size_t width;
  bool isMarked;
};

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; }

// Returns the bytes of the character at a position. Malformed UTF-8 is shown as escapes, byte by byte or in
// small groups.
std::size_t CharacterEnd(std::string_view source, std::size_t at, std::size_t end) {
  constexpr std::size_t longest = 4;
  const std::size_t last = std::min(end, at + longest);
  std::size_t behind = at + 1;
  while (behind < last && IsContinuation(source[behind])) ++behind;
  return behind;
}

std::vector<Piece> PiecesOf(std::string_view source, const TextRange& line, const TextRange& marked,
                            const std::vector<TextRange>& secrets) {
  std::vector<Piece> pieces;
  std::size_t column = 0;
  auto secret = std::upper_bound(secrets.begin(), secrets.end(), line.begin,
                                 [](std::size_t at, const TextRange& range) { return at < range.end; });
  for (std::size_t at = line.begin; at < line.end;) {
    while (secret != secrets.end() && secret->end <= at) ++secret;
    const bool isSecret = secret != secrets.end() && secret->begin <= at;
    const std::size_t end = isSecret ? std::min(secret->end, line.end) : CharacterEnd(source, at, line.end);
    const bool isMarked = at < std::max(marked.end, marked.begin + 1) && end > marked.begin;
    std::string text;
    if (isSecret)
      text = tavrin::diagnostics::MaskedValue();
    else if (source[at] == '\t')
      text = std::string(tabWidth - column % tabWidth, ' ');
    else if (source[at] == '\\')
      text = "\\";  // not an escape here
    else
      text = Printable(source.substr(at, end - at));
    const std::size_t width = DisplayWidth(text);
    column += width;
    pieces.push_back({std::move(text), width, isMarked});
    at = end;
  }
  return pieces;
}

// Truncates the line far from the marked bytes.
void Cut(std::vector<Piece>& pieces) {
  std::size_t width = 0;
  for (const Piece& piece : pieces) width += piece.width;
  if (width <= mostColumns) return;
  const auto marked =
      std::find_if(pieces.begin(), pieces.end(), [](const Piece& piece) { return piece.isMarked; });
  auto first = marked;
  std::size_t before = 0;
  while (first != pieces.begin() && before < mostColumns / 3) before += (--first)->width;
  auto last = first;
  std::size_t shown = 0;
  while (last != pieces.end() && shown + last->width <= mostColumns) shown += (last++)->width;
  const bool isCutBefore = first != pieces.begin();
  const bool isCutBehind = last != pieces.end();
  std::vector<Piece> cut;
  if (isCutBefore) cut.push_back({"...", 3, false});
  cut.insert(cut.end(), first, last);
  if (isCutBehind) cut.push_back({"...", 3, false});
  pieces = std::move(cut);
}

// Returns the part of a line around the marked bytes, in whole characters.
TextRange Surroundings(std::string_view text, const TextRange& line, const TextRange& marked) {
  TextRange part = line;
  if (marked.begin - line.begin > mostBytes) part.begin = marked.begin - mostBytes;
  if (line.end - marked.begin > mostBytes) part.end = marked.begin + mostBytes;
  while (part.begin < marked.begin && part.begin != line.begin && IsContinuation(text[part.begin]))
    ++part.begin;
  while (part.end < line.end && IsContinuation(text[part.end])) ++part.end;
  return part;
}

}  // namespace

std::string SourceLines(const SourceText& source, const Diagnostic& diagnostic,
                        const std::vector<TextRange>& secrets, const Console& console, int descriptor,
                        const fmt::text_style& style) {
  if (diagnostic.begin.line == 0 || source.Text().empty()) return "";
  const TextRange line = source.Line(diagnostic.begin.line);
  TextRange marked;
  marked.begin = std::min(line.begin + diagnostic.begin.column - 1, line.end);
  marked.end = marked.begin + 1;
  if (diagnostic.end.line == diagnostic.begin.line) marked.end = line.begin + diagnostic.end.column - 1;
  if (diagnostic.end.line > diagnostic.begin.line) marked.end = line.end;

  std::vector<Piece> pieces =
      PiecesOf(source.Text(), Surroundings(source.Text(), line, marked), marked, secrets);
  if (marked.begin >= line.end) pieces.push_back({" ", 1, true});
  Cut(pieces);
  std::string text;
  std::string underline;
  bool isFirst = true;
  for (const Piece& piece : pieces) {
    text += piece.text;
    if (!piece.isMarked) {
      if (isFirst) underline += std::string(piece.width, ' ');
    } else if (piece.width > 0) {
      underline += (isFirst ? "^" : "~") + std::string(piece.width - 1, '~');
      isFirst = false;
    }
  }
  const std::string number = std::to_string(diagnostic.begin.line);
  text.erase(text.find_last_not_of(' ') + 1);
  return fmt::format("  {} | {}\n  {} | {}\n", number, text, std::string(number.size(), ' '),
                     console.Paint(underline, style, descriptor));
}

std::size_t CharactersBefore(const SourceText& source, const zq::XmlPosition& position) {
  const TextRange line = source.Line(position.line);
  const std::string_view before = source.Text().substr(line.begin, position.column - 1);
  return static_cast<std::size_t>(
      std::count_if(before.begin(), before.end(), [](char c) { return !IsContinuation(c); }));
}

}  // namespace tool
