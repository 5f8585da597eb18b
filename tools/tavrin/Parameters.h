#pragma once

#include <json/value.h>

#include <tavrin_driver/DriverParam.h>
#include <tavrin_platform/IVariableManager.h>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "Table.h"

namespace tool {

// The variables of a controller, with the values that the user supplies.
class VariableStore : public zq::IVariableManager {
 public:
  // Takes DEVICE:VARIABLE=VALUE as it was typed; a later value replaces an earlier one.
  // Throws CLI::ValidationError.
  void Set(const std::string& assignment);

  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override;

 private:
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::string> values_;
};

// How the user names the variable behind a parameter: "DEVICE:VARIABLE".
std::string VariableName(const DriverParam& param);

// A message's parameters, as people and as scripts read them.
class ParameterView {
 public:
  ParameterView(const std::map<std::string, DriverParam>& params, VariableStore& variables, bool showSecrets)
      : params_(params), variables_(variables), showSecrets_(showSecrets) {}

  Table AsTable() const;
  Json::Value AsJson() const;

 private:
  // The value that may be shown; a variable without one has nothing to show.
  bool ShownValue(const DriverParam& param, std::string& value) const;

  const std::map<std::string, DriverParam>& params_;
  VariableStore& variables_;
  bool showSecrets_;
};

}  // namespace tool
