#include <cstddef>
#include <cstdint>
#include <string>

#include "BoundedMemory.h"
#include "Target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  CheckMemory(input);
  CheckInput(input);
  return 0;
}
