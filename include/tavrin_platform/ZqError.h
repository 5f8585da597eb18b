/// @file
/// The error of the platform libraries.
#pragma once

#include <tavrin_platform/Export.h>
#include <stdexcept>

namespace zq {

/// Thrown by the platform libraries if a value cannot be read; what() names the value and the text that was
/// found.
///
/// @code
/// try {
///   id = node->GetChildDataNumber("id");
/// } catch (const zq::ZqError& error) {
///   std::cerr << error.what() << std::endl;
/// }
/// @endcode
class TAVRIN_EXPORT ZqError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zq
