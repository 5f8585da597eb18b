// Writes a valid project of any size to the standard output, for measurements.

#include <CLI/CLI.hpp>

#include <cstdint>
#include <exception>
#include <iostream>

#include "HouseWriter.h"

int main(int argc, char** argv) try {
  CLI::App app{"Writes a project of ITEMS items, the system item counted, to the standard output."};
  std::uint32_t items = 0;
  app.add_option("ITEMS", items, "How many; more than 200000 cannot all have ids of their own")
      ->required()
      ->check(CLI::PositiveNumber);
  CLI11_PARSE(app, argc, argv);
  std::cout << HouseOf(items) << std::flush;
  return std::cout ? 0 : 1;
} catch (const std::exception& error) {
  std::cerr << "project_generator: " << error.what() << '\n';
  return 1;
}
