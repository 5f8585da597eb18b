#include "Messages.h"

#include <tavrin_platform/XmlNode.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <sstream>

#include "DescribeParams.h"
#include "Naive.h"
#include "Require.h"

namespace {

DriverParam AfterWriting(const DriverParam& param) {
  const std::string name = naive::Writable(param.name);
  const std::string type = naive::Writable(param.type);
  return param.bVar ? DriverParam(name, type, param.idDevice, param.idVariable)
                    : DriverParam(name, type, naive::Writable(param.value));
}

// An independent implementation of the rules for parameters.
DriverParam ReadParam(const zq::XmlNode& node) {
  DriverParam param;
  param.name = node.GetData("name");
  zq::XmlNode::Ptr holder = node.GetChild("value");
  const bool hasTypeElement = node.GetChild("type") != nullptr;
  if (hasTypeElement) {
    param.type = node.GetData("type");
    if (holder) holder = holder->GetChild("valuetype");
  } else if (holder) {
    param.type = holder->GetAttribute("type");
  }
  if (!holder) return param;
  if (const zq::XmlNode::Ptr text = holder->GetChild("static")) {
    param.value = hasTypeElement || text->GetData().empty() ? text->InnerXml() : text->GetData();
  } else if (const zq::XmlNode::Ptr variable = holder->GetChild("variable")) {
    param.bVar = variable->GetChild("deviceid") != nullptr;
    param.idDevice = static_cast<std::uint32_t>(variable->GetChildDataNumber("deviceid"));
    param.idVariable = static_cast<std::uint32_t>(variable->GetChildDataNumber("variableid"));
  }
  return param;
}

// Returns the result of a call, or no value if it throws the exception.
template <typename Exception, typename Call>
auto Unless(Call call) -> std::optional<decltype(call())> {
  try {
    return call();
  } catch (const Exception&) {
    return {};
  }
}

// Every second variable can be read; its value is the name of its parameter.
void Provide(tavrin_testing::FakeVariables& variables, const ParamMap& params) {
  for (const auto& [key, param] : params) {
    if (param.bVar && param.idVariable % 2 == 1) variables.set(param.idDevice, param.idVariable, param.name);
  }
}

std::optional<std::string> CurrentValue(const tavrin_testing::FakeVariables& variables,
                                        const DriverParam& param) {
  if (!param.bVar) return param.value.substr(0, param.value.find('\0'));
  return variables.value(param.idDevice, param.idVariable);
}

void CheckRange(const ICmdMessage& message, const std::string& name, std::int32_t number) {
  using Limits = std::numeric_limits<std::int32_t>;
  Require(message.getParamRequiredIntRanged(name, number, number) == number, "both bounds belong to a range");
  const bool isInside = number == Limits::max() || Unless<ExceptionParameterInvalid>([&] {
                          return message.getParamRequiredIntRanged(name, number + 1, Limits::max());
                        });
  Require(isInside == (number == Limits::max()), "a number below the range is invalid");
}

void CheckNumbers(const ICmdMessage& message, const std::string& name, const std::string& text) {
  const std::int32_t number = naive::Int32(text);
  RequireEqual(message.getParamRequiredInt(name), number, "an integer is the leading number");
  RequireEqual(message.getParamRequiredULong(name), static_cast<std::uint32_t>(number),
               "an unsigned integer is the same, taken as unsigned");
  RequireEqual(message.getParamRequiredBool(name),
               !text.empty() && std::string("Tt1").find(text[0]) != std::string::npos,
               "a truth value depends on its first character");
  CheckRange(message, name, number);

  std::string withPoint = text;
  if (const std::size_t comma = withPoint.find(','); comma != std::string::npos) withPoint[comma] = '.';
  const double value = naive::Double(withPoint);
  RequireEqual(message.getParamRequiredDouble(name, -1), value, "a number may have a decimal comma");
  RequireEqual(message.getParamRequiredDouble(name, 0), std::round(value), "and is rounded");
}

void CheckReading(const CCmdMessage& message, tavrin_testing::FakeVariables& variables) {
  Provide(variables, message.GetParamMap());
  for (const auto& [key, param] : message.GetParamMap()) {
    const std::string& name = key;
    RequireEqual(key, param.name, "the key of a parameter is its name");
    Require(message.hasParam(name), "every parameter is there");
    const std::optional<std::string> value = CurrentValue(variables, param);
    RequireEqual(message.getParam(name), value.value_or(""), "a parameter has its current value");
    Require(Unless<ExceptionParameterMissing>([&] { return message.getParamRequired(name); }) == value,
            "a required value is missing exactly where it cannot be read");
    if (value) CheckNumbers(message, name, *value);
    if (!param.bVar || param.idDevice == 0 || param.idVariable == 0) continue;  // reported as a warning
    RequireEqual(message.getParamRequiredVarDeviceID(name), static_cast<std::int32_t>(param.idDevice),
                 "a variable parameter has its device");
    RequireEqual(message.getParamRequiredVarVariableID(name), static_cast<std::int32_t>(param.idVariable),
                 "a variable parameter has its variable");
  }
}

void CheckLoadsAs(const std::string& xml, const std::string& command, const ParamMap& params) {
  tavrin_testing::FakeVariables variables;
  CCmdMessage loaded(variables, 0);
  RequireEqual(loaded.Load(xml), 0, "what was written loads");
  RequireEqual(loaded.getRawCommand(), command, "the command's name survives");
  RequireSame(loaded.GetParamMap(), params, "the parameters survive");
}

ParamMap Masked(ParamMap params) {
  for (auto& [key, param] : params) {
    if (naive::IsSecret(param.name)) param.value = "******";
  }
  return params;
}

void CheckWriting(const CCmdMessage& message) {
  const std::string command = naive::Writable(message.getRawCommand());
  CheckLoadsAs(message.toXml(false), command, AfterWriting(message.GetParamMap()));
  CheckLoadsAs(message.toXml(true), command, AfterWriting(Masked(message.GetParamMap())));
  for (const bool masked : {false, true})
    RequireEqual(message.toAutoNode(masked)->OuterXml(), message.toXml(masked), "both written forms agree");

  std::ostringstream printed;
  message.print(printed);
  const std::string begin = R"({, "command_": ")" + message.getRawCommand() + R"(", "params_": [)";
  RequireEqual(printed.str().substr(0, begin.size()), begin, "the printed form begins with the command");
  RequireEqual(printed.str().substr(printed.str().size() - 2), "]}", "the printed form ends");
}

}  // namespace

