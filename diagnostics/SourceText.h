#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

// Converts between the bytes of an input, its lines and positions. Lines end at LF, CR LF and CR. The input
// has to exist as long as the object. The tool compiles this class, too, because the library does not export
// it.
class SourceText {
 public:
  explicit SourceText(std::string_view text);

  std::string_view Text() const { return text_; }

  // Returns the position of a byte, or of the end of the text.
  zq::XmlPosition PositionAt(std::size_t offset) const;

  // Returns the byte at a position of this text, at most the end of the text.
  std::size_t OffsetOf(const zq::XmlPosition& position) const;

  // Returns the bytes of a line without its ending. `number` counts from 1. The range is empty, at the end of
  // the text, for a line that does not exist.
  TextRange Line(std::uint32_t number) const;

 private:
  std::string_view text_;
  std::vector<std::size_t> lineBegins_ = {0};
};

}  // namespace tavrin::diagnostics
