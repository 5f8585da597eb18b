// Writes a valid project of any size to the standard output, for measurements.

#include <cstdint>
#include <exception>
#include <iostream>
#include <optional>

#include "Arguments.h"
#include "HouseWriter.h"

int main(int argc, char** argv) try {
  std::uint32_t items = 0;
  generators::Arguments arguments(
      "Writes a project of ITEMS items, the system item counted, to the standard output.");
  arguments.AddOperand("ITEMS", items, "How many; the ids of more than 200000 are not all unique");
  if (const std::optional<int> status = arguments.Parse(argc, argv)) return *status;
  std::cout << HouseOf(items) << std::flush;
  return std::cout ? 0 : 1;
} catch (const std::exception& error) {
  std::cerr << "project_generator: " << error.what() << '\n';
  return 1;
}
