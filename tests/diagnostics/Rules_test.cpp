#include <gmock/gmock.h>
#include <json/version.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_diagnostics/Rules.h>
#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace tavrin::diagnostics {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

Diagnostics Diagnose(Subject subject, const std::string& text) {
  switch (subject) {
    case Subject::command:
      return DiagnoseCommand(text);
    case Subject::binding:
      return DiagnoseBinding(text);
    case Subject::conditional:
      return DiagnoseConditional(text);
    default:
      return DiagnoseProject(std::string(text)).diagnostics;
  }
}

bool IsDocument(const Rule& rule) {
  return rule.subject != Subject::require && rule.subject != Subject::file;
}

// Later versions of JsonCpp reject the text that violates this rule.
bool IsViolable(const Rule& rule) {
  return IsDocument(rule) && (JSONCPP_VERSION_HEXA < 0x01090600 || rule.id != "command/stray-token");
}

std::vector<std::string> RulesBrokenBy(Subject subject, const std::string& text) {
  std::vector<std::string> ids;
  for (const Diagnostic& diagnostic : Diagnose(subject, text)) ids.emplace_back(diagnostic.rule);
  return ids;
}

TEST(Rules, HaveIdsThatNameTheirSubjectInOrder) {
  std::vector<std::string> ids;
  for (const Rule& rule : Rules()) {
    EXPECT_THAT(rule.id, MatchesRegex(std::string(NameOf(rule.subject)) + "/[a-z]+(-[a-z]+)*"));
    ids.push_back(rule.id);
  }
  EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end()));
  EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
  EXPECT_GE(ids.size(), 80U);
}

TEST(Rules, HaveAReasonOfOneSentence) {
  for (const Rule& rule : Rules()) EXPECT_THAT(rule.reason, MatchesRegex("[A-Z].*[^.]\\.")) << rule.id;
}

TEST(Rules, AreTheOnlyOnesViolatedByTheirWrongExample) {
  for (const Rule& rule : Rules()) {
    if (!IsViolable(rule)) continue;
    EXPECT_THAT(RulesBrokenBy(rule.subject, rule.wrong), ElementsAre(rule.id)) << rule.wrong;
  }
}

TEST(Rules, HaveTheSeverityOfTheirDiagnostics) {
  for (const Rule& rule : Rules()) {
    if (!IsViolable(rule)) continue;
    for (const Diagnostic& diagnostic : Diagnose(rule.subject, rule.wrong))
      EXPECT_EQ(diagnostic.severity, rule.severity) << rule.id;
  }
}

TEST(Rules, AreSatisfiedByTheirRightExample) {
  for (const Rule& rule : Rules()) {
    if (!IsDocument(rule)) continue;
    EXPECT_THAT(RulesBrokenBy(rule.subject, rule.right), IsEmpty()) << rule.id << ": " << rule.right;
  }
}

TEST(Rules, AreFoundByTheirIds) {
  for (const Rule& rule : Rules()) EXPECT_EQ(FindRule(rule.id), &rule);
  for (const char* const unknown : {"", "command", "command/", "command/unknown", "zzz"})
    EXPECT_EQ(FindRule(unknown), nullptr) << unknown;
}

TEST(Rules, NameSeverities) {
  EXPECT_STREQ(NameOf(Severity::error), "error");
  EXPECT_STREQ(NameOf(Severity::warning), "warning");
  EXPECT_STREQ(NameOf(Severity::note), "note");
}

}  // namespace
}  // namespace tavrin::diagnostics
