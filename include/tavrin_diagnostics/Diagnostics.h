/// @file
/// Diagnostics of messages and projects: their errors, and the parts that the lenient loaders ignore.
///
/// @code
/// for (const tavrin::diagnostics::Diagnostic& found : tavrin::diagnostics::DiagnoseCommand(text))
///   std::cerr << found.begin.line << ": " << found.text << " (" << found.rule << ")" << std::endl;
/// @endcode
#pragma once

#include <tavrin_diagnostics/Rules.h>
#include <tavrin_platform/Export.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/XmlPosition.h>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::diagnostics {

/// An error, warning or note about an input.
struct Diagnostic {
  std::string_view rule;  ///< the id of a rule of the registry
  Severity severity;      ///< its severity
  zq::XmlPosition begin;  ///< where it is; zeros: the whole input
  zq::XmlPosition end;    ///< the position after it; zeros: unknown
  std::string text;       ///< a human-readable message, in one line without control characters
  std::string hint;       ///< what to do about it; may be ""

  /// True if the loader ignores the text from `begin` to `end`: without it the loaded message is the same.
  bool isIgnored = false;

  /// True if the controller's own check of a project ends here and does not report what follows.
  bool endsCheck = false;
};

/// The diagnostics of one input.
using Diagnostics = std::vector<Diagnostic>;

/// @name Messages
/// Each function reads its input as the loader of the message does, and returns the diagnostics in the order
/// of their positions. They contain an error if and only if the input cannot be loaded: it is not a document,
/// or the loader returns -1 or throws. DiagnoseConditional() documents one exception. An input without errors
/// and warnings is loaded completely.
///
/// At most 1000 warnings and notes are listed; the hint of the last diagnostic then states how many more
/// there are. The functions are pure and thread-safe. They throw only std::bad_alloc.
/// @{

/// Diagnoses a command, XML or JSON, as CCmdMessage::Load reads it.
TAVRIN_EXPORT Diagnostics DiagnoseCommand(const std::string& text);

/// Diagnoses a binding message, as CBindMessage::fromXml reads the root of its document.
TAVRIN_EXPORT Diagnostics DiagnoseBinding(const std::string& text);

/// Diagnoses a conditional, as CCondMessage::fromXml reads it. The loader stores every input that is not
/// XML as the comparison, and returns -1. Here a comparison such as "EQUAL" alone is a note, and any other
/// input that is not XML is an error.
TAVRIN_EXPORT Diagnostics DiagnoseConditional(const std::string& text);
/// @}

/// The callbacks of DiagnoseProject(). Their exceptions abort the diagnosis and propagate to the caller.
struct ProjectProgress {
  zq::XmlProgress onParsed;      ///< called with the number of bytes parsed; empty: not called
  std::function<void()> onItem;  ///< called before each item is checked; empty: not called
};

/// The result of DiagnoseProject().
struct ProjectDiagnosis {
  Diagnostics diagnostics;        ///< the diagnostics of the project, at most the first 10000
  std::size_t findings = 0;       ///< the number of diagnostics, including those that are not listed
  std::size_t items = 0;          ///< the number of items that were checked
  zq::XmlError parseError;        ///< why the input is not XML; its text is empty for valid XML
  zq::XmlDocument::Ptr document;  ///< the parsed project, null if the input is not XML
  std::string unparsed;           ///< the input if it is not XML, otherwise ""

  /// Returns the text of the project. The view is valid until this object is changed or destroyed.
  std::string_view Source() const { return document ? zq::SourceOf(*document) : unparsed; }
};

/// Checks a project as zq::ProjectValidator does, with the same messages in the same order. The validator
/// ends at a number that cannot be read; this function continues after it.
/// @param text is moved from
/// @param progress the callbacks that report progress
TAVRIN_EXPORT ProjectDiagnosis DiagnoseProject(std::string&& text, const ProjectProgress& progress = {});

/// A part of an input.
struct TextRange {
  std::size_t begin = 0;  ///< the first byte
  std::size_t end = 0;    ///< the position after the last byte
};

/// Returns the parts of a message that contain secrets, in the order of their positions. These are the values
/// of parameters for which zq::isSecretParameter() returns true, and comments and ignored text that may
/// contain the name of such a parameter. The result is the whole input if it is UTF-16, or if it cannot be
/// parsed and may contain such a name.
TAVRIN_EXPORT std::vector<TextRange> SecretsIn(Subject subject, const std::string& text);

/// Returns the text that replaces a secret in output, six asterisks.
TAVRIN_EXPORT const std::string& MaskedValue();

/// Returns the names of the comparisons of conditionals.
TAVRIN_EXPORT const std::vector<std::string>& ComparisonNames();

/// Returns the candidate with the least edit distance to a misspelt name, "" if none is similar enough. The
/// distance counts inserted, deleted, replaced and swapped letters, case-insensitively.
TAVRIN_EXPORT std::string NearestName(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace tavrin::diagnostics
