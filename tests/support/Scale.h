#pragma once

#include <cstdint>

// The size of the largest inputs of the tests. It is smaller under sanitizers and emulators, where each
// instruction takes many times longer; recursion would still exceed the stack.
#ifdef TAVRIN_SLOW_BUILD
constexpr std::uint32_t largeCount = 100'000;
#else
constexpr std::uint32_t largeCount = 1'000'000;
#endif
