#include <CLI/CLI.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/Conversions.h>
#include <tavrin_platform/TextConstants.h>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <locale>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Choices.h"
#include "MessageView.h"
#include "Numbers.h"
#include "Parameters.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct ConditionalOptions {
  std::vector<std::string> files;
  MessageForm form;
  std::optional<std::string> test;
  std::string as = "auto";
  std::optional<std::string> parameter;
};

// The current value of a device; its type selects the test.
using DeviceValue = std::variant<bool, std::int32_t, double, std::string>;

std::optional<bool> Truth(const std::string& text) {
  if (text == "true") return true;
  if (text == "false") return false;
  return std::nullopt;
}

// Describes the values of a type.
const char* Expected(const std::string& type) {
  if (type == "bool") return "true or false";
  return type == "int" ? "a whole number from -2147483648 to 2147483647"
                       : "a number, with a decimal point if it has a fraction";
}

// Converts the argument to the type of that name, or to the first type that fits.
DeviceValue ParseDeviceValue(const std::string& text, const std::string& as) {
  const bool fits = as == "auto";
  if (const auto truth = Truth(text); truth && (fits || as == "bool")) return *truth;
  if (const auto number = WholeNumber<std::int32_t>(text); number && (fits || as == "int")) return *number;
  if (const auto real = WholeNumber<double>(text); real && (fits ? std::isfinite(*real) : as == "double"))
    return *real;
  if (fits || as == "text") return text;
  throw CLI::ValidationError("--test " + text, fmt::format("not {}, expected {}", as, Expected(as)));
}

// The two sides of a test as strings, and its result.
struct Outcome {
  std::string type;  // of both sides
  std::string left;
  std::optional<std::string> right;  // no value without the parameter
  bool isTrue = false;
  const DriverParam* parameter = nullptr;  // the compared parameter, or null
};

// Returns the integer that a test reads from a string.
std::int32_t NumberOf(const std::string& text) {
  CBindMessage reader;
  reader.Initialize(IBindMessage::COMMAND, EMPTY_STRING, text);
  return reader.getDataAsInteger();
}

class Tester {
 public:
  Tester(const CCondMessage& message, const char* parameterName, const MessageForm& form)
      : message_(message), parameterName_(parameterName), parameter_(FindParameter()), form_(form) {}

  Outcome operator()(bool value) const {
    return {"bool", zq::ToString(value), TRUE_STRING, message_.Test(value)};
  }

  Outcome operator()(std::int32_t value) const {
    return {"int", std::to_string(value), Shown(std::to_string(NumberOf(ParameterText()))),
            message_.Test(value, parameterName_), parameter_};
  }

  // The library has no such test with a parameter, so this reads the parameter as a driver would.
  Outcome operator()(double value) const {
    const double right = zq::ToDouble(ParameterText(), std::locale::classic());
    return {"double", fmt::format("{}", value), Shown(fmt::format("{}", right)),
            parameter_ != nullptr && message_.Test(value, right), parameter_};
  }

  Outcome operator()(const std::string& value) const {
    return {"text", value, Shown(ParameterText()), message_.Test(value.c_str(), parameterName_), parameter_};
  }

 private:
  const DriverParam* FindParameter() const {
    const auto& params = message_.getParamMap();
    const auto found = parameterName_ == nullptr ? params.begin() : params.find(parameterName_);
    return found == params.end() ? nullptr : &found->second;
  }

  // A variable parameter compares as the empty text.
  std::string ParameterText() const {
    return parameter_ == nullptr || parameter_->bVar ? EMPTY_STRING : parameter_->value;
  }

  std::optional<std::string> Shown(const std::string& right) const {
    if (parameter_ == nullptr) return std::nullopt;
    return form_.Hides(parameter_->name) ? tavrin::diagnostics::MaskedValue() : right;
  }

  const CCondMessage& message_;
  const char* parameterName_;
  const DriverParam* parameter_;
  const MessageForm& form_;
};

// A comparison from a pipe ends with a newline.
std::string WithoutNewline(const std::string& text) {
  const auto& names = tavrin::diagnostics::ComparisonNames();
  const std::string shorter = boost::algorithm::trim_right_copy_if(text, boost::algorithm::is_any_of("\r\n"));
  return std::find(names.begin(), names.end(), shorter) != names.end() ? shorter : text;
}

bool HasError(const Diagnostics& diagnostics) {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](const Diagnostic& diagnostic) { return diagnostic.severity == Severity::error; });
}

// Shows or tests conditionals one after another.
class ConditionalViewer {
 public:
  ConditionalViewer(const ConditionalOptions& options, const Console& console, Reporter& reporter)
      : options_(options), console_(console), headings_(console), reporter_(reporter) {
    if (options.test) value_ = ParseDeviceValue(*options.test, options.as);
    if (options.parameter && value_ && std::holds_alternative<bool>(*value_)) {
      throw CLI::ValidationError("--param " + *options.parameter,
                                 "a bool is compared with true; to compare with a parameter, add --as text");
    }
  }

  Status Show(const std::string& file, const std::string& content) {
    const std::string text = file == "<stdin>" ? WithoutNewline(content) : content;
    FileReport report{file, Subject::conditional, tavrin::diagnostics::DiagnoseConditional(text), text};
    CCondMessage message;
    std::optional<Outcome> outcome;
    // The loader accepts every text that is not XML as a comparison.
    if (!LoadMessage([&] { return message.fromXml(text) == 0 || !HasError(report.diagnostics); })) {
      report.status = Status::unreadable;
    } else {
      outcome = Test(message);
      if (outcome && !outcome->isTrue) report.status = Status::checkFailed;
      if (reporter_.IsJson()) report.fields = AsJson(message, outcome);
      report.print = [&] { Print(file, message, outcome); };
    }
    return reporter_.Report(report);
  }

