#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>

// Returns the index of a virtual function in the virtual table of its class, from 0; a virtual destructor has
// two entries.
//
// In the C++ ABI that GCC and Clang follow, a pointer to a virtual member function contains the offset of the
// entry in bytes. One bit marks it as virtual: the lowest bit of the offset, because functions have even
// addresses, and on ARM, where that bit of an address has another meaning, the lowest bit of the adjustment
// of the object's address.
template <typename Member>
std::size_t VirtualTableSlot(Member member) {
  static_assert(std::is_member_function_pointer_v<Member>);
#if !defined(__x86_64__) && !defined(__i386__) && !defined(__aarch64__) && !defined(__arm__)
#error "the layout of pointers to member functions is known for x86 and ARM only"
#endif
  struct {
    std::uintptr_t function;
    std::ptrdiff_t adjustment;
  } parts{};
  static_assert(sizeof parts == sizeof member);
  std::memcpy(&parts, &member, sizeof member);
#if defined(__aarch64__) || defined(__arm__)
  const bool isVirtual = parts.adjustment % 2 != 0;
#else
  const bool isVirtual = parts.function % 2 != 0;
#endif
  if (!isVirtual) throw std::invalid_argument("not a virtual function");
  return parts.function / sizeof(void*);
}
