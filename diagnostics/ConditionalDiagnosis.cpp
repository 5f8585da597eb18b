#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fmt/format.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_diagnostics/PrintableText.h>
#include <algorithm>
#include <iterator>

#include "XmlMessage.h"
#include "tavrin_driver/internal/Comparison.h"
#include "tavrin_driver/internal/Names.h"

namespace tavrin::diagnostics {
namespace {

std::string NoComparison(const std::string& text) {
  return fmt::format("{} is none of {}", Quoted(text), boost::algorithm::join(ComparisonNames(), ", "));
}

bool IsComparison(const std::string& text) { return ComparisonOf(text) != Comparison::unknown; }

std::string BareComparisonHint(const std::string& trimmed) {
  return IsComparison(trimmed) ? "remove the white space" : SpellingHint(trimmed, ComparisonNames());
}

void CheckConditional(Collector& collector, const std::string& text) {
  if (IsComparison(text)) {
    return collector.Add("bare-comparison",
                         {noPosition, 0, "the text is not XML, and is read as the comparison alone"});
  }
  RequireXml(
      text, "a conditional is XML, which begins with \"<\", or a comparison alone, and " + NoComparison(text),
      BareComparisonHint(boost::algorithm::trim_copy(text)));
  XmlMessage message(collector, text);
  message.Check({"deviceconditional", {names::name, names::conditional}, {}, {}, true});

  zq::XmlNode& root = message.Root();
  if (!root.GetChild(names::name))
    message.ReportTag("no-name", root, "there is no \"name\": the conditional's name is empty");
  const zq::XmlNode::Ptr comparison = LastChild(root, names::conditional);
  if (!comparison) {
    message.ReportTag("no-comparison", root, "there is no \"conditional\": every test is false");
  } else if (const std::string name = comparison->GetData(); !IsComparison(name)) {
    message.ReportElement("unknown-comparison", *comparison, NoComparison(name) + ": every test is false",
                          SpellingHint(name, ComparisonNames()));
  }
}

}  // namespace

Diagnostics DiagnoseConditional(const std::string& text) {
  return Collect(Subject::conditional, text,
                 [&](Collector& collector) { CheckConditional(collector, text); });
}

const std::vector<std::string>& ComparisonNames() {
  static const std::vector<std::string> list = [] {
    std::vector<std::string> made;
    std::transform(comparisonNames.begin(), comparisonNames.end(), std::back_inserter(made),
                   [](const ComparisonName& comparison) { return std::string(comparison.name); });
    return made;
  }();
  return list;
}

}  // namespace tavrin::diagnostics
