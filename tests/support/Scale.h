#pragma once

#include <cstdint>

// How large the largest inputs of the tests are. Where each instruction takes many times its time, under
// sanitizers and emulators, they are smaller; the stack that a deep walk must not exceed is then exceeded by
// recursion all the same.
#ifdef TAVRIN_SLOW_BUILD
constexpr std::uint32_t largeCount = 100'000;
#else
constexpr std::uint32_t largeCount = 1'000'000;
#endif
