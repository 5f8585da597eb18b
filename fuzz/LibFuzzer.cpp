#include <cstddef>
#include <cstdint>
#include <string>

#include "Target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckInput(std::string(data, data + size));
  return 0;
}
