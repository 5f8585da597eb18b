/// @file
/// Macros for the visibility of symbols. Symbols without TAVRIN_EXPORT are hidden.
#pragma once

/// Exports a class or function from the shared library that defines it.
#define TAVRIN_EXPORT __attribute__((visibility("default")))

/// Hides a private member of an exported class, so that it is not part of the binary interface.
#define TAVRIN_HIDDEN __attribute__((visibility("hidden")))
