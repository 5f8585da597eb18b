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
  // Parses DEVICE:VARIABLE=VALUE; a later value replaces an earlier one. Throws CLI::ValidationError.
  void Set(const std::string& assignment);

  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override;

 private:
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::string> values_;
};

// Returns the variable of a parameter as "DEVICE:VARIABLE", the form of --variable.
std::string VariableName(const DriverParam& param);

// The parameters of a message for people and for scripts.
class ParameterView {
 public:
  ParameterView(const std::map<std::string, DriverParam>& params, VariableStore& variables, bool showSecrets)
      : params_(params), variables_(variables), showSecrets_(showSecrets) {}

  Table AsTable() const;
  Json::Value AsJson() const;

 private:
  // Returns the value, masked if it is a secret; no value for a variable without one.
  bool ShownValue(const DriverParam& param, std::string& value) const;

  const std::map<std::string, DriverParam>& params_;
  VariableStore& variables_;
  bool showSecrets_;
};

}  // namespace tool
