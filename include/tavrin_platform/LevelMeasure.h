/// @file
/// Levels of the controller core.
#pragma once

#include <cstdint>

#include "Export.h"

namespace LevelMeasure {

/// A level that can be compared with a number; what a level is, is the core's affair. The order of the
/// operators is the order of the virtual table.
class TAVRIN_EXPORT LevelPoint {
 public:
  virtual bool operator==(std::int32_t value) const = 0;  ///< the level is the value
  virtual bool operator!=(std::int32_t value) const = 0;  ///< the level is not the value
  virtual bool operator<(std::int32_t value) const = 0;   ///< the level is below the value
  virtual bool operator>(std::int32_t value) const = 0;   ///< the level is above the value
  virtual bool operator<=(std::int32_t value) const = 0;  ///< the level is the value or below it
  virtual bool operator>=(std::int32_t value) const = 0;  ///< the level is the value or above it

 protected:
  // Not virtual: nobody deletes a level through this interface, and its first slot is equality.
  ~LevelPoint() = default;
};

}  // namespace LevelMeasure
