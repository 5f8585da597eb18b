#include "Collector.h"

#include <fmt/format.h>

#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <tuple>
#include <utility>

namespace tavrin::diagnostics {
namespace {

// The number of warnings and notes that are listed for a message.
constexpr std::size_t mostListed = 1000;

}  // namespace

void Collector::Add(std::string_view rule, const Finding& finding) {
  const Rule& broken = RuleOf(rule);
  if (broken.severity != Severity::error && ++accepted_ > mostListed) return;
  Diagnostic diagnostic;
  diagnostic.rule = broken.id;
  diagnostic.severity = broken.severity;
  if (finding.begin != noPosition) diagnostic.begin = source_.PositionAt(finding.begin);
  if (finding.end > finding.begin) diagnostic.end = source_.PositionAt(finding.end);
  diagnostic.text = finding.text;
  diagnostic.hint = finding.hint;
  diagnostic.isIgnored = finding.isIgnored && finding.end > finding.begin;
  diagnostics_.push_back(std::move(diagnostic));
}

Diagnostics Collector::Take() {
  std::stable_sort(diagnostics_.begin(), diagnostics_.end(), [](const auto& left, const auto& right) {
    return std::tie(left.begin.line, left.begin.column) < std::tie(right.begin.line, right.begin.column);
  });
  if (accepted_ > mostListed)
    diagnostics_.back().hint = fmt::format("{} more warnings are not listed", accepted_ - mostListed);
  return std::move(diagnostics_);
}

const Rule& Collector::RuleOf(std::string_view name) const {
  const Rule* const rule = FindRule(fmt::format("{}/{}", NameOf(subject_), name));
  if (rule == nullptr) throw std::logic_error("there is no rule " + std::string(name));
  return *rule;
}

std::size_t BeginningOf(std::string_view text) {
  const std::size_t first = text.find_first_not_of(WHITESPACE);
  if (text.empty()) throw Refusal("empty", {noPosition, 0, "the text is empty"});
  if (first == std::string_view::npos)
    throw Refusal("empty", {noPosition, 0, "the text is white space only"});
  return first;
}

void RefuseBeginning(std::string_view text, std::size_t first, const std::string& expected,
                     const std::string& hint) {
  throw Refusal("wrong-format",
                {first, first + 1,
                 fmt::format("the text begins with {}; {}", Quoted(text.substr(first, 1)), expected), hint});
}

std::string SpellingHint(std::string_view name, const std::vector<std::string>& candidates) {
  const std::string nearest = NearestName(name, candidates);
  return nearest.empty() || nearest == name ? "" : fmt::format("did you mean \"{}\"?", nearest);
}

}  // namespace tavrin::diagnostics
