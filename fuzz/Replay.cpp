// Runs a fuzz target over files, and over all files of directories, without a fuzzer.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "BoundedMemory.h"
#include "Target.h"

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  file.exceptions(std::ios::badbit | std::ios::failbit);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<fs::path> FilesOf(const fs::path& place) {
  if (!fs::is_directory(place)) return {place};
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(place)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  return files;
}

// Prints the name of each file before running it, so that the last name is that of a failure.
std::size_t Replay(const fs::path& place) {
  const std::vector<fs::path> files = FilesOf(place);
  for (const fs::path& file : files) {
    std::cout << file.string() << std::endl;
    const std::string input = Content(file);
    CheckMemory(input);
    CheckInput(input);
  }
  std::cout << place.string() << ": " << files.size() << " inputs" << std::endl;
  return files.size();
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> places(argv + 1, argv + argc);
  bool isAnyEmpty = places.empty();
  for (const std::string& place : places) isAnyEmpty = Replay(place) == 0 || isAnyEmpty;
  if (!isAnyEmpty) return EXIT_SUCCESS;
  std::cerr << "no inputs\n";
  return EXIT_FAILURE;
}
