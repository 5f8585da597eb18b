#pragma once

#include <cstdlib>
#include <iostream>

// Terminates the program, which a fuzzer detects, unless the property is true.
inline void Require(bool holds, const char* property) {
  if (holds) return;
  std::cerr << "violated: " << property << std::endl;
  std::abort();
}

// The same for two values that must be equal; prints both.
template <typename Actual, typename Expected>
void RequireEqual(const Actual& actual, const Expected& expected, const char* property) {
  if (actual == expected) return;
  std::cerr << "actual:   " << actual << "\nexpected: " << expected << '\n';
  Require(false, property);
}
