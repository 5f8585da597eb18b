#include "Sarif.h"

#include <fmt/format.h>

#include <tavrin_diagnostics/Rules.h>
#include <cstdint>

#include "SourceLine.h"
#include "Text.h"

namespace tool {
namespace {

using tavrin::diagnostics::Rule;
using tavrin::diagnostics::Rules;

Json::Value Message(const std::string& text) {
  Json::Value message;
  message["text"] = text;
  return message;
}

// Returns a path as a relative reference, with special characters of URIs escaped.
std::string UriOf(const std::string& file) {
  constexpr std::string_view kept = "-._~/ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  std::string uri = file.compare(0, 1, "/") == 0 ? "file://" : "";
  for (const char c : file) {
    if (kept.find(c) != std::string_view::npos)
      uri += c;
    else
      uri += fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return uri;
}

Json::Value RegionOf(const Diagnostic& diagnostic, const Diagnostic& inFile, const SourceText& source) {
  const auto column = [&source](const zq::XmlPosition& position) {
    return static_cast<Json::UInt64>(CharactersBefore(source, position) + 1);
  };
  Json::Value region;
  region["startLine"] = inFile.begin.line;
  region["startColumn"] = column(diagnostic.begin);
  if (diagnostic.end.line != 0) {
    region["endLine"] = inFile.end.line;
    region["endColumn"] = column(diagnostic.end);
  }
  return region;
}

Json::Value SarifRule(const Rule& rule) {
  Json::Value value;
  value["id"] = rule.id;
  value["shortDescription"] = Message(rule.reason);
  value["fullDescription"] = Message(rule.reason);
  value["help"] =
      Message(fmt::format("{}\n\nWrong:\n{}\n\nRight:\n{}\n", rule.reason, rule.wrong, rule.right));
  value["defaultConfiguration"]["level"] = NameOf(rule.severity);
  return value;
}

}  // namespace

Json::Value SarifResult(const FileReport& report, const SourceText& source, const Diagnostic& diagnostic,
                        const Diagnostic& inFile) {
  Json::Value result;
  result["ruleId"] = std::string(diagnostic.rule);
  result["level"] = NameOf(diagnostic.severity);
  result["message"] = Message(
      diagnostic.hint.empty() ? diagnostic.text : fmt::format("{} ({})", diagnostic.text, diagnostic.hint));
  Json::Value location;
  location["physicalLocation"]["artifactLocation"]["uri"] = UriOf(report.file);
  if (diagnostic.begin.line != 0)
    location["physicalLocation"]["region"] = RegionOf(diagnostic, inFile, source);
  result["locations"].append(location);
  return result;
}

Json::Value SarifLog(const Json::Value& results) {
  Json::Value driver;
  driver["name"] = "tavrin";
  driver["version"] = TAVRIN_VERSION;
  for (const Rule& rule : Rules()) driver["rules"].append(SarifRule(rule));
  Json::Value run;
  run["tool"]["driver"] = driver;
  run["columnKind"] = "unicodeCodePoints";
  run["results"] = results;
  Json::Value log;
  log["version"] = "2.1.0";
  log["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
  log["runs"].append(run);
  return log;
}

}  // namespace tool
