#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <string>
#include <vector>

#include "Console.h"
#include "diagnostics/SourceText.h"

namespace tool {

using tavrin::diagnostics::SourceText;

// Returns the line of a diagnostic for a terminal, with a caret and underline in the given style below its
// position: two lines, or "" without a position. `secrets` are shown as asterisks, and a long line is
// truncated around the position.
std::string SourceLines(const SourceText& source, const tavrin::diagnostics::Diagnostic& diagnostic,
                        const std::vector<tavrin::diagnostics::TextRange>& secrets, const Console& console,
                        int descriptor, const fmt::text_style& style);

// Returns the number of characters in a line before a column that is counted in bytes from 1.
std::size_t CharactersBefore(const SourceText& source, const zq::XmlPosition& position);

}  // namespace tool
