// The commands that are measured: the given number of parameters, half of them variable, in XML as the
// library writes it and in JSON with the same content.
#pragma once

#include <fmt/format.h>

#include <tavrin_driver/CmdMessage.h>
#include <cstdint>
#include <string>

class Variables : public zq::IVariableManager {
 public:
  int GetVariableValue(std::uint32_t /*idDevice*/, std::uint32_t /*idVariable*/,
                       std::string& value) override {
    value = "50";
    return 0;
  }
};

inline Variables variables;

inline CCmdMessage SampleCommand(std::int64_t paramCount) {
  CCmdMessage message("SET_LEVEL", variables);
  for (std::int64_t index = 0; index < paramCount; ++index) {
    const std::string name = "PARAMETER_" + std::to_string(index);
    const auto id = static_cast<std::uint32_t>(1000 + index);
    if (index % 2 == 0)
      message.addParam(name, "number", std::to_string(index));
    else
      message.addVarParam(name, "number", id, id + 1);
  }
  return message;
}

inline std::string SampleXml(std::int64_t paramCount) { return SampleCommand(paramCount).toXml(false); }

inline std::string SampleJson(std::int64_t paramCount) {
  const CCmdMessage message = SampleCommand(paramCount);
  std::string entries;
  for (const auto& [name, param] : message.GetParamMap()) {
    if (!entries.empty()) entries += ',';
    const std::string value = param.bVar ? fmt::format(R"("variable":{{"deviceid":{},"variableid":{}}})",
                                                       param.idDevice, param.idVariable)
                                         : fmt::format(R"("static":"{}")", param.value);
    entries += fmt::format(R"({{"name":"{}","type":"number","value":{{{}}}}})", name, value);
  }
  return R"({"devicecommand":{"command":"SET_LEVEL","params":[)" + entries + "]}}";
}
