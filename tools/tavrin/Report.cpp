#include "Report.h"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/replace.hpp>
#include <fmt/format.h>
#include <unistd.h>

#include <tavrin_diagnostics/Rules.h>
#include <algorithm>
#include <numeric>
#include <utility>

#include "Choices.h"
#include "Input.h"
#include "Numbers.h"
#include "Sarif.h"
#include "SourceLine.h"
#include "Text.h"

namespace tool {
namespace {

using tavrin::diagnostics::SecretsIn;
using tavrin::diagnostics::TextRange;

fmt::text_style StyleOf(Severity severity) {
  switch (severity) {
    case Severity::error:
      return fmt::emphasis::bold | fmt::fg(fmt::terminal_color::red);
    case Severity::warning:
      return fmt::emphasis::bold | fmt::fg(fmt::terminal_color::yellow);
    case Severity::note:
      break;
  }
  return fmt::fg(fmt::terminal_color::cyan);
}

// The messages about a project are those of the validator, with names and text of the project.
std::string ShownText(const FileReport& report, const Diagnostic& diagnostic) {
  return report.subject == Subject::project ? Printable(diagnostic.text) : diagnostic.text;
}

// Returns a diagnostic with its position in the file; the message may be a line of the file.
Diagnostic InFile(const FileReport& report, Diagnostic diagnostic) {
  const std::uint32_t before = report.line == 0 ? 0 : report.line - 1;
  if (diagnostic.begin.line != 0) diagnostic.begin.line += before;
  if (diagnostic.end.line != 0) diagnostic.end.line += before;
  return diagnostic;
}

Json::Value AsJson(const Diagnostic& diagnostic) {
  Json::Value value;
  value["rule"] = std::string(diagnostic.rule);
  value["severity"] = NameOf(diagnostic.severity);
  if (diagnostic.begin.line != 0) {
    value["line"] = diagnostic.begin.line;
    value["column"] = diagnostic.begin.column;
  }
  if (diagnostic.end.line != 0) {
    value["endLine"] = diagnostic.end.line;
    value["endColumn"] = diagnostic.end.column;
  }
  value["message"] = diagnostic.text;
  if (!diagnostic.hint.empty()) value["hint"] = diagnostic.hint;
  if (diagnostic.endsCheck) value["endsCheck"] = true;
  return value;
}

// Returns the data of a workflow command, with its special characters escaped.
std::string Escaped(std::string text, bool isProperty) {
  using boost::algorithm::replace_all;
  replace_all(text, "%", "%25");
  replace_all(text, "\r", "%0D");
  replace_all(text, "\n", "%0A");
  if (isProperty) {
    replace_all(text, ":", "%3A");
    replace_all(text, ",", "%2C");
  }
  return text;
}

std::string AnnotationOf(const std::string& file, const Diagnostic& diagnostic) {
  const char* const kinds[] = {"error", "warning", "notice"};
  std::string text =
      fmt::format("::{} file={}", kinds[static_cast<std::size_t>(diagnostic.severity)], Escaped(file, true));
  if (diagnostic.begin.line != 0)
    text += fmt::format(",line={},col={}", diagnostic.begin.line, diagnostic.begin.column);
  if (diagnostic.end.line != 0)
    text += fmt::format(",endLine={},endColumn={}", diagnostic.end.line, diagnostic.end.column);
  const std::string hint = diagnostic.hint.empty() ? "" : fmt::format(" ({})", diagnostic.hint);
  return text + fmt::format(",title={}::{}\n", Escaped(std::string(diagnostic.rule), true),
                            Escaped(diagnostic.text + hint, false));
}

}  // namespace

void ReportOptions::AddTo(CLI::App& subcommand) {
  CLI::Option* const formatOption = subcommand
                                        .add_option("--format", format,
                                                    "The form of the report: text; json, one document per\n"
                                                    "file; github, annotations of a workflow; sarif, a log\n"
                                                    "for code scanning services")
                                        ->check(OneOf({"text", "json", "github", "sarif"}))
                                        ->type_name("FORMAT");
  CLI::Option* const jsonFlag = subcommand.add_flag("--json", json, "The same as --format json");
  CLI::Option* const quietFlag =
      subcommand.add_flag("-q,--quiet", quiet, "Report the result by the exit status alone");
  subcommand.add_flag("--strict", strict, "Return exit status 1 for warnings, too");
  jsonFlag->excludes(formatOption)->excludes(quietFlag);
  quietFlag->excludes(formatOption);
}

Status Reporter::Report(const FileReport& report) {
  Count(report);
  Status status = report.status;
  for (const Diagnostic& diagnostic : report.diagnostics) {
    if (diagnostic.severity == Severity::error) status = Worst(status, Status::checkFailed);
    if (diagnostic.severity == Severity::warning && options_.strict)
      status = Worst(status, Status::checkFailed);
  }
  if (options_.quiet) return status;
  const std::string format = options_.Format();
  if (format == "json") {
    PrintJson(report);
  } else if (format == "github") {
    PrintAnnotations(report);
  } else if (format == "sarif") {
    const SourceText source(report.source);
    for (std::size_t i = 0; i < Shown(report); ++i) {
      const Diagnostic& diagnostic = report.diagnostics[i];
      sarifResults_.append(SarifResult(report, source, diagnostic, InFile(report, diagnostic)));
    }
  } else {
    PrintText(report);
  }
  return status;
}

void Reporter::Refuse(const std::string& file, const std::string& why, const std::string& rule) {
  FileReport report{file};
  report.status = Status::unreadable;
  report.diagnostics.push_back({});
  report.diagnostics.back().rule = tavrin::diagnostics::FindRule(rule)->id;
  report.diagnostics.back().severity = Severity::error;
  report.diagnostics.back().text = why;
  Report(report);
  if (options_.quiet) Console::Error(file, {{}, why});
}

void Reporter::Finish() {
  if (options_.quiet) return;
  if (options_.Format() == "sarif") return Console::WriteJson(SarifLog(sarifResults_));
  if (options_.Format() != "text" || files_ < 2) return;
  std::vector<std::string> parts;
  const auto add = [&](Severity severity) {
    const std::size_t count = counts_[static_cast<std::size_t>(severity)];
    if (count > 0) parts.push_back(Counted(count, NameOf(severity)));
  };
  add(Severity::error);
  add(Severity::warning);
  add(Severity::note);
  Console::Summarize(Counted(files_, hasLines_ ? "message" : "file"),
                     parts.empty() ? "nothing to report" : fmt::format("{}", fmt::join(parts, ", ")));
}

void Reporter::Count(const FileReport& report) {
  ++files_;
  hasLines_ = hasLines_ || report.line != 0;
  for (const Diagnostic& diagnostic : report.diagnostics)
    ++counts_[static_cast<std::size_t>(diagnostic.severity)];
  counts_[static_cast<std::size_t>(Severity::error)] += report.unlisted;
}

std::size_t Reporter::Shown(const FileReport& report) const {
  return static_cast<std::size_t>(std::min<std::uint64_t>(report.diagnostics.size(), options_.maxMessages));
}

// Findings of a project are results; diagnostics of a message accompany the message.
void Reporter::PrintText(const FileReport& report) {
  const bool isResult = report.subject == Subject::project;
  const int descriptor = isResult ? STDOUT_FILENO : STDERR_FILENO;
  const bool isTerminal = isatty(descriptor) != 0;
  const SourceText source(isTerminal ? report.source : std::string_view());
  std::vector<TextRange> secrets;
  if (isTerminal && !report.diagnostics.empty() && !options_.showSecrets)
    secrets = SecretsIn(report.subject, std::string(report.source));
  for (std::size_t i = 0; i < Shown(report); ++i) {
    const Diagnostic& diagnostic = report.diagnostics[i];
    const fmt::text_style style = StyleOf(diagnostic.severity);
    const bool isLabelled = isTerminal || diagnostic.severity != Severity::error;
    const std::string label =
        isLabelled ? console_.Paint(std::string(NameOf(diagnostic.severity)) + ": ", style, descriptor) : "";
    std::string text = label + ShownText(report, diagnostic);
    const std::string rule = report.subject == Subject::file ? "" : fmt::format(" [{}]", diagnostic.rule);
    std::string lines;
    if (isTerminal) {
      lines = SourceLines(source, diagnostic, secrets, console_, descriptor, style);
      if (!diagnostic.hint.empty()) lines += fmt::format("  hint: {}\n", diagnostic.hint);
    } else if (!diagnostic.hint.empty()) {
      text += fmt::format(" ({})", diagnostic.hint);
    }
    const Finding finding{InFile(report, diagnostic).begin, text + rule};
    if (isResult)
      Console::WriteFinding(report.file, finding);
    else
      Console::Error(report.file, finding);
    (isResult ? Console::Out() : Console::Err()) << lines;
  }
  if (!report.summary.empty()) {
    const bool isCut = Shown(report) < report.diagnostics.size() + report.unlisted;
    Console::Summarize(report.file, report.summary + (isCut ? fmt::format(", {} shown", Shown(report)) : ""));
  }
  if (report.print) report.print();
}

void Reporter::PrintJson(const FileReport& report) const {
  Json::Value document = report.fields;
  document["version"] = 1;
  document["file"] = report.file;
  if (report.line != 0) document["line"] = report.line;
  Json::Value& list = document["diagnostics"] = Json::arrayValue;
  for (std::size_t i = 0; i < Shown(report); ++i) list.append(AsJson(InFile(report, report.diagnostics[i])));
  Console::WriteJson(document);
}

void Reporter::PrintAnnotations(const FileReport& report) const {
  for (std::size_t i = 0; i < Shown(report); ++i)
    Console::Out() << AnnotationOf(report.file, InFile(report, report.diagnostics[i]));
}

Status ReportFiles(const std::vector<std::string>& paths, const std::vector<std::string>& extensions,
                   Reporter& reporter,
                   const std::function<Status(const std::string& name, std::string&& content)>& visit) {
  Status status = Status::success;
  const auto refuse = [&](const std::string& rule) {
    return [&reporter, &status, rule](const std::string& name, const std::string& why) {
      reporter.Refuse(name, why, rule);
      status = Status::unreadable;
    };
  };
  const std::vector<std::string> files = FilesBelow(paths, extensions, refuse("file/no-files"));
  const Status visited = ForEachFile(files, visit, refuse("file/unreadable"));
  reporter.Finish();
  return Worst(status, visited);
}

}  // namespace tool
