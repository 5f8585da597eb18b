#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Console.h"

namespace tool {

// A text, and the positions of its lines. Line endings are LF, CR LF and CR.
class SourceText {
 public:
  explicit SourceText(std::string_view text);

  std::string_view Text() const { return text_; }

  // Returns the bytes of a line without its ending.
  tavrin::diagnostics::TextRange Line(std::uint32_t number) const;

 private:
  std::string_view text_;
  std::vector<std::size_t> lineBegins_ = {0};
};

// Returns the line of a diagnostic for a terminal, with a caret and underline in the given style below its
// position: two lines, or "" without a position. `secrets` are shown as asterisks, and a long line is
// truncated around the position.
std::string SourceLines(const SourceText& source, const tavrin::diagnostics::Diagnostic& diagnostic,
                        const std::vector<tavrin::diagnostics::TextRange>& secrets, const Console& console,
                        int descriptor, const fmt::text_style& style);

// Returns the number of characters in a line before a column that is counted in bytes from 1.
std::size_t CharactersBefore(const SourceText& source, const zq::XmlPosition& position);

}  // namespace tool
