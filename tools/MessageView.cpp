#include "MessageView.h"

#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_platform/ZqError.h>
#include <ostream>

#include "Text.h"
#include "tavrin_driver/internal/Secrets.h"

namespace tool {

void MessageForm::AddTo(CLI::App& subcommand) {
  CLI::Option* const xmlFlag = subcommand.add_flag("--xml", xml, "Print the XML form instead of the table");
  CLI::Option* const dumpFlag = subcommand.add_flag("--dump", dump,
                                                    "Print the form for logs instead, unescaped; it\n"
                                                    "never masks a secret: needs --show-secrets");
  CLI::Option* const jsonFlag = subcommand.add_flag("--json", json,
                                                    "Print a JSON document instead, one line a file;\n"
                                                    "everything but ASCII is escaped");
  xmlFlag->excludes(dumpFlag)->excludes(jsonFlag);
  dumpFlag->excludes(jsonFlag);
  subcommand.add_flag("--show-secrets", showSecrets,
                      "Show the values of parameters named \"pin\" or\n"
                      "with \"password\" in the name, not ******");
}

void MessageForm::Check() const {
  if (dump && !showSecrets)
    throw CLI::ValidationError("--dump",
                               "the printed form masks no secrets, so --show-secrets is needed with it");
}

bool MessageForm::Hides(const std::string& name) const { return !showSecrets && tavrin::IsSecret(name); }

std::map<std::string, DriverParam> MessageForm::Masked(std::map<std::string, DriverParam> params) const {
  for (auto& [name, param] : params) {
    if (Hides(param.name)) param.value = tavrin::maskedValue;
  }
  return params;
}

void AddFileOption(CLI::App& subcommand, std::vector<std::string>& files) {
  subcommand.add_option("FILE", files, "A file with one message; \"-\" is the standard input")
      ->required()
      ->type_name("");
}

bool LoadMessage(const Console& console, const std::string& file, const LintResult& lint,
                 const std::function<bool()>& load) {
  for (const Finding& note : lint.notes) console.Note(file, note);
  std::string error = "the text does not hold such a message";
  try {
    if (load()) return true;
  } catch (const zq::ZqError& thrown) {
    error = ErrorText(thrown.what());
  } catch (const Json::Exception& thrown) {
    error = ErrorText(thrown.what());
  }
  Console::Error(file, lint.objection.text.empty() ? Finding{{}, error} : lint.objection);
  return false;
}

void Headings::Print(const std::string& file, const std::string& title) {
  if (printedBefore_) Console::Out() << '\n';
  printedBefore_ = true;
  Console::Out() << Printable(file) << ": " << console_.Paint(title, fmt::emphasis::bold) << '\n';
}

std::string ParameterCount(std::size_t count) {
  return fmt::format("{} parameter{}", count, count == 1 ? "" : "s");
}

}  // namespace tool
