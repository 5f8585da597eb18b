#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/TextConstants.h>
#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Choices.h"
#include "Numbers.h"
#include "Parameters.h"
#include "Subcommands.h"
#include "Text.h"

// Creates messages from the command line.
namespace tool {
namespace {

using tavrin::diagnostics::Diagnostic;
using tavrin::diagnostics::Diagnostics;
using tavrin::diagnostics::Severity;
using Params = std::map<std::string, DriverParam>;

struct MakeOptions {
  std::string kind;
  std::string name;
  std::vector<std::string> params;
  std::vector<std::string> variableParams;
  bool json = false;
  // of a binding message
  bool isNotification = false;
  bool isAnswer = false;
  std::string data;
  std::string path;
  // of a conditional
  std::string comparison = "EQUAL";
};

// Returns the type that a value resembles, for people: the library reads every value as a string.
std::string TypeOf(const std::string& value) {
  if (value == TRUE_STRING || value == FALSE_STRING) return "bool";
  const auto number = WholeNumber<double>(value);
  return number && std::isfinite(*number) ? "number" : "string";
}

// Splits a string at its first "=".
std::pair<std::string, std::string> Split(const std::string& option, const std::string& text,
                                          const std::string& expected) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0)
    throw CLI::ValidationError(option + ' ' + text, "expected " + expected);
  return {text.substr(0, equals), text.substr(equals + 1)};
}

DriverParam VariableParam(const std::string& text) {
  const std::string option = "--variable-param";
  const std::string expected = "NAME=DEVICE:ID, with ids from 0 to 4294967295";
  const auto [name, ids] = Split(option, text, expected);
  const std::size_t colon = ids.find(':');
  const auto device = WholeNumber<std::uint32_t>(std::string_view(ids).substr(0, colon));
  const auto id = colon == std::string::npos
                      ? std::nullopt
                      : WholeNumber<std::uint32_t>(std::string_view(ids).substr(colon + 1));
  if (!device || !id) throw CLI::ValidationError(option + ' ' + text, "expected " + expected);
  return {name, "number", *device, *id};
}

Params ReadParams(const MakeOptions& options) {
  Params params;
  const auto add = [&params](const std::string& option, const std::string& text, const DriverParam& param) {
    if (!params.emplace(param.name, param).second)
      throw CLI::ValidationError(option + ' ' + text, "another parameter has the same name");
  };
  for (const std::string& text : options.params) {
    const auto [name, value] = Split("--param", text, "NAME=VALUE");
    add("--param", text, {name, TypeOf(value), value});
  }
  for (const std::string& text : options.variableParams) add("--variable-param", text, VariableParam(text));
  return params;
}

// Escapes text as the content of an element. The library writes names verbatim.
std::string Markup(const std::string& text) { return zq::CreateXmlNode("text", text)->InnerXml(); }

std::string CommandAsXml(const MakeOptions& options, const Params& params) {
  VariableStore noVariables;
  return CCmdMessage(options.name, params, noVariables).toXml(false) + '\n';
}

// An entry inherits the members that it omits, also whether it is variable, so variable entries come last.
std::string CommandAsJson(const MakeOptions& options, const Params& params) {
  Json::Value command;
  command["command"] = options.name;
  Json::Value& entries = command["params"] = Json::arrayValue;
  for (const bool isVariable : {false, true}) {
    for (const auto& [name, param] : params) {
      if (param.bVar != isVariable) continue;
      Json::Value entry;
      entry["name"] = name;
      entry["type"] = param.type;
      if (isVariable) {
        entry["value"]["variable"]["deviceid"] = param.idDevice;
        entry["value"]["variable"]["variableid"] = param.idVariable;
      } else {
        entry["value"]["static"] = param.value;
      }
      entries.append(entry);
    }
  }
  Json::Value wrapper;
  wrapper["devicecommand"] = command;
  return Console::JsonText(wrapper) + '\n';
}

