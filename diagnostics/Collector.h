#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "SourceText.h"

namespace tavrin::diagnostics {

inline constexpr std::size_t noPosition = std::string_view::npos;

// A diagnostic without its rule.
struct Finding {
  std::size_t begin = 0;  // bytes of the text, or noPosition
  std::size_t end = 0;    // not after `begin` if it is unknown
  std::string text;
  std::string hint = {};
  bool isIgnored = false;
};

// Ends a walk over an input where the loader rejects it.
class Refusal : public std::runtime_error {
 public:
  Refusal(std::string_view ruleName, Finding what)
      : std::runtime_error(what.text), rule(ruleName), finding(std::move(what)) {}
  std::string rule;
  Finding finding;
};

// Collects the diagnostics of a message. Rules are named without the subject, "unknown-element".
class Collector {
 public:
  Collector(Subject subject, std::string_view text) : subject_(subject), source_(text) {}

  const SourceText& Source() const { return source_; }
  std::string_view Text() const { return source_.Text(); }

  void Add(std::string_view rule, const Finding& finding);
  void Add(const Refusal& refusal) { Add(refusal.rule, refusal.finding); }

  // Returns the diagnostics in the order of their positions.
  Diagnostics Take();

 private:
  const Rule& RuleOf(std::string_view name) const;

  Subject subject_;
  SourceText source_;
  Diagnostics diagnostics_;
  std::size_t accepted_ = 0;  // warnings and notes, including those that are not listed
};

// Runs a walk that may throw a Refusal. Returns what it has collected.
template <typename Walk>
Diagnostics Collect(Subject subject, const std::string& text, Walk walk) {
  Collector collector(subject, text);
  try {
    walk(collector);
  } catch (const Refusal& refusal) {
    collector.Add(refusal);
  }
  return collector.Take();
}

// Returns the position of the first character other than white space. Throws a Refusal if there is none.
std::size_t BeginningOf(std::string_view text);

// Throws a Refusal of the first character of an input.
[[noreturn]] void RefuseBeginning(std::string_view text, std::size_t first, const std::string& expected,
                                  const std::string& hint = {});

// "did you mean X?", "" without a similar name.
std::string SpellingHint(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace tavrin::diagnostics
