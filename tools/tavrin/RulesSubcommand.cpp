#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_diagnostics/Rules.h>
#include <memory>
#include <string>
#include <vector>

#include "Subcommands.h"
#include "Table.h"
#include "Text.h"

namespace tool {
namespace {

using tavrin::diagnostics::FindRule;
using tavrin::diagnostics::NearestName;
using tavrin::diagnostics::Rule;
using tavrin::diagnostics::Rules;

Json::Value AsJson(const Rule& rule) {
  Json::Value value;
  value["rule"] = rule.id;
  value["severity"] = NameOf(rule.severity);
  value["reason"] = rule.reason;
  value["wrong"] = rule.wrong;
  value["right"] = rule.right;
  return value;
}

const Rule& KnownRule(const std::string& id) {
  if (const Rule* const rule = FindRule(id)) return *rule;
  std::vector<std::string> ids;
  for (const Rule& rule : Rules()) ids.push_back(rule.id);
  const std::string nearest = NearestName(id, ids);
  const std::string hint =
      nearest.empty() ? "'tavrin rules' lists them" : fmt::format("did you mean \"{}\"?", nearest);
  throw CLI::ValidationError("RULE", fmt::format("there is no rule {}; {}", Quoted(id), hint));
}

void PrintExample(const char* title, const std::string& example) {
  constexpr std::size_t most = 1000;
  Console::Out() << fmt::format("\n{}:\n  {}\n", title, PrintableLines(Shortened(example, most)));
}

void Explain(const Rule& rule, const Console& console) {
  Console::Out() << console.Paint(fmt::format("{} ({})", rule.id, NameOf(rule.severity)), fmt::emphasis::bold)
                 << '\n'
                 << rule.reason << '\n';
  PrintExample("Wrong", rule.wrong);
  PrintExample("Right", rule.right);
}

}  // namespace

void AddExplain(CLI::App& app, Session& session) {
  struct Options {
    std::string rule;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const explain = app.add_subcommand("explain",
                                               "Explain a rule of diagnostics: why it matters, with a wrong\n"
                                               "example and a right one.");
  explain->add_option("RULE", options->rule, "The rule's id, such as project/duplicate-id")
      ->required()
      ->type_name("");
  explain->add_flag("--json", options->json, "Print a JSON document instead");
  explain->callback([options, &session] {
    const Rule& rule = KnownRule(options->rule);
    if (options->json)
      Console::WriteJson(AsJson(rule));
    else
      Explain(rule, session.console);
  });
}

void AddRules(CLI::App& app, Session& session) {
  const auto json = std::make_shared<bool>(false);
  CLI::App* const rules =
      app.add_subcommand("rules", "List the rules of diagnostics, with severity and reason.");
  rules->add_flag("--json", *json, "Print JSON instead, one document per rule and line");
  rules->callback([json, &session] {
    Table table({"RULE", "SEVERITY", "WHY IT MATTERS"});
    for (const Rule& rule : Rules()) {
      if (*json)
        Console::WriteJson(AsJson(rule));
      else
        table.AddRow({rule.id, NameOf(rule.severity), rule.reason});
    }
    if (!*json) table.Print(Console::Out(), session.console);
  });
}

}  // namespace tool
