#pragma once

#include <algorithm>
#include <array>
#include <string_view>

// The comparisons of conditionals.
namespace tavrin {

enum class Comparison { unknown, equal, notEqual, lessThan, lessOrEqual, greaterThan, greaterOrEqual };

struct ComparisonName {
  std::string_view name;
  Comparison comparison;
};

inline constexpr std::array<ComparisonName, 6> comparisonNames = {{
    {"EQUAL", Comparison::equal},
    {"NOT_EQUAL", Comparison::notEqual},
    {"LESS_THAN", Comparison::lessThan},
    {"LESS_THAN_OR_EQUAL", Comparison::lessOrEqual},
    {"GREATER_THAN", Comparison::greaterThan},
    {"GREATER_THAN_OR_EQUAL", Comparison::greaterOrEqual},
}};

inline Comparison ComparisonOf(std::string_view name) {
  const auto* const found =
      std::find_if(comparisonNames.begin(), comparisonNames.end(),
                   [name](const ComparisonName& candidate) { return candidate.name == name; });
  return found == comparisonNames.end() ? Comparison::unknown : found->comparison;
}

// Evaluates the comparison with the operators of the left operand's type.
template <typename Left, typename Right>
bool Holds(Comparison comparison, const Left& left, const Right& right) {
  // GCOVR_EXCL_BR_START: there are no other values, but the switch has a branch for them.
  switch (comparison) {
    // GCOVR_EXCL_BR_STOP
    case Comparison::equal:
      return left == right;
    case Comparison::notEqual:
      return left != right;
    case Comparison::lessThan:
      return left < right;
    case Comparison::lessOrEqual:
      return left <= right;
    case Comparison::greaterThan:
      return left > right;
    case Comparison::greaterOrEqual:
      return left >= right;
    case Comparison::unknown:
      break;
  }
  return false;
}

// Evaluates the comparison of values without an order: only equality and inequality can be true.
inline bool HoldsUnordered(Comparison comparison, bool isEqual) {
  return comparison == Comparison::equal ? isEqual : comparison == Comparison::notEqual && !isEqual;
}

}  // namespace tavrin
