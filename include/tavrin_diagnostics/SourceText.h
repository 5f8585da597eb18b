/// @file
/// Converts between the bytes of a text, its lines and positions.
#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

/// A text and the positions of its lines. Lines end at LF, CR LF or CR. The class does not own the text,
/// which must exist as long as the object.
///
/// @code
/// const tavrin::diagnostics::SourceText source(text);
/// for (const auto& secret : tavrin::diagnostics::SecretsIn(tavrin::diagnostics::Subject::command, text))
///   std::cout << "a secret in line " << source.PositionAt(secret.begin).line << std::endl;
/// @endcode
class TAVRIN_EXPORT SourceText {
 public:
  /// Finds the lines of @p text, in one pass.
  explicit SourceText(std::string_view text);

  /// Returns the text.
  std::string_view Text() const { return text_; }

  /// Returns the position of a byte, or of the end of the text. @p offset is at most the length of the text.
  zq::XmlPosition PositionAt(std::size_t offset) const;

  /// Returns the byte at a position of this text, at most the end of the text. @p position is not `{0, 0}`.
  std::size_t OffsetOf(const zq::XmlPosition& position) const;

  /// Returns the bytes of a line without its ending. @p number counts from 1; the range is empty, at the end
  /// of the text, for a line that does not exist.
  TextRange Line(std::uint32_t number) const;

 private:
  std::string_view text_;
  std::vector<std::size_t> lineBegins_ = {0};
};

}  // namespace tavrin::diagnostics
