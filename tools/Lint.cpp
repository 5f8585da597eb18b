#include "Lint.h"

#include <fmt/format.h>

#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <tuple>

#include "JsonText.h"
#include "Text.h"

namespace tool {

LintResult Collect(const std::function<void(Findings& notes)>& walk) {
  LintResult result;
  try {
    walk(result.notes);
  } catch (const Objection& objection) {
    result.objection = objection.finding();
  }
  std::stable_sort(result.notes.begin(), result.notes.end(), [](const Finding& left, const Finding& right) {
    return std::tie(left.place.line, left.place.column) < std::tie(right.place.line, right.place.column);
  });
  return result;
}

std::size_t BeginningOf(const std::string& text) {
  if (text.empty()) throw Objection({}, "the text is empty");
  const std::size_t first = text.find_first_not_of(WHITESPACE);
  if (first == std::string::npos) throw Objection({}, "the text is blank");
  return first;
}

void ObjectToBeginning(const std::string& text, std::size_t first, const std::string& expected) {
  throw Objection(Places(text).At(first),
                  fmt::format("the text begins with {}; {}", Quoted(text.substr(first, 1)), expected));
}

}  // namespace tool
