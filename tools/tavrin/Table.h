#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Console.h"

namespace tool {

// Rows of untrusted strings in aligned columns, indented by two spaces. The table makes the cells printable
// and truncates very long ones; the last column may have several lines.
class Table {
 public:
  explicit Table(const std::vector<std::string>& header);

  // One cell for each column of the header.
  void AddRow(const std::vector<std::string>& cells);

  // Returns whether there are rows below the header.
  bool HasRows() const { return rows_.size() > 1; }

  // Only the header is coloured.
  void Print(std::ostream& os, const Console& console) const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tool
