#pragma once

#include <cstdint>
#include <fstream>
#include <ios>
#include <sstream>
#include <string>

// Returns whether the object is in read-only memory. Objects with a dynamic initialiser never are.
inline bool IsInReadOnlyMemory(const void* object) {
  const auto address = reinterpret_cast<std::uintptr_t>(object);
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {  // "begin-end rwxp ..."
    std::istringstream fields(line);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::string permissions;
    fields >> std::hex >> begin >> dash >> end >> permissions;
    if (address >= begin && address < end) return permissions.find('w') == std::string::npos;
  }
  return false;
}
