#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct CsvRow {
  std::uint32_t line = 0;  // the line in which it begins, from 1
  std::vector<std::string> cells;
  bool isQuoteOpen = false;  // a quote has no end: there are no cells, and the row ends with its first line
};

// Reads comma-separated values as RFC 4180 describes them, with any separator and any line ending. Empty
// lines are skipped. The text must outlive the reader.
class CsvReader {
 public:
  CsvReader(std::string_view text, char separator) : text_(text), separator_(separator) {}

  // Returns the next row, or no value at the end of the text.
  std::optional<CsvRow> Next();

 private:
  bool Finds(char c) const { return position_ < text_.size() && text_[position_] == c; }
  bool FindsLineEnding() const { return Finds('\r') || Finds('\n'); }
  char Take();
  std::string TakeCell(bool& isQuoteOpen);
  void TakeQuoted(std::string& cell, bool& isQuoteOpen);

  std::string_view text_;
  char separator_;
  std::size_t position_ = 0;
  std::uint32_t line_ = 1;
};

// A row with quotes where they are needed, and a newline.
std::string CsvLine(const std::vector<std::string>& cells);

}  // namespace tool
