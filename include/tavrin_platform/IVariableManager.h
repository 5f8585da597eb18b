/// @file
/// The controller's store of device variables.
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>
#include <string>

namespace zq {

/// The store of device variables, which the controller core implements. References to it are non-owning; the
/// store outlives all messages that refer to it.
///
/// @code
/// class Controller : public zq::IVariableManager {
///  public:
///   int GetVariableValue(std::uint32_t device, std::uint32_t variable, std::string& value) override {
///     if (device != 7 || variable != 1001) return -1;
///     value = "40";
///     return 0;
///   }
/// };
/// @endcode
class TAVRIN_EXPORT IVariableManager {
 public:
  /// Reads the current value of a device's variable. A message calls it each time a variable parameter is
  /// read, on the thread that reads it. Exceptions propagate to the reader.
  /// @param idDevice the device, 0 for none
  /// @param idVariable the variable of that device, 0 for none
  /// @param value is empty when the function is called, and receives the value, which may be empty
  /// @return 0 or more on success; negative if there is no such variable or it cannot be read
  virtual int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) = 0;

 protected:
  // Not virtual: a store is never deleted through this interface, and its first slot is GetVariableValue.
  ~IVariableManager() = default;
};

}  // namespace zq
