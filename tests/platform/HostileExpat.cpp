// Replaces functions of Expat for the whole program by versions that are as unhelpful as its documentation
// allows: memory that Expat has freed, reallocated or could reuse is filled with garbage.

#define XML_DTD
#include <dlfcn.h>
#include <expat.h>

#include <tavrin_platform/Export.h>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int garbageByte = 0xA5;

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Each program uses one set of functions for all its parsers.
const XML_Memory_Handling_Suite* memory = nullptr;

// Precedes each block.
struct alignas(std::max_align_t) Header {
  std::size_t size;
};

void* Allocate(std::size_t size) {
  void* const block = memory->malloc_fcn(sizeof(Header) + size);
  if (block == nullptr) return nullptr;
  auto* const header = ::new (block) Header{size};
  return std::memset(header + 1, garbageByte, size);
}

void Free(void* pointer) {
  if (pointer == nullptr) return;
  auto* const header = static_cast<Header*>(pointer) - 1;
  std::memset(pointer, garbageByte, header->size);
  memory->free_fcn(header);
}

void* Reallocate(void* pointer, std::size_t size) {
  void* const moved = Allocate(size);
  if (moved == nullptr || pointer == nullptr) return moved;
  const auto* const header = static_cast<Header*>(pointer) - 1;
  std::memcpy(moved, pointer, std::min(size, header->size));
  Free(pointer);
  return moved;
}

constexpr XML_Memory_Handling_Suite hostileMemory = {Allocate, Reallocate, Free};

thread_local void* buffer = nullptr;  // the last one that Expat returned

}  // namespace

extern "C" {

TAVRIN_EXPORT XML_Parser XML_ParserCreate_MM(const XML_Char* encoding, const XML_Memory_Handling_Suite* suite,
                                             const XML_Char* separator) {
  memory = suite;
  static auto* const real = Real<decltype(XML_ParserCreate_MM)>("XML_ParserCreate_MM");
  return real(encoding, &hostileMemory, separator);
}

TAVRIN_EXPORT void* XML_GetBuffer(XML_Parser parser, int length) {
  static auto* const real = Real<decltype(XML_GetBuffer)>("XML_GetBuffer");
  return buffer = real(parser, length);
}

TAVRIN_EXPORT XML_Status XML_ParseBuffer(XML_Parser parser, int length, int isFinal) {
  static auto* const real = Real<decltype(XML_ParseBuffer)>("XML_ParseBuffer");
  const XML_Status status = real(parser, length, isFinal);
  // Expat still needs the rest of a piece if another one follows.
  const bool needsNothing = isFinal != 0 || status == XML_STATUS_ERROR;
  if (needsNothing) std::memset(buffer, garbageByte, static_cast<std::size_t>(length));
  return status;
}

}  // extern "C"
