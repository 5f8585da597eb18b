// Commands as JSON, compared with an independent implementation of the rules.

#include <json/json.h>

#include <tavrin_driver/CmdMessage.h>
#include <tavrin_testing/FakeVariables.h>
#include <algorithm>
#include <exception>
#include <memory>
#include <string>

#include "DescribeParams.h"
#include "Messages.h"
#include "Naive.h"
#include "Require.h"
#include "Target.h"

namespace {

// The expected result of loading an input. Members are read in the order of their keys, and what was read
// before a failure is kept.
struct Outcome {
  std::int32_t result = -1;
  bool threw = false;
  std::string command;
  ParamMap params;
};

std::size_t MostInherited(const std::string& text) {
  return std::max<std::size_t>(10 * text.size(), std::size_t{1024} * 1024);
}

class Model {
 public:
  static Outcome Of(const std::string& text) {
    Model model;
    try {
      model.outcome_.result = model.Read(text) ? 0 : -1;
    } catch (const Json::Exception&) {
      model.outcome_.threw = true;
    }
    return model.outcome_;
  }

 private:
  bool Read(const std::string& text) {
    static const Json::CharReaderBuilder builder = [] {
      Json::CharReaderBuilder made;
      made["collectComments"] = false;
      return made;
    }();
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    if (!reader->parse(text.data(), text.data() + text.size(), &root, nullptr)) return false;
    inheritable_ = MostInherited(text);
    const Json::ArrayIndex members = root.size();
    if (members == 0 || members > 3) return false;
    const Json::Value& command = root.isArray() ? root[0] : root[root.getMemberNames()[0]];
    return command.isObject() && ReadCommand(command);
  }

  bool ReadCommand(const Json::Value& command) {
    const Json::Value::Members keys = command.getMemberNames();
    return std::all_of(keys.begin(), keys.end(),
                       [&](const std::string& key) { return ReadMember(key, command[key]); });
  }

  bool ReadMember(const std::string& key, const Json::Value& member) {
    if (member.isString()) {
      if (key == "command") outcome_.command = member.asString();
      return true;
    }
    return member.isArray() && key == "params" && ReadEntries(member);
  }

  // An entry inherits the fields of the previous one.
  bool ReadEntries(const Json::Value& entries) {
    DriverParam param;
    for (const Json::Value& entry : entries) {
      if (!entry.isObject() && !entry.isNull()) throw Json::LogicError("not an object");
      if (entry.isObject()) ReadEntry(entry, param);
      if (outcome_.params.count(param.name) != 0) continue;
      const std::size_t inherited = InheritedBy(entry, param);
      if (inherited > inheritable_) return false;
      inheritable_ -= inherited;
      outcome_.params[param.name] = param;
    }
    return true;
  }

  static std::size_t InheritedBy(const Json::Value& entry, const DriverParam& param) {
    const bool hasType = entry.isObject() && entry["type"].isString();
    const bool hasValue = entry.isObject() && entry["value"].isObject() && entry["value"].isMember("static");
    return (hasType ? 0 : param.type.size()) + (hasValue ? 0 : param.value.size());
  }

  static void ReadEntry(const Json::Value& entry, DriverParam& param) {
    if (entry["name"].isString()) param.name = entry["name"].asString();
    if (entry["type"].isString()) param.type = entry["type"].asString();
    const Json::Value& value = entry["value"];
    if (!value.isObject()) return;
    if (value.isMember("static")) param.value = value["static"].asString();
    if (!value.isMember("variable")) return;
    param.bVar = true;
    const Json::Value& variable = value["variable"];
    if (!variable.isObject()) return;
    ReadId(variable, "deviceid", param.idDevice);
    ReadId(variable, "variableid", param.idVariable);
  }

  static void ReadId(const Json::Value& variable, const char* key, std::uint32_t& id) {
    if (variable.isMember(key)) id = static_cast<std::uint32_t>(variable[key].asLargestUInt());
  }

  Outcome outcome_;
  std::size_t inheritable_ = 0;
};

// A message contains each byte of its text at most once, bytes of names twice, and up to 24 characters for
// each number. All else is inherited.
void CheckHeldBytes(const std::string& text, const CCmdMessage& message) {
  std::size_t held = message.getRawCommand().size();
  for (const auto& [key, param] : message.GetParamMap())
    held += key.size() + param.name.size() + param.type.size() + param.value.size();
  Require(held <= 2 * text.size() + MostInherited(text), "a message stores at most the limit for its text");
}

// Returns the command as JSON, with a member for every field that is read.
std::string ToJson(const CCmdMessage& message) {
  Json::Value command(Json::objectValue);
  command["command"] = message.getRawCommand();
  Json::Value& params = command["params"] = Json::Value(Json::arrayValue);
  for (const auto& [key, param] : message.GetParamMap()) {
    Json::Value entry;
    entry["name"] = param.name;
    entry["type"] = param.type;
    entry["value"]["static"] = param.value;
    if (param.bVar) {
      entry["value"]["variable"]["deviceid"] = param.idDevice;
      entry["value"]["variable"]["variableid"] = param.idVariable;
    }
    params.append(entry);
  }
  Json::Value wrapper;
  wrapper["devicecommand"] = command;
  static const Json::StreamWriterBuilder builder;
  return Json::writeString(builder, wrapper);
}

// A parameter without ids inherits those of the previous one, so such parameters must precede all others.
// JSON contains no malformed UTF-8.
bool CanBeJson(const CCmdMessage& message) {
  bool wasVariable = false;
  bool can = naive::Writable(message.getRawCommand()) == message.getRawCommand();
  for (const auto& [key, param] : message.GetParamMap()) {
    const bool hasIds = param.idDevice != 0 || param.idVariable != 0;
    can = can && (param.bVar || (!wasVariable && !hasIds));
    for (const std::string& text : {param.name, param.type, param.value})
      can = can && naive::Writable(text) == text;
    wasVariable = param.bVar;
  }
  return can;
}

void CheckJsonAgain(const CCmdMessage& message) {
  if (!CanBeJson(message)) return;
  tavrin_testing::FakeVariables variables;
  CCmdMessage loaded(variables, 0);
  RequireEqual(loaded.Load(ToJson(message)), 0, "a command written as JSON loads");
  RequireEqual(Describe(loaded), Describe(message), "as the same command");
}

}  // namespace

void UseInput(const std::string& input) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  try {
    static_cast<void>(message.Load(input));
  } catch (const std::exception&) {  // the message keeps what was read before
  }
  message.toXml(true);
}

void CheckInput(const std::string& input) {
  const std::size_t first = input.find_first_not_of(" \t\r\n\v\f");
  const bool isBracket = first != std::string::npos && (input[first] == '{' || input[first] == '[');
  const bool isMarkup = first != std::string::npos && input[first] == '<';
  if (isMarkup) return;

  const Outcome expected = isBracket ? Model::Of(input) : Outcome();
  tavrin_testing::FakeVariables variables;
  CCmdMessage message(variables, 0);
  bool threw = false;
  std::int32_t result = -1;
  try {
    result = message.Load(input);
  } catch (const Json::Exception&) {
    threw = true;
  }
  RequireEqual(threw, expected.threw, "exactly malformed ids and values throw");
  RequireEqual(result, expected.result, "exactly commands load");
  RequireEqual(message.getRawCommand(), expected.command, "the command's name is that of the text");
  RequireSame(message.GetParamMap(), expected.params, "so are the parameters");

  CheckHeldBytes(input, message);

  CheckCommand(message, variables);
  CheckJsonAgain(message);
}
