#pragma once

#include <tavrin_platform/IVariableManager.h>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

// A store of variables that remembers what it was asked for.
class FakeVariableManager : public zq::IVariableManager {
 public:
  using Id = std::pair<std::uint32_t, std::uint32_t>;  // device, variable

  std::map<Id, std::string> values;  // every other variable is unknown
  int success = 0;                   // the result for a known variable
  std::vector<Id> questions;

  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override {
    questions.emplace_back(idDevice, idVariable);
    const auto found = values.find({idDevice, idVariable});
    if (found == values.end()) {
      value = "left over from the failure";
      return -1;
    }
    value += found->second;  // shows whether the caller hands in an empty text
    return success;
  }
};
