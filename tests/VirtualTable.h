#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>

// The place of a virtual operation in its class's virtual table, counted from 0; a virtual destructor takes
// two.
//
// In the C++ ABI that GCC and Clang follow on x86, a pointer to a virtual member function holds one more than
// the offset of the function's entry in bytes; real functions have even addresses.
template <typename Member>
std::size_t VirtualTableSlot(Member member) {
  static_assert(std::is_member_function_pointer_v<Member>);
#if !defined(__x86_64__) && !defined(__i386__)
#error "the layout of pointers to member functions is known for x86 only"
#endif
  struct {
    std::uintptr_t function;
    std::ptrdiff_t adjustment;
  } parts{};
  static_assert(sizeof parts == sizeof member);
  std::memcpy(&parts, &member, sizeof member);
  if (parts.function % 2 == 0) throw std::invalid_argument("not a virtual function");
  return (parts.function - 1) / sizeof(void*);
}
