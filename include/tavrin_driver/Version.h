/// @file
/// The version of the library: of these headers, and of the library that is loaded.
///
/// A program that needs a later release checks the headers at compile time and the library at run time:
///
/// @code
/// static_assert(TAVRIN_DRIVER_VERSION >= 10000, "needs the headers of 1.0.0");
/// if (zq::LibraryVersion() < 10000) throw std::runtime_error("needs the library of 1.0.0");
/// @endcode
#pragma once

#include <tavrin_platform/Export.h>
#include <cstdint>

#define TAVRIN_DRIVER_VERSION_MAJOR 1  ///< increases when drivers have to be rebuilt
#define TAVRIN_DRIVER_VERSION_MINOR 1  ///< increases when something is added to the interface
#define TAVRIN_DRIVER_VERSION_PATCH 0  ///< increases when behaviour is fixed

/// The version of these headers as one number, in which later versions are greater: 1.2.3 is 10203.
#define TAVRIN_DRIVER_VERSION \
  (TAVRIN_DRIVER_VERSION_MAJOR * 10000 + TAVRIN_DRIVER_VERSION_MINOR * 100 + TAVRIN_DRIVER_VERSION_PATCH)

namespace zq {

/// Returns the version of the library that the process has loaded, encoded as TAVRIN_DRIVER_VERSION. It may
/// be later than the version of the headers that a driver was compiled with.
TAVRIN_EXPORT std::uint32_t LibraryVersion() noexcept;

}  // namespace zq
