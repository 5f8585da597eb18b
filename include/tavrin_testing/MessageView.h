/// @file
/// A view of messages of all kinds, and functions with which the other headers print and compare values.
#pragma once

#include <boost/optional/optional.hpp>

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/DriverParam.h>
#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <tavrin_driver/ZqColor.h>
#include <tavrin_driver/discovery_info.h>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Implementation of the kit's headers. Tests do not use it.
namespace tavrin_testing::details {

/// True if @p Message is a message of any kind.
template <class Message>
inline constexpr bool isMessage =
    std::is_base_of_v<ICmdMessage, Message> || std::is_base_of_v<IBindMessage, Message> ||
    std::is_base_of_v<ICondMessage, Message>;

/// The fields of a message of any kind. Fields that its kind does not have are empty.
struct MessageView {
  bool isConditional = false;                 ///< whether it is a conditional
  std::string command;                        ///< the command name of a command or binding message
  std::string notification;                   ///< the name of a notification
  std::string conditional;                    ///< the name of a conditional
  std::string comparison;                     ///< the comparison of a conditional
  std::string data;                           ///< the data of a binding message
  std::string path;                           ///< the path of a binding message
  bool answersQuery = false;                  ///< whether a binding message answers a query
  std::uint32_t owner = 0;                    ///< the owner of a command or conditional
  std::map<std::string, DriverParam> params;  ///< the parameters
};

/// Returns the fields of a command. No variable is read.
inline MessageView ViewOf(const ICmdMessage& message) {
  MessageView view;
  view.command = message.getRawCommand();
  view.owner = message.getOwnerId();
  view.params = message.GetParamMap();
  return view;
}

/// Returns the fields of a binding message.
inline MessageView ViewOf(const IBindMessage& message) {
  MessageView view;
  view.command = message.getCommand();
  view.notification = message.getNotify();
  view.data = message.getData();
  view.path = message.getPath();
  view.answersQuery = zq::AnswersQuery(message);
  view.params = message.GetParamMap();
  return view;
}

/// Returns the fields of a conditional.
inline MessageView ViewOf(const ICondMessage& message) {
  MessageView view;
  view.isConditional = true;
  view.conditional = message.getName();
  view.comparison = message.getRawCondition();
  view.owner = message.getOwnerId();
  view.params = message.getParamMap();
  return view;
}

/// Returns @p text between double quotes.
inline std::string Quoted(const std::string& text) { return '"' + text + '"'; }

/// Returns the value of a parameter and its type: `"21.5" (number)`.
inline std::string DescribeValue(const DriverParam& param) {
  const std::string value = param.bVar
                                ? "variable " + std::to_string(param.idVariable) + " of device " +
                                      std::to_string(param.idDevice) +
                                      (param.value.empty() ? "" : " with the text " + Quoted(param.value))
                                : Quoted(param.value);
  return value + " (" + param.type + ')';
}

/// Returns a parameter with its name: `CELSIUS = "21.5" (number)`.
inline std::string Describe(const DriverParam& param) { return param.name + " = " + DescribeValue(param); }

/// Returns parameters in braces, "" when there are none.
inline std::string Describe(const std::map<std::string, DriverParam>& params) {
  std::string text;
  for (const auto& [name, param] : params) {
    text += text.empty() ? " {" : ", ";
    if (name != param.name) text += name + ": ";
    text += Describe(param);
  }
  return text.empty() ? text : text + '}';
}

/// Returns the message in one line, without empty fields.
inline std::string Describe(const MessageView& view) {
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (view.isConditional) add("conditional " + Quoted(view.conditional) + ' ' + view.comparison);
  if (!view.command.empty()) add("command " + Quoted(view.command));
  if (!view.notification.empty()) add("notification " + Quoted(view.notification));
  if (text.empty()) add("message without a name");
  if (view.answersQuery) add("answers a query");
  if (!view.data.empty()) add("data " + Quoted(view.data));
  if (!view.path.empty()) add("path " + Quoted(view.path));
  if (view.owner != 0) add("owner " + std::to_string(view.owner));
  return text + Describe(view.params);
}

/// Writes the message in one line.
inline std::ostream& operator<<(std::ostream& os, const MessageView& view) { return os << Describe(view); }

/// Returns a number with the fewest digits that distinguish it from every other number.
inline std::string Digits(double number) {
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

/// Returns the name of a colour's mode.
inline std::string NameOf(ZqColor::Mode mode) {
  return mode == ZqColor::XY ? "XY" : mode == ZqColor::CCT ? "CCT" : std::to_string(std::int32_t{mode});
}

/// Returns a colour: `x 0.3127, y 0.329, mode XY`.
inline std::string Describe(const ZqColor& color) {
  return "x " + Digits(color.x) + ", y " + Digits(color.y) + ", mode " + NameOf(color.mode);
}

/// Returns the fields of a discovery record by their names, absent ones included.
inline std::vector<std::pair<std::string, boost::optional<std::string>>> FieldsOf(
    const zq::discovery_info& device) {
  return {{"uuid", device.uuid()},
          {"host", device.host()},
          {"ip", device.ip()},
          {"type", device.type()},
          {"driver", device.driver()},
          {"manufacturer", device.manufacturer()},
          {"model", device.model()},
          {"primary_proxy", device.primary_proxy()},
          {"proxies", device.proxies()},
          {"make", device.make()},
          {"sdk_class", device.sdk_class()},
          {"name", device.name()},
          {"description", device.description()},
          {"location", device.location()}};
}

/// Returns the protocol of a discovery record, "" for none.
inline std::string ProtocolOf(const zq::discovery_info& device) {
  return device.is_brel() ? "BREL" : device.is_kimo() ? "KIMO" : device.is_upnp() ? "UPnP" : "";
}

/// Returns a discovery record: `device found by UPnP {ip "10.0.0.7"}`.
inline std::string Describe(const zq::discovery_info& device) {
  const std::string protocol = ProtocolOf(device);
  std::string text;
  for (const auto& [name, field] : FieldsOf(device)) {
    if (field) text.append(text.empty() ? " {" : ", ").append(name).append(1, ' ').append(Quoted(*field));
  }
  return "device found by " + (protocol.empty() ? "no protocol" : protocol) +
         (text.empty() ? text : text + '}');
}

/// One thing in which two values differ.
struct Difference {
  std::string what;      ///< what differs: "the parameter CELSIUS"
  std::string actual;    ///< how it is in the first value
  std::string expected;  ///< how it is in the second value
};

/// Returns the differences between two parameters.
inline std::vector<Difference> Differences(const DriverParam& actual, const DriverParam& expected) {
  std::vector<Difference> differences;
  if (actual.name != expected.name)
    differences.push_back({"the name", Quoted(actual.name), Quoted(expected.name)});
  const auto fields = [](const DriverParam& param) {
    return std::make_tuple(param.type, param.bVar, param.value, param.idDevice, param.idVariable);
  };
  if (fields(actual) != fields(expected)) {
    const bool hasHiddenIds = DescribeValue(actual) == DescribeValue(expected);
    const auto describe = [hasHiddenIds](const DriverParam& param) {
      return DescribeValue(param) + (hasHiddenIds ? " with the ids " + std::to_string(param.idDevice) + '/' +
                                                        std::to_string(param.idVariable)
                                                  : "");
    };
    differences.push_back({"the parameter " + expected.name, describe(actual), describe(expected)});
  }
  return differences;
}

/// Returns the differences between two maps of parameters.
inline std::vector<Difference> Differences(const std::map<std::string, DriverParam>& actual,
                                           const std::map<std::string, DriverParam>& expected) {
  std::vector<Difference> differences;
  for (const auto& [name, param] : expected) {
    const auto found = actual.find(name);
    if (found == actual.end()) {
      differences.push_back({"the parameter " + name, "absent", DescribeValue(param)});
    } else {
      for (Difference& difference : Differences(found->second, param))
        differences.push_back(std::move(difference));
    }
  }
  for (const auto& [name, param] : actual) {
    if (expected.count(name) == 0)
      differences.push_back({"the parameter " + name, DescribeValue(param), "absent"});
  }
  return differences;
}

/// Returns the differences between two messages.
inline std::vector<Difference> Differences(const MessageView& actual, const MessageView& expected) {
  std::vector<Difference> differences;
  const auto compare = [&](const char* what, const std::string& left, const std::string& right) {
    if (left != right) differences.push_back({what, Quoted(left), Quoted(right)});
  };
  compare("the command", actual.command, expected.command);
  compare("the notification", actual.notification, expected.notification);
  compare("the conditional", actual.conditional, expected.conditional);
  compare("the comparison", actual.comparison, expected.comparison);
  compare("the data", actual.data, expected.data);
  compare("the path", actual.path, expected.path);
  if (actual.answersQuery != expected.answersQuery)
    differences.push_back({"the query flag", actual.answersQuery ? "set" : "not set",
                           expected.answersQuery ? "set" : "not set"});
  if (actual.owner != expected.owner)
    differences.push_back({"the owner", std::to_string(actual.owner), std::to_string(expected.owner)});
  for (Difference& difference : Differences(actual.params, expected.params))
    differences.push_back(std::move(difference));
  return differences;
}

/// Returns the differences between two colours.
inline std::vector<Difference> Differences(const ZqColor& actual, const ZqColor& expected) {
  std::vector<Difference> differences;
  if (Digits(actual.x) != Digits(expected.x))
    differences.push_back({"x", Digits(actual.x), Digits(expected.x)});
  if (Digits(actual.y) != Digits(expected.y))
    differences.push_back({"y", Digits(actual.y), Digits(expected.y)});
  if (actual.mode != expected.mode)
    differences.push_back({"the mode", NameOf(actual.mode), NameOf(expected.mode)});
  return differences;
}

/// Returns the differences between two discovery records.
inline std::vector<Difference> Differences(const zq::discovery_info& actual,
                                           const zq::discovery_info& expected) {
  std::vector<Difference> differences;
  if (ProtocolOf(actual) != ProtocolOf(expected))
    differences.push_back({"the protocol", Quoted(ProtocolOf(actual)), Quoted(ProtocolOf(expected))});
  const auto describe = [](const boost::optional<std::string>& field) {
    return field ? Quoted(*field) : std::string("absent");
  };
  const auto fields = FieldsOf(actual);
  const auto expectedFields = FieldsOf(expected);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].second != expectedFields[i].second)
      differences.push_back(
          {"the field " + fields[i].first, describe(fields[i].second), describe(expectedFields[i].second)});
  }
  return differences;
}

}  // namespace tavrin_testing::details
