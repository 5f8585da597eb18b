#pragma once

#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

// Converts between the bytes of a text and their positions. Lines end at LF, CR LF and CR. The text has to
// exist as long as the object.
class SourceText {
 public:
  explicit SourceText(std::string_view text);

  std::string_view Text() const { return text_; }

  // The position of a byte, or of the end of the text.
  zq::XmlPosition PositionAt(std::size_t offset) const;

  // The byte at a position of this text.
  std::size_t OffsetOf(const zq::XmlPosition& position) const;

 private:
  std::string_view text_;
  std::vector<std::size_t> lineBegins_ = {0};
};

}  // namespace tavrin::diagnostics
