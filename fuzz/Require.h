#pragma once

#include <cstdlib>
#include <iostream>

// Ends the program, which is what a fuzzer looks for, unless the property holds.
inline void Require(bool holds, const char* property) {
  if (holds) return;
  std::cerr << "does not hold: " << property << std::endl;
  std::abort();
}

// The same for two values that have to be equal; both are told.
template <typename Actual, typename Expected>
void RequireEqual(const Actual& actual, const Expected& expected, const char* property) {
  if (actual == expected) return;
  std::cerr << "actual:   " << actual << "\nexpected: " << expected << '\n';
  Require(false, property);
}
