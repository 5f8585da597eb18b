#include <fmt/format.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_diagnostics/PrintableText.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlPosition.h>
#include <tavrin_platform/ZqError.h>
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Collector.h"
#include "ProjectItems.h"
#include "ProjectRules.h"
#include "SourceText.h"
#include "XmlMessage.h"
#include "XmlTags.h"
#include "tavrin_driver/internal/Names.h"
#include "tavrin_driver/internal/ProjectObserver.h"

using zq::XmlNode;

namespace tavrin::diagnostics {
namespace {

// A diagnostic may need more than 100 times the memory of the element that it is about.
constexpr std::size_t mostListed = 10'000;

// Decides which numbers that cannot be read are reported: each one once, although the validator reads the id
// of an item again for messages about the item.
class UnreadableNumbers {
 public:
  explicit UnreadableNumbers(const zq::ProjectValidator& validator) : validator_(validator) {}

  bool IsNew(const XmlNode& element, const zq::ZqError& error) {
    const XmlNode::Ptr id = element.GetChild(names::id);
    if (id && known_.count({id.get(), error.what()}) != 0) return false;
    if (!known_.insert({&element, error.what()}).second) return false;
    if (!first_) first_ = validator_.messages().size();
    return true;
  }

  // The index of the message about the first one.
  const std::optional<std::size_t>& First() const { return first_; }

 private:
  const zq::ProjectValidator& validator_;
  std::set<std::pair<const XmlNode*, std::string>> known_;
  std::optional<std::size_t> first_;
};

Diagnostic DiagnosticOf(const std::string& message, const zq::XmlPosition& place) {
  const ProjectRule& projectRule = ProjectRuleOf(message);
  const Rule* const rule = FindRule(fmt::format("project/{}", projectRule.name));
  if (rule == nullptr) throw std::logic_error("there is no rule for " + message);
  Diagnostic diagnostic{};
  diagnostic.rule = rule->id;
  diagnostic.severity = rule->severity;
  diagnostic.begin = place;
  diagnostic.text = message;
  diagnostic.hint = HintOf(projectRule);
  return diagnostic;
}

// Returns the end of the element, or of its start tag if it has child elements.
zq::XmlPosition EndOf(const SourceText& source, const zq::XmlPosition& begin) {
  const std::optional<Tag> tag = TagAt(source.Text(), source.OffsetOf(begin));
  if (!tag) return {};
  const std::optional<Tag> next = tag->isEmpty ? tag : NextTag(source.Text(), tag->end);
  return source.PositionAt(next && next->isEnd ? next->end : tag->end);
}

void AddEnds(Diagnostics& diagnostics, std::string_view text) {
  const SourceText source(text);
  for (Diagnostic& diagnostic : diagnostics) {
    if (diagnostic.begin.line != 0) diagnostic.end = EndOf(source, diagnostic.begin);
  }
}

void ExplainMalformed(ProjectDiagnosis& diagnosis) {
  const Finding finding = MalformedXml(SourceText(diagnosis.unparsed), diagnosis.parseError);
  Diagnostic& diagnostic = diagnosis.diagnostics.front();
  diagnostic.begin = diagnosis.parseError.position;
  diagnostic.hint = finding.text + (finding.hint.empty() ? "" : ": " + finding.hint);
}

}  // namespace

ProjectDiagnosis DiagnoseProject(std::string&& text, const ProjectProgress& progress) {
  ProjectDiagnosis diagnosis;
  diagnosis.unparsed = std::move(text);
  diagnosis.document =
      zq::CreateXmlDocument(std::move(diagnosis.unparsed), diagnosis.parseError, progress.onParsed);
  if (diagnosis.document)
    diagnosis.unparsed.clear();  // NOLINT(bugprone-use-after-move): kept where it is no XML

  zq::ProjectValidator validator(diagnosis.document ? diagnosis.document->GetRoot() : XmlNode::Ptr());
  UnreadableNumbers unreadable(validator);
  const auto onItem = [&] {
    ++diagnosis.items;
    if (progress.onItem) progress.onItem();
  };
  validator.setItemObserver(
      ProjectObserver{onItem, [&unreadable](const XmlNode& element, const zq::ZqError& error) {
                        return unreadable.IsNew(element, error);
                      }});
  validator.valid();
  diagnosis.findings = validator.messages().size();
  const std::size_t listed = std::min(diagnosis.findings, mostListed);
  for (std::size_t i = 0; i < listed; ++i)
    diagnosis.diagnostics.push_back(DiagnosticOf(validator.messages()[i], validator.places()[i]));
  if (unreadable.First() && *unreadable.First() < listed)
    diagnosis.diagnostics[*unreadable.First()].endsCheck = true;

  if (!diagnosis.document) {
    ExplainMalformed(diagnosis);
  } else if (!diagnosis.diagnostics.empty()) {
    AddEnds(diagnosis.diagnostics, diagnosis.Source());
    ExplainItems(diagnosis.diagnostics, diagnosis.document->GetRoot());
  }
  return diagnosis;
}

}  // namespace tavrin::diagnostics
