/// @file
/// The error of the platform libraries.
#pragma once

#include <stdexcept>

#include "Export.h"

namespace zq {

/// Thrown by the platform libraries when a value cannot be read; what() says which one and what stood there.
class TAVRIN_EXPORT ZqError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zq
