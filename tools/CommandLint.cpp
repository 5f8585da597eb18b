#include "CommandLint.h"

#include <fmt/format.h>
#include <json/value.h>

#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/internal/Limits.h>
#include <tavrin_platform/XmlPosition.h>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <cstdint>
#include <map>
#include <vector>

#include "JsonText.h"
#include "Parameters.h"
#include "Text.h"
#include "XmlLint.h"

using zq::XmlNode;

namespace tool {
namespace {

void LintXmlCommand(const std::string& text, Findings& notes) {
  const zq::XmlDocument::Ptr document = ParseXml(text);
  XmlNode& root = *document->GetRoot();
  XmlLint(notes).CheckMessage(root, {"devicecommand", {"command"}, {}, {}, false});
  if (!root.GetChild("command"))
    notes.push_back({zq::PositionOf(root), "there is no \"command\": the command's name is empty"});
}

bool Has(const Json::Value& value, const char* key) { return value.isObject() && value.isMember(key); }

const Json::Value& Member(const Json::Value& value, const char* key) {
  return Has(value, key) ? value[key] : Json::Value::nullSingleton();
}

class JsonCommandLint {
 public:
  JsonCommandLint(const std::string& text, Findings& notes) : text_(text), places_(text), notes_(notes) {}

  void Check() {
    Json::Value root;
    if (const auto error = ParseJson(text_, root)) throw Objection(error->place, error->text);
    NoteWhatParsingLost();
    CheckCommand(CommandIn(root));
  }

 private:
  void Note(const Json::Value& value, const std::string& text) {
    notes_.push_back({places_.Of(value), text});
  }

  [[noreturn]] void Object(const Json::Value& value, const std::string& text) const {
    throw Objection(places_.Of(value), text);
  }

  void NoteWhatParsingLost() {
    Json::Value ignored;
    if (const auto error = ParseJson(text_, ignored, "failIfExtra"))
      notes_.push_back({error->place, "what stands behind the JSON value is passed over"});
    if (const auto error = ParseJson(text_, ignored, "rejectDupKeys"))
      notes_.push_back({error->place, error->text + "; the last one wins"});
  }

  // The wrapper's first value, by key.
  Json::Value& CommandIn(Json::Value& root) {
    constexpr Json::ArrayIndex largestWrapper = 3;
    constexpr char wrapped[] = "a command stands in a wrapper like {\"devicecommand\": {...}}";
    const char* const part = root.isArray() ? "element" : "member";
    if (root.size() > largestWrapper) {
      Object(root,
             fmt::format("the wrapper around the command has {} {}s, and more than {} are not accepted; {}",
                         root.size(), part, largestWrapper, wrapped));
    }
    if (root.empty()) Object(root, fmt::format("the wrapper is empty; {}", wrapped));
    Json::Value& command = *root.begin();
    if (!command.isObject()) {
      Object(command,
             fmt::format("the wrapper's first {}{} is {}, not a command object; {}", part,
                         root.isObject() ? fmt::format(" by key, {},", Quoted(root.begin().name())) : "",
                         KindOf(command), wrapped));
    }
    for (auto other = std::next(root.begin()); other != root.end(); ++other) {
      Note(*other, root.isObject()
                       ? fmt::format("member {} of the wrapper is passed over; the first by key, {}, counts",
                                     Quoted(other.name()), Quoted(root.begin().name()))
                       : fmt::format("element {} of the wrapper is passed over; the first one counts",
                                     other.index() + 1));
    }
    return command;
  }

  void CheckCommand(Json::Value& command) {
    if (!command.isMember("command")) Note(command, "there is no \"command\": the command's name is empty");
    for (auto member = command.begin(); member != command.end(); ++member) {
      const std::string key = member.name();
      if (member->isArray() && key == "params")
        CheckParams(*member);
      else if (!member->isString())
        Object(*member, fmt::format("{} is {}; a command object holds strings and the array \"params\"",
                                    Quoted(key), KindOf(*member)));
      else if (key != "command")
        Note(*member, fmt::format("key {} of the command is passed over", Quoted(key)));
    }
  }

  void CheckParams(Json::Value& entries) {
    DriverParam param;  // one for all entries, as in the loader
    for (Json::Value& entry : entries) {
      if (!entry.isObject() && !entry.isNull())
        Object(entry, fmt::format("an entry of \"params\" is {}, not an object", KindOf(entry)));
      CheckEntry(entry);
      NoteInherited(entry, param);
      const std::uint64_t inherited = InheritedBytes(entry, param);
      param.fromJson(entry);
      CheckInherited(entry, param.name, inherited);
      CheckName(entry, param.name);
      if (!param.bVar && param.value.find('\0') != std::string::npos)
        Note(entry,
             fmt::format("the value of parameter {} is read up to its first NUL byte", Quoted(param.name)));
    }
  }

  void CheckEntry(const Json::Value& entry) {
    for (auto member = entry.begin(); member != entry.end(); ++member) {
      const std::string key = member.name();
      if (key == "value")
        CheckValue(*member);
      else if (key != "name" && key != "type")
        Note(*member, fmt::format("key {} of a parameter is passed over", Quoted(key)));
      else if (!member->isString())
        Note(*member,
             fmt::format("{} is {}, not a string, and is passed over", Quoted(key), KindOf(*member)));
    }
  }

