/// @file
/// Marks what a shared library of the project shows to its callers; everything else stays hidden.
#pragma once

/// Makes a class or function visible to callers of the shared library that defines it.
#define TAVRIN_EXPORT __attribute__((visibility("default")))

/// Keeps a private member of a visible class hidden, so that it may change at any time.
#define TAVRIN_HIDDEN __attribute__((visibility("hidden")))
