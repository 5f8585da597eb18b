#include "SourceText.h"

#include <algorithm>
#include <cstdint>

namespace tavrin::diagnostics {

SourceText::SourceText(std::string_view text) : text_(text) {
  constexpr std::string_view lineEnds = "\r\n";
  for (std::size_t at = text.find_first_of(lineEnds); at != std::string_view::npos;
       at = text.find_first_of(lineEnds, at)) {
    at += text.substr(at, lineEnds.size()) == lineEnds ? lineEnds.size() : 1;
    lineBegins_.push_back(at);
  }
}

zq::XmlPosition SourceText::PositionAt(std::size_t offset) const {
  const auto line = std::prev(std::upper_bound(lineBegins_.begin(), lineBegins_.end(), offset));
  return {static_cast<std::uint32_t>(line - lineBegins_.begin() + 1),
          static_cast<std::uint32_t>(offset - *line + 1)};
}

std::size_t SourceText::OffsetOf(const zq::XmlPosition& position) const {
  const std::size_t line = std::min<std::size_t>(position.line, lineBegins_.size());
  return std::min(lineBegins_[line - 1] + position.column - 1, text_.size());
}

TextRange SourceText::Line(std::uint32_t number) const {
  if (number > lineBegins_.size()) return {text_.size(), text_.size()};
  const std::size_t begin = lineBegins_[number - 1];
  if (number == lineBegins_.size()) return {begin, text_.size()};
  const std::string_view line = text_.substr(begin, lineBegins_[number] - begin);
  return {begin, begin + line.find_last_not_of("\r\n") + 1};
}

}  // namespace tavrin::diagnostics
