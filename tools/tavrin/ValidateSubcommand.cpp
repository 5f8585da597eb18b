#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>
#include <unistd.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Numbers.h"
#include "Progress.h"
#include "Report.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

using tavrin::diagnostics::ProjectDiagnosis;

struct ValidateOptions {
  std::vector<std::string> files;
  ReportOptions report;
};

double Megabytes(std::size_t bytes) { return static_cast<double>(bytes) / 1e6; }

// Returns the name of a file, or the end of a long one, which differs more often than its beginning. The rest
// of the terminal's line is for the progress.
std::string ShortName(const std::string& file) {
  constexpr std::size_t most = 30;
  std::string name = Printable(file);
  if (name.size() <= most) return name;
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; };
  const auto tail = std::find_if_not(name.end() - most, name.end(), isContinuation);
  return "..." + std::string(tail, name.end());
}

// Checks projects one after another.
class ProjectChecker {
 public:
  ProjectChecker(const ValidateOptions& options, Reporter& reporter)
      : reporter_(reporter), progress_(std::cerr, !options.report.quiet && isatty(STDERR_FILENO) != 0) {}

  Status Check(const std::string& file, std::string&& text) {
    const ProjectDiagnosis diagnosis = Diagnose("tavrin: " + ShortName(file), std::move(text));
    progress_.Done();

    FileReport report{file, Subject::project, diagnosis.diagnostics, diagnosis.Source()};
    report.unlisted = diagnosis.findings - report.diagnostics.size();
    report.summary = diagnosis.findings == 0 ? "valid, " + Counted(diagnosis.items, "item")
                                             : Counted(diagnosis.findings, "finding");
    if (reporter_.IsJson()) report.fields = AsJson(diagnosis);
    return reporter_.Report(report);
  }

 private:
  // Progress reports take time and memory.
  ProjectDiagnosis Diagnose(const std::string& label, std::string&& text) {
    if (!progress_.IsEverShown()) return tavrin::diagnostics::DiagnoseProject(std::move(text));
    const double size = Megabytes(text.size());
    const auto onParsed = [&](std::size_t bytes) {
      progress_.Update(
          [&] { return fmt::format("{}: {:.1f} of {:.1f} MB parsed", label, Megabytes(bytes), size); });
    };
    std::size_t items = 0;
    const auto onItem = [&] {
      if (++items % itemsBetweenUpdates != 0) return;
      progress_.Update([&] { return fmt::format("{}: {} items checked", label, items); });
    };
    return tavrin::diagnostics::DiagnoseProject(std::move(text), {onParsed, onItem});
  }

  static Json::Value AsJson(const ProjectDiagnosis& diagnosis) {
    Json::Value document;
    document["valid"] = diagnosis.findings == 0;
    document["items"] = static_cast<Json::UInt64>(diagnosis.items);
    document["findings"] = static_cast<Json::UInt64>(diagnosis.findings);
    if (!diagnosis.parseError.text.empty()) {
      Json::Value& parser = document["parser"];
      parser["line"] = diagnosis.parseError.position.line;
      parser["column"] = diagnosis.parseError.position.column;
      parser["message"] = diagnosis.parseError.text;
    }
    return document;
  }

  // Reading the clock for each item would be measurably slower.
  static constexpr std::size_t itemsBetweenUpdates = 1024;

  Reporter& reporter_;
  Progress progress_;
};

Status Run(const ValidateOptions& options, const Console& console) {
  Reporter reporter(options.report, console);
  ProjectChecker checker(options, reporter);
  return ReportFiles(options.files, {".xml"}, reporter,
                     [&checker](const std::string& name, std::string&& content) {
                       return checker.Check(name, std::move(content));
                     });
}

}  // namespace

void AddValidate(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ValidateOptions>();
  CLI::App* const validate =
      app.add_subcommand("validate",
                         "Check the structure of projects before a controller loads them.\n"
                         "Each finding is a line with its position on the standard output.\n"
                         "The number of findings is written to the standard error stream.");
  validate
      ->add_option("FILE", options->files,
                   "A file with one project, or a directory, which is searched\nfor files; \"-\" is the "
                   "standard input")
      ->required()
      ->type_name("");
  options->report.AddTo(*validate);
  validate
      ->add_option("--max-messages", options->report.maxMessages,
                   "Show only the first N findings of each file")
      ->type_name("N")
      ->check([](const std::string& text) {
        return WholeNumber<std::uint64_t>(text) ? "" : Quoted(text) + " is not a whole number";
      });
  validate->callback([options, &session] { session.status = Run(*options, session.console); });
}

}  // namespace tool
