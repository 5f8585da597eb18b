/// @file
/// A variable manager for tests.
#pragma once

#include <tavrin_platform/IVariableManager.h>
#include <tavrin_testing/ParamValue.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <map>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tavrin_testing {

/// A variable of a device.
struct VariableId {
  std::uint32_t device;    ///< the device
  std::uint32_t variable;  ///< the variable of that device
};

/// Returns whether both ids are equal.
constexpr bool operator==(const VariableId& left, const VariableId& right) {
  return left.device == right.device && left.variable == right.variable;
}

/// Orders variables by device and then by variable.
constexpr bool operator<(const VariableId& left, const VariableId& right) {
  return left.device != right.device ? left.device < right.device : left.variable < right.variable;
}

/// Writes "7/1001" for variable 1001 of device 7.
inline void PrintTo(const VariableId& id, std::ostream* os) { *os << id.device << '/' << id.variable; }

/// A store of variables that counts how often each is read, and fails on demand.
///
/// @code
/// FakeVariables variables{{7, 1001, 19.5}};
/// variables.set(7, 1001, "22,5");
/// variables.fail(7, 1001);
/// EXPECT_EQ(variables.reads(7, 1001), 2);
/// @endcode
///
/// Reading an unknown variable fails, as in a controller. A failed read still writes a value, so that a test
/// detects a driver that ignores the failure. All operations are thread-safe.
class FakeVariables : public zq::IVariableManager {
 public:
  /// A variable and its value.
  struct Variable {
    std::uint32_t device;    ///< the device
    std::uint32_t variable;  ///< the variable of that device
    ParamValue value;        ///< its current value
  };

  /// Constructs a store without variables.
  FakeVariables() = default;

  /// Constructs a store with the given variables.
  FakeVariables(std::initializer_list<Variable> variables) {
    for (const Variable& variable : variables) set(variable.device, variable.variable, variable.value);
  }

  FakeVariables(const FakeVariables&) = delete;
  FakeVariables& operator=(const FakeVariables&) = delete;

  /// Sets the value of a variable; reading it succeeds with @p result.
  void set(std::uint32_t device, std::uint32_t variable, const ParamValue& value, int result = 0) {
    put({device, variable}, {value.text, result, nullptr});
  }

  /// Makes reading a variable fail with @p result, until it is set again.
  void fail(std::uint32_t device, std::uint32_t variable, int result = -1) {
    put({device, variable}, {"left over from a failed read", result, nullptr});
  }

  /// Makes reading a variable throw a copy of @p exception, until it is set again.
  template <class Exception>
  void failWith(std::uint32_t device, std::uint32_t variable, const Exception& exception) {
    put({device, variable}, {"", -1, std::make_exception_ptr(exception)});
  }

  /// Removes a variable, which is then unknown.
  void remove(std::uint32_t device, std::uint32_t variable) {
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_.erase({device, variable});
  }

  /// Removes all variables. The recorded reads are kept.
  void clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_.clear();
  }

  /// Returns the value of a variable, an absent value if reading it fails. This does not count as a read.
  std::optional<std::string> value(std::uint32_t device, std::uint32_t variable) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = answers_.find({device, variable});
    if (found == answers_.end() || found->second.result < 0) return {};
    return found->second.text;
  }

  /// Returns how often a variable was read, failed reads included.
  int reads(std::uint32_t device, std::uint32_t variable) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<int>(std::count(reads_.begin(), reads_.end(), VariableId{device, variable}));
  }

  /// Returns all reads in their order, failed ones included.
  std::vector<VariableId> reads() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return reads_;
  }

  int GetVariableValue(std::uint32_t idDevice, std::uint32_t idVariable, std::string& value) override {
    const std::lock_guard<std::mutex> lock(mutex_);
    reads_.push_back({idDevice, idVariable});
    const auto found = answers_.find({idDevice, idVariable});
    const Answer answer =
        found == answers_.end() ? Answer{"left over from a failed read", -1, nullptr} : found->second;
    if (answer.exception) std::rethrow_exception(answer.exception);
    value += answer.text;  // detects a value that was not empty at the call
    return answer.result;
  }

 private:
  struct Answer {
    std::string text;
    int result;
    std::exception_ptr exception;
  };

  void put(const VariableId& id, Answer answer) {
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_.insert_or_assign(id, std::move(answer));
  }

  mutable std::mutex mutex_;
  std::map<VariableId, Answer> answers_;
  std::vector<VariableId> reads_;
};

/// Returns a store without variables that lives as long as the program, for messages that need none.
inline zq::IVariableManager& NoVariables() {
  static FakeVariables none;
  return none;
}

}  // namespace tavrin_testing