bool AreSame(const ParamMap& left, const ParamMap& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const auto& a, const auto& b) {
    return a.first == b.first && Fields(a.second) == Fields(b.second);
  });
}

std::vector<zq::XmlNode::Ptr> ChildrenNamed(const zq::XmlNode::Ptr& parent, const std::string& name) {
  std::vector<zq::XmlNode::Ptr> children;
  zq::XmlNodeIterator* walk = parent->GetIterator();
  for (zq::XmlNode::Ptr child = walk->First(); child; child = walk->Next()) {
    if (name == anyName || child->IsName(name)) children.push_back(child);
  }
  return children;
}

std::string TextOfLast(const zq::XmlNode::Ptr& parent, const std::string& name) {
  const std::vector<zq::XmlNode::Ptr> children = ChildrenNamed(parent, name);
  return children.empty() ? "" : children.back()->GetData();
}

std::string MarkupOfLast(const zq::XmlNode::Ptr& parent, const std::string& name) {
  const std::vector<zq::XmlNode::Ptr> children = ChildrenNamed(parent, name);
  return children.empty() ? "" : children.back()->InnerXml();
}

ParamMap ReadParams(const zq::XmlNode::Ptr& root, const std::string& entryName) {
  ParamMap params;
  for (const zq::XmlNode::Ptr& section : ChildrenNamed(root, "params")) {
    for (const zq::XmlNode::Ptr& entry : ChildrenNamed(section, entryName)) {
      const DriverParam param = ReadParam(*entry);
      params.try_emplace(param.name, param);
    }
  }
  return params;
}

void RequireSame(const ParamMap& actual, const ParamMap& expected, const char* property) {
  if (AreSame(actual, expected)) return;
  RequireEqual(Describe(actual), Describe(expected), property);
  Require(false, property);
}

ParamMap AfterWriting(const ParamMap& params) {
  ParamMap read;
  for (const auto& [key, param] : params) {
    const DriverParam written = AfterWriting(param);
    read.try_emplace(written.name, written);
  }
  return read;
}

void CheckCommand(const CCmdMessage& message, tavrin_testing::FakeVariables& variables) {
  CheckReading(message, variables);
  CheckWriting(message);
  const boost::shared_ptr<ICmdMessage> copy = message.clone();
  RequireEqual(Describe(*copy), Describe(message), "a copy is the same");
}
