#include "Text.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace tool {

std::string PrintableLines(const std::string& text) {
  std::vector<std::string> lines;
  boost::algorithm::split(lines, text, boost::algorithm::is_any_of("\n"));
  std::transform(lines.begin(), lines.end(), lines.begin(),
                 [](const std::string& line) { return Printable(line); });
  if (lines.size() > 1 && lines.back().empty()) {
    lines.pop_back();
    lines.back() += "\\n";
  }
  return boost::algorithm::join(lines, "\\n\n");
}

std::string Counted(std::size_t count, const std::string& noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

}  // namespace tool
