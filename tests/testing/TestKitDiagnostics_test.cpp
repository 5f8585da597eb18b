#include <gmock/gmock.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_testing/Diagnostics.h>
#include <string>

namespace {

using namespace tavrin::diagnostics;
using namespace tavrin_testing;
using testing::HasSubstr;
using testing::Not;
using testing::PrintToString;

TEST(Matchers, FindDiagnosticsByRuleTextAndLine) {
  const Diagnostics diagnostics = DiagnoseCommand("<devicecommand>\n<command></devicecommand>");
  ASSERT_EQ(diagnostics.size(), 1U);
  EXPECT_THAT(diagnostics, HasFinding("command/malformed-xml"));
  EXPECT_THAT(diagnostics, HasFinding("command/malformed-xml", 2));
  EXPECT_THAT(diagnostics, HasFinding(diagnostics[0].text.substr(2, 5)));
  EXPECT_THAT(diagnostics, Not(HasFinding("command/malformed-xml", 1)));
  EXPECT_THAT(diagnostics, Not(HasFinding("malformed-xml"))) << "a rule is named as a whole";
  EXPECT_THAT(PrintToString(diagnostics),
              HasSubstr("2:12: " + diagnostics[0].text + " [command/malformed-xml]"));
}

TEST(Matchers, FindDiagnosticsOfProjects) {
  const ProjectDiagnosis diagnosis = DiagnoseProject("<currentstate>\n  <property/>\n</currentstate>");
  EXPECT_THAT(diagnosis, HasFinding("expected properties", 2));
  EXPECT_THAT(PrintToString(diagnosis), HasSubstr("2:3: expected properties, got property ["));
}

}  // namespace
