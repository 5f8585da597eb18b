#pragma once

#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <map>
#include <sstream>
#include <string>
#include <tuple>

// Short printed forms that contain every field, including those that the readable forms of the test kit leave
// out: the ids of a static parameter, and the number in a binding's data. Tables compare a whole message with
// one string, and the fuzz targets use the forms without GoogleTest.

// Returns all fields of a parameter, for comparisons.
inline auto Fields(const DriverParam& param) {
  return std::tie(param.name, param.type, param.bVar, param.value, param.idDevice, param.idVariable);
}

// Returns a parameter as NAME:TYPE=VALUE. A variable parameter is followed by @DEVICE/VARIABLE; the ids of a
// static parameter are in brackets.
inline std::string Describe(const DriverParam& param) {
  std::ostringstream text;
  text << param.name << ':' << param.type << '=' << param.value;
  const bool hasIds = param.idDevice != 0 || param.idVariable != 0;
  if (param.bVar)
    text << '@' << param.idDevice << '/' << param.idVariable;
  else if (hasIds)
    text << '(' << param.idDevice << '/' << param.idVariable << ')';
  return text.str();
}

// Returns parameters in the order of their keys. A key that differs from the name precedes the parameter.
inline std::string Describe(const std::map<std::string, DriverParam>& params) {
  std::string text;
  for (const auto& [key, param] : params) {
    if (!text.empty()) text += ' ';
    if (key != param.name) text += key + "->";
    text += Describe(param);
  }
  return text;
}

// Returns a message as COMMAND | PARAMETERS.
inline std::string Describe(const ICmdMessage& message) {
  return message.getRawCommand() + " | " + Describe(message.GetParamMap());
}

// Returns a message as COMMAND/NOTIFY = DATA (NUMBER) @ PATH | PARAMETERS.
inline std::string Describe(const IBindMessage& message) {
  return message.getCommand() + '/' + message.getNotify() + " = " + message.getData() + " (" +
         std::to_string(message.getDataAsInteger()) + ") @ " + message.getPath() + " | " +
         Describe(message.GetParamMap());
}

// Returns a message as NAME COMPARISON | PARAMETERS.
inline std::string Describe(const ICondMessage& message) {
  return message.getName() + ' ' + message.getRawCondition() + " | " + Describe(message.getParamMap());
}
