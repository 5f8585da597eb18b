#include "LineIndex.h"

#include <algorithm>

namespace zq::xml {

LineIndex::LineIndex(std::string_view text)
    : text_(text),
      unitSize_(text.size() >= 2 &&
                        (text[0] == '\0' || text[1] == '\0' || static_cast<unsigned char>(text[0]) >= 0xFE)
                    ? 2
                    : 1),
      lowByte_(unitSize_ == 2 && (text[0] == '\0' || text[0] == '\xFE') ? 1 : 0) {
  marks_.reserve(text.size() / stretchSize + 1);
  Mark mark;
  for (std::size_t begin = 0; begin <= text.size(); begin += stretchSize) {
    marks_.push_back(mark);
    mark = Advance(mark, begin, std::min(begin + stretchSize, text.size()));
  }
}

XmlPosition LineIndex::At(std::size_t offset) const {
  offset = std::min(offset, text_.size());
  const std::size_t stretch = offset / stretchSize;
  const Mark mark = Advance(marks_[stretch], stretch * stretchSize, offset);
  // A position within a unit that ends a line belongs to the next line.
  const auto begin = std::min<std::size_t>(mark.lineBegin, offset);
  return {mark.line, static_cast<std::uint32_t>(offset - begin) + 1};
}

LineIndex::Mark LineIndex::Advance(Mark mark, std::size_t from, std::size_t to) const {
  for (std::size_t at = from; at < to; at += unitSize_) {
    const char16_t unit = UnitAt(at);
    if (unit == u'\n' || (unit == u'\r' && UnitAt(at + unitSize_) != u'\n')) {
      ++mark.line;
      mark.lineBegin = static_cast<std::uint32_t>(at + unitSize_);
    }
  }
  return mark;
}

char16_t LineIndex::UnitAt(std::size_t offset) const {
  if (offset + unitSize_ > text_.size()) return 0;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text_[at]); };
  if (unitSize_ == 1) return byte(offset);
  return static_cast<char16_t>(byte(offset + lowByte_) | byte(offset + 1 - lowByte_) << 8U);
}

}  // namespace zq::xml
