#pragma once

#include <tavrin_driver/IBindMessage.h>
#include <tavrin_driver/ICmdMessage.h>
#include <tavrin_driver/ICondMessage.h>
#include <map>
#include <sstream>
#include <string>
#include <tuple>

// Short printed forms that contain every field, also those that the test kit leaves out of its readable
// forms: the ids of a static parameter and the number in a binding's data. Rows of tables compare a whole
// message with one string, and the fuzz targets use them without GoogleTest.

// All fields of a parameter, for comparing.
inline auto Fields(const DriverParam& param) {
  return std::tie(param.name, param.type, param.bVar, param.value, param.idDevice, param.idVariable);
}

// A parameter as NAME:TYPE=VALUE, where a variable one has @DEVICE/VARIABLE behind its value and a static one
// with ids has them in brackets.
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

// Parameters in the order of their keys, each with its key in front where that is not its name.
inline std::string Describe(const std::map<std::string, DriverParam>& params) {
  std::string text;
  for (const auto& [key, param] : params) {
    if (!text.empty()) text += ' ';
    if (key != param.name) text += key + "->";
    text += Describe(param);
  }
  return text;
}

// A message as COMMAND | PARAMETERS.
inline std::string Describe(const ICmdMessage& message) {
  return message.getRawCommand() + " | " + Describe(message.GetParamMap());
}

// A message as COMMAND/NOTIFY = DATA (NUMBER) @ PATH | PARAMETERS.
inline std::string Describe(const IBindMessage& message) {
  return message.getCommand() + '/' + message.getNotify() + " = " + message.getData() + " (" +
         std::to_string(message.getDataAsInteger()) + ") @ " + message.getPath() + " | " +
         Describe(message.GetParamMap());
}

// A message as NAME COMPARISON | PARAMETERS.
inline std::string Describe(const ICondMessage& message) {
  return message.getName() + ' ' + message.getRawCondition() + " | " + Describe(message.getParamMap());
}
