#include <fmt/format.h>
#include <json/value.h>
#include <unistd.h>

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlDiagnostics.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Input.h"
#include "Numbers.h"
#include "Progress.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct Options {
  std::vector<std::string> files;
  std::uint64_t maxMessages = std::numeric_limits<std::uint64_t>::max();
  bool quiet = false;
  bool json = false;
};

// What came of a project.
struct Report {
  const std::string& file;
  const zq::ProjectValidator& validator;
  std::size_t items;
  const zq::XmlError& parseError;  // with a text when the project is no XML

  const std::vector<std::string>& Messages() const { return validator.messages(); }

  // What has no place for the validator has one for the parser.
  Place PlaceOf(std::size_t message) const {
    return parseError.text.empty() ? validator.places()[message] : parseError.position;
  }
};

std::string Counted(std::size_t count, const std::string& what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

double Megabytes(std::size_t bytes) { return static_cast<double>(bytes) / 1e6; }

// A file's name, or the end of a long one, which tells files apart better than its beginning: what is left of
// a line on a terminal is for the progress.
std::string ShortName(const std::string& file) {
  constexpr std::size_t most = 30;
  std::string name = Printable(file);
  if (name.size() <= most) return name;
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; };
  const auto tail = std::find_if_not(name.end() - most, name.end(), isContinuation);
  return "..." + std::string(tail, name.end());
}

// Checks one project after the other.
class ProjectChecker {
 public:
  explicit ProjectChecker(const Options& options)
      : options_(options), progress_(std::cerr, !options.quiet && isatty(STDERR_FILENO) != 0) {}

  Status Check(const std::string& file, std::string&& text) {
    const std::string label = "tavrin: " + ShortName(file);
    zq::XmlError parseError;
    const zq::XmlDocument::Ptr document = Parse(label, std::move(text), parseError);
    zq::ProjectValidator validator(document ? document->GetRoot() : zq::XmlNode::Ptr());
    const std::size_t items = Validate(label, validator);
    progress_.Done();

    const Report report{file, validator, items, parseError};
    if (options_.json)
      Console::WriteJson(AsJson(report));
    else if (!options_.quiet)
      Print(report);
    return report.Messages().empty() ? Status::Fine : Status::No;
  }

 private:
  // Telling how far it is takes time and memory of its own.
  zq::XmlDocument::Ptr Parse(const std::string& label, std::string&& text, zq::XmlError& error) {
    if (!progress_.IsEverShown()) return zq::CreateXmlDocument(std::move(text), error);
    const double size = Megabytes(text.size());
    return zq::CreateXmlDocument(std::move(text), error, [&](std::size_t bytes) {
      progress_.Update(
          [&] { return fmt::format("{}: {:.1f} of {:.1f} MB parsed", label, Megabytes(bytes), size); });
    });
  }

  // Tells how many items the project has.
  std::size_t Validate(const std::string& label, zq::ProjectValidator& validator) {
    std::size_t items = 0;
    validator.setItemObserver([&] {
      if (++items % itemsBetweenUpdates != 0) return;
      progress_.Update([&] { return fmt::format("{}: {} items checked", label, items); });
    });
    validator.valid();
    return items;
  }

  std::size_t Shown(const Report& report) const {
    return static_cast<std::size_t>(std::min<std::uint64_t>(report.Messages().size(), options_.maxMessages));
  }

  void Print(const Report& report) const {
    for (std::size_t i = 0; i < Shown(report); ++i)
      Console::WriteFinding(report.file, {report.PlaceOf(i), Printable(report.Messages()[i])});
    if (!report.parseError.text.empty())
      Console::Error(report.file, {report.parseError.position, report.parseError.text});
    Console::Summarize(report.file, Summary(report));
  }

  std::string Summary(const Report& report) const {
    if (report.Messages().empty()) return "valid, " + Counted(report.items, "item");
    std::string count = Counted(report.Messages().size(), "finding");
    if (Shown(report) == report.Messages().size()) return count;
    return fmt::format("{}, {} shown", count, Shown(report));
  }

  Json::Value AsJson(const Report& report) const {
    Json::Value document;
    document["file"] = report.file;
    document["valid"] = report.Messages().empty();
    document["items"] = static_cast<Json::UInt64>(report.items);
    document["findings"] = static_cast<Json::UInt64>(report.Messages().size());
    Json::Value& messages = document["messages"] = Json::arrayValue;
    for (std::size_t i = 0; i < Shown(report); ++i) {
      Json::Value message = PlaceAsJson(report.PlaceOf(i));
      message["message"] = report.Messages()[i];
      messages.append(std::move(message));
    }
    if (!report.parseError.text.empty()) {
      Json::Value& parser = document["parser"] = PlaceAsJson(report.parseError.position);
      parser["message"] = report.parseError.text;
    }
    return document;
  }

  static Json::Value PlaceAsJson(const Place& place) {
    Json::Value value;
    value["line"] = place.line;
    value["column"] = place.column;
    return value;
  }

  // Reading the clock for each item would show.
  static constexpr std::size_t itemsBetweenUpdates = 1024;

  const Options& options_;
  Progress progress_;
};

Status Run(const Options& options) {
  ProjectChecker checker(options);
  return ForEachFile(options.files, [&checker](const std::string& name, std::string&& content) {
    return checker.Check(name, std::move(content));
  });
}

}  // namespace

void AddValidate(CLI::App& app, Session& session) {
  const auto options = std::make_shared<Options>();
  CLI::App* const validate =
      app.add_subcommand("validate",
                         "Check the structure of projects before a controller loads them:\n"
                         "a line for each finding, with its place, and their number on the\n"
                         "standard error stream.");
  validate->add_option("FILE", options->files, "A file with one project; \"-\" is the standard input")
      ->required()
      ->type_name("");
  CLI::Option* const quiet =
      validate->add_flag("-q,--quiet", options->quiet, "Tell the result by the exit status alone");
  validate
      ->add_flag("--json", options->json,
                 "Print a JSON document instead, one line a file;\n"
                 "everything but ASCII is escaped")
      ->excludes(quiet);
  validate->add_option("--max-messages", options->maxMessages, "Show only the first N findings of each file")
      ->type_name("N")
      ->check([](const std::string& text) {
        return WholeNumber<std::uint64_t>(text) ? "" : Quoted(text) + " is not a whole number";
      });
  validate->callback([options, &session] { session.status = Run(*options); });
}

}  // namespace tool
