// Counts every call of malloc and its kin, whoever makes it, and makes calls fail that a test names. For one
// file of a program: the functions below take the place of the C library's, which they call. A sanitizer
// brings an allocator of its own; there (TAVRIN_SANITIZED) only what operator new allocates counts.
#pragma once

#include <malloc.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

struct Allocations {
  std::size_t calls = 0;   // of malloc, calloc, realloc and aligned_alloc
  std::size_t bytes = 0;   // that are allocated now; the C library rounds them up as it sees fit
  std::size_t blocks = 0;  // that are allocated now
  std::size_t total = 0;   // bytes that were ever allocated
  std::size_t peak = 0;    // the most bytes since it was set

  // The calls that fail: from one number on, up to but without another.
  std::size_t failFrom = 0;
  std::size_t failTo = 0;
};

inline Allocations allocated;

namespace counted_allocations {

inline void* Count(void* memory) {
  if (memory != nullptr) ++allocated.blocks;
  allocated.bytes += malloc_usable_size(memory);
  allocated.total += malloc_usable_size(memory);
  if (allocated.bytes > allocated.peak) allocated.peak = allocated.bytes;
  return memory;
}

inline void Forget(void* memory) {
  if (memory != nullptr) --allocated.blocks;
  allocated.bytes -= malloc_usable_size(memory);
}

// Counts a call. @return whether it is one that fails
inline bool Fails() {
  const std::size_t call = allocated.calls++;
  if (call < allocated.failFrom || call >= allocated.failTo) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace counted_allocations

#ifndef TAVRIN_SANITIZED

// The names are the C library's, which declares them nowhere.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
  return counted_allocations::Fails() ? nullptr : counted_allocations::Count(__libc_malloc(size));
}
// Never fails: the C library is the one that calls it, for the destructors of what a thread keeps, and ends
// the program if it does.
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocated.calls;
  return counted_allocations::Count(__libc_calloc(count, size));
}
[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept {
  if (counted_allocations::Fails()) return nullptr;
  counted_allocations::Forget(memory);
  return counted_allocations::Count(__libc_realloc(memory, size));
}
[[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return counted_allocations::Fails() ? nullptr
                                      : counted_allocations::Count(__libc_memalign(alignment, size));
}
[[gnu::visibility("default")]] void free(void* memory) noexcept {
  counted_allocations::Forget(memory);
  __libc_free(memory);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

#else

namespace counted_allocations {

inline void* New(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
  void* memory = nullptr;
  if (Fails() || posix_memalign(&memory, alignment, size) != 0) throw std::bad_alloc();
  return Count(memory);
}

inline void Delete(void* memory) noexcept {
  Forget(memory);
  std::free(memory);
}

}  // namespace counted_allocations

// Not inlined, since GCC would then see free() called on what operator new returned.
[[gnu::noinline]] void* operator new(std::size_t size) { return counted_allocations::New(size); }
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment) {
  return counted_allocations::New(size, static_cast<std::size_t>(alignment));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { counted_allocations::Delete(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  counted_allocations::Delete(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  counted_allocations::Delete(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/,
                                       std::align_val_t /*alignment*/) noexcept {
  counted_allocations::Delete(memory);
}

#endif