  void CheckValue(const Json::Value& value) {
    if (!value.isObject()) {
      Note(value,
           fmt::format(R"("value" is {}, not an object with "static" or "variable", and is passed over)",
                       KindOf(value)));
      return;
    }
    if (value.isMember("static") && value.isMember("variable"))
      Note(value, R"("static" stands beside "variable"; the parameter is variable)");
    for (auto member = value.begin(); member != value.end(); ++member) {
      const std::string key = member.name();
      if (key == "variable")
        CheckVariable(*member);
      else if (key != "static")
        Note(*member, fmt::format("key {} of a value is passed over", Quoted(key)));
      else if (member->isArray() || member->isObject())
        Object(*member, fmt::format("\"static\" is {}, which is no text", KindOf(*member)));
    }
  }

  void CheckVariable(const Json::Value& variable) {
    if (!variable.isObject()) {
      Note(variable, fmt::format("\"variable\" is {}, not an object, and gives no ids", KindOf(variable)));
      return;
    }
    for (auto member = variable.begin(); member != variable.end(); ++member) {
      const std::string key = member.name();
      if (key == "deviceid" || key == "variableid")
        CheckId(key, *member);
      else
        Note(*member, fmt::format("key {} of a variable is passed over", Quoted(key)));
    }
  }

  void CheckId(const std::string& key, const Json::Value& id) {
    try {
      const Json::LargestUInt number = id.asLargestUInt();
      if (const auto kept = static_cast<std::uint32_t>(number); kept != number)
        Note(id, fmt::format("{} {} is read as {}", Quoted(key), number, kept));
    } catch (const Json::Exception&) {
      Object(id, fmt::format("{} is {}; an id is an unsigned number", Quoted(key),
                             id.isNumeric() ? id.asString() : KindOf(id)));
    }
  }

  // All entries are read into one record.
  void NoteInherited(const Json::Value& entry, const DriverParam& before) {
    const Json::Value& value = Member(entry, "value");
    const Json::Value& variable = Member(value, "variable");
    const bool hasVariable = Has(value, "variable");

    std::vector<std::string> inherited;
    if (!Member(entry, "name").isString() && !before.name.empty())
      inherited.push_back("name " + Quoted(before.name));
    if (!Member(entry, "type").isString() && !before.type.empty())
      inherited.push_back("type " + Quoted(before.type));
    if (before.bVar && !hasVariable) inherited.push_back("variable " + VariableName(before));
    if (before.idDevice != 0 && hasVariable && !Has(variable, "deviceid"))
      inherited.push_back(fmt::format("device id {}", before.idDevice));
    if (before.idVariable != 0 && hasVariable && !Has(variable, "variableid"))
      inherited.push_back(fmt::format("variable id {}", before.idVariable));
    if (!before.bVar && !hasVariable && !Has(value, "static") && !before.value.empty())
      inherited.emplace_back("value");
    if (!inherited.empty())
      Note(entry, fmt::format("the entry inherits from the one before it: {}",
                              boost::algorithm::join(inherited, ", ")));
  }

  static std::uint64_t InheritedBytes(const Json::Value& entry, const DriverParam& before) {
    std::uint64_t bytes = 0;
    if (!Member(entry, "type").isString()) bytes += before.type.size();
    if (!Has(Member(entry, "value"), "static")) bytes += before.value.size();
    return bytes;
  }

  // Only what becomes a parameter counts.
  void CheckInherited(const Json::Value& entry, const std::string& name, std::uint64_t bytes) {
    if (names_.count(name) != 0) return;
    inherited_ += bytes;
    const std::uint64_t most = tavrin::limits::MaxInherited(text_.size());
    if (inherited_ > most) {
      Object(entry,
             fmt::format("up to this entry the parameters inherit {} bytes from each other, and more than {} "
                         "are not accepted: ten times the length of the text, or 1 MiB",
                         inherited_, most));
    }
  }

  void CheckName(const Json::Value& entry, const std::string& name) {
    const auto [first, isNew] = names_.try_emplace(name, places_.Of(entry));
    if (!isNew)
      Note(entry, fmt::format("parameter {} stands twice; the first one, in line {}, wins", Quoted(name),
                              first->second.line));
  }

  const std::string& text_;
  Places places_;
  Findings& notes_;
  std::map<std::string, Place> names_;
  std::uint64_t inherited_ = 0;
};

void Walk(const std::string& text, Findings& notes) {
  const std::size_t first = BeginningOf(text);
  if (text[first] == '<') return LintXmlCommand(text, notes);
  if (text[first] == '{' || text[first] == '[') return JsonCommandLint(text, notes).Check();
  if (boost::algorithm::starts_with(text, "\xef\xbb\xbf"))
    throw Objection(Places(text).At(first), "the text begins with a byte order mark, which is not accepted");
  ObjectToBeginning(text, first,
                    R"(a command is XML, which begins with "<", or JSON, which begins with "{" or "[")");
}

}  // namespace

LintResult LintCommand(const std::string& text) {
  return Collect([&text](Findings& notes) { Walk(text, notes); });
}

}  // namespace tool
