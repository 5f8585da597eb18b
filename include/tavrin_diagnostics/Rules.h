/// @file
/// The registry of the rules of diagnostics.
///
/// @code
/// if (const auto* rule = tavrin::diagnostics::FindRule("project/duplicate-id")) std::cout << rule->reason;
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

/// The severity of a diagnostic.
enum class Severity {
  error,    ///< the controller rejects the message, or its check of the project reports it
  warning,  ///< something is ignored, inherited, truncated or almost certainly unintended
  note      ///< something unusual that is probably intended
};

/// Returns "error", "warning" or "note".
TAVRIN_EXPORT const char* NameOf(Severity severity);

/// The kind of input that a rule is about; the part of its id before the slash.
enum class Subject {
  command,      ///< a command message, XML or JSON
  binding,      ///< a binding message
  conditional,  ///< a conditional message
  project,      ///< a project
  require,      ///< the parameters that `tavrin command --require` reads
  file          ///< a file that cannot be read
};

/// Returns "command", "binding" and so on.
TAVRIN_EXPORT const char* NameOf(Subject subject);

/// A rule. Ids are stable: a rule keeps its id in later versions, and no other rule gets it.
struct Rule {
  std::string id;      ///< for example "command/unknown-element"
  Subject subject;     ///< the kind of input that it is about
  Severity severity;   ///< the severity of its diagnostics
  std::string reason;  ///< why it matters, one sentence
  std::string wrong;   ///< an example that breaks this rule and no other
  std::string right;   ///< the corrected example
};

/// Returns all rules, in the order of their ids. The list exists until the process ends.
///
/// The examples of Subject::command and so on are documents. Those of Subject::require are commands from
/// which "--require LEVEL:0..100" reads, and those of Subject::file are file names.
TAVRIN_EXPORT const std::vector<Rule>& Rules();

/// Returns the rule with the given id, null if there is none.
TAVRIN_EXPORT const Rule* FindRule(std::string_view id);

}  // namespace tavrin::diagnostics
