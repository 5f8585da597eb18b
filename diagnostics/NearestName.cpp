#include <tavrin_diagnostics/Diagnostics.h>
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

namespace tavrin::diagnostics {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The optimal string alignment distance: how many letters are to be inserted, deleted, replaced or swapped
// with their neighbour.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> beforeLast;
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= left.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const bool isSame = Lower(left[i - 1]) == Lower(right[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame ? 0 : 1)});
      const bool isSwapped = i > 1 && j > 1 && Lower(left[i - 1]) == Lower(right[j - 2]) &&
                             Lower(left[i - 2]) == Lower(right[j - 1]);
      if (isSwapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast = last;
    last = row;
  }
  return last.back();
}

}  // namespace

std::string NearestName(std::string_view name, const std::vector<std::string>& candidates) {
  constexpr std::size_t longestName = 64;
  if (name.empty() || name.size() > longestName) return {};
  std::string nearest;
  std::size_t least = name.size() / 3 + 2;  // a distance from here on is none of a misspelling
  for (const std::string& candidate : candidates) {
    const std::size_t distance = Distance(name, candidate);
    if (distance >= least || distance >= candidate.size()) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace tavrin::diagnostics
