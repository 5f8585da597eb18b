#pragma once

#include <cstdint>

// The size of the largest inputs of the tests. It is smaller under sanitizers and emulators, where each
// instruction takes many times longer; recursion would still exceed the stack.
#if defined TAVRIN_EMULATED
constexpr std::uint32_t largeCount = 30'000;
#elif defined TAVRIN_SANITIZED
constexpr std::uint32_t largeCount = 100'000;
#else
constexpr std::uint32_t largeCount = 1'000'000;
#endif
