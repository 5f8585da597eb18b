// Counts every call of malloc and its kin, whoever makes it. For one file of a program: the functions below
// take the place of the C library's, which they call. Not with a sanitizer, which brings an allocator of its
// own.
#pragma once

#include <malloc.h>

#include <cstddef>

struct Allocations {
  std::size_t calls = 0;  // of malloc, calloc, realloc and aligned_alloc
  std::size_t bytes = 0;  // that are allocated now
};

inline Allocations allocated;

namespace counted_allocations {

inline void* Count(void* memory) {
  ++allocated.calls;
  allocated.bytes += malloc_usable_size(memory);
  return memory;
}

inline void Forget(void* memory) { allocated.bytes -= malloc_usable_size(memory); }

}  // namespace counted_allocations

// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
  return counted_allocations::Count(__libc_malloc(size));
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
  return counted_allocations::Count(__libc_calloc(count, size));
}
[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept {
  counted_allocations::Forget(memory);
  return counted_allocations::Count(__libc_realloc(memory, size));
}
[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return counted_allocations::Count(__libc_memalign(alignment, size));
}
[[gnu::visibility("default")]] void free(void* memory) noexcept {
  counted_allocations::Forget(memory);
  __libc_free(memory);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
