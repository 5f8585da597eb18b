// The rows of CSV, after RFC 4180; quotes may also precede other characters of a cell:
//
//   row    = cell *(separator cell) line-ending
//   cell   = [quoted] *character
//   quoted = '"' *(character / separator / line-ending / '""') '"'
#include "Csv.h"

#include <boost/algorithm/string/replace.hpp>

namespace tool {

std::optional<CsvRow> CsvReader::Next() {
  while (FindsLineEnding()) Take();
  if (position_ == text_.size()) return std::nullopt;
  CsvRow row{line_, {}, false};
  const std::size_t start = position_;
  while (true) {
    row.cells.push_back(TakeCell(row.isQuoteOpen));
    if (!Finds(separator_)) break;
    Take();
  }
  if (row.isQuoteOpen) {
    row.cells.clear();
    line_ = row.line;
    position_ = text_.find_first_of("\r\n", start);
    if (position_ == std::string_view::npos) position_ = text_.size();
  }
  return row;
}

// A carriage return and a newline are one line ending.
char CsvReader::Take() {
  const char c = text_[position_++];
  if (c == '\n' || (c == '\r' && !Finds('\n'))) ++line_;
  return c;
}

std::string CsvReader::TakeCell(bool& isQuoteOpen) {
  std::string cell;
  if (Finds('"')) TakeQuoted(cell, isQuoteOpen);
  while (position_ < text_.size() && !Finds(separator_) && !FindsLineEnding()) cell += Take();
  return cell;
}

void CsvReader::TakeQuoted(std::string& cell, bool& isQuoteOpen) {
  Take();
  while (position_ < text_.size()) {
    const char c = Take();
    if (c == '"' && !Finds('"')) return;
    if (c == '"') Take();
    cell += c;
  }
  isQuoteOpen = true;
}

std::string CsvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) {
    if (&cell != &cells.front()) line += ',';
    const bool isEmptyRow = cells.size() == 1 && cell.empty();
    const bool needsQuotes = isEmptyRow || cell.find_first_of("\",;\t\r\n") != std::string::npos;
    line += needsQuotes ? '"' + boost::algorithm::replace_all_copy(cell, "\"", "\"\"") + '"' : cell;
  }
  return line + '\n';
}

}  // namespace tool
