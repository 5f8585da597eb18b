// The operations of the library with their arguments, for programs that call them while the process starts or
// ends.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct Operation {
  const char* name;
  std::string (*run)();  // returns a string with all results of the operation
};

// Constant-initialised, so that constructors of global objects may use it.
extern const Operation operations[];
extern const std::size_t operationCount;

// Runs the operation of that name, which must exist.
std::string RunOperation(std::string_view name);

// Returns objects that own memory of the library, one of each kind.
std::vector<std::shared_ptr<void>> NewObjects();
