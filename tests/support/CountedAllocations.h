// Counts every call of malloc and similar functions in the process, and makes selected calls fail. Include it
// in one file of a program: the functions below replace those of the C library and call them. A sanitizer
// replaces the allocator; in such builds (TAVRIN_SANITIZED) only operator new is counted.
#pragma once

#include <malloc.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

struct Allocations {
  std::size_t calls = 0;   // of malloc, calloc, realloc, aligned_alloc and posix_memalign
  std::size_t bytes = 0;   // allocated now; the C library may round them up
  std::size_t blocks = 0;  // allocated now
  std::size_t total = 0;   // all bytes allocated so far
  std::size_t peak = 0;    // the maximum of bytes since it was set

  // The range of calls that fail, without its end.
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

// Counts a call. @return whether the call must fail
inline bool Fails() {
  const std::size_t call = allocated.calls++;
  if (call < allocated.failFrom || call >= allocated.failTo) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace counted_allocations

#ifndef TAVRIN_SANITIZED

// These are functions of the C library, which declares them in no header.
// NOLINTBEGIN(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

[[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
  return counted_allocations::Fails() ? nullptr : counted_allocations::Count(__libc_malloc(size));
}
// Never fails: the C library calls it for the destructors of thread_local objects, and terminates the program
// if it fails.
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
[[gnu::visibility("default")]] int posix_memalign(void** memory, std::size_t alignment,
                                                  std::size_t size) noexcept {
  void* const block = aligned_alloc(alignment, size);
  if (block == nullptr) return ENOMEM;
  *memory = block;
  return 0;
}
[[gnu::visibility("default")]] void free(void* memory) noexcept {
  counted_allocations::Forget(memory);
  __libc_free(memory);
}
}
// NOLINTEND(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)

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

// Not inlined: GCC would otherwise warn about free() of memory from operator new.
[[gnu::noinline]] void* operator new(std::size_t size) { return counted_allocations::New(size); }
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  try {
    return counted_allocations::New(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
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
