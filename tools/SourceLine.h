#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <string>
#include <string_view>
#include <vector>

#include "Console.h"

namespace tool {

// The line of a text that a diagnostic is about, as a terminal shows it, with a caret and underline below its
// place: two lines, and "" without a place. `secrets` are shown as asterisks, and a long line is cut around
// the place. The underline has the style.
std::string SourceLines(std::string_view source, const tavrin::diagnostics::Diagnostic& diagnostic,
                        const std::vector<tavrin::diagnostics::TextRange>& secrets, const Console& console,
                        int descriptor, const fmt::text_style& style);

// The characters in the bytes of a line before a column that is counted in bytes from 1.
std::size_t CharactersBefore(std::string_view source, const zq::XmlPosition& position);

}  // namespace tool
