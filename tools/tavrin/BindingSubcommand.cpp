#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_driver/BindMessage.h>
#include <memory>
#include <string>
#include <vector>

#include "MessageView.h"
#include "Parameters.h"
#include "Subcommands.h"
#include "Text.h"

namespace tool {
namespace {

struct BindingOptions {
  std::vector<std::string> files;
  MessageForm form;
};

// A message, and the parts that only its XML contains.
struct Binding {
  CBindMessage message;
  bool answersQuery = false;

  // Throws the exceptions of reading a message. @return whether the text is XML
  bool Load(const std::string& text) {
    const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
    if (!document) return false;
    zq::XmlNode::Ptr root = document->GetRoot();
    message.fromXml(root);
    answersQuery = root->GetChild("query") != nullptr;
    return true;
  }
};

// Shows binding messages one after another.
class BindingViewer {
 public:
  BindingViewer(const BindingOptions& options, const Console& console, Reporter& reporter)
      : form_(options.form), console_(console), headings_(console), reporter_(reporter) {}

  Status Show(const std::string& file, const std::string& text) {
    Binding binding;
    FileReport report{file, Subject::binding, tavrin::diagnostics::DiagnoseBinding(text), text};
    if (!LoadMessage([&] { return binding.Load(text); })) {
      report.status = Status::unreadable;
    } else {
      if (reporter_.IsJson()) report.fields = AsJson(binding);
      report.print = [&] { Print(file, binding); };
    }
    return reporter_.Report(report);
  }

 private:
  // Returns the message with masked secrets. It is rebuilt, because a message keeps the first parameter of a
  // name.
  CBindMessage Masked(const Binding& binding) const {
    const CBindMessage& message = binding.message;
    CBindMessage masked;
    masked.Initialize(IBindMessage::COMMAND, message.getCommand());
    masked.Initialize(IBindMessage::NOTIFY, message.getNotify(), message.getData());
    masked.AddPath(message.getPath());
    masked.addParams(form_.Masked(message.GetParamMap()));
    zq::XmlNode::Ptr flag = zq::CreateXmlNode("bindmessage", "");
    if (binding.answersQuery) flag->AddChild("query", "");
    masked.fromXml(flag);
    return masked;
  }

  static std::string Title(const Binding& binding) {
    const CBindMessage& message = binding.message;
    std::vector<std::string> names;
    if (message.isCommand()) names.push_back("command " + Quoted(message.getCommand()));
    if (message.isNotify()) {
      names.push_back((binding.answersQuery ? "query answer " : "notification ") +
                      Quoted(message.getNotify()));
    }
    if (names.empty()) names.emplace_back("message without a name");
    return fmt::format("{}, {}", fmt::join(names, " and "),
                       Counted(message.GetParamMap().size(), "parameter"));
  }

  static bool IsDataTrue(const CBindMessage& message) { return message.getDataAsInteger() != 0; }

  void Print(const std::string& file, const Binding& binding) {
    const CBindMessage& message = binding.message;
    if (form_.xml) {
      Console::Out() << Masked(binding).toXml();
      return;
    }
    if (form_.dump) {
      message.print(Console::Out()) << '\n';
      return;
    }
    headings_.Print(file, Title(binding));
    Table fields({"FIELD", "VALUE"});
    if (message.hasData()) {
      fields.AddRow({"data", message.getData()});
      fields.AddRow({"as a number", std::to_string(message.getDataAsInteger())});
      fields.AddRow({"as a boolean", IsDataTrue(message) ? "true" : "false"});
    }
    if (message.hasPath()) fields.AddRow({"path", message.getPath()});
    if (fields.HasRows()) fields.Print(Console::Out(), console_);
    if (message.hasParams()) Parameters(message).AsTable().Print(Console::Out(), console_);
  }

  Json::Value AsJson(const Binding& binding) {
    const CBindMessage& message = binding.message;
    Json::Value document;
    if (message.isCommand()) document["command"] = message.getCommand();
    if (message.isNotify()) {
      document["notification"] = message.getNotify();
      document["answersQuery"] = binding.answersQuery;
    }
    if (message.hasData()) {
      document["data"] = message.getData();
      document["number"] = message.getDataAsInteger();
      document["boolean"] = IsDataTrue(message);
    }
    if (message.hasPath()) document["path"] = message.getPath();
    document["parameters"] = Parameters(message).AsJson();
    return document;
  }

  ParameterView Parameters(const CBindMessage& message) {
    return {message.GetParamMap(), noVariables_, form_.report.showSecrets};
  }

  const MessageForm& form_;
  const Console& console_;
  Headings headings_;
  Reporter& reporter_;
  VariableStore noVariables_;
};

}  // namespace

void AddBinding(CLI::App& app, Session& session) {
  const auto options = std::make_shared<BindingOptions>();
  CLI::App* const binding = app.add_subcommand("binding",
                                               "Show binding messages: commands, notifications and answers\n"
                                               "to queries, with their data as text, number and boolean,\n"
                                               "their path, and the parameters in a table.");
  AddFileOption(*binding, options->files);
  options->form.AddTo(*binding);
  binding->callback([options, &session] {
    session.status = ShowFiles<BindingViewer>(*options, session.console, {".xml"});
  });
}

}  // namespace tool
