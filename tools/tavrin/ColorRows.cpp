// A file of colours is one of
// - lines, each a colour in one of the forms of a command line;
// - CSV with a header, separated by comma, semicolon or tab. The colour of a row is the first form below
//   whose columns are in the header and whose cells are not empty. Other columns are ignored.
#include "ColorRows.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fmt/format.h>

#include <tavrin_colorimetry/Colorimetry.h>
#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "Csv.h"
#include "Numbers.h"
#include "Text.h"

namespace tool {
namespace {

namespace colorimetry = tavrin::colorimetry;

using Cells = std::vector<std::string>;

double Number(const std::string& cell) {
  const std::optional<double> number = WholeNumber<double>(cell);
  if (!number) throw std::invalid_argument(fmt::format("{} is not a number", Quoted(cell)));
  return *number;
}

// A way to state a colour in columns.
struct Form {
  Cells columns;
  GivenColor (*read)(const std::string& text, const Cells& cells);  // the text as typed
};

const std::vector<Form>& Forms() {
  static const std::vector<Form> forms = {
      {{"color"}, [](const std::string& text, const Cells&) { return ReadColor(text); }},
      {{"x", "y", "mode"}, [](const std::string& text, const Cells&) { return ReadColor(text); }},
      {{"x", "y"}, [](const std::string& text, const Cells&) { return Describe(text, ReadPoint(text)); }},
      {{"u'", "v'"},
       [](const std::string& text, const Cells& cells) {
         return FromChromaticity("u'v' " + text,
                                 colorimetry::FromUv1976({Number(cells[0]), Number(cells[1])}));
       }},
      {{"u", "v"},
       [](const std::string& text, const Cells& cells) {
         return FromChromaticity("uv " + text, colorimetry::FromUv1960({Number(cells[0]), Number(cells[1])}));
       }},
      {{"kelvin", "duv"},
       [](const std::string&, const Cells& cells) {
         return FromKelvin(fmt::format("{} K, Duv {}", cells[0], cells[1]), Number(cells[0]),
                           Number(cells[1]));
       }},
      {{"kelvin"},
       [](const std::string& text, const Cells& cells) { return FromKelvin(text + " K", Number(cells[0])); }},
      {{"mired"},
       [](const std::string& text, const Cells& cells) {
         return FromKelvin(text + " mired", colorimetry::FromMired(Number(cells[0])));
       }},
      {{"hex"}, [](const std::string& text, const Cells&) { return ReadRgb(text); }},
      {{"r", "g", "b"}, [](const std::string& text, const Cells&) { return ReadRgb(text); }},
  };
  return forms;
}

// The names of the columns of each form.
std::string ColumnName(std::string cell) {
  boost::algorithm::trim(cell);
  boost::algorithm::to_lower(cell);
  if (cell == "colour") return "color";
  if (cell == "name") return "label";
  if (cell == "cct") return "kelvin";
  return cell;
}

class Header {
 public:
  explicit Header(const Cells& cells) {
    std::transform(cells.begin(), cells.end(), std::back_inserter(names_), ColumnName);
  }

  std::size_t Size() const { return names_.size(); }

  bool Has(const std::string& name) const { return IndexOf(name) < Size(); }

  bool Has(const Form& form) const {
    return std::all_of(form.columns.begin(), form.columns.end(),
                       [this](const std::string& column) { return Has(column); });
  }

  // Returns the trimmed cell of a column, or "" if it is absent.
  std::string CellOf(const std::string& name, const Cells& cells) const {
    return Has(name) ? boost::algorithm::trim_copy(cells[IndexOf(name)]) : "";
  }

 private:
  std::size_t IndexOf(const std::string& name) const {
    return static_cast<std::size_t>(std::find(names_.begin(), names_.end(), name) - names_.begin());
  }

  Cells names_;
};

// A decimal comma would become a separator when cells are joined.
void RefuseCommas(const Cells& cells) {
  for (const std::string& cell : cells)
    if (cell.find(',') != std::string::npos)
      throw std::invalid_argument(
          fmt::format("{} is not a number; the decimal separator is a point", Quoted(cell)));
}

GivenColor ReadCells(const Header& header, const Cells& cells) {
  if (cells.size() != header.Size())
    throw std::invalid_argument(fmt::format("expected {} fields, found {}", header.Size(), cells.size()));
  for (const Form& form : Forms()) {
    Cells values;
    for (const std::string& column : form.columns) values.push_back(header.CellOf(column, cells));
    if (std::find(values.begin(), values.end(), "") != values.end()) continue;
    if (form.columns.size() > 1) RefuseCommas(values);
    GivenColor color = form.read(boost::algorithm::join(values, ","), values);
    const std::string label = header.CellOf("label", cells);
    if (!label.empty()) color.name = label;
    return color;
  }
  throw std::invalid_argument("the row contains no colour");
}

template <typename Read>
ColorRow RowOf(std::uint32_t line, Read read) {
  try {
    return {line, read(), ""};
  } catch (const std::invalid_argument& error) {
    return {line, std::nullopt, error.what()};
  }
}

std::vector<ColorRow> ReadCsv(const Header& header, CsvReader& reader) {
  std::vector<ColorRow> rows;
  while (const std::optional<CsvRow> row = reader.Next()) {
    rows.push_back(RowOf(row->line, [&] {
      if (row->isQuoteOpen) throw std::invalid_argument("a quoted field has no closing quote");
      return ReadCells(header, row->cells);
    }));
  }
  return rows;
}

std::vector<ColorRow> ReadLines(std::string_view content) {
  std::vector<ColorRow> rows;
  for (std::uint32_t line = 1; !content.empty(); ++line) {
    const std::size_t end = std::min(content.find('\n'), content.size());
    const std::string text = boost::algorithm::trim_copy(std::string(content.substr(0, end)));
    if (!text.empty()) rows.push_back(RowOf(line, [&text] { return ReadColor(text); }));
    content.remove_prefix(std::min(end + 1, content.size()));
  }
  return rows;
}

// The first separator in the first line.
char SeparatorOf(std::string_view content) {
  const std::string_view line = content.substr(0, content.find_first_of("\r\n"));
  const std::size_t separator = line.find_first_of(",;\t");
  return separator == std::string_view::npos ? ',' : line[separator];
}

}  // namespace

std::vector<ColorRow> ReadColorRows(std::string_view content) {
  constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
  if (content.substr(0, byteOrderMark.size()) == byteOrderMark) content.remove_prefix(byteOrderMark.size());
  CsvReader reader(content, SeparatorOf(content));
  const Header header(reader.Next().value_or(CsvRow()).cells);
  const bool isCsv =
      std::any_of(Forms().begin(), Forms().end(), [&header](const Form& form) { return header.Has(form); });
  return isCsv ? ReadCsv(header, reader) : ReadLines(content);
}

}  // namespace tool
