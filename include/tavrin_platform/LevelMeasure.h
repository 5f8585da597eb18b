/// @file
/// Levels of the controller core.
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>

namespace LevelMeasure {

/// A level that can be compared with a number. The core defines what a level is. The order of the operators
/// is the order of the virtual table and never changes.
///
/// @code
/// bool isTrue = conditional.Test(level, nullptr);  // level: const LevelMeasure::LevelPoint&
/// @endcode
class TAVRIN_EXPORT LevelPoint {
 public:
  virtual bool operator==(std::int32_t value) const = 0;  ///< Returns whether the level equals the value
  virtual bool operator!=(
      std::int32_t value) const = 0;                     ///< Returns whether the level differs from the value
  virtual bool operator<(std::int32_t value) const = 0;  ///< Returns whether the level is below the value
  virtual bool operator>(std::int32_t value) const = 0;  ///< Returns whether the level is above the value
  virtual bool operator<=(std::int32_t value) const = 0;  ///< Returns whether the level is at most the value
  virtual bool operator>=(std::int32_t value) const = 0;  ///< Returns whether the level is at least the value

 protected:
  // Not virtual: a level is never deleted through this interface, and its first slot is equality.
  ~LevelPoint() = default;
};

}  // namespace LevelMeasure
