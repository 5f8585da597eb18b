#include "LargePages.h"

#include <sys/mman.h>

#include <cstddef>
#include <memory>
#include <new>

namespace zq::xml {
namespace {

constexpr std::size_t pageSize = std::size_t{2} << 20U;

class Resource : public std::pmr::memory_resource {
  void* do_allocate(std::size_t size, std::size_t alignment) override {
    void* const memory = std::pmr::new_delete_resource()->allocate(size, AlignmentOf(size, alignment));
    PreferLargePages(memory, size);
    return memory;
  }
  void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override {
    std::pmr::new_delete_resource()->deallocate(memory, size, AlignmentOf(size, alignment));
  }
  // Aligned blocks start at the beginning of a large page.
  static std::size_t AlignmentOf(std::size_t size, std::size_t alignment) {
    return size < pageSize ? alignment : pageSize;
  }
  // Required by the base class; nothing compares resources.
  bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

}  // namespace

void PreferLargePages(void* memory, std::size_t size) noexcept {
  if (std::align(pageSize, pageSize, memory, size) == nullptr) return;
  madvise(memory, size / pageSize * pageSize, MADV_HUGEPAGE);
}

std::pmr::memory_resource* LargePageResource() {
  // Never destroyed: a tree in static storage may be destroyed later than any static object of this library.
  alignas(Resource) static std::byte memory[sizeof(Resource)];
  static auto* const resource = ::new (memory) Resource;
  return resource;
}

}  // namespace zq::xml