 private:
  std::optional<Outcome> Test(const CCondMessage& message) const {
    if (!value_) return std::nullopt;
    const char* const parameter = options_.parameter ? options_.parameter->c_str() : nullptr;
    return std::visit(Tester(message, parameter, options_.form), *value_);
  }

  CCondMessage Masked(const CCondMessage& message) const {
    return {message.getName(), message.getRawCondition(), options_.form.Masked(message.getParamMap())};
  }

  void PrintSentence(const std::string& file, const CCondMessage& message, const Outcome& outcome) const {
    const auto side = [&outcome](const std::string& text) {
      return outcome.type == "text" ? Quoted(text) : text;
    };
    if (options_.files.size() > 1) Console::Out() << Printable(file) << ": ";
    Console::Out() << fmt::format(
        "{} {} {} {}: {}{}\n", Word(message.getName()), side(outcome.left), Word(message.getRawCondition()),
        outcome.right ? side(*outcome.right) : NoParameter(), outcome.isTrue, ComparedWith(outcome));
  }

  // The compared parameter, and its text if the test reads it differently.
  std::string ComparedWith(const Outcome& outcome) const {
    if (outcome.parameter == nullptr) return "";
    const DriverParam& parameter = *outcome.parameter;
    std::string text = fmt::format(" (parameter {}", Quoted(parameter.name));
    if (parameter.bVar)
      text += fmt::format(", variable {}, reads as an empty text", VariableName(parameter));
    else if (!options_.form.Hides(parameter.name))
      text += fmt::format(", whose text is {}", Quoted(parameter.value));
    return text + ')';
  }

  std::string NoParameter() const {
    return options_.parameter ? fmt::format("(no parameter {})", Quoted(*options_.parameter))
                              : "(no parameter)";
  }

  // Quotes a string inside a sentence if necessary.
  static std::string Word(const std::string& text) { return text.empty() ? "\"\"" : Printable(text); }

  void Print(const std::string& file, const CCondMessage& message, const std::optional<Outcome>& outcome) {
    if (options_.form.xml)
      Console::Out() << Masked(message).toXml() << '\n';
    else if (options_.form.dump)
      message.print(Console::Out()) << '\n';
    else if (outcome)
      PrintSentence(file, message, *outcome);
    else
      PrintTable(file, message);
  }

  void PrintTable(const std::string& file, const CCondMessage& message) {
    headings_.Print(
        file, fmt::format("conditional {} {}, {}", Quoted(message.getName()), Word(message.getRawCondition()),
                          Counted(message.getParamMap().size(), "parameter")));
    if (!message.getParamMap().empty()) Parameters(message).AsTable().Print(Console::Out(), console_);
  }

  Json::Value AsJson(const CCondMessage& message, const std::optional<Outcome>& outcome) {
    Json::Value document;
    document["name"] = message.getName();
    document["comparison"] = message.getRawCondition();
    document["parameters"] = Parameters(message).AsJson();
    if (outcome) {
      document["test"]["type"] = outcome->type;
      document["test"]["left"] = outcome->left;
      if (outcome->right) document["test"]["right"] = *outcome->right;
      if (outcome->parameter != nullptr) {
        const DriverParam& parameter = *outcome->parameter;
        document["test"]["parameter"] = parameter.name;
        if (options_.form.Hides(parameter.name))
          document["test"]["masked"] = true;
        else
          document["test"]["text"] = parameter.bVar ? EMPTY_STRING : parameter.value;
      }
      document["test"]["result"] = outcome->isTrue;
    }
    return document;
  }

  ParameterView Parameters(const CCondMessage& message) {
    return {message.getParamMap(), noVariables_, options_.form.report.showSecrets};
  }

  const ConditionalOptions& options_;
  const Console& console_;
  Headings headings_;
  Reporter& reporter_;
  VariableStore noVariables_;
  std::optional<DeviceValue> value_;
};

}  // namespace

void AddConditional(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ConditionalOptions>();
  CLI::App* const conditional = app.add_subcommand("conditional",
                                                   "Show conditionals: the name, the comparison, and the\n"
                                                   "parameters in a table. With --test, evaluate them: the\n"
                                                   "exit status is 0 for true and 1 for false.");
  AddFileOption(*conditional, options->files);
  options->form.AddTo(*conditional);
  CLI::Option* const test = conditional->add_option("--test", options->test,
                                                    "Evaluate the conditional for a device whose current\n"
                                                    "value is VALUE, and print the result");
  test->type_name("VALUE")->excludes("--xml")->excludes("--dump");
  conditional
      ->add_option("--as", options->as,
                   "The type of VALUE; the default is the first of bool,\n"
                   "int, double and text that fits. A bool is compared\n"
                   "with true, not with a parameter")
      ->check(OneOf({"bool", "int", "double", "text"}))
      ->needs(test)
      ->type_name("TYPE");
  conditional
      ->add_option("--param", options->parameter,
                   "The parameter to compare with, instead of the first by name")
      ->needs(test)
      ->type_name("NAME");
  conditional->callback([options, &session] {
    session.status = ShowFiles<ConditionalViewer>(*options, session.console, {".xml"});
  });
}

}  // namespace tool
