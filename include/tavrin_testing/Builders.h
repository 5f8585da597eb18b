/// @file
/// Builders that write a message of a test in one line.
///
/// @code
/// thermostat.Execute(Command("SET_POINT").with("CELSIUS", 21.5));
/// thermostat.Execute(Command("SET_POINT", variables).withVariable("CELSIUS", 7, 1001));
/// thermostat.Receive(Notification("TEMPERATURE_CHANGED", 19.5).with("SENSOR", "hall"));
/// EXPECT_TRUE(thermostat.Evaluate(DeviceConditional("TEMPERATURE").lessThan("CELSIUS", 19.6)));
/// @endcode
///
/// Each builder is a message and can be passed wherever its interface is expected. Numbers are converted as
/// zq::ToText() does: 21.5 becomes "21.5". It rounds to six digits after the decimal point.
#pragma once

#include <tavrin_driver/BindMessage.h>
#include <tavrin_driver/CmdMessage.h>
#include <tavrin_driver/CondMessage.h>
#include <tavrin_platform/IVariableManager.h>
#include <tavrin_platform/XmlNode.h>
#include <tavrin_testing/FakeVariables.h>
#include <tavrin_testing/ParamValue.h>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace tavrin_testing {

/// The base of the builders; @p Builder is the derived class. No operation changes the message: each returns
/// a changed copy.
template <class Builder>
class WithParameters {
 public:
  /// Returns the message with a static parameter, whose type is "number", "bool" or "string" by its value.
  [[nodiscard]] Builder with(const std::string& name, const ParamValue& value) const {
    return with(name, value.type, value);
  }

  /// Returns the message with a static parameter of that type.
  [[nodiscard]] Builder with(const std::string& name, const std::string& type,
                             const ParamValue& value) const {
    return changed([&](Builder& copy) { copy.addParams({{name, DriverParam(name, type, value.text)}}); });
  }

  /// Returns the message with a parameter that names a variable of a device.
  [[nodiscard]] Builder withVariable(const std::string& name, std::uint32_t device, std::uint32_t variable,
                                     const std::string& type = "number") const {
    return changed([&](Builder& copy) {
      copy.addParams({{name, DriverParam(name, type, device, variable)}});
    });
  }

 protected:
  /// Returns a copy that was passed to @p change.
  template <class Change>
  Builder changed(Change change) const {
    Builder copy = static_cast<const Builder&>(*this);
    change(copy);
    return copy;
  }
};

/// A command.
class Command : public CCmdMessage, public WithParameters<Command> {
 public:
  /// Constructs a command without parameters. @p variables outlives it.
  explicit Command(const std::string& name, zq::IVariableManager& variables = NoVariables())
      : CCmdMessage(name, variables) {}

  /// Returns the command with that owner.
  [[nodiscard]] Command ownedBy(std::uint32_t id) const {
    return changed([id](Command& copy) { copy.setOwnerId(id); });
  }
};

/// A binding message: a command or notification.
class BindingMessage : public CBindMessage, public WithParameters<BindingMessage> {
 public:
  /// Constructs a message with a name of the given kind, and data.
  BindingMessage(Kind kind, const std::string& name, const ParamValue& data) {
    Initialize(kind, name, data.text);
  }

  /// Returns the message with @p path appended to its path.
  [[nodiscard]] BindingMessage at(const std::string& path) const {
    return changed([&](BindingMessage& copy) { copy.AddPath(path); });
  }

  /// Returns the message as the answer to a query.
  [[nodiscard]] BindingMessage answeringAQuery() const {
    return changed([](BindingMessage& copy) {
      zq::XmlNode::Ptr element = zq::CreateXmlNode("bindmessage", "");
      element->AddChild("query", "");
      copy.fromXml(element);
    });
  }
};

/// Returns a notification.
inline BindingMessage Notification(const std::string& name, const ParamValue& data = "") {
  return BindingMessage(IBindMessage::NOTIFY, name, data);
}

/// Returns a notification that answers a query.
inline BindingMessage Answer(const std::string& name, const ParamValue& data = "") {
  return Notification(name, data).answeringAQuery();
}

/// Returns a binding message that is a command, such as a query.
inline BindingMessage BindingCommand(const std::string& name, const ParamValue& data = "") {
  return BindingMessage(IBindMessage::COMMAND, name, data);
}

/// A conditional.
class DeviceConditional : public CCondMessage, public WithParameters<DeviceConditional> {
 public:
  /// Constructs a conditional with any comparison, even an unknown one.
  explicit DeviceConditional(const std::string& name, const std::string& comparison = "EQUAL")
      : CCondMessage(name, comparison, {}) {}

  /// Returns a copy that is true if the driver's value equals the parameter.
  [[nodiscard]] DeviceConditional equal(const std::string& name, const ParamValue& value) const {
    return compare("EQUAL", name, value);
  }

  /// Returns a copy that is true if the driver's value differs from the parameter.
  [[nodiscard]] DeviceConditional notEqual(const std::string& name, const ParamValue& value) const {
    return compare("NOT_EQUAL", name, value);
  }

  /// Returns a copy that is true if the driver's value is less than the parameter.
  [[nodiscard]] DeviceConditional lessThan(const std::string& name, const ParamValue& value) const {
    return compare("LESS_THAN", name, value);
  }

  /// Returns a copy that is true if the driver's value is at most the parameter.
  [[nodiscard]] DeviceConditional lessThanOrEqual(const std::string& name, const ParamValue& value) const {
    return compare("LESS_THAN_OR_EQUAL", name, value);
  }

  /// Returns a copy that is true if the driver's value is greater than the parameter.
  [[nodiscard]] DeviceConditional greaterThan(const std::string& name, const ParamValue& value) const {
    return compare("GREATER_THAN", name, value);
  }

  /// Returns a copy that is true if the driver's value is at least the parameter.
  [[nodiscard]] DeviceConditional greaterThanOrEqual(const std::string& name, const ParamValue& value) const {
    return compare("GREATER_THAN_OR_EQUAL", name, value);
  }

 private:
  DeviceConditional compare(const char* comparison, const std::string& name, const ParamValue& value) const {
    return changed([&](DeviceConditional& copy) {
      zq::XmlNode::Ptr element = zq::CreateXmlNode("deviceconditional", "");
      element->AddChild("conditional", comparison);
      copy.fromXml(element);
      copy.addParam(name, value.type, value.text);
    });
  }
};

}  // namespace tavrin_testing
