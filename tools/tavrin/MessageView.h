#pragma once

#include <tavrin_driver/DriverParam.h>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Console.h"
#include "Input.h"
#include "Report.h"
#include "Status.h"

namespace CLI {
class App;
}

// Shared parts of the subcommands that show messages.
namespace tool {

// The form in which a message is shown, and whether secrets are masked.
struct MessageForm {
  bool xml = false;
  bool dump = false;
  ReportOptions report;

  // Adds the options that set it.
  void AddTo(CLI::App& subcommand);

  // Throws CLI::ValidationError if a form would show secrets that must be masked.
  void Check() const;

  // Returns whether the value of a parameter of that name is shown as "******".
  bool Hides(const std::string& name) const;

  // Returns the parameters with masked secrets.
  std::map<std::string, DriverParam> Masked(std::map<std::string, DriverParam> params) const;
};

// Adds the files that a subcommand reads.
void AddFileOption(CLI::App& subcommand, std::vector<std::string>& files);

// Loads a message. load() reports whether it is loaded by its result or by an exception.
// Returns whether it was loaded.
bool LoadMessage(const std::function<bool()>& load);

// The titles of several messages.
class Headings {
 public:
  explicit Headings(const Console& console) : console_(console) {}

  // Writes "FILE: title", with an empty line between two messages.
  void Print(const std::string& file, const std::string& title);

 private:
  const Console& console_;
  bool printedBefore_ = false;
};

// Shows every file of the options with a Viewer, which is constructed from the options, the console and a
// reporter. Returns the worst status.
template <typename Viewer, typename Options>
Status ShowFiles(const Options& options, const Console& console, const std::vector<std::string>& extensions) {
  options.form.Check();
  Reporter reporter(options.form.report, console);
  Viewer viewer(options, console, reporter);
  return ReportFiles(
      options.files, extensions, reporter,
      [&viewer](const std::string& name, const std::string& content) { return viewer.Show(name, content); });
}

}  // namespace tool
