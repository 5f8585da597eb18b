#pragma once

#include <tavrin_diagnostics/Diagnostics.h>
#include <string>
#include <vector>

// Returns a diagnostic as "LINE:COLUMN-LINE:COLUMN rule: text", without the end if it is unknown.
inline std::string Describe(const tavrin::diagnostics::Diagnostic& diagnostic) {
  const auto position = [](const zq::XmlPosition& at) {
    return std::to_string(at.line) + ':' + std::to_string(at.column);
  };
  std::string place = position(diagnostic.begin);
  if (diagnostic.end.line != 0) place += '-' + position(diagnostic.end);
  return place + ' ' + std::string(diagnostic.rule) + ": " + diagnostic.text;
}

inline std::vector<std::string> Describe(const tavrin::diagnostics::Diagnostics& diagnostics) {
  std::vector<std::string> lines;
  for (const auto& diagnostic : diagnostics) lines.push_back(Describe(diagnostic));
  return lines;
}

inline bool HasError(const tavrin::diagnostics::Diagnostics& diagnostics) {
  for (const auto& diagnostic : diagnostics) {
    if (diagnostic.severity == tavrin::diagnostics::Severity::error) return true;
  }
  return false;
}

inline bool HasWarning(const tavrin::diagnostics::Diagnostics& diagnostics) {
  for (const auto& diagnostic : diagnostics) {
    if (diagnostic.severity == tavrin::diagnostics::Severity::warning) return true;
  }
  return false;
}