std::string BindingAsXml(const MakeOptions& options, const Params& params) {
  CBindMessage message;
  message.Initialize(options.isNotification ? IBindMessage::NOTIFY : IBindMessage::COMMAND,
                     Markup(options.name), options.data);
  message.AddPath(options.path);
  message.addParams(params);
  if (options.isAnswer) {
    zq::XmlNode::Ptr flag = zq::CreateXmlNode("bindmessage", EMPTY_STRING);
    flag->AddChild("query", EMPTY_STRING);
    message.fromXml(flag);
  }
  return message.toXml();
}

std::string ConditionalAsXml(const MakeOptions& options, const Params& params) {
  return CCondMessage(Markup(options.name), options.comparison, params).toXml() + '\n';
}

// A message that would be read differently from the request is not written.
void RequireFaithful(const Diagnostics& diagnostics) {
  for (const Diagnostic& diagnostic : diagnostics) {
    if (diagnostic.severity != Severity::note)
      throw CLI::ValidationError("make", "the message would not be read as given: " + diagnostic.text);
  }
}

void RefuseOptionsOfOthers(const CLI::App& make, const std::string& kind) {
  const std::pair<const char*, const char*> owners[] = {
      {"--json", "command"}, {"--notify", "binding"}, {"--answer", "binding"},
      {"--data", "binding"}, {"--path", "binding"},   {"--comparison", "conditional"}};
  for (const auto& [option, owner] : owners) {
    if (make.count(option) > 0 && kind != owner)
      throw CLI::ValidationError(option, fmt::format("only a {} has this option, not a {}", owner, kind));
  }
}

std::string MessageOf(const MakeOptions& options) {
  const Params params = ReadParams(options);
  if (options.kind == "binding") {
    const std::string text = BindingAsXml(options, params);
    RequireFaithful(tavrin::diagnostics::DiagnoseBinding(text));
    return text;
  }
  if (options.kind == "conditional") {
    const std::string text = ConditionalAsXml(options, params);
    RequireFaithful(tavrin::diagnostics::DiagnoseConditional(text));
    return text;
  }
  const std::string text = options.json ? CommandAsJson(options, params) : CommandAsXml(options, params);
  RequireFaithful(tavrin::diagnostics::DiagnoseCommand(text));
  return text;
}

}  // namespace

void AddMake(CLI::App& app, Session& session) {
  const auto options = std::make_shared<MakeOptions>();
  CLI::App* const make = app.add_subcommand("make",
                                            "Write a message as XML, or a command as JSON, so that\n"
                                            "scripts and tests need no hand-written markup.");
  make->add_option("KIND", options->kind, "The kind of the message: command, binding or conditional")
      ->required()
      ->check(OneOf({"command", "binding", "conditional"}))
      ->type_name("");
  make->add_option("NAME", options->name, "The name of the message")->required()->type_name("");
  make->add_option("--param", options->params, "A parameter and its value; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  make->add_option("--variable-param", options->variableParams,
                   "A parameter that names a variable of a device;\nmay be repeated")
      ->type_name("NAME=DEVICE:ID")
      ->allow_extra_args(false);
  make->add_flag("--json", options->json, "Write a command as JSON instead of XML");
  CLI::Option* const notify = make->add_flag(
      "--notify", options->isNotification, "Write a binding message that is a notification,\nnot a command");
  make->add_flag("--answer", options->isAnswer, "Write a notification that answers a query")->needs(notify);
  make->add_option("--data", options->data,
                   "The data of a binding message. It is written\nverbatim: escape & and < in plain text")
      ->type_name("DATA");
  make->add_option("--path", options->path, "The path of a binding message, also written verbatim")
      ->type_name("PATH");
  make->add_option("--comparison", options->comparison,
                   "The comparison of a conditional; the default is EQUAL")
      ->check(OneOf(tavrin::diagnostics::ComparisonNames()))
      ->type_name("COMPARISON");
  make->callback([options, make, &session] {
    RefuseOptionsOfOthers(*make, options->kind);
    Console::Out() << MessageOf(*options);
    session.status = Status::success;
  });
}

}  // namespace tool
