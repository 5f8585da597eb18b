#include "Table.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <cstddef>

#include "Text.h"

namespace tool {
namespace {

constexpr std::size_t longestCell = 2000;
constexpr char gap[] = "  ";

std::string Padded(const std::string& cell, std::size_t width) {
  return cell + std::string(width - DisplayWidth(cell), ' ');
}

}  // namespace

Table::Table(const std::vector<std::string>& header) { AddRow(header); }

void Table::AddRow(const std::vector<std::string>& cells) {
  std::vector<std::string> row;
  row.reserve(cells.size());
  for (const std::string& cell : cells) {
    const bool last = row.size() + 1 == cells.size();
    const std::string shortened = Shortened(cell, longestCell);
    row.push_back(last ? PrintableLines(shortened) : Printable(shortened));
  }
  rows_.push_back(std::move(row));
}

void Table::Print(std::ostream& os, const Console& console) const {
  const std::size_t lastColumn = rows_.front().size() - 1;
  std::vector<std::size_t> widths(lastColumn, 0);
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < lastColumn; ++i) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
  }
  std::string indent = gap;
  for (const std::size_t width : widths) indent += std::string(width, ' ') + gap;

  for (const auto& row : rows_) {
    std::string line = gap;
    for (std::size_t i = 0; i < lastColumn; ++i) line += Padded(row[i], widths[i]) + gap;
    line += boost::algorithm::replace_all_copy(row[lastColumn], "\n", '\n' + indent);
    boost::algorithm::trim_right_if(line, [](char c) { return c == ' '; });
    os << (&row == &rows_.front() ? console.Paint(line, fmt::emphasis::bold) : line) << '\n';
  }
}

}  // namespace tool
