#include "Parameters.h"

#include <CLI/Error.hpp>
#include <fmt/format.h>

#include <tavrin_diagnostics/Diagnostics.h>
#include <optional>
#include <string_view>

#include "Numbers.h"

namespace tool {

void VariableStore::Set(const std::string& assignment) {
  const std::string_view text = assignment;
  const std::size_t equals = text.find('=');
  const std::string_view ids = text.substr(0, equals);
  const std::size_t colon = ids.find(':');
  const auto device = WholeNumber<std::uint32_t>(ids.substr(0, colon));
  const auto variable = WholeNumber<std::uint32_t>(ids.substr(std::min(colon, ids.size() - 1) + 1));
  if (equals == std::string_view::npos || colon == std::string_view::npos || !device || !variable) {
    throw CLI::ValidationError("--variable " + assignment,
                               "expected DEVICE:VARIABLE=VALUE, with ids from 0 to 4294967295");
  }
  values_[{*device, *variable}] = text.substr(equals + 1);
}

int VariableStore::GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) {
  const auto found = values_.find({idDevice, idVariable});
  if (found == values_.end()) return -1;
  value = found->second;
  return 0;
}

std::string VariableName(const DriverParam& param) {
  return fmt::format("{}:{}", param.idDevice, param.idVariable);
}

bool ParameterView::ShownValue(const DriverParam& param, std::string& value) const {
  value = param.value;
  if (param.bVar && variables_.GetVariableValue(param.idDevice, param.idVariable, value) < 0) return false;
  if (!showSecrets_ && zq::isSecretParameter(param.name)) value = tavrin::diagnostics::MaskedValue();
  return true;
}

Table ParameterView::AsTable() const {
  Table table({"NAME", "TYPE", "FROM", "VALUE"});
  for (const auto& [name, param] : params_) {
    std::string value;
    if (!ShownValue(param, value)) value = "(not supplied)";
    table.AddRow({name, param.type, param.bVar ? "variable " + VariableName(param) : "static", value});
  }
  return table;
}

Json::Value ParameterView::AsJson() const {
  Json::Value list(Json::arrayValue);
  for (const auto& [name, param] : params_) {
    Json::Value entry;
    entry["name"] = name;
    entry["type"] = param.type;
    if (param.bVar) {
      entry["device"] = param.idDevice;
      entry["variable"] = param.idVariable;
    }
    std::string value;
    if (ShownValue(param, value)) {
      entry["value"] = value;
      if (!showSecrets_ && zq::isSecretParameter(param.name)) entry["masked"] = true;
    }
    list.append(entry);
  }
  return list;
}

}  // namespace tool
