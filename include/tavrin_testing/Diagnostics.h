/// @file
/// Findings of `tavrin::diagnostics` in tests, for programs that link it.
///
/// @code
/// EXPECT_THAT(tavrin::diagnostics::DiagnoseCommand(text), HasFinding("command/malformed-xml", 2));
/// @endcode
///
/// HasFinding() takes the id of a rule or a part of the message. This header is not a part of Testing.h.
#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_testing/Matchers.h>
#include <ostream>
#include <string>
#include <vector>

namespace tavrin::diagnostics {

/// Returns the diagnostics as HasFinding() compares them.
inline std::vector<tavrin_testing::FindingView> FindingsOf(const Diagnostics& diagnostics) {
  std::vector<tavrin_testing::FindingView> findings;
  for (const Diagnostic& diagnostic : diagnostics)
    findings.push_back({std::string(diagnostic.rule), diagnostic.text, diagnostic.begin.line});
  return findings;
}

/// Returns the diagnostics of a project as HasFinding() compares them.
inline std::vector<tavrin_testing::FindingView> FindingsOf(const ProjectDiagnosis& diagnosis) {
  return FindingsOf(diagnosis.diagnostics);
}

/// Writes line, column, text and rule of a diagnostic.
inline void PrintTo(const Diagnostic& diagnostic, std::ostream* os) {
  *os << diagnostic.begin.line << ':' << diagnostic.begin.column << ": " << diagnostic.text << " ["
      << diagnostic.rule << ']';
}

/// Writes the diagnostics of a project.
inline void PrintTo(const ProjectDiagnosis& diagnosis, std::ostream* os) {
  *os << testing::PrintToString(diagnosis.diagnostics);
}

}  // namespace tavrin::diagnostics
