#include "DiagnosticsProperties.h"

#include <json/value.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_platform/ZqError.h>
#include <tavrin_testing/FakeVariables.h>
#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>

#include "DescribeDiagnostics.h"
#include "DescribeParams.h"
#include "StrictReading.h"

namespace {

using tavrin::diagnostics::Diagnostic;
using tavrin::diagnostics::Diagnostics;

// The value that a variable parameter inherits is never read.
std::map<std::string, DriverParam> Normal(std::map<std::string, DriverParam> params) {
  for (auto& [name, param] : params) {
    if (param.bVar) param.value.clear();
  }
  return params;
}

// The result of loading a text, or no value if the loader rejects it.
std::optional<std::string> LoadedCommand(const std::string& text) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  try {
    if (message.Load(text) != 0) return {};
  } catch (const zq::ZqError&) {
    return {};
  } catch (const Json::Exception&) {
    return {};
  }
  return message.getRawCommand() + " | " + Describe(Normal(message.GetParamMap()));
}

std::optional<std::string> LoadedBinding(const std::string& text) {
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) return {};
  zq::XmlNode::Ptr root = document->GetRoot();
  CBindMessage message;
  try {
    message.fromXml(root);
  } catch (const zq::ZqError&) {
    return {};
  }
  return Describe(message);
}

// Every comparison is accepted, but a test with an unknown one is never true.
std::optional<std::string> LoadedConditional(const std::string& text) {
  CCondMessage message;
  try {
    const auto& names = tavrin::diagnostics::ComparisonNames();
    const bool isBare = std::find(names.begin(), names.end(), text) != names.end();
    if (message.fromXml(text) != 0 && !isBare) return {};
  } catch (const zq::ZqError&) {
    return {};
  }
  return Describe(message);
}

std::size_t OffsetOf(const std::string& text, const zq::XmlPosition& position) {
  std::size_t at = 0;
  for (std::uint32_t line = 1; line < position.line; ++line) {
    at = text.find_first_of("\r\n", at);
    at += text.compare(at, 2, "\r\n") == 0 ? 2 : 1;
  }
  return at + position.column - 1;
}

std::size_t AfterJsonBlanks(const std::string& text, std::size_t at) {
  while (true) {
    const std::size_t begin = at;
    at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
    if (text.compare(at, 2, "//") == 0) at = std::min(text.find_first_of("\r\n", at), text.size());
    if (text.compare(at, 2, "/*") == 0) {
      const std::size_t close = text.find("*/", at + 2);
      if (close != std::string::npos) at = close + 2;
    }
    if (at == begin) return at;
  }
}

// Returns the position of the comma if it is the last token before a position, or else the position.
std::size_t CommaBefore(const std::string& text, std::size_t position) {
  std::size_t comma = position;
  for (std::size_t at = AfterJsonBlanks(text, 0); at < position; at = AfterJsonBlanks(text, at + 1)) {
    comma = text[at] == ',' ? at : position;
    if (text[at] != '"') continue;
    for (++at; at < position && text[at] != '"'; ++at) at += text[at] == '\\' ? 1 : 0;
  }
  return comma;
}

// Returns a text without a part, and without the comma after it, or else before it: a comment between a comma
// and the end of an array is an error.
std::string Without(const std::string& text, const Diagnostic& part, bool isJson) {
  std::size_t begin = OffsetOf(text, part.begin);
  std::size_t end = OffsetOf(text, part.end);
  if (isJson && end < text.size()) {
    const std::size_t comma = AfterJsonBlanks(text, end);
    if (text.compare(comma, 1, ",") == 0)
      end = comma + 1;
    else
      begin = CommaBefore(text, begin);
  }
  return text.substr(0, begin) + text.substr(end);
}

bool IsJson(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n\v\f");
  return first != std::string::npos && (text[first] == '{' || text[first] == '[');
}

// Two pieces of text may together form the end of a CDATA section, which is not allowed.
bool CanBeJoined(const std::string& text) { return text.find("]]>") == std::string::npos; }

using Load = std::optional<std::string> (*)(const std::string&);

std::string BrokenProperty(const std::string& text, const Diagnostics& diagnostics, Load load,
                           Load readStrictly) {
  const std::optional<std::string> loaded = load(text);
  if (HasError(diagnostics) == loaded.has_value()) return "there is an error if and only if loading fails";
  if (!loaded) return "";
  if (!HasWarning(diagnostics)) {
    const std::optional<std::string> expected = readStrictly(text);
    if (!expected) return "an input without warnings contains only parts that are read";
    if (*expected != *loaded)
      return "an input without warnings loads as the strict reader reads it: " + *expected + " not " +
             *loaded;
  }
  for (const Diagnostic& diagnostic : diagnostics) {
    if (!diagnostic.isIgnored) continue;
    const std::string shorter = Without(text, diagnostic, IsJson(text));
    if (CanBeJoined(shorter) && load(shorter) != loaded)
      return "the message is the same without what is ignored: " + Describe(diagnostic) + " from " + shorter;
  }
  return "";
}

}  // namespace

std::string BrokenPropertyOfCommand(const std::string& text) {
  return BrokenProperty(text, tavrin::diagnostics::DiagnoseCommand(text), LoadedCommand, strict::ReadCommand);
}

std::string BrokenPropertyOfBinding(const std::string& text) {
  return BrokenProperty(text, tavrin::diagnostics::DiagnoseBinding(text), LoadedBinding, strict::ReadBinding);
}

std::string BrokenPropertyOfConditional(const std::string& text) {
  return BrokenProperty(text, tavrin::diagnostics::DiagnoseConditional(text), LoadedConditional,
                        strict::ReadConditional);
}

std::string BrokenPropertyOfProject(const std::string& text) {
  zq::ProjectValidator validator(text);
  const bool isValid = validator.valid();
  const auto diagnosis = tavrin::diagnostics::DiagnoseProject(std::string(text));
  const Diagnostics& diagnostics = diagnosis.diagnostics;
  if (diagnostics.empty() != isValid) return "a project is valid exactly without diagnostics";
  if (diagnosis.Source() != text) return "the source is the text";
  const auto end = std::find_if(diagnostics.begin(), diagnostics.end(),
                                [](const Diagnostic& diagnostic) { return diagnostic.endsCheck; });
  const auto common =
      static_cast<std::size_t>(end - diagnostics.begin()) + (end == diagnostics.end() ? 0 : 1);
  if (common != validator.messages().size()) return "the validator ends where the diagnosis says";
  for (std::size_t i = 0; i < common; ++i) {
    if (diagnostics[i].text != validator.messages()[i]) return "the texts are those of the validator";
    const bool hasPosition = validator.places()[i].line != 0;
    if (hasPosition && diagnostics[i].begin != validator.places()[i]) return "so are the positions";
  }
  return "";
}
