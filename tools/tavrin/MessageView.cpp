#include "MessageView.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_platform/ZqError.h>
#include <ostream>

#include "Text.h"

namespace tool {

void MessageForm::AddTo(CLI::App& subcommand) {
  report.AddTo(subcommand);
  CLI::Option* const xmlFlag = subcommand.add_flag("--xml", xml, "Print the XML form instead of the table");
  CLI::Option* const dumpFlag = subcommand.add_flag("--dump", dump,
                                                    "Print the form for logs instead of the table. It is\n"
                                                    "not escaped or masked: requires --show-secrets");
  xmlFlag->excludes(dumpFlag);
  for (CLI::Option* const flag : {xmlFlag, dumpFlag})
    flag->excludes("--json")->excludes("--format")->excludes("--quiet");
  subcommand.add_flag("--show-secrets", report.showSecrets,
                      "Show the values of parameters named \"pin\" or with\n"
                      "\"password\" in the name, instead of ******");
}

void MessageForm::Check() const {
  if (dump && !report.showSecrets)
    throw CLI::ValidationError("--dump", "this form does not mask secrets, so it requires --show-secrets");
}

bool MessageForm::Hides(const std::string& name) const {
  return !report.showSecrets && zq::isSecretParameter(name);
}

std::map<std::string, DriverParam> MessageForm::Masked(std::map<std::string, DriverParam> params) const {
  for (auto& [name, param] : params) {
    if (Hides(param.name)) param.value = tavrin::diagnostics::MaskedValue();
  }
  return params;
}

void AddFileOption(CLI::App& subcommand, std::vector<std::string>& files) {
  subcommand
      .add_option("FILE", files,
                  "A file with one message, or a directory, which is searched\nfor files; \"-\" is the "
                  "standard input")
      ->required()
      ->type_name("");
}

bool LoadMessage(const std::function<bool()>& load) {
  try {
    return load();
  } catch (const zq::ZqError&) {
    return false;
  } catch (const Json::Exception&) {
    return false;
  }
}

void Headings::Print(const std::string& file, const std::string& title) {
  if (printedBefore_) Console::Out() << '\n';
  printedBefore_ = true;
  Console::Out() << Printable(file) << ": " << console_.Paint(title, fmt::emphasis::bold) << '\n';
}

}  // namespace tool
