#include "BoundedMemory.h"

#include <cstddef>
#include <iostream>

#include "Require.h"
#include "Target.h"

// Counts the bytes that are allocated now, and their maximum. A sanitizer has a separate allocator and
// reports each call.
#ifdef TAVRIN_SANITIZED

// From sanitizer/allocator_interface.h, which GCC 12 does not install.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onAllocate)(const volatile void*, std::size_t),
                                              void (*onFree)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void*);
}

namespace {

std::size_t bytes = 0;
std::size_t peak = 0;

void Allocated(const volatile void* memory, std::size_t /*size*/) {
  bytes += __sanitizer_get_allocated_size(memory);
  if (bytes > peak) peak = bytes;
}

// Also frees memory that was allocated before the counting began.
void Freed(const volatile void* memory) {
  const std::size_t size = __sanitizer_get_allocated_size(memory);
  bytes -= size < bytes ? size : bytes;
}

std::size_t Now() {
  static const int installed = __sanitizer_install_malloc_and_free_hooks(&Allocated, &Freed);
  Require(installed != 0, "allocations are counted");
  return peak = bytes;
}

std::size_t Peak() { return peak; }

}  // namespace

#else

#include "CountedAllocations.h"

namespace {

std::size_t Now() { return allocated.peak = allocated.bytes; }
std::size_t Peak() { return allocated.peak; }

}  // namespace

#endif

void CheckMemory(const std::string& input) {
  constexpr std::size_t fixed =
      std::size_t{8} * 1024 * 1024;  // entities and JSON entries may always add this much
  constexpr std::size_t factor = 256;
  const std::size_t before = Now();
  UseInput(input);
  const std::size_t taken = Peak() - before;
  const std::size_t most = fixed + factor * input.size();
  if (taken > most) std::cerr << taken << " bytes for an input of " << input.size() << '\n';
  Require(taken <= most, "memory is taken in proportion to the input");
}
