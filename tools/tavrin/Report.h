#pragma once

#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "Console.h"
#include "Status.h"

namespace CLI {
class App;
}

// The reports of subcommands that read files.
namespace tool {

using tavrin::diagnostics::Diagnostic;
using tavrin::diagnostics::Diagnostics;
using tavrin::diagnostics::Severity;
using tavrin::diagnostics::Subject;

// The shared options of these subcommands.
struct ReportOptions {
  std::string format = "text";
  bool json = false;
  bool quiet = false;
  bool strict = false;
  std::uint64_t maxMessages = std::numeric_limits<std::uint64_t>::max();
  bool showSecrets = false;

  void AddTo(CLI::App& subcommand);

  std::string Format() const { return json ? "json" : format; }
};

// The outcome for a file, or for a line of a file.
struct FileReport {
  std::string file;
  Subject subject = Subject::file;
  Diagnostics diagnostics = {};
  std::string_view source = {};      // diagnostics show lines of this text
  std::uint32_t line = 0;            // of a file with one message per line; 0: the whole file
  Status status = Status::success;   // without the diagnostics
  Json::Value fields = {};           // of the document in JSON, in addition to the diagnostics
  std::function<void()> print = {};  // prints the result as text; may be empty
  std::string summary = {};          // the last line about the file, or ""
  std::size_t unlisted = 0;          // errors that are only counted
};

// Prints reports in the format of the options.
class Reporter {
 public:
  Reporter(const ReportOptions& options, const Console& console) : options_(options), console_(console) {}
  Reporter(const Reporter&) = delete;
  Reporter& operator=(const Reporter&) = delete;

  // Prints a report, or adds it to the document that Finish() prints. Returns the status of the file.
  Status Report(const FileReport& report);

  // Reports a file that cannot be read.
  void Refuse(const std::string& file, const std::string& why, const std::string& rule = "file/unreadable");

  // Prints the parts of a report about all files.
  void Finish();

  // Returns whether results are written as text or as JSON.
  bool IsText() const { return options_.Format() == "text" && !options_.quiet; }
  bool IsJson() const { return options_.Format() == "json" && !options_.quiet; }

 private:
  std::size_t Shown(const FileReport& report) const;
  void PrintText(const FileReport& report);
  void PrintJson(const FileReport& report) const;
  void PrintAnnotations(const FileReport& report) const;
  void Count(const FileReport& report);

  const ReportOptions& options_;
  const Console& console_;
  Json::Value sarifResults_{Json::arrayValue};
  std::size_t files_ = 0;
  bool hasLines_ = false;       // whether messages are lines of files
  std::size_t counts_[3] = {};  // by severity
};

// Reads every file, and every file below a directory, and reports each with visit(). Returns the worst
// status.
Status ReportFiles(const std::vector<std::string>& paths, const std::vector<std::string>& extensions,
                   Reporter& reporter,
                   const std::function<Status(const std::string& name, std::string&& content)>& visit);

}  // namespace tool
