/// @file
/// The controller's store of device variables.
#pragma once

#include <cstdint>
#include <string>

#include "Export.h"

namespace zq {

/// The store of device variables, which the controller core implements. Those who hold a reference do not own
/// it, and it outlives them.
class TAVRIN_EXPORT IVariableManager {
 public:
  /// Reads the current value of a device's variable. It is called on the thread of whoever reads a parameter,
  /// and for every reading anew; an exception passes through to that reader.
  /// @param idDevice the device, 0 for none
  /// @param idVariable the variable of that device, 0 for none
  /// @param value comes in empty and receives the text of the value, which may be empty
  /// @return 0 or more for success, negative when there is no such variable or it cannot be read
  virtual int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) = 0;

 protected:
  // Not virtual: nobody deletes a store through this interface, and its first slot is GetVariableValue.
  ~IVariableManager() = default;
};

}  // namespace zq
