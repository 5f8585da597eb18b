// The CSV reader: rows that were read, written and read again are equal, and line numbers are correct.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "Target.h"
#include "tools/tavrin/Csv.h"

namespace {

std::vector<tool::CsvRow> RowsOf(std::string_view text, char separator) {
  tool::CsvReader reader(text, separator);
  std::vector<tool::CsvRow> rows;
  while (auto row = reader.Next()) rows.push_back(std::move(*row));
  return rows;
}

// Line endings are "\r\n", "\n" and "\r".
std::uint32_t LinesIn(std::string_view text) {
  std::uint32_t lines = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool endsWithNext = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if ((text[i] == '\n' || text[i] == '\r') && !endsWithNext) ++lines;
  }
  return lines;
}

// In an input without quotes, a row is a line and its cells are the parts between separators.
void CheckPlain(std::string_view text, char separator, const std::vector<tool::CsvRow>& rows) {
  std::size_t characters = 0;
  for (const tool::CsvRow& row : rows) {
    characters += row.cells.size() - 1;
    for (const std::string& cell : row.cells) {
      characters += cell.size();
      Require(cell.find_first_of(std::string("\r\n") + separator) == std::string::npos,
              "cells have no separators");
    }
  }
  const auto isLineEnding = [](char c) { return c == '\r' || c == '\n'; };
  const auto endings = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isLineEnding));
  RequireEqual(characters + endings, text.size(), "cells, separators and line endings are the whole input");
}

void CheckRows(std::string_view text, char separator) {
  const std::vector<tool::CsvRow> rows = RowsOf(text, separator);
  std::uint32_t line = 0;
  std::string written;
  std::vector<std::vector<std::string>> kept;
  for (const tool::CsvRow& row : rows) {
    Require(row.line > line && row.line <= LinesIn(text), "every row begins in a separate line");
    line = row.line;
    RequireEqual(row.cells.empty(), row.isQuoteOpen, "only a row whose quote is open has no cells");
    if (row.isQuoteOpen) continue;
    kept.push_back(row.cells);
    written += tool::CsvLine(row.cells);
  }
  std::vector<std::vector<std::string>> again;
  for (const tool::CsvRow& row : RowsOf(written, ',')) again.push_back(row.cells);
  Require(again == kept, "what was written reads as the same cells");
  if (text.find('"') == std::string_view::npos) CheckPlain(text, separator, rows);
}

}  // namespace

void UseInput(const std::string& input) { RowsOf(input, ','); }

void CheckInput(const std::string& input) {
  for (const char separator : {',', ';', '\t'}) CheckRows(input, separator);
}
